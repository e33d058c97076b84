// Conversion between the library's UTF-16 texts and UTF-8, for a host's edge. Inside the library a
// text is always a `String`. For single-byte text of the store see ansi.hpp. A result that memory
// does not hold raises failure 7.
#pragma once

#include <string>
#include <string_view>

#include "quorl/runtime/types.hpp"

namespace quorl {

/// UTF-8 to UTF-16. Each byte that belongs to no well-formed sequence becomes U+FFFD, so the result
/// is always readable and never longer, in code units, than `text` is in bytes.
QUORL_API String Utf16(std::string_view text);

/// UTF-16 to UTF-8. A surrogate without its partner becomes U+FFFD.
/// Example: `std::cout << Utf8(Strings::Pluriel(u"mot"))` prints "mots".
QUORL_API std::string Utf8(StringView text);

}  // namespace quorl
