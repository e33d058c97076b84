#include "quorl/runtime/variant.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>
#include <type_traits>

#include "quorl/runtime/concatenate.hpp"
#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/screen.hpp"
#include "tests/support/holder.hpp"
#include "tests/support/print.hpp"
#include "tests/support/raises.hpp"

namespace quorl {
namespace {

using namespace literals;
using enum VariantType;

const LocaleScope kNeutral{Locale()};

constexpr Int32 kLowest = std::numeric_limits<Int32>::min();
constexpr Int32 kHighest = std::numeric_limits<Int32>::max();

// What has no type of its own here must not slip in as another.
template <class... Others>
constexpr bool kRefused = (!std::is_constructible_v<Variant, Others> && ...);
static_assert(kRefused<long, unsigned, char, char16_t, void*, const char*, std::string>);
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
      {Object(), kObject}, {Array::OfBytes({}), kArray},
  };
  for (const auto& [value, type] : cases) {
    EXPECT_EQ(value.Type(), type);
    for (const auto& [other, other_type] : cases) {
      // Without conversion: 5 of one type is not 5 of another.
      EXPECT_EQ(value == other, type == other_type) << Shown(value) << " and " << Shown(other);
    }
  }
  EXPECT_EQ(Variant(String(u"5")), Variant(StringView(u"5")));
  EXPECT_EQ(Variant(Empty), Variant());
  EXPECT_EQ(Variant(static_cast<const char16_t*>(nullptr)), Variant(u""));
  EXPECT_EQ(-0.0001_cy, Currency::FromTenThousandths(-1));
  EXPECT_EQ(922'337'203'685'477.5807_cy, Currency::Highest());
  EXPECT_EQ(-Currency::Lowest(), Currency::Lowest());
}

TEST(Variant, CanBeAssignedFromWhatItHolds) {
  const Variant inner = Array::OfStrings(std::array{String(40, u'x')});
  for (const Variant& held : {Variant(1), Variant(String(40, u'y')), inner, Variant(Null)}) {
    for (const bool by_move : {false, true}) {
      Array array(kVariant, {{0, 1}});
      array.Set({0}, held);
      Variant value = std::move(array);
      if (by_move) {
        value = std::move(value.If<Array>()->WritableElements()[0]);
      } else {
        value = value.If<Array>()->Elements()[0];
      }
      EXPECT_EQ(value, held);
      const Variant& same = value;
      value = same;
      EXPECT_EQ(value, held);
    }
  }
}

TEST(Array, CopiesAreIndependentAtEveryDepth) {
  Array inner(kInt32, {{1, 2}});
  Array outer(kVariant, {{0, 2}});
  outer.Set({0}, inner);
  outer.Set({1}, u"text");
  const Array kept = outer;
  inner.Set({1}, 7);
  outer.Set({1}, 8);
  outer.WritableElements()[0].If<Array>()->Set({2}, 9);
  EXPECT_EQ(inner.Get({1}), Variant(7));
  EXPECT_EQ(kept.Get({1}), Variant(u"text"));
  EXPECT_EQ(kept.Get({0}).If<Array>()->Get({2}), Variant(0));
  EXPECT_EQ(outer.Get({0}).If<Array>()->Get({2}), Variant(9));
  EXPECT_EQ(outer.Get({0}).If<Array>()->Get({1}), Variant(0));
  // An array put into itself holds what it was before.
  outer.Set({0}, outer);
  EXPECT_EQ(outer.Get({0}).If<Array>()->Get({1}), Variant(8));
  EXPECT_NE(outer, *outer.Get({0}).If<Array>());

  Array bytes = Array::OfBytes({1, 2, 3});
  const Array before = bytes;
  bytes.WritableBytes()[1] = 9;
  EXPECT_EQ(before, Array::OfBytes({1, 2, 3}));
  EXPECT_EQ(bytes, Array::OfBytes({1, 9, 3}));
}

TEST(Array, LeftmostSubscriptRunsFastest) {
  Array grid(kInt16, {{-1, 3}, {10, 2}});
  for (Int32 j = 10; j <= 11; ++j) {
    for (Int32 i = -1; i <= 1; ++i) grid.Set({i, j}, 10 * j + i);
  }
  EXPECT_EQ(grid.Size(), 6U);
  std::vector<Variant> expected;
  for (const int value : {99, 100, 101, 109, 110, 111}) expected.emplace_back(CheckedInt16(value));
  EXPECT_EQ(std::vector(grid.Elements().begin(), grid.Elements().end()), expected);
  EXPECT_EQ(grid.LowerBound(0), -1);
  EXPECT_EQ(grid.UpperBound(1), 11);
}

TEST(Array, RefusesWhatItCannotHold) {
  Array array(kInt16, {{-1, 3}, {10, 2}});
  const Array before = array;
  const std::vector<Int32> outside[] = {{-2, 10}, {2, 10},    {0, 9},        {0, 12},      {0},
                                        {},       {0, 10, 0}, {kLowest, 10}, {0, kHighest}};
  for (const auto& subscripts : outside) {
    EXPECT_RAISES(array.Get(subscripts), RuntimeFailure(9)) << ::testing::PrintToString(subscripts);
    EXPECT_RAISES(array.Set(subscripts, 1), RuntimeFailure(9));
  }
  EXPECT_RAISES(array.Set({0, 10}, 70000), RuntimeFailure(6));
  EXPECT_RAISES(array.Set({0, 10}, Null), RuntimeFailure(94));
  EXPECT_RAISES(array.Bytes(), RuntimeFailure(13));
  EXPECT_RAISES(Array::OfBytes({1}).Elements(), RuntimeFailure(13));
  EXPECT_RAISES(Array::OfBytes({1}).Set({0}, 256), RuntimeFailure(6));
  EXPECT_RAISES(array.Bound(2), RuntimeFailure(9));
  EXPECT_EQ(array, before);

  struct Case {
    VariantType element;
    std::vector<ArrayBound> bounds;
    Int32 number;
  };
  constexpr std::uint32_t kMost = 0xFFFFFFFF;
  for (const Case& c : {Case{kInt16, {}, 5},
                        {kEmpty, {{0, 1}}, 5},
                        {kNull, {{0, 1}}, 5},
                        {kMissing, {{0, 1}}, 5},
                        {kArray, {{0, 1}}, 5},
                        {VariantType{14}, {{0, 1}}, 5},
                        {kByte, {{1, kMost}}, 9},
                        {kByte, {{kHighest, 2}}, 9},
                        {kByte, {{kLowest, kMost}}, 7},
                        {kByte, {{0, 65536}, {0, 65536}}, 7},
                        {kByte, {{0, 1U << 31}, {kLowest, kMost}, {0, 1U << 31}}, 7}}) {
    EXPECT_RAISES(Array(c.element, c.bounds), RuntimeFailure(c.number))
        << Shown(Variant(static_cast<Int32>(c.element))) << ", " << c.bounds.size();
  }
  EXPECT_RAISES(Array::WithBounds(kString, 5, 4), RuntimeFailure(9));
  EXPECT_RAISES(Array::WithBounds(kByte, kLowest, kHighest), RuntimeFailure(7));
  EXPECT_EQ(Array::WithBounds(kString, kHighest, kHighest).Get({kHighest}), Variant(u""));
  EXPECT_EQ(Array(kDate, {{0, 0}, {3, 5}}).Size(), 0U);
  EXPECT_EQ(Array::OfBytes({}).UpperBound(), -1);
  EXPECT_RAISES(Array(kByte, {{kLowest, 0}}).UpperBound(), RuntimeFailure(6));
}

TEST(Array, DeepNestingIsTakenApartWithoutDeepRecursion) {
  Variant nested;
  for (int depth = 0; depth < 300000; ++depth) {
    Array around(kVariant, {{0, 2}});
    around.WritableElements()[1] = std::move(nested);
    nested = std::move(around);
  }
  const Variant shared = nested.If<Array>()->Get({1});
  nested = Empty;
  EXPECT_TRUE(shared.Holds<Array>());
}

// A host's object with a property, an indexed one, and a method that writes back.
class Form : public LateBound {
 public:
  Variant Get(StringView name, std::span<Variant> arguments) override {
    if (name == u"Left") return left_;
    if (name == u"Tag") return ToInt32(arguments[0]) * 2;
    if (name == u"Broken") throw RaisedError(438, u"Host", u"Hors service");
    return LateBound::Get(name, arguments);
  }
  void Put(StringView name, std::span<Variant> arguments, const Variant& value) override {
    if (name != u"Left") return LateBound::Put(name, arguments, value);
    left_ = value;
  }
  Variant Call(StringView name, std::span<Variant> arguments) override {
    if (name != u"Swap") return LateBound::Call(name, arguments);
    std::swap(arguments[0], arguments[1]);
    return Empty;
  }

 private:
  Variant left_ = 100;
};

TEST(Object, ReachesMembersByName) {
  const Object form = MakeObject<Form>();
  const Object again = form;
  again.Put(u"Left", {}, 120);
  EXPECT_EQ(form.Get(u"Left"), Variant(120));
  std::array<Variant, 2> arguments{21, u"b"};
  EXPECT_EQ(form.Get(u"Tag", arguments), Variant(42));
  EXPECT_EQ(form.Call(u"Swap", arguments), Variant());
  EXPECT_EQ(arguments[1], Variant(21));
  EXPECT_EQ(form, again);
  EXPECT_NE(form, MakeObject<Form>());

  EXPECT_RAISES(form.Get(u"Right"), RuntimeFailure(438));
  EXPECT_RAISES(form.Put(u"Right", {}, 1), RuntimeFailure(438));
  EXPECT_RAISES(form.Call(u"Left"), RuntimeFailure(438));
  EXPECT_RAISES(form.Get(u"Broken"), (Failure{438, u"Host", u"Hors service"}));
  EXPECT_RAISES(Object().Get(u"Left"), RuntimeFailure(91));
  EXPECT_RAISES(Object().Put(u"Left", {}, 1), RuntimeFailure(91));
  EXPECT_RAISES(Object().Call(u"Swap"), RuntimeFailure(91));
  EXPECT_EQ(RequireObject(form), form);
  EXPECT_TRUE(ToObject(Object()).IsEmpty());
}

// Its default member leads back to itself, and another one fails.
class Endless : public LateBound, public std::enable_shared_from_this<Endless> {
 public:
  explicit Endless(bool fails) : fails_(fails) {}
  Variant Get(StringView, std::span<Variant>) override {
    if (fails_) throw RaisedError(438, u"Host", u"Sans valeur");
    return Object(shared_from_this());
  }

 private:
  bool fails_;
};

TEST(Object, DefaultMembersEndSomewhere) {
  EXPECT_RAISES(PlainValueOf(MakeObject<Endless>(false)), RuntimeFailure(13));
  EXPECT_RAISES(PlainValueOf(MakeObject<Endless>(true)), (Failure{438, u"Host", u"Sans valeur"}));
  Variant chain = 5;
  for (int i = 0; i < 16; ++i) chain = MakeObject<Holder>(chain);
  EXPECT_EQ(PlainValueOf(chain), Variant(5));
}

TEST(RaisedError, CarriesItsRecordThroughCopiesAndMoves) {
  RaisedError error(5000, u"Quorl.Math", u"Décimales");
  const RaisedError moved = std::move(error);
  error = RaisedError(6, u"", u"");
  EXPECT_STREQ(moved.what(), "Quorl.Math (5000): Décimales");
  EXPECT_EQ(moved.Description(), u"Décimales");
  const RaisedError left = std::move(error);
  EXPECT_EQ(error.Number(), 6);  // NOLINT: a RaisedError stays whole when it is moved from
  for (const Int32 number : {5, 6, 7, 9, 11, 13, 91, 94, 424, 438}) {
    const auto known = static_cast<FailureNumber>(number);
    EXPECT_RAISES(Raise(known), RuntimeFailure(number));
    EXPECT_TRUE(DescriptionOf(known).ends_with(u'.')) << number;
  }
  for (const Int32 number : {kLowest, 0, 12, kHighest}) {
    EXPECT_EQ(String(DescriptionOf(static_cast<FailureNumber>(number))), u"") << number;
  }
  EXPECT_RAISES(WithinMemory([] { throw std::bad_alloc(); }), RuntimeFailure(7));
  EXPECT_RAISES(WithinMemory([] { throw std::length_error(""); }), RuntimeFailure(7));
}

TEST(Concatenation, AddsTheTextOfEachValue) {
  const std::pair<Variant, StringView> cases[] = {
      {Null, u""},
      {Empty, u""},
      {u"text", u"text"},
      {-2.5, u"-2.5"},
      {1.50_cy, u"1.5"},
      {true, u"True"},
      {Date(0.5), u"12:00:00"},
      {Array::OfBytes({0xE9, 0x00, 0xAC, 0x20, 0x41}), u"é€"},
      {Array::OfBytes({}), u""},
      {MakeObject<Holder>(Array::OfBytes({0x41, 0x00})), u"A"},
      {MakeObject<Holder>(Null), u""},
  };
  for (const auto& [value, expected] : cases) {
    String text = u"<";
    AppendText(text, value);
    EXPECT_EQ(text, u"<" + String(expected)) << Shown(value);
  }
  for (const Variant& value :
       {Variant(Missing), Variant(Array(kInt16, {{0, 1}})), Variant(Object())}) {
    String text = u"kept";
    EXPECT_RAISES(AppendText(text, value), RuntimeFailure(13)) << Shown(value);
    EXPECT_EQ(text, u"kept");
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
