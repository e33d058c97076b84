#include "quorl/store/internal/memory_hive.hpp"

#include "quorl/store/status.hpp"

namespace quorl::internal {

Int32 MemoryHive::Read(Freshness /*freshness*/, Look look) {
  const std::lock_guard lock(mutex_);
  return look(content_);
}

Int32 MemoryHive::Write(Plan plan) {
  const std::lock_guard lock(mutex_);
  Change change;
  if (const Int32 status = plan(content_, change); status != kDone) return status;
  Prepare(content_.tree, change).Apply(content_.tree);
  return kDone;
}

}  // namespace quorl::internal
