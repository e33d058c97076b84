#include "quorl/registry/text/import.hpp"

#include <algorithm>
#include <atomic>
#include <string>
#include <utility>

#include "quorl/registry/internal/store_failure.hpp"
#include "quorl/runtime/ansi.hpp"
#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/internal/join.hpp"
#include "quorl/runtime/internal/within_memory.hpp"
#include "quorl/store/key_name.hpp"
#include "quorl/store/open_key.hpp"

namespace quorl {

using namespace internal;
namespace {

void Require(Int32 code, const KeyPlace& place) {
  if (code != kDone) RaiseStoreFailure(code, Joined({u"ImportRegistry(", NameOf(place), u")"}));
}

void RequireUnlessAbsent(Int32 code, const KeyPlace& place) {
  if (code != kAbsent) Require(code, place);
}

// None when the key is absent.
OpenKey Opened(const KeyPlace& place, Int32 access) {
  KeyHandle handle = 0;
  RequireUnlessAbsent(RegOpenKeyExA(place.root, ToAnsi(place.path), 0, access, &handle), place);
  return OpenKey(handle);
}

OpenKey Created(const KeyPlace& place) {
  const SecurityRecord security;
  KeyHandle handle = 0;
  Require(RegCreateKeyExA(place.root, ToAnsi(place.path), 0, "0", 0, kAllAccess, &security, &handle,
                          nullptr),
          place);
  return OpenKey(handle);
}

void SetValue(const OpenKey& key, const RegistryTextValue& value, const KeyPlace& place) {
  const Int32 size = CheckedInt32(static_cast<std::int64_t>(value.data.size()));
  Require(RegSetValueExA(key.Handle(), ToAnsi(value.name), 0, value.type, value.data.data(), size),
          place);
}

void DeleteValue(const OpenKey& key, const String& name, const KeyPlace& place) {
  RequireUnlessAbsent(RegDeleteValueA(key.Handle(), ToAnsi(name)), place);
}

void DeleteKey(const KeyPlace& place) {
  RequireUnlessAbsent(SHDeleteKeyA(place.root, ToAnsi(place.path)), place);
}

void CopyKey(const KeyPlace& source, const KeyPlace& destination) {
  const OpenKey target = Created(destination);
  Require(SHCopyKeyA(source.root, ToAnsi(source.path), target.Handle(), 0), destination);
}

void CopyKeyIfThere(const KeyPlace& source, const KeyPlace& destination) {
  if (Opened(source, kReadValues)) CopyKey(source, destination);
}

// The value as it is stored, or a deletion where there is none.
RegistryTextValue Stored(const OpenKey& key, const String& name, const KeyPlace& place) {
  RegistryTextValue value{name, true, 0, {}};
  Int32 size = 0;
  Int32 code = RegQueryValueExA(key.Handle(), ToAnsi(name), nullptr, &value.type, nullptr, &size);
  if (code == kAbsent) return value;
  Require(code, place);
  value.is_deletion = false;
  value.data.resize(static_cast<std::size_t>(size));
  Require(
      RegQueryValueExA(key.Handle(), ToAnsi(name), nullptr, &value.type, value.data.data(), &size),
      place);
  return value;
}

void Put(const OpenKey& key, const RegistryTextValue& value, const KeyPlace& place) {
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
    place_ = {HKEY_DYN_DATA, u"Quorl\\Import\\" + FromAnsi(std::to_string(made++))};
  }
  MemoryKey(const MemoryKey&) = delete;
  MemoryKey& operator=(const MemoryKey&) = delete;
  ~MemoryKey() { SHDeleteKeyA(place_.root, ToAnsi(place_.path)); }

  KeyPlace Below(StringView path) const {
    return {place_.root, Joined({place_.path, u"\\", path})};
  }

 private:
  KeyPlace place_;
};

// What the text is going to change, as it was before.
class FormerContent {
 public:
  void Remember(const RegistryText& text) {
    for (const RegistryTextKey& key : text) {
      const KeyPlace& place = key.place;
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
    for (const KeyPlace& place : new_keys_) DeleteKey(place);
    for (std::size_t i = 0; i < deleted_keys_.size(); ++i) {
      CopyKeyIfThere(copies_.Below(FromAnsi(std::to_string(i))), deleted_keys_[i]);
    }
    for (const RegistryTextKey& key : values_) {
      const KeyPlace& place = key.place;
      const OpenKey open = Created(place);
      for (const RegistryTextValue& value : key.values) Put(open, value, place);
    }
  }

 private:
  void RememberKey(const KeyPlace& place) {
    CopyKeyIfThere(place, copies_.Below(FromAnsi(std::to_string(deleted_keys_.size()))));
    deleted_keys_.push_back(place);
  }

  void RememberValues(const RegistryTextKey& key, const OpenKey& open, const KeyPlace& place) {
    RegistryTextKey former{key.place, false, {}};
    for (const RegistryTextValue& value : key.values) {
      former.values.push_back(Stored(open, value.name, place));
    }
    if (!former.values.empty()) values_.push_back(std::move(former));
  }

  // The uppermost level of an absent key that is absent.
  static KeyPlace FirstMissing(const KeyPlace& place) {
    const std::string path = ToAnsi(place.path);
    std::string_view rest = path;
    KeyPlace missing{place.root, {}};
    do {
      missing.path.append(missing.path.empty() ? u"" : u"\\").append(FromAnsi(TakeLevel(rest)));
    } while (!rest.empty() && Opened(missing, kReadValues));
    return missing;
  }

  MemoryKey copies_;
  std::vector<KeyPlace> new_keys_;
  std::vector<KeyPlace> deleted_keys_;
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
      const KeyPlace place = Gathered(key.place);
      if (key.is_deletion) {
        DeleteKey(place);
        continue;
      }
      const OpenKey open = Created(place);
      for (const RegistryTextValue& value : key.values) Put(open, value, place);
    }
    for (const StoreRoot root : {kClassesRoot, kCurrentUser, kLocalMachine, kUsers,
                                 kPerformanceData, kCurrentConfig, kDynData}) {
      const KeyPlace place{static_cast<HKeyEnum>(root), {}};
      if (Opened(Gathered(place), kReadValues)) new_content_.push_back(place);
    }
  }

  // What is new is in memory by now, so that the order between it and the deletions no longer
  // matters: they only ever concern what was there before.
  void Delete() const {
    for (const RegistryTextKey& key : text_) {
      const KeyPlace& place = key.place;
      if (key.is_deletion) {
        DeleteKey(place);
      } else if (std::ranges::any_of(key.values, &RegistryTextValue::is_deletion)) {
        DeleteValues(key, place);
      }
    }
  }

  static void DeleteValues(const RegistryTextKey& key, const KeyPlace& place) {
    const OpenKey open = Opened(place, kSetValues);
    if (!open) return;
    for (const RegistryTextValue& value : key.values) {
      if (value.is_deletion) DeleteValue(open, value.name, place);
    }
  }

  void Merge() const {
    for (const KeyPlace& root : new_content_) CopyKey(Gathered(root), root);
  }

  KeyPlace Gathered(const KeyPlace& place) const {
    return content_.Below(Joined({FromAnsi(std::to_string(place.root)), u"\\", place.path}));
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
  std::vector<KeyPlace> new_content_;  // the root keys that get some
  FormerContent former_;
};

}  // namespace

void ImportRegistry(const RegistryText& text) {
  WithinMemory([&] { Import(text).Run(); });
}

}  // namespace quorl
