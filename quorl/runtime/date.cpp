#include "quorl/runtime/date.hpp"

#include <cmath>

#include "quorl/runtime/raised_error.hpp"

namespace quorl {
namespace {

constexpr Double kFirstDay = -657434;      // 0100-01-01
constexpr Double kAfterLastDay = 2958466;  // 10000-01-01
constexpr int kSecondsADay = 86400;
constexpr int kDaysToEpoch = 693899;  // from 0000-03-01 to 1899-12-30

bool IsLeapYear(int year) { return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0; }

int DaysInMonth(int year, int month) {
  if (month == 2) return IsLeapYear(year) ? 29 : 28;
  return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
}

// Days count from 1 March, so that the leap day is the last of its year and each month's first day
// is a linear function of the month.
int DayNumber(int year, int month, int day) {
  const int shifted_year = month <= 2 ? year - 1 : year;
  const int shifted_month = month <= 2 ? month + 9 : month - 3;
  const int leap_days = shifted_year / 4 - shifted_year / 100 + shifted_year / 400;
  return 365 * shifted_year + leap_days + (153 * shifted_month + 2) / 5 + day - 1 - kDaysToEpoch;
}

CalendarTime CalendarDay(int number) {
  constexpr int kDaysIn400Years = 146097;
  const int days = number + kDaysToEpoch;  // never negative inside the calendar
  const int era = days / kDaysIn400Years;
  const int day_of_era = days % kDaysIn400Years;
  const int year_of_era =
      (day_of_era - day_of_era / 1460 + day_of_era / 36524 - day_of_era / 146096) / 365;
  const int day_of_year = day_of_era - (365 * year_of_era + year_of_era / 4 - year_of_era / 100);
  const int shifted_month = (5 * day_of_year + 2) / 153;
  CalendarTime time;
  time.day = day_of_year - (153 * shifted_month + 2) / 5 + 1;
  time.month = shifted_month < 10 ? shifted_month + 3 : shifted_month - 9;
  time.year = era * 400 + year_of_era + (time.month <= 2 ? 1 : 0);
  return time;
}

}  // namespace

bool IsValid(const CalendarTime& time) noexcept {
  return time.year >= 100 && time.year <= 9999 && time.month >= 1 && time.month <= 12 &&
         time.day >= 1 && time.day <= DaysInMonth(time.year, time.month) && time.hour >= 0 &&
         time.hour <= 23 && time.minute >= 0 && time.minute <= 59 && time.second >= 0 &&
         time.second <= 59;
}

Date DateOf(const CalendarTime& time) noexcept {
  const Double days = DayNumber(time.year, time.month, time.day);
  const int seconds = (time.hour * 60 + time.minute) * 60 + time.second;
  const Double fraction = static_cast<Double>(seconds) / kSecondsADay;
  return Date(days < 0 ? days - fraction : days + fraction);
}

bool IsDateNumber(Double days) noexcept { return days > kFirstDay - 1 && days < kAfterLastDay; }

CalendarTime CalendarTimeOf(Date date) {
  if (!IsDateNumber(date.Days())) Raise(FailureNumber::kOverflow);
  const Double whole = std::trunc(date.Days());
  const Double fraction = std::fabs(date.Days() - whole);
  int day = static_cast<int>(whole);
  int seconds = static_cast<int>(std::lround(fraction * kSecondsADay));
  if (seconds == kSecondsADay) {
    const bool at_the_end = whole + 1 >= kAfterLastDay;
    day += at_the_end ? 0 : 1;
    seconds = at_the_end ? kSecondsADay - 1 : 0;
  }
  CalendarTime time = CalendarDay(day);
  time.hour = seconds / 3600;
  time.minute = seconds / 60 % 60;
  time.second = seconds % 60;
  return time;
}

}  // namespace quorl
