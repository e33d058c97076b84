// The example order_entry, run as a program on the script that comes with it.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

namespace {

const std::string kProgram = QUORL_BINARY_DIR "/examples/order_entry ";
const std::string kExamples = QUORL_SOURCE_DIR "/examples/";

struct Outcome {
  int status = -1;
  std::string printed;
};

// Whatever the environment says, the script names its own locale.
Outcome Play(const std::string& arguments) {
  Outcome outcome;
  const std::string line = "LC_ALL=de_DE.UTF-8 " + kProgram + arguments + " 2>&1";
  FILE* const output = popen(line.c_str(), "r");
  if (output == nullptr) return outcome;
  for (int byte = std::fgetc(output); byte != EOF; byte = std::fgetc(output)) {
    outcome.printed.push_back(static_cast<char>(byte));
  }
  outcome.status = WEXITSTATUS(pclose(output));
  return outcome;
}

TEST(OrderEntryTest, PlaysItsScript) {
  std::ifstream file(kExamples + "order_entry.out", std::ios::binary);
  const std::string expected{std::istreambuf_iterator<char>(file), {}};
  const Outcome outcome = Play(kExamples + "order_entry.script");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.printed, expected);
}

TEST(OrderEntryTest, SaysWhatItNeeds) {
  EXPECT_EQ(Play("").status, 2);
  const Outcome absent = Play("/nowhere/at.all");
  EXPECT_EQ(absent.status, 1);
  EXPECT_EQ(absent.printed, "order_entry: cannot read /nowhere/at.all\n");
}

}  // namespace
