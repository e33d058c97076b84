#include "quorl/runtime/compare.hpp"

#include "tests/support/values.hpp"

namespace quorl {
namespace {

using namespace literals;

const LocaleScope kFrench{*Locale::Named(u"fr-FR")};
enum Kind { kUnset, kDigits, kWord, kNumber, kNull, kRefused, kBroken };

// A value, and what the comparisons are to see in it.
const struct Sample {
  Variant value;
  Kind kind;
  Double number = 0;
  StringView text = u"";  // what it reads as beside a text
} kSamples[] = {{Empty, kUnset},
                {Null, kNull},
                {Int16{-1}, kNumber, -1, u"-1"},
                {true, kNumber, -1, u"Vrai"},
                {false, kNumber, 0, u"Faux"},
                {-1.5, kNumber, -1.5, u"-1,5"},
                {0.5_cy, kNumber, 0.5, u"0,5"},
                {Date(1), kNumber, 1, u"31/12/1899"},
                {u"", kWord, 0, u""},
                {u"0,5", kDigits, 0.5, u"0,5"},
                {u"0.5", kWord, 0, u"0.5"},
                {u" -1 ", kDigits, -1, u" -1 "},
                {u"Vrai", kWord, 0, u"Vrai"},
                {u"\uE000", kWord, 0, u"\uE000"},
                {u"\xD83D\xDE00", kWord, 0, u"\xD83D\xDE00"},
                {MakeObject<Holder>(1), kNumber, 1, u"1"},
                {MakeObject<Holder>(Null), kNull},
                {MakeObject<Holder>(MakeObject<Holder>(u"a")), kWord, 0, u"a"},
                {Missing, kRefused},
                {Array::OfBytes({1}), kRefused},
                {Object(), kBroken},
                {MakeObject<LateBound>(), kBroken}};

// The rules in the order in which they take hold.
std::string Expected(const Sample& left, const Sample& right) {
  const auto any = [&](Kind kind) { return left.kind == kind || right.kind == kind; };
  // An object is asked for its value before the other side's object is.
  if (left.kind == kBroken && !right.value.IsNull()) return "!13";
  if (any(kNull)) return "unordered";
  if (any(kRefused) || any(kBroken)) return "!13";
  if (!any(kDigits) && !any(kWord)) return Shown(left.number <=> right.number);
  if (left.kind <= kWord && right.kind <= kWord) return Shown(left.text <=> right.text);
  return right.kind == kNumber ? "greater" : "less";
}

TEST(Compare, EveryValueAgainstEveryOtherAndWhatTheCodeFixes) {
  for (const Sample& sample : kSamples) {
    const Variant& value = sample.value;
    SCOPED_TRACE(Shown(value));
    const auto expected = [&](bool readable, std::partial_ordering order) {
      if (sample.kind == kNull) return std::string("unordered");
      return readable && sample.kind < kRefused ? Shown(order) : "!13";
    };
    for (const Double number : {-1.0, 0.0, 0.5, 1e9, kNaN}) {
      const std::string by_number = expected(sample.kind != kWord, sample.number <=> number);
      EXPECT_EQ(ResultOf([&] { return Shown(CompareToNumber(value, number)); }), by_number)
          << number;
      if (number != 0 && number != -1) continue;
      EXPECT_EQ(ResultOf([&] { return Shown(CompareToBoolean(value, number != 0)); }), by_number);
    }
    for (const Sample& other : kSamples) {
      SCOPED_TRACE(Shown(other.value));
      EXPECT_EQ(ResultOf([&] { return Shown(Compare(value, other.value)); }),
                Expected(sample, other));
      EXPECT_EQ(ResultOf([&] { return Shown(CompareToText(value, other.text)); }),
                expected(true, sample.text <=> other.text));
    }
  }
}

TEST(Compare, LongTextsDifferAtTheirFirstOtherUnit) {
  Random random(6);
  for (int i = 0; i < 20000; ++i) {
    const String left = random.Text(u"ab\u8000", 40);
    String right = left + u"a";
    right[random.Bits() % right.size()] = u'\u8000';
    right.resize(random.Bits() % 2 == 0 ? left.size() : random.Bits() % right.size());
    EXPECT_EQ(Shown(Compare(left, right)), Shown(left <=> right)) << Shown(left) << Shown(right);
  }
}

TEST(Compare, KeepsAmountsExactAndNaNUnordered) {
  const Variant below = Currency::FromTenThousandths(Currency::Highest().TenThousandths() - 1);
  EXPECT_EQ(ToDouble(Currency::Highest()), ToDouble(below));
  EXPECT_EQ(Shown(Compare(below, Currency::Highest())), "less");
  for (const Variant& other : {Variant(kNaN), Variant(0), Variant(Empty)}) {
    EXPECT_EQ(Shown(Compare(kNaN, other)), "unordered") << Shown(other);
  }
  EXPECT_EQ(Shown(CompareToNumber(kNaN, 0)), "unordered");
}

}  // namespace
}  // namespace quorl
