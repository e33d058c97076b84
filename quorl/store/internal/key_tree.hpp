// The content of one hive in memory: a tree of keys with their values. Nothing here locks, and
// nothing here recurses: depth costs no stack. For changes to a tree see key_change.hpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "quorl/runtime/types.hpp"

namespace quorl::internal {

/// One value of a key.
struct Value {
  std::string name;
  Int32 type = 0;
  std::string data;
  std::uint64_t ordinal = 0;  ///< Its place in the order in which the key's values were made.
};

/// What a part of a tree takes when it is written out afresh: the number of records, and the bytes
/// of path, name and data in them (see journal_format.hpp).
struct Weight {
  std::int64_t records = 0;
  std::int64_t bytes = 0;

  Weight& operator+=(Weight other) noexcept;
  Weight& operator-=(Weight other) noexcept;
};

/// A key: its name, its subkeys in name order, its values in the order in which they were made.
class Key : public std::enable_shared_from_this<Key> {
 public:
  /// `path_bytes` is the length of the path from the root to here, 0 for the root itself.
  Key(std::string_view name, std::size_t path_bytes);
  Key(const Key&) = delete;
  Key& operator=(const Key&) = delete;
  ~Key();

  /// A share of the key, for an open handle. Every key is held by shared pointers.
  std::shared_ptr<const Key> Self() const noexcept { return weak_from_this().lock(); }

  const std::string& Name() const noexcept { return name_; }
  /// The levels from the root to here with backslashes between them, and its length.
  std::string Path() const;
  std::size_t PathBytes() const noexcept { return path_bytes_; }
  /// The length of the path of a subkey called `name`.
  std::size_t SubkeyPathBytes(std::string_view name) const noexcept;
  /// Whether the key was taken out of its tree; it has then no subkeys and no values.
  bool Deleted() const noexcept { return deleted_; }

  std::span<Key* const> Subkeys() const noexcept { return subkeys_; }
  std::span<const Value* const> Values() const noexcept { return values_; }
  /// Null when there is none of that name, in whatever case.
  Key* FindSubkey(std::string_view name) const noexcept;
  Value* FindValue(std::string_view name) const noexcept;

  /// Whether the key has neither a value nor a subkey.
  bool IsEmpty() const noexcept { return subkeys_.empty() && values_.empty(); }
  /// Whether the key needs a record of its own, since no value and no subkey shows that it exists.
  bool IsBare() const noexcept;
  /// What the key itself takes, its subkeys not counted.
  Weight OwnWeight() const noexcept;
  Weight WeightOf(const Value& value) const noexcept;

  // Taking something in cannot fail once there is room for it.
  void MakeRoomForSubkeys(std::size_t more);
  void MakeRoomForValues(std::size_t more);
  void Insert(std::shared_ptr<Key> subkey) noexcept;
  void Insert(std::unique_ptr<Value> value) noexcept;
  void Remove(const Key& subkey) noexcept;
  void Remove(const Value& value) noexcept;
  /// Removes every value and every subkey; those below count as deleted.
  void Clear() noexcept;
  /// Takes over what `other`, a key with a path of the same length, holds, in place of its own.
  void TakeContentOf(Key& other) noexcept;

 private:
  void DropSubkeys() noexcept;
  void DropValues() noexcept;

  Key* parent_ = nullptr;
  std::string name_;
  std::size_t path_bytes_;
  bool deleted_ = false;
  std::uint64_t next_ordinal_ = 0;
  // A key in a tree holds itself, and the lists hold plain pointers: what is behind a place in a
  // list is moved in one go when something is put there or taken away.
  std::shared_ptr<Key> self_;
  std::vector<Key*> subkeys_;
  std::vector<Value*> values_;
  std::vector<Value*> values_by_name_;
};

/// A root key with everything below it.
class KeyTree {
 public:
  KeyTree() : root_(std::make_shared<Key>(std::string_view{}, 0)) {}

  const std::shared_ptr<Key>& Root() const noexcept { return root_; }
  /// The key at `path`, null when it is absent.
  Key* Find(std::string_view path) const noexcept;
  /// What the whole tree takes when it is written out afresh.
  Weight TotalWeight() const noexcept { return weight_; }
  void Reweigh(Weight added) noexcept { weight_ += added; }

 private:
  std::shared_ptr<Key> root_;
  Weight weight_;
};

/// Calls `visit(const Key&)` for `top` and every key below it, each before its subkeys.
template <class Visit>
void ForEachKey(const Key& top, Visit visit) {
  std::vector<const Key*> waiting{&top};
  while (!waiting.empty()) {
    const Key* key = waiting.back();
    waiting.pop_back();
    visit(*key);
    const auto subkeys = key->Subkeys();
    waiting.insert(waiting.end(), subkeys.rbegin(), subkeys.rend());
  }
}

}  // namespace quorl::internal
