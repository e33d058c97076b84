#include <cmath>
#include <cstdlib>

#include "quorl/numeric/math.hpp"
#include "quorl/runtime/arithmetic.hpp"
#include "quorl/runtime/compare.hpp"
#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/raised_error.hpp"

namespace quorl {

namespace {

constexpr int kCleanDecimals = 4;
constexpr Double kHalf = 0.5;

// A cleaned scaled value, cut toward zero: whole part and rest, of the same sign and both exact.
struct Scaled {
  Double whole;
  Double rest;
};

Scaled Clean(Double product) {
  const Double value = RoundToDecimals(product, kCleanDecimals);
  const Double whole = std::trunc(value);
  return {whole, value - whole};
}

// A Currency has its 4 decimals already, and more digits than a Double holds.
Scaled Clean(Currency product) {
  const std::int64_t units = product.TenThousandths();
  return {static_cast<Double>(units / Currency::kScale),
          static_cast<Double>(units % Currency::kScale) / Currency::kScale};
}

Scaled Clean(const Variant& product) {
  const Currency* amount = product.If<Currency>();
  return amount != nullptr ? Clean(*amount) : Clean(ToDouble(product));
}

// The offset stands on the rest alone: added to a large whole part it would itself be rounded.
Double Nearest(const Scaled& x, Double offset) { return x.whole + std::trunc(x.rest + offset); }

Double OffsetFor(bool at_least_zero) { return at_least_zero ? kHalf : -kHalf; }

// 10 to the power of the decimals; 0 for negative ones.
Int32 FactorOf(Int16 decimals) { return ToInt32(PowerOfTen(decimals)); }

Double Over(Double whole, Int32 factor) {
  // Adding 0 turns a negative zero into 0 and leaves everything else.
  return Divide(whole, static_cast<Double>(factor)) + 0.0;
}

void RequireDecimals(Int16 decimals) {
  if (decimals < 0) {
    throw RaisedError(kFailedCheck, u"Quorl.Math",
                      u"Le nombre de décimales doit être supérieur ou égal à 0.");
  }
}

Double Scale(Double number, Int32 factor) {
  return RoundToDecimals(Multiply(number, static_cast<Double>(factor)), kCleanDecimals);
}

// The multiples of 5 nearest to a whole number, in fives.
Double NearestFives(Double whole, Double offset) {
  const Double rest = std::fmod(whole, 5.0);
  return (whole - rest) / 5.0 + std::trunc(rest / 5.0 + offset);
}

}  // namespace

Variant Math::StdTruncate(const Variant& Nombre, Int16 Nombredecimales) {
  if (Nombre.Holds<Object>()) return StdTruncate(PlainValueOf(Nombre), Nombredecimales);
  if (Nombre.IsNull()) return Null;
  const Int32 factor = FactorOf(Nombredecimales);
  return Over(Clean(Multiply(Nombre, Variant(factor))).whole, factor);
}

Variant Math::StdRound(const Variant& Nombre, Int16 Nombredecimales) {
  if (Nombre.Holds<Object>()) return StdRound(PlainValueOf(Nombre), Nombredecimales);
  if (Nombre.IsNull()) return Null;
  const Int32 factor = FactorOf(Nombredecimales);
  const Double offset = OffsetFor(CompareToNumber(Nombre, 0) >= 0);
  return Over(Nearest(Clean(Multiply(Nombre, Variant(factor))), offset), factor);
}

Double Math::FixRound(Double Nombre, Int16 Nombredecimales) {
  const Int32 factor = FactorOf(Nombredecimales);
  const Scaled x = Clean(Multiply(Nombre, static_cast<Double>(factor)));
  return Over(Nearest(x, OffsetFor(Nombre >= 0)), factor);
}

Double Math::RoundSup(Double Nombre, Int16 Nombredecimales) {
  RequireDecimals(Nombredecimales);
  if (Nombre == 0) return 0;
  const Int32 factor = FactorOf(Nombredecimales);
  const Int32 sign = Nombre > 0 ? 1 : -1;
  Double x = Scale(Nombre, factor);
  // What vanishes at 4 decimals still counts as a rest.
  if (x == 0) x = sign * 0.001;
  Int32 whole = TruncateToInt32(x);
  if (whole != x) whole = CheckedInt32(std::abs(std::int64_t{whole}) + 1) * sign;
  return Over(whole, factor);
}

Double Math::RoundInf(Double Nombre, Int16 Nombredecimales) {
  RequireDecimals(Nombredecimales);
  if (Nombre == 0) return 0;
  const Int32 factor = FactorOf(Nombredecimales);
  return Over(TruncateToInt32(Scale(Nombre, factor)), factor);
}

Variant Math::Round2019(const Variant& Nombre) {
  constexpr Int16 kHundredths = 100;
  constexpr Int32 kFivesInOne = 20;
  if (Nombre.Holds<Object>()) return Round2019(PlainValueOf(Nombre));
  if (Nombre.IsNull()) return Null;
  const Scaled x = Clean(Multiply(Nombre, Variant(kHundredths)));
  const Double value = x.whole + x.rest;
  const Double offset = OffsetFor(value >= 0);
  if (std::abs(value) <= 5) return Over(Nearest(x, offset), kHundredths);
  return Over(NearestFives(x.whole, offset), kFivesInOne);
}

}  // namespace quorl
