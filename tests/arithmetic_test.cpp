#include "quorl/runtime/arithmetic.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

#include "tests/support/values.hpp"

namespace quorl {
namespace {

using namespace literals;

const LocaleScope kNeutral{Locale()};

TEST(RoundToDecimals, AgreesWithDecimalText) {
  Random random(3);
  for (int i = 0; i < 40000; ++i) {
    const int decimals = static_cast<int>(random.Whole(0, 9));
    const auto units = static_cast<Double>(random.Whole(0, std::int64_t{1} << random.Whole(1, 46)));
    const auto bits = static_cast<Double>(random.Whole(1, std::int64_t{1} << 53));
    const Double tie = (units * 10 + 5) / std::pow(10.0, decimals + 1);
    // Any size, what people write (a tie in decimals, the Double nearest to it and its neighbours),
    // and an exact tie: an odd number of halves, quarters and so on down to the decimals asked for.
    for (const Double value :
         {std::ldexp(bits, static_cast<int>(random.Whole(-80, 0))),
          std::ldexp(bits, static_cast<int>(random.Whole(-15, 0))), tie, std::nextafter(tie, 0),
          std::nextafter(tie, kInfinity), (2 * units + 1) / std::ldexp(2.0, decimals)}) {
      const std::string exact = ExactText(value);
      const auto places = static_cast<std::size_t>(decimals);
      const Double expected = std::stod(RoundedText(exact, places, Ties::kToEven));
      ASSERT_EQ(RoundToDecimals(value, decimals), expected) << exact << " to " << decimals;
      ASSERT_EQ(RoundToDecimals(-value, decimals), -expected) << exact << " to " << decimals;
    }
  }
}

TEST(RoundToDecimals, KeepsTheEdges) {
  EXPECT_EQ(RoundToDecimals(1e308, 9), 1e308);
  EXPECT_EQ(RoundToDecimals(5e-324, 15), 0);
  EXPECT_EQ(TruncateToInt32(2147483647.99), 2147483647);
  EXPECT_EQ(TruncateToInt32(-0.99), 0);
  EXPECT_RAISES(TruncateToInt32(2147483648), RuntimeFailure(6));
  for (const Double value : {kNaN, kInfinity, -kInfinity}) {
    EXPECT_RAISES(TruncateToInt32(value), RuntimeFailure(6)) << value;
    EXPECT_RAISES(RoundToDecimals(value, 2), RuntimeFailure(6)) << value;
  }
  for (int i = -323; i <= 308; ++i) {
    EXPECT_EQ(PowerOfTen(i), std::strtod(("1e" + std::to_string(i)).c_str(), nullptr)) << i;
  }
  EXPECT_EQ(PowerOfTen(std::numeric_limits<int>::min()), 0);
  EXPECT_RAISES(PowerOfTen(309), RuntimeFailure(6));
}

// Values as cells: "I-6" is the Int16, "T 6 " the text.
constexpr std::string_view kLetters = "BILSCDT";
using enum VariantType;
constexpr std::array kTypes{kByte, kInt16, kInt32, kSingle, kCurrency, kDouble, kString};

VariantType TypeOf(char letter) { return kTypes.at(kLetters.find(letter)); }
Variant Read(StringView cell) {
  return ConvertTo(cell.substr(1), TypeOf(static_cast<char>(cell[0])));
}
std::string Written(const Variant& value) {
  const auto type = std::ranges::find(kTypes, value.Type()) - kTypes.begin();
  return kLetters[static_cast<std::size_t>(type)] + Utf8(ToString(value));
}

// A value of every type that takes part, all of them 6, and the type that it counts as.
const std::pair<char, Variant> kSixes[] = {
    {'B', Byte{6}}, {'I', Int16{6}}, {'L', 6},
    {'S', 6.0F},    {'C', 6_cy},     {'D', 6.0},
    {'D', Date(6)}, {'D', u" 6 "},   {'L', MakeObject<Holder>(6)}};

TEST(Arithmetic, WidestTypeWins) {
  // A row for the left side's type, a column for the right side's.
  constexpr const char* kProducts[] = {"BILSCD", "IILSCD", "LLLDCD", "SSDSCD", "CCCCCD", "DDDDDD"};
  constexpr const char* kQuotients[] = {"DDDSDD", "DDDSDD", "DDDDDD", "SSDSDD", "DDDDDD", "DDDDDD"};
  for (const auto& [counts_as, six] : kSixes) {
    const Variant& left = six;
    const std::size_t row = kLetters.find(counts_as);
    for (const auto& [letter, right] : kSixes) {
      const std::size_t column = kLetters.find(letter);
      const std::string shown = Shown(left) + " and " + Shown(right);
      EXPECT_EQ(Multiply(left, right), ConvertTo(36, TypeOf(kProducts[row][column]))) << shown;
      EXPECT_EQ(Divide(left, right), ConvertTo(1, TypeOf(kQuotients[row][column]))) << shown;
    }
    EXPECT_EQ(ToDouble(Multiply(Empty, left)), 0) << Shown(left);
    EXPECT_EQ(ToDouble(Divide(left, true)), -6) << Shown(left);
    EXPECT_RAISES(Divide(left, Empty), RuntimeFailure(11)) << Shown(left);
    for (const Variant& null : {Variant(Null), Variant(MakeObject<Holder>(Null))}) {
      EXPECT_EQ(Multiply(null, left), Variant(Null)) << Shown(left);
      EXPECT_EQ(Divide(left, null), Variant(Null)) << Shown(left);
    }
    for (const Variant& refused :
         {Variant(u"six"), Variant(Missing), Variant(Array::OfBytes({6})), Variant(Object())}) {
      EXPECT_RAISES(Multiply(left, refused), RuntimeFailure(13)) << Shown(left);
      EXPECT_RAISES(Divide(refused, left), RuntimeFailure(13)) << Shown(left);
    }
  }
}

TEST(Arithmetic, EdgesOfProductsAndQuotients) {
  for (const auto& [operation, expected] :
       Pairs(u"B16*B16=I256|B255*B255=L65025|I-32768*I-1=L32768|I-32768*I1=I-32768"
             u"|L65536*L32768=D2147483648|L65536*L-32768=L-2147483648|T2147483647*L2=D4294967294"
             u"|L-2147483648*L-2147483648=D4.611686018427388E+18|C0.0001*C0.5=C0"
             u"|C0.0003*C-0.5=C-0.0002|C0.0003*C0.5001=C0.0002|C-922337203685477.5808*L-1=!6"
             u"|C-922337203685477.5808*L1=C-922337203685477.5808|C922337203685477.5807*C1.0001=!6"
             u"|C1*S1E20=!6|S1E30*S1E30=!6|D1E300*T1E300=!6|L1/L3=D0.3333333333333333"
             u"|S1/I3=S0.33333334|C1/C4=D0.25|L0/L0=!6|T0/C0=!6|D-0/B0=!6|L1/L0=!11|S-0.5/D-0=!11"
             u"|D1E300/D1E-300=!6|S1E30/S1E-30=!6|L1/T=!13")) {
    const std::size_t sign = operation.find_first_of(u"*/");
    const Variant left = Read(StringView(operation).substr(0, sign));
    const Variant right = Read(StringView(operation).substr(sign + 1));
    const bool product = operation[sign] == u'*';
    const auto operate = [&] {
      return Written(product ? Multiply(left, right) : Divide(left, right));
    };
    EXPECT_EQ(ResultOf(operate), expected) << Shown(operation);
  }
  EXPECT_EQ(Multiply(Empty, true), Variant(Int16{0}));
  EXPECT_RAISES(Multiply(kNaN, 1), RuntimeFailure(6));
  EXPECT_RAISES(Divide(Variant(kNaN), 1), RuntimeFailure(6));
  EXPECT_RAISES(Divide(Variant(kNaN), 0), RuntimeFailure(11));
}

}  // namespace
}  // namespace quorl
