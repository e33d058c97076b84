// The single values that a VARIANT or an element of a SAFEARRAY can be: size, copying and ending of
// each, in one place.
#pragma once

#include <cstddef>
#include <cstdint>

#include "quorl/abi/quorl.h"

namespace quorl::abi {

/// Bytes of one value of that VT number; 0 for a number that no element can have.
std::size_t ElementSize(std::uint16_t vt) noexcept;

/// Copies a value over whatever bytes stand at `destination`; texts are made anew, objects counted
/// once more. False, with zeros at `destination`, when memory ran out or the value is of no kind.
bool CopyElement(std::uint16_t vt, void* destination, const void* source) noexcept;

/// Whether an array of so many bytes may be copied now. Always for one of its own; arrays within an
/// array that is being copied have 256 MiB together, so that one which holds itself comes to an
/// end.
bool MayCopy(std::size_t bytes) noexcept;

/// Ends what the value owns and leaves zeros.
void EndElement(std::uint16_t vt, void* element) noexcept;

}  // namespace quorl::abi
