// How far a hive's content goes; see `PersistentStore::Mark`. A plain value.
#pragma once

#include <cstdint>

namespace quorl {

/// Two marks of a hive are equal as long as nobody has changed it between them. The numbers mean
/// nothing by themselves.
struct HiveMark {
  std::uint64_t journal = 0;
  std::uint64_t position = 0;

  friend bool operator==(const HiveMark&, const HiveMark&) = default;
};

}  // namespace quorl
