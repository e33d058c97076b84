#include "quorl/store/internal/hive_store.hpp"

#include <algorithm>
#include <cstring>
#include <new>
#include <stdexcept>
#include <utility>

#include "quorl/store/key_name.hpp"

namespace quorl::internal {
namespace {

// The code of an operation that may lack memory.
template <class Operation>
StoreStatus CodeOf(Operation operation) noexcept {
  try {
    return operation();
  } catch (const std::bad_alloc&) {
    return kOutOfMemory;
  } catch (const std::length_error&) {
    return kOutOfMemory;
  }
}

bool IsRoot(KeyHandle key) noexcept { return key >= kClassesRoot && key <= kDynData; }

std::size_t IndexOf(KeyHandle root) noexcept {
  return static_cast<std::size_t>(root - kClassesRoot);
}

// The key that was opened, null when it has been deleted since. In another tree, which was read as
// a whole, it is the key of the same path.
Key* Resolve(OpenedKey& opened, const HiveContent& content) {
  if (opened.is_root) return content->Root().get();
  if (opened.key == nullptr || opened.key->Deleted()) return nullptr;
  if (opened.tree != content) {
    Key* key = FindKey(*content->Root(), opened.key->Path());
    if (key == nullptr) return nullptr;
    opened.key = key->Self();
    opened.tree = content;
  }
  return opened.key.get();
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
StoreStatus GiveData(OutBuffer buffer, std::string_view bytes) noexcept {
  if (buffer.size != nullptr && !Fits(buffer, bytes.size())) {
    *buffer.size = Size(bytes.size());
    return kBufferTooSmall;
  }
  CopyOut(buffer, bytes);
  return kDone;
}

// A name with a terminator after it, which the size that is given does not count.
StoreStatus GiveName(OutBuffer buffer, std::string_view name) noexcept {
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
  KeyInfo info{.subkeys = Size(key.SubkeyCount()), .values = Size(key.ValueCount())};
  key.ForEachSubkey([&](const Key& subkey) {
    info.longest_subkey = std::max(info.longest_subkey, Size(subkey.Name().size()));
  });
  key.ForEachValue([&](const Value& value) {
    info.longest_value_name = std::max(info.longest_value_name, Size(value.name.size()));
    info.longest_data = std::max(info.longest_data, Size(value.data.size()));
  });
  return info;
}

StoreStatus StatusOf(const StoreChange& change) noexcept {
  if (!IsRoot(change.root)) return kWrongHandle;
  const bool is_sound = IsKeyPath(change.path) && IsValueName(change.name) &&
                        change.data.size() <= static_cast<std::size_t>(INT32_MAX);
  return is_sound ? kDone : kWrongArgument;
}

void Plan(const StoreChange& change, ChangePlan& plan) {
  using enum StoreChange::Kind;
  if (change.kind == kCreateKey || change.kind == kSetValue) {
    Key& key = plan.Reach(plan.Root(), change.path);
    if (change.kind == kSetValue) plan.PutValue(key, change.name, change.type, change.data);
    return;
  }
  Key* key = plan.Find(plan.Root(), change.path);
  if (key == nullptr) return;
  if (change.kind == kDeleteValue) return plan.RemoveValue(*key, change.name);
  if (plan.IsEmpty(*key) && key == &plan.Root()) return;
  if (change.kind == kDeleteKey || plan.IsEmpty(*key)) plan.RemoveKey(*key);
}

}  // namespace

HiveStore::HiveStore(Hives hives) : hives_(std::move(hives)) {
  for (std::size_t i = 0; i < roots_.size(); ++i) {
    roots_[i] = std::make_shared<OpenedKey>(
        OpenedKey{.hive = hives_[i].get(), .access = kAllAccess, .is_root = true});
  }
  Register();
}

HiveStore::~HiveStore() { Unregister(); }

HiveStore::Opened HiveStore::Find(KeyHandle key) const {
  return IsRoot(key) ? roots_[IndexOf(key)] : handles_.Find(key);
}

StoreStatus HiveStore::ReadKey(KeyHandle key, Int32 right,
                               FunctionRef<StoreStatus(Key&)> look) const {
  return CodeOf([&] {
    const Opened opened = Find(key);
    if (opened == nullptr) return kWrongHandle;
    if ((opened->access & right) == 0) return kAccessDenied;
    const auto freshness = opened->is_root ? Freshness::kUpToDate : Freshness::kAsKnown;
    return opened->hive->Read(freshness, [&](const HiveContent& content) {
      Key* found = Resolve(*opened, content);
      return found == nullptr ? kKeyDeleted : look(*found);
    });
  });
}

StoreStatus HiveStore::WriteKey(KeyHandle key, Int32 right,
                                FunctionRef<StoreStatus(Key&, ChangePlan&)> plan) const {
  return CodeOf([&] {
    const Opened opened = Find(key);
    if (opened == nullptr) return kWrongHandle;
    if ((opened->access & right) != right) return kAccessDenied;
    return opened->hive->Write([&](const HiveContent& content, ChangePlan& changes) {
      Key* found = Resolve(*opened, content);
      return found == nullptr ? kKeyDeleted : plan(*found, changes);
    });
  });
}

Int32 HiveStore::OpenKey(KeyHandle root, std::string_view path, Int32 access,
                         KeyHandle* key) noexcept {
  if (key == nullptr) return kWrongArgument;
  *key = 0;
  if (path.find('\0') != path.npos) return kWrongArgument;
  return CodeOf([&] {
    const Opened base = Find(root);
    if (base == nullptr) return kWrongHandle;
    auto opened = std::make_shared<OpenedKey>(OpenedKey{.hive = base->hive, .access = access});
    const auto status = base->hive->Read(Freshness::kUpToDate, [&](const HiveContent& content) {
      Key* from = Resolve(*base, content);
      if (from == nullptr) return kKeyDeleted;
      Key* found = FindKey(*from, path);
      if (found == nullptr) return kAbsent;
      opened->tree = content;
      opened->key = found->Self();
      return kDone;
    });
    if (status == kDone) *key = handles_.Add(std::move(opened));
    return status;
  });
}

Int32 HiveStore::CreateKey(KeyHandle root, std::string_view path, Int32 access, KeyHandle* key,
                           bool* created) noexcept {
  if (key == nullptr) return kWrongArgument;
  *key = 0;
  if (!IsKeyPath(path)) return kWrongArgument;
  return CodeOf([&] {
    const Opened base = Find(root);
    if (base == nullptr) return kWrongHandle;
    // The handle comes first: a key that was made must not be reported as failed.
    auto opened = std::make_shared<OpenedKey>(OpenedKey{.hive = base->hive, .access = access});
    const KeyHandle handle = handles_.Add(opened);
    bool is_missing = false;
    StoreStatus status = CodeOf([&] {
      return base->hive->Write([&](const HiveContent& content, ChangePlan& changes) {
        Key* from = Resolve(*base, content);
        if (from == nullptr) return kKeyDeleted;
        is_missing = changes.Find(*from, path) == nullptr;
        if (is_missing) changes.Reach(*from, path);
        return kDone;
      });
    });
    if (status == kDone) {
      status = base->hive->Read(Freshness::kAsKnown, [&](const HiveContent& content) {
        Key* from = Resolve(*base, content);
        Key* found = from == nullptr ? nullptr : FindKey(*from, path);
        // Another thread may have deleted it again.
        if (found == nullptr) return kDone;
        opened->tree = content;
        opened->key = found->Self();
        return kDone;
      });
    }
    if (status != kDone) {
      handles_.Remove(handle);
      return status;
    }
    *key = handle;
    if (created != nullptr) *created = is_missing;
    return kDone;
  });
}

Int32 HiveStore::CloseKey(KeyHandle key) noexcept {
  return IsRoot(key) || handles_.Remove(key) ? kDone : kWrongHandle;
}

Int32 HiveStore::QueryValue(KeyHandle key, std::string_view name, Int32* type,
                            OutBuffer data) noexcept {
  if (!IsSound(data)) return kWrongArgument;
  return ReadKey(key, kReadValues, [&](const Key& found) {
    const Value* value = found.FindValue(name);
    if (value == nullptr) return kAbsent;
    if (type != nullptr) *type = value->type;
    return GiveData(data, value->data);
  });
}

Int32 HiveStore::SetValue(KeyHandle key, std::string_view name, Int32 type,
                          std::string_view data) noexcept {
  if (!IsValueName(name) || data.size() > INT32_MAX) return kWrongArgument;
  return WriteKey(key, kSetValues, [&](Key& found, ChangePlan& changes) {
    const Value* value = found.FindValue(name);
    const bool is_same = value != nullptr && value->type == type && value->data == data;
    if (!is_same) changes.PutValue(found, name, type, data);
    return kDone;
  });
}

Int32 HiveStore::DeleteValue(KeyHandle key, std::string_view name) noexcept {
  return WriteKey(key, kSetValues, [&](Key& found, ChangePlan& changes) {
    if (found.FindValue(name) == nullptr) return kAbsent;
    changes.RemoveValue(found, name);
    return kDone;
  });
}

Int32 HiveStore::EnumValue(KeyHandle key, Int32 index, OutBuffer name, Int32* type,
                           OutBuffer data) noexcept {
  if (index < 0 || !IsNameBuffer(name) || !IsSound(data)) return kWrongArgument;
  return ReadKey(key, kReadValues, [&](const Key& found) {
    const Value* value = found.ValueAt(static_cast<std::size_t>(index));
    if (value == nullptr) return kEndOfList;
    const StoreStatus name_status = GiveName(name, value->name);
    const StoreStatus data_status = GiveData(data, value->data);
    if (type != nullptr) *type = value->type;
    return name_status == kDone ? data_status : name_status;
  });
}

Int32 HiveStore::EnumKey(KeyHandle key, Int32 index, OutBuffer name) noexcept {
  if (index < 0 || !IsNameBuffer(name)) return kWrongArgument;
  return ReadKey(key, kListSubkeys, [&](const Key& found) {
    const Key* subkey = found.SubkeyAt(static_cast<std::size_t>(index));
    return subkey == nullptr ? kEndOfList : GiveName(name, subkey->Name());
  });
}

Int32 HiveStore::QueryInfo(KeyHandle key, KeyInfo* info) noexcept {
  if (info == nullptr) return kWrongArgument;
  return ReadKey(key, kReadValues, [&](const Key& found) {
    *info = InfoOf(found);
    return kDone;
  });
}

Int32 HiveStore::CopyTree(KeyHandle root, std::string_view source, KeyHandle destination) noexcept {
  if (source.find('\0') != source.npos) return kWrongArgument;
  return CodeOf([&] {
    const Opened base = Find(root);
    const Opened to = Find(destination);
    if (base == nullptr || to == nullptr) return kWrongHandle;
    const Int32 rights = kSetValues | kCreateSubkeys;
    if ((to->access & rights) != rights) return kAccessDenied;
    const auto find_source = [&](const HiveContent& content, const Key*& found) {
      Key* from = Resolve(*base, content);
      if (from == nullptr) return kKeyDeleted;
      found = FindKey(*from, source);
      return found == nullptr ? kAbsent : kDone;
    };
    // Within one hive the source is taken as it stands when the change is made; from another hive a
    // copy comes along.
    std::shared_ptr<Key> copy;
    if (base->hive != to->hive) {
      const auto status = base->hive->Read(Freshness::kUpToDate, [&](const HiveContent& content) {
        const Key* found = nullptr;
        const StoreStatus found_status = find_source(content, found);
        if (found_status == kDone) copy = DetachedCopy(*found);
        return found_status;
      });
      if (status != kDone) return status;
    }
    return to->hive->Write([&](const HiveContent& content, ChangePlan& changes) {
      Key* into = Resolve(*to, content);
      if (into == nullptr) return kKeyDeleted;
      if (copy != nullptr) return changes.MergeDetached(*copy, *into), kDone;
      const Key* from = nullptr;
      const StoreStatus status = find_source(content, from);
      if (status == kDone) changes.Merge(*from, *into);
      return status;
    });
  });
}

Int32 HiveStore::DeleteTree(KeyHandle root, std::string_view path) noexcept {
  if (path.find('\0') != path.npos) return kWrongArgument;
  return CodeOf([&] {
    const Opened base = Find(root);
    if (base == nullptr) return kWrongHandle;
    return base->hive->Write([&](const HiveContent& content, ChangePlan& changes) {
      Key* from = Resolve(*base, content);
      if (from == nullptr) return kKeyDeleted;
      Key* found = changes.Find(*from, path);
      if (found == nullptr) return kAbsent;
      const bool is_empty_root = found == &changes.Root() && found->IsEmpty();
      if (!is_empty_root) changes.RemoveKey(*found);
      return kDone;
    });
  });
}

Int32 HiveStore::ReadShortValue(KeyHandle root, std::string_view path, std::string_view name,
                                ShortValue* value) noexcept {
  if (value == nullptr || path.find('\0') != path.npos) return kWrongArgument;
  if (!IsRoot(root)) return kBufferTooSmall;
  return CodeOf([&] {
    return hives_[IndexOf(root)]->Read(Freshness::kUpToDate, [&](const HiveContent& content) {
      const Key* key = FindKey(*content->Root(), path);
      const Value* found = key == nullptr ? nullptr : key->FindValue(name);
      if (found == nullptr) return kAbsent;
      value->type = found->type;
      value->size = Size(value->bytes.size());
      return GiveData({value->bytes.data(), &value->size}, found->data);
    });
  });
}

Int32 HiveStore::Commit(std::span<const StoreChange> changes) noexcept {
  for (const StoreChange& change : changes) {
    if (const StoreStatus status = StatusOf(change); status != kDone) return status;
  }
  return CodeOf([&] { return CommitAll(changes); });
}

// Everything that can fail but the disk is done for every hive before the first one is committed.
// The hives are locked in one order, so that two processes never wait for each other.
StoreStatus HiveStore::CommitAll(std::span<const StoreChange> changes) {
  std::array<std::unique_ptr<PendingChange>, kRootCount> pending;
  for (std::size_t i = 0; i < hives_.size(); ++i) {
    const auto is_here = [&](const StoreChange& change) { return IndexOf(change.root) == i; };
    if (std::ranges::none_of(changes, is_here)) continue;
    const StoreStatus status = hives_[i]->Prepare(
        [&](const HiveContent&, ChangePlan& plan) {
          for (const StoreChange& change : changes) {
            if (plan.IsAnswered()) break;
            if (is_here(change)) Plan(change, plan);
          }
          return kDone;
        },
        pending[i]);
    if (status != kDone) return status;
  }
  for (auto& each : pending) {
    const StoreStatus status = each == nullptr ? kDone : each->Commit();
    if (status != kDone) return status;
    each.reset();
  }
  return kDone;
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
