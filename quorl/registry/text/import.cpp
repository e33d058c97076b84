#include "quorl/registry/text/import.hpp"

#include <set>
#include <utility>
#include <vector>

#include "quorl/registry/internal/store_failure.hpp"
#include "quorl/runtime/ansi.hpp"
#include "quorl/runtime/internal/join.hpp"
#include "quorl/runtime/internal/within_memory.hpp"
#include "quorl/store/operations.hpp"

namespace quorl {

using namespace internal;
namespace {

using Kind = StoreChange::Kind;

// What `text` asks for, in its order.
std::vector<StoreChange> ChangesOf(const RegistryText& text) {
  std::vector<StoreChange> changes;
  for (const RegistryTextKey& key : text) {
    const std::string path = ToAnsi(key.place.path);
    const auto add = [&](Kind kind, std::string name, Int32 type, std::string data) {
      changes.push_back({kind, key.place.root, path, std::move(name), type, std::move(data)});
    };
    add(key.is_deletion ? Kind::kDeleteKey : Kind::kCreateKey, {}, 0, {});
    for (const RegistryTextValue& value : key.values) {
      add(value.is_deletion ? Kind::kDeleteValue : Kind::kSetValue, ToAnsi(value.name), value.type,
          value.data);
    }
  }
  return changes;
}

// "ImportRegistry(HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE)": the root keys that `text` names.
String CallTextOf(const RegistryText& text) {
  std::set<String> roots;
  for (const RegistryTextKey& key : text) roots.insert(NameOf({key.place.root, {}}));
  return internal::CallTextOf(u"ImportRegistry",
                              std::vector<CallArgument>(roots.begin(), roots.end()));
}

}  // namespace

void ImportRegistry(const RegistryText& text) {
  WithinMemory([&] {
    const Int32 code = CurrentStore().Commit(ChangesOf(text));
    if (code != kDone) RaiseStoreFailure(code, CallTextOf(text));
  });
}

}  // namespace quorl
