// Values between their binary form and the runtime's Variant.
#pragma once

#include <utility>

#include "quorl/abi/internal/element.hpp"
#include "quorl/abi/quorl.h"
#include "quorl/runtime/variant.hpp"

namespace quorl::abi {

/// The number, date or truth value of that type at a place in memory.
inline Variant NumberAt(std::uint16_t vt, const void* place) noexcept {
  switch (vt) {
    case VT_I2:
      return ValueAt<Int16>(place);
    case VT_I4:
      return ValueAt<Int32>(place);
    case VT_R4:
      return ValueAt<Single>(place);
    case VT_R8:
      return ValueAt<Double>(place);
    case VT_CY:
      return Currency::FromTenThousandths(ValueAt<std::int64_t>(place));
    case VT_DATE:
      return Date(ValueAt<Double>(place));
    case VT_BOOL:
      return ValueAt<std::int16_t>(place) != 0;
    default:
      return ValueAt<Byte>(place);
  }
}

/// FromBinary for what is no number.
QUORL_API Variant ReadBinary(const VARIANT& value);

/// A copy of what `value` holds, read through references and array by array. Objects become
/// references to foreign objects (dispatch_proxy.hpp). Failure 13 for an unknown type number, a
/// null or endless reference, a damaged array, and nested arrays beyond the limits of element.hpp;
/// 7 when memory ran out.
inline Variant FromBinary(const VARIANT& value) {
  // The two that most numbers are, without a call.
  if (value.vt == VT_I4) return value.value.i4;
  if (value.vt == VT_R8) return value.value.r8;
  return IsNumber(value.vt) ? NumberAt(value.vt, &value.value) : ReadBinary(value);
}

/// Puts the binary form into `out`, whose former content is not freed; the receiver's to free with
/// VariantClear. Failure 7 when memory ran out or an array has more than 2^31 - 1 bytes in binary
/// form, 13 for arrays nested deeper than they could be read back; `out` is Empty then.
QUORL_API void WriteBinary(const Variant& value, VARIANT& out);

/// The same, without a call for the two that most numbers are.
inline void ToBinary(const Variant& value, VARIANT& out) {
  if (value.Holds<Int32>()) {
    out = VARIANT{};
    out.vt = VT_I4;
    out.value.i4 = *value.If<Int32>();
  } else if (value.Holds<Double>()) {
    out = VARIANT{};
    out.vt = VT_R8;
    out.value.r8 = *value.If<Double>();
  } else {
    WriteBinary(value, out);
  }
}

/// Moves `value` to where `reference` (a VARIANT with VT_BYREF) points in the end, converted to the
/// type that stands there. Nothing happens for a value that is no reference, or one to an array.
/// Failures of the conversion.
QUORL_API void WriteBack(const VARIANT& reference, const Variant& value);

/// A VARIANT that is cleared at the end of its scope.
class OwnedVariant {
 public:
  OwnedVariant() noexcept = default;
  explicit OwnedVariant(const Variant& value) { WriteBinary(value, value_); }
  /// Takes what stands in a caller's slot, and leaves the slot Empty.
  static OwnedVariant TakenFrom(VARIANT* slot) noexcept {
    OwnedVariant taken;
    taken.value_ = std::exchange(*slot, VARIANT{});
    return taken;
  }
  OwnedVariant(OwnedVariant&& other) noexcept : value_(other.Detach()) {}
  OwnedVariant(const OwnedVariant&) = delete;
  OwnedVariant& operator=(const OwnedVariant&) = delete;
  ~OwnedVariant() {
    if (!IsPlain(value_.vt)) VariantClear(&value_);
  }

  VARIANT* Address() noexcept { return &value_; }
  const VARIANT& Get() const noexcept { return value_; }
  /// Gives the value away.
  VARIANT Detach() noexcept { return std::exchange(value_, VARIANT{}); }

 private:
  VARIANT value_{};
};

/// Makes a caller's result slot Empty at once, and frees what it held at the end of the scope: an
/// argument may be the same text.
class ClearedResult {
 public:
  /// `slot` may be null.
  explicit ClearedResult(VARIANT* slot) noexcept {
    if (slot == nullptr) return;
    if (!IsPlain(slot->vt)) *former_.Address() = *slot;
    *slot = VARIANT{};
  }

 private:
  OwnedVariant former_;
};

}  // namespace quorl::abi
