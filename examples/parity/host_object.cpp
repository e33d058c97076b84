#include "examples/parity/host_object.hpp"

#include <algorithm>
#include <cstring>
#include <exception>

namespace parity {

struct HostObject::Slots {
  static HostObject& At(QuorlDispatch* self) { return *static_cast<HostObject*>(self); }

  static HRESULT QueryInterface(QuorlDispatch* self, const GUID* identifier, void** out) {
    if (out == nullptr || identifier == nullptr) return E_POINTER;
    const auto is = [identifier](const GUID& known) {
      return std::memcmp(identifier, &known, sizeof(known)) == 0;
    };
    const bool is_known = is(IID_IUnknown) || is(IID_IDispatch);
    *out = is_known ? self : nullptr;
    if (is_known) AddRef(self);
    return is_known ? HRESULT{S_OK} : E_NOINTERFACE;
  }
  static std::uint32_t AddRef(QuorlDispatch* self) { return ++At(self).references_; }
  static std::uint32_t Release(QuorlDispatch* self) {
    const std::uint32_t left = --At(self).references_;
    if (left == 0) delete &At(self);
    return left;
  }
  static HRESULT GetTypeInfoCount(QuorlDispatch*, std::uint32_t* count) {
    if (count == nullptr) return E_POINTER;
    *count = 0;
    return S_OK;
  }
  static HRESULT GetTypeInfo(QuorlDispatch*, std::uint32_t, std::uint32_t, void** out) {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    return DISP_E_BADINDEX;
  }
  static HRESULT GetIDsOfNames(QuorlDispatch* self, const GUID*, const char16_t** names,
                               std::uint32_t count, std::uint32_t, std::int32_t* ids) {
    if (names == nullptr || ids == nullptr || count == 0) return E_POINTER;
    std::fill_n(ids, count, -1);
    return Guarded([&] { return At(self).Find({names, names + count}, ids[0]); });
  }
  static HRESULT Invoke(QuorlDispatch* self, std::int32_t id, const GUID*, std::uint32_t,
                        std::uint16_t flags, DISPPARAMS* parameters, VARIANT* result,
                        EXCEPINFO* info, std::uint32_t* wrong_argument) {
    if (parameters == nullptr) return E_POINTER;
    return Guarded(
        [&] { return At(self).Invoke(id, flags, *parameters, result, info, wrong_argument); });
  }

  // No exception passes through the component.
  template <class Work>
  static HRESULT Guarded(Work work) {
    try {
      return work();
    } catch (const std::exception&) {
      return E_OUTOFMEMORY;
    }
  }

  static constexpr QuorlDispatchTable kTable{
      QueryInterface, AddRef, Release, GetTypeInfoCount, GetTypeInfo, GetIDsOfNames, Invoke};
};

HostObject::HostObject() : QuorlDispatch{&Slots::kTable} {}

}  // namespace parity
