// Puts texts together: the pieces of a result, and the texts of Variants.
#pragma once

#include <initializer_list>

#include "quorl/runtime/variant.hpp"

namespace quorl::internal {

/// The pieces in their order, in one allocation. Failure 7 when memory is short.
QUORL_API String Joined(std::initializer_list<StringView> pieces);

/// Appends the text of `value`: nothing for Null and Empty, the bytes of an array of bytes read as
/// UTF-16 (low byte first, an odd last byte dropped), otherwise what it converts to. Failure 13 for
/// what has no text, 7 where memory does not hold the result; `text` is unchanged then.
QUORL_API void AppendText(String& text, const Variant& value);

}  // namespace quorl::internal
