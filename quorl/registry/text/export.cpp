#include "quorl/registry/text/export.hpp"

#include "quorl/registry/internal/key_reader.hpp"
#include "quorl/registry/internal/store_failure.hpp"
#include "quorl/registry/text/root_name.hpp"
#include "quorl/runtime/ansi.hpp"
#include "quorl/runtime/internal/within_memory.hpp"
#include "quorl/store/open_key.hpp"

namespace quorl {

using namespace internal;
namespace {

// `code` is what the store said; the values are good when it is 0.
std::vector<RegistryTextValue> ValuesOf(KeyHandle key, Int32& code) {
  std::vector<RegistryTextValue> values;
  KeyCounts counts;
  code = QueryCounts(key, counts);
  ValueRow row(counts);
  for (Int32 i = 0; code == kDone && i < counts.values; ++i) {
    code = row.Read(key, i);
    if (code != kDone) break;
    const auto data = row.Buffer().begin();
    values.push_back({std::string(row.Name()), false, row.Type(), {data, data + row.Size()}});
  }
  return values;
}

}  // namespace

RegistryTextKey ExportKey(HKeyEnum root, StringView path) {
  return WithinMemory([&] {
    const String tidied = TidyPath(path);
    RegistryTextKey section{root, ToAnsi(tidied), false, {}};
    KeyHandle handle = 0;
    Int32 code = RegOpenKeyExA(root, section.path, 0, kReadValues, &handle);
    const OpenKey key(handle);
    if (code == kDone) section.values = ValuesOf(handle, code);
    if (code != kDone) {
      RaiseStoreFailure(code, CallTextOf(u"ExportKey", NameOf({root, tidied})));
    }
    return section;
  });
}

RegistryText ExportRegistry(HKeyEnum root, StringView path) {
  return WithinMemory([&] {
    Registry registry;
    registry.InitAbsolute(root, path);
    const Variant names = registry.GetSubKeys(u"", 0);
    RegistryText text;
    for (const Variant& name : names.If<Array>()->Elements()) {
      text.push_back(ExportKey(root, registry.KeyFullName(name)));
    }
    return text;
  });
}

}  // namespace quorl
