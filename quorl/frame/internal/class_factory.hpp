// Class factories, and the hidden instances of the global classes.
#pragma once

#include "quorl/abi/quorl.h"

namespace quorl::frame {

struct ClassRow;

/// The factory of a class under `identifier`; what DllGetClassObject gives.
HRESULT GetFactory(const ClassRow& row, const GUID& identifier, void** out) noexcept;

}  // namespace quorl::frame
