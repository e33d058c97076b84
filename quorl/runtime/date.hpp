// Points in time on the calendar: days from 1899-12-30, the fraction being the time of day.
//
// Below 0 the fraction still counts forward from midnight: -1.25 is 1899-12-29 at 06:00, and -0.25
// and 0.25 are the same moment. For reading and writing dates as text see date_text.hpp.
#pragma once

#include <compare>

#include "quorl/runtime/types.hpp"

namespace quorl {

/// A count of days; a plain value. The calendar reaches from 0100-01-01 (-657434) to 9999-12-31
/// (2958465); conversions to `Date` keep to it, the constructor takes any Double.
class Date {
 public:
  constexpr Date() noexcept = default;
  constexpr explicit Date(Double days) noexcept : days_(days) {}

  constexpr Double Days() const noexcept { return days_; }

  friend constexpr auto operator<=>(Date, Date) noexcept = default;

 private:
  Double days_ = 0;
};

/// A moment as people write it, to the second, in the proleptic Gregorian calendar.
struct CalendarTime {
  int year = 1899;
  int month = 12;
  int day = 30;
  int hour = 0;
  int minute = 0;
  int second = 0;

  friend bool operator==(const CalendarTime&, const CalendarTime&) = default;
};

/// True for a year from 100 to 9999, a month and a day that exist in it, and a time of day.
QUORL_API bool IsValid(const CalendarTime& time) noexcept;

/// The date of a valid time.
QUORL_API Date DateOf(const CalendarTime& time) noexcept;

/// The nearest second of `date`; the last second of 9999 is not rounded past.
/// Failure 6 for a date outside the calendar, NaN and infinities.
QUORL_API CalendarTime CalendarTimeOf(Date date);

/// True if `days` lies in the calendar.
QUORL_API bool IsDateNumber(Double days) noexcept;

}  // namespace quorl
