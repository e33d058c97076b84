// Calls by name made of seeded random bytes. The same driver serves libFuzzer: see
// tests/fuzz/invoke_fuzzer.cpp.
#include <gtest/gtest.h>

#include "tests/support/invoke_fuzz.hpp"
#include "tests/support/store_content.hpp"

namespace quorl {
namespace {

TEST(InvokeFuzz, RandomCallsNeitherCrashNorLeak) {
  const unsigned rounds = LongSweeps() ? 400000 : 40000;
  for (unsigned seed = 0; seed < rounds; ++seed) {
    Random random(seed);
    std::vector<std::uint8_t> bytes(800);
    std::ranges::generate(bytes, [&] { return static_cast<std::uint8_t>(random.Bits()); });
    FuzzInvoke(bytes);
    ASSERT_FALSE(HasFailure()) << "seed " << seed;
  }
}

}  // namespace
}  // namespace quorl
