#include "quorl/runtime/arithmetic.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>

#include "quorl/runtime/convert.hpp"
#include "tests/support/decimal_text.hpp"
#include "tests/support/holder.hpp"
#include "tests/support/print.hpp"
#include "tests/support/raises.hpp"
#include "tests/support/random.hpp"

namespace quorl {
namespace {

using namespace literals;

const LocaleScope kNeutral{Locale()};

constexpr Double kNaN = std::numeric_limits<Double>::quiet_NaN();
constexpr Double kInfinity = std::numeric_limits<Double>::infinity();

void ExpectRoundedLikeText(Double value, int decimals) {
  const std::string exact = ExactText(value);
  const std::string text = RoundedText(exact, static_cast<std::size_t>(decimals), Ties::kToEven);
  const Double rounded = RoundToDecimals(value, decimals);
  ASSERT_EQ(rounded, std::stod(text)) << exact << " to " << decimals;
  ASSERT_EQ(RoundToDecimals(-value, decimals), -rounded) << exact << " to " << decimals;
}

TEST(RoundToDecimals, AgreesWithDecimalText) {
  Random random(3);
  for (int i = 0; i < 40000; ++i) {
    const int decimals = static_cast<int>(random.Whole(0, 9));
    // Any size, up to where every Double is whole.
    const auto bits = static_cast<Double>(random.Whole(1, std::int64_t{1} << 53));
    ExpectRoundedLikeText(std::ldexp(bits, static_cast<int>(random.Whole(-80, 0))), decimals);
    ExpectRoundedLikeText(std::ldexp(bits, static_cast<int>(random.Whole(-15, 0))), decimals);
    // What people write: a tie in decimals, the Double nearest to it and its neighbours.
    const auto units = static_cast<Double>(random.Whole(0, std::int64_t{1} << random.Whole(1, 46)));
    const Double tie = (units * 10 + 5) / std::pow(10.0, decimals + 1);
    for (const Double value : {tie, std::nextafter(tie, 0), std::nextafter(tie, kInfinity)}) {
      ExpectRoundedLikeText(value, decimals);
    }
    // An exact tie: an odd number of halves, quarters and so on down to the decimals asked for.
    const Double exact_tie = (2 * units + 1) / std::ldexp(2.0, decimals);
    ExpectRoundedLikeText(exact_tie, decimals);
  }
}

TEST(RoundToDecimals, KeepsTheEdges) {
  EXPECT_EQ(RoundToDecimals(28.999999999999996, 4), 29);
  EXPECT_EQ(RoundToDecimals(0.285, 2), 0.28);  // its Double lies below the tie
  EXPECT_EQ(RoundToDecimals(1e308, 9), 1e308);
  EXPECT_EQ(RoundToDecimals(5e-324, 15), 0);
  for (const Double value : {kNaN, kInfinity, -kInfinity}) {
    EXPECT_RAISES(RoundToDecimals(value, 2), RuntimeFailure(6)) << value;
  }
  EXPECT_EQ(TruncateToInt32(2147483647.99), 2147483647);
  EXPECT_EQ(TruncateToInt32(-2147483648.99), std::numeric_limits<Int32>::min());
  EXPECT_EQ(TruncateToInt32(-0.99), 0);
  for (const Double value : {2147483648.0, -2147483649.0, kNaN, kInfinity}) {
    EXPECT_RAISES(TruncateToInt32(value), RuntimeFailure(6)) << value;
  }
  for (int i = -323; i <= 308; ++i) {
    EXPECT_EQ(PowerOfTen(i), std::strtod(("1e" + std::to_string(i)).c_str(), nullptr)) << i;
  }
  EXPECT_EQ(PowerOfTen(std::numeric_limits<int>::min()), 0);
  EXPECT_RAISES(PowerOfTen(309), RuntimeFailure(6));
}

// A value of every type that takes part, all of them 6, and the type that it counts as.
struct Six {
  char counts_as;
  Variant value;
};
const Six kSixes[] = {
    {'B', Byte{6}}, {'I', Int16{6}}, {'L', 6},
    {'S', 6.0F},    {'C', 6_cy},     {'D', 6.0},
    {'D', Date(6)}, {'D', u" 6 "},   {'L', MakeObject<Holder>(6)},
};

TEST(Arithmetic, WidestTypeWins) {
  using enum VariantType;
  constexpr std::string_view kLetters = "BILSCD";
  constexpr std::array kTypes{kByte, kInt16, kInt32, kSingle, kCurrency, kDouble};
  // A row for the left side's type, a column for the right side's.
  constexpr const char* kProducts[] = {"BILSCD", "IILSCD", "LLLDCD", "SSDSCD", "CCCCCD", "DDDDDD"};
  constexpr const char* kQuotients[] = {"DDDSDD", "DDDSDD", "DDDDDD", "SSDSDD", "DDDDDD", "DDDDDD"};
  const auto type = [&](const char* const* table, const Six& left, const Six& right) {
    const char letter = table[kLetters.find(left.counts_as)][kLetters.find(right.counts_as)];
    return kTypes[kLetters.find(letter)];
  };
  for (const Six& left : kSixes) {
    const Variant& six = left.value;
    for (const Six& right : kSixes) {
      const std::string shown = Shown(six) + " and " + Shown(right.value);
      EXPECT_EQ(Multiply(six, right.value), ConvertTo(36, type(kProducts, left, right))) << shown;
      EXPECT_EQ(Divide(six, right.value), ConvertTo(1, type(kQuotients, left, right))) << shown;
    }
    EXPECT_EQ(ToDouble(Multiply(Empty, six)), 0) << Shown(six);
    EXPECT_EQ(ToDouble(Divide(six, true)), -6) << Shown(six);
    EXPECT_RAISES(Divide(six, Empty), RuntimeFailure(11)) << Shown(six);
    for (const Variant& null : {Variant(Null), Variant(MakeObject<Holder>(Null))}) {
      EXPECT_EQ(Multiply(null, six), Variant(Null)) << Shown(six);
      EXPECT_EQ(Divide(six, null), Variant(Null)) << Shown(six);
    }
    for (const Variant& refused :
         {Variant(u"six"), Variant(Missing), Variant(Array::OfBytes({6})), Variant(Object())}) {
      EXPECT_RAISES(Multiply(six, refused), RuntimeFailure(13)) << Shown(six);
      EXPECT_RAISES(Divide(refused, six), RuntimeFailure(13)) << Shown(six);
    }
  }
}

TEST(Arithmetic, OverflowWidensWholeNumbersAndFailsElsewhere) {
  constexpr Int32 kLowest = std::numeric_limits<Int32>::min();
  struct Case {
    Variant left, right, product;
  };
  for (const Case& c : {
           Case{Byte{16}, Byte{16}, Int16{256}},
           {Byte{255}, Byte{255}, 65025},
           {Int16{-32768}, Int16{-1}, 32768},
           {Int16{-32768}, Int16{1}, Int16{-32768}},
           {Empty, true, Int16{0}},
           {65536, 32768, 2147483648.0},
           {65536, -32768, kLowest},
           {kLowest, kLowest, 4611686018427387904.0},
           {kLowest, Int16{-1}, 2147483648.0},
           {u"2147483647", 2, 4294967294.0},
           {0.0001_cy, 0.5_cy, 0_cy},         // a tie, to even
           {0.0003_cy, -0.5_cy, -0.0002_cy},  // a tie, to even
           {0.0003_cy, 0.5001_cy, 0.0002_cy},
           {Currency::Lowest(), 1, Currency::Lowest()},
       }) {
    EXPECT_EQ(Multiply(c.left, c.right), c.product) << Shown(c.left) << " by " << Shown(c.right);
  }
  for (const Case& c : {Case{Currency::Lowest(), -1, {}},
                        {Currency::Highest(), 1.0001_cy, {}},
                        {1_cy, 1e20F, {}},
                        {1e30F, 1e30F, {}},
                        {1e300, 1e300, {}},
                        {u"1E300", u"1E300", {}},
                        {kNaN, 1, {}}}) {
    EXPECT_RAISES(Multiply(c.left, c.right), RuntimeFailure(6))
        << Shown(c.left) << " by " << Shown(c.right);
  }
}

TEST(Arithmetic, DivisionTellsItsTwoFailures) {
  struct Case {
    Variant left, right;
    Int32 number;
  };
  for (const Case& c : {Case{0, 0, 6},
                        {Empty, Empty, 6},
                        {u"0", false, 6},
                        {-0.0, 0_cy, 6},
                        {1, 0, 11},
                        {-0.5F, -0.0, 11},
                        {kNaN, 0, 11},
                        {1e300, 1e-300, 6},
                        {1e30F, 1e-30F, 6},
                        {kNaN, 1, 6},
                        {1, u"", 13}}) {
    EXPECT_RAISES(Divide(c.left, c.right), RuntimeFailure(c.number))
        << Shown(c.left) << " by " << Shown(c.right);
  }
  EXPECT_EQ(Divide(Variant(1), 3), Variant(1.0 / 3));
  EXPECT_EQ(Divide(Variant(1.0F), Int16{3}), Variant(1.0F / 3));
  EXPECT_EQ(Divide(Variant(1_cy), 4_cy), Variant(0.25));
}

}  // namespace
}  // namespace quorl
