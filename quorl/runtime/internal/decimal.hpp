// Decimal digits of a number: the one form from which every number is written.
#pragma once

#include <array>
#include <cstdint>

#include "quorl/runtime/variant.hpp"

namespace quorl::internal {

/// The value 0.d1d2...dn times 10 to the power `point`, without zeros at either end; zero has no
/// digits and no sign.
struct Decimal {
  bool negative = false;
  int count = 0;
  int point = 0;
  std::array<char, 24> digits{};

  /// The digit at a place: 0 is the one just before the decimal point, -1 the first after it.
  char DigitAt(int place) const noexcept {
    const int index = point - 1 - place;
    return index >= 0 && index < count ? digits[static_cast<std::size_t>(index)] : '0';
  }
};

/// The fewest digits that read back as the same value. Failure 6 for NaN and infinities.
Decimal DecimalOf(Double value);
Decimal DecimalOf(Single value);
/// Exact.
Decimal DecimalOf(Currency value);
Decimal DecimalOf(std::int64_t value);
/// Of a number by its own type, of anything else by its conversion to Double.
Decimal DecimalOf(const Variant& value);

/// `value` with at most `places` digits after the point, half away from zero.
Decimal RoundedHalfAway(const Decimal& value, int places);

/// Whether a text form has its digit 0 before a point that nothing else stands before.
enum class LeadingZero { kWritten, kLeftOut };

/// Appends the shortest form: plain digits from 1E-5 up to below 1E+15, otherwise with an exponent.
void AppendShortest(String& text, const Decimal& value, StringView decimal_separator,
                    LeadingZero leading_zero);

/// The amount of so many ten-thousandths. Failure 6 beyond the range.
Currency CheckedCurrency(__int128 units);

/// Half-even quotient; `divisor` is positive.
__int128 DivideHalfEven(__int128 value, __int128 divisor) noexcept;

}  // namespace quorl::internal
