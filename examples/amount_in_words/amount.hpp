// Amounts as people write them.
#pragma once

#include <cstddef>

#include "quorl/runtime/currency.hpp"

namespace amounts {

inline constexpr std::size_t kMostDecimals = 4;

constexpr bool IsDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

constexpr bool IsBlank(char16_t unit) {
  return unit == u' ' || unit == u'\u00A0' || unit == u'\u202F';
}

quorl::StringView WithoutBlanks(quorl::StringView text);

/// Throws a Problem for what is no amount.
quorl::Currency ReadAmount(quorl::StringView text);

}  // namespace amounts
