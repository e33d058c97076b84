#include "quorl/frame/registration.hpp"

#include <dlfcn.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "quorl/abi/guid_text.hpp"
#include "quorl/abi/percent_text.hpp"
#include "quorl/frame/catalogue.hpp"
#include "quorl/frame/identifiers.hpp"
#include "quorl/frame/listing.hpp"
#include "quorl/registry/registry.hpp"
#include "quorl/runtime/ansi.hpp"
#include "quorl/runtime/raised_error.hpp"
#include "quorl/store/status.hpp"

namespace quorl::frame {
namespace {

struct Entry {
  String key;
  String name;
  String value;
};

// The path of the library that this function is in.
String OwnPath() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<const void*>(&OwnPath), &info) == 0) return {};
  char* resolved = realpath(info.dli_fname, nullptr);
  if (resolved == nullptr) return {};
  const std::string path(resolved);
  std::free(resolved);
  return FromAnsi(abi::PercentEscaped(path));
}

String QualifiedName(const ClassRow& row) { return String(kLibraryName) + u"." + String(row.name); }

String VersionOf(const ClassRow& row) {
  return u"1." + String(1, static_cast<char16_t>(u'0' + row.MinorVersion()));
}

const String& LibraryKey() {
  static const String text = abi::GuidText(kLibraryIdentifier);
  return text;
}

// Top-level keys of a class, each with all that belongs below it.
std::vector<String> KeysOf(const ClassRow& row) {
  std::vector<String> keys{QualifiedName(row), u"CLSID\\" + abi::GuidText(row.identifier)};
  for (const GUID& identifier : row.interfaces) {
    keys.push_back(u"Interface\\" + abi::GuidText(identifier));
  }
  return keys;
}

void AddEntriesOf(const ClassRow& row, const String& path, std::vector<Entry>& entries) {
  const String class_key = u"CLSID\\" + abi::GuidText(row.identifier);
  const String name = QualifiedName(row);
  entries.push_back({name, u"", name});
  entries.push_back({name + u"\\Clsid", u"", abi::GuidText(row.identifier)});
  entries.push_back({class_key, u"", name});
  entries.push_back({class_key + u"\\InprocServer32", u"", path});
  entries.push_back({class_key + u"\\InprocServer32", u"ThreadingModel", u"Apartment"});
  entries.push_back({class_key + u"\\ProgID", u"", name});
  entries.push_back({class_key + u"\\TypeLib", u"", LibraryKey()});
  entries.push_back({class_key + u"\\VERSION", u"", VersionOf(row)});
  if (row.kind == ClassKind::kGlobal) entries.push_back({class_key + u"\\Global", u"", u""});
  for (std::size_t version = 0; version < row.interfaces.size(); ++version) {
    const String key = u"Interface\\" + abi::GuidText(row.interfaces[version]);
    entries.push_back({key, u"", InterfaceName(row, version)});
    entries.push_back({key + u"\\TypeLib", u"", LibraryKey()});
  }
}

std::vector<Entry> AllEntries() {
  const String path = OwnPath();
  std::vector<Entry> entries{{u"TypeLib\\" + LibraryKey(), u"", String(kLibraryName)}};
  for (const ClassRow& row : Catalogue()) AddEntriesOf(row, path, entries);
  return entries;
}

Registry ClassesRoot() {
  Registry registry;
  registry.InitAbsolute(HKEY_CLASSES_ROOT, u"");
  return registry;
}

void RemoveAll(Registry& registry) {
  for (const ClassRow& row : Catalogue()) {
    for (const String& key : KeysOf(row)) registry.DeleteKey(u"\\" + key);
  }
  registry.DeleteKey(u"\\TypeLib\\" + LibraryKey());
}

void WriteAll(Registry& registry) {
  for (const Entry& entry : AllEntries()) {
    registry.SaveValue(entry.key, entry.name, entry.value, REG_SZ);
  }
}

template <class Work>
HRESULT AsCode(Work&& work) noexcept {
  constexpr std::uint32_t kStoreCode = 0x80070000;
  try {
    WithinMemory(work);
    return S_OK;
  } catch (const RaisedError& error) {
    const bool is_memory = error.Number() == static_cast<Int32>(FailureNumber::kOutOfMemory);
    return is_memory ? E_OUTOFMEMORY
                     : static_cast<HRESULT>(kStoreCode +
                                            (static_cast<std::uint32_t>(error.Number()) & 0xFFFF));
  } catch (...) {
    return E_UNEXPECTED;
  }
}

}  // namespace

HRESULT RegisterLibrary() noexcept {
  const HRESULT written = AsCode([] {
    Registry registry = ClassesRoot();
    RemoveAll(registry);
    WriteAll(registry);
  });
  if (written != S_OK) UnregisterLibrary();
  return written;
}

HRESULT UnregisterLibrary() noexcept {
  return AsCode([] {
    Registry registry = ClassesRoot();
    RemoveAll(registry);
  });
}

}  // namespace quorl::frame
