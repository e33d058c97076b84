#include "quorl/store/memory_store.hpp"

#include "quorl/store/internal/hive_store.hpp"
#include "quorl/store/internal/memory_hive.hpp"

namespace quorl {

using namespace internal;

MemoryStore::MemoryStore() {
  HiveStore::Hives hives;
  for (auto& hive : hives) hive = std::make_unique<MemoryHive>();
  engine_ = std::make_unique<HiveStore>(std::move(hives));
}

}  // namespace quorl
