#include "quorl/runtime/date_text.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "quorl/runtime/convert.hpp"
#include "tests/support/cells.hpp"
#include "tests/support/print.hpp"
#include "tests/support/raises.hpp"
#include "tests/support/random.hpp"

namespace quorl {
namespace {

const Locale kFrench = *Locale::Named(u"fr-FR");
const Locale kAmerican = *Locale::Named(u"en-US");
const Locale kNeutral;
const Locale kDotted = {
    .date_order = DateOrder::kDayMonthYear, .date_separator = u". ", .time_separator = u"."};

constexpr int kFirstDay = -657434;
constexpr int kLastDay = 2958465;

// Steps from one day to the next as a wall calendar does.
void Advance(CalendarTime& time) {
  const int last = time.month == 2 ? (time.year % (time.year % 100 == 0 ? 400 : 4) == 0 ? 29 : 28)
                                   : 30 + (time.month + time.month / 8) % 2;
  if (++time.day <= last) return;
  time.day = 1;
  if (++time.month <= 12) return;
  time.month = 1;
  ++time.year;
}

TEST(Date, EveryDayOfTheCalendar) {
  CalendarTime expected{100, 1, 1};
  for (int day = kFirstDay; day <= kLastDay; ++day, Advance(expected)) {
    const Date date(day);
    ASSERT_EQ(CalendarTimeOf(date), expected) << day;
    ASSERT_EQ(DateOf(expected), date) << day;
    if (day % 7 != 0) continue;
    for (const Locale& locale : {kFrench, kAmerican, kNeutral, kDotted}) {
      ASSERT_EQ(ReadDate(WriteDate(date, locale), locale), date) << Shown(WriteDate(date, locale));
    }
  }
  EXPECT_EQ(expected, (CalendarTime{10000, 1, 1}));
}

TEST(Date, EverySecondGoesThereAndBack) {
  Random random(8);
  for (int i = 0; i < 60000; ++i) {
    const int day =
        static_cast<int>(i % 3 == 0 ? random.Whole(-2, 2) : random.Whole(kFirstDay, kLastDay));
    CalendarTime time = CalendarTimeOf(Date(day));
    time.hour = static_cast<int>(random.Whole(0, 23));
    time.minute = static_cast<int>(random.Whole(0, 59));
    time.second = static_cast<int>(random.Whole(0, 59));
    const Date date = DateOf(time);
    ASSERT_EQ(CalendarTimeOf(date), time);
    for (const Locale& locale : {kFrench, kAmerican, kNeutral, kDotted}) {
      const LocaleScope scope(locale);
      ASSERT_EQ(ToDate(Variant(ToString(date))), date) << Shown(ToString(date));
    }
  }
}

TEST(Date, FractionsBelowZeroCountForward) {
  const std::pair<Double, StringView> cases[] = {
      {0, u"00:00:00"},
      {-0.25, u"06:00:00"},
      {0.25, u"06:00:00"},
      {-1.25, u"29/12/1899 06:00:00"},
      {-1, u"29/12/1899"},
      {1.5, u"31/12/1899 12:00:00"},
      {0.999999, u"31/12/1899"},  // rounded to the second
      {-1.999999, u"00:00:00"},
      {-657434.75, u"01/01/0100 18:00:00"},
      {2958465.9999999, u"31/12/9999 23:59:59"},  // never rounded past the calendar
      {45351.5208333333, u"29/02/2024 12:30:00"},
  };
  for (const auto& [days, expected] : cases)
    EXPECT_EQ(WriteDate(Date(days), kFrench), String(expected)) << days;
  for (const Double days :
       {-657435.0, 2958466.0, 1e300, -1e300, std::numeric_limits<Double>::infinity(),
        std::numeric_limits<Double>::quiet_NaN()}) {
    EXPECT_FALSE(IsDateNumber(days)) << days;
    EXPECT_RAISES(WriteDate(Date(days), kFrench), RuntimeFailure(6)) << days;
    EXPECT_RAISES(CalendarTimeOf(Date(days)), RuntimeFailure(6)) << days;
    EXPECT_RAISES(ToDate(days), RuntimeFailure(6)) << days;
  }
}

// A date as year-month-day, with a time of day if it has one; "-" for none.
std::string Read(StringView text, const Locale& locale) {
  const auto date = ReadDate(text, locale);
  EXPECT_EQ(IsDate(text, locale), date.has_value()) << Shown(text);
  return date ? Utf8(WriteDate(*date, kNeutral)) : "-";
}

TEST(DateText, ReadsByTheLocalesOrderAndNoOther) {
  struct Case {
    StringView text;
    const char *french, *american, *neutral;
  };
  for (const Case& c : {
           Case{u"1/2/2024", "2024-02-01", "2024-01-02", "-"},
           {u" 01.02.2024 ", "2024-02-01", "2024-01-02", "-"},
           {u"1- 2- 2024", "2024-02-01", "2024-01-02", "-"},
           {u"13/2/2024", "2024-02-13", "-", "-"},
           {u"2/13/2024", "-", "2024-02-13", "-"},
           {u"2024-02-13", "2024-02-13", "2024-02-13", "2024-02-13"},
           {u"2024/2/3", "2024-02-03", "2024-02-03", "2024-02-03"},
           {u"24-02-13", "2013-02-24", "-", "2024-02-13"},
           {u"1/2/29", "2029-02-01", "2029-01-02", "-"},
           {u"1/2/30", "1930-02-01", "1930-01-02", "-"},
           {u"1/2/03", "2003-02-01", "2003-01-02", "-"},
           {u"1/1/0100", "0100-01-01", "0100-01-01", "-"},
           {u"29/2/2000", "2000-02-29", "-", "-"},
           {u"12:30", "12:30:00", "12:30:00", "12:30:00"},
           {u"1:2:3", "01:02:03", "01:02:03", "01:02:03"},
           {u"12:05 am", "00:05:00", "00:05:00", "00:05:00"},
           {u"12:05:06PM", "12:05:06", "12:05:06", "12:05:06"},
           {u"2024-02-13 11:59 pm", "2024-02-13 23:59:00", "2024-02-13 23:59:00",
            "2024-02-13 23:59:00"},
       }) {
    EXPECT_EQ(Read(c.text, kFrench), c.french) << Shown(c.text);
    EXPECT_EQ(Read(c.text, kAmerican), c.american) << Shown(c.text);
    EXPECT_EQ(Read(c.text, kNeutral), c.neutral) << Shown(c.text);
  }
  for (const String& text : Cells(
           u"| |1|1/2|2/2024|1/2/3|1/2/024|1/2/20245|1/2/0099|0/1/2024|1/0/2024|31/4/2024|29/2/2023"
           u"|29/2/1900|1/2-2024|1//2/2024|1/2/2024/|/1/2/2024|1/2/2024x|001/2/2024|1 /2/2024"
           u"|1/2/2024 12|1/2/202412:30|1/2/2024 24:00|12:60|12:30:60|12:|:30|12:3:|13:00 am|0:30 "
           u"pm"
           u"|12:30 xm|12:30 a|12 pm|-1:30|12:030|1/2/2024T12:30|12,5|\t1/2/2024")) {
    EXPECT_EQ(Read(text, kFrench), "-") << Shown(text);
  }
}

TEST(DateText, TestAgreesWithConversionOnAnyText) {
  Random random(9);
  for (const Locale& locale : {kFrench, kAmerican, kNeutral, kDotted}) {
    const LocaleScope scope(locale);
    int good = 0;
    for (int i = 0; i < 30000; ++i) {
      const String text = random.Text(u"0129/-.: ", 10);
      const Failure failure = FailureOf([&] { ToDate(Variant(text)); });
      ASSERT_EQ(failure, IsDate(text) ? Failure{} : RuntimeFailure(13)) << Shown(text);
      if (failure == Failure{}) ++good;
    }
    EXPECT_GT(good, 20);
  }
}

}  // namespace
}  // namespace quorl
