// A hive in memory.
#pragma once

#include <mutex>

#include "quorl/store/internal/hive.hpp"

namespace quorl::internal {

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

}  // namespace quorl::internal
