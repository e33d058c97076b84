// The four functions that the component exports, and nothing else.
#include "quorl/abi/quorl.h"
#include "quorl/frame/internal/catalogue.hpp"
#include "quorl/frame/internal/class_factory.hpp"
#include "quorl/frame/internal/registration.hpp"

#define QUORL_EXPORT extern "C" QUORL_API

QUORL_EXPORT HRESULT DllGetClassObject(const GUID* class_identifier, const GUID* identifier,
                                       void** out) {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  if (class_identifier == nullptr || identifier == nullptr) return E_POINTER;
  const quorl::frame::ClassRow* row = quorl::frame::FindClass(*class_identifier);
  if (row == nullptr) return CLASS_E_CLASSNOTAVAILABLE;
  return quorl::frame::GetFactory(*row, *identifier, out);
}

QUORL_EXPORT HRESULT DllCanUnloadNow() { return quorl::frame::IsInUse() ? S_FALSE : S_OK; }

QUORL_EXPORT HRESULT DllRegisterServer() { return quorl::frame::RegisterLibrary(); }

QUORL_EXPORT HRESULT DllUnregisterServer() { return quorl::frame::UnregisterLibrary(); }
