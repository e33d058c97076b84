#include "quorl/abi/internal/element.hpp"

#include <cstring>

#include "quorl/abi/internal/bstr.hpp"

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
  const bool is_object = object == nullptr || object->table != nullptr;
  if (!is_object) object = nullptr;
  if (object != nullptr) object->table->AddRef(object);
  std::memcpy(destination, &object, sizeof(object));
  return is_object;
}

// The elements that are being copied on this thread, each within the one before.
struct Nesting {
  static constexpr int kMost = 64;
  int depth = 0;
  std::size_t room = 0;
};
thread_local constinit Nesting nesting;

bool CopyVariant(void* destination, const void* source) noexcept {
  constexpr std::size_t kMostNestedBytes = std::size_t{1} << 28;
  if (nesting.depth == 0) nesting.room = kMostNestedBytes;
  VARIANT copy;
  VariantInit(&copy);
  ++nesting.depth;
  const auto value = ValueAt<VARIANT>(source);
  const bool copied = nesting.depth <= Nesting::kMost && VariantCopy(&copy, &value) == S_OK;
  --nesting.depth;
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

bool MayCopy(std::size_t bytes) noexcept {
  if (nesting.depth == 0) return true;
  if (bytes >= nesting.room) return false;
  nesting.room -= bytes + 1;
  return true;
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
