#include "quorl/runtime/compare.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "quorl/runtime/convert.hpp"
#include "tests/support/holder.hpp"
#include "tests/support/print.hpp"
#include "tests/support/raises.hpp"

namespace quorl {
namespace {

using namespace literals;

const LocaleScope kFrench{*Locale::Named(u"fr-FR")};

constexpr Double kNaN = std::numeric_limits<Double>::quiet_NaN();

enum class Kind { kEmpty, kNull, kNumber, kText, kRefused, kBrokenObject };

// A value, and what the comparisons are to see in it.
struct Sample {
  Variant value;
  Kind kind;
  Double number = 0;
  StringView text = u"";  // what it reads as beside a text
  bool reads_as_number = true;
};

const Sample kSamples[] = {
    {Empty, Kind::kEmpty},
    {Null, Kind::kNull},
    {Byte{1}, Kind::kNumber, 1, u"1"},
    {Int16{-1}, Kind::kNumber, -1, u"-1"},
    {true, Kind::kNumber, -1, u"Vrai"},
    {false, Kind::kNumber, 0, u"Faux"},
    {1000000, Kind::kNumber, 1000000, u"1000000"},
    {0.5F, Kind::kNumber, 0.5, u"0,5"},
    {-1.5, Kind::kNumber, -1.5, u"-1,5"},
    {0.0, Kind::kNumber, 0, u"0"},
    {0.5_cy, Kind::kNumber, 0.5, u"0,5"},
    {Date(1), Kind::kNumber, 1, u"31/12/1899"},
    {u"", Kind::kText, 0, u"", false},
    {u"0,5", Kind::kText, 0.5, u"0,5"},
    {u"0.5", Kind::kText, 0, u"0.5", false},
    {u" -1 ", Kind::kText, -1, u" -1 "},
    {u"Vrai", Kind::kText, 0, u"Vrai", false},
    {u"\uE000", Kind::kText, 0, u"\uE000", false},
    {u"\xD83D\xDE00", Kind::kText, 0, u"\xD83D\xDE00", false},
    {MakeObject<Holder>(1), Kind::kNumber, 1, u"1"},
    {MakeObject<Holder>(Null), Kind::kNull},
    {MakeObject<Holder>(MakeObject<Holder>(u"a")), Kind::kText, 0, u"a", false},
    {Missing, Kind::kRefused},
    {Array::OfBytes({1}), Kind::kRefused},
    {Object(), Kind::kBrokenObject},
    {MakeObject<LateBound>(), Kind::kBrokenObject},
};

// "less", "unordered" or "!13", as `comparison` gives or raises it.
template <class Comparison>
std::string Outcome(Comparison&& comparison) {
  std::string outcome;
  const Failure failure = FailureOf([&] { outcome = Shown(comparison()); });
  if (failure == Failure{}) return outcome;
  EXPECT_EQ(failure, RuntimeFailure(13));
  return "!13";
}

bool IsAny(Kind kind, const Sample& left, const Sample& right) {
  return left.kind == kind || right.kind == kind;
}

// The rules in the order in which they take hold.
std::string Expected(const Sample& left, const Sample& right) {
  if (IsAny(Kind::kBrokenObject, left, right)) return "!13";
  if (IsAny(Kind::kNull, left, right)) return "unordered";
  if (IsAny(Kind::kRefused, left, right)) return "!13";
  const bool left_empty = left.kind == Kind::kEmpty;
  const bool right_empty = right.kind == Kind::kEmpty;
  if ((left.kind == Kind::kText || left_empty) && (right.kind == Kind::kText || right_empty) &&
      !(left_empty && right_empty)) {
    return Shown(std::partial_ordering(left.text <=> right.text));
  }
  if (left.kind == Kind::kText) return "greater";
  if (right.kind == Kind::kText) return "less";
  return Shown(left.number <=> right.number);
}

TEST(Compare, EveryPairOfValues) {
  for (const Sample& left : kSamples) {
    for (const Sample& right : kSamples) {
      EXPECT_EQ(Outcome([&] { return Compare(left.value, right.value); }), Expected(left, right))
          << Shown(left.value) << " against " << Shown(right.value);
    }
  }
}

TEST(Compare, EveryValueAgainstWhatTheCodeFixes) {
  for (const Sample& sample : kSamples) {
    const bool refused = sample.kind == Kind::kRefused || sample.kind == Kind::kBrokenObject;
    const auto expected = [&](bool readable, std::partial_ordering order) -> std::string {
      if (refused) return "!13";
      if (sample.kind == Kind::kNull) return "unordered";
      return readable ? Shown(order) : "!13";
    };
    for (const Double number : {-1.0, 0.0, 0.5, 1e9, kNaN}) {
      EXPECT_EQ(Outcome([&] { return CompareToNumber(sample.value, number); }),
                expected(sample.reads_as_number, sample.number <=> number))
          << Shown(sample.value) << " against " << number;
    }
    for (const bool truth : {false, true}) {
      EXPECT_EQ(Outcome([&] { return CompareToBoolean(sample.value, truth); }),
                expected(sample.reads_as_number, sample.number <=> (truth ? -1.0 : 0.0)))
          << Shown(sample.value) << " against " << truth;
    }
    for (const Sample& other : kSamples) {
      EXPECT_EQ(Outcome([&] { return CompareToText(sample.value, other.text); }),
                expected(true, sample.text <=> other.text))
          << Shown(sample.value) << " against " << Shown(other.text);
    }
  }
}

TEST(Compare, KeepsAmountsExactAndNaNUnordered) {
  const Variant highest = Currency::Highest();
  const Variant below = Currency::FromTenThousandths(Currency::Highest().TenThousandths() - 1);
  EXPECT_EQ(ToDouble(highest), ToDouble(below));
  EXPECT_EQ(Shown(Compare(below, highest)), "less");
  for (const Variant& other : {Variant(kNaN), Variant(0), Variant(Empty)}) {
    EXPECT_EQ(Shown(Compare(kNaN, other)), "unordered") << Shown(other);
  }
  EXPECT_EQ(Shown(CompareToNumber(kNaN, 0)), "unordered");
}

}  // namespace
}  // namespace quorl
