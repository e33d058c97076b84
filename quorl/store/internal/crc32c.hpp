// The checksum of the journal: CRC-32C, which finds every single flipped bit, every burst of up to
// 32 bits, and all but one in four thousand million of other damage. A pure function.
#pragma once

#include <cstdint>
#include <string_view>

namespace quorl::internal {

std::uint32_t Crc32c(std::string_view bytes) noexcept;

}  // namespace quorl::internal
