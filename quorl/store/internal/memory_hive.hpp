// A hive in memory.
#pragma once

#include <mutex>

#include "quorl/store/internal/hive.hpp"

namespace quorl::internal {

class MemoryHive final : public Hive {
 public:
  StoreStatus Read(Freshness freshness, Look look) override;
  StoreStatus Prepare(Plan plan, std::unique_ptr<PendingChange>& pending) override;
  void HoldForFork() noexcept override { mutex_.lock(); }
  void ReleaseAfterFork() noexcept override { mutex_.unlock(); }

 private:
  class Pending;

  std::mutex mutex_;
  HiveContent content_ = std::make_shared<KeyTree>();
};

}  // namespace quorl::internal
