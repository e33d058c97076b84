// One hive: the content of one root key, behind its own lock. The operations (hive_store.hpp) look
// at it and change it through the two members here and know nothing of where it is kept.
#pragma once

#include <cstdint>

#include "quorl/runtime/types.hpp"
#include "quorl/store/internal/function_ref.hpp"
#include "quorl/store/internal/key_change.hpp"
#include "quorl/store/internal/key_tree.hpp"

namespace quorl::internal {

/// What a hive holds at the moment.
struct HiveContent {
  KeyTree tree;
  /// Another number whenever the tree was replaced as a whole: keys are then to be looked up again.
  std::uint64_t generation = 1;
};

/// Whether what other processes have changed is to be taken in first.
enum class Freshness : std::uint8_t { AsKnown, UpToDate };

/// A hive may be used from several threads at once. Its members may throw std::bad_alloc; nothing
/// has changed then.
class Hive {
 public:
  /// Looks at the content, and returns a code.
  using Look = FunctionRef<Int32(const HiveContent&)>;
  /// Plans a change for the content as it stands, or leaves `Change` as it is when none is needed,
  /// and returns a code. It may be called more than once for one change.
  using Plan = FunctionRef<Int32(const HiveContent&, Change&)>;

  Hive() = default;
  Hive(const Hive&) = delete;
  Hive& operator=(const Hive&) = delete;
  virtual ~Hive() = default;

  /// Runs `look` while nothing changes, and returns its code or the failure to get up to date.
  virtual Int32 Read(Freshness freshness, Look look) = 0;
  /// Makes the change that `plan` asks for, lasting, and returns its code or that of the failure.
  virtual Int32 Write(Plan plan) = 0;

  /// Waits until no other thread uses the hive and keeps it so, around a fork.
  virtual void HoldForFork() noexcept = 0;
  virtual void ReleaseAfterFork() noexcept = 0;
};

}  // namespace quorl::internal
