#include "quorl/frame/internal/registration.hpp"

#include <string>
#include <vector>

#include "quorl/abi/internal/errors.hpp"
#include "quorl/abi/internal/guarded.hpp"
#include "quorl/abi/internal/guid.hpp"
#include "quorl/abi/internal/library_file.hpp"
#include "quorl/abi/internal/percent_text.hpp"
#include "quorl/frame/internal/catalogue.hpp"
#include "quorl/frame/internal/identifiers.hpp"
#include "quorl/frame/internal/listing.hpp"
#include "quorl/runtime/ansi.hpp"
#include "quorl/runtime/enumerations.hpp"
#include "quorl/store/operations.hpp"

namespace quorl::frame {
namespace {

using Kind = StoreChange::Kind;

// The changes of one registration or its removal, below the root of classes.
class Changes {
 public:
  void Set(StringView key, StringView name, StringView value) {
    // The terminator is stored with the text.
    changes_.push_back(
        {Kind::kSetValue, kClassesRoot, ToAnsi(key), ToAnsi(name), REG_SZ, ToAnsi(value) + '\0'});
  }
  void Delete(StringView key, Kind kind = Kind::kDeleteKey) {
    changes_.push_back({kind, kClassesRoot, ToAnsi(key)});
  }
  // One durable change: whole or not at all.
  void Commit() const { abi::RequireDone(CurrentStore().Commit(changes_)); }

 private:
  std::vector<StoreChange> changes_;
};

// The path of the library that this function is in.
String OwnPath() {
  const std::string path = abi::LibraryFileOf(reinterpret_cast<const void*>(&OwnPath));
  if (path.empty()) abi::RequireDone(kAbsent);
  return FromAnsi(abi::PercentEscaped(path));
}

String LibraryKey() { return abi::GuidText(kLibraryIdentifier); }

String ClassKey(const ClassRow& row) { return u"CLSID\\" + abi::GuidText(row.identifier); }

String InterfaceKey(const InterfaceRow& row) {
  return u"Interface\\" + abi::GuidText(row.identifier);
}

void Register(const ClassRow& row, const String& path, Changes& changes) {
  const String key = ClassKey(row);
  const String name = QualifiedName(row);
  changes.Set(name, u"", name);
  changes.Set(name + u"\\Clsid", u"", abi::GuidText(row.identifier));
  changes.Set(key, u"", name);
  changes.Set(key + u"\\InprocServer32", u"", path);
  changes.Set(key + u"\\InprocServer32", u"ThreadingModel", u"Apartment");
  changes.Set(key + u"\\ProgID", u"", name);
  changes.Set(key + u"\\TypeLib", u"", LibraryKey());
  changes.Set(key + u"\\VERSION", u"", VersionText(row.MinorVersion()));
  if (row.kind == ClassKind::kGlobal) changes.Set(key + u"\\Global", u"", u"");
  for (std::size_t version = 0; version < row.interfaces.size(); ++version) {
    const String interface = InterfaceKey(row.interfaces[version]);
    changes.Set(interface, u"", InterfaceName(row, version));
    changes.Set(interface + u"\\TypeLib", u"", LibraryKey());
  }
}

void Unregister(const ClassRow& row, Changes& changes) {
  changes.Delete(QualifiedName(row));
  changes.Delete(ClassKey(row));
  for (const InterfaceRow& known : row.interfaces) changes.Delete(InterfaceKey(known));
}

}  // namespace

HRESULT RegisterLibrary() noexcept {
  return abi::GuardedFunction([] {
    Changes changes;
    const String path = OwnPath();
    changes.Set(u"TypeLib\\" + LibraryKey(), u"", kLibraryName);
    for (const ClassRow& row : Catalogue()) Register(row, path, changes);
    changes.Commit();
    return S_OK;
  });
}

HRESULT UnregisterLibrary() noexcept {
  return abi::GuardedFunction([] {
    Changes changes;
    for (const ClassRow& row : Catalogue()) Unregister(row, changes);
    changes.Delete(u"TypeLib\\" + LibraryKey());
    // The keys that all components share go with the last one.
    for (const StringView shared : {u"CLSID", u"Interface", u"TypeLib"}) {
      changes.Delete(shared, Kind::kDeleteEmptyKey);
    }
    changes.Commit();
    return S_OK;
  });
}

}  // namespace quorl::frame
