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

void AppendWholePart(String& text, const Decimal& value, const NumberFormat& format,
                     StringView thousand_separator) {
  for (int place = std::max(value.point, format.least_whole_digits) - 1; place >= 0; --place) {
    text.push_back(static_cast<char16_t>(value.DigitAt(place)));
    if (format.grouped && place > 0 && place % 3 == 0) text += thousand_separator;
  }
}

void AppendDecimals(String& text, const Decimal& value, const NumberFormat& format,
                    StringView decimal_separator) {
  const int decimals = std::max(format.least_decimals, value.count - value.point);
  if (decimals <= 0) return;
  text += decimal_separator;
  for (int place = -1; place >= -decimals; --place) {
    text.push_back(static_cast<char16_t>(value.DigitAt(place)));
  }
}

}  // namespace

String FormatNumber(const Variant& value, StringView format, const Locale& locale) {
  const NumberFormat parsed = ParseFormat(format);
  const Decimal rounded = RoundedHalfAway(DecimalOf(value), parsed.most_decimals);
  return WithinMemory([&] {
    String text = rounded.negative ? u"-" : u"";
    AppendWholePart(text, rounded, parsed, locale.thousand_separator);
    AppendDecimals(text, rounded, parsed, locale.decimal_separator);
    return text;
  });
}

}  // namespace quorl
