#include "quorl/frame/internal/registration.hpp"

#include <dlfcn.h>

#include <cstdlib>
#include <mutex>
#include <string>
#include <vector>

#include "quorl/abi/internal/errors.hpp"
#include "quorl/abi/internal/guarded.hpp"
#include "quorl/abi/internal/guid.hpp"
#include "quorl/abi/internal/percent_text.hpp"
#include "quorl/frame/internal/catalogue.hpp"
#include "quorl/frame/internal/identifiers.hpp"
#include "quorl/frame/internal/listing.hpp"
#include "quorl/registry/registry.hpp"
#include "quorl/runtime/ansi.hpp"
#include "quorl/store/open_key.hpp"
#include "quorl/store/operations.hpp"

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
  if (dladdr(reinterpret_cast<const void*>(&OwnPath), &info) == 0) abi::RequireDone(kAbsent);
  char* resolved = realpath(info.dli_fname, nullptr);
  if (resolved == nullptr) abi::RequireDone(kAbsent);
  const std::string path(resolved);
  std::free(resolved);
  return FromAnsi(abi::PercentEscaped(path));
}

String QualifiedName(const ClassRow& row) { return String(kLibraryName) + u"." + String(row.name); }

String LibraryKey() { return abi::GuidText(kLibraryIdentifier); }

// Top-level keys of a class, each with all that belongs below it.
std::vector<String> KeysOf(const ClassRow& row) {
  std::vector<String> keys{QualifiedName(row), u"CLSID\\" + abi::GuidText(row.identifier)};
  for (const InterfaceRow& known : row.interfaces) {
    keys.push_back(u"Interface\\" + abi::GuidText(known.identifier));
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
  entries.push_back({class_key + u"\\VERSION", u"", VersionText(row.MinorVersion())});
  if (row.kind == ClassKind::kGlobal) entries.push_back({class_key + u"\\Global", u"", u""});
  for (std::size_t version = 0; version < row.interfaces.size(); ++version) {
    const String key = u"Interface\\" + abi::GuidText(row.interfaces[version].identifier);
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

// The registration is put together where it lives in memory only, and taken over in one change, so
// that nobody ever sees half of it.
class Draft {
 public:
  Draft() {
    Clear();
    Registry registry;
    registry.InitAbsolute(HKEY_DYN_DATA, FromAnsi(kPlace));
    for (const Entry& entry : AllEntries()) {
      registry.SaveValue(entry.key, entry.name, entry.value, REG_SZ);
    }
  }
  Draft(const Draft&) = delete;
  Draft& operator=(const Draft&) = delete;
  ~Draft() { Clear(); }

  void TakeOver() const { abi::RequireDone(SHCopyKeyA(kDynData, kPlace, kClassesRoot, 0)); }

 private:
  static constexpr const char* kPlace = "Quorl.Registration";

  static void Clear() noexcept { SHDeleteKeyA(kDynData, kPlace); }
};

void Remove(StringView key) {
  const Int32 code = SHDeleteKeyA(kClassesRoot, ToAnsi(key));
  if (code != kAbsent) abi::RequireDone(code);
}

bool IsBare(StringView path) {
  KeyHandle handle = 0;
  if (RegOpenKeyExA(kClassesRoot, ToAnsi(path), 0, kReadValues, &handle) != kDone) return false;
  const OpenKey key(handle);
  Int32 subkeys = 0;
  Int32 values = 0;
  const Int32 code = RegQueryInfoKeyA(handle, nullptr, nullptr, nullptr, &subkeys, nullptr, nullptr,
                                      &values, nullptr, nullptr, nullptr, nullptr);
  return code == kDone && subkeys == 0 && values == 0;
}

void RemoveAll() {
  for (const ClassRow& row : Catalogue()) {
    for (const String& key : KeysOf(row)) Remove(key);
  }
  Remove(u"TypeLib\\" + LibraryKey());
  // The keys that all components share go with the last one.
  for (const StringView shared : {u"CLSID", u"Interface", u"TypeLib"}) {
    if (IsBare(shared)) Remove(shared);
  }
}

}  // namespace

HRESULT RegisterLibrary() noexcept {
  static std::mutex one_at_a_time;
  const std::scoped_lock lock(one_at_a_time);
  return abi::GuardedFunction([] {
    Draft().TakeOver();
    return S_OK;
  });
}

HRESULT UnregisterLibrary() noexcept {
  return abi::GuardedFunction([] {
    RemoveAll();
    return S_OK;
  });
}

}  // namespace quorl::frame
