// A store in memory: the same operations, nothing on the disk, gone with the object. For hosts that
// keep no settings, and for tests. Threads as in store.hpp.
#pragma once

#include <mutex>

#include "quorl/store/hive_store.hpp"

namespace quorl {

/// A hive in memory.
class MemoryHive final : public Hive {
 public:
  Int32 Read(Freshness freshness, Look look) override;
  Int32 Write(Plan plan) override;
  void HoldForFork() noexcept override { mutex_.lock(); }
  void ReleaseAfterFork() noexcept override { mutex_.unlock(); }

 private:
  std::mutex mutex_;
  HiveContent content_;
};

/// Seven empty root keys to begin with. Construction may throw std::bad_alloc.
class MemoryStore final : public HiveStore {
 public:
  MemoryStore();
};

}  // namespace quorl
