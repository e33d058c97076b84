#include "quorl/store/internal/key_tree.hpp"

#include <algorithm>
#include <compare>
#include <utility>

namespace quorl::internal {
namespace {

constexpr std::string_view kCutPath = "...";

Weight WeightOf(const Value& value) noexcept {
  return {1, std::uint64_t{value.name.size()} + value.data.size()};
}

}  // namespace

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
  return subkeys_.Find([&](const Key& key) { return CompareNames(key.name_, name); });
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

void Key::TakeContent(Key& other) noexcept {
  values_ = std::exchange(other.values_, ValueList());
  subkeys_ = std::exchange(other.subkeys_, {});
  subkeys_.ForEach([&](Key& subkey) { subkey.parent_ = this; });
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
  if (tree != nullptr) {
    values_.ForEach([&](const Value& value) { tree->weight_ -= WeightOf(value); });
  }
  values_.Clear();
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
    if (numbered_[number] != nullptr) numbered_[number]->number_ = number;
  }
}

void KeyTree::Insert(Key& parent, std::shared_ptr<Key> subkey, Weight added) noexcept {
  weight_ += added;
  parent.Insert(std::move(subkey));
}

void KeyTree::Put(Key& key, std::unique_ptr<Value> value) noexcept {
  if (follower_ != nullptr) follower_->ValueComes(key, *value);
  if (Value* former = key.values_.Find(value->hash, value->name)) {
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
  if (follower_ != nullptr) follower_->ValueGoes(key, *value);
  weight_ -= WeightOf(*value);
  key.Remove(*value);
}

void KeyTree::Remove(Key& key) noexcept {
  if (follower_ != nullptr) follower_->KeyGoes(key);
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

Key* FindKey(Key& from, std::string_view path) noexcept {
  Key* key = &from;
  for (auto level = TakeLevel(path); key != nullptr && !level.empty(); level = TakeLevel(path)) {
    key = key->FindSubkey(level);
  }
  return key;
}

}  // namespace quorl::internal
