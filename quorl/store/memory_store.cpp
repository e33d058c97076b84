#include "quorl/store/memory_store.hpp"

#include <memory>

namespace quorl {

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

MemoryStore::MemoryStore()
    : HiveStore([] {
        Hives hives;
        for (auto& hive : hives) hive = std::make_unique<MemoryHive>();
        return hives;
      }()) {}

}  // namespace quorl
