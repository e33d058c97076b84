// A dispatch object around a host's C++ object, so that a component can be given it.
#pragma once

#include "quorl/abi/quorl.h"
#include "quorl/runtime/object.hpp"

namespace quorl::abi {

/// A new dispatch object with one reference, the caller's, that keeps `object` alive. Its names get
/// identifiers as they are asked for; the default member has identifier 0, and a name is known to
/// exist only when it is invoked.
QuorlDispatch* NewLocalDispatch(const Object& object);

/// The object behind such a dispatch object; empty for any other.
Object LocalObjectBehind(QuorlDispatch* dispatch) noexcept;

}  // namespace quorl::abi
