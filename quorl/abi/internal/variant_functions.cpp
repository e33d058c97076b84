// The Variant functions of the C header.
#include <cstring>

#include "quorl/abi/internal/element.hpp"
#include "quorl/abi/internal/safe_array.hpp"
#include "quorl/abi/quorl.h"

namespace {

using quorl::abi::CopyElement;
using quorl::abi::ElementSize;
using quorl::abi::EndElement;

// A value that stands in the VARIANT itself and needs nothing else to be copied or ended.
bool IsStateless(std::uint16_t vt) { return vt == VT_EMPTY || vt == VT_NULL; }

bool IsSingleValue(std::uint16_t vt) { return vt != VT_VARIANT && ElementSize(vt) != 0; }

bool IsArray(std::uint16_t vt) {
  return (vt & VT_ARRAY) != 0 && ElementSize(static_cast<std::uint16_t>(vt & ~VT_ARRAY)) != 0;
}

}  // namespace

extern "C" {

void VariantInit(VARIANT* variant) {
  if (variant != nullptr) std::memset(variant, 0, sizeof(*variant));
}

HRESULT VariantClear(VARIANT* variant) {
  if (variant == nullptr) return E_POINTER;
  VARIANT ended = *variant;
  VariantInit(variant);
  if ((ended.vt & VT_BYREF) != 0 || IsStateless(ended.vt)) return S_OK;
  if (IsArray(ended.vt))
    return ended.value.array == nullptr ? S_OK : SafeArrayDestroy(ended.value.array);
  if (!IsSingleValue(ended.vt)) return DISP_E_TYPEMISMATCH;
  EndElement(ended.vt, &ended.value);
  return S_OK;
}

HRESULT VariantCopy(VARIANT* destination, const VARIANT* source) {
  if (destination == nullptr || source == nullptr) return E_POINTER;
  if (destination == source) return S_OK;
  VARIANT copy = *source;
  if ((source->vt & VT_BYREF) == 0 && !IsStateless(source->vt)) {
    if (IsArray(source->vt)) {
      const auto vt = static_cast<std::uint16_t>(source->vt & ~VT_ARRAY);
      const HRESULT result = quorl::abi::CopyArray(vt, source->value.array, &copy.value.array);
      if (result != S_OK) return result;
    } else if (!IsSingleValue(source->vt)) {
      return DISP_E_TYPEMISMATCH;
    } else if (!CopyElement(source->vt, &copy.value, &source->value)) {
      return E_OUTOFMEMORY;
    }
  }
  const HRESULT cleared = VariantClear(destination);
  if (cleared != S_OK && cleared != DISP_E_TYPEMISMATCH) {
    VariantClear(&copy);
    return cleared;
  }
  *destination = copy;
  return S_OK;
}

}  // extern "C"
