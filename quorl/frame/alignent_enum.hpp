// How a host may align what it shows. No member of the library takes it; it is published for hosts.
#pragma once

#include "quorl/runtime/types.hpp"

namespace quorl {

enum AlignentEnum : Int32 {
  qlAlignLeft = 0,
  qlAlignRight = 1,
  qlAlignCenter = 2,
  qlAlignGeneral = 3,
};

}  // namespace quorl
