// The open keys of a store by their handles. May be used from several threads at once.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "quorl/store/internal/hive.hpp"
#include "quorl/store/store.hpp"

namespace quorl::internal {

/// An open key, or a root key. `tree` and `key` are touched only while the hive is read or written.
struct OpenedKey {
  Hive* hive = nullptr;
  Int32 access = 0;
  bool is_root = false;
  HiveContent tree{};  ///< The tree in which the key was found.
  std::shared_ptr<Key> key{};
};

class HandleTable {
 public:
  /// A new handle for `opened`, above 0 and different from every open one. Handles count upward, so
  /// that a stale one names nothing for the next two thousand million openings. May throw
  /// std::bad_alloc.
  KeyHandle Add(std::shared_ptr<OpenedKey> opened);
  /// The open key, null when there is none under that handle.
  std::shared_ptr<OpenedKey> Find(KeyHandle handle) const noexcept;
  /// False when there was none under that handle.
  bool Remove(KeyHandle handle) noexcept;
  std::size_t Count() const noexcept;

  void HoldForFork() noexcept { mutex_.lock(); }
  void ReleaseAfterFork() noexcept { mutex_.unlock(); }

 private:
  // A hash table whose rows are a power of two, at most half of them used: a handle's row is the
  // one of its lowest bits, or the next free one after it.
  struct Row {
    KeyHandle handle = 0;  // 0 where the row is free.
    std::shared_ptr<OpenedKey> opened{};
  };

  std::size_t RowOf(KeyHandle handle) const noexcept;
  std::size_t After(std::size_t row) const noexcept { return (row + 1) & (rows_.size() - 1); }
  void Grow();

  mutable std::mutex mutex_;
  std::vector<Row> rows_ = std::vector<Row>(16);
  std::size_t count_ = 0;
  KeyHandle last_ = 0;
};

}  // namespace quorl::internal
