// A host that includes the C++ headers and the C header, and opens the namespace.
#include "quorl/abi/quorl.h"
#include "quorl/quorl.hpp"

using namespace quorl;

static_assert(HKEY_CURRENT_USER == quorl::HKEY_CURRENT_USER && REG_SZ == 1 && qlAlignRight == 1);
