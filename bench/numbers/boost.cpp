// Decimal numbers of 50 digits, which hold the prices exactly.
#include <boost/multiprecision/cpp_dec_float.hpp>

#include "bench/numbers/inputs.hpp"

namespace {

using namespace quorl::bench;
using boost::multiprecision::cpp_dec_float_50;

const AtStart rows([] {
  const auto prices = [] {
    return Turned(PricesInThousandths(),
                  [](std::int64_t price) { return cpp_dec_float_50(price) / 1000; });
  };
  for (const char* work : {kFixRound, kStdRound}) {
    Measure(work, "cpp_dec_float_50", prices, [](const cpp_dec_float_50& price) {
      return cpp_dec_float_50(boost::multiprecision::round(price * 100) / 100);
    });
  }
});

}  // namespace
