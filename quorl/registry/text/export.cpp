#include "quorl/registry/text/export.hpp"

#include "quorl/registry/internal/key_reader.hpp"
#include "quorl/registry/internal/store_failure.hpp"
#include "quorl/runtime/ansi.hpp"
#include "quorl/runtime/internal/join.hpp"
#include "quorl/runtime/internal/within_memory.hpp"
#include "quorl/store/open_key.hpp"

namespace quorl {

using namespace internal;
namespace {

// The values are good when the result, a code of the store, is 0.
Int32 ReadValues(KeyHandle key, std::vector<RegistryTextValue>& values) {
  KeyInfo info;
  Int32 code = QueryInfo(key, info);
  ValueRow row(info);
  for (Int32 i = 0; code == kDone && i < info.values; ++i) {
    code = row.Read(key, i);
    if (code != kDone) break;
    const auto data = row.Buffer().begin();
    values.push_back({FromAnsi(row.Name()), false, row.Type(), {data, data + row.Size()}});
  }
  return code;
}

}  // namespace

RegistryTextKey ExportKey(const KeyPlace& place) {
  return WithinMemory([&] {
    RegistryTextKey section{{place.root, TidyPath(place.path)}, false, {}};
    KeyHandle handle = 0;
    Int32 code = RegOpenKeyExA(place.root, ToAnsi(section.place.path), 0, kReadValues, &handle);
    const OpenKey key(handle);
    if (code == kDone) code = ReadValues(handle, section.values);
    if (code != kDone) {
      RaiseStoreFailure(code, Joined(u"ExportKey(", NameOf(section.place), u")"));
    }
    return section;
  });
}

RegistryText ExportRegistry(const KeyPlace& place) {
  return WithinMemory([&] {
    Registry registry;
    registry.InitAbsolute(place.root, place.path);
    const Variant names = registry.GetSubKeys(u"", 0);
    RegistryText text;
    for (const Variant& name : names.If<Array>()->Elements()) {
      text.push_back(ExportKey({place.root, registry.KeyFullName(name)}));
    }
    return text;
  });
}

}  // namespace quorl
