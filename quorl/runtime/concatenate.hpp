// Joining Variants to a text.
#pragma once

#include "quorl/runtime/variant.hpp"

namespace quorl {

/// Appends the text of `value`: nothing for Null and Empty, the bytes of an array of bytes read as
/// UTF-16 (low byte first, an odd last byte dropped), otherwise what it converts to. Failure 13 for
/// what has no text, 7 where memory does not hold the result; `text` is unchanged then.
void AppendText(String& text, const Variant& value);

}  // namespace quorl
