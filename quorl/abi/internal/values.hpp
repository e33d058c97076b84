// Values between their binary form and the runtime's Variant.
#pragma once

#include "quorl/abi/quorl.h"
#include "quorl/runtime/variant.hpp"

namespace quorl::abi {

/// A copy of what `value` holds, read through references and array by array. Objects become
/// references to foreign objects (dispatch_proxy.hpp). Failure 13 for an unknown type number, a
/// null or endless reference, a damaged array, and nested arrays beyond the limits of element.hpp.
QUORL_API Variant FromBinary(const VARIANT& value);

/// The binary form, the receiver's to free with VariantClear. Failure 7 when memory ran out or an
/// array has more than 2^31 - 1 bytes in binary form, 13 for arrays nested deeper than they could
/// be read back.
QUORL_API VARIANT ToBinary(const Variant& value);

/// Moves `value` to where `reference` (a VARIANT with VT_BYREF) points in the end, converted to the
/// type that stands there. Nothing happens for a value that is no reference, or one to an array.
/// Failures of the conversion.
QUORL_API void WriteBack(const VARIANT& reference, const Variant& value);

/// A VARIANT that is cleared at the end of its scope.
class OwnedVariant {
 public:
  OwnedVariant() noexcept { VariantInit(&value_); }
  explicit OwnedVariant(const Variant& value) : value_(ToBinary(value)) {}
  /// Takes what stands in a caller's slot, and leaves the slot Empty.
  static OwnedVariant TakenFrom(VARIANT* slot) noexcept {
    OwnedVariant taken;
    taken.value_ = *slot;
    VariantInit(slot);
    return taken;
  }
  OwnedVariant(OwnedVariant&& other) noexcept : value_(other.Detach()) {}
  OwnedVariant(const OwnedVariant&) = delete;
  OwnedVariant& operator=(const OwnedVariant&) = delete;
  ~OwnedVariant() { VariantClear(&value_); }

  VARIANT* Address() noexcept { return &value_; }
  const VARIANT& Get() const noexcept { return value_; }
  /// Gives the value away.
  VARIANT Detach() noexcept {
    const VARIANT value = value_;
    VariantInit(&value_);
    return value;
  }

 private:
  VARIANT value_;
};

}  // namespace quorl::abi
