// GUIDs as text: "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}", written in capitals, read in either
// case.
#pragma once

#include <array>
#include <optional>

#include "quorl/runtime/types.hpp"

namespace quorl::internal {

/// The bytes in the order in which the text shows them.
using GuidBytes = std::array<Byte, 16>;

/// The GUID of zeros as text, which also is the form of every other.
inline constexpr StringView kZeroGuidText = u"{00000000-0000-0000-0000-000000000000}";

/// The text, 38 characters.
QUORL_API String WriteGuid(const GuidBytes& guid);

/// The GUID that a text holds, braces included; none for any other text.
std::optional<GuidBytes> ReadGuid(StringView text) noexcept;

}  // namespace quorl::internal
