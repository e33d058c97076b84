// Reads a log. It is data from elsewhere: whatever stands in it, reading takes time and memory in
// proportion to its size, and what makes no sense is refused with its line.
#pragma once

#include <string_view>

#include "examples/parity/log.hpp"

namespace parity {

/// The log that `text` holds, in UTF-8. Throws Unreadable. A log that stops in the middle is read
/// as far as its last whole entry; `ended_with` is then empty.
Log ReadLog(std::string_view text);

/// One value, as it stands in a log; objects by any number. Throws Unreadable for line 1.
Value ReadValue(std::string_view text);

}  // namespace parity
