// The ambient screen: its size in the host's length unit, 0 by 0 until a host gives it. One for the
// whole process; a host sets it before it places forms. It may be set and read by any thread at any
// time.
#pragma once

#include "quorl/runtime/types.hpp"

namespace quorl {

class QUORL_API Screen {
 public:
  static Single Width() noexcept;
  static Single Height() noexcept;
  /// Failure 6 for a size that a Single does not hold, NaN and infinities included; the size stays
  /// then.
  static void SetSize(Double width, Double height);
};

}  // namespace quorl
