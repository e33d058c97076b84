// Single-byte text of the store: Windows-1252. The five bytes without a character there (81, 8D,
// 8F, 90, 9D) stand for the control character of the same number, so that every byte comes back. A
// result that memory does not hold raises failure 7.
#pragma once

#include <string>
#include <string_view>

#include "quorl/runtime/types.hpp"

namespace quorl {

/// The character of one byte.
QUORL_API char16_t FromAnsi(unsigned char byte) noexcept;
/// One character a byte.
QUORL_API String FromAnsi(std::string_view bytes);

/// The byte of one character, '?' for a character that has none.
QUORL_API unsigned char ToAnsi(char16_t unit) noexcept;
/// One byte a code unit.
QUORL_API std::string ToAnsi(StringView text);
/// The same into `bytes`, which has room for as many as `text` has code units; the end of them.
QUORL_API char* ToAnsi(StringView text, char* bytes) noexcept;

}  // namespace quorl
