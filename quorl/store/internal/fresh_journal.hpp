// A journal that is written afresh from a tree, piece by piece, while the tree changes: from one
// piece to the next the tree may be changed as it likes, and in the end the journal holds it as it
// is then.
//
// A walk goes through the keys by their numbers, and through the values of each by their order.
// What comes before the place where the walk is, is in the journal already: changes there are
// written too, as they are made. What comes after it will be met as it is by then. New keys have
// the highest numbers, new values stand last; so they come after it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "quorl/store/internal/journal_format.hpp"
#include "quorl/store/internal/journal_reader.hpp"
#include "quorl/store/internal/key_tree.hpp"

namespace quorl::internal {

/// Not for several threads at once, nor with a change of the tree. May throw std::bad_alloc.
class FreshJournal final : private TreeFollower {
 public:
  /// A tree has one fresh journal at a time.
  explicit FreshJournal(std::shared_ptr<KeyTree> tree);
  FreshJournal(const FreshJournal&) = delete;
  FreshJournal& operator=(const FreshJournal&) = delete;
  ~FreshJournal();

  /// The bytes that come next: some `wanted` of what the walk meets, and what has changed since.
  /// Memory may have run out while the tree was changed, which is thrown now. Once this has thrown,
  /// it throws each time.
  std::string Next(std::size_t wanted);
  /// Whether everything has been walked. What has changed since is still to be taken.
  bool IsWalked() const noexcept { return key_ == tree_->NextNumber(); }
  /// How far the bytes go that were taken.
  const JournalPosition& Position() const noexcept { return position_; }
  /// The keys of the tree by their numbers in this journal, null for those that went.
  std::vector<Key*> Keys() const;

 private:
  void ValueComes(const Key& key, const Value& value) noexcept override;
  void ValueGoes(const Key& key, const Value& value) noexcept override;
  void KeyGoes(const Key& key) noexcept override;

  bool IsReached(const Key& key) const noexcept { return key.Number() < numbers_.size(); }
  bool IsWalked(const Key& key, const Value& value) const noexcept;
  template <class Write>
  void Note(Write write) noexcept;
  void WalkOn();
  void EnterKey(const Key* key);
  void EndTransaction();

  const std::shared_ptr<KeyTree> tree_;
  std::uint32_t key_ = 0;                // The number of the key where the walk is,
  std::size_t value_ = 0;                // and the place of its next value.
  std::vector<std::uint32_t> numbers_;   // Of the keys reached: by their numbers those in here,
  std::vector<std::uint32_t> formerly_;  // and the other way round.
  JournalPosition position_;
  TransactionWriter writer_;
  std::string bytes_;  // Whole transactions that are to be taken.
  bool lacked_memory_ = false;
};

/// The length of a fresh journal of `tree`, its zeros not counted.
std::uint64_t FreshJournalBytes(const KeyTree& tree) noexcept;

}  // namespace quorl::internal
