#include "quorl/store/internal/hive_store.hpp"

#include <algorithm>
#include <cstring>
#include <new>
#include <stdexcept>
#include <utility>

#include "quorl/store/key_name.hpp"

namespace quorl::internal {
namespace {

// The one place where exceptions of the allocator become a code.
template <class Operation>
Int32 WithinMemory(Operation operation) noexcept {
  try {
    return operation();
  } catch (const std::bad_alloc&) {
    return kOutOfMemory;
  } catch (const std::length_error&) {
    return kOutOfMemory;
  }
}

bool IsRoot(KeyHandle key) noexcept { return key >= kClassesRoot && key <= kDynData; }

int IndexOf(KeyHandle root) noexcept { return root - kClassesRoot; }

// The key that was opened, null when it has been deleted since.
const Key* Resolve(OpenedKey& opened, const HiveContent& content) noexcept {
  if (opened.generation == content.generation) {
    return opened.key->Deleted() ? nullptr : opened.key.get();
  }
  const Key* key = content.tree.Find(opened.path);
  if (key == nullptr) return nullptr;
  opened.key = key->Self();
  opened.generation = content.generation;
  return key;
}

Int32 Size(std::size_t bytes) noexcept { return static_cast<Int32>(bytes); }

bool IsSound(OutBuffer buffer) noexcept {
  if (buffer.size == nullptr) return buffer.bytes == nullptr;
  return buffer.bytes == nullptr || *buffer.size >= 0;
}

bool Fits(OutBuffer buffer, std::size_t bytes) noexcept {
  return buffer.bytes == nullptr || static_cast<std::size_t>(*buffer.size) >= bytes;
}

void CopyOut(OutBuffer buffer, std::string_view bytes) noexcept {
  if (buffer.size == nullptr) return;
  if (buffer.bytes != nullptr && !bytes.empty()) {
    std::memcpy(buffer.bytes, bytes.data(), bytes.size());
  }
  *buffer.size = Size(bytes.size());
}

// Data as the caller wants it, or the size that it needs.
Int32 GiveData(OutBuffer buffer, std::string_view bytes) noexcept {
  if (buffer.size != nullptr && !Fits(buffer, bytes.size())) {
    *buffer.size = Size(bytes.size());
    return kBufferTooSmall;
  }
  CopyOut(buffer, bytes);
  return kDone;
}

// A name with a terminator behind it, which the size that is given does not count.
Int32 GiveName(OutBuffer buffer, std::string_view name) noexcept {
  if (!Fits(buffer, name.size() + 1)) {
    *buffer.size = Size(name.size() + 1);
    return kBufferTooSmall;
  }
  CopyOut(buffer, name);
  static_cast<char*>(buffer.bytes)[name.size()] = '\0';
  return kDone;
}

bool IsNameBuffer(OutBuffer buffer) noexcept {
  return buffer.bytes != nullptr && buffer.size != nullptr && *buffer.size >= 0;
}

KeyInfo InfoOf(const Key& key) noexcept {
  KeyInfo info{.subkeys = Size(key.Subkeys().size()), .values = Size(key.Values().size())};
  for (const Key* subkey : key.Subkeys()) {
    info.longest_subkey = std::max(info.longest_subkey, Size(subkey->Name().size()));
  }
  for (const Value* value : key.Values()) {
    info.longest_value_name = std::max(info.longest_value_name, Size(value->name.size()));
    info.longest_data = std::max(info.longest_data, Size(value->data.size()));
  }
  return info;
}

// Plans that `source` is merged into the key at `destination`; nothing is planned for a key onto
// itself and for an empty one.
void PlanMerge(std::shared_ptr<const Key> source, const Key& destination, Change& change) {
  if (source.get() == &destination || source->IsEmpty()) return;
  change.kind = ChangeKind::Merge;
  change.path = destination.Path();
  change.content = std::move(source);
}

void PlanReplacement(std::shared_ptr<const Key> source, const Key& destination, Change& change) {
  if (source.get() == &destination) return;
  change.kind = ChangeKind::Replace;
  change.path = destination.Path();
  change.content = std::move(source);
}

}  // namespace

HiveStore::HiveStore(Hives hives) : hives_(std::move(hives)) { Register(); }

HiveStore::~HiveStore() { Unregister(); }

Hive& HiveStore::HiveOf(StoreRoot root) const noexcept {
  return *hives_[static_cast<std::size_t>(IndexOf(root))];
}

// A root key counts as opened with every right.
std::shared_ptr<OpenedKey> HiveStore::Opened(KeyHandle key) const {
  if (!IsRoot(key)) return handles_.Find(key);
  auto opened = std::make_shared<OpenedKey>();
  opened->hive = hives_[static_cast<std::size_t>(IndexOf(key))].get();
  opened->access = kAllAccess;
  return opened;
}

// The place `path` below `root`, which may be a root key or an open one, not yet opened itself.
Int32 HiveStore::At(KeyHandle root, std::string_view path,
                    std::shared_ptr<OpenedKey>& place) const {
  if (path.find('\0') != path.npos) return kWrongArgument;
  const auto base = Opened(root);
  if (base == nullptr) return kWrongHandle;
  place = std::make_shared<OpenedKey>();
  place->hive = base->hive;
  place->path = base->path;
  if (!path.empty()) place->path.append(1, kPathSeparator).append(path);
  if (base->path.empty()) return kDone;
  return base->hive->Read(Freshness::AsKnown, [&](const HiveContent& content) -> Int32 {
    return Resolve(*base, content) == nullptr ? kKeyDeleted : kDone;
  });
}

Int32 HiveStore::ReadKey(KeyHandle key, Int32 right, FunctionRef<Int32(const Key&)> look) const {
  const auto opened = Opened(key);
  if (opened == nullptr) return kWrongHandle;
  if ((opened->access & right) == 0) return kAccessDenied;
  const auto freshness = IsRoot(key) ? Freshness::UpToDate : Freshness::AsKnown;
  return opened->hive->Read(freshness, [&](const HiveContent& content) -> Int32 {
    const Key* found = Resolve(*opened, content);
    return found == nullptr ? static_cast<Int32>(kKeyDeleted) : look(*found);
  });
}

Int32 HiveStore::OpenKey(KeyHandle root, std::string_view path, Int32 access,
                         KeyHandle* key) noexcept {
  if (key == nullptr) return kWrongArgument;
  *key = 0;
  return WithinMemory([&]() -> Int32 {
    std::shared_ptr<OpenedKey> place;
    if (const Int32 status = At(root, path, place); status != kDone) return status;
    place->access = access;
    const Int32 status =
        place->hive->Read(Freshness::UpToDate, [&](const HiveContent& content) -> Int32 {
          return Resolve(*place, content) == nullptr ? kAbsent : kDone;
        });
    if (status == kDone) *key = handles_.Add(place);
    return status;
  });
}

Int32 HiveStore::CreateKey(KeyHandle root, std::string_view path, Int32 access, KeyHandle* key,
                           bool* created) noexcept {
  if (key == nullptr) return kWrongArgument;
  *key = 0;
  if (!IsKeyPath(path)) return kWrongArgument;
  return WithinMemory([&]() -> Int32 {
    std::shared_ptr<OpenedKey> place;
    if (const Int32 status = At(root, path, place); status != kDone) return status;
    place->access = access;
    // The handle comes first: a key that was made must not be reported as failed.
    const KeyHandle handle = handles_.Add(place);
    bool missing = false;
    const Int32 status = WithinMemory([&] {
      return place->hive->Write([&](const HiveContent& content, Change& change) -> Int32 {
        missing = content.tree.Find(place->path) == nullptr;
        if (!missing) return kDone;
        change.kind = ChangeKind::CreateKey;
        change.path = CanonicalPath(content.tree, place->path);
        return kDone;
      });
    });
    if (status != kDone) {
      handles_.Remove(handle);
      return status;
    }
    *key = handle;
    if (created != nullptr) *created = missing;
    return kDone;
  });
}

Int32 HiveStore::CloseKey(KeyHandle key) noexcept {
  return IsRoot(key) || handles_.Remove(key) ? kDone : kWrongHandle;
}

Int32 HiveStore::QueryValue(KeyHandle key, std::string_view name, Int32* type,
                            OutBuffer data) noexcept {
  if (!IsSound(data)) return kWrongArgument;
  return WithinMemory([&] {
    return ReadKey(key, kReadValues, [&](const Key& found) -> Int32 {
      const Value* value = found.FindValue(name);
      if (value == nullptr) return kAbsent;
      if (type != nullptr) *type = value->type;
      return GiveData(data, value->data);
    });
  });
}

Int32 HiveStore::SetValue(KeyHandle key, std::string_view name, Int32 type,
                          std::string_view data) noexcept {
  if (!IsValueName(name) || data.size() > INT32_MAX) return kWrongArgument;
  return WithinMemory([&]() -> Int32 {
    const auto opened = Opened(key);
    if (opened == nullptr) return kWrongHandle;
    if ((opened->access & kSetValues) == 0) return kAccessDenied;
    return opened->hive->Write([&](const HiveContent& content, Change& change) -> Int32 {
      const Key* found = Resolve(*opened, content);
      if (found == nullptr) return kKeyDeleted;
      const Value* value = found->FindValue(name);
      if (value != nullptr && value->type == type && value->data == data) return kDone;
      change.kind = ChangeKind::SetValue;
      change.path = found->Path();
      change.name = value == nullptr ? name : std::string_view(value->name);
      change.type = type;
      change.data = data;
      return kDone;
    });
  });
}

Int32 HiveStore::DeleteValue(KeyHandle key, std::string_view name) noexcept {
  return WithinMemory([&]() -> Int32 {
    const auto opened = Opened(key);
    if (opened == nullptr) return kWrongHandle;
    if ((opened->access & kSetValues) == 0) return kAccessDenied;
    return opened->hive->Write([&](const HiveContent& content, Change& change) -> Int32 {
      const Key* found = Resolve(*opened, content);
      if (found == nullptr) return kKeyDeleted;
      const Value* value = found->FindValue(name);
      if (value == nullptr) return kAbsent;
      change.kind = ChangeKind::DeleteValue;
      change.path = found->Path();
      change.name = value->name;
      return kDone;
    });
  });
}

Int32 HiveStore::EnumValue(KeyHandle key, Int32 index, OutBuffer name, Int32* type,
                           OutBuffer data) noexcept {
  if (index < 0 || !IsNameBuffer(name) || !IsSound(data)) return kWrongArgument;
  return WithinMemory([&] {
    return ReadKey(key, kReadValues, [&](const Key& found) -> Int32 {
      if (static_cast<std::size_t>(index) >= found.Values().size()) return kEndOfList;
      const Value& value = *found.Values()[static_cast<std::size_t>(index)];
      const Int32 name_status = GiveName(name, value.name);
      const Int32 data_status = GiveData(data, value.data);
      if (type != nullptr) *type = value.type;
      return name_status == kDone ? data_status : name_status;
    });
  });
}

Int32 HiveStore::EnumKey(KeyHandle key, Int32 index, OutBuffer name) noexcept {
  if (index < 0 || !IsNameBuffer(name)) return kWrongArgument;
  return WithinMemory([&] {
    return ReadKey(key, kListSubkeys, [&](const Key& found) -> Int32 {
      if (static_cast<std::size_t>(index) >= found.Subkeys().size()) return kEndOfList;
      return GiveName(name, found.Subkeys()[static_cast<std::size_t>(index)]->Name());
    });
  });
}

Int32 HiveStore::QueryInfo(KeyHandle key, KeyInfo* info) noexcept {
  if (info == nullptr) return kWrongArgument;
  return WithinMemory([&] {
    return ReadKey(key, kReadValues, [&](const Key& found) -> Int32 {
      *info = InfoOf(found);
      return kDone;
    });
  });
}

// Plans a change of `destination` by what the source holds.
Int32 HiveStore::WriteFrom(KeyHandle root, std::string_view source, KeyHandle destination,
                           PlanOfTwo plan) const noexcept {
  return WithinMemory([&]() -> Int32 {
    std::shared_ptr<OpenedKey> from;
    if (const Int32 status = At(root, source, from); status != kDone) return status;
    const auto to = Opened(destination);
    if (to == nullptr) return kWrongHandle;
    const Int32 needed = kSetValues | kCreateSubkeys;
    if ((to->access & needed) != needed) return kAccessDenied;

    // Within one hive the source is taken as it stands when the change is made; from another hive a
    // copy comes along.
    std::shared_ptr<const Key> found_source;
    const auto find_source = [&](const HiveContent& content) -> Int32 {
      const Key* found = content.tree.Find(from->path);
      if (found == nullptr) return kAbsent;
      found_source = from->hive == to->hive ? found->Self() : DetachedCopy(*found);
      return kDone;
    };
    if (from->hive != to->hive) {
      const Int32 status = from->hive->Read(Freshness::UpToDate, find_source);
      if (status != kDone) return status;
    }
    return to->hive->Write([&](const HiveContent& content, Change& change) -> Int32 {
      const Key* into = Resolve(*to, content);
      if (into == nullptr) return kKeyDeleted;
      if (from->hive == to->hive) {
        if (const Int32 status = find_source(content); status != kDone) return status;
      }
      plan(found_source, *into, change);
      return kDone;
    });
  });
}

Int32 HiveStore::CopyTree(KeyHandle root, std::string_view source, KeyHandle destination) noexcept {
  return WriteFrom(root, source, destination, PlanMerge);
}

Int32 HiveStore::ReplaceTree(KeyHandle root, std::string_view source,
                             KeyHandle destination) noexcept {
  return WriteFrom(root, source, destination, PlanReplacement);
}

Int32 HiveStore::DeleteTree(KeyHandle root, std::string_view path) noexcept {
  return WithinMemory([&]() -> Int32 {
    std::shared_ptr<OpenedKey> place;
    if (const Int32 status = At(root, path, place); status != kDone) return status;
    return place->hive->Write([&](const HiveContent& content, Change& change) -> Int32 {
      const Key* found = content.tree.Find(place->path);
      if (found == nullptr) return kAbsent;
      if (found == content.tree.Root().get() && found->IsEmpty()) return kDone;
      change.kind = ChangeKind::DeleteKey;
      change.path = found->Path();
      return kDone;
    });
  });
}

Int32 HiveStore::OpenKeyCount() const noexcept { return Size(handles_.Count()); }

void HiveStore::HoldForFork() noexcept {
  for (auto& hive : hives_) hive->HoldForFork();
  handles_.HoldForFork();
}

void HiveStore::ReleaseAfterFork() noexcept {
  handles_.ReleaseAfterFork();
  for (auto& hive : hives_) hive->ReleaseAfterFork();
}

}  // namespace quorl::internal
