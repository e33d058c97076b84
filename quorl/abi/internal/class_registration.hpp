// What hosts need of a class's registration: reading only. Components write it themselves. What the
// user has registered comes first, then what is there for every user (machine_classes.hpp).
#pragma once

#include <string>

#include "quorl/abi/quorl.h"
#include "quorl/runtime/types.hpp"

namespace quorl::abi {

// A store that cannot be read raises its code (errors.hpp).

/// The identifier under which a name is registered; false if there is none.
bool FindClassIdentifier(StringView progid, GUID& out);

/// The path of the library in which a class is; empty for a class that is not registered.
std::string FindLibraryPath(const GUID& class_identifier);

}  // namespace quorl::abi
