// Money amounts: a signed 64-bit count of ten-thousandths, exact from end to end. For reading and
// writing one as text see convert.hpp; for writing one in words see quorl/money/money.hpp.
#pragma once

#include <compare>
#include <cstdint>
#include <limits>

#include "quorl/runtime/types.hpp"

namespace quorl {

/// From -922337203685477.5808 to 922337203685477.5807, in steps of 0.0001. A plain value.
///
///     Currency price = Currency::FromTenThousandths(12345600);  // 1234.56
///     Currency same = 1234.56_cy;                               // read digit by digit, exact
class Currency {
 public:
  /// How many ten-thousandths make one.
  static constexpr std::int64_t kScale = 10000;

  constexpr Currency() noexcept = default;
  /// A whole amount; every Int32 fits.
  constexpr explicit Currency(Int32 whole) noexcept : units_(whole * kScale) {}

  /// The amount that is `units` ten-thousandths.
  static constexpr Currency FromTenThousandths(std::int64_t units) noexcept {
    Currency value;
    value.units_ = units;
    return value;
  }
  static constexpr Currency Lowest() noexcept {
    return FromTenThousandths(std::numeric_limits<std::int64_t>::min());
  }
  static constexpr Currency Highest() noexcept {
    return FromTenThousandths(std::numeric_limits<std::int64_t>::max());
  }

  /// The amount in ten-thousandths.
  constexpr std::int64_t TenThousandths() const noexcept { return units_; }

  friend constexpr auto operator<=>(Currency, Currency) noexcept = default;

 private:
  std::int64_t units_ = 0;
};

namespace literals {

namespace detail {

// Reads "1234.5678" digit by digit. A literal that is no amount does not compile: the throw is not
// a constant expression.
consteval std::int64_t TenThousandthsOf(const char* digits) {
  constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
  std::int64_t units = 0;
  int decimals = -1;
  for (; *digits != '\0'; ++digits) {
    if (*digits == '\'') continue;
    if (*digits == '.' && decimals < 0) {
      decimals = 0;
      continue;
    }
    if (*digits < '0' || *digits > '9' || decimals == 4) throw "not an amount";
    const std::int64_t digit = *digits - '0';
    if (units > (kMost - digit) / 10) throw "amount out of range";
    units = units * 10 + digit;
    if (decimals >= 0) ++decimals;
  }
  for (decimals = decimals < 0 ? 0 : decimals; decimals < 4; ++decimals) {
    if (units > kMost / 10) throw "amount out of range";
    units *= 10;
  }
  return units;
}

}  // namespace detail

/// `1234.56_cy`: an amount with at most four decimals, checked when it is compiled.
consteval Currency operator""_cy(const char* digits) {
  return Currency::FromTenThousandths(detail::TenThousandthsOf(digits));
}

}  // namespace literals

constexpr Currency operator-(Currency amount) noexcept {
  // The lowest amount has no counterpart and stays what it is.
  return Currency::FromTenThousandths(
      static_cast<std::int64_t>(0U - static_cast<std::uint64_t>(amount.TenThousandths())));
}

}  // namespace quorl
