// Texts of others on their way to a terminal, on one line and without a command to it.
#pragma once

#include <string>

#include "quorl/runtime/types.hpp"

namespace command {

/// A picture stands for each control character, U+2421 for those that have none.
quorl::String Printable(quorl::StringView text);

/// The same of UTF-8; U+FFFD stands for each byte that is none.
std::string Printable(const std::string& text);

}  // namespace command
