// Prices with three decimals, to be rounded to two. One in ten is a tie.
#pragma once

#include <cmath>
#include <cstdint>
#include <vector>

#include "bench/measure.hpp"

namespace quorl::bench {

using Thousandths = std::vector<std::int64_t>;
inline Thousandths PricesInThousandths() {
  return Seeded::List(2, [](Seeded& seeded) { return seeded.Whole(-99'999, 999'999); });
}
inline double PriceOf(std::int64_t thousandths) { return static_cast<double>(thousandths) / 1000; }
inline std::vector<double> Prices() { return Turned(PricesInThousandths(), PriceOf); }

inline constexpr const char* kFixRound = "FixRound, 2 decimals";
inline constexpr const char* kStdRound = "StdRound of a Double Variant, 2 decimals";

/// Registers how many of the prices `round` gives another number than the decimal digits do, with
/// a tie away from zero.
template <class Round>
void CountWrong(const char* who, Round round) {
  const auto count = [=](benchmark::State& state) {
    std::int64_t wrong = 0;
    for (auto _ : state) {
      for (const std::int64_t price : PricesInThousandths()) {
        const std::int64_t hundredths = (price + (price < 0 ? -5 : 5)) / 10;
        wrong += round(PriceOf(price)) != static_cast<double>(hundredths) / 100 ? 1 : 0;
      }
    }
    state.counters["wrong of 1,000"] = static_cast<double>(wrong);
  };
  Row("Rounding to 2 decimals", who, count, 1);
}

}  // namespace quorl::bench
