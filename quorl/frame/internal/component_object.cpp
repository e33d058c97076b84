#include "quorl/frame/internal/component_object.hpp"

#include <algorithm>

#include "quorl/abi/internal/dispatch_proxy.hpp"
#include "quorl/abi/internal/guid.hpp"
#include "quorl/frame/internal/catalogue.hpp"
#include "quorl/frame/internal/invoke.hpp"
#include "quorl/frame/internal/type_info.hpp"
#include "quorl/registry/registry.hpp"
#include "quorl/runtime/raised_error.hpp"

namespace quorl::frame {
namespace {

std::atomic<std::int64_t> uses{0};

// The object whose `support` this is.
QuorlDispatch* OwnerOf(QuorlSupportErrorInfo* support) {
  // It follows the object's own table pointer.
  static_assert(sizeof(QuorlDispatch) == sizeof(void*));
  return reinterpret_cast<QuorlDispatch*>(support) - 1;
}

HRESULT SupportQuery(QuorlSupportErrorInfo* self, const GUID* identifier, void** out) {
  return QueryInterface(OwnerOf(self), identifier, out);
}
std::uint32_t SupportAddRef(QuorlSupportErrorInfo* self) { return AddRef(OwnerOf(self)); }
std::uint32_t SupportRelease(QuorlSupportErrorInfo* self) { return Release(OwnerOf(self)); }

bool IsInterfaceOf(const ClassRow& row, const GUID& identifier) {
  return std::ranges::any_of(
      row.interfaces, [&](const InterfaceRow& known) { return known.identifier == identifier; });
}

HRESULT SupportsErrorInfo(QuorlSupportErrorInfo* self, const GUID* identifier) {
  if (identifier == nullptr) return E_POINTER;
  return IsInterfaceOf(At(OwnerOf(self)).row, *identifier) ? S_OK : S_FALSE;
}

constexpr QuorlSupportErrorInfoTable kSupportTable{&SupportQuery, &SupportAddRef, &SupportRelease,
                                                   &SupportsErrorInfo};

}  // namespace

ComponentObject::ComponentObject(const ClassRow& of_class, Holder holder) noexcept
    : QuorlDispatch{of_class.table}, support{&kSupportTable}, row(of_class), held_by(holder) {
  if (held_by == Holder::kHost) CountUse(+1);
}

ComponentObject::~ComponentObject() {
  if (held_by == Holder::kHost) CountUse(-1);
}

void CountUse(int change) noexcept { uses.fetch_add(change, std::memory_order_acq_rel); }

bool IsInUse() noexcept { return uses.load(std::memory_order_acquire) != 0; }

HRESULT QueryInterface(QuorlDispatch* self, const GUID* identifier, void** out) noexcept {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  if (identifier == nullptr) return E_POINTER;
  ComponentObject& object = At(self);
  if (*identifier == IID_ISupportErrorInfo) {
    *out = &object.support;
  } else if (*identifier == IID_IUnknown || *identifier == IID_IDispatch ||
             IsInterfaceOf(object.row, *identifier)) {
    *out = self;
  } else {
    return E_NOINTERFACE;
  }
  AddRef(self);
  return S_OK;
}

std::uint32_t AddRef(QuorlDispatch* self) noexcept {
  return At(self).count.fetch_add(1, std::memory_order_relaxed) + 1;
}

std::uint32_t Release(QuorlDispatch* self) noexcept {
  ComponentObject& object = At(self);
  const std::uint32_t left = object.count.fetch_sub(1, std::memory_order_acq_rel) - 1;
  // A hidden instance survives a host that releases it once too often.
  if (left == 0 && object.held_by == Holder::kHost) object.row.destroy(&object);
  return left;
}

HRESULT GetTypeInfoCount(QuorlDispatch*, std::uint32_t* count) noexcept {
  if (count == nullptr) return E_POINTER;
  *count = 1;
  return S_OK;
}

HRESULT GetTypeInfo(QuorlDispatch* self, std::uint32_t index, std::uint32_t, void** out) noexcept {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  if (index != 0) return DISP_E_BADINDEX;
  *out = NewTypeInfo(At(self).row);
  return *out == nullptr ? E_OUTOFMEMORY : S_OK;
}

HRESULT GetIDsOfNames(QuorlDispatch* self, const GUID*, const char16_t** names, std::uint32_t count,
                      std::uint32_t, std::int32_t* ids) noexcept {
  return IdentifiersOf(At(self).row, names, count, ids);
}

Registry& RegistryBehind(QuorlDispatch* pointer) {
  if (pointer == nullptr) Raise(FailureNumber::kNoObject);
  if (pointer->table != FindClass(u"Registry")->table) Raise(FailureNumber::kTypeMismatch);
  return InstanceOf<Registry>::In(pointer);
}

Registry& RegistryBehind(const Object& object) {
  QuorlDispatch* pointer = abi::ForeignPointerOf(object);
  // A host's object in C++ has no pointer to a table.
  if (pointer == nullptr && object) Raise(FailureNumber::kTypeMismatch);
  return RegistryBehind(pointer);
}

}  // namespace quorl::frame
