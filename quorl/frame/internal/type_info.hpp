// The type information object of a class: what its catalogue row says, for a host that browses it
// at run time. Its table is described in quorl.h.
#pragma once

#include "quorl/abi/quorl.h"

namespace quorl::frame {

struct ClassRow;

/// A new one with one reference, the caller's; null without memory.
QuorlTypeInfo* NewTypeInfo(const ClassRow& row) noexcept;

}  // namespace quorl::frame
