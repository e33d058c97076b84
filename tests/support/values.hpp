// What tests of values stand on: texts in tables, failures, messages, random inputs, oracles.
#pragma once

#include <gtest/gtest.h>

#include <limits>

#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/locale.hpp"
#include "tests/support/cells.hpp"
#include "tests/support/decimal_text.hpp"
#include "tests/support/holder.hpp"
#include "tests/support/print.hpp"
#include "tests/support/random.hpp"

namespace quorl {

inline constexpr Double kNaN = std::numeric_limits<Double>::quiet_NaN();
inline constexpr Double kInfinity = std::numeric_limits<Double>::infinity();

}  // namespace quorl
