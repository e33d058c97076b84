// Arithmetic of a few instructions, inline where a call would take longer than the work.
#pragma once

#include <array>
#include <cstddef>

#include "quorl/runtime/arithmetic.hpp"
#include "quorl/runtime/raised_error.hpp"
#include "quorl/runtime/types.hpp"

namespace quorl::internal {

/// A Double holds the powers of ten up to here exactly, and so each is ten times the one before.
inline constexpr int kHighestExactPower = 22;
inline constexpr auto kExactPowers = [] {
  std::array<Double, kHighestExactPower + 1> powers{1};
  for (std::size_t i = 1; i < powers.size(); ++i) powers[i] = powers[i - 1] * 10;
  return powers;
}();

/// `PowerOfTen`, at once for the powers that a Double holds exactly.
inline Double QuickPowerOfTen(int exponent) {
  if (exponent < 0 || exponent > kHighestExactPower) return PowerOfTen(exponent);
  return kExactPowers[static_cast<std::size_t>(exponent)];
}

/// `TruncateToInt32`; a conversion within the range truncates by itself.
inline Int32 QuickTruncateToInt32(Double value) {
  // Written so that NaN fails it.
  if (!(value > -2147483649.0 && value < 2147483648.0)) Raise(FailureNumber::kOverflow);
  return static_cast<Int32>(value);
}

}  // namespace quorl::internal
