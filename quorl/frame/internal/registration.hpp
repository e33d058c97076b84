// What the component writes below HKEY_CLASSES_ROOT so that hosts find it, and the removal of it.
#pragma once

#include "quorl/abi/quorl.h"

namespace quorl::frame {

/// Writes the registration of the library at its present path, over any former one, as one durable
/// change. After a failure nothing has changed; the code is 0x80070000 plus the store's.
HRESULT RegisterLibrary() noexcept;

/// Removes the registration as one durable change, and with it the keys CLSID, Interface and
/// TypeLib when nothing else is in them. What is not there is no failure. Fails as
/// `RegisterLibrary`.
HRESULT UnregisterLibrary() noexcept;

}  // namespace quorl::frame
