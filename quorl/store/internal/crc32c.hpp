// The checksum of the journal: CRC-32C, which finds every single flipped bit, every burst of up to
// 32 bits, and all but one in four thousand million of other damage. Pure functions.
#pragma once

#include <cstdint>
#include <string_view>

namespace quorl::internal {

/// The checksum of `bytes`, or of what `before` is the checksum of with `bytes` after it.
std::uint32_t Crc32c(std::string_view bytes, std::uint32_t before = 0) noexcept;

/// The same in a form that every processor runs.
std::uint32_t Crc32cInPlain(std::string_view bytes, std::uint32_t before = 0) noexcept;

/// The checksum of the last `bytes` bytes of a text, by the checksums of the whole text and of what
/// stands before those bytes. Takes the same time whatever their number.
std::uint32_t Crc32cOfEnd(std::uint32_t whole, std::uint32_t before, std::uint64_t bytes) noexcept;

}  // namespace quorl::internal
