// Math: tables of cases, and the rounding family against the exact decimal text of a scaled number.

#include "quorl/numeric/math.hpp"

#include <cmath>
#include <cstdlib>
#include <optional>

#include "tests/support/values.hpp"

namespace quorl {
namespace {

using namespace literals;

const int kSamples = (std::getenv("QUORL_LONG") != nullptr ? 10 : 1) * 1'000'000 / kSweepStep;

// The number that `work` gives, which is never minus zero; none for failure 6.
template <class Work>
std::optional<Double> NumberOf(Work work) {
  try {
    const Double number = ToDouble(work());
    EXPECT_FALSE(number == 0 && std::signbit(number));
    return number;
  } catch (const RaisedError& error) {
    EXPECT_EQ(error.Number(), 6);
    return std::nullopt;
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

  // Far out a Double has no place for a half or a fifth, and its sums are what the Doubles give.
  static std::int64_t HalfUp(Double number) { return static_cast<std::int64_t>(number + 0.5); }
  bool IsFarOut() const { return whole >= std::int64_t{1} << 50; }
  std::int64_t Nearest() const {
    return IsFarOut() && rest == 0 ? HalfUp(static_cast<Double>(whole)) : whole + (rest >= 5000);
  }
  std::int64_t Above(bool is_zero) const {
    return whole + (rest > 0 || (whole == 0 && !is_zero) ? 1 : 0);
  }
  // Of hundredths: whole ones above 5, then the nearest multiple of 5.
  std::int64_t NearestFive() const {
    if (whole < 5 || (whole == 5 && rest == 0)) return Nearest();
    return (IsFarOut() ? HalfUp(static_cast<Double>(whole) / 5) : (whole + 2) / 5) * 5;
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
  const auto base = static_cast<Double>(random.Bits() >> random.Whole(11, 63));
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

TEST(MathRounding, AgreesWithDecimalTextForDoubles) {
  Random random(20190501);
  for (int sample = 0; sample < kSamples && !HasFailure(); ++sample) {
    const auto d = static_cast<Int16>(random.Whole(0, 9));
    const Double size = AnySize(random, d), sign = sample % 2 == 0 ? 1 : -1;
    SCOPED_TRACE(testing::PrintToString(sign * size) + " to " + std::to_string(d));
    const Scaled want(size * std::pow(10.0, d));
    const auto number = [&](auto member) {
      return NumberOf([&] { return member(sign * size, d); });
    };
    const auto within_int32 = [&](std::int64_t whole) {
      return whole > INT32_MAX ? std::nullopt : std::optional(sign * Placed(whole, d));
    };
    EXPECT_EQ(number(Math::StdTruncate), sign * Placed(want.whole, d));
    EXPECT_EQ(number(Math::StdRound), sign * Placed(want.Nearest(), d));
    EXPECT_EQ(number(Math::FixRound), sign * Placed(want.Nearest(), d));
    EXPECT_EQ(number(Math::RoundInf), within_int32(want.whole));
    EXPECT_EQ(number(Math::RoundSup), within_int32(want.Above(size == 0)));
    EXPECT_EQ(number([](Double n, Int16) { return Math::Round2019(n); }),
              sign * Placed(Scaled(size * 100).NearestFive(), 2));
  }
}

TEST(MathRounding, AgreesWithWholeNumbersForCurrencies) {
  Random random(1405);
  for (int sample = 0; sample < kSamples / 4 && !HasFailure(); ++sample) {
    const auto d = static_cast<Int16>(random.Whole(0, 3));
    const int factor = d == 0 ? 1 : d == 1 ? 10 : d == 2 ? 100 : 1000;
    const auto units = static_cast<std::int64_t>(random.Bits() >> random.Whole(1, 63)) / factor;
    const int sign = sample % 2 == 0 ? 1 : -1;
    const Currency amount = Currency::FromTenThousandths(sign * units);
    SCOPED_TRACE(std::to_string(sign * units) + " ten-thousandths to " + std::to_string(d));
    // Cut and rounded on the amount's own digits, but by fives as the Double nearest to them.
    const std::int64_t whole = units * factor / 10000, rest = units * factor % 10000;
    EXPECT_EQ(NumberOf([&] { return Math::StdTruncate(amount, d); }), sign * Placed(whole, d));
    EXPECT_EQ(NumberOf([&] { return Math::StdRound(amount, d); }),
              sign * Placed(whole + (rest >= 5000), d));
    const auto hundredth = Currency::FromTenThousandths(sign * (units / 100));
    EXPECT_EQ(NumberOf([&] { return Math::Round2019(hundredth); }),
              sign * Placed(Scaled(Placed(units / 100 * 100, 4)).NearestFive(), 2));
  }
}

// A number and its decimals; then cut, to the nearest, away from zero, toward zero.
TEST(MathRounding, EdgesOfTheFiveMembers) {
  const LocaleScope neutral{Locale()};
  for (const auto& row : Pairs(
           u"-0.00001 0=0 0 -1 0|21474836.47 2=21474836.47 21474836.47 "
           u"21474836.47 21474836.47|21474836.48 2=21474836.48 21474836.48 !6 !6|-21474836.48 2="
           u"-21474836.48 -21474836.48 -21474836.48 -21474836.48|-21474836.475 2=-21474836.47 "
           u"-21474836.48 !6 -21474836.47|4503599627370497 0=4.503599627370497E+15 "
           u"4.503599627370498E+15 !6 !6|1.5 9=1.5 1.5 1.5 1.5|1.5 10=!6 !6 !6 !6|1.5 400=!6 !6 !6 "
           u"!6|0 10=!6 !6 0 0|1e307 2=!6 !6 !6 !6|nan 0=!6 !6 !6 !6")) {
    const std::vector<String> given = Cells(row.first, u' ');
    const Double number = std::stod(Utf8(given[0]));
    const auto d = static_cast<Int16>(std::stoi(Utf8(given[1])));
    const auto outcome = [&](auto member) {
      return ResultOf([&] { return Utf8(ToString(member(number, d))); });
    };
    EXPECT_EQ(outcome(Math::FixRound), outcome(Math::StdRound));
    EXPECT_EQ(outcome(Math::StdTruncate) + " " + outcome(Math::StdRound) + " " +
                  outcome(Math::RoundSup) + " " + outcome(Math::RoundInf),
              row.second)
        << Utf8(row.first);
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
               {9223372036854.7755_cy, 2, 9223372036854.78, 9223372036854.75},
               {MakeObject<Holder>(Variant(u"1,25")), 1, 1.3, 1.25},
               {MakeObject<Holder>(Variant(Null)), 1, Null, Null}};
  const LocaleScope comma{*Locale::Named(u"fr-BE")};
  for (const auto& [number, d, round, by_fives] : cases) {
    EXPECT_EQ(Math::StdRound(number, d), round) << Shown(number);
    EXPECT_EQ(Math::Round2019(number), by_fives) << Shown(number);
  }
  EXPECT_EQ(Math::StdTruncate(900000000000000.9999_cy, 0), Variant(900000000000000.0));
  // The number of the failure of each member, with so many decimals.
  const struct {
    Variant number;
    Int16 d;
    Int32 failure;
  } failures[] = {{u"", 2, 13},     {u"abc", -1, 13},  {u"abc", 10, 6},
                  {Empty, -1, 6},   {u"1e999", 0, 6},  {Currency::Highest(), 1, 6},
                  {Missing, 0, 13}, {Object(), 0, 13}, {Array::OfBytes({}), 0, 13}};
  for (const auto& c : failures) {
    EXPECT_RAISES(Math::StdRound(c.number, c.d), RuntimeFailure(c.failure)) << Shown(c.number);
    EXPECT_RAISES(Math::StdTruncate(c.number, c.d), RuntimeFailure(c.failure)) << Shown(c.number);
    if (c.d < 0 || c.d > 9) continue;
    EXPECT_RAISES(Math::Round2019(c.number), RuntimeFailure(c.failure)) << Shown(c.number);
  }
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
  EXPECT_RAISES(Math::IsNullOrZero(u"", 1), RuntimeFailure(13));
  EXPECT_RAISES(Math::ZeroOrOneAsNull(u"x"), RuntimeFailure(13));
}

}  // namespace
}  // namespace quorl
