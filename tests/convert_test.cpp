#include "quorl/runtime/convert.hpp"

#include <bit>
#include <cmath>
#include <tuple>

#include "tests/support/values.hpp"

namespace quorl {
namespace {

using namespace literals;
using enum VariantType;

const LocaleScope kNeutral{Locale()};
const Locale kFrench = *Locale::Named(u"fr-FR");
const Locale kSwiss = *Locale::Named(u"de-CH");

// A value without its type: a number's digits, an amount's ten-thousandths, a date's days.
std::string Brief(const Variant& value) {
  if (const auto* text = value.If<String>()) return Utf8(*text);
  if (const auto* truth = value.If<Boolean>()) return *truth ? "true" : "false";
  if (const auto* date = value.If<Date>()) return Brief(date->Days());
  if (const auto* amount = value.If<Currency>()) return std::to_string(amount->TenThousandths());
  const std::string shown = Shown(value);  // "Int16 5"
  return shown.substr(shown.find(' ') + 1);
}

std::string Converted(const Variant& value, VariantType type) {
  return ResultOf([&] {
    const Variant result = ConvertTo(value, type);
    EXPECT_EQ(result.Type(), type) << Shown(value);
    return Brief(result);
  });
}

TEST(Convert, EveryStateAndTypeToEveryType) {
  constexpr VariantType kColumns[] = {kByte,     kInt16, kInt32,   kSingle, kDouble,
                                      kCurrency, kDate,  kBoolean, kString};
  // One cell alone counts for all columns.
  const std::pair<std::vector<Variant>, StringView> rows[] = {
      {{Empty}, u"0|0|0|0|0|0|0|false|"},
      {{Null, MakeObject<Holder>(Null)}, u"!94"},
      {{Missing, Array::OfBytes({1}), Object(), MakeObject<LateBound>()}, u"!13"},
      {{Byte{1}, 1, 1.0, 1_cy, MakeObject<Holder>(1)}, u"1|1|1|1|1|10000|1|true|1"},
      {{Int16{-300}, -300.0F, -300_cy}, u"!6|-300|-300|-300|-300|-3000000|-300|true|-300"},
      {{70000}, u"!6|!6|70000|70000|70000|700000000|70000|true|70000"},
      {{2.5F, 2.5, 2.5_cy}, u"2|2|2|2.5|2.5|25000|2.5|true|2.5"},
      {{0.1F}, u"0|0|0|0.10000000149011612|0.10000000149011612|1000|0.10000000149011612|true|0.1"},
      {{-0.00005},
       u"0|0|0|-4.9999998736893758e-05|-5.0000000000000002e-05|-1"
       u"|-5.0000000000000002e-05|true|-0.00005"},
      {{1e300}, u"!6|!6|!6|!6|1.0000000000000001e+300|!6|!6|true|1E+300"},
      {{kNaN}, u"!6|!6|!6|!6|nan|!6|!6|!6|!6"},
      {{HUGE_VAL}, u"!6|!6|!6|!6|inf|!6|!6|true|!6"},
      {{Currency::Lowest()},
       u"!6|!6|!6|-922337180385280|-922337203685477.62|-9223372036854775808"
       u"|!6|true|-922337203685477.5808"},
      {{Date(-1.25)}, u"!6|-1|-1|-1.25|-1.25|-12500|-1.25|true|1899-12-29 06:00:00"},
      {{Date(kNaN)}, u"!6|!6|!6|!6|nan|!6|nan|!6|!6"},
      {{false}, u"0|0|0|0|0|0|0|false|False"},
      {{true}, u"!6|-1|-1|-1|-1|-10000|-1|true|True"},
      {{u" 2.5 "}, u"2|2|2|2.5|2.5|25000|!13|true| 2.5 "},
      {{u"0"}, u"0|0|0|0|0|0|!13|false|0"},
      {{u"1E400"}, u"!6|!6|!6|!6|!6|!6|!13|!6|1E400"},
      {{u""}, u"!13|!13|!13|!13|!13|!13|!13|!13|"},
      {{u"1900-01-01"}, u"!13|!13|!13|!13|!13|!13|2|!13|1900-01-01"}};
  for (const auto& [values, expected] : rows) {
    const std::vector<String> cells = Cells(expected);
    for (const Variant& value : values) {
      for (std::size_t i = 0; i < std::size(kColumns); ++i) {
        EXPECT_EQ(Converted(value, kColumns[i]), Utf8(cells[cells.size() == 1 ? 0 : i]))
            << Shown(value) << " to " << ::testing::PrintToString(kColumns[i]);
      }
      // What is no conversion: a copy, an object, and the states and types that nothing becomes.
      EXPECT_EQ(Shown(ConvertTo(value, kVariant)), Shown(value));
      for (const VariantType type : {kObject, kEmpty, kNull, kMissing, kArray}) {
        if (value.Type() == type) continue;
        EXPECT_EQ(Converted(value, type), "!13") << Shown(value);
      }
      EXPECT_RAISES(RequireObject(value), value.Holds<Object>() ? Failure{} : RuntimeFailure(424));
    }
  }
}

TEST(Convert, WholeNumbersRoundHalfToEvenWithinTheirRange) {
  for (Int32 eighths = -8 * 1000; eighths <= 8 * 1000; ++eighths) {
    const std::string exact = ExactText(eighths / 8.0);
    const Int32 expected = std::stoi(RoundedText(exact, 0, Ties::kToEven));
    EXPECT_EQ(ToInt32(eighths / 8.0), expected) << exact;
    EXPECT_EQ(ToInt16(Variant(Currency::FromTenThousandths(eighths * 1250))), expected) << exact;
  }
  const std::tuple<VariantType, Double, Double, Double, Double> limits[] = {
      {kByte, -0.51, -0.5, 255.49, 255.5},
      {kInt16, -32768.51, -32768.5, 32767.49, 32767.5},
      {kInt32, -2147483648.51, -2147483648.5, 2147483647.49, 2147483647.5},
      {kSingle, -4e38, -3e38, 3.4028235677973362e38, 3.4028235677973366e38},
      {kCurrency, -922337203685477.75, -922337203685477.5, 922337203685477.5, 922337203685477.625},
      {kDate, -657435, -657434.99, 2958465.99, 2958466}};
  for (const auto& [type, below, least, most, above] : limits) {
    for (const Double beyond : {below, above}) EXPECT_EQ(Converted(beyond, type), "!6") << beyond;
    for (const Double within : {least, most}) EXPECT_NE(Converted(within, type), "!6") << within;
  }
  EXPECT_EQ(LengthAsInt16(String(32767, u'x')), 32767);
  EXPECT_RAISES(LengthAsInt16(String(32768, u'x')), RuntimeFailure(6));
}

TEST(Convert, AmountsAndTruthsAreReadByTheLocale) {
  const std::tuple<Locale, VariantType, StringView> rows[] = {
      {kFrench, kBoolean, u"vRAI=true| TRUE=true|faux=false|False=false|wahr=!13|1,5=true"},
      {Locale(), kCurrency,
       u"922337203685477.5807=9223372036854775807|922337203685477.5808=!6"
       u"|922337203685477.58074999=9223372036854775807|922337203685477.58075=!6"
       u"|-922337203685477.5808=-9223372036854775808|-922337203685477.5809=!6|1E15=!6"
       u"|1E99999999999999999999=!6|1E-99999999999999999999=0|0E999999999999=0|1.00005=10000"
       u"|1.00015=10002|-1.00005=-10000|1.000050000000000000000000001=10001|0.00005=0|0.000051=1"
       u"|-0.00004999=0|99999999999999999999E-16=100000000|1,234.5=12345000"},
      {kFrench, kCurrency, u"922\u202F337 203\u00A0685 477,5807=9223372036854775807|1.5=!13"},
      {kSwiss, kCurrency, u"922'337\u2019203'685'477.5807=9223372036854775807"}};
  for (const auto& [locale, type, cases] : rows) {
    const LocaleScope scope(locale);
    for (const auto& [text, expected] : Pairs(cases)) {
      EXPECT_EQ(Converted(text, type), expected) << Shown(text);
    }
  }
}

TEST(Convert, DoubleToAmountAndBackAgreesWithDecimalText) {
  Random random(1);
  for (int i = 0; i < 100000; ++i) {
    const std::int64_t most = std::int64_t{1} << random.Whole(1, 62);
    const auto amount = Currency::FromTenThousandths(random.Whole(-most, most));
    EXPECT_EQ(ToDouble(amount), std::stod(Utf8(ToString(amount)))) << amount.TenThousandths();
    // Ties at the fifth decimal and their neighbours.
    const Double value = std::ldexp(static_cast<Double>(random.Whole(-most, most)),
                                    static_cast<int>(random.Whole(-20, -13)));
    if (std::fabs(value) > 9e14) continue;
    std::string text = RoundedText(ExactText(value), 4, Ties::kToEven);
    text.erase(text.find('.'), 1);
    EXPECT_EQ(ToCurrency(value).TenThousandths(), std::stoll(text)) << ExactText(value);
  }
}

TEST(Convert, EveryNumberReadsBackFromItsText) {
  Random random(2);
  for (int i = 0; i < 60000; ++i) {
    const LocaleScope scope(i % 3 == 0 ? kFrench : i % 3 == 1 ? kSwiss : Locale());
    const auto bits = static_cast<std::int64_t>(random.Bits());
    for (const Variant& value :
         {Variant(std::bit_cast<Double>(bits)), Variant(static_cast<Int32>(bits)),
          Variant(std::bit_cast<Single>(static_cast<Int32>(bits))), Variant(bits % 2 == 0),
          Variant(Currency::FromTenThousandths(bits >> i % 64))}) {
      if (!std::isfinite(ToDouble(value))) continue;
      EXPECT_EQ(ConvertTo(ToString(value), value.Type()), value) << Shown(ToString(value));
    }
  }
}

TEST(Convert, TextsAreShort) {
  for (const String& text :
       Cells(u"0.1|0|0.00001|9.99E-06|999999999999999|1E+15|-1.7976931348623157E+308|5E-324")) {
    EXPECT_EQ(ToString(ToDouble(text)), text);
  }
  EXPECT_EQ(ToString(0.3F) + ToString(16777216.0F) + ToString(0.0001_cy), u"0.3167772160.0001");
  EXPECT_EQ(ToString(-0.0), u"0");
}

}  // namespace
}  // namespace quorl
