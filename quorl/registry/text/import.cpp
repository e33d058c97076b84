#include "quorl/registry/text/import.hpp"

#include <algorithm>
#include <array>
#include <atomic>
#include <optional>
#include <string>
#include <utility>

#include "quorl/registry/internal/store_failure.hpp"
#include "quorl/registry/text/root_name.hpp"
#include "quorl/runtime/ansi.hpp"
#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/internal/within_memory.hpp"
#include "quorl/store/key_name.hpp"
#include "quorl/store/open_key.hpp"

namespace quorl {

using namespace internal;
namespace {

// A key of the store.
struct Place {
  KeyHandle root = 0;
  std::string path;
};

String Named(const Place& place) {
  return NameOf({static_cast<HKeyEnum>(place.root), FromAnsi(place.path)});
}

void Require(Int32 code, const Place& place) {
  if (code != kDone) RaiseStoreFailure(code, CallTextOf(u"ImportRegistry", Named(place)));
}

void RequireUnlessAbsent(Int32 code, const Place& place) {
  if (code != kAbsent) Require(code, place);
}

// None when the key is absent.
OpenKey Opened(const Place& place, Int32 access) {
  KeyHandle handle = 0;
  RequireUnlessAbsent(RegOpenKeyExA(place.root, place.path, 0, access, &handle), place);
  return OpenKey(handle);
}

OpenKey Created(const Place& place) {
  const SecurityRecord security;
  KeyHandle handle = 0;
  Require(
      RegCreateKeyExA(place.root, place.path, 0, "0", 0, kAllAccess, &security, &handle, nullptr),
      place);
  return OpenKey(handle);
}

void SetValue(const OpenKey& key, const RegistryTextValue& value, const Place& place) {
  const Int32 size = CheckedInt32(static_cast<std::int64_t>(value.data.size()));
  Require(RegSetValueExA(key.Handle(), value.name, 0, value.type, value.data.data(), size), place);
}

void DeleteValue(const OpenKey& key, const std::string& name, const Place& place) {
  RequireUnlessAbsent(RegDeleteValueA(key.Handle(), name), place);
}

void DeleteKey(const Place& place) {
  RequireUnlessAbsent(SHDeleteKeyA(place.root, place.path), place);
}

void CopyKey(const Place& source, const Place& destination) {
  const OpenKey target = Created(destination);
  Require(SHCopyKeyA(source.root, source.path, target.Handle(), 0), destination);
}

void CopyKeyIfThere(const Place& source, const Place& destination) {
  if (Opened(source, kReadValues)) CopyKey(source, destination);
}

// The value as it is stored, or a deletion where there is none.
RegistryTextValue Stored(const OpenKey& key, const std::string& name, const Place& place) {
  RegistryTextValue value{name, true, 0, {}};
  Int32 size = 0;
  Int32 code = RegQueryValueExA(key.Handle(), name, nullptr, &value.type, nullptr, &size);
  if (code == kAbsent) return value;
  Require(code, place);
  value.is_deletion = false;
  value.data.resize(static_cast<std::size_t>(size));
  Require(RegQueryValueExA(key.Handle(), name, nullptr, &value.type, value.data.data(), &size),
          place);
  return value;
}

void Put(const OpenKey& key, const RegistryTextValue& value, const Place& place) {
  if (value.is_deletion) {
    DeleteValue(key, value.name, place);
  } else {
    SetValue(key, value, place);
  }
}

// A key in memory, for this process and this import alone, gone with the object.
class MemoryKey {
 public:
  MemoryKey() {
    static std::atomic<unsigned> made{0};
    place_ = {HKEY_DYN_DATA, "Quorl\\Import\\" + std::to_string(made++)};
  }
  MemoryKey(const MemoryKey&) = delete;
  MemoryKey& operator=(const MemoryKey&) = delete;
  ~MemoryKey() { SHDeleteKeyA(place_.root, place_.path); }

  Place Below(const std::string& path) const { return {place_.root, place_.path + '\\' + path}; }

 private:
  Place place_;
};

// What the text is going to change, as it was before.
class FormerContent {
 public:
  void Remember(const RegistryText& text) {
    for (const RegistryTextKey& key : text) {
      const Place place{key.root, key.path};
      if (key.is_deletion) {
        RememberKey(place);
      } else if (const OpenKey open = Opened(place, kReadValues)) {
        RememberValues(key, open, place);
      } else {
        new_keys_.push_back(FirstMissing(place));
      }
    }
  }

  // What stands in a deleted key by then is new, and goes as a new key or a value.
  void PutBack() const {
    for (const Place& place : new_keys_) DeleteKey(place);
    for (std::size_t i = 0; i < deleted_keys_.size(); ++i) {
      CopyKeyIfThere(copies_.Below(std::to_string(i)), deleted_keys_[i]);
    }
    for (const RegistryTextKey& key : values_) {
      const Place place{key.root, key.path};
      const OpenKey open = Created(place);
      for (const RegistryTextValue& value : key.values) Put(open, value, place);
    }
  }

 private:
  void RememberKey(const Place& place) {
    CopyKeyIfThere(place, copies_.Below(std::to_string(deleted_keys_.size())));
    deleted_keys_.push_back(place);
  }

  void RememberValues(const RegistryTextKey& key, const OpenKey& open, const Place& place) {
    RegistryTextKey former{key.root, key.path, false, {}};
    for (const RegistryTextValue& value : key.values) {
      former.values.push_back(Stored(open, value.name, place));
    }
    if (!former.values.empty()) values_.push_back(std::move(former));
  }

  // The uppermost level of an absent key that is absent.
  static Place FirstMissing(const Place& place) {
    std::string_view rest = place.path;
    Place missing{place.root, {}};
    do {
      missing.path.append(missing.path.empty() ? "" : "\\").append(TakeLevel(rest));
    } while (!rest.empty() && Opened(missing, kReadValues));
    return missing;
  }

  MemoryKey copies_;
  std::vector<Place> new_keys_;
  std::vector<Place> deleted_keys_;
  RegistryText values_;
};

class Import {
 public:
  explicit Import(const RegistryText& text) : text_(text) {}

  void Run() {
    Gather();
    former_.Remember(text_);
    try {
      WithinMemory([this] {
        Delete();
        Merge();
      });
    } catch (const RaisedError& error) {
      PutBackAfter(error);
      throw;
    }
  }

 private:
  // The new content, root by root, in memory; a later section goes over an earlier one.
  void Gather() {
    for (const RegistryTextKey& key : text_) {
      const Place place = Gathered({key.root, key.path});
      if (key.is_deletion) {
        DeleteKey(place);
        continue;
      }
      const OpenKey open = Created(place);
      for (const RegistryTextValue& value : key.values) Put(open, value, place);
    }
    for (const StoreRoot root : {kClassesRoot, kCurrentUser, kLocalMachine, kUsers,
                                 kPerformanceData, kCurrentConfig, kDynData}) {
      if (Opened(Gathered({root, {}}), kReadValues)) new_content_.push_back({root, {}});
    }
  }

  // What is new is in memory by now, so that the order between it and the deletions no longer
  // matters: they only ever concern what was there before.
  void Delete() const {
    for (const RegistryTextKey& key : text_) {
      const Place place{key.root, key.path};
      if (key.is_deletion) {
        DeleteKey(place);
      } else if (std::ranges::any_of(key.values, &RegistryTextValue::is_deletion)) {
        DeleteValues(key, place);
      }
    }
  }

  static void DeleteValues(const RegistryTextKey& key, const Place& place) {
    const OpenKey open = Opened(place, kSetValues);
    if (!open) return;
    for (const RegistryTextValue& value : key.values) {
      if (value.is_deletion) DeleteValue(open, value.name, place);
    }
  }

  void Merge() const {
    for (const Place& root : new_content_) CopyKey(Gathered(root), root);
  }

  Place Gathered(const Place& place) const {
    return content_.Below(std::to_string(place.root) + '\\' + place.path);
  }

  void PutBackAfter(const RaisedError& error) const {
    try {
      former_.PutBack();
    } catch (const RaisedError& second) {
      throw RaisedError(error.Number(), error.Source(),
                        error.Description() +
                            u"\nL'ancien contenu n'a pas pu être remis en place : " +
                            second.Description());
    }
  }

  const RegistryText& text_;
  MemoryKey content_;
  std::vector<Place> new_content_;  // the root keys that get some
  FormerContent former_;
};

}  // namespace

void ImportRegistry(const RegistryText& text) {
  WithinMemory([&] { Import(text).Run(); });
}

}  // namespace quorl
