#include "examples/command/output.hpp"

#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <iostream>

#include "examples/command/message.hpp"
#include "examples/command/printable.hpp"
#include "examples/command/system_error.hpp"

namespace command {
namespace {

constexpr Message<2> kNotWritten{"{0}: the output cannot be written: {1}",
                                 "{0} : la sortie ne peut pas être écrite : {1}"};

void Require(bool is_written) {
  if (is_written) return;
  const int error = errno;
  // A signal that interrupts a write is one that a command takes for its end.
  if (error == EPIPE || error == EINTR) std::_Exit(0);
  std::cerr << kNotWritten(ProgramName(), SystemErrorText(error)) + "\n";
  std::_Exit(1);
}

}  // namespace

std::string ProgramName() { return program_invocation_short_name; }

void PrepareOutput() { static_cast<void>(std::signal(SIGPIPE, SIG_IGN)); }

void Print(std::string_view text) {
  Require(std::fwrite(text.data(), 1, text.size(), stdout) == text.size());
}

void Flush() { Require(std::fflush(stdout) == 0); }

void Tell(const std::string& message) {
  Flush();
  std::cerr << Printable(message) + "\n";
}

bool IsTerminal(int file) { return isatty(file) != 0; }

}  // namespace command
