// Math: tables of cases, and the rounding family against the exact decimal text of a scaled number.

#include "quorl/numeric/math.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>

#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/locale.hpp"
#include "tests/support/decimal_text.hpp"
#include "tests/support/holder.hpp"
#include "tests/support/print.hpp"
#include "tests/support/raises.hpp"
#include "tests/support/random.hpp"

namespace quorl {
namespace {

using namespace literals;

#if defined(__SANITIZE_ADDRESS__)
constexpr int kSamples = 100'000;
#else
constexpr int kSamples = 1'000'000;
#endif

int Samples() { return std::getenv("QUORL_LONG") != nullptr ? 10 * kSamples : kSamples; }

constexpr Double kMostInt32 = std::numeric_limits<Int32>::max();
// What a table says for a failure.
constexpr Double kOverflow = 6 * 1e300, kNegative = 5000 * 1e300;

// The number that `work` gives, or its failure as above.
template <class Work>
Double ResultOf(Work work) {
  try {
    return ToDouble(work());
  } catch (const RaisedError& error) {
    return error.Number() * 1e300;
  }
}

// --- The oracle ---

// A size times a power of ten, with 4 decimals: its whole part and its ten-thousandths.
struct Scaled {
  explicit Scaled(Double product) {
    const std::string text = RoundedText(ExactText(product, 120), 4, Ties::kToEven);
    whole = std::stoll(text);
    rest = std::stoi(text.substr(text.find('.') + 1));
  }
  explicit Scaled(std::int64_t units) : whole(units / 10000), rest(units % 10000) {}

  std::int64_t Nearest() const { return whole + (rest >= 5000 ? 1 : 0); }
  std::int64_t Above(bool is_zero) const {
    return whole + (rest > 0 || (whole == 0 && !is_zero) ? 1 : 0);
  }
  // Of hundredths: whole ones above 5, then the nearest multiple of 5.
  std::int64_t NearestFive() const {
    return whole < 5 || (whole == 5 && rest == 0) ? Nearest() : (whole + 2) / 5 * 5;
  }

  std::int64_t whole, rest;
};

// The Double nearest to a whole number of units of the last decimal.
Double Placed(std::int64_t whole, std::int64_t decimals) {
  return std::stod(std::to_string(whole) + "e-" + std::to_string(decimals));
}

// Sizes around the places where a decision is made: ties of the last decimal, ties of the fourth
// decimal behind it, whole numbers, each a few neighbours away, and anything at all.
Double AnySize(Random& random, Int16 decimals) {
  const auto base = static_cast<Double>(random.Bits() >> random.Whole(18, 63));
  constexpr Double kRests[] = {0, 0.5, 0.49995, 0.50005, 0.00005, 0.99995, 0.4999, 0.00001};
  const std::int64_t choice = random.Whole(0, 9);
  Double size = base + (choice < 8 ? kRests[choice]
                                   : std::ldexp(static_cast<Double>(random.Bits() >> 11), -53));
  size /= std::pow(10.0, decimals);
  for (std::int64_t steps = random.Whole(0, 3); steps > 0; --steps) {
    size = std::nextafter(size, random.Whole(0, 1) != 0 ? 1e300 : 0.0);
  }
  return size < 1e-15 ? 0 : size;
}

// The number that `work` gives for both signs, which must be of one size and never minus zero.
template <class Work>
Double SizeOf(Double size, Work work) {
  const Double plus = ResultOf([&] { return work(size); });
  const Double minus = ResultOf([&] { return work(-size); });
  EXPECT_TRUE(plus == -minus || (plus == kOverflow && minus == kOverflow)) << size;
  EXPECT_FALSE(std::signbit(plus) || (minus == 0 && std::signbit(minus))) << size;
  return plus;
}

TEST(MathRounding, AgreesWithDecimalTextForDoubles) {
  Random random(20190501);
  for (int sample = 0; sample < Samples() && !HasFailure(); ++sample) {
    const auto d = static_cast<Int16>(random.Whole(0, 9));
    const Double size = AnySize(random, d);
    SCOPED_TRACE(testing::PrintToString(size) + " to " + std::to_string(d));
    const Scaled want(size * std::pow(10.0, d));
    const auto number = [&](auto member) {
      return SizeOf(size, [&](Double n) { return member(n, d); });
    };
    const auto within_int32 = [&](std::int64_t whole) {
      return static_cast<Double>(whole) > kMostInt32 ? kOverflow : Placed(whole, d);
    };
    EXPECT_EQ(number(Math::StdTruncate), Placed(want.whole, d));
    EXPECT_EQ(number(Math::StdRound), Placed(want.Nearest(), d));
    EXPECT_EQ(number(Math::FixRound), Placed(want.Nearest(), d));
    EXPECT_EQ(number(Math::RoundInf), within_int32(want.whole));
    EXPECT_EQ(number(Math::RoundSup), within_int32(want.Above(size == 0)));
    EXPECT_EQ(SizeOf(size, [](Double n) { return Math::Round2019(n); }),
              Placed(Scaled(size * 100).NearestFive(), 2));
  }
}

TEST(MathRounding, AgreesWithWholeNumbersForCurrencies) {
  Random random(1405);
  for (int sample = 0; sample < Samples() / 4 && !HasFailure(); ++sample) {
    const std::int64_t d = random.Whole(0, 3);
    const auto units = static_cast<std::int64_t>(random.Bits() >> random.Whole(14, 63));
    SCOPED_TRACE(std::to_string(units) + " ten-thousandths to " + std::to_string(d));
    const auto number = [&](auto work) {
      return SizeOf(static_cast<Double>(units), [&](Double n) {
        return work(Currency::FromTenThousandths(n < 0 ? -units : units), static_cast<Int16>(d));
      });
    };
    const Scaled want(units * (d == 0 ? 1 : d == 1 ? 10 : d == 2 ? 100 : 1000));
    EXPECT_EQ(number(Math::StdTruncate), Placed(want.whole, d));
    EXPECT_EQ(number(Math::StdRound), Placed(want.Nearest(), d));
    EXPECT_EQ(number([](Currency n, Int16) { return Math::Round2019(n); }),
              Placed(Scaled(units * 100).NearestFive(), 2));
  }
}

TEST(MathRounding, EdgesOfTheFiveMembers) {
  const struct {
    Double number;
    Int16 d;
    Double truncate, round, sup, inf;
  } cases[] = {{1.005, 2, 1, 1.01, 1.01, 1},
               {-0.00001, 0, 0, 0, -1, 0},
               {21474836.47, 2, 21474836.47, 21474836.47, 21474836.47, 21474836.47},
               {21474836.48, 2, 21474836.48, 21474836.48, kOverflow, kOverflow},
               {-21474836.48, 2, -21474836.48, -21474836.48, -21474836.48, -21474836.48},
               {-21474836.475, 2, -21474836.47, -21474836.48, kOverflow, -21474836.47},
               {4503599627370497, 0, 4503599627370497, 4503599627370497, kOverflow, kOverflow},
               {1.5, 9, 1.5, 1.5, 1.5, 1.5},
               {1.5, 10, kOverflow, kOverflow, kOverflow, kOverflow},
               {1.5, 400, kOverflow, kOverflow, kOverflow, kOverflow},
               {0, 10, kOverflow, kOverflow, 0, 0},
               {0, -1, kOverflow, kOverflow, kNegative, kNegative},
               {1e307, 2, kOverflow, kOverflow, kOverflow, kOverflow},
               {std::nan(""), 0, kOverflow, kOverflow, kOverflow, kOverflow}};
  for (const auto& row : cases) {
    SCOPED_TRACE(testing::PrintToString(row.number) + " to " + std::to_string(row.d));
    EXPECT_EQ(ResultOf([&] { return Math::StdTruncate(row.number, row.d); }), row.truncate);
    EXPECT_EQ(ResultOf([&] { return Math::StdRound(row.number, row.d); }), row.round);
    EXPECT_EQ(ResultOf([&] { return Math::FixRound(row.number, row.d); }), row.round);
    EXPECT_EQ(ResultOf([&] { return Math::RoundSup(row.number, row.d); }), row.sup);
    EXPECT_EQ(ResultOf([&] { return Math::RoundInf(row.number, row.d); }), row.inf);
  }
  const Failure negative{5000, u"Quorl.Math",
                         u"Le nombre de décimales doit être supérieur ou égal à 0."};
  EXPECT_RAISES(Math::RoundSup(1.5, -1), negative);
  EXPECT_RAISES(Math::RoundInf(1.5, -1), negative);
}

TEST(MathRounding, TakesAnyVariantThatIsANumber) {
  const struct {
    Variant number;
    Int16 d;
    Variant round, by_fives;
  } cases[] = {{Null, 10, Null, Null},
               {Empty, 0, 0.0, 0.0},
               {u"-2,5", 0, -3.0, -2.5},
               {true, 1, -1.0, -1.0},
               {Int32{2147483647}, 1, 2147483647.0, 2147483647.0},
               {Byte{200}, 2, 200.0, 200.0},
               {Single{0.25F}, 1, 0.3, 0.25},
               {Date(2.25), 1, 2.3, 2.25},
               {9223372036854.7755_cy, 2, 9223372036854.78, 9223372036854.75},
               {MakeObject<Holder>(Variant(u"1,25")), 1, 1.3, 1.25},
               {MakeObject<Holder>(Variant(Null)), 1, Null, Null}};
  const LocaleScope comma{*Locale::Named(u"fr-BE")};
  for (const auto& [number, d, round, by_fives] : cases) {
    EXPECT_EQ(Math::StdRound(number, d), round) << Shown(number);
    EXPECT_EQ(Math::Round2019(number), by_fives) << Shown(number);
  }
  EXPECT_RAISES(Math::StdTruncate(u"", 2), RuntimeFailure(13));
  EXPECT_RAISES(Math::Round2019(u"1 cent"), RuntimeFailure(13));
  EXPECT_RAISES(Math::StdRound(u"abc", -1), RuntimeFailure(13));
  EXPECT_RAISES(Math::StdRound(u"abc", 10), RuntimeFailure(6));
  EXPECT_RAISES(Math::StdRound(Currency::Highest(), 1), RuntimeFailure(6));
}

TEST(MathChoices, MinAndMaxKeepTheirArgument) {
  const struct {
    Variant first, second, min, max;
  } cases[] = {{5, 3, 3, 5},           {Int16{5}, 5.0, Int16{5}, Int16{5}},
               {Null, 5, 5, 5},        {5, Null, Null, Null},
               {Empty, 5, Empty, 5},   {Empty, -5, -5, Empty},
               {u"abc", 5, 5, u"abc"}, {u"10", u"9", u"10", u"9"}};
  for (const auto& [first, second, min, max] : cases) {
    EXPECT_EQ(Math::Min(first, second), min) << Shown(first) << " beside " << Shown(second);
    EXPECT_EQ(Math::Max(first, second), max) << Shown(first) << " beside " << Shown(second);
  }
}

TEST(MathChoices, MappingsOfNoValueZeroAndOne) {
  const std::vector<Variant> zeros{Empty,   Null,  0.0,  0_cy,
                                   Date(0), false, u"0", MakeObject<Holder>(Variant(Null))};
  const std::vector<Variant> ones{1.0, u" 1 ", 1_cy}, others{true, 0.5, Int16{2}, u"-3"};
  for (const auto* values : {&zeros, &ones, &others}) {
    for (const Variant& value : *values) {
      SCOPED_TRACE(Shown(value));
      const bool zero = values == &zeros;
      EXPECT_EQ(Math::IsNullOrZero(value, u"x"), zero ? Variant(u"x") : value);
      EXPECT_EQ(Math::ZeroAsNull(value), zero ? Variant(Null) : value);
      EXPECT_EQ(Math::ZeroOrOneAsNull(value), values == &others ? value : Variant(Null));
      EXPECT_EQ(Math::NullOrZeroAsOne(value), zero ? Variant(Int16{1}) : value);
    }
  }
  for (const Variant& text : {Variant(u""), Variant(u"x")}) {
    EXPECT_RAISES(Math::IsNullOrZero(text, 1), RuntimeFailure(13));
    EXPECT_RAISES(Math::ZeroAsNull(text), RuntimeFailure(13));
    EXPECT_RAISES(Math::ZeroOrOneAsNull(text), RuntimeFailure(13));
    EXPECT_RAISES(Math::NullOrZeroAsOne(text), RuntimeFailure(13));
  }
}

}  // namespace
}  // namespace quorl
