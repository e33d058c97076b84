#include "quorl/runtime/number_text.hpp"

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdio>

#include "quorl/runtime/internal/text.hpp"
#include "tests/support/values.hpp"

namespace quorl {
namespace {

using namespace literals;

const auto kFrench = *Locale::Named(u"fr-FR"), kEnglish = *Locale::Named(u"en-US"),
           kGerman = *Locale::Named(u"de-DE"), kSwiss = *Locale::Named(u"de-CH");
const LocaleScope kNeutral{kEnglish};

TEST(NumberText, ReadsByTheLocale) {
  // Nothing behind "=" stands for no number.
  const std::pair<std::vector<Locale>, StringView> rows[] = {
      {{kFrench, kEnglish, kGerman, kSwiss},
       u"12=12|  -12  =-12|+1E3=1000|1e-3=.001|1e-330=0|=| "
       u"=|-=|+-1=|--1=|1-=|1-2=|12abc=|abc=|e5=|1e=|1e+="
       u"|1e5.5=|1e5e5=|1E 5=|&H10=|0x10=|\t1=|inf=|nan=|\uFF11="},
      {{kFrench},
       u"1,5=1.5|1.5=|1,234.56=|1.234,56=|1 234,56=1234.56|1\u00A0234\u202F567=1234567"
       u"|1'234=|,5=.5|5.=|0,1,2=|0.1.2=|- 5=-5"},
      {{kEnglish},
       u"1,5=15|1.5=1.5|1,234.56=1234.56|1.234,56=1.23456|1 234=|1\u00A0234=|1'234="
       u"|,5=5|5.=5|0,1,2=12|0.1.2=|- 5="},
      {{kGerman}, u"1,5=1.5|1.5=15|1,234.56=1.23456|1.234,56=1234.56|1 234=|0,1,2=|0.1.2=12"},
      {{kSwiss}, u"1,5=|1.5=1.5|1'234\u2019567=1234567|1,234.56=|1 234="}};
  for (const auto& [locales, cases] : rows) {
    for (const Locale& locale : locales) {
      for (const auto& [text, expected] : Pairs(cases)) {
        Double number = 0;
        const bool good = ReadDouble(text, locale, number) == NumberReading::kGood;
        EXPECT_EQ(good, !expected.empty()) << Shown(text);
        EXPECT_EQ(number, std::strtod(expected.c_str(), nullptr)) << Shown(text);
      }
    }
  }
}

TEST(NumberText, TestAgreesWithReadingOnAnyText) {
  Random random(5);
  Locale odd = kGerman;  // The blanks around a number are not its separators.
  odd.decimal_separator = u" ";
  for (const Locale& locale : {kFrench, kEnglish, kGerman, kSwiss, odd}) {
    const LocaleScope scope(locale);
    int good = 0;
    for (int i = 0; i < 20000; ++i) {
      const String text = random.Text(u" +-.,'0159eE\u00A0\u202F\u2019", 7);
      Double number = 0;
      const Failure failure = FailureOf([&] { number = ToDouble(Variant(text)); });
      ASSERT_EQ(IsNumber(text), failure == Failure{}) << Shown(text);
      if (failure != Failure{}) continue;
      ++good;
      // What was understood, written plainly, means the same to the language's own reader.
      std::string plain;
      for (const char16_t unit : internal::Trim(text)) {
        if (unit == locale.decimal_separator[0]) plain += '.';
        if (String(u"+-0159eE").find(unit) != String::npos) plain += static_cast<char>(unit);
      }
      ASSERT_EQ(number, std::strtod(plain.c_str(), nullptr)) << Shown(text);
    }
    EXPECT_GT(good, 500);
  }
}

TEST(NumberText, ManyDigitsDecideTiesBetweenDoubles) {
  // Half way between two Doubles, at full length, with a digit far behind it.
  Random random(6);
  for (int i = 0; i < 500; ++i) {
    const Double low = std::bit_cast<Double>(random.Bits() & 0x7FCFFFFFFFFFFFFF);
    const auto middle = (static_cast<long double>(low) + std::nextafter(low, kInfinity)) / 2;
    char tie[1500];
    std::snprintf(tie, sizeof tie, "%.1075Lf", middle);
    for (const std::string& text :
         {ExactText(low), std::string(tie), tie + std::string(900, '0') + '1'}) {
      Double read = 0;
      ASSERT_EQ(ReadDouble(Utf16(text), kEnglish, read), NumberReading::kGood);
      ASSERT_EQ(read, std::strtod(text.c_str(), nullptr)) << text;
    }
  }
}

TEST(NumberText, LeadingAndDottedNumbersAreTheSameInEveryLocale) {
  const LocaleScope scope(kFrench);
  for (const auto& [text, expected] :
       Pairs(u"=0|abc=0|-=0|.=0|-.e5=0|+-5=0|0x1F=0|1e-999=0|0e999999999999999999999=0|\u00A01=0"
             u"|\r1=0|1e=1|1e+=1|1ee5=1|+1=1|01=1|1,5=1|1e0x=1|1-3=1|\t\n 1=1|12.5.6=12.5"
             u"|1 2\t.\n5=12.5|125e-1=12.5|.125 e +2=12.5|- 1 . 5 e + 2x=-150|-150abc=-150"
             u"|1e308=1e308")) {
    EXPECT_EQ(ReadLeadingNumber(text), std::stod(expected)) << Shown(text);
  }
  EXPECT_RAISES(ReadLeadingNumber(u"1e309x"), RuntimeFailure(6));
  EXPECT_RAISES(ReadLeadingNumber(u"-9 e 99999999999999999999"), RuntimeFailure(6));
  const std::pair<Variant, std::string> dotted[] = {
      {0.5, " .5"},      {-1.25_cy, "-1.25"}, {12, " 12"},
      {-0.0, " 0"},      {true, "-1"},        {-1e20, "-1E+20"},
      {-0.1F, "-.1"},    {Date(1.5), " 1.5"}, {u"1 234,5", " 1234.5"},
      {u"1.5", "!13"},   {Null, "!94"},       {MakeObject<Holder>(1e-7), " 1E-07"},
      {kInfinity, "!6"}, {Missing, "!13"},    {Array::OfBytes({1}), "!13"}};
  for (const auto& [value, expected] : dotted) {
    EXPECT_EQ(ResultOf([&v = value] { return DottedNumber(v); }), expected) << Shown(value);
  }
}

TEST(NumberText, FormatsByDigitPlaces) {
  const std::pair<StringView, StringView> rows[] = {
      {u"0,000.0", u"1000.2=1,000.2|5=0,005.0|x=!13"},
      {u"#,##0.00", u"1234567.25=1,234,567.25|0=0.00|999.995=1,000.00"},
      {u"00000000", u"-42=-00000042|1234567890=1234567890"},
      {u"0.00", u"1.005=1.01|-0.004=0.00|-0.005=-0.01"},
      {u"0.0#", u"12.3=12.3|12.345=12.35"},
      {u"0#.0#", u"5=05.0|0.5=00.5"},
      {u"#.##", u"0.5=.5|0="},
      {u"", u"2.5=3|0="},
      {u"#,#", u"1E21=1,000,000,000,000,000,000,000"}};
  for (const auto& [format, cases] : rows) {
    for (const auto& [text, expected] : Pairs(cases)) {
      EXPECT_EQ(ResultOf([&f = format, &t = text] { return FormatNumber(t, f); }), expected)
          << Shown(text) << " in " << Shown(format);
    }
  }
  EXPECT_EQ(FormatNumber(-1234567.5, u"#,##0.0", kFrench), u"-1\u202F234\u202F567,5");
  EXPECT_EQ(FormatNumber(Currency::Lowest(), u"0.0000"), u"-922337203685477.5808");
  EXPECT_RAISES(FormatNumber(Null, u"0"), RuntimeFailure(94));
  EXPECT_RAISES(FormatNumber(kInfinity, u"0"), RuntimeFailure(6));
  for (const String& format : Cells(u"0.0.0|0.0,0|0 0|0%|-0|0E+00|\"0\"")) {
    EXPECT_RAISES(FormatNumber(1, format), RuntimeFailure(5)) << Shown(format);
  }
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
