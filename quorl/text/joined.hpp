// Puts the text of a result together from pieces of the arguments.
#pragma once

#include <initializer_list>

#include "quorl/runtime/types.hpp"

namespace quorl::text {

/// The pieces in their order, in one allocation. Failure 7 when memory is short.
String Joined(std::initializer_list<StringView> pieces);

}  // namespace quorl::text
