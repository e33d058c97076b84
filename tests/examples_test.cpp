// The examples as programs: what they print is what stands beside them and in the README.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "tests/support/program.hpp"
#include "tests/support/store_temporary_folder.hpp"

namespace quorl {
namespace {

const std::string kExamples = QUORL_SOURCE_DIR "/examples/";
const std::string kPrograms = QUORL_BINARY_DIR "/examples/";

// The n-th fenced block of the README, from 0, without its fences.
std::string ReadmeBlock(int n) {
  const std::string text = FileText(QUORL_SOURCE_DIR "/README.md");
  std::size_t at = 0;
  for (int fence = 0; fence < 2 * n; ++fence) at = text.find("```", at) + 3;
  const std::size_t begin = text.find('\n', text.find("```", at)) + 1;
  return text.substr(begin, text.find("```", begin) - begin);
}

TEST(Examples, ReadmeShowsTheFirstProgramAndWhatItPrints) {
  EXPECT_EQ(ReadmeBlock(0), FileText(kExamples + "first_steps.cpp"));
  EXPECT_EQ(ReadmeBlock(1), RunProgram(kPrograms + "first_steps").output);
}

TEST(Examples, TourAndOrderDeskPrintWhatStandsBesideThem) {
  EXPECT_EQ(RunProgram(kPrograms + "tour").output, FileText(kExamples + "tour.txt"));
  // Whatever the environment says, the script names its own locale.
  const std::string desk = "LC_ALL=de_DE.UTF-8 " + kPrograms + "order_entry ";
  const std::string played = FileText(kExamples + "order_entry.out");
  EXPECT_EQ(RunProgram(desk + kExamples + "order_entry.script").output, played);
  const std::string other_ends = "sed 's/$/\r/' " + kExamples + "order_entry.script | ";
  EXPECT_EQ(RunProgram(other_ends + desk + "/dev/stdin").output, played);
  EXPECT_EQ(RunProgram(desk + "2>&1").status, 2);
  EXPECT_EQ(RunProgram(desk + "/nowhere/at.all 2>&1").output,
            "order_entry: cannot read /nowhere/at.all\n");
}

// Has a shell run the lines of a script in a folder of its own, as a person would type them, and
// writes down each with what it printed and an exit status other than 0.
std::string Transcript(const std::string& script) {
  const TemporaryFolder folder;
  const std::string run = "cd " + folder.Path() + " && PATH=" + kPrograms +
                          ":$PATH XDG_DATA_HOME=$PWD LANGUAGE= LC_ALL=C.UTF-8 " +
                          R"sh(sh -c 'while IFS= read -r line <&3; do
           case $line in "" | "#"*) printf "%s\n" "$line"; continue;; esac
           printf "> %s\n" "$line"; eval "$line" 3<&-; status=$?
           [ $status = 0 ] || echo "(status $status)"
         done 3<)sh" + script +
                          "' 2>&1";
  return RunProgram(run).output;
}

TEST(Examples, SessionsPrintWhatStandsBesideThem) {
  for (const std::string name : {"amount_in_words", "settings"}) {
    EXPECT_EQ(Transcript(kExamples + name + ".script"), FileText(kExamples + name + ".out"));
  }
}

}  // namespace
}  // namespace quorl
