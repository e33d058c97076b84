#include "quorl/store/internal/key_change.hpp"

#include <utility>

#include "quorl/store/key_name.hpp"

namespace quorl::internal {
namespace {

std::unique_ptr<Value> MakeValue(std::string_view name, Int32 type, std::string_view data) {
  auto value = std::make_unique<Value>();
  value->name = name;
  value->type = type;
  value->data = data;
  return value;
}

void CopyValues(const Key& from, Key& to) {
  to.MakeRoomForValues(from.Values().size());
  for (const Value* value : from.Values())
    to.Insert(MakeValue(value->name, value->type, value->data));
}

// Copies everything below `from`, which stays as it is, into `to`, which is empty and in no tree.
void CopyBelow(const Key& from, Key& to) {
  std::vector<std::pair<const Key*, Key*>> waiting{{&from, &to}};
  while (!waiting.empty()) {
    const auto [source, copy] = waiting.back();
    waiting.pop_back();
    CopyValues(*source, *copy);
    copy->MakeRoomForSubkeys(source->Subkeys().size());
    for (const Key* subkey : source->Subkeys()) {
      auto made = std::make_shared<Key>(subkey->Name(), copy->SubkeyPathBytes(subkey->Name()));
      waiting.emplace_back(subkey, made.get());
      copy->Insert(std::move(made));
    }
  }
}

std::shared_ptr<Key> CopyInto(const Key& parent, const Key& subkey) {
  auto copy = std::make_shared<Key>(subkey.Name(), parent.SubkeyPathBytes(subkey.Name()));
  CopyBelow(subkey, *copy);
  return copy;
}

Weight WeightBelow(const Key& top) {
  Weight weight;
  ForEachKey(top, [&](const Key& key) { weight += key.OwnWeight(); });
  return weight;
}

}  // namespace

/// Builds a PreparedChange.
class ChangePreparation {
 public:
  ChangePreparation(const KeyTree& tree, const Change& change) : tree_(tree), change_(change) {}

  PreparedChange Run() {
    switch (change_.kind) {
      case ChangeKind::CreateKey:
        CreateKey();
        break;
      case ChangeKind::SetValue:
        SetValue();
        break;
      case ChangeKind::DeleteValue:
        DeleteValue();
        break;
      case ChangeKind::DeleteKey:
        DeleteKey();
        break;
      case ChangeKind::Merge:
        Merge();
        break;
      case ChangeKind::Replace:
        Replace();
        break;
      case ChangeKind::None:
        break;
    }
    return std::move(prepared_);
  }

 private:
  // The key at the change's path. Missing levels are made outside the tree, to be grafted onto it:
  // `grown_` is then set.
  Key* Reach() {
    Key* key = tree_.Root().get();
    std::string_view rest = change_.path;
    for (auto level = TakeLevel(rest); !level.empty(); level = TakeLevel(rest)) {
      Key* next = grown_ ? nullptr : key->FindSubkey(level);
      if (next == nullptr) next = Grow(*key, level);
      key = next;
    }
    return key;
  }

  Key* Grow(Key& parent, std::string_view name) {
    auto made = std::make_shared<Key>(name, parent.SubkeyPathBytes(name));
    Key* key = made.get();
    parent.MakeRoomForSubkeys(1);
    if (std::exchange(grown_, true)) {
      parent.Insert(std::move(made));
    } else {
      FillsBareKey(parent);
      prepared_.grafts_.push_back({&parent, std::move(made)});
    }
    return key;
  }

  // A bare key that gets its first value or subkey needs no record of its own any more.
  void FillsBareKey(const Key& key) {
    if (key.IsBare()) prepared_.added_ -= key.OwnWeight();
  }

  void CreateKey() {
    const Key* key = Reach();
    if (grown_) prepared_.added_ += key->OwnWeight();
  }

  void SetValue() {
    Key* key = Reach();
    if (!grown_) FillsBareKey(*key);
    key->MakeRoomForValues(1);
    PutValue(*key, MakeValue(change_.name, change_.type, change_.data));
  }

  void PutValue(Key& key, std::unique_ptr<Value> value) {
    Value* replaced = key.FindValue(value->name);
    if (replaced != nullptr) {
      prepared_.added_ -= key.WeightOf(*replaced);
      value->name = replaced->name;
    }
    prepared_.added_ += key.WeightOf(*value);
    prepared_.puts_.push_back({&key, replaced, std::move(value)});
  }

  void DeleteValue() {
    Key* key = tree_.Find(change_.path);
    const Value* value = key == nullptr ? nullptr : key->FindValue(change_.name);
    if (value == nullptr) return;
    prepared_.losing_key_ = key;
    prepared_.lost_value_ = value;
    prepared_.added_ -= key->WeightOf(*value);
    if (key->Values().size() == 1 && key->Subkeys().empty()) BecomesBare(*key);
  }

  void DeleteKey() {
    Key* parent = nullptr;
    Key* key = tree_.Root().get();
    std::string_view rest = change_.path;
    for (auto level = TakeLevel(rest); key != nullptr && !level.empty(); level = TakeLevel(rest)) {
      parent = std::exchange(key, key->FindSubkey(level));
    }
    if (key == nullptr) return;
    prepared_.added_ -= WeightBelow(*key);
    if (parent == nullptr) {
      prepared_.cleared_ = key;
      return;
    }
    prepared_.losing_parent_ = parent;
    prepared_.lost_key_ = key;
    if (parent->Subkeys().size() == 1 && parent->Values().empty()) BecomesBare(*parent);
  }

  // A key that loses its last value or subkey needs a record of its own; the root never does.
  void BecomesBare(const Key& key) {
    const auto path_bytes = static_cast<std::int64_t>(key.PathBytes());
    if (path_bytes != 0) prepared_.added_ += {1, path_bytes};
  }

  void Merge() {
    Key* destination = Reach();
    if (grown_) {
      CopyBelow(*change_.content, *destination);
      prepared_.added_ += WeightBelow(*destination);
      return;
    }
    std::vector<std::pair<const Key*, Key*>> waiting{{change_.content.get(), destination}};
    while (!waiting.empty()) {
      const auto [source, into] = waiting.back();
      waiting.pop_back();
      if (source == into || source->IsEmpty()) continue;
      MergeValues(*source, *into);
      into->MakeRoomForSubkeys(source->Subkeys().size());
      for (const Key* subkey : source->Subkeys()) {
        if (Key* there = into->FindSubkey(subkey->Name())) {
          waiting.emplace_back(subkey, there);
        } else {
          GraftCopy(*into, *subkey);
        }
      }
    }
  }

  void Replace() {
    Key* key = tree_.Find(change_.path);
    if (key == nullptr) return;
    prepared_.replaced_ = key;
    prepared_.replacement_ = std::make_shared<Key>(key->Name(), key->PathBytes());
    CopyBelow(*change_.content, *prepared_.replacement_);
    prepared_.added_ -= WeightBelow(*key);
    prepared_.added_ += WeightBelow(*prepared_.replacement_);
  }

  void MergeValues(const Key& source, Key& into) {
    FillsBareKey(into);
    into.MakeRoomForValues(source.Values().size());
    for (const Value* value : source.Values()) {
      PutValue(into, MakeValue(value->name, value->type, value->data));
    }
  }

  void GraftCopy(Key& into, const Key& subkey) {
    auto copy = CopyInto(into, subkey);
    prepared_.added_ += WeightBelow(*copy);
    prepared_.grafts_.push_back({&into, std::move(copy)});
  }

  const KeyTree& tree_;
  const Change& change_;
  PreparedChange prepared_;
  bool grown_ = false;
};

void PreparedChange::Apply(KeyTree& tree) noexcept {
  tree.Reweigh(added_);
  for (Put& put : puts_) {
    if (put.replaced == nullptr) {
      put.into->Insert(std::move(put.value));
    } else {
      put.replaced->type = put.value->type;
      put.replaced->data.swap(put.value->data);
    }
  }
  for (Graft& graft : grafts_) graft.into->Insert(std::move(graft.subkey));
  if (lost_value_ != nullptr) losing_key_->Remove(*lost_value_);
  if (lost_key_ != nullptr) losing_parent_->Remove(*lost_key_);
  if (cleared_ != nullptr) cleared_->Clear();
  if (replaced_ != nullptr) replaced_->TakeContentOf(*replacement_);
}

PreparedChange Prepare(const KeyTree& tree, const Change& change) {
  return ChangePreparation(tree, change).Run();
}

std::shared_ptr<Key> DetachedCopy(const Key& key) {
  auto copy = std::make_shared<Key>(std::string_view{}, 0);
  CopyBelow(key, *copy);
  return copy;
}

std::string CanonicalPath(const KeyTree& tree, std::string_view path) {
  std::string canonical;
  const Key* key = tree.Root().get();
  for (auto level = TakeLevel(path); !level.empty(); level = TakeLevel(path)) {
    if (key != nullptr) key = key->FindSubkey(level);
    if (!canonical.empty()) canonical += kPathSeparator;
    canonical += key == nullptr ? level : std::string_view(key->Name());
  }
  return canonical;
}

}  // namespace quorl::internal
