// Hexadecimal digits, written and read.
#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "quorl/runtime/types.hpp"

namespace quorl::internal {

inline constexpr std::string_view kHexDigits = "0123456789ABCDEF";
inline constexpr std::string_view kSmallHexDigits = "0123456789abcdef";

/// The two digits of a byte, the high one first.
template <class Unit>
constexpr std::array<Unit, 2> HexPair(Byte byte, std::string_view digits = kHexDigits) noexcept {
  return {static_cast<Unit>(digits[byte / 16]), static_cast<Unit>(digits[byte % 16])};
}

/// The value of a digit, in either case; none for any other unit.
constexpr std::optional<Byte> HexValue(char16_t unit) noexcept {
  if (unit >= u'0' && unit <= u'9') return static_cast<Byte>(unit - u'0');
  if (unit >= u'A' && unit <= u'F') return static_cast<Byte>(unit - u'A' + 10);
  if (unit >= u'a' && unit <= u'f') return static_cast<Byte>(unit - u'a' + 10);
  return std::nullopt;
}

}  // namespace quorl::internal
