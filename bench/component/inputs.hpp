// `Math.Min` of two whole numbers, called in four ways.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "bench/measure.hpp"

namespace quorl::bench {

inline constexpr const char* kByName = "Math.Min by name";
inline constexpr const char* kByIdentifier = "Math.Min by resolved identifier";
inline constexpr const char* kThroughTable = "Math.Min through the table";

inline std::vector<std::pair<std::int32_t, std::int32_t>> Pairs() {
  return Seeded::List(15, [](Seeded& seeded) {
    return std::pair(static_cast<std::int32_t>(seeded.Whole(-1000, 1000)),
                     static_cast<std::int32_t>(seeded.Whole(-1000, 1000)));
  });
}

}  // namespace quorl::bench
