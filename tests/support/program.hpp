// Runs programs as a person at a shell does.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

namespace quorl {

/// What became of a command.
struct ProgramResult {
  int status = -1;  ///< Its exit status; -1 when a signal ended it.
  std::string output;
};

/// Runs `command` in a shell; `output` has standard output, and standard error where the command
/// says "2>&1".
inline ProgramResult RunProgram(const std::string& command) {
  ProgramResult result;
  FILE* const pipe = popen(command.c_str(), "r");
  EXPECT_NE(pipe, nullptr) << command;
  if (pipe == nullptr) return result;
  std::array<char, 4096> buffer;
  while (const auto read = fread(buffer.data(), 1, buffer.size(), pipe)) {
    result.output.append(buffer.data(), read);
  }
  const int ended = pclose(pipe);
  if (WIFEXITED(ended)) result.status = WEXITSTATUS(ended);
  return result;
}

/// The bytes of a file; the test fails where there is none.
inline std::string FileText(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file) << path;
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace quorl
