// Identifiers as text, for the rooms that stand on this one.
#pragma once

#include "quorl/abi/quorl.h"
#include "quorl/runtime/types.hpp"

namespace quorl::abi {

/// "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}" in capitals.
QUORL_API String GuidText(const GUID& guid);
/// False, with `guid` as it was, for a text of another form.
bool ReadGuidText(StringView text, GUID& guid) noexcept;

}  // namespace quorl::abi
