// The classes that are there for every user without a registration: those of the component beside
// this library, where a package has laid down their list, quorl/classes. A line has a name, a blank
// and an identifier; any other line is ignored. The list is read at the first question.
#pragma once

#include <string>

#include "quorl/abi/quorl.h"
#include "quorl/runtime/types.hpp"

namespace quorl::abi {

/// The identifier of the class with that name, in any case of its letters; false if there is none.
bool FindMachineClass(StringView progid, GUID& out);

/// The path of the component; empty for a class that is not in the list.
std::string FindMachineLibrary(const GUID& class_identifier);

}  // namespace quorl::abi
