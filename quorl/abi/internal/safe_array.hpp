// Arrays in binary form, for the rooms that stand on this one. The functions of the C header
// (quorl.h) are their public side.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "quorl/abi/quorl.h"

namespace quorl::abi {

/// More dimensions than this have no meaning; an array that claims them is damaged.
inline constexpr std::size_t kMostDimensions = 60;

/// The bounds of an array, last dimension first.
std::span<const QuorlBound> BoundsOf(const SAFEARRAY& array) noexcept;

/// How many elements of that VT number the array holds; none if it is null, damaged, or made for
/// another type.
std::optional<std::size_t> ElementCount(const SAFEARRAY* array, std::uint16_t vt) noexcept;

/// Makes a copy of an array of that VT number, element by element. Null copies to null.
HRESULT CopyArray(std::uint16_t vt, const SAFEARRAY* source, SAFEARRAY** copy) noexcept;

}  // namespace quorl::abi
