#include "quorl/store/internal/memory_hive.hpp"

#include <utility>

namespace quorl::internal {

class MemoryHive::Pending final : public PendingChange {
 public:
  Pending(std::unique_lock<std::mutex> lock, KeyTree& tree, Change change)
      : lock_(std::move(lock)), tree_(tree), change_(std::move(change)) {
    change_.ReserveValues();
  }

  StoreStatus Commit() noexcept override {
    change_.Apply(tree_);
    return kDone;
  }

 private:
  std::unique_lock<std::mutex> lock_;
  KeyTree& tree_;
  Change change_;
};

StoreStatus MemoryHive::Read(Freshness /*freshness*/, Look look) {
  const std::lock_guard lock(mutex_);
  return look(content_);
}

StoreStatus MemoryHive::Prepare(Plan plan, std::unique_ptr<PendingChange>& pending) {
  std::unique_lock lock(mutex_);
  ChangePlan changes(*content_);
  const StoreStatus status = plan(content_, changes);
  if (status != kDone) return status;
  Change change = changes.Finish();
  if (change.IsEmpty()) return kDone;
  pending = std::make_unique<Pending>(std::move(lock), *content_, std::move(change));
  return kDone;
}

}  // namespace quorl::internal
