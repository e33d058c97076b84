#include <algorithm>

#include "quorl/runtime/internal/decimal.hpp"
#include "quorl/runtime/internal/within_memory.hpp"
#include "quorl/runtime/number_text.hpp"

namespace quorl {

using namespace internal;
namespace {

// What a format asks for.
struct NumberFormat {
  int least_whole_digits = 0;
  int least_decimals = 0;
  int most_decimals = 0;
  bool grouped = false;
};

NumberFormat ParseFormat(StringView format) {
  NumberFormat parsed;
  bool after_point = false;
  for (const char16_t unit : format) {
    if (unit == u'.' && !after_point) {
      after_point = true;
    } else if (unit == u',' && !after_point) {
      parsed.grouped = true;
    } else if (unit != u'0' && unit != u'#') {
      Raise(FailureNumber::kInvalidArgument);
    } else if (after_point) {
      ++parsed.most_decimals;
      if (unit == u'0') parsed.least_decimals = parsed.most_decimals;
    } else if (unit == u'0' || parsed.least_whole_digits > 0) {
      ++parsed.least_whole_digits;  // a place after a filled one is filled too
    }
  }
  return parsed;
}

// The digits from one place down to another, with a separator before every third of the whole part
// if there is one.
char16_t* WriteDigits(char16_t* out, const Decimal& value, int highest, int lowest,
                      StringView separator) {
  for (int place = highest; place >= lowest; --place) {
    *out++ = static_cast<char16_t>(value.DigitAt(place));
    if (place > 0 && place % 3 == 0) out = std::ranges::copy(separator, out).out;
  }
  return out;
}

}  // namespace

String FormatNumber(const Variant& value, StringView format, const Locale& locale) {
  const NumberFormat parsed = ParseFormat(format);
  const Decimal rounded = RoundedHalfAway(DecimalOf(value), parsed.most_decimals);
  const int whole = std::max({rounded.point, parsed.least_whole_digits, 0});
  const int decimals = std::max({rounded.count - rounded.point, parsed.least_decimals, 0});
  const StringView point = decimals > 0 ? StringView(locale.decimal_separator) : u"";
  const StringView thousand = parsed.grouped ? StringView(locale.thousand_separator) : u"";
  const std::size_t groups = whole > 0 ? static_cast<std::size_t>(whole - 1) / 3 : 0;
  const std::size_t length = (rounded.negative ? 1 : 0) + static_cast<std::size_t>(whole) +
                             groups * thousand.size() + point.size() +
                             static_cast<std::size_t>(decimals);
  String text = WithinMemory([&] { return String(length, u'-'); });
  char16_t* out = text.data() + (rounded.negative ? 1 : 0);
  out = WriteDigits(out, rounded, whole - 1, 0, thousand);
  out = std::ranges::copy(point, out).out;
  WriteDigits(out, rounded, -1, -decimals, {});
  return text;
}

}  // namespace quorl
