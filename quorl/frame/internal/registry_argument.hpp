// The `Registry` that a caller of `Forms` passes: the instance behind its interface pointer.
#pragma once

#include "quorl/abi/quorl.h"

namespace quorl {

class Object;
class Registry;

namespace frame {

/// Failure 91 for null, 13 for an object that is no Registry of this library. The instance belongs
/// to the caller, whose reference keeps it for the call.
Registry& RegistryBehind(QuorlDispatch* pointer);
Registry& RegistryBehind(const Object& object);

}  // namespace frame
}  // namespace quorl
