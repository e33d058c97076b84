#include "quorl/abi/internal/element.hpp"

#include <cstring>

#include "quorl/abi/internal/bstr.hpp"

namespace quorl::abi {
namespace {

HRESULT CopyText(void* destination, const void* source) noexcept {
  const auto text = ValueAt<BSTR>(source);
  BSTR copy = text == nullptr ? nullptr : SysAllocStringLen(text, SysStringLen(text));
  std::memcpy(destination, &copy, sizeof(copy));
  return text == nullptr || copy != nullptr ? S_OK : E_OUTOFMEMORY;
}

HRESULT CopyObject(void* destination, const void* source) noexcept {
  auto* object = ValueAt<QuorlDispatch*>(source);
  const bool is_object = object == nullptr || object->table != nullptr;
  if (!is_object) object = nullptr;
  if (object != nullptr) object->table->AddRef(object);
  std::memcpy(destination, &object, sizeof(object));
  return is_object ? S_OK : DISP_E_TYPEMISMATCH;
}

// The elements that are being copied on this thread, each within the one before.
struct Nesting {
  int depth = 0;
  std::size_t room = 0;
};
thread_local constinit Nesting nesting;

HRESULT CopyVariant(void* destination, const void* source) noexcept {
  if (nesting.depth == 0) nesting.room = kMostNestedBytes;
  VARIANT copy;
  VariantInit(&copy);
  ++nesting.depth;
  const auto value = ValueAt<VARIANT>(source);
  const HRESULT code =
      nesting.depth <= kMostNested ? VariantCopy(&copy, &value) : DISP_E_TYPEMISMATCH;
  --nesting.depth;
  std::memcpy(destination, &copy, sizeof(copy));
  return code;
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

bool MayCopy(std::size_t bytes) noexcept {
  if (nesting.depth == 0) return true;
  if (bytes >= nesting.room) return false;
  nesting.room -= bytes + 1;
  return true;
}

HRESULT CopyElement(std::uint16_t vt, void* destination, const void* source) noexcept {
  switch (vt) {
    case VT_BSTR:
      return CopyText(destination, source);
    case VT_DISPATCH:
      return CopyObject(destination, source);
    case VT_VARIANT:
      return CopyVariant(destination, source);
    default:
      std::memcpy(destination, source, ElementSize(vt));
      return ElementSize(vt) != 0 ? S_OK : DISP_E_TYPEMISMATCH;
  }
}

void FreeElement(std::uint16_t vt, void* element) noexcept {
  if (vt == VT_BSTR) SysFreeString(ValueAt<BSTR>(element));
  if (vt == VT_VARIANT) VariantClear(static_cast<VARIANT*>(element));
  auto* object = vt == VT_DISPATCH ? ValueAt<QuorlDispatch*>(element) : nullptr;
  // Zeroed before it is released: its destruction may run code that reads the element again.
  std::memset(element, 0, ElementSize(vt));
  if (object != nullptr) object->table->Release(object);
}

}  // namespace quorl::abi
