// A place in a text that is read from left to right. A copy remembers the place to come back to.
#pragma once

#include <cstddef>

#include "quorl/runtime/types.hpp"

namespace quorl::internal {

/// Walks a text as if the units of `passed_over` did not stand in it.
class Scanner {
 public:
  explicit Scanner(StringView text, StringView passed_over = {}) noexcept
      : rest_(text), passed_over_(passed_over) {
    PassOver();
  }

  bool AtEnd() const noexcept { return rest_.empty(); }
  /// The unit at the place; not to be asked for at the end.
  char16_t Unit() const noexcept { return rest_.front(); }
  /// What is left, the units passed over included.
  StringView Rest() const noexcept { return rest_; }

  void Step(std::size_t units = 1) noexcept {
    rest_.remove_prefix(units);
    PassOver();
  }
  /// Steps over `expected` if it stands here whole; an empty one never does.
  bool Take(StringView expected) noexcept {
    if (expected.empty() || !rest_.starts_with(expected)) return false;
    Step(expected.size());
    return true;
  }

 private:
  void PassOver() noexcept {
    if (passed_over_.empty()) return;
    while (!AtEnd() && passed_over_.find(Unit()) != StringView::npos) rest_.remove_prefix(1);
  }

  StringView rest_;
  StringView passed_over_;
};

}  // namespace quorl::internal
