#include "quorl/runtime/number_text.hpp"

#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>

#include "quorl/runtime/convert.hpp"
#include "tests/support/cells.hpp"
#include "tests/support/decimal_text.hpp"
#include "tests/support/holder.hpp"
#include "tests/support/print.hpp"
#include "tests/support/raises.hpp"
#include "tests/support/random.hpp"

namespace quorl {
namespace {

using namespace literals;

const Locale kFrench = *Locale::Named(u"fr-FR");
const Locale kEnglish = *Locale::Named(u"en-US");
const Locale kGerman = *Locale::Named(u"de-DE");
const Locale kSwiss = *Locale::Named(u"de-CH");
const LocaleScope kNeutral{kEnglish};

TEST(NumberText, ReadsByTheLocale) {
  struct Case {
    StringView text;
    Double french, english, german, swiss;
  };
  constexpr Double kNone = std::numeric_limits<Double>::quiet_NaN();
  for (const Case& c : {
           Case{u"12", 12, 12, 12, 12},
           {u"  -12  ", -12, -12, -12, -12},
           {u"+1E3", 1000, 1000, 1000, 1000},
           {u"1e-3", .001, .001, .001, .001},
           {u"1,5", 1.5, 15, 1.5, kNone},
           {u"1.5", kNone, 1.5, 15, 1.5},
           {u"1,234.56", kNone, 1234.56, 1.23456, kNone},
           {u"1.234,56", kNone, 1.23456, 1234.56, kNone},
           {u"1 234,56", 1234.56, kNone, kNone, kNone},
           {u"1\u00A0234\u202F567", 1234567, kNone, kNone, kNone},
           {u"1'234\u2019567", kNone, kNone, kNone, 1234567},
           {u",5", .5, 5, .5, kNone},
           {u"5.", kNone, 5, 5, 5},
           {u"0,1,2", kNone, 12, kNone, kNone},
           {u"0.1.2", kNone, kNone, 12, kNone},
           {u"- 5", -5, kNone, kNone, kNone},
       }) {
    const std::pair<const Locale&, Double> readings[] = {
        {kFrench, c.french}, {kEnglish, c.english}, {kGerman, c.german}, {kSwiss, c.swiss}};
    for (const auto& [locale, expected] : readings) {
      Double number = kNone;
      const NumberReading reading = ReadDouble(c.text, locale, number);
      EXPECT_EQ(reading == NumberReading::kGood, !std::isnan(expected)) << Shown(c.text);
      EXPECT_TRUE(number == expected || std::isnan(expected)) << Shown(c.text) << number;
    }
  }
  for (const String& text :
       Cells(u"| |-|+-1|--1|1-|1-2|12abc|abc|e5|1e|1e+|1e5.5|1e5e5|1E 5|&H10|0x10"
             u"|\t1|inf|nan|\uFF11")) {
    for (const Locale& locale : {kFrench, kEnglish, kGerman, kSwiss}) {
      EXPECT_FALSE(IsNumber(text, locale)) << Shown(text);
    }
  }
}

TEST(NumberText, TestAgreesWithReadingOnAnyText) {
  Random random(5);
  for (const Locale& locale : {kFrench, kEnglish, kGerman, kSwiss}) {
    const LocaleScope scope(locale);
    int good = 0;
    for (int i = 0; i < 20000; ++i) {
      const String text = random.Text(u" +-.,'0159eE\u00A0\u202F\u2019", 7);
      Double number = 0;
      const Failure failure = FailureOf([&] { number = ToDouble(Variant(text)); });
      ASSERT_EQ(IsNumber(text), failure == Failure{}) << Shown(text);
      ASSERT_TRUE(failure == Failure{} || failure.number == 13 || failure.number == 6);
      if (failure != Failure{}) continue;
      ++good;
      // What was understood, written plainly, means the same to the language's own reader.
      std::string plain;
      for (const char16_t unit : text) {
        if (StringView(locale.decimal_separator).find(unit) == 0)
          plain += '.';
        else if (StringView(u"+-0159eE").find(unit) != StringView::npos)
          plain += Utf8({&unit, 1});
      }
      ASSERT_EQ(number, std::strtod(plain.c_str(), nullptr)) << Shown(text);
    }
    EXPECT_GT(good, 500);
  }
}

TEST(NumberText, ManyDigitsDecideTiesBetweenDoubles) {
  // Half way between two Doubles, at full length, with a digit far behind it.
  Random random(6);
  for (int i = 0; i < 200; ++i) {
    const Double low = std::bit_cast<Double>(random.Bits() & 0x7FCFFFFFFFFFFFFF);
    const Double high = std::nextafter(low, std::numeric_limits<Double>::infinity());
    const std::string tie = ExactText(std::ldexp(low, -1) + std::ldexp(high, -1));
    for (std::string text :
         {ExactText(low), ExactText(high), tie, tie + std::string(900, '0') + '1'}) {
      Double read = 0;
      ASSERT_EQ(ReadDouble(Utf16(text), kEnglish, read), NumberReading::kGood);
      ASSERT_EQ(read, std::strtod(text.c_str(), nullptr)) << text;
    }
  }
}

TEST(NumberText, LeadingNumberStopsWhereItEnds) {
  const LocaleScope scope(kFrench);  // which plays no part
  const std::pair<Double, StringView> cases[] = {
      {0, u"|abc|-|.|-.e5|+-5|0x1F|1e-999|0e999999999999999999999|\u00A01|\r1"},
      {1, u"1e|1e+|1ee5|1|+1|01|1,5|1e0x|1-3|\t\n 1"},
      {12.5, u"12.5.6|1 2\t.\n5|125e-1|.125 e +2"},
      {-150, u"- 1 . 5 e + 2x|-150abc"},
      {1e308, u"1e308"},
  };
  for (const auto& [expected, texts] : cases) {
    for (const String& text : Cells(texts)) {
      EXPECT_EQ(ReadLeadingNumber(text), expected) << Shown(text);
    }
  }
  for (const StringView text : {u"1e309x", u"-9 e 99999999999999999999"}) {
    EXPECT_RAISES(ReadLeadingNumber(text), RuntimeFailure(6)) << Shown(text);
  }
}

TEST(NumberText, DottedNumberInEveryLocale) {
  const LocaleScope scope(kFrench);
  const std::pair<Variant, StringView> cases[] = {
      {0.5, u" .5"},
      {-0.5, u"-.5"},
      {12, u" 12"},
      {-1.25_cy, u"-1.25"},
      {0, u" 0"},
      {-0.0, u" 0"},
      {Empty, u" 0"},
      {true, u"-1"},
      {1e-7, u" 1E-07"},
      {-1e20, u"-1E+20"},
      {u"1 234,5", u" 1234.5"},
      {Date(1.5), u" 1.5"},
      {0.1F, u" .1"},
      {MakeObject<Holder>(0.5), u" .5"},
  };
  for (const auto& [value, expected] : cases)
    EXPECT_EQ(DottedNumber(value), String(expected)) << Shown(value);
  EXPECT_RAISES(DottedNumber(u"1.5"), RuntimeFailure(13));
  EXPECT_RAISES(DottedNumber(Null), RuntimeFailure(94));
  EXPECT_RAISES(DottedNumber(std::numeric_limits<Double>::infinity()), RuntimeFailure(6));
}

TEST(NumberText, FormatsByDigitPlaces) {
  struct Case {
    Variant value;
    StringView format, english, french;
  };
  for (const Case& c : {
           Case{1000.2, u"0,000.0", u"1,000.2", u"1\u202F000,2"},
           {5, u"0,000.0", u"0,005.0", u"0\u202F005,0"},
           {1234567.25, u"#,##0.00", u"1,234,567.25", u"1\u202F234\u202F567,25"},
           {0, u"#,##0.00", u"0.00", u"0,00"},
           {-42, u"00000000", u"-00000042", u"-00000042"},
           {1234567890, u"00000000", u"1234567890", u"1234567890"},
           {1.005, u"0.00", u"1.01", u"1,01"},
           {-0.004, u"0.00", u"0.00", u"0,00"},
           {-0.005, u"0.00", u"-0.01", u"-0,01"},
           {999.995_cy, u"0,000.00", u"1,000.00", u"1\u202F000,00"},
           {0.5, u"#.##", u".5", u",5"},
           {12.3, u"0.0#", u"12.3", u"12,3"},
           {12.345, u"0.0#", u"12.35", u"12,35"},
           {0, u"#", u"", u""},
           {2.5, u"", u"3", u"3"},
           {1e21, u"#,#", u"1,000,000,000,000,000,000,000",
            u"1\u202F000\u202F000\u202F000\u202F000\u202F000\u202F000\u202F000"},
           {Currency::Lowest(), u"0.0000", u"-922337203685477.5808", u"-922337203685477,5808"},
           {Empty, u"00", u"00", u"00"},
           {true, u"0.0", u"-1.0", u"-1,0"},
           {u"7", u"000", u"007", u"007"},
       }) {
    EXPECT_EQ(FormatNumber(c.value, c.format, kEnglish), String(c.english))
        << Shown(c.value) << " in " << Shown(c.format);
    EXPECT_EQ(FormatNumber(c.value, c.format, kFrench), String(c.french))
        << Shown(c.value) << " in " << Shown(c.format);
  }
  for (const StringView format : {u"0.0.0", u"0.0,0", u"0 0", u"0%", u"-0", u"0E+00", u"\"0\""}) {
    EXPECT_RAISES(FormatNumber(1, format), RuntimeFailure(5)) << Shown(format);
  }
  EXPECT_RAISES(FormatNumber(Null, u"0"), RuntimeFailure(94));
  EXPECT_RAISES(FormatNumber(u"x", u"0"), RuntimeFailure(13));
  EXPECT_RAISES(FormatNumber(std::numeric_limits<Double>::infinity(), u"0"), RuntimeFailure(6));
}

TEST(NumberText, FormattingRoundsDecimalDigitsAwayFromZero) {
  Random random(7);
  for (int i = 0; i < 20000; ++i) {
    const auto units = static_cast<Double>(random.Whole(0, std::int64_t{1} << random.Whole(1, 53)));
    const Double value = units / std::pow(10.0, static_cast<Double>(random.Whole(0, 12)));
    const auto places = static_cast<std::size_t>(random.Whole(1, 6));
    char shortest[400];
    const auto end =
        std::to_chars(shortest, shortest + sizeof shortest, value, std::chars_format::fixed).ptr;
    EXPECT_EQ(Utf8(FormatNumber(value, u"0." + String(places, u'0'))),
              RoundedText({shortest, end}, places, Ties::kAwayFromZero));
  }
}

}  // namespace
}  // namespace quorl
