#include "quorl/runtime/number_text.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <string_view>

#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/internal/decimal.hpp"
#include "quorl/runtime/internal/exact.hpp"
#include "quorl/runtime/internal/scanner.hpp"
#include "quorl/runtime/internal/text.hpp"
#include "quorl/runtime/internal/within_memory.hpp"

namespace quorl {

using namespace internal;
namespace {

// The digits of a text on their way to a number: 0.digits times 10 to the power `point`. Reading
// allocates nothing, however long the text is.
class ScannedNumber {
 public:
  bool negative = false;
  bool any_digit = false;
  std::int64_t point = 0;

  // The digits kept, without zeros in front; none for zero.
  std::string_view Digits() const { return {digits_.data(), count_}; }

  void AddDigit(char16_t unit, bool after_point) {
    any_digit = true;
    if (count_ == 0 && unit == u'0') {
      if (after_point) --point;
      return;
    }
    if (!after_point) ++point;
    if (count_ < kMostDigits) {
      digits_[count_++] = static_cast<char>(unit);
    } else if (unit != u'0' && digits_[kMostDigits - 1] == '0') {
      digits_[kMostDigits - 1] = '1';  // something follows: enough to tell on which side of a tie
    }
  }

  // "digits e exponent", with the point after the last digit.
  std::string_view WithExponent() {
    char* const end = digits_.data() + count_;
    *end = 'e';
    const std::int64_t exponent = point - static_cast<std::int64_t>(count_);
    const auto written = std::to_chars(end + 1, digits_.data() + digits_.size(), exponent);
    return {digits_.data(), written.ptr};
  }

 private:
  // No tie between two Doubles has more than 767 digits.
  static constexpr std::size_t kMostDigits = 800;

  std::array<char, kMostDigits + 24> digits_;
  std::size_t count_ = 0;
};

// Reads a sign; True if it was a minus.
bool TakeSign(Scanner& scanner) {
  if (scanner.Take(u"-")) return true;
  scanner.Take(u"+");
  return false;
}

// Reads an exponent if one stands here whole: a letter, a sign, at least one digit.
std::int64_t TakeExponent(Scanner& scanner) {
  // Beyond this no exponent can bring any number of digits that fits memory back into range.
  constexpr std::int64_t kMost = std::int64_t{1} << 40;
  Scanner ahead = scanner;
  if (!ahead.Take(u"E") && !ahead.Take(u"e")) return 0;
  const bool negative = TakeSign(ahead);
  if (ahead.AtEnd() || !IsDigit(ahead.Unit())) return 0;
  std::int64_t exponent = 0;
  for (; !ahead.AtEnd() && IsDigit(ahead.Unit()); ahead.Step()) {
    exponent = std::min(kMost, exponent * 10 + (ahead.Unit() - u'0'));
  }
  scanner = ahead;
  return negative ? -exponent : exponent;
}

// The thousand separator of a locale, with what people type in its place.
class ThousandSeparator {
 public:
  explicit ThousandSeparator(StringView separator) : separator_(separator) {
    for (const StringView family : {kBlanks, kApostrophes}) {
      if (separator.size() == 1 && family.find(separator[0]) != StringView::npos) family_ = family;
    }
  }

  bool TakeFrom(Scanner& scanner) const {
    if (scanner.Take(separator_)) return true;
    if (family_.find(scanner.Unit()) == StringView::npos) return false;
    scanner.Step();
    return true;
  }

 private:
  static constexpr StringView kBlanks = u" \u00A0\u202F";
  static constexpr StringView kApostrophes = u"'\u2019";

  StringView separator_;
  StringView family_;
};

// Reads sign, digits, separators and exponent as far as they go; false without a digit.
bool TakeNumber(Scanner& scanner, StringView decimal_separator, const ThousandSeparator& thousand,
                ScannedNumber& number) {
  bool after_point = false;
  number.negative = TakeSign(scanner);
  while (!scanner.AtEnd()) {
    if (IsDigit(scanner.Unit())) {
      number.AddDigit(scanner.Unit(), after_point);
      scanner.Step();
    } else if (!after_point && scanner.Take(decimal_separator)) {
      after_point = true;
    } else if (!thousand.TakeFrom(scanner)) {
      break;
    }
  }
  if (!number.any_digit) return false;
  number.point += TakeExponent(scanner);
  return true;
}

// The nearest Double; false beyond the range.
bool ToNearest(ScannedNumber& number, Double& out) {
  constexpr std::int64_t kFarOut = 400;
  const bool zero = number.Digits().empty();
  Double magnitude = 0;
  if (!zero && number.point > kFarOut) return false;
  if (!zero && number.point > -kFarOut) {
    const std::string_view text = number.WithExponent();
    const auto read = std::from_chars(text.data(), text.data() + text.size(), magnitude);
    if (read.ec == std::errc::result_out_of_range) {
      if (number.point > 0) return false;
      magnitude = 0;
    }
  }
  out = number.negative ? -magnitude : magnitude;
  return true;
}

// Whether a number cut after `kept` digits is rounded away from zero, ties to even.
bool RoundsUp(std::string_view digits, std::size_t kept, bool odd) {
  if (kept >= digits.size() || digits[kept] < '5') return false;
  if (digits[kept] > '5') return true;
  return odd || digits.find_first_not_of('0', kept + 1) != std::string_view::npos;
}

// The nearest ten-thousandth; false beyond the range.
bool ToNearest(ScannedNumber& number, Currency& out) {
  constexpr std::int64_t kMostDigits = 19;  // of the highest amount, in ten-thousandths
  const std::string_view digits = number.Digits();
  const std::int64_t kept = digits.empty() ? 0 : number.point + 4;
  if (kept > kMostDigits) return false;
  std::uint64_t units = 0;
  for (std::int64_t i = 0; i < kept; ++i) {
    const auto index = static_cast<std::size_t>(i);
    const char digit = index < digits.size() ? digits[index] : '0';
    units = units * 10 + static_cast<std::uint64_t>(digit - '0');
  }
  if (kept >= 0 && RoundsUp(digits, static_cast<std::size_t>(kept), units % 2 != 0)) ++units;
  const std::uint64_t most = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  if (units > most + (number.negative ? 1 : 0)) return false;
  out =
      Currency::FromTenThousandths(static_cast<std::int64_t>(number.negative ? 0 - units : units));
  return true;
}

// What most texts are: a sign, then digits with separators of one unit each. Whatever it takes
// means the same in the general way, which all other texts go.
class PlainNumber {
 public:
  bool Take(StringView text, const Locale& locale) {
    if (text.empty() || text.size() > kMostUnits || locale.decimal_separator.size() != 1) {
      return false;
    }
    const char16_t point = locale.decimal_separator[0];
    const StringView thousand = locale.thousand_separator;
    negative = text[0] == u'-';
    if (negative || text[0] == u'+') text.remove_prefix(1);
    // In locals: to the compiler, a `char` that is written may change any member.
    std::uint64_t number = 0;
    char* end = text_.data();
    const char* kept_point = nullptr;
    for (const char16_t unit : text) {
      if (IsDigit(unit)) {
        number = number * 10 + (unit - u'0');
        *end++ = static_cast<char>(unit);
      } else if (unit == point && kept_point == nullptr) {
        kept_point = end;
        *end++ = '.';
      } else if (thousand.size() != 1 || unit != thousand[0]) {
        return false;
      }
    }
    units = number;
    count_ = static_cast<std::size_t>(end - text_.data());
    decimals = kept_point == nullptr ? 0 : static_cast<int>(end - kept_point) - 1;
    digits = static_cast<int>(count_) - (kept_point == nullptr ? 0 : 1);
    return digits > 0;
  }

  /// Digits and point in the C locale.
  std::string_view Text() const { return {text_.data(), count_}; }

  bool negative = false;
  int digits = 0;
  int decimals = 0;
  std::uint64_t units = 0;  // the digits as one number, right for up to 19 of them

 private:
  static constexpr std::size_t kMostUnits = 40;

  std::array<char, kMostUnits> text_;
  std::size_t count_ = 0;
};

// False where the general way has to decide.
bool ToNearest(const PlainNumber& number, Double& out) {
  constexpr int kExactDigits = 15;
  Double magnitude = 0;
  if (number.digits <= kExactDigits) {
    // Both are exact as Doubles, and one division rounds once.
    magnitude =
        static_cast<Double>(number.units) / kExactPowers[static_cast<std::size_t>(number.decimals)];
  } else {
    const std::string_view text = number.Text();
    std::from_chars(text.data(), text.data() + text.size(), magnitude);
  }
  out = number.negative ? -magnitude : magnitude;
  return true;
}

bool ToNearest(const PlainNumber& number, Currency& out) {
  constexpr std::array<std::int64_t, 5> kPowers{10000, 1000, 100, 10, 1};
  if (number.decimals > 4 || number.digits + 4 - number.decimals > 18) return false;
  const std::int64_t size =
      static_cast<std::int64_t>(number.units) * kPowers[static_cast<std::size_t>(number.decimals)];
  out = Currency::FromTenThousandths(number.negative ? -size : size);
  return true;
}

template <class Number>
NumberReading Read(StringView text, const Locale& locale, Number& out) {
  const StringView trimmed = Trim(text);
  PlainNumber plain;
  if (plain.Take(trimmed, locale) && ToNearest(plain, out)) return NumberReading::kGood;
  Scanner scanner(trimmed);
  ScannedNumber number;
  const ThousandSeparator thousand(locale.thousand_separator);
  const bool taken = TakeNumber(scanner, locale.decimal_separator, thousand, number);
  if (!taken || !scanner.AtEnd()) return NumberReading::kNotANumber;
  return ToNearest(number, out) ? NumberReading::kGood : NumberReading::kOutOfRange;
}

}  // namespace

NumberReading ReadDouble(StringView text, const Locale& locale, Double& out) {
  return Read(text, locale, out);
}

NumberReading ReadCurrency(StringView text, const Locale& locale, Currency& out) {
  return Read(text, locale, out);
}

bool IsNumber(StringView text, const Locale& locale) {
  Double ignored = 0;
  return ReadDouble(text, locale, ignored) == NumberReading::kGood;
}

Double ReadLeadingNumber(StringView text) {
  Scanner scanner(text, u" \t\n");
  ScannedNumber number;
  if (!TakeNumber(scanner, u".", ThousandSeparator({}), number)) return 0;
  Double value = 0;
  if (!ToNearest(number, value)) Raise(FailureNumber::kOverflow);
  return value;
}

String DottedNumber(const Variant& value) {
  const Decimal decimal = DecimalOf(value);
  return WithinMemory([&] {
    String text = decimal.negative ? u"" : u" ";
    AppendShortest(text, decimal, u".", LeadingZero::kLeftOut);
    return text;
  });
}

}  // namespace quorl
