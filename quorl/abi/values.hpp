// Values between their binary form and the runtime's Variant.
#pragma once

#include "quorl/abi/quorl.h"
#include "quorl/runtime/variant.hpp"

namespace quorl::abi {

/// A copy of what `value` holds, read through references and array by array. Objects become
/// references to foreign objects (foreign_object.hpp). Failure 13 for an unknown type number, a
/// null or endless reference, and a damaged array.
Variant FromBinary(const VARIANT& value);

/// The binary form, the receiver's to end with VariantClear. Failure 7 when memory ran out.
VARIANT ToBinary(const Variant& value);

/// Moves `value` to where `reference` (a VARIANT with VT_BYREF) points, converted to the type that
/// stands there; nothing happens for a value that is no reference. Failures of the conversion.
void WriteBack(const VARIANT& reference, const Variant& value);

/// A VARIANT that is cleared at the end of its scope.
class OwnedVariant {
 public:
  OwnedVariant() noexcept { VariantInit(&value_); }
  explicit OwnedVariant(const Variant& value) : value_(ToBinary(value)) {}
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
