#include "bench/numbers/inputs.hpp"
#include "quorl/numeric/math.hpp"

namespace {

using namespace quorl;
using namespace quorl::bench;

std::vector<Variant> PricesInVariants() {
  return Turned(Prices(), [](double price) { return Variant(price); });
}

const AtStart rows([] {
  const auto fix_round = [](double price) { return Math::FixRound(price, 2); };
  Measure(kFixRound, "Quorl", Prices, fix_round);
  Measure(kStdRound, "Quorl", PricesInVariants,
          [](const Variant& price) { return Math::StdRound(price, 2); });
  CountWrong("Quorl", fix_round);
  for (const std::size_t decimals : {0U, 3U, 9U}) {
    Measure("FixRound, N decimals", AtSize("Quorl", decimals), Prices,
            [=](double price) { return Math::FixRound(price, static_cast<Int16>(decimals)); });
  }
});

}  // namespace
