#include "quorl/runtime/date_text.hpp"

#include <array>
#include <cstddef>

#include "quorl/runtime/internal/scanner.hpp"
#include "quorl/runtime/internal/text.hpp"
#include "quorl/runtime/internal/within_memory.hpp"
#include "quorl/runtime/text_case.hpp"

namespace quorl {

using namespace internal;
namespace {

constexpr std::size_t kYearDigits = 4;

// A run of digits, with its length: "05" is not "5" where a year is meant.
struct Field {
  int value = 0;
  std::size_t digits = 0;

  bool IsDayOrSo() const { return digits == 1 || digits == 2; }
};

bool TakeBlanks(Scanner& scanner) {
  const bool stands_here = !scanner.AtEnd() && scanner.Unit() == kBlank;
  scanner = Scanner(TrimLeading(scanner.Rest()));
  return stands_here;
}

// Digits as far as they go, but no more than a year has: the next one is refused as a separator.
Field TakeField(Scanner& scanner) {
  Field field;
  while (field.digits < kYearDigits && !scanner.AtEnd() && IsDigit(scanner.Unit())) {
    field.value = field.value * 10 + (scanner.Unit() - u'0');
    ++field.digits;
    scanner.Step();
  }
  return field;
}

// The separator that stands here, with blanks after it; empty if none does.
StringView TakeDateSeparator(Scanner& scanner, const Locale& locale) {
  for (const StringView separator :
       {StringView(locale.date_separator), StringView(u"/"), StringView(u"-"), StringView(u".")}) {
    if (scanner.Take(separator)) {
      TakeBlanks(scanner);
      return separator;
    }
  }
  return {};
}

bool TakeTimeSeparator(Scanner& scanner, const Locale& locale) {
  return scanner.Take(locale.time_separator) || scanner.Take(u":");
}

// Reads "am" or "pm" in any case, with blanks before it: 'a', 'p', or 0 where neither stands.
char16_t TakeHalfDay(Scanner& scanner) {
  Scanner ahead = scanner;
  TakeBlanks(ahead);
  const StringView mark = ahead.Rest().substr(0, 2);
  if (!EqualsIgnoringCase(mark, u"am") && !EqualsIgnoringCase(mark, u"pm")) return 0;
  ahead.Step(mark.size());
  scanner = ahead;
  return LowerCase(mark[0]);
}

// The year that a field means, 0 for none.
int YearOf(const Field& field) {
  constexpr int kFirstOfLastCentury = 30;
  if (field.digits == kYearDigits) return field.value;
  if (field.digits != 2) return 0;
  return field.value < kFirstOfLastCentury ? 2000 + field.value : 1900 + field.value;
}

bool SetDate(const std::array<Field, 3>& fields, DateOrder order, CalendarTime& time) {
  // Where year, month and day stand among the fields.
  struct Places {
    std::size_t year, month, day;
  };
  Places places{2, 1, 0};
  if (order == DateOrder::kMonthDayYear) places = {2, 0, 1};
  if (order == DateOrder::kYearMonthDay) places = {0, 1, 2};
  if (!fields[places.month].IsDayOrSo() || !fields[places.day].IsDayOrSo()) return false;
  time.year = YearOf(fields[places.year]);
  time.month = fields[places.month].value;
  time.day = fields[places.day].value;
  return true;
}

// Reads a date whose first field has been read.
bool TakeDate(Scanner& scanner, const Field& first, const Locale& locale, CalendarTime& time) {
  std::array<Field, 3> fields{first};
  const StringView separator = TakeDateSeparator(scanner, locale);
  fields[1] = TakeField(scanner);
  if (separator.empty() || !scanner.Take(separator)) return false;
  TakeBlanks(scanner);
  fields[2] = TakeField(scanner);
  const bool year_first = first.digits == kYearDigits;
  return SetDate(fields, year_first ? DateOrder::kYearMonthDay : locale.date_order, time);
}

bool ApplyHalfDay(char16_t half, CalendarTime& time) {
  if (half == 0) return true;
  if (time.hour < 1 || time.hour > 12) return false;
  time.hour = time.hour % 12 + (half == u'p' ? 12 : 0);
  return true;
}

// Reads a time of day whose hour has been read, to the end of the text.
bool TakeTime(Scanner& scanner, const Field& hour, const Locale& locale, CalendarTime& time) {
  if (!hour.IsDayOrSo() || !TakeTimeSeparator(scanner, locale)) return false;
  const Field minute = TakeField(scanner);
  if (!minute.IsDayOrSo()) return false;
  time.hour = hour.value;
  time.minute = minute.value;
  if (TakeTimeSeparator(scanner, locale)) {
    const Field second = TakeField(scanner);
    if (!second.IsDayOrSo()) return false;
    time.second = second.value;
  }
  return ApplyHalfDay(TakeHalfDay(scanner), time) && scanner.AtEnd();
}

bool TakeAll(Scanner& scanner, const Locale& locale, CalendarTime& time) {
  const Field first = TakeField(scanner);
  Scanner as_time = scanner;
  if (TakeTime(as_time, first, locale, time)) return true;
  time = {};
  if (!TakeDate(scanner, first, locale, time)) return false;
  if (scanner.AtEnd()) return true;
  return TakeBlanks(scanner) && TakeTime(scanner, TakeField(scanner), locale, time);
}

void AppendPadded(String& text, int value, int digits) {
  for (int divisor = digits == 4 ? 1000 : 10; divisor > 0; divisor /= 10) {
    text.push_back(static_cast<char16_t>(u'0' + value / divisor % 10));
  }
}

void AppendDate(String& text, const CalendarTime& time, const Locale& locale) {
  struct Part {
    int value;
    int digits;
  };
  const Part year{time.year, 4};
  const Part month{time.month, 2};
  const Part day{time.day, 2};
  std::array<Part, 3> parts{day, month, year};
  if (locale.date_order == DateOrder::kMonthDayYear) parts = {month, day, year};
  if (locale.date_order == DateOrder::kYearMonthDay) parts = {year, month, day};
  for (const Part& part : parts) {
    if (&part != parts.data()) text += locale.date_separator;
    AppendPadded(text, part.value, part.digits);
  }
}

void AppendTime(String& text, const CalendarTime& time, const Locale& locale) {
  AppendPadded(text, time.hour, 2);
  text += locale.time_separator;
  AppendPadded(text, time.minute, 2);
  text += locale.time_separator;
  AppendPadded(text, time.second, 2);
}

bool IsMidnight(const CalendarTime& time) {
  return time.hour == 0 && time.minute == 0 && time.second == 0;
}

}  // namespace

std::optional<Date> ReadDate(StringView text, const Locale& locale) {
  Scanner scanner(Trim(text));
  CalendarTime time;
  if (!TakeAll(scanner, locale, time) || !IsValid(time)) return std::nullopt;
  return DateOf(time);
}

bool IsDate(StringView text, const Locale& locale) { return ReadDate(text, locale).has_value(); }

String WriteDate(Date date, const Locale& locale) {
  const CalendarTime time = CalendarTimeOf(date);
  const CalendarTime day_zero;
  const bool time_alone =
      time.year == day_zero.year && time.month == day_zero.month && time.day == day_zero.day;
  return WithinMemory([&] {
    String text;
    if (!time_alone) AppendDate(text, time, locale);
    if (time_alone || !IsMidnight(time)) {
      if (!text.empty()) text.push_back(u' ');
      AppendTime(text, time, locale);
    }
    return text;
  });
}

}  // namespace quorl
