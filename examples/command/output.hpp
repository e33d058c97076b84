// What a command writes. Everything is UTF-8. A reader of standard output that has gone away ends
// the program quietly with status 0, and so does a signal that interrupts the waiting for a reader;
// any other failure to write ends it with a message and status 1.
#pragma once

#include <string>
#include <string_view>

namespace command {

/// The name by which the person called the program.
std::string ProgramName();

/// Before the first output: a reader that goes away gives a failed write, not a signal.
void PrepareOutput();

/// On standard output, as it is.
void Print(std::string_view text);
void Flush();

/// On standard error, on a line of its own after what was printed before it, printable.
void Tell(const std::string& message);

bool IsTerminal(int file);

}  // namespace command
