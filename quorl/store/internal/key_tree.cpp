#include "quorl/store/internal/key_tree.hpp"

#include <algorithm>
#include <compare>
#include <utility>

#include "quorl/store/key_name.hpp"

namespace quorl::internal {
namespace {

// Before the data of a value its type is written, between path and name of a value a zero byte.
constexpr std::size_t kTypeBytes = 4;
constexpr std::size_t kJoinerBytes = 1;

constexpr auto kNameOfKey = [](const Key* key) -> std::string_view { return key->Name(); };
constexpr auto kNameOfValue = [](const Value* value) -> std::string_view { return value->name; };
constexpr auto kBefore = [](std::string_view left, std::string_view right) {
  return std::is_lt(CompareNames(left, right));
};

// Room for `more` elements that grows in steps, so that a growing list costs no more than its
// length.
template <class Element>
void MakeRoom(std::vector<Element>& list, std::size_t more) {
  const std::size_t needed = list.size() + more;
  if (needed > list.capacity()) list.reserve(std::max(needed, 2 * list.capacity()));
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

Key::Key(std::string_view name, std::size_t path_bytes) : name_(name), path_bytes_(path_bytes) {}

Key::~Key() { Clear(); }

std::string Key::Path() const {
  std::string path(path_bytes_, kPathSeparator);
  std::size_t end = path_bytes_;
  for (const Key* key = this; key->path_bytes_ != 0; key = key->parent_) {
    key->name_.copy(path.data() + (end - key->name_.size()), key->name_.size());
    end = key->parent_->path_bytes_;
  }
  return path;
}

std::size_t Key::SubkeyPathBytes(std::string_view name) const noexcept {
  return path_bytes_ == 0 ? name.size() : path_bytes_ + 1 + name.size();
}

Key* Key::FindSubkey(std::string_view name) const noexcept {
  const auto found = std::ranges::lower_bound(subkeys_, name, kBefore, kNameOfKey);
  return found != subkeys_.end() && std::is_eq(CompareNames((*found)->name_, name)) ? *found
                                                                                    : nullptr;
}

Value* Key::FindValue(std::string_view name) const noexcept {
  const auto found = std::ranges::lower_bound(values_by_name_, name, kBefore, kNameOfValue);
  return found != values_by_name_.end() && std::is_eq(CompareNames((*found)->name, name)) ? *found
                                                                                          : nullptr;
}

bool Key::IsBare() const noexcept { return path_bytes_ != 0 && IsEmpty(); }

Weight Key::OwnWeight() const noexcept {
  Weight weight;
  if (IsBare()) weight = {1, static_cast<std::int64_t>(path_bytes_)};
  for (const Value* value : values_) weight += WeightOf(*value);
  return weight;
}

Weight Key::WeightOf(const Value& value) const noexcept {
  const std::size_t bytes =
      path_bytes_ + kJoinerBytes + value.name.size() + kTypeBytes + value.data.size();
  return {1, static_cast<std::int64_t>(bytes)};
}

void Key::MakeRoomForSubkeys(std::size_t more) { MakeRoom(subkeys_, more); }

void Key::MakeRoomForValues(std::size_t more) {
  MakeRoom(values_, more);
  MakeRoom(values_by_name_, more);
}

void Key::Insert(std::shared_ptr<Key> subkey) noexcept {
  Key* key = subkey.get();
  key->parent_ = this;
  key->self_ = std::move(subkey);
  subkeys_.insert(std::ranges::lower_bound(subkeys_, key->name_, kBefore, kNameOfKey), key);
}

void Key::Insert(std::unique_ptr<Value> value) noexcept {
  value->ordinal = next_ordinal_++;
  const auto place = std::ranges::lower_bound(values_by_name_, value->name, kBefore, kNameOfValue);
  values_by_name_.insert(place, value.get());
  values_.push_back(value.release());
}

void Key::Remove(const Key& subkey) noexcept {
  const auto place = std::ranges::lower_bound(subkeys_, subkey.name_, kBefore, kNameOfKey);
  const std::shared_ptr<Key> removed = std::move((*place)->self_);
  subkeys_.erase(place);
  removed->Clear();
  removed->deleted_ = true;
  removed->parent_ = nullptr;
}

void Key::Remove(const Value& value) noexcept {
  values_by_name_.erase(
      std::ranges::lower_bound(values_by_name_, value.name, kBefore, kNameOfValue));
  values_.erase(std::ranges::lower_bound(values_, value.ordinal, {}, &Value::ordinal));
  delete &value;
}

void Key::Clear() noexcept {
  DropValues();
  DropSubkeys();
}

void Key::DropValues() noexcept {
  for (const Value* value : values_) delete value;
  values_.clear();
  values_by_name_.clear();
}

void Key::TakeContentOf(Key& other) noexcept {
  Clear();
  subkeys_.swap(other.subkeys_);
  values_.swap(other.values_);
  values_by_name_.swap(other.values_by_name_);
  next_ordinal_ = other.next_ordinal_;
  for (Key* subkey : subkeys_) subkey->parent_ = this;
}

// Takes the tree below apart from its leaves upward, along the parent links: no recursion, and no
// allocation, since a destructor may not fail. A key that an open handle still holds stays, empty.
void Key::DropSubkeys() noexcept {
  Key* key = this;
  while (key != this || !key->subkeys_.empty()) {
    if (!key->subkeys_.empty()) {
      key = key->subkeys_.back();
      continue;
    }
    key->DropValues();
    key->deleted_ = true;
    Key* parent = std::exchange(key->parent_, nullptr);
    parent->subkeys_.pop_back();
    const std::shared_ptr<Key> dropped = std::move(key->self_);
    key = parent;
  }
}

Key* KeyTree::Find(std::string_view path) const noexcept {
  Key* key = root_.get();
  for (auto level = TakeLevel(path); key != nullptr && !level.empty(); level = TakeLevel(path)) {
    key = key->FindSubkey(level);
  }
  return key;
}

}  // namespace quorl::internal
