// Locale, screen and store, as a host sets them through the C header.
#include <memory>
#include <optional>
#include <utility>

#include "quorl/abi/internal/guarded.hpp"
#include "quorl/abi/quorl.h"
#include "quorl/runtime/locale.hpp"
#include "quorl/runtime/screen.hpp"
#include "quorl/runtime/utf.hpp"
#include "quorl/store/memory_store.hpp"
#include "quorl/store/operations.hpp"
#include "quorl/store/persistent_store.hpp"

namespace {

std::unique_ptr<quorl::Store> StoreIn(const char16_t* user_folder, const char16_t* machine_folder) {
  if (user_folder == nullptr) return std::make_unique<quorl::MemoryStore>();
  quorl::StoreFolders folders = quorl::StoreFolders::Usual();
  folders.user = quorl::Utf8(user_folder);
  if (machine_folder != nullptr) folders.machine = quorl::Utf8(machine_folder);
  return std::make_unique<quorl::PersistentStore>(folders);
}

}  // namespace

extern "C" {

HRESULT QuorlSetLocale(const char16_t* name) {
  if (name == nullptr || *name == u'\0') {
    quorl::Locale::UseSystem();
    return S_OK;
  }
  return quorl::abi::GuardedFunction([&] {
    std::optional<quorl::Locale> locale = quorl::Locale::Named(name);
    if (!locale) return E_INVALIDARG;
    quorl::Locale::SetCurrent(*std::move(locale));
    return HRESULT{S_OK};
  });
}

HRESULT QuorlSetScreen(double width, double height) {
  return quorl::abi::GuardedFunction([&] {
    quorl::Screen::SetSize(width, height);
    return S_OK;
  });
}

HRESULT QuorlSetStore(const char16_t* user_folder, const char16_t* machine_folder) {
  return quorl::abi::GuardedFunction([&] {
    std::unique_ptr<quorl::Store> store = StoreIn(user_folder, machine_folder);
    return quorl::ChooseStore(std::move(store)) ? S_OK : E_UNEXPECTED;
  });
}

}  // extern "C"
