// Puts texts together: the pieces of a result, and the texts of Variants.
#pragma once

#include <concepts>

#include "quorl/runtime/internal/within_memory.hpp"
#include "quorl/runtime/variant.hpp"

namespace quorl::internal {

/// The pieces in their order, in one allocation. Failure 7 when memory is short.
template <std::convertible_to<StringView>... Pieces>
String Joined(const Pieces&... pieces) {
  return WithinMemory([&] {
    String joined;
    joined.reserve((StringView(pieces).size() + ...));
    (joined.append(StringView(pieces)), ...);
    return joined;
  });
}

/// Appends the text of `value`: nothing for Null and Empty, the bytes of an array of bytes read as
/// UTF-16 (low byte first, an odd last byte dropped), otherwise what it converts to. Failure 13 for
/// what has no text, 7 where memory does not hold the result; `text` is unchanged then.
QUORL_API void AppendText(String& text, const Variant& value);

}  // namespace quorl::internal
