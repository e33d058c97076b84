// A change to a tree of keys: planned step by step with everything allocated that it needs, while
// nothing of it can be seen, and then made as a whole, which cannot fail. Between the two the
// journal writes it down (journal_format.hpp); a journal that is read gives changes too. Nothing
// here locks.
#pragma once

#include <compare>
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

#include "quorl/store/internal/key_tree.hpp"

namespace quorl::internal {

/// One step of a change.
struct ChangeStep {
  enum class Kind : std::uint8_t {
    kNone,          ///< A step that a later one took back.
    kInsertKey,     ///< `key` gets the new subkey `made`, with all below it.
    kPutValues,     ///< `key` gets `values`, or has those of their names replaced.
    kRemoveValues,  ///< `key` loses the values that are called as `values` are.
    kRemoveKey,     ///< `key` goes with all below it; of the root, all that it holds.
  };
  Kind kind = Kind::kNone;
  std::shared_ptr<Key> key;  ///< Of the tree.
  std::shared_ptr<Key> made{};
  Weight weight{};  ///< Of `made` and all below it.
  std::vector<std::unique_ptr<Value>> values{};
};

/// A change that only needs to be made.
class Change {
 public:
  bool IsEmpty() const noexcept { return steps_.empty(); }
  /// Whether the change gives room back and takes none.
  bool OnlyRemoves() const noexcept;
  const std::vector<ChangeStep>& Steps() const noexcept { return steps_; }
  /// The new keys in the order in which they get their numbers.
  const std::vector<Key*>& MadeKeys() const noexcept { return made_keys_; }

  /// The same keys in another order, each after its parent.
  void NumberKeys(std::vector<Key*> made_keys) noexcept { made_keys_ = std::move(made_keys); }
  /// Makes room in the keys of the tree for the values that the change brings.
  void ReserveValues() const;
  /// Makes the change in `tree`, which is as it was when the change was planned. It must have room
  /// for the values and, if keys have numbers there, for those of the new keys.
  void Apply(KeyTree& tree) noexcept;

 private:
  friend class ChangePlan;
  std::vector<ChangeStep> steps_;
  std::vector<Key*> made_keys_;
};

/// Plans a change: each member sees what those before it have planned. `tree` is lent, and must not
/// change meanwhile; it is never touched.
class ChangePlan {
 public:
  /// What a plan is made for: to make the change, or to ask whether one is needed at all.
  enum class Purpose : std::uint8_t { kMaking, kAsking };

  explicit ChangePlan(const KeyTree& tree, Purpose purpose = Purpose::kMaking) noexcept
      : tree_(tree), purpose_(purpose) {}

  /// Whether a change is needed, so far.
  bool IsNeeded() const noexcept { return is_needed_; }
  /// Whether nothing more needs to be planned.
  bool IsAnswered() const noexcept { return is_needed_ && purpose_ == Purpose::kAsking; }

  Key& Root() const noexcept { return *tree_.Root(); }
  /// A subkey; null when it is absent.
  Key* FindSubkey(Key& parent, std::string_view name) const;
  /// The key at `path` below `from`; null when it is absent.
  Key* Find(Key& from, std::string_view path) const;
  /// A new subkey; there must be none of that name.
  Key& Create(Key& parent, std::string_view name);
  /// The key at `path` below `from`, which is made with every level that is missing.
  Key& Reach(Key& from, std::string_view path);

  void PutValue(Key& key, std::string_view name, Int32 type, std::string_view data);
  /// Nothing when there is no such value.
  void RemoveValue(Key& key, std::string_view name);
  /// The key with all below it; of the root, all that it holds.
  void RemoveKey(Key& key);
  /// Whether the key has neither values nor subkeys.
  bool IsEmpty(const Key& key) const;
  /// Puts the values and subkeys of `source`, a key of whatever tree, into `into`.
  void Merge(const Key& source, Key& into) { Merge(source, nullptr, into); }
  /// The same with a key of no tree, which may lose what it holds when the change is to be made.
  void MergeDetached(Key& source, Key& into) { Merge(source, &source, into); }

  /// What was planned. The plan is used up.
  Change Finish();

 private:
  struct Place {
    const Key* parent;
    std::string_view name;
    bool operator<(const Place& other) const noexcept;
  };

  ChangeStep& StepOn(Key& key, ChangeStep::Kind kind);
  void Merge(const Key& source, Key* detached, Key& into);
  void Forget(Key& planned);
  bool HasValues(const Key& key) const;

  const KeyTree& tree_;
  Purpose purpose_;
  bool is_needed_ = false;
  Change change_;
  std::map<Place, std::size_t> inserted_;  // The steps that insert keys.
  std::set<const Key*> removed_;           // Keys of the tree; the root for all that it holds.
  std::set<const Key*> with_new_values_;
};

/// A copy of `key` with all below it, which belongs to no tree.
std::shared_ptr<Key> DetachedCopy(const Key& key);

}  // namespace quorl::internal
