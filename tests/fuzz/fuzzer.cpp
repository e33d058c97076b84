// The entry of libFuzzer. QUORL_FUZZ_TARGET names the target; tests/fuzz/fuzz.sh feeds them all.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "tests/fuzz/targets.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const char* const name = std::getenv("QUORL_FUZZ_TARGET");
  static const auto* const target = quorl::FindFuzzTarget(name == nullptr ? "" : name);
  if (target == nullptr) {
    std::fputs("QUORL_FUZZ_TARGET names no target\n", stderr);
    std::exit(2);
  }
  target->feed({reinterpret_cast<const char*>(data), size});
  return 0;
}
