// What names become before they are compared without case, and their hashes.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace quorl::internal {

/// The lower-cased character of each byte.
const std::array<char16_t, 256>& FoldedBytes() noexcept;

/// FNV-1a, 64 bits, over the lower-cased characters: the same for names that differ in case alone.
/// Journals hold it.
std::uint64_t HashOfName(std::string_view name) noexcept;

}  // namespace quorl::internal
