// Money amounts: a signed 64-bit count of ten-thousandths, exact from end to end. For an amount
// from a text or a Double see `ToCurrency` in convert.hpp, for its text `ToString` there; for
// writing one in words see quorl/money/money.hpp.
#pragma once

#include <compare>
#include <concepts>
#include <cstdint>
#include <limits>
#include <utility>

#include "quorl/runtime/raised_error.hpp"
#include "quorl/runtime/types.hpp"

namespace quorl {

/// An integer type of any width and sign; a truth value and a character are none.
template <class Whole>
concept WholeNumber =
    std::integral<Whole> && !std::same_as<Whole, bool> && !std::same_as<Whole, char> &&
    !std::same_as<Whole, char8_t> && !std::same_as<Whole, char16_t> &&
    !std::same_as<Whole, char32_t> && !std::same_as<Whole, wchar_t>;

/// From -922337203685477.5808 to 922337203685477.5807, in steps of 0.0001. A plain value.
///
///     Currency price = Currency::FromTenThousandths(12345600);  // 1234.56
///     Currency same = 1234.56_cy;                               // read digit by digit, exact
///     Currency whole(1234);                                     // 1234
///     Currency read = ToCurrency(u"1234,56");                   // by the locale, exact
///     Currency nearest = ToCurrency(1234.56);                   // a Double is rounded
class Currency {
 public:
  /// How many ten-thousandths make one.
  static constexpr std::int64_t kScale = 10000;

  constexpr Currency() noexcept = default;
  /// A whole amount. Failure 6 beyond ±922337203685477; every Int32 fits. Nothing but a whole
  /// number gets in: `Currency(1234.56)` does not compile.
  template <WholeNumber Whole>
  constexpr explicit Currency(Whole whole) noexcept(sizeof(Whole) <= sizeof(Int32))
      : units_(UnitsOf(whole)) {}

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
  template <WholeNumber Whole>
  static constexpr std::int64_t UnitsOf(Whole whole) {
    constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max() / kScale;
    if (std::cmp_greater(whole, kMost) || std::cmp_less(whole, -kMost)) {
      Raise(FailureNumber::kOverflow);
    }
    return static_cast<std::int64_t>(whole) * kScale;
  }

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
