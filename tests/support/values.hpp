// What tests of values stand on: texts in tables, failures, messages, random inputs, oracles.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <limits>

#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/locale.hpp"
#include "tests/support/cells.hpp"
#include "tests/support/print.hpp"
#include "tests/support/random.hpp"

namespace quorl {

/// The smallest late-bound object: a default member that holds a value.
class Holder : public LateBound {
 public:
  explicit Holder(Variant value) : value_(std::move(value)) {}
  Variant Get(StringView name, std::span<Variant> arguments) override {
    return name.empty() ? value_ : LateBound::Get(name, arguments);
  }

 private:
  Variant value_;
};

inline constexpr Double kNaN = std::numeric_limits<Double>::quiet_NaN();
inline constexpr Double kInfinity = std::numeric_limits<Double>::infinity();

// How thin a long sweep is under the sanitizers, which take their time.
#if defined(__SANITIZE_ADDRESS__)
inline constexpr int kSweepStep = 37;
#else
inline constexpr int kSweepStep = 1;
#endif

// The slow, obvious oracle for everything that rounds: decimal text, rounded digit by digit.

/// Every digit of the binary value: "0.1000000000000000055...", never an exponent.
inline std::string ExactText(Double value, int decimals = 1074) {
  char text[1500];
  std::snprintf(text, sizeof text, "%.*f", decimals, value);
  return text;
}

enum class Ties { kToEven, kAwayFromZero };

/// A text such as "-12.345", rounded to exactly `places` decimals.
inline std::string RoundedText(std::string number, std::size_t places, Ties ties) {
  if (number.find('.') == std::string::npos) number += '.';
  number += std::string(places + 1, '0');
  const std::size_t end = number.find('.') + 1 + places;
  const std::string rest = number.substr(end);
  number.resize(end);
  const bool above_half = rest > "5" && rest.find_first_not_of('0', 1) != std::string::npos;
  const bool tie = rest[0] == '5' && !above_half;
  if (number.back() == '.') number.pop_back();
  const bool odd = (number.back() - '0') % 2 != 0;
  if (!(tie ? odd || ties == Ties::kAwayFromZero : rest[0] >= '5')) return number;
  std::size_t at = number.size();
  while (at > 0 && (number[at - 1] == '9' || number[at - 1] == '.')) {
    if (number[--at] == '9') number[at] = '0';
  }
  if (at == 0 || number[at - 1] == '-') number.insert(at++, 1, '0');
  ++number[at - 1];
  return number;
}

}  // namespace quorl
