// The entry of libFuzzer; its corpus is any bytes. Built with clang and -D QUORL_FUZZ=ON:
//
//   build/fuzz/tests/invoke_fuzzer -max_len=4096 -max_total_time=60
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "tests/support/invoke_fuzz.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  quorl::FuzzInvoke({data, size});
  if (testing::Test::HasFailure()) std::abort();
  return 0;
}
