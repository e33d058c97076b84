// Dates as text, by a locale.
//
// Written: the date in the locale's order with a four-digit year and two-digit month and day, then,
// unless it is midnight, a blank and the time of day in 24 hours to the second. A date of
// 1899-12-30 is written as its time alone, midnight too.
//
// Read: the same forms, one or two digits for day, month, hour, minute and second; the separators
// "/", "-", "." and the locale's for dates, ":" and the locale's for times; seconds may be missing;
// "am" or "pm" may follow a time of 1 to 12 hours. A year is four digits, or two: 00 to 29 is 2000
// to 2029, 30 to 99 is 1930 to 1999. A date that begins with a four-digit year is year, month, day
// in every locale. Blanks around are skipped. A date without a year is no date, and nothing is
// swapped or guessed: what does not fit the order is refused. Blanks may follow a date's separator.
#pragma once

#include <optional>

#include "quorl/runtime/date.hpp"
#include "quorl/runtime/locale.hpp"

namespace quorl {

/// The date that `text` holds, or none.
QUORL_API std::optional<Date> ReadDate(StringView text, const Locale& locale = Locale::Current());
/// The test for a date: True exactly when `ReadDate` gives one.
QUORL_API bool IsDate(StringView text, const Locale& locale = Locale::Current());
/// The text of a date, rounded to the second; `ReadDate` gives the same moment back. Failure 6
/// outside the calendar, 7 where memory is short.
QUORL_API String WriteDate(Date date, const Locale& locale = Locale::Current());

}  // namespace quorl
