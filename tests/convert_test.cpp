#include "quorl/runtime/convert.hpp"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <sstream>
#include <vector>

#include "quorl/runtime/date_text.hpp"
#include "tests/support/cells.hpp"
#include "tests/support/decimal_text.hpp"
#include "tests/support/holder.hpp"
#include "tests/support/print.hpp"
#include "tests/support/raises.hpp"
#include "tests/support/random.hpp"

namespace quorl {
namespace {

using namespace literals;

const LocaleScope kNeutral{Locale()};
const Locale kFrench = *Locale::Named(u"fr-FR");
const Locale kEnglish = *Locale::Named(u"en-GB");
const Locale kSwiss = *Locale::Named(u"de-CH");

constexpr Double kNaN = std::numeric_limits<Double>::quiet_NaN();
constexpr Double kInfinity = std::numeric_limits<Double>::infinity();

// A result, or "!" and the Number of the runtime's failure.
std::string Outcome(const Variant& value, VariantType type) {
  Variant result;
  const Failure failure = FailureOf([&] { result = ConvertTo(value, type); });
  if (failure != Failure{}) {
    EXPECT_EQ(failure, RuntimeFailure(failure.number));
    return '!' + std::to_string(failure.number);
  }
  EXPECT_EQ(result.Type(), type) << Shown(value);
  if (const auto* text = result.If<String>()) return Utf8(*text);
  if (const auto* truth = result.If<Boolean>()) return *truth ? "true" : "false";
  const std::string shown = Shown(result);  // "Int16 5"
  return shown.substr(shown.find(' ') + 1);
}

TEST(Convert, EveryStateAndTypeToEveryType) {
  using enum VariantType;
  constexpr std::array kColumns{kByte,     kInt16, kInt32,   kSingle, kDouble,
                                kCurrency, kDate,  kBoolean, kString};
  // A cell a column; one cell alone counts for all of them.
  const std::pair<Variant, StringView> rows[] = {
      {Empty, u"0|0|0|0|0|0/10000|day 0 (00:00:00)|false|"},
      {Null, u"!94"},
      {Missing, u"!13"},
      {Array::OfBytes({1}), u"!13"},
      {Object(), u"!13"},
      {MakeObject<LateBound>(), u"!13"},
      {MakeObject<Holder>(Null), u"!94"},
      {MakeObject<Holder>(1), u"1|1|1|1|1|10000/10000|day 1 (1899-12-31)|true|1"},
      {Byte{1}, u"1|1|1|1|1|10000/10000|day 1 (1899-12-31)|true|1"},
      {Int16{-300}, u"!6|-300|-300|-300|-300|-3000000/10000|day -300 (1899-03-05)|true|-300"},
      {70000, u"!6|!6|70000|70000|70000|700000000/10000|day 70000 (2091-08-25)|true|70000"},
      {2.5F, u"2|2|2|2.5|2.5|25000/10000|day 2.5 (1900-01-01 12:00:00)|true|2.5"},
      {0.1F,
       u"0|0|0|0.10000000149011612|0.10000000149011612|1000/10000|day 0.10000000149011612 "
       u"(02:24:00)|true|0.1"},
      {-0.00005,
       u"0|0|0|-4.9999998736893758e-05|-5.0000000000000002e-05|-1/10000|day "
       u"-5.0000000000000002e-05 (00:00:04)|true|-0.00005"},
      {1e300, u"!6|!6|!6|!6|1.0000000000000001e+300|!6|!6|true|1E+300"},
      {kNaN, u"!6|!6|!6|!6|nan|!6|!6|!6|!6"},
      {kInfinity, u"!6|!6|!6|!6|inf|!6|!6|true|!6"},
      {1.5_cy, u"2|2|2|1.5|1.5|15000/10000|day 1.5 (1899-12-31 12:00:00)|true|1.5"},
      {Currency::Lowest(),
       u"!6|!6|!6|-922337180385280|-922337203685477.62|-9223372036854775808/"
       u"10000|!6|true|-922337203685477.5808"},
      {Date(-1.25),
       u"!6|-1|-1|-1.25|-1.25|-12500/10000|day -1.25 (1899-12-29 06:00:00)|true|1899-12-29 "
       u"06:00:00"},
      {Date(kNaN), u"!6|!6|!6|!6|nan|!6|day nan|!6|!6"},
      {false, u"0|0|0|0|0|0/10000|day 0 (00:00:00)|false|False"},
      {true, u"!6|-1|-1|-1|-1|-10000/10000|day -1 (1899-12-29)|true|True"},
      {u" 2.5 ", u"2|2|2|2.5|2.5|25000/10000|!13|true| 2.5 "},
      {u"0", u"0|0|0|0|0|0/10000|!13|false|0"},
      {u"1E400", u"!6|!6|!6|!6|!6|!6|!13|!6|1E400"},
      {u"-1E309", u"!6|!6|!6|!6|!6|!6|!13|!6|-1E309"},
      {u" tRUE ", u"!13|!13|!13|!13|!13|!13|!13|true| tRUE "},
      {u"", u"!13|!13|!13|!13|!13|!13|!13|!13|"},
      {u"1900-01-01", u"!13|!13|!13|!13|!13|!13|day 2 (1900-01-01)|!13|1900-01-01"},
  };
  for (const auto& [source, expected] : rows) {
    const Variant& value = source;
    const std::vector<String> cells = Cells(expected);
    for (std::size_t i = 0; i < kColumns.size(); ++i) {
      EXPECT_EQ(Outcome(value, kColumns[i]), Utf8(cells[cells.size() == 1 ? 0 : i]))
          << Shown(value) << " to " << ::testing::PrintToString(kColumns[i]);
    }
    // What is no conversion at all: a copy, an object, and the states and types that nothing
    // becomes.
    if (!value.Holds<Double>() && !value.Holds<Date>()) {
      EXPECT_EQ(ConvertTo(value, kVariant), value);
    }
    for (const VariantType type : {kObject, kEmpty, kNull, kMissing, kArray}) {
      if (value.Type() == type) continue;
      EXPECT_RAISES(ConvertTo(value, type), RuntimeFailure(13)) << Shown(value);
    }
    EXPECT_RAISES(RequireObject(value), value.Holds<Object>() ? Failure{} : RuntimeFailure(424));
  }
}

TEST(Convert, WholeNumbersRoundHalfToEvenWithinTheirRange) {
  for (Int32 eighths = -8 * 1000; eighths <= 8 * 1000; ++eighths) {
    const std::string exact = ExactText(eighths / 8.0);
    const Int32 expected = std::stoi(RoundedText(exact, 0, Ties::kToEven));
    EXPECT_EQ(ToInt32(eighths / 8.0), expected) << exact;
    EXPECT_EQ(ToInt16(Variant(Currency::FromTenThousandths(eighths * 1250))), expected) << exact;
  }
  struct Limit {
    VariantType type;
    Double inside, outside;
  };
  for (const Limit& limit : {Limit{VariantType::kByte, 255.49, 255.5},
                             {VariantType::kByte, -0.5, -0.51},
                             {VariantType::kInt16, 32767.49, 32767.5},
                             {VariantType::kInt16, -32768.5, -32768.51},
                             {VariantType::kInt32, 2147483647.49, 2147483647.5},
                             {VariantType::kInt32, -2147483648.5, -2147483648.51},
                             {VariantType::kSingle, 3.4028235677973362e38, 3.4028235677973366e38},
                             {VariantType::kCurrency, 922337203685477.5, 922337203685477.625},
                             {VariantType::kCurrency, -922337203685477.5, -922337203685477.75},
                             {VariantType::kDate, 2958465.99, 2958466.0},
                             {VariantType::kDate, -657434.99, -657435.0}}) {
    EXPECT_RAISES(ConvertTo(limit.inside, limit.type), Failure{}) << limit.inside;
    EXPECT_RAISES(ConvertTo(limit.outside, limit.type), RuntimeFailure(6)) << limit.outside;
  }
  EXPECT_EQ(LengthAsInt16(String(32767, u'x')), 32767);
  EXPECT_RAISES(LengthAsInt16(String(32768, u'x')), RuntimeFailure(6));
}

TEST(Convert, TextToAmountIsExact) {
  struct Case {
    StringView text;
    const Locale& locale;
    std::int64_t units;  // 0 where the text is refused with `number`
    Int32 number = 0;
  };
  constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
  for (const Case& c : {Case{u"922337203685477.5807", kEnglish, kMost},
                        {u"-922337203685477.5808", kEnglish, -kMost - 1},
                        {u"922337203685477.5808", kEnglish, 0, 6},
                        {u"-922337203685477.5809", kEnglish, 0, 6},
                        {u"922337203685477.58074999", kEnglish, kMost},
                        {u"922337203685477.58075", kEnglish, 0, 6},
                        {u"922\u202F337 203\u00A0685 477,5807", kFrench, kMost},
                        {u"922'337\u2019203'685'477.5807", kSwiss, kMost},
                        {u"1.00005", kEnglish, 10000},
                        {u"1.00015", kEnglish, 10002},
                        {u"-1.00005", kEnglish, -10000},
                        {u"1.000050000000000000000000001", kEnglish, 10001},
                        {u"0.00005", kEnglish, 0},
                        {u"0.000051", kEnglish, 1},
                        {u"0.00004999", kEnglish, 0},
                        {u"99999999999999999999E-16", kEnglish, 100000000},
                        {u"0E999999999999", kEnglish, 0},
                        {u"1E15", kEnglish, 0, 6},
                        {u"1E99999999999999999999", kEnglish, 0, 6},
                        {u"1E-99999999999999999999", kEnglish, 0},
                        {u"1,5", kFrench, 15000},
                        {u"1.5", kFrench, 0, 13},
                        {u"1,234.5", kEnglish, 12345000}}) {
    const LocaleScope scope(c.locale);
    Currency amount;
    EXPECT_RAISES(amount = ToCurrency(Variant(c.text)),
                  c.number == 0 ? Failure{} : RuntimeFailure(c.number))
        << Shown(c.text);
    EXPECT_EQ(amount.TenThousandths(), c.units) << Shown(c.text);
  }
}

TEST(Convert, DoubleToAmountAndBackAgreesWithDecimalText) {
  Random random(1);
  for (int i = 0; i < 100000; ++i) {
    const std::int64_t most = std::int64_t{1} << random.Whole(1, 62);
    const auto amount = Currency::FromTenThousandths(random.Whole(-most, most));
    std::string text = Utf8(ToString(amount));
    EXPECT_EQ(ToCurrency(Variant(Utf16(text))), amount);
    EXPECT_EQ(ToDouble(amount), std::stod(text)) << text;
    // Ties at the fifth decimal and their neighbours.
    const Double value = std::ldexp(static_cast<Double>(random.Whole(-most, most)),
                                    static_cast<int>(random.Whole(-20, -13)));
    if (std::fabs(value) > 9e14) continue;
    text = RoundedText(ExactText(value), 4, Ties::kToEven);
    text.erase(text.find('.'), 1);
    EXPECT_EQ(ToCurrency(value).TenThousandths(), std::stoll(text)) << ExactText(value);
  }
}

// Draws a value, writes it, reads it back in the locale.
void RoundTrip(const Locale& locale, const Variant& value) {
  const LocaleScope scope(locale);
  const String text = ToString(value);
  EXPECT_EQ(ConvertTo(text, value.Type()), value) << Shown(text);
}

TEST(Convert, EveryNumberReadsBackFromItsText) {
  Random random(2);
  for (const Locale& locale : {kFrench, kEnglish, kSwiss}) {
    for (int i = 0; i < 20000; ++i) {
      const auto number = std::bit_cast<Double>(random.Bits());
      if (std::isfinite(number)) RoundTrip(locale, number);
      const auto single = std::bit_cast<Single>(static_cast<std::uint32_t>(random.Bits()));
      if (std::isfinite(single)) RoundTrip(locale, single);
      RoundTrip(locale, static_cast<Int32>(random.Bits()));
      RoundTrip(locale, Currency::FromTenThousandths(static_cast<std::int64_t>(random.Bits())));
    }
    for (const bool truth : {false, true}) RoundTrip(locale, truth);
  }
}

TEST(Convert, NumbersAreWrittenInShortestForm) {
  struct Case {
    Variant value;
    StringView english, french;
  };
  for (const Case& c :
       {Case{0.1, u"0.1", u"0,1"},
        {-0.0, u"0", u"0"},
        {1e-5, u"0.00001", u"0,00001"},
        {9.99e-6, u"9.99E-06", u"9,99E-06"},
        {999999999999999.0, u"999999999999999", u"999999999999999"},
        {1e15, u"1E+15", u"1E+15"},
        {-1.7976931348623157e308, u"-1.7976931348623157E+308", u"-1,7976931348623157E+308"},
        {5e-324, u"5E-324", u"5E-324"},
        {16777216.0F, u"16777216", u"16777216"},
        {0.3F, u"0.3", u"0,3"},
        {std::numeric_limits<Int32>::min(), u"-2147483648", u"-2147483648"},
        {0.0001_cy, u"0.0001", u"0,0001"},
        {Currency::Highest(), u"922337203685477.5807", u"922337203685477,5807"}}) {
    for (const auto& [locale, expected] : {std::pair(kEnglish, c.english), {kFrench, c.french}}) {
      const LocaleScope scope(locale);
      EXPECT_EQ(ToString(c.value), String(expected)) << Shown(c.value);
    }
  }
  const LocaleScope german(*Locale::Named(u"de-DE"));
  EXPECT_EQ(ToString(true), u"Wahr");
  EXPECT_TRUE(ToBoolean(u"WAHR"));
  EXPECT_FALSE(ToBoolean(u"falsch"));
  EXPECT_RAISES(ToBoolean(u"vrai"), RuntimeFailure(13));
}

}  // namespace
}  // namespace quorl
