// Where a loaded library lies.
#pragma once

#include <string>

#include "quorl/runtime/export.h"

namespace quorl::abi {

/// The path of the library or program that has `address`, links resolved; empty when its file is no
/// longer where it was loaded from.
QUORL_API std::string LibraryFileOf(const void* address);

}  // namespace quorl::abi
