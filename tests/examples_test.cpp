// The examples as programs, and the README's words about them: what is printed there is what they
// print.
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>

namespace {

const std::string kSource = QUORL_SOURCE_DIR;
const std::string kBinary = QUORL_BINARY_DIR;

std::string FileText(const std::string& path) {
  std::ifstream file(path);
  EXPECT_TRUE(file) << path;
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string OutputOf(const std::string& command) {
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
  std::string output;
  std::array<char, 4096> buffer{};
  while (const auto read = fread(buffer.data(), 1, buffer.size(), pipe.get())) {
    output.append(buffer.data(), read);
  }
  return output;
}

// The n-th fenced block of the README, from 0, without its fences.
std::string ReadmeBlock(int n) {
  const std::string text = FileText(kSource + "/README.md");
  std::size_t at = 0;
  for (int fence = 0; fence < 2 * n; ++fence) at = text.find("```", at) + 3;
  const std::size_t begin = text.find('\n', text.find("```", at)) + 1;
  return text.substr(begin, text.find("```", begin) - begin);
}

TEST(Examples, ReadmeShowsTheFirstProgramAndWhatItPrints) {
  EXPECT_EQ(ReadmeBlock(0), FileText(kSource + "/examples/first_steps.cpp"));
  EXPECT_EQ(ReadmeBlock(1), OutputOf(kBinary + "/examples/first_steps"));
}

TEST(Examples, TourPrintsWhatStandsBesideIt) {
  EXPECT_EQ(OutputOf(kBinary + "/examples/tour"), FileText(kSource + "/examples/tour.txt"));
}

}  // namespace
