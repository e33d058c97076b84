// The single values that a VARIANT or an element of a SAFEARRAY can be: size, copying and freeing
// of each, in one place.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "quorl/abi/quorl.h"

namespace quorl::abi {

/// References and arrays that are nested deeper than this are taken for endless.
inline constexpr int kMostNested = 64;
/// Arrays within an array have so many bytes together: one that stands in many places may be small
/// and yet have no end.
inline constexpr std::size_t kMostNestedBytes = std::size_t{1} << 28;

/// What stands at a place in memory, which need not be aligned.
template <class Value>
Value ValueAt(const void* place) noexcept {
  Value value;
  std::memcpy(&value, place, sizeof(value));
  return value;
}

/// Bytes of one value of that VT number; 0 for a number that no element can have.
std::size_t ElementSize(std::uint16_t vt) noexcept;

/// Whether such a value owns something beyond its own bytes.
constexpr bool IsOwning(std::uint16_t vt) noexcept {
  return vt == VT_BSTR || vt == VT_DISPATCH || vt == VT_VARIANT;
}

/// Whether it stands for a number, a date or a truth value.
constexpr bool IsNumber(std::uint16_t vt) noexcept {
  return (vt >= VT_I2 && vt <= VT_DATE) || vt == VT_BOOL || vt == VT_UI1;
}

/// Whether a VARIANT of that number is all there is of its value, with nothing to free: Empty, Null
/// and error codes too.
constexpr bool IsPlain(std::uint16_t vt) noexcept {
  return vt <= VT_DATE || vt == VT_ERROR || vt == VT_BOOL || vt == VT_UI1;
}

/// Whether a value of that number can lead to an object, and so to code of a host.
constexpr bool MayHoldObject(std::uint16_t vt) noexcept { return !IsPlain(vt) && vt != VT_BSTR; }

/// Copies a value over whatever bytes stand at `destination`; texts are made anew, objects counted
/// once more. After a failure there are zeros at `destination`: E_OUTOFMEMORY, or
/// DISP_E_TYPEMISMATCH for a value of no known type or without an end.
HRESULT CopyElement(std::uint16_t vt, void* destination, const void* source) noexcept;

/// Charges `bytes` to the copy under way on this thread. A top-level array is always allowed;
/// false when the nested ones exceed kMostNestedBytes.
bool MayCopy(std::size_t bytes) noexcept;

/// Frees what the value owns and leaves zeros.
void FreeElement(std::uint16_t vt, void* element) noexcept;

}  // namespace quorl::abi
