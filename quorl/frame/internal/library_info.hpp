// The type information object of the library: its classes and enumerations, for a host that browses
// them at run time. Its table is described in quorl.h.
#pragma once

#include "quorl/abi/quorl.h"

namespace quorl::frame {

/// A new one with one reference, the caller's; null without memory.
QuorlLibraryInfo* NewLibraryInfo() noexcept;

}  // namespace quorl::frame
