#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "quorl/numeric/math.hpp"
#include "quorl/runtime/arithmetic.hpp"
#include "quorl/runtime/compare.hpp"
#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/raised_error.hpp"

namespace quorl {

namespace {

constexpr int kCleanDecimals = 4;
constexpr Double kHalf = 0.5;

// The scaled number, cleaned by rounding it to 4 decimals.
Double Scaled(Double number, Int32 factor) {
  return RoundToDecimals(Multiply(number, static_cast<Double>(factor)), kCleanDecimals);
}
Double Cleaned(const Variant& scaled) { return RoundToDecimals(ToDouble(scaled), kCleanDecimals); }

// What is left of a scaled number when `offset` is added and the rest is cut.
Double WholePart(const Variant& scaled, Double offset) {
  const Currency* amount = scaled.If<Currency>();
  if (amount == nullptr) return std::trunc(Cleaned(scaled) + offset);
  // An amount has its 4 decimals already, and more digits than a Double holds.
  const std::int64_t units = amount->TenThousandths();
  const auto added = static_cast<std::int64_t>(offset * Currency::kScale);
  const std::int64_t carried = (units % Currency::kScale + added) / Currency::kScale;
  const std::int64_t whole = units / Currency::kScale + carried;
  return static_cast<Double>(whole);
}

Double OffsetFor(bool at_least_zero) { return at_least_zero ? kHalf : -kHalf; }

// 10 to the power of the decimals; 0 for negative ones.
Int32 FactorOf(Int16 decimals) {
  constexpr std::array kFactors{1,      10,      100,      1000,      10000,
                                100000, 1000000, 10000000, 100000000, 1000000000};
  if (decimals < 0 || decimals > 9) return ToInt32(PowerOfTen(decimals));
  return kFactors[static_cast<std::size_t>(decimals)];
}

Double Over(Double whole, Int32 factor) {
  const Double quotient = factor == 0 ? Divide(whole, 0) : whole / factor;
  // Adding 0 turns a negative zero into 0 and leaves everything else.
  return quotient + 0.0;
}

// Whether a scaled number with its half added lies so far from a whole one that cleaning cannot
// bring it across: below 2 to the power of 31, that and the roundings of the sums move it by less
// than 0.0001.
bool IsClear(Double moved) {
  constexpr Double kMargin = 0.001;
  if (!(std::fabs(moved) < std::numeric_limits<Int32>::max())) return false;
  const Double rest = std::fabs(moved - static_cast<Int32>(moved));
  return rest > kMargin && rest < 1 - kMargin;
}

void RequireDecimals(Int16 decimals) {
  if (decimals < 0) {
    throw RaisedError(kFailedCheck, u"Quorl.Math",
                      u"Le nombre de décimales doit être supérieur ou égal à 0.");
  }
}

}  // namespace

Variant Math::StdTruncate(const Variant& Nombre, Int16 Nombredecimales) {
  if (Nombre.Holds<Object>()) return StdTruncate(PlainValueOf(Nombre), Nombredecimales);
  if (Nombre.IsNull()) return Null;
  const Int32 factor = FactorOf(Nombredecimales);
  return Over(WholePart(Multiply(Nombre, Variant(factor)), 0), factor);
}

Variant Math::StdRound(const Variant& Nombre, Int16 Nombredecimales) {
  if (const Double* number = Nombre.If<Double>()) return FixRound(*number, Nombredecimales);
  if (Nombre.Holds<Object>()) return StdRound(PlainValueOf(Nombre), Nombredecimales);
  if (Nombre.IsNull()) return Null;
  const Int32 factor = FactorOf(Nombredecimales);
  const Double offset = OffsetFor(CompareToNumber(Nombre, 0) >= 0);
  return Over(WholePart(Multiply(Nombre, Variant(factor)), offset), factor);
}

Double Math::FixRound(Double Nombre, Int16 Nombredecimales) {
  const Int32 factor = FactorOf(Nombredecimales);
  const Double offset = OffsetFor(Nombre >= 0);
  const Double moved = Nombre * factor + offset;
  if (IsClear(moved)) return Over(static_cast<Int32>(moved), factor);
  return Over(std::trunc(Scaled(Nombre, factor) + offset), factor);
}

Double Math::RoundSup(Double Nombre, Int16 Nombredecimales) {
  RequireDecimals(Nombredecimales);
  if (Nombre == 0) return 0;
  const Int32 factor = FactorOf(Nombredecimales);
  const Int32 sign = Nombre > 0 ? 1 : -1;
  Double x = Scaled(Nombre, factor);
  // A number that cleans to 0 is still not 0 and goes away from it; any small rest will do.
  if (x == 0) x = sign * 0.001;
  Int32 whole = TruncateToInt32(x);
  if (whole != x) whole = CheckedInt32(std::abs(std::int64_t{whole}) + 1) * sign;
  return Over(whole, factor);
}

Double Math::RoundInf(Double Nombre, Int16 Nombredecimales) {
  RequireDecimals(Nombredecimales);
  if (Nombre == 0) return 0;
  const Int32 factor = FactorOf(Nombredecimales);
  return Over(TruncateToInt32(Scaled(Nombre, factor)), factor);
}

Variant Math::Round2019(const Variant& Nombre) {
  constexpr Int16 kHundredths = 100;
  constexpr Int32 kFivesInOne = 20;
  if (Nombre.Holds<Object>()) return Round2019(PlainValueOf(Nombre));
  if (Nombre.IsNull()) return Null;
  const Double x = Cleaned(Multiply(Nombre, Variant(kHundredths)));
  const Double offset = OffsetFor(x >= 0);
  if (std::abs(x) <= 5) return Over(std::trunc(x + offset), kHundredths);
  return Over(std::trunc(std::trunc(x) / 5 + offset), kFivesInOne);
}

}  // namespace quorl
