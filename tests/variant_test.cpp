#include "quorl/runtime/variant.hpp"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <type_traits>

#include "quorl/runtime/internal/join.hpp"
#include "quorl/runtime/internal/within_memory.hpp"
#include "quorl/runtime/screen.hpp"
#include "tests/support/values.hpp"

namespace quorl {
namespace {

using namespace internal;

using namespace literals;
using enum VariantType;

const LocaleScope kNeutral{Locale()};

constexpr Int32 kLowest = INT32_MIN, kHighest = INT32_MAX;

// What has no type of its own here must not slip in as another.
template <class... Others>
constexpr bool kRefused = (!std::is_constructible_v<Variant, Others> && ...);
static_assert(kRefused<long, unsigned, char, char16_t, void*, const char*, std::string>);
template <class... Others>
constexpr bool kNoAmount = (!std::is_constructible_v<Currency, Others> && ...);
static_assert(kNoAmount<Double, Single, Boolean, char, char16_t, Date, const char16_t*>);
static_assert(Currency(-2) == -2_cy && Currency(std::uint64_t{3}) == 3_cy);
static_assert(std::is_nothrow_move_constructible_v<Variant> &&
              std::is_nothrow_move_assignable_v<Variant>);
static_assert(std::is_nothrow_copy_constructible_v<RaisedError> &&
              std::is_nothrow_move_constructible_v<RaisedError>);

TEST(Variant, LiteralsPickTheTypeThatAReaderExpects) {
  const std::pair<Variant, VariantType> cases[] = {
      {{}, kEmpty},        {Null, kNull},
      {Missing, kMissing}, {5, kInt32},
      {Int16{5}, kInt16},  {Byte{5}, kByte},
      {5.0F, kSingle},     {5.0, kDouble},
      {5_cy, kCurrency},   {Date(5), kDate},
      {u"5", kString},     {false, kBoolean},
      {Object(), kObject}, {Array::OfBytes({}), kArray}};
  for (const auto& [value, type] : cases) {
    EXPECT_EQ(value.Type(), type);
    // Without conversion: 5 of one type is not 5 of another.
    for (const auto& [other, other_type] : cases) EXPECT_EQ(value == other, type == other_type);
  }
  EXPECT_EQ(Variant(static_cast<const char16_t*>(nullptr)), Variant(u""));
  EXPECT_EQ(-0.0001_cy, Currency::FromTenThousandths(-1));
  EXPECT_EQ(922'337'203'685'477.5807_cy, Currency::Highest());
  EXPECT_EQ(-Currency::Lowest(), Currency::Lowest());
  constexpr std::int64_t kMost = 922'337'203'685'477;
  EXPECT_EQ(ToCurrency(-kMost), -922'337'203'685'477_cy);
  EXPECT_RAISES(Currency(kMost + 1), RuntimeFailure(6));
  EXPECT_RAISES(Currency(-kMost - 1), RuntimeFailure(6));
  EXPECT_RAISES(Currency(~std::uint64_t{0}), RuntimeFailure(6));
}

TEST(Variant, CanBeAssignedFromWhatItHolds) {
  const Variant inner = Array::OfStrings(std::array{String(40, u'x')});
  for (const Variant& held : {Variant(1), Variant(String(40, u'y')), inner}) {
    for (const bool by_move : {false, true}) {
      Array array(kVariant, {{0, 1}});
      array.Set({0}, held);
      Variant value = std::move(array);
      Variant& element = value.If<Array>()->WritableElements()[0];
      by_move ? value = std::move(element) : value = std::as_const(element);
      value = std::as_const(value);
      EXPECT_EQ(value, held);
    }
  }
}

TEST(Array, CopiesAreIndependentAtEveryDepth) {
  Array inner(kInt32, {{1, 2}});
  Array outer(kVariant, {{0, 1}});
  outer.Set({0}, inner);
  const Array kept = outer;
  inner.Set({1}, 7);
  outer.WritableElements()[0].If<Array>()->Set({2}, 9);
  EXPECT_EQ(kept.Get({0}), Variant(Array(kInt32, {{1, 2}})));
  EXPECT_EQ(outer.Get({0}).If<Array>()->Get({1}), Variant(0));
  EXPECT_EQ(outer.Get({0}).If<Array>()->Get({2}), Variant(9));
  // An array put into itself holds what it was before.
  const Variant before = outer;
  outer.Set({0}, outer);
  EXPECT_EQ(outer.Get({0}), before);
  Array bytes = Array::OfBytes({1, 2});
  const Array copy = bytes;
  bytes.WritableBytes()[1] = 9;
  EXPECT_EQ(copy, Array::OfBytes({1, 2}));
}

TEST(Array, LeftmostSubscriptRunsFastestWithinTheBounds) {
  Array array(kInt16, {{-1, 3}, {10, 2}});
  for (const Int32 j : {kLowest, 9, 10, 11, 12, kHighest}) {
    for (const Int32 i : {kLowest, -2, -1, 0, 1, 2, kHighest}) {
      const bool within = i >= -1 && i <= 1 && (j == 10 || j == 11);
      const Failure expected = within ? Failure{} : RuntimeFailure(9);
      EXPECT_RAISES(array.Set({i, j}, within ? j + i : 0), expected) << i << ", " << j;
      EXPECT_RAISES(array.Get({i, j}), expected) << i << ", " << j;
    }
  }
  std::string order;
  for (const Variant& element : array.Elements()) order += Shown(element) + ' ';
  EXPECT_EQ(order, "Int16 9 Int16 10 Int16 11 Int16 10 Int16 11 Int16 12 ");
  EXPECT_NE(Array(kInt16, {{0, 3}}), Array(kInt16, {{1, 3}}));
  EXPECT_EQ(array.LowerBound(0) * array.UpperBound(1), -11);
}

TEST(Array, RefusesWhatItCannotHold) {
  Array array(kInt16, {{-1, 3}, {10, 2}});
  const Array before = array;
  EXPECT_RAISES(array.Get({0}), RuntimeFailure(9));
  EXPECT_RAISES(array.Get({0, 10, 0}), RuntimeFailure(9));
  EXPECT_RAISES(array.Set({0, 10}, 70000), RuntimeFailure(6));
  EXPECT_RAISES(array.Set({0, 10}, Null), RuntimeFailure(94));
  EXPECT_RAISES(array.Bytes(), RuntimeFailure(13));
  EXPECT_RAISES(Array::OfBytes({1}).Elements(), RuntimeFailure(13));
  EXPECT_RAISES(Array::OfBytes({1}).Set({0}, 256), RuntimeFailure(6));
  EXPECT_RAISES(array.Bound(2), RuntimeFailure(9));
  EXPECT_EQ(array, before);

  for (const VariantType element : {kEmpty, kNull, kMissing, kArray, VariantType{14}}) {
    EXPECT_RAISES(Array(element, {{0, 1}}), RuntimeFailure(5)) << static_cast<int>(element);
  }
  constexpr std::uint32_t kMost = 0xFFFFFFFF;
  constexpr std::uint32_t kHalf = 1U << 31;
  EXPECT_RAISES(Array(kByte, {}), RuntimeFailure(5));
  EXPECT_RAISES(Array(kByte, {{1, kMost}}), RuntimeFailure(9));
  EXPECT_RAISES(Array(kByte, {{kHighest, 2}}), RuntimeFailure(9));
  EXPECT_RAISES(Array(kByte, {{kLowest, kMost}}), RuntimeFailure(7));
  EXPECT_RAISES(Array(kByte, {{0, kHalf}, {kLowest, kMost}, {0, kHalf}}), RuntimeFailure(7));
  EXPECT_RAISES(Array::WithBounds(kString, 5, 4), RuntimeFailure(9));
  EXPECT_RAISES(Array::WithBounds(kByte, kLowest, kHighest), RuntimeFailure(7));
  EXPECT_EQ(Array::WithBounds(kString, kHighest, kHighest).Get({kHighest}), Variant(u""));
  EXPECT_EQ(Array(kDate, {{0, 0}, {3, 5}}).Size(), 0U);
  EXPECT_EQ(Array::OfBytes({}).UpperBound(), -1);
  EXPECT_RAISES(Array(kByte, {{kLowest, 0}}).UpperBound(), RuntimeFailure(6));
}

// Arrays within arrays, each of which holds the next one so many times.
Variant Nested(int depth, int times, Variant innermost) {
  for (; depth > 0; --depth) {
    Array around(kVariant, {{0, 2}});
    for (int i = 1; i < times; ++i) around.Set({i - 1}, innermost);
    around.WritableElements()[1] = std::move(innermost);
    innermost = std::move(around);
  }
  return innermost;
}

TEST(Array, DeepNestingTakesNeitherTheStackNorLong) {
  for (const auto& [depth, times] : {std::pair(200000, 1), {64, 2}}) {
    Variant nested = Nested(depth, times, 1);
    EXPECT_TRUE(nested == Nested(depth, times, 1));
    EXPECT_FALSE(nested == Nested(depth, times, 2));
    EXPECT_FALSE(nested == Nested(depth - 1, times, 1));
    const Variant inner = nested.If<Array>()->Get({1});
    nested = Empty;
    EXPECT_TRUE(inner.Holds<Array>());
  }
}

struct Broken : LateBound {
  Variant Get(StringView, std::span<Variant>) override {
    throw RaisedError(438, u"Host", u"Hors service");
  }
};

TEST(Object, MembersThatAreMissingAndDefaultsThatLeadNowhere) {
  for (const auto& [object, number] : {std::pair(MakeObject<LateBound>(), 438), {Object(), 91}}) {
    const auto& target = object;
    EXPECT_RAISES(target.Get(u"Right"), RuntimeFailure(number));
    EXPECT_RAISES(target.GetByReference(u"Right", {}), RuntimeFailure(number));
    EXPECT_RAISES(target.Put(u"Right", {}, 1), RuntimeFailure(number));
    EXPECT_RAISES(target.Call(u"Right"), RuntimeFailure(number));
    EXPECT_RAISES(PlainValueOf(target), RuntimeFailure(13));
  }
  EXPECT_RAISES(PlainValueOf(MakeObject<Broken>()), (Failure{438, u"Host", u"Hors service"}));
  Variant chain = 5;
  for (int i = 0; i < 16; ++i) chain = MakeObject<Holder>(chain);
  EXPECT_EQ(PlainValueOf(chain), Variant(5));
  EXPECT_RAISES(PlainValueOf(MakeObject<Holder>(chain)), RuntimeFailure(13));
}

TEST(RaisedError, CarriesItsRecordThroughCopiesAndMoves) {
  RaisedError error(5000, u"Quorl.Math", u"Décimales");
  const RaisedError moved = std::move(error);
  EXPECT_EQ(error.Number(), 5000);  // NOLINT: a RaisedError stays whole when it is moved from
  error = RaisedError(6, u"", u"");
  EXPECT_STREQ(moved.what(), "Quorl.Math (5000): Décimales");
  for (Int32 number = -1; number < 500; ++number) {
    const auto known = std::ranges::count(std::array{5, 6, 7, 9, 11, 13, 91, 94, 424, 438}, number);
    const StringView description = DescriptionOf(static_cast<FailureNumber>(number));
    EXPECT_EQ(std::ranges::count(description, u'.'), known) << number;
    if (known == 0) continue;
    EXPECT_RAISES(Raise(FailureNumber{number}), RuntimeFailure(number));
  }
  EXPECT_RAISES(WithinMemory([] { throw std::length_error(""); }), RuntimeFailure(7));
}

TEST(Concatenation, AddsTheTextOfEachValue) {
  const std::pair<Variant, std::string> cases[] = {
      {Array::OfBytes({0xE9, 0x00, 0xAC, 0x20, 0x41}), "<é€"},
      {MakeObject<Holder>(Array::OfBytes({0x41, 0x00})), "<A"},
      {Array(kInt16, {{0, 1}}), "!13"},
      {u"text", "<text"},
      {-2.5, "<-2.5"},
      {Null, "<"},
      {Missing, "!13"},
      {Object(), "!13"}};
  for (const auto& [value, expected] : cases) {
    String text = u"<";
    const auto append = [&, &v = value] { return AppendText(text, v), Utf8(text); };
    EXPECT_EQ(ResultOf(append), expected) << Shown(value);
    EXPECT_EQ(Utf8(text), expected[0] == '!' ? "<" : expected);
  }
}

TEST(Screen, KeepsItsSizeWhenANewOneDoesNotFit) {
  EXPECT_EQ(Screen::Width() + Screen::Height(), 0.0F);
  Screen::SetSize(19200, 10800.5);
  EXPECT_RAISES(Screen::SetSize(1, 1e39), RuntimeFailure(6));
  EXPECT_EQ(Screen::Width(), 19200.0F);
  EXPECT_EQ(Screen::Height(), 10800.5F);
}

}  // namespace
}  // namespace quorl
