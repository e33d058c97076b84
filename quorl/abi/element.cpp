#include "quorl/abi/element.hpp"

#include <cstring>

#include "quorl/abi/bstr.hpp"

namespace quorl::abi {
namespace {

template <class Value>
Value ValueAt(const void* place) {
  Value value;
  std::memcpy(&value, place, sizeof(value));
  return value;
}

bool CopyText(void* destination, const void* source) noexcept {
  const auto text = ValueAt<BSTR>(source);
  BSTR copy = text == nullptr ? nullptr : SysAllocStringLen(text, SysStringLen(text));
  std::memcpy(destination, &copy, sizeof(copy));
  return text == nullptr || copy != nullptr;
}

bool CopyObject(void* destination, const void* source) noexcept {
  auto* object = ValueAt<QuorlDispatch*>(source);
  if (object != nullptr) object->table->AddRef(object);
  std::memcpy(destination, &object, sizeof(object));
  return true;
}

bool CopyVariant(void* destination, const void* source) noexcept {
  // An array that holds itself would be copied without end.
  constexpr int kMostNested = 64;
  static thread_local int nested = 0;
  VARIANT copy;
  VariantInit(&copy);
  ++nested;
  const bool copied =
      nested <= kMostNested && VariantCopy(&copy, static_cast<const VARIANT*>(source)) == S_OK;
  --nested;
  std::memcpy(destination, &copy, sizeof(copy));
  return copied;
}

}  // namespace

std::size_t ElementSize(std::uint16_t vt) noexcept {
  switch (vt) {
    case VT_UI1:
      return 1;
    case VT_I2:
    case VT_BOOL:
      return 2;
    case VT_I4:
    case VT_R4:
    case VT_ERROR:
      return 4;
    case VT_R8:
    case VT_CY:
    case VT_DATE:
    case VT_BSTR:
    case VT_DISPATCH:
      return 8;
    case VT_VARIANT:
      return sizeof(VARIANT);
    default:
      return 0;
  }
}

bool CopyElement(std::uint16_t vt, void* destination, const void* source) noexcept {
  switch (vt) {
    case VT_BSTR:
      return CopyText(destination, source);
    case VT_DISPATCH:
      return CopyObject(destination, source);
    case VT_VARIANT:
      return CopyVariant(destination, source);
    default:
      std::memcpy(destination, source, ElementSize(vt));
      return ElementSize(vt) != 0;
  }
}

void EndElement(std::uint16_t vt, void* element) noexcept {
  if (vt == VT_BSTR) SysFreeString(ValueAt<BSTR>(element));
  if (vt == VT_VARIANT) VariantClear(static_cast<VARIANT*>(element));
  auto* object = vt == VT_DISPATCH ? ValueAt<QuorlDispatch*>(element) : nullptr;
  // Forgotten before it is let go: its end may run code that looks at the element again.
  std::memset(element, 0, ElementSize(vt));
  if (object != nullptr) object->table->Release(object);
}

}  // namespace quorl::abi
