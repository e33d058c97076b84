#include "quorl/runtime/date_text.hpp"

#include <chrono>
#include <cstdlib>

#include "quorl/numeric/dates.hpp"
#include "tests/support/values.hpp"

namespace quorl {
namespace {

const Locale kFrench = *Locale::Named(u"fr-FR");
const Locale kAmerican = *Locale::Named(u"en-US");
const Locale kNeutral;
const Locale kLocales[] = {
    kFrench,
    kAmerican,
    kNeutral,
    {.date_order = DateOrder::kDayMonthYear, .date_separator = u". ", .time_separator = u"."}};

TEST(Date, EveryDayOfTheCalendarGoesThereAndBackInEveryLocale) {
  Random random(8);
  for (int number = -657434; number <= 2958465; ++number) {
    constexpr int kEpoch = 25569;  // the standard library's day 0
    using std::chrono::days;
    const std::chrono::year_month_day date{std::chrono::sys_days(days(number - kEpoch))};
    const CalendarTime day{static_cast<int>(date.year()),
                           static_cast<int>(static_cast<unsigned>(date.month())),
                           static_cast<int>(static_cast<unsigned>(date.day()))};
    ASSERT_EQ(CalendarTimeOf(Date(number)), day) << number;
    ASSERT_EQ(DateOf(day), Date(number)) << number;
    if (number % 7 != 0 && std::abs(number) > 2) continue;
    const auto second = static_cast<int>(random.Whole(0, 86399));
    CalendarTime time{day.year, day.month, day.day, second / 3600, second / 60 % 60, second % 60};
    if (number % 2 == 0) time = day;
    ASSERT_EQ(CalendarTimeOf(DateOf(time)), time);
    for (const Locale& locale : kLocales) {
      const String text = WriteDate(DateOf(time), locale);
      ASSERT_EQ(ReadDate(text, locale), DateOf(time)) << Shown(text);
    }
  }
}

TEST(Date, FractionsBelowZeroCountForward) {
  // Rounded to the second, and never past the calendar.
  for (const auto& [days, expected] :
       Pairs(u"0=00:00:00|-0.25=06:00:00|-1.25=29/12/1899 06:00:00|-1=29/12/1899"
             u"|1.5=31/12/1899 12:00:00|0.999999=31/12/1899|-1.999999=00:00:00"
             u"|-657434.75=01/01/0100 18:00:00|2958465.9999999=31/12/9999 23:59:59"
             u"|45351.5208333333=29/02/2024 12:30:00")) {
    EXPECT_EQ(Utf8(WriteDate(Date(std::stod(Utf8(days))), kFrench)), expected) << Shown(days);
  }
  for (const Double days : {-657435.0, 2958466.0, 1e300, -kInfinity, kNaN}) {
    EXPECT_FALSE(IsDateNumber(days)) << days;
    EXPECT_RAISES(WriteDate(Date(days), kFrench), RuntimeFailure(6)) << days;
    EXPECT_RAISES(ToDate(days), RuntimeFailure(6)) << days;
  }
}

TEST(DateText, ReadsByTheLocalesOrderAndNoOther) {
  // Behind "=" the date as year-month-day, with a time of day if it has one; nothing for no date.
  const std::pair<std::vector<Locale>, StringView> rows[] = {
      {{kFrench, kAmerican, kNeutral},
       u"2024-02-13=2024-02-13|2024/2/3=2024-02-03|12:30=12:30:00|1:2:3=01:02:03|12:05 am=00:05:00"
       u"|12:05:06PM=12:05:06|2024-02-13 11:59 pm=2024-02-13 23:59:00|=| =|1=|1/2=|2/2024=|1/2/3="
       u"|1/2/024=|1/2/20245=|1/2/0099=|0/1/2024=|1/0/2024=|31/4/2024=|29/2/2023=|29/2/1900="
       u"|1/2-2024=|1//2/2024=|1/2/2024/=|/1/2/2024=|1/2/2024x=|001/2/2024=|1 /2/2024=|1/2/2024 12="
       u"|1/2/202412:30=|1/2/2024 24:00=|12:60=|12:30:60=|12:=|:30=|12:3:=|13:00 am=|0:30 pm="
       u"|12:30 xm=|12:30 a=|12 pm=|-1:30=|12:030=|1/2/2024T12:30=|12,5=|\t1/2/2024=|\t="
       u"| \u00A0 ="},
      {{kFrench},
       u"1/2/2024=2024-02-01| 01.02.2024 =2024-02-01|1- 2- 2024=2024-02-01|13/2/2024=2024-02-13"
       u"|2/13/2024=|24-02-13=2013-02-24|1/2/29=2029-02-01|1/2/30=1930-02-01|1/1/0100=0100-01-01"
       u"|29/2/2000=2000-02-29"},
      {{kAmerican},
       u"1/2/2024=2024-01-02|1- 2- 2024=2024-01-02|13/2/2024=|2/13/2024=2024-02-13|24-02-13="
       u"|1/2/03=2003-01-02"},
      {{kNeutral},
       u"1/2/2024=|13/2/2024=|24-02-13=2024-02-13|1/2/29=|29/2/1=2029-02-01|29/2/29=|30/12/"
       u"1=1930-12-01"}};
  for (const auto& [locales, cases] : rows) {
    for (const Locale& locale : locales) {
      for (const auto& [text, expected] : Pairs(cases)) {
        const auto date = ReadDate(text, locale);
        EXPECT_EQ(date ? Utf8(WriteDate(*date, kNeutral)) : "", expected) << Shown(text);
        EXPECT_EQ(IsDate(text, locale), !expected.empty()) << Shown(text);
        const bool is_blank = text.find_first_not_of(u' ') == text.npos;
        EXPECT_EQ((LocaleScope(locale), Dates::IsDateOrEmpty(text)), is_blank || !expected.empty())
            << Shown(text);
      }
    }
  }
}

}  // namespace
}  // namespace quorl
