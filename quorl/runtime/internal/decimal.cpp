#include "quorl/runtime/internal/decimal.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <string_view>

#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/raised_error.hpp"

namespace quorl::internal {
namespace {

// Exponents of ten, as in 1E+15, from and up to which plain digits are written.
constexpr int kSmallestPlain = -5;
constexpr int kSmallestWithExponent = 15;

// Drops zeros at both ends; a value without digits left becomes zero without a sign.
Decimal Normalized(bool negative, std::string_view digits, int point) {
  const std::size_t first = std::min(digits.find_first_not_of('0'), digits.size());
  digits.remove_prefix(first);
  digits = digits.substr(0, digits.find_last_not_of('0') + 1);
  if (digits.empty()) return {};
  Decimal value;
  value.negative = negative;
  value.count = static_cast<int>(digits.size());
  value.point = point - static_cast<int>(first);
  std::ranges::copy(digits, value.digits.begin());
  return value;
}

template <class Floating>
Decimal ShortestDigits(Floating number) {
  if (!std::isfinite(number)) Raise(FailureNumber::kOverflow);
  std::array<char, 32> buffer;  // "d.ddddde-xxx" of the absolute value
  const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(),
                                     std::fabs(number), std::chars_format::scientific);
  const std::string_view text(buffer.data(), static_cast<std::size_t>(written.ptr - buffer.data()));
  // The exponent has two digits or three.
  const std::size_t mark = text.size() - (text[text.size() - 4] == 'e' ? 4 : 5);
  int exponent = 0;
  for (const char digit : text.substr(mark + 2)) exponent = exponent * 10 + (digit - '0');
  if (text[mark + 1] == '-') exponent = -exponent;
  std::array<char, 24> digits{text[0]};
  const std::string_view after_point = mark > 1 ? text.substr(2, mark - 2) : std::string_view{};
  std::ranges::copy(after_point, digits.begin() + 1);
  return Normalized(std::signbit(number), {digits.data(), 1 + after_point.size()}, exponent + 1);
}

Decimal ScaledDigits(std::int64_t units, int decimals) {
  std::array<char, 24> buffer{};
  const std::uint64_t magnitude =
      units < 0 ? 0U - static_cast<std::uint64_t>(units) : static_cast<std::uint64_t>(units);
  const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), magnitude);
  const auto length = written.ptr - buffer.data();
  return Normalized(units < 0, {buffer.data(), static_cast<std::size_t>(length)},
                    static_cast<int>(length) - decimals);
}

// Zeros all over, then the digits before the separator from the start on, those behind it up to the
// end.
void AppendPlain(String& text, const Decimal& value, StringView separator, LeadingZero zero) {
  const bool has_zero = value.point <= 0 && (zero == LeadingZero::kWritten || value.count == 0);
  const int whole = has_zero ? 1 : std::max(value.point, 0);
  const int decimals = std::max(value.count - value.point, 0);
  const int before = std::clamp(value.point, 0, value.count);
  const std::size_t gap = decimals > 0 ? separator.size() : 0, start = text.size();
  text.resize(start + static_cast<std::size_t>(whole + decimals) + gap, u'0');
  char16_t* const first = text.data() + start;
  std::copy_n(value.digits.begin(), before, first);
  std::copy_n(separator.begin(), gap, first + whole);
  std::copy(value.digits.begin() + before, value.digits.begin() + value.count,
            text.data() + text.size() - (value.count - before));
}

void AppendWithExponent(String& text, const Decimal& value, StringView separator) {
  Decimal mantissa = value;
  mantissa.point = 1;
  AppendPlain(text, mantissa, separator, LeadingZero::kWritten);
  const int exponent = value.point - 1;
  text += exponent < 0 ? u"E-" : u"E+";
  std::array<char, 8> buffer{};
  const auto written =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::abs(exponent));
  if (written.ptr - buffer.data() < 2) text.push_back(u'0');
  text.append(buffer.data(), written.ptr);
}

}  // namespace

Decimal DecimalOf(Double value) {
  // Two decimals of at most 15 digits never have the same nearest Double. So where one, with no
  // more decimals than an amount, has this Double, it is the shortest that has.
  constexpr Double kFifteenDigits = 1e15;
  constexpr int kDecimals = 4;
  constexpr Double kScale = 1e4;
  const Double scaled = std::fabs(value) * kScale + 0.5;
  if (scaled < kFifteenDigits) {
    const auto units = static_cast<std::int64_t>(scaled);
    if (static_cast<Double>(units) / kScale == std::fabs(value)) {
      return ScaledDigits(value < 0 ? -units : units, kDecimals);
    }
  }
  return ShortestDigits(value);
}
Decimal DecimalOf(Single value) { return ShortestDigits(value); }
Decimal DecimalOf(Currency value) { return ScaledDigits(value.TenThousandths(), 4); }
Decimal DecimalOf(std::int64_t value) { return ScaledDigits(value, 0); }

Decimal DecimalOf(const Variant& value) {
  if (const auto* byte = value.If<Byte>()) return DecimalOf(std::int64_t{*byte});
  if (const auto* small = value.If<Int16>()) return DecimalOf(std::int64_t{*small});
  if (const auto* whole = value.If<Int32>()) return DecimalOf(std::int64_t{*whole});
  if (const auto* single = value.If<Single>()) return DecimalOf(*single);
  if (const auto* currency = value.If<Currency>()) return DecimalOf(*currency);
  if (value.Holds<Object>()) return DecimalOf(PlainValueOf(value));
  return DecimalOf(ToDouble(value));
}

Decimal RoundedHalfAway(const Decimal& value, int places) {
  const int kept = value.point + places;  // how many of the digits stay
  if (kept >= value.count) return value;
  if (kept < 0) return {};
  std::array<char, 25> digits{'0'};
  const auto size = static_cast<std::size_t>(kept) + 1;  // a place in front for a carry
  std::copy_n(value.digits.begin(), kept, digits.begin() + 1);
  if (value.digits[static_cast<std::size_t>(kept)] >= '5') {
    std::size_t last = size - 1;
    while (digits[last] == '9') digits[last--] = '0';
    ++digits[last];
  }
  return Normalized(value.negative, {digits.data(), size}, value.point + 1);
}

void AppendShortest(String& text, const Decimal& value, StringView decimal_separator,
                    LeadingZero leading_zero) {
  if (value.negative) text.push_back(u'-');
  const int exponent = value.point - 1;
  if (value.count != 0 && (exponent < kSmallestPlain || exponent >= kSmallestWithExponent)) {
    AppendWithExponent(text, value, decimal_separator);
  } else {
    AppendPlain(text, value, decimal_separator, leading_zero);
  }
}

Currency CheckedCurrency(__int128 units) {
  if (units < Currency::Lowest().TenThousandths() || units > Currency::Highest().TenThousandths()) {
    Raise(FailureNumber::kOverflow);
  }
  return Currency::FromTenThousandths(static_cast<std::int64_t>(units));
}

__int128 DivideHalfEven(__int128 value, __int128 divisor) noexcept {
  const __int128 quotient = value / divisor;
  const __int128 remainder = value % divisor;
  const __int128 rest = remainder < 0 ? -remainder : remainder;
  const __int128 other = divisor - rest;
  if (rest < other || (rest == other && quotient % 2 == 0)) return quotient;
  return value < 0 ? quotient - 1 : quotient + 1;
}

}  // namespace quorl::internal
