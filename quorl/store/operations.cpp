#include "quorl/store/operations.hpp"

#include <atomic>
#include <cstring>
#include <mutex>
#include <new>
#include <string>

#include "quorl/runtime/ansi.hpp"
#include "quorl/store/persistent_store.hpp"

namespace quorl {
namespace {

constexpr Int32 kFromSystem = 4096;
constexpr Int32 kMadeNew = 1;
constexpr Int32 kWasThere = 2;

std::mutex choosing;
// The chosen or default store lives until the process ends: a host may still save from a static
// destructor.
Store* chosen = nullptr;
std::atomic<Store*> current{nullptr};

// Runs an operation on the current store; the making of the default store may lack memory.
template <class Operation>
Int32 OnCurrentStore(Operation operation) noexcept {
  try {
    return operation(CurrentStore());
  } catch (const std::bad_alloc&) {
    return kOutOfMemory;
  }
}

void Assign(Int32* out, Int32 value) noexcept {
  if (out != nullptr) *out = value;
}

}  // namespace

Store& CurrentStore() {
  if (Store* store = current.load(std::memory_order_acquire)) return *store;
  const std::lock_guard lock(choosing);
  if (chosen == nullptr) chosen = new PersistentStore(StoreFolders::Usual());
  Store* none = nullptr;
  current.compare_exchange_strong(none, chosen);
  return none == nullptr ? *chosen : *none;
}

bool ChooseStore(std::unique_ptr<Store> store) noexcept {
  const std::lock_guard lock(choosing);
  if (store == nullptr || chosen != nullptr || current.load() != nullptr) return false;
  chosen = store.release();
  current.store(chosen, std::memory_order_release);
  return true;
}

ScopedStore::ScopedStore(Store& store) noexcept : former_(current.exchange(&store)) {}

ScopedStore::~ScopedStore() { current.store(former_); }

Int32 RegOpenKeyExA(KeyHandle root, std::string_view path, Int32 options, Int32 access,
                    KeyHandle* key) noexcept {
  if (options != 0 || key == nullptr) return kWrongArgument;
  return OnCurrentStore([&](Store& store) { return store.OpenKey(root, path, access, key); });
}

Int32 RegCreateKeyExA(KeyHandle root, std::string_view path, Int32 reserved,
                      std::string_view /*key_class*/, Int32 options, Int32 access,
                      const SecurityRecord* /*security*/, KeyHandle* key,
                      Int32* disposition) noexcept {
  if (reserved != 0 || options != 0 || key == nullptr) return kWrongArgument;
  bool created = false;
  const Int32 status = OnCurrentStore(
      [&](Store& store) { return store.CreateKey(root, path, access, key, &created); });
  if (status == kDone) Assign(disposition, created ? kMadeNew : kWasThere);
  return status;
}

Int32 RegQueryValueExA(KeyHandle key, std::string_view name, const Int32* reserved, Int32* type,
                       void* data, Int32* size) noexcept {
  if (reserved != nullptr) return kWrongArgument;
  return OnCurrentStore([&](Store& store) {
    return store.QueryValue(key, name, type, {data, size});
  });
}

Int32 RegSetValueExA(KeyHandle key, std::string_view name, Int32 reserved, Int32 type,
                     const void* data, Int32 size) noexcept {
  if (reserved != 0 || size < 0 || (data == nullptr && size != 0)) return kWrongArgument;
  const std::string_view bytes(static_cast<const char*>(data), static_cast<std::size_t>(size));
  return OnCurrentStore([&](Store& store) { return store.SetValue(key, name, type, bytes); });
}

Int32 RegDeleteValueA(KeyHandle key, std::string_view name) noexcept {
  return OnCurrentStore([&](Store& store) { return store.DeleteValue(key, name); });
}

Int32 RegEnumValueA(KeyHandle key, Int32 index, char* name, Int32* name_size, const Int32* reserved,
                    Int32* type, void* data, Int32* data_size) noexcept {
  if (reserved != nullptr) return kWrongArgument;
  return OnCurrentStore([&](Store& store) {
    return store.EnumValue(key, index, {name, name_size}, type, {data, data_size});
  });
}

Int32 RegEnumKeyExA(KeyHandle key, Int32 index, char* name, Int32* name_size, const Int32* reserved,
                    char* key_class, Int32* class_size, FileTime* time) noexcept {
  const bool class_without_place = key_class != nullptr && class_size != nullptr && *class_size < 1;
  if (reserved != nullptr || class_without_place) return kWrongArgument;
  const Int32 status = OnCurrentStore([&](Store& store) {
    return store.EnumKey(key, index, {name, name_size});
  });
  if (status != kDone) return status;
  if (key_class != nullptr) *key_class = '\0';
  Assign(class_size, 0);
  if (time != nullptr) *time = FileTime{};
  return kDone;
}

Int32 RegQueryInfoKeyA(KeyHandle key, const char* /*key_class*/, Int32* class_size,
                       const Int32* reserved, Int32* subkeys, Int32* longest_subkey,
                       Int32* longest_class, Int32* values, Int32* longest_value_name,
                       Int32* longest_data, Int32* security_size, FileTime* time) noexcept {
  if (reserved != nullptr) return kWrongArgument;
  KeyInfo info;
  const Int32 status = OnCurrentStore([&](Store& store) { return store.QueryInfo(key, &info); });
  if (status != kDone) return status;
  Assign(class_size, 0);
  Assign(subkeys, info.subkeys);
  Assign(longest_subkey, info.longest_subkey);
  Assign(longest_class, 0);
  Assign(values, info.values);
  Assign(longest_value_name, info.longest_value_name);
  Assign(longest_data, info.longest_data);
  Assign(security_size, 0);
  if (time != nullptr) *time = FileTime{};
  return kDone;
}

Int32 RegCloseKey(KeyHandle key) noexcept {
  return OnCurrentStore([&](Store& store) { return store.CloseKey(key); });
}

Int32 SHCopyKeyA(KeyHandle root, std::string_view source, KeyHandle destination,
                 Int32 reserved) noexcept {
  if (reserved != 0) return kWrongArgument;
  return OnCurrentStore([&](Store& store) { return store.CopyTree(root, source, destination); });
}

Int32 SHDeleteKeyA(KeyHandle root, std::string_view path) noexcept {
  return OnCurrentStore([&](Store& store) { return store.DeleteTree(root, path); });
}

Int32 FormatMessageA(Int32 flags, const void* /*source*/, Int32 code, Int32 /*language*/,
                     char* buffer, Int32 capacity, const void* /*arguments*/) noexcept {
  const StringView sentence = SentenceOf(code);
  const auto length = static_cast<Int32>(sentence.size());
  if (flags != kFromSystem || buffer == nullptr || length == 0 || capacity <= length) return 0;
  *ToAnsi(sentence, buffer) = '\0';
  return length;
}

}  // namespace quorl
