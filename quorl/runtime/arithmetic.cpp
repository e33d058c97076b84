#include "quorl/runtime/arithmetic.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <utility>

#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/internal/decimal.hpp"
#include "quorl/runtime/internal/exact.hpp"
#include "quorl/runtime/raised_error.hpp"

namespace quorl {

using namespace internal;
namespace {

constexpr int kHighestPower = 308;
constexpr int kLowestPower = -323;

Double Finite(Double value) {
  if (!std::isfinite(value)) Raise(FailureNumber::kOverflow);
  return value;
}

// Number types from narrow to wide, as arithmetic sees them.
enum class Width { kByte, kInt16, kInt32, kSingle, kCurrency, kDouble };

Width WidthOf(const Variant& value) {
  switch (value.Type()) {
    case VariantType::kByte:
      return Width::kByte;
    case VariantType::kEmpty:
    case VariantType::kBoolean:
    case VariantType::kInt16:
      return Width::kInt16;
    case VariantType::kInt32:
      return Width::kInt32;
    case VariantType::kSingle:
      return Width::kSingle;
    case VariantType::kCurrency:
      return Width::kCurrency;
    default:
      return Width::kDouble;
  }
}

// The narrowest type that holds what both sides hold.
Width Widest(const Variant& left, const Variant& right) {
  const auto [narrow, wide] = std::minmax({WidthOf(left), WidthOf(right)});
  return narrow == Width::kInt32 && wide == Width::kSingle ? Width::kDouble : wide;
}

Variant MultiplyWhole(const Variant& left, const Variant& right, Width width) {
  const std::int64_t product = std::int64_t{ToInt32(left)} * ToInt32(right);
  if (width == Width::kByte && std::in_range<Byte>(product)) return static_cast<Byte>(product);
  if (width <= Width::kInt16 && std::in_range<Int16>(product)) return static_cast<Int16>(product);
  if (std::in_range<Int32>(product)) return static_cast<Int32>(product);
  return static_cast<Double>(product);
}

Variant MultiplyAmounts(Currency left, Currency right) {
  const __int128 product = static_cast<__int128>(left.TenThousandths()) * right.TenThousandths();
  return CheckedCurrency(DivideHalfEven(product, Currency::kScale));
}

}  // namespace

Double RoundToDecimals(Double value, int decimals) {
  constexpr Double kWholeFromHere = 9007199254740992.0;  // 2^53
  const Double factor = PowerOfTen(decimals);
  const Double scaled = value * factor;
  // From here on neighbouring Doubles lie further apart than the decimals asked for.
  if (!(std::fabs(scaled) < kWholeFromHere)) return Finite(value);
  Double rounded = std::nearbyint(scaled);
  if (std::fabs(scaled - std::trunc(scaled)) == 0.5) {
    // The product may have been rounded onto the tie; what it lost says on which side it was.
    const Double lost = std::fma(value, factor, -scaled);
    if (lost > 0) rounded = std::ceil(scaled);
    if (lost < 0) rounded = std::floor(scaled);
  }
  return rounded / factor;
}

Int32 TruncateToInt32(Double value) { return QuickTruncateToInt32(value); }

Double PowerOfTen(int exponent) {
  if (exponent > kHighestPower) Raise(FailureNumber::kOverflow);
  if (exponent < kLowestPower) return 0;
  if (exponent >= 0 && exponent <= kHighestExactPower) {
    return kExactPowers[static_cast<std::size_t>(exponent)];
  }
  std::array<char, 8> text{'1', 'e'};
  const auto written = std::to_chars(text.data() + 2, text.data() + text.size(), exponent);
  Double power = 0;
  std::from_chars(text.data(), written.ptr, power);
  return power;
}

Double Multiply(Double left, Double right) { return Finite(left * right); }

Double Divide(Double left, Double right) {
  if (right == 0) Raise(left == 0 ? FailureNumber::kOverflow : FailureNumber::kDivisionByZero);
  return Finite(left / right);
}

Variant Multiply(const Variant& left, const Variant& right) {
  if (left.Holds<Object>()) return Multiply(PlainValueOf(left), right);
  if (right.Holds<Object>()) return Multiply(left, PlainValueOf(right));
  if (left.IsNull() || right.IsNull()) return Null;
  const Width width = Widest(left, right);
  if (width <= Width::kInt32) return MultiplyWhole(left, right, width);
  if (width == Width::kCurrency) return MultiplyAmounts(ToCurrency(left), ToCurrency(right));
  const Double product = Multiply(ToDouble(left), ToDouble(right));
  return width == Width::kSingle ? Variant(ToSingle(product)) : Variant(product);
}

Variant Divide(const Variant& left, const Variant& right) {
  if (left.Holds<Object>()) return Divide(PlainValueOf(left), right);
  if (right.Holds<Object>()) return Divide(left, PlainValueOf(right));
  if (left.IsNull() || right.IsNull()) return Null;
  const Width width = Widest(left, right);
  const Double quotient = Divide(ToDouble(left), ToDouble(right));
  return width == Width::kSingle ? Variant(ToSingle(quotient)) : Variant(quotient);
}

}  // namespace quorl
