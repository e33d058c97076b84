// Seeded random inputs: the same on every machine and in every run.
#pragma once

#include <cstdint>
#include <random>

#include "quorl/runtime/types.hpp"

namespace quorl {

/// The standard fixes this engine's numbers; its distributions differ between libraries, so draws
/// are made by hand.
class Random {
 public:
  explicit Random(std::uint64_t seed) : engine_(seed) {}

  std::uint64_t Bits() { return engine_(); }
  /// From `least` to `most`, both included.
  std::int64_t Whole(std::int64_t least, std::int64_t most) {
    const std::uint64_t span = static_cast<std::uint64_t>(most) - static_cast<std::uint64_t>(least);
    const std::uint64_t drawn = span == ~std::uint64_t{0} ? Bits() : Bits() % (span + 1);
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(least) + drawn);
  }
  /// Up to `longest` units, each from `alphabet`.
  String Text(StringView alphabet, std::int64_t longest) {
    String text(static_cast<std::size_t>(Whole(0, longest)), u'\0');
    for (char16_t& unit : text) unit = alphabet[Bits() % alphabet.size()];
    return text;
  }

 private:
  std::mt19937_64 engine_;
};

}  // namespace quorl
