// An argument of a call by name, on its way from the caller's array to the member.
#pragma once

#include <utility>

#include "quorl/abi/internal/values.hpp"
#include "quorl/abi/quorl.h"
#include "quorl/runtime/variant.hpp"

namespace quorl::frame {

/// Numbers and texts, Empty and Null are lent: they stay where the caller has them, and the
/// member's template takes them from there, without a Variant in between where the type is right.
/// Anything else is read into a Variant first, and so is what an argument becomes that was left
/// out.
struct GivenArgument {
  /// Where the caller has it; null for one that was left out.
  const VARIANT* passed = nullptr;
  /// Its value, unless it is lent.
  Variant* read = nullptr;

  bool CanBeLent() const noexcept {
    return passed != nullptr && !abi::MayHoldObject(passed->vt) && passed->vt != VT_ERROR;
  }
  bool MayHoldObject() const noexcept {
    return passed != nullptr && abi::MayHoldObject(passed->vt);
  }

  /// The caller's VARIANT if it is lent and of that type; else null.
  const VARIANT* Lent(VariantType type) const noexcept {
    const bool is_right = read == nullptr && passed->vt == static_cast<std::uint16_t>(type);
    return is_right ? passed : nullptr;
  }
  /// The value, given away.
  Variant Take() const { return read == nullptr ? abi::FromBinary(*passed) : std::move(*read); }
};

}  // namespace quorl::frame
