// Identifiers: equality and text.
#pragma once

#include <cstring>

#include "quorl/abi/quorl.h"
#include "quorl/runtime/types.hpp"

// Beside the type, where every use of == finds it.
inline bool operator==(const GUID& a, const GUID& b) noexcept {
  return std::memcmp(&a, &b, sizeof(GUID)) == 0;
}

namespace quorl::abi {

using ::operator==;

/// "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}" in capitals.
QUORL_API String GuidText(const GUID& guid);
/// False, with `guid` as it was, for a text of another form.
bool ReadGuidText(StringView text, GUID& guid) noexcept;

}  // namespace quorl::abi
