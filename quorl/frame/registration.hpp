// What the component writes below HKEY_CLASSES_ROOT so that hosts find it, and the removal of it.
#pragma once

#include "quorl/abi/quorl.h"

namespace quorl::frame {

/// Writes the registration of the library at its present path, over any former one. After a failure
/// nothing of it is left: the code is 0x80070000 plus the store's.
HRESULT RegisterLibrary() noexcept;

/// Removes the registration whole. What is not there is no failure.
HRESULT UnregisterLibrary() noexcept;

}  // namespace quorl::frame
