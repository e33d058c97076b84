// The Variant functions of the C header.
#include <cstring>
#include <utility>

#include "quorl/abi/internal/element.hpp"
#include "quorl/abi/internal/safe_array.hpp"
#include "quorl/abi/quorl.h"

namespace {

using quorl::abi::CopyElement;
using quorl::abi::ElementSize;
using quorl::abi::FreeElement;
using quorl::abi::IsPlain;

bool IsSingleValue(std::uint16_t vt) { return vt != VT_VARIANT && ElementSize(vt) != 0; }

bool IsArray(std::uint16_t vt) {
  return (vt & VT_ARRAY) != 0 && ElementSize(static_cast<std::uint16_t>(vt & ~VT_ARRAY)) != 0;
}

bool IsLocked(const VARIANT& variant) {
  return IsArray(variant.vt) && variant.value.array != nullptr && variant.value.array->locks != 0;
}

// Makes what `copy`, the same bytes as `source`, needs of its own.
HRESULT CopyContent(const VARIANT& source, VARIANT& copy) {
  if (IsPlain(source.vt) || (source.vt & VT_BYREF) != 0) return S_OK;
  if (IsArray(source.vt)) {
    const auto vt = static_cast<std::uint16_t>(source.vt & ~VT_ARRAY);
    return quorl::abi::CopyArray(vt, source.value.array, &copy.value.array);
  }
  return IsSingleValue(source.vt) ? CopyElement(source.vt, &copy.value, &source.value)
                                  : DISP_E_TYPEMISMATCH;
}

}  // namespace

extern "C" {

void VariantInit(VARIANT* variant) {
  if (variant != nullptr) std::memset(variant, 0, sizeof(*variant));
}

HRESULT VariantClear(VARIANT* variant) {
  if (variant == nullptr) return E_POINTER;
  const std::uint16_t vt = variant->vt;
  if (IsPlain(vt) || (vt & VT_BYREF) != 0) {
    *variant = VARIANT{};
    return S_OK;
  }
  if (IsLocked(*variant)) return E_UNEXPECTED;
  VARIANT former = std::exchange(*variant, VARIANT{});
  if (IsArray(former.vt)) return SafeArrayDestroy(former.value.array);
  if (!IsSingleValue(former.vt)) return DISP_E_TYPEMISMATCH;
  FreeElement(former.vt, &former.value);
  return S_OK;
}

HRESULT VariantCopy(VARIANT* destination, const VARIANT* source) {
  if (destination == nullptr || source == nullptr) return E_POINTER;
  if (destination == source) return S_OK;
  if (IsLocked(*destination)) return E_UNEXPECTED;
  VARIANT copy = *source;
  const HRESULT code = CopyContent(*source, copy);
  if (code != S_OK) return code;
  VariantClear(destination);
  *destination = copy;
  return S_OK;
}

}  // extern "C"
