// The content of one hive in memory: a tree of keys with their values (value_list.hpp). Every step
// takes logarithmic time, and nothing recurses by the depth of the keys. Nothing here locks. For
// changes to a tree see change.hpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "quorl/runtime/types.hpp"
#include "quorl/store/internal/counted_tree.hpp"
#include "quorl/store/internal/value_list.hpp"
#include "quorl/store/key_name.hpp"

namespace quorl::internal {

/// What a part of a tree takes when it is written out: records, and the bytes of names and data.
struct Weight {
  std::uint64_t records = 0;
  std::uint64_t bytes = 0;

  Weight& operator+=(Weight other) noexcept;
  Weight& operator-=(Weight other) noexcept;
};

class KeyTree;

/// A key: its name, its subkeys in the order of their names, its values in the order in which they
/// were made.
class Key : public std::enable_shared_from_this<Key> {
 public:
  static constexpr std::uint32_t kNoNumber = std::numeric_limits<std::uint32_t>::max();

  /// Where a key stands in its life.
  enum class State : std::uint8_t { kPlanned, kInTree, kDeleted };

  explicit Key(std::string_view name) : name_(name) {}
  Key(const Key&) = delete;
  Key& operator=(const Key&) = delete;
  ~Key();

  /// A share of the key. Every key is held by shared pointers.
  std::shared_ptr<Key> Self() const noexcept {
    return std::const_pointer_cast<Key>(weak_from_this().lock());
  }

  const std::string& Name() const noexcept { return name_; }
  Key* Parent() const noexcept { return parent_; }
  State StateNow() const noexcept { return state_; }
  /// A deleted key has neither subkeys nor values.
  bool Deleted() const noexcept { return state_ == State::kDeleted; }
  /// The number under which the journal knows the key.
  std::uint32_t Number() const noexcept { return number_; }
  /// The names of the levels from the root to here with backslashes between them; of a path longer
  /// than `longest` bytes "..." and its end.
  std::string Path(std::size_t longest = std::numeric_limits<std::size_t>::max()) const;

  bool IsEmpty() const noexcept { return subkeys_.IsEmpty() && values_.IsEmpty(); }
  std::size_t SubkeyCount() const noexcept { return subkeys_.Size(); }
  std::size_t ValueCount() const noexcept { return values_.Size(); }
  /// Null after the last one.
  const Key* SubkeyAt(std::size_t place) const noexcept { return subkeys_.At(place); }
  const Value* ValueAt(std::size_t place) const noexcept { return values_.At(place); }
  /// Null when there is none of that name, in whatever case.
  Key* FindSubkey(std::string_view name) const noexcept;
  Value* FindValue(std::string_view name) const noexcept {
    return values_.Find(HashOfName(name), name);
  }
  /// A value whose name has this hash.
  Value* FindValueByHash(std::uint64_t hash) const noexcept { return values_.FindByHash(hash); }

  /// Calls `visit(Key&)` for each subkey in order.
  template <class Visit>
  void ForEachSubkey(Visit visit) const {
    subkeys_.ForEach(visit);
  }
  template <class Visit>
  void ForEachValue(Visit visit) const {
    values_.ForEach(visit);
  }

  /// What the key itself takes, its subkeys not counted.
  Weight OwnWeight() const noexcept;

  /// Notes where a planned key is to be.
  void PlanBelow(Key& parent) noexcept { parent_ = &parent; }

  /// Makes room for so many values more.
  void ReserveValues(std::size_t more) { values_.Reserve(more); }

  // Changes, none of which can fail. For keys of a tree KeyTree has its own.
  void Insert(std::shared_ptr<Key> subkey) noexcept;
  /// Appends a value of another name than all others. There must be room.
  void Insert(std::unique_ptr<Value> value) noexcept { values_.Append(std::move(value)); }
  void Remove(Value& value) noexcept { values_.Remove(value); }
  /// Takes values and subkeys of `other`, a key of no tree, in place of its own, which are none.
  void TakeContent(Key& other) noexcept;
  /// Removes a subkey with all below it; `tree`, unless null, is told.
  void Remove(Key& subkey, KeyTree* tree) noexcept;
  /// Removes every value and every subkey.
  void Clear(KeyTree* tree) noexcept;

 private:
  friend class KeyTree;
  struct KeyIsLess {
    bool operator()(const Key& left, const Key& right) const noexcept;
  };

  void DropSubkeys(KeyTree* tree) noexcept;
  void DropValues(KeyTree* tree) noexcept;

  Key* parent_ = nullptr;
  std::string name_;
  std::uint32_t number_ = kNoNumber;
  State state_ = State::kPlanned;
  // A key below another one holds itself, and the trees hold plain pointers.
  std::shared_ptr<Key> self_;
  TreeLink<Key> link_{};
  CountedTree<Key, &Key::link_, KeyIsLess> subkeys_;
  ValueList values_;
};

/// Is told of each change of a tree before it is made, except that new keys come.
class TreeFollower {
 public:
  TreeFollower() = default;
  TreeFollower(const TreeFollower&) = delete;
  TreeFollower& operator=(const TreeFollower&) = delete;

  /// `value` is to replace the one of its name, or to be the last one.
  virtual void ValueComes(const Key& key, const Value& value) noexcept = 0;
  virtual void ValueGoes(const Key& key, const Value& value) noexcept = 0;
  /// With all below it; of the root, everything but the root itself.
  virtual void KeyGoes(const Key& key) noexcept = 0;

 protected:
  ~TreeFollower() = default;
};

/// A root key with everything below it, and its keys by their numbers.
class KeyTree {
 public:
  KeyTree();
  ~KeyTree();
  KeyTree(const KeyTree&) = delete;
  KeyTree& operator=(const KeyTree&) = delete;

  const std::shared_ptr<Key>& Root() const noexcept { return root_; }
  /// What the whole tree takes when it is written out.
  Weight TotalWeight() const noexcept { return weight_; }

  /// The key that has this number; null for none.
  Key* Numbered(std::uint32_t number) const noexcept;
  /// The number that the next key gets. No number is given twice.
  std::uint32_t NextNumber() const noexcept { return static_cast<std::uint32_t>(numbered_.size()); }
  /// Makes room for the numbers of so many new keys. A tree for which this is never called, as no
  /// journal asks for numbers, gives none.
  void ReserveNumbers(std::size_t more);
  /// Takes a planned key for one of the tree, with the next number.
  void Adopt(Key& key) noexcept;
  /// Gives all keys new numbers, by their places in `keys`, which holds each of the tree once, the
  /// root first, and null for numbers that are not to be given.
  void Renumber(std::vector<Key*> keys) noexcept;

  /// `follower` is lent; null for none.
  void Follow(TreeFollower* follower) noexcept { follower_ = follower; }

  // Changes of keys that are in the tree, none of which can fail.
  void Insert(Key& parent, std::shared_ptr<Key> subkey, Weight added) noexcept;
  /// Replaces the value of the same name, which keeps its name's case and its place, or appends;
  /// then there must be room.
  void Put(Key& key, std::unique_ptr<Value> value) noexcept;
  /// Nothing when there is no such value.
  void RemoveValue(Key& key, std::string_view name) noexcept;
  /// Removes `key` with all below it; the root is only emptied.
  void Remove(Key& key) noexcept;

 private:
  friend class Key;
  void Dropped(const Key& key) noexcept;

  std::shared_ptr<Key> root_;
  Weight weight_;
  std::vector<Key*> numbered_;
  TreeFollower* follower_ = nullptr;
};

/// The key at `path` below `from`; null when it is absent.
Key* FindKey(Key& from, std::string_view path) noexcept;

/// Calls `visit(Key&)` for `top` and every key below it, each before its subkeys, subkeys in order.
template <class Visit>
void ForEachKey(Key& top, Visit visit) {
  std::vector<Key*> waiting{&top};
  while (!waiting.empty()) {
    Key* key = waiting.back();
    waiting.pop_back();
    visit(*key);
    const std::size_t first = waiting.size();
    waiting.resize(first + key->SubkeyCount());
    std::size_t place = waiting.size();
    key->ForEachSubkey([&](Key& subkey) { waiting[--place] = &subkey; });
  }
}

}  // namespace quorl::internal
