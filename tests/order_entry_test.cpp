// The example order_entry, run as a program on the script that comes with it.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

namespace {

const std::string kExamples = QUORL_SOURCE_DIR "/examples/";

// What is printed, and behind it the exit status. Whatever the environment says, the script names
// its own locale.
std::string Play(const std::string& arguments) {
  const std::string line =
      "LC_ALL=de_DE.UTF-8 " QUORL_BINARY_DIR "/examples/order_entry " + arguments + " 2>&1";
  FILE* const output = popen(line.c_str(), "r");
  std::string printed;
  for (int byte = 0; (byte = std::fgetc(output)) != EOF;) printed += static_cast<char>(byte);
  return printed + std::to_string(WEXITSTATUS(pclose(output)));
}

TEST(OrderEntryTest, PlaysItsScriptAndSaysWhatItNeeds) {
  std::ifstream file(kExamples + "order_entry.out", std::ios::binary);
  const std::string expected{std::istreambuf_iterator<char>(file), {}};
  EXPECT_EQ(Play(kExamples + "order_entry.script"), expected + "0");
  EXPECT_TRUE(Play("").ends_with("\n2"));
  EXPECT_EQ(Play("/nowhere/at.all"), "order_entry: cannot read /nowhere/at.all\n1");
}

}  // namespace
