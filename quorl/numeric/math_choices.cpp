#include "quorl/numeric/math.hpp"
#include "quorl/runtime/compare.hpp"
#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/internal/within_memory.hpp"

namespace quorl {

using namespace internal;
namespace {

bool IsAbsentOrZero(const Variant& value) {
  if (value.Holds<Object>()) return IsAbsentOrZero(PlainValueOf(value));
  return value.IsEmpty() || value.IsNull() || CompareToNumber(value, 0) == 0;
}

}  // namespace

Variant Math::Min(const Variant& Expression1, const Variant& Expression2) {
  return CopyOf(Compare(Expression1, Expression2) <= 0 ? Expression1 : Expression2);
}

Variant Math::Max(const Variant& Expression1, const Variant& Expression2) {
  return CopyOf(Compare(Expression1, Expression2) >= 0 ? Expression1 : Expression2);
}

Variant Math::IsNullOrZero(const Variant& Value, const Variant& Default) {
  return CopyOf(IsAbsentOrZero(Value) ? Default : Value);
}

Variant Math::ZeroAsNull(const Variant& Value) { return IsNullOrZero(Value, Null); }

Variant Math::ZeroOrOneAsNull(const Variant& Value) {
  if (IsAbsentOrZero(Value) || CompareToNumber(Value, 1) == 0) return Null;
  return CopyOf(Value);
}

Variant Math::NullOrZeroAsOne(const Variant& Value) { return IsNullOrZero(Value, Int16{1}); }

}  // namespace quorl
