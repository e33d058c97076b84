// One hive: the content of one root key, behind its own lock. The operations (hive_store.hpp) look
// at it and change it through the members here and know nothing of where it is kept.
#pragma once

#include <cstdint>
#include <memory>

#include "quorl/store/internal/change.hpp"
#include "quorl/store/internal/function_ref.hpp"
#include "quorl/store/internal/key_tree.hpp"
#include "quorl/store/status.hpp"

namespace quorl::internal {

/// What a hive holds at the moment. Another tree takes its place when it is read as a whole; open
/// handles keep the one in which they found their key.
using HiveContent = std::shared_ptr<KeyTree>;

/// Whether what other processes have changed is to be taken in first.
enum class Freshness : std::uint8_t { kAsKnown, kUpToDate };

/// A change for which everything is ready; until it ends, nobody else changes the hive. Without
/// `Commit`, nothing has changed.
class PendingChange {
 public:
  PendingChange() = default;
  PendingChange(const PendingChange&) = delete;
  PendingChange& operator=(const PendingChange&) = delete;
  virtual ~PendingChange() = default;

  /// Makes the change durable and visible, or gives the code of the failure. At most once.
  virtual StoreStatus Commit() noexcept = 0;
};

/// A hive may be used from several threads at once. Its members may throw std::bad_alloc; nothing
/// has changed then.
class Hive {
 public:
  /// Looks at the content, and returns a code.
  using Look = FunctionRef<StoreStatus(const HiveContent&)>;
  /// Plans a change of the content as it stands, or nothing when none is needed, and returns a
  /// code. It is called at most once to make the change, and before that any number of times to ask
  /// for it, each time with an empty plan.
  using Plan = FunctionRef<StoreStatus(const HiveContent&, ChangePlan&)>;

  Hive() = default;
  Hive(const Hive&) = delete;
  Hive& operator=(const Hive&) = delete;
  virtual ~Hive() = default;

  /// Runs `look` while nothing changes, and returns its code or the failure to get up to date.
  virtual StoreStatus Read(Freshness freshness, Look look) = 0;
  /// Gets the change that `plan` asks for ready: `pending` stays null when there is nothing to do.
  virtual StoreStatus Prepare(Plan plan, std::unique_ptr<PendingChange>& pending) = 0;
  /// Prepares and commits.
  StoreStatus Write(Plan plan) {
    std::unique_ptr<PendingChange> pending;
    const StoreStatus status = Prepare(plan, pending);
    return status == kDone && pending != nullptr ? pending->Commit() : status;
  }

  /// Waits until no other thread uses the hive and keeps it so, around a fork.
  virtual void HoldForFork() noexcept = 0;
  virtual void ReleaseAfterFork() noexcept = 0;
};

}  // namespace quorl::internal
