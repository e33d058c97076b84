// Math: tables of cases, and the rounding family against decimal digits: the exact expansion of a
// scaled Double (or Currency) as text, rounded, cut and carried by hand on its digits.

#include "quorl/numeric/math.hpp"

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>

#include "quorl/runtime/date.hpp"
#include "quorl/runtime/locale.hpp"
#include "tests/support/outcome.hpp"

namespace quorl {
namespace {

using namespace literals;

#if defined(__SANITIZE_ADDRESS__)
constexpr int kSamples = 100'000;
#else
constexpr int kSamples = 1'000'000;
#endif

int Samples() { return std::getenv("QUORL_LONG") != nullptr ? 10 * kSamples : kSamples; }

constexpr const char* kDecimalsFailure =
    "Quorl.Math (5000): Le nombre de décimales doit être supérieur ou égal à 0.";

// --- The oracle: a size in decimal digits ---

struct Digits {
  std::string whole;
  std::string rest;
};

void Increment(std::string& digits) {
  for (std::size_t at = digits.size(); at-- > 0;) {
    if (++digits[at] <= '9') return;
    digits[at] = '0';
  }
  digits.insert(digits.begin(), '1');
}

// Exact for every Double from 2^-60 up.
Digits ExpansionOf(Double size) {
  char text[512];
  const auto end = std::to_chars(text, std::end(text), size, std::chars_format::fixed, 120).ptr;
  const std::string all(text, end);
  const std::size_t point = all.find('.');
  return {all.substr(0, point), all.substr(point + 1)};
}

// Nearest with 4 decimals, half to even.
Digits Cleaned(const Digits& exact) {
  std::string kept = exact.whole + exact.rest.substr(0, 4);
  const std::string cut = exact.rest.substr(4);
  std::string half(cut.size(), '0');
  half[0] = '5';
  if (cut > half || (cut == half && (kept.back() - '0') % 2 == 1)) Increment(kept);
  return {kept.substr(0, kept.size() - 4), kept.substr(kept.size() - 4)};
}

// The Double nearest to a whole number of units of the last decimal.
Double Placed(const std::string& whole, int decimals) {
  const std::string text = whole + "e-" + std::to_string(decimals);
  return std::strtod(text.c_str(), nullptr);
}

struct Sizes {
  Double truncated, nearest, sup;
  bool fits_int32, sup_fits;
};

Sizes SizesOf(const Digits& x, int decimals, bool is_zero) {
  std::string up = x.whole, next = x.whole;
  if (x.rest[0] >= '5') Increment(up);
  const bool has_rest = x.rest != "0000" || (std::stod(x.whole) == 0 && !is_zero);
  if (has_rest) Increment(next);
  const Double most = std::numeric_limits<Int32>::max();
  return {Placed(x.whole, decimals), Placed(up, decimals), Placed(next, decimals),
          std::stod(x.whole) <= most, std::stod(next) <= most};
}

// Hundredths, cut to whole ones above 5, then the nearest multiple of 5 by the last digit.
Double Round2019Of(const Digits& x) {
  if (std::stod(x.whole + "." + x.rest) <= 5) return SizesOf(x, 2, false).nearest;
  std::string tens = x.whole.substr(0, x.whole.size() - 1);
  const char last = x.whole.back();
  if (last >= '8') Increment(tens);
  return Placed(tens + (last >= '3' && last <= '7' ? "5" : "0"), 2);
}

// Sizes around the places where a decision is made: ties of the last decimal, ties of the fourth
// decimal behind it, whole numbers, each a few neighbours away, and anything at all.
Double AnySize(std::mt19937_64& random, int decimals) {
  const auto magnitude = static_cast<int>(random() % 47);
  const auto base = static_cast<Double>(random() & ((std::uint64_t{1} << magnitude) - 1));
  constexpr Double kRests[] = {0, 0.5, 0.49995, 0.50005, 0.00005, 0.99995, 0.4999, 0.00001};
  const auto choice = random() % 10;
  Double size = choice < 8 ? base + kRests[choice]
                           : base + std::ldexp(static_cast<Double>(random() >> 11), -53);
  size /= std::pow(10.0, decimals);
  for (auto steps = random() % 4; steps > 0; --steps) {
    size = std::nextafter(size, random() % 2 != 0 ? 1e300 : 0.0);
  }
  return size < 1e-15 ? 0 : size;
}

// The number that `work` gives for both signs, which must be of one size; NaN for failure 6.
template <class Work>
Double SizeOf(Double size, Work work) {
  const auto run = [&](Double number) {
    try {
      return work(number);
    } catch (const RaisedError& error) {
      EXPECT_EQ(error.Number(), 6);
      return std::numeric_limits<Double>::quiet_NaN();
    }
  };
  const Double plus = run(size), minus = run(-size);
  EXPECT_TRUE(plus == -minus || (std::isnan(plus) && std::isnan(minus))) << size;
  EXPECT_FALSE(std::signbit(plus) || (minus == 0 && std::signbit(minus))) << size;
  return plus;
}

TEST(MathRounding, AgreesWithDecimalDigitsForDoubles) {
  std::mt19937_64 random(20190501);
  for (int sample = 0; sample < Samples() && !testing::Test::HasFailure(); ++sample) {
    const auto d = static_cast<Int16>(random() % 10);
    const Double size = AnySize(random, d);
    SCOPED_TRACE(testing::PrintToString(size) + " to " + std::to_string(d));
    const Sizes want = SizesOf(Cleaned(ExpansionOf(size * std::pow(10.0, d))), d, size == 0);
    const auto number = [&](auto member) {
      return SizeOf(size, [&](Double n) { return ToDouble(member(n, d)); });
    };
    EXPECT_EQ(number(Math::StdTruncate), want.truncated);
    EXPECT_EQ(number(Math::StdRound), want.nearest);
    EXPECT_EQ(number(Math::FixRound), want.nearest);
    const Double inf = number(Math::RoundInf), sup = number(Math::RoundSup);
    EXPECT_TRUE(want.fits_int32 ? inf == want.truncated : std::isnan(inf)) << inf;
    EXPECT_TRUE(want.sup_fits ? sup == want.sup : std::isnan(sup)) << sup;
    EXPECT_EQ(SizeOf(size, [](Double n) { return ToDouble(Math::Round2019(n)); }),
              Round2019Of(Cleaned(ExpansionOf(size * 100))));
  }
}

TEST(MathRounding, AgreesWithDecimalDigitsForCurrencies) {
  std::mt19937_64 random(1405);
  for (int sample = 0; sample < Samples() / 4 && !testing::Test::HasFailure(); ++sample) {
    const auto d = static_cast<Int16>(random() % 4);
    const auto units = static_cast<std::int64_t>(random() >> (14 + random() % 50));
    SCOPED_TRACE(std::to_string(units) + " ten-thousandths to " + std::to_string(d));
    const auto scaled = [&](int places) {
      std::string all = std::to_string(units) + std::string(static_cast<std::size_t>(places), '0');
      all.insert(0, all.size() < 5 ? 5 - all.size() : 0, '0');
      return Digits{all.substr(0, all.size() - 4), all.substr(all.size() - 4)};
    };
    const auto number = [&](auto work) {
      return SizeOf(static_cast<Double>(units), [&](Double n) {
        return ToDouble(work(Currency::FromTenThousandths(n < 0 ? -units : units)));
      });
    };
    const Sizes want = SizesOf(scaled(d), d, units == 0);
    EXPECT_EQ(number([&](Currency n) { return Math::StdTruncate(n, d); }), want.truncated);
    EXPECT_EQ(number([&](Currency n) { return Math::StdRound(n, d); }), want.nearest);
    EXPECT_EQ(number([](Currency n) { return Math::Round2019(n); }), Round2019Of(scaled(2)));
  }
}

TEST(MathRounding, EdgesOfTheFiveMembers) {
  const struct {
    Double nombre;
    Int16 d;
    const char *truncate, *round, *sup, *inf;
  } cases[] = {
      {2.5, 0, "2", "3", "3", "2"},
      {-2.5, 0, "-2", "-3", "-3", "-2"},
      {1.005, 2, "1", "1.01", "1.01", "1"},
      {0.29, 2, "0.29", "0.29", "0.29", "0.29"},
      {1.23456, 4, "1.2345", "1.2346", "1.2346", "1.2345"},
      {1.00001, 0, "1", "1", "1", "1"},
      {1.00006, 0, "1", "1", "2", "1"},
      {-0.00001, 0, "0", "0", "-1", "0"},
      {21474836.47, 2, "21474836.47", "21474836.47", "21474836.47", "21474836.47"},
      {21474836.48, 2, "21474836.48", "21474836.48", "failure 6", "failure 6"},
      {-21474836.48, 2, "-21474836.48", "-21474836.48", "-21474836.48", "-21474836.48"},
      {-21474836.475, 2, "-21474836.47", "-21474836.48", "failure 6", "-21474836.47"},
      {4503599627370497, 0, "4.503599627370497E+15", "4.503599627370497E+15", "failure 6",
       "failure 6"},
      {450359962737049.5, 0, "450359962737049", "450359962737050", "failure 6", "failure 6"},
      {1.5, 9, "1.5", "1.5", "1.5", "1.5"},
      {1.5, 10, "failure 6", "failure 6", "failure 6", "failure 6"},
      {1.5, 400, "failure 6", "failure 6", "failure 6", "failure 6"},
      {1.5, -1, "failure 6", "failure 6", "failure 5000", "failure 5000"},
      {0, 10, "failure 6", "failure 6", "0", "0"},
      {0, -1, "failure 6", "failure 6", "failure 5000", "failure 5000"},
      {1e307, 2, "failure 6", "failure 6", "failure 6", "failure 6"},
      {std::nan(""), 0, "failure 6", "failure 6", "failure 6", "failure 6"},
  };
  const LocaleScope plain{Locale{}};
  for (const auto& row : cases) {
    SCOPED_TRACE(testing::PrintToString(row.nombre) + " to " + std::to_string(row.d));
    EXPECT_EQ(OutcomeOf([&] { return Math::StdTruncate(row.nombre, row.d); }), row.truncate);
    EXPECT_EQ(OutcomeOf([&] { return Math::StdRound(row.nombre, row.d); }), row.round);
    EXPECT_EQ(OutcomeOf([&] { return Math::FixRound(row.nombre, row.d); }), row.round);
    EXPECT_EQ(OutcomeOf([&] { return Math::RoundSup(row.nombre, row.d); }), row.sup);
    EXPECT_EQ(OutcomeOf([&] { return Math::RoundInf(row.nombre, row.d); }), row.inf);
  }
  EXPECT_EQ(FailureOf([] { Math::RoundSup(0, -1); }), kDecimalsFailure);
  EXPECT_EQ(FailureOf([] { Math::RoundInf(0, -1); }), kDecimalsFailure);
}

TEST(MathRounding, Round2019GoesByFiveHundredths) {
  constexpr std::pair<Double, const char*> cases[] = {
      {0, "0"},      {0.044, "0.04"}, {0.045, "0.05"},   {0.051, "0.05"},    {0.079, "0.05"},
      {0.08, "0.1"}, {1.02, "1"},     {12.3299, "12.3"}, {12.3301, "12.35"}, {-1.03, "-1.05"}};
  const LocaleScope plain{Locale{}};
  for (const auto& row : cases) {
    EXPECT_EQ(OutcomeOf([&] { return Math::Round2019(row.first); }), row.second) << row.first;
  }
}

// An object is the value of its default member.
class Cell : public LateBound {
 public:
  explicit Cell(Variant value) : value_(std::move(value)) {}
  Variant Get(StringView, std::span<Variant>) override { return value_; }

 private:
  Variant value_;
};

TEST(MathRounding, TakesAnyVariantThatIsANumber) {
  const struct {
    Variant nombre;
    Int16 d;
    const char *round, *by_fives;
  } cases[] = {
      {Null, 10, "Null", "Null"},
      {Empty, 0, "5:0", "5:0"},
      {u"-2,5", 0, "5:-3", "5:-2,5"},
      {true, 1, "5:-1", "5:-1"},
      {Int32{2147483647}, 1, "5:2147483647", "5:2147483647"},
      {Byte{200}, 2, "5:200", "5:200"},
      {Single{0.25F}, 1, "5:0,3", "5:0,25"},
      {Date(2.25), 1, "5:2,3", "5:2,25"},
      {9223372036854.7755_cy, 2, "5:9223372036854,78", "5:9223372036854,75"},
      {MakeObject<Cell>(Variant(u"1,25")), 1, "5:1,3", "5:1,25"},
      {MakeObject<Cell>(Variant(Null)), 1, "Null", "Null"},
  };
  const LocaleScope comma{*Locale::Named(u"fr-BE")};
  const auto shown = [](const Variant& value) { return value.IsNull() ? "Null" : Shown(value); };
  for (const auto& [nombre, d, round, by_fives] : cases) {
    SCOPED_TRACE(round);
    EXPECT_EQ(shown(Math::StdRound(nombre, d)), round);
    EXPECT_EQ(shown(Math::Round2019(nombre)), by_fives);
  }
}

TEST(MathRounding, FailuresComeInTheOrderOfTheSteps) {
  const auto mismatch = RuntimeFailure(FailureNumber::kTypeMismatch);
  const auto overflow = RuntimeFailure(FailureNumber::kOverflow);
  EXPECT_EQ(FailureOf([] { Math::StdRound(u"abc", 2); }), mismatch);
  EXPECT_EQ(FailureOf([] { Math::StdTruncate(u"", 2); }), mismatch);
  EXPECT_EQ(FailureOf([] { Math::Round2019(u"1 cent"); }), mismatch);
  EXPECT_EQ(FailureOf([] { Math::StdRound(u"abc", 10); }), overflow);
  EXPECT_EQ(FailureOf([] { Math::StdRound(u"abc", -1); }), mismatch);
  EXPECT_EQ(FailureOf([] { Math::StdRound(Currency::Highest(), 1); }), overflow);
}

TEST(MathChoices, MinAndMaxKeepTheirArgument) {
  const struct {
    Variant first, second, min, max;
  } cases[] = {
      {5, 3, 3, 5},
      {Int16{5}, 5.0, Int16{5}, Int16{5}},
      {5.0, Int16{5}, 5.0, 5.0},
      {Null, 5, 5, 5},
      {5, Null, Null, Null},
      {Null, Null, Null, Null},
      {Empty, 5, Empty, 5},
      {Empty, -5, -5, Empty},
      {u"abc", 5, 5, u"abc"},
      {u"b", u"a", u"a", u"b"},
      {u"10", u"9", u"10", u"9"},
  };
  for (const auto& [first, second, min, max] : cases) {
    SCOPED_TRACE(testing::PrintToString(first) + " beside " + testing::PrintToString(second));
    EXPECT_EQ(Math::Min(first, second), min);
    EXPECT_EQ(Math::Max(first, second), max);
  }
}

TEST(MathChoices, MappingsOfNoValueZeroAndOne) {
  enum class Is { kZero, kOne, kOther };
  const std::pair<Variant, Is> cases[] = {
      {Empty, Is::kZero},     {Null, Is::kZero},    {0.0, Is::kZero},
      {0_cy, Is::kZero},      {Date(0), Is::kZero}, {false, Is::kZero},
      {u"0", Is::kZero},      {1.0, Is::kOne},      {u" 1 ", Is::kOne},
      {1_cy, Is::kOne},       {true, Is::kOther},   {0.5, Is::kOther},
      {Int16{2}, Is::kOther}, {u"-3", Is::kOther},  {MakeObject<Cell>(Variant(Null)), Is::kZero},
  };
  const Variant other(u"other");
  for (const auto& [value, is] : cases) {
    SCOPED_TRACE(static_cast<int>(value.Type()));
    const bool zero = is == Is::kZero;
    EXPECT_EQ(Math::IsNullOrZero(value, other), zero ? other : value);
    EXPECT_EQ(Math::ZeroAsNull(value), zero ? Variant(Null) : value);
    EXPECT_EQ(Math::ZeroOrOneAsNull(value), is == Is::kOther ? value : Variant(Null));
    EXPECT_EQ(Math::NullOrZeroAsOne(value), zero ? Variant(Int16{1}) : value);
  }
  const auto mismatch = RuntimeFailure(FailureNumber::kTypeMismatch);
  for (const Variant& text : {Variant(u""), Variant(u"x")}) {
    EXPECT_EQ(FailureOf([&] { Math::IsNullOrZero(text, 1); }), mismatch);
    EXPECT_EQ(FailureOf([&] { Math::ZeroAsNull(text); }), mismatch);
    EXPECT_EQ(FailureOf([&] { Math::ZeroOrOneAsNull(text); }), mismatch);
    EXPECT_EQ(FailureOf([&] { Math::NullOrZeroAsOne(text); }), mismatch);
  }
}

}  // namespace
}  // namespace quorl
