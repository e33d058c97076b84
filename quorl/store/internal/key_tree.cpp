#include "quorl/store/internal/key_tree.hpp"

#include <algorithm>
#include <compare>
#include <utility>

namespace quorl::internal {
namespace {

constexpr std::string_view kCutPath = "...";

bool IsBefore(const Value& value, std::uint64_t hash, std::string_view name) noexcept {
  if (value.hash != hash) return value.hash < hash;
  return std::is_lt(CompareNames(value.name, name));
}

Weight WeightOf(const Value& value) noexcept {
  return {1, std::uint64_t{value.name.size()} + value.data.size()};
}

}  // namespace

Value::Value(std::string_view value_name, Int32 value_type, std::string_view value_data)
    : name(value_name), type(value_type), data(value_data), hash(HashOfName(value_name)) {}

void Value::Take(Value& other) noexcept {
  type = other.type;
  data.swap(other.data);
}

Weight& Weight::operator+=(Weight other) noexcept {
  records += other.records;
  bytes += other.bytes;
  return *this;
}

Weight& Weight::operator-=(Weight other) noexcept {
  records -= other.records;
  bytes -= other.bytes;
  return *this;
}

bool Key::KeyIsLess::operator()(const Key& left, const Key& right) const noexcept {
  return std::is_lt(CompareNames(left.name_, right.name_));
}

bool Key::HashIsLess::operator()(const Value& left, const Value& right) const noexcept {
  return IsBefore(left, right.hash, right.name);
}

Key::~Key() { Clear(nullptr); }

std::string Key::Path(std::size_t longest) const {
  // From the end to the beginning: the names are appended backwards and turned round.
  std::string path;
  for (const Key* key = this; key->parent_ != nullptr && path.size() <= longest;
       key = key->parent_) {
    if (!path.empty()) path += kPathSeparator;
    path.append(key->name_.rbegin(), key->name_.rend());
  }
  if (path.size() > longest) path.resize(longest - kCutPath.size()), path += kCutPath;
  std::ranges::reverse(path);
  return path;
}

Key* Key::FindSubkey(std::string_view name) const noexcept {
  Key* found = subkeys_.LowerBound(
      [&](const Key& key) { return std::is_lt(CompareNames(key.name_, name)); });
  return found != nullptr && std::is_eq(CompareNames(found->name_, name)) ? found : nullptr;
}

Value* Key::FindValue(std::string_view name) const noexcept {
  const std::uint64_t hash = HashOfName(name);
  Value* found =
      values_by_name_.LowerBound([&](const Value& value) { return IsBefore(value, hash, name); });
  const bool same =
      found != nullptr && found->hash == hash && std::is_eq(CompareNames(found->name, name));
  return same ? found : nullptr;
}

Value* Key::FindValueByHash(std::uint64_t hash) const noexcept {
  Value* found = values_by_name_.LowerBound([&](const Value& value) { return value.hash < hash; });
  return found != nullptr && found->hash == hash ? found : nullptr;
}

Weight Key::OwnWeight() const noexcept {
  Weight weight{1, name_.size()};
  values_.ForEach([&](const Value& value) { weight += WeightOf(value); });
  return weight;
}

void Key::Insert(std::shared_ptr<Key> subkey) noexcept {
  Key& key = *subkey;
  key.parent_ = this;
  key.self_ = std::move(subkey);
  subkeys_.Insert(key);
}

void Key::Insert(std::unique_ptr<Value> value) noexcept {
  value->ordinal = next_ordinal_++;
  values_by_name_.Insert(*value);
  values_.Insert(*value.release());
}

void Key::Put(std::unique_ptr<Value> value) noexcept {
  if (Value* former = FindValue(value->name)) {
    former->Take(*value);
  } else {
    Insert(std::move(value));
  }
}

void Key::Remove(Value& value) noexcept {
  values_by_name_.Remove(value);
  values_.Remove(value);
  delete &value;
}

void Key::Remove(Key& subkey, KeyTree* tree) noexcept {
  subkeys_.Remove(subkey);
  const std::shared_ptr<Key> removed = std::move(subkey.self_);
  removed->Clear(tree);
  if (tree != nullptr) tree->Dropped(*removed);
  removed->state_ = State::kDeleted;
  removed->parent_ = nullptr;
}

void Key::Clear(KeyTree* tree) noexcept {
  DropValues(tree);
  DropSubkeys(tree);
}

void Key::DropValues(KeyTree* tree) noexcept {
  values_by_name_ = {};
  values_.Clear([&](Value* value) {
    if (tree != nullptr) tree->weight_ -= WeightOf(*value);
    delete value;
  });
}

// Takes the tree below apart from its leaves upward, along the links to the parents: no recursion,
// and no allocation, since a destructor may not fail. A key that an open handle still holds stays,
// empty.
void Key::DropSubkeys(KeyTree* tree) noexcept {
  Key* key = this;
  while (key != this || !key->subkeys_.IsEmpty()) {
    if (!key->subkeys_.IsEmpty()) {
      key = key->subkeys_.Top();
      continue;
    }
    key->DropValues(tree);
    if (tree != nullptr) tree->Dropped(*key);
    key->state_ = State::kDeleted;
    Key* parent = std::exchange(key->parent_, nullptr);
    parent->subkeys_.Remove(*key);
    const std::shared_ptr<Key> dropped = std::move(key->self_);
    key = parent;
  }
}

KeyTree::KeyTree() : root_(std::make_shared<Key>(std::string_view{})), numbered_{root_.get()} {
  root_->number_ = 0;
  root_->state_ = Key::State::kInTree;
}

// Handles may outlive the tree: for them it is gone with all its keys.
KeyTree::~KeyTree() {
  root_->Clear(nullptr);
  root_->state_ = Key::State::kDeleted;
}

Key* KeyTree::Numbered(std::uint32_t number) const noexcept {
  return number < numbered_.size() ? numbered_[number] : nullptr;
}

void KeyTree::ReserveNumbers(std::size_t more) {
  const std::size_t needed = numbered_.size() + more;
  if (needed > numbered_.capacity()) {
    numbered_.reserve(std::max(needed, 2 * numbered_.capacity()));
  }
}

void KeyTree::Adopt(Key& key) noexcept {
  key.state_ = Key::State::kInTree;
  if (numbered_.size() == numbered_.capacity()) return;
  key.number_ = NextNumber();
  numbered_.push_back(&key);
}

void KeyTree::Renumber(std::vector<Key*> keys) noexcept {
  numbered_ = std::move(keys);
  for (std::uint32_t number = 0; number < numbered_.size(); ++number) {
    numbered_[number]->number_ = number;
  }
}

void KeyTree::Insert(Key& parent, std::shared_ptr<Key> subkey, Weight added) noexcept {
  weight_ += added;
  parent.Insert(std::move(subkey));
}

void KeyTree::Put(Key& key, std::unique_ptr<Value> value) noexcept {
  if (Value* former = key.FindValue(value->name)) {
    weight_ += {0, value->data.size()};
    weight_ -= {0, former->data.size()};
    former->Take(*value);
  } else {
    weight_ += WeightOf(*value);
    key.Insert(std::move(value));
  }
}

void KeyTree::RemoveValue(Key& key, std::string_view name) noexcept {
  Value* value = key.FindValue(name);
  if (value == nullptr) return;
  weight_ -= WeightOf(*value);
  key.Remove(*value);
}

void KeyTree::Remove(Key& key) noexcept {
  if (key.parent_ == nullptr) {
    key.Clear(this);
  } else {
    key.parent_->Remove(key, this);
  }
}

void KeyTree::Dropped(const Key& key) noexcept {
  weight_ -= {1, key.name_.size()};
  if (key.number_ < numbered_.size()) numbered_[key.number_] = nullptr;
}

Key* FindKey(const Key& from, std::string_view path) noexcept {
  Key* key = from.Self().get();
  for (auto level = TakeLevel(path); key != nullptr && !level.empty(); level = TakeLevel(path)) {
    key = key->FindSubkey(level);
  }
  return key;
}

}  // namespace quorl::internal
