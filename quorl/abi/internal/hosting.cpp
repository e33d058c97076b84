// Finding, loading and making: the functions of the C header that give a host its objects.
#include <dlfcn.h>

#include <string>

#include "quorl/abi/internal/class_registration.hpp"
#include "quorl/abi/internal/guarded.hpp"
#include "quorl/abi/internal/ref_counted.hpp"
#include "quorl/abi/quorl.h"
#include "quorl/runtime/utf.hpp"

namespace {

using quorl::abi::Reference;

// A component's library, which stays loaded: its objects may live anywhere.
void* Load(const std::string& path) { return dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL); }

template <class Function>
Function Export(void* library, const char* name) {
  return library == nullptr ? nullptr : reinterpret_cast<Function>(dlsym(library, name));
}

// Calls a component's registration or its removal.
HRESULT CallExport(const char16_t* path, const char* name) {
  if (path == nullptr) return E_POINTER;
  return quorl::abi::GuardedFunction([&]() -> HRESULT {
    auto* function = Export<DllRegisterServerFunction>(Load(quorl::Utf8(path)), name);
    return function == nullptr ? QUORL_E_NOTLOADABLE : function();
  });
}

}  // namespace

extern "C" {

HRESULT CLSIDFromProgID(const char16_t* progid, GUID* out) {
  if (out == nullptr) return E_POINTER;
  *out = GUID{};
  if (progid == nullptr) return E_POINTER;
  return quorl::abi::GuardedFunction([&]() -> HRESULT {
    return quorl::abi::FindClassIdentifier(progid, *out) ? S_OK : CO_E_CLASSSTRING;
  });
}

HRESULT CoGetClassObject(const GUID* class_identifier, uint32_t, void*, const GUID* identifier,
                         void** out) {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  if (class_identifier == nullptr || identifier == nullptr) return E_POINTER;
  return quorl::abi::GuardedFunction([&]() -> HRESULT {
    const std::string path = quorl::abi::FindLibraryPath(*class_identifier);
    if (path.empty()) return REGDB_E_CLASSNOTREG;
    auto* function = Export<DllGetClassObjectFunction>(Load(path), "DllGetClassObject");
    return function == nullptr ? QUORL_E_NOTLOADABLE : function(class_identifier, identifier, out);
  });
}

HRESULT CoCreateInstance(const GUID* class_identifier, void* outer, uint32_t context,
                         const GUID* identifier, void** out) {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  if (identifier == nullptr) return E_POINTER;
  Reference<QuorlClassFactory> factory;
  const HRESULT found =
      CoGetClassObject(class_identifier, context, nullptr, &IID_IClassFactory, factory.Receive());
  if (found < 0) return found;
  return factory.Get()->table->CreateInstance(factory.Get(), outer, identifier, out);
}

HRESULT QuorlGlobalObject(const char16_t* progid, void** out) {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  GUID class_identifier{};
  const HRESULT known = CLSIDFromProgID(progid, &class_identifier);
  if (known < 0) return known;
  Reference<QuorlGlobalFactory> factory;
  const HRESULT found =
      CoGetClassObject(&class_identifier, 0, nullptr, &QUORL_IID_GLOBAL_FACTORY, factory.Receive());
  if (found == E_NOINTERFACE) return CLASS_E_CLASSNOTAVAILABLE;
  if (found < 0) return found;
  return factory.Get()->table->GetGlobalObject(factory.Get(), out);
}

HRESULT QuorlRegister(const char16_t* path) { return CallExport(path, "DllRegisterServer"); }

HRESULT QuorlUnregister(const char16_t* path) { return CallExport(path, "DllUnregisterServer"); }

}  // extern "C"
