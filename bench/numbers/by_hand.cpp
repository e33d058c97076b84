// What a host writes without a library: fast, and wrong for 1.005.
#include <cmath>

#include "bench/numbers/inputs.hpp"

namespace {

using namespace quorl::bench;

const AtStart rows([] {
  const auto round = [](double price) { return std::round(price * 100) / 100; };
  for (const char* work : {kFixRound, kStdRound}) Measure(work, "std::round", Prices, round);
  CountWrong("std::round", round);
});

}  // namespace
