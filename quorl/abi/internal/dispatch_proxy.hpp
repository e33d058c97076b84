// Objects across the boundary: a foreign dispatch object as the runtime's Object, and back.
#pragma once

#include "quorl/abi/quorl.h"
#include "quorl/runtime/object.hpp"

namespace quorl::abi {

/// A reference to a foreign object, counted once more; empty for null. A call on it looks the name
/// up and invokes it; failures of the host become RaisedErrors as quorl.h says. Failure 13 for an
/// object without a table.
QUORL_API Object ObjectOf(QuorlDispatch* dispatch);

/// A counted dispatch pointer to what `object` refers to, null for an empty reference: the foreign
/// pointer itself, or a new dispatch object around a host's C++ object. Failure 7 without memory.
QuorlDispatch* DispatchOf(const Object& object);

/// The foreign pointer behind a reference, not counted; null if there is none.
QUORL_API QuorlDispatch* ForeignPointerOf(const Object& object) noexcept;

}  // namespace quorl::abi
