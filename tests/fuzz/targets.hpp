// What is fed with arbitrary bytes: by libFuzzer (fuzzer.cpp), and in the ordinary run with the
// corpus that stands beside this file (replay.cpp). A target ends the process where a promise is
// broken.
#pragma once

#include <string_view>

namespace quorl {

struct FuzzTarget {
  std::string_view name;  ///< That of its folder in `corpus` too.
  void (*feed)(std::string_view bytes);
};

/// The target of that name; null for none.
const FuzzTarget* FindFuzzTarget(std::string_view name);

}  // namespace quorl
