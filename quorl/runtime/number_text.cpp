#include "quorl/runtime/number_text.hpp"

#include <algorithm>
#include <charconv>
#include <limits>
#include <string>

#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/decimal.hpp"
#include "quorl/runtime/raised_error.hpp"
#include "quorl/runtime/text.hpp"

namespace quorl {
namespace {

bool IsDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

// The digits of a text on their way to a number: 0.digits times 10 to the power `point`.
struct ScannedNumber {
  bool negative = false;
  bool any_digit = false;
  std::string digits;  // without zeros in front
  std::int64_t point = 0;

  void AddDigit(char16_t unit, bool behind_point) {
    any_digit = true;
    if (!digits.empty() || unit != u'0') {
      digits.push_back(static_cast<char>(unit));
      if (!behind_point) ++point;
    } else if (behind_point) {
      --point;
    }
  }
};

// Walks a text from left to right.
class Scanner {
 public:
  explicit Scanner(StringView text) : text_(text) {}

  bool AtEnd() const { return at_ == text_.size(); }
  char16_t Unit() const { return text_[at_]; }
  void Step() { ++at_; }

  bool Take(StringView expected) {
    if (expected.empty() || !text_.substr(at_).starts_with(expected)) return false;
    at_ += expected.size();
    return true;
  }

  // Reads a sign; True if it was a minus.
  bool TakeSign() {
    if (Take(u"-")) return true;
    Take(u"+");
    return false;
  }

  // Reads an exponent if one stands here whole: a letter, a sign, at least one digit.
  std::int64_t TakeExponent() {
    // Beyond this no exponent can bring any number of digits that fits memory back into range.
    constexpr std::int64_t kMost = std::int64_t{1} << 40;
    const std::size_t before = at_;
    if (!Take(u"E") && !Take(u"e")) return 0;
    const bool negative = TakeSign();
    const std::size_t first_digit = at_;
    std::int64_t exponent = 0;
    for (; !AtEnd() && IsDigit(Unit()); Step()) {
      exponent = std::min(kMost, exponent * 10 + (Unit() - u'0'));
    }
    if (at_ == first_digit) at_ = before;
    return negative ? -exponent : exponent;
  }

 private:
  StringView text_;
  std::size_t at_ = 0;
};

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

// Reads sign, digits, separators and exponent; true if that is all of `text`.
bool Scan(StringView text, const Locale& locale, ScannedNumber& number) {
  const ThousandSeparator thousand(locale.thousand_separator);
  Scanner scanner(Trim(text));
  bool behind_point = false;
  number.negative = scanner.TakeSign();
  while (!scanner.AtEnd()) {
    if (IsDigit(scanner.Unit())) {
      number.AddDigit(scanner.Unit(), behind_point);
      scanner.Step();
    } else if (!behind_point && scanner.Take(locale.decimal_separator)) {
      behind_point = true;
    } else if (!thousand.TakeFrom(scanner)) {
      break;
    }
  }
  if (!number.any_digit) return false;
  number.point += scanner.TakeExponent();
  return scanner.AtEnd();
}

// The nearest Double; false beyond the range.
bool ToNearestDouble(const ScannedNumber& number, Double& out) {
  constexpr std::int64_t kFarOut = 400;
  Double magnitude = 0;
  if (number.point > kFarOut && !number.digits.empty()) return false;
  if (!number.digits.empty() && number.point > -kFarOut) {
    const std::int64_t exponent = number.point - static_cast<std::int64_t>(number.digits.size());
    const std::string ascii = number.digits + 'e' + std::to_string(exponent);
    const auto read = std::from_chars(ascii.data(), ascii.data() + ascii.size(), magnitude);
    if (read.ec == std::errc::result_out_of_range) {
      if (number.point > 0) return false;
      magnitude = 0;
    }
  }
  out = number.negative ? -magnitude : magnitude;
  return true;
}

// Whether a number cut behind `kept` digits is rounded away from zero, ties to even.
bool RoundsUp(const std::string& digits, std::size_t kept, bool odd) {
  if (kept >= digits.size() || digits[kept] < '5') return false;
  if (digits[kept] > '5') return true;
  return odd || digits.find_first_not_of('0', kept + 1) != std::string::npos;
}

// The nearest ten-thousandth; false beyond the range.
bool ToNearestCurrency(const ScannedNumber& number, Currency& out) {
  constexpr std::int64_t kMostDigits = 19;  // of the highest amount, in ten-thousandths
  const std::int64_t kept = number.point + 4;
  std::uint64_t units = 0;
  if (!number.digits.empty() && kept > kMostDigits) return false;
  for (std::int64_t i = 0; i < kept; ++i) {
    const auto index = static_cast<std::size_t>(i);
    const char digit = index < number.digits.size() ? number.digits[index] : '0';
    units = units * 10 + static_cast<std::uint64_t>(digit - '0');
  }
  if (kept >= 0 && RoundsUp(number.digits, static_cast<std::size_t>(kept), units % 2 != 0)) ++units;
  const std::uint64_t most = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  if (units > most + (number.negative ? 1 : 0)) return false;
  out =
      Currency::FromTenThousandths(static_cast<std::int64_t>(number.negative ? 0 - units : units));
  return true;
}

template <class Number>
NumberReading Read(StringView text, const Locale& locale,
                   bool (*nearest)(const ScannedNumber&, Number&), Number& out) {
  ScannedNumber number;
  if (!WithinMemory([&] { return Scan(text, locale, number); })) return NumberReading::kNotANumber;
  return nearest(number, out) ? NumberReading::kGood : NumberReading::kOutOfRange;
}

bool IsPassedOver(char16_t unit) { return unit == u' ' || unit == u'\t' || unit == u'\n'; }

}  // namespace

NumberReading ReadDouble(StringView text, const Locale& locale, Double& out) {
  return Read(text, locale, ToNearestDouble, out);
}

NumberReading ReadCurrency(StringView text, const Locale& locale, Currency& out) {
  return Read(text, locale, ToNearestCurrency, out);
}

bool IsNumber(StringView text, const Locale& locale) {
  Double ignored = 0;
  return ReadDouble(text, locale, ignored) == NumberReading::kGood;
}

Double ReadLeadingNumber(StringView text) {
  String dense;
  WithinMemory([&] { dense.reserve(text.size()); });
  std::ranges::remove_copy_if(text, std::back_inserter(dense), IsPassedOver);
  Scanner scanner(dense);
  ScannedNumber number;
  bool behind_point = false;
  number.negative = scanner.TakeSign();
  while (!scanner.AtEnd()) {
    if (IsDigit(scanner.Unit())) {
      number.AddDigit(scanner.Unit(), behind_point);
      scanner.Step();
    } else if (!behind_point && scanner.Take(u".")) {
      behind_point = true;
    } else {
      break;
    }
  }
  if (!number.any_digit) return 0;
  number.point += scanner.TakeExponent();
  Double value = 0;
  if (!ToNearestDouble(number, value)) Raise(FailureNumber::kOverflow);
  return value;
}

String DottedNumber(const Variant& value) {
  const Decimal decimal = DecimalOf(value);
  String text = decimal.negative ? u"" : u" ";
  AppendShortest(text, decimal, u".", LeadingZero::kLeftOut);
  return text;
}

}  // namespace quorl
