// Eight code units compared at once, in the vector registers that every processor of a kind has
// (SSE2, NEON). Written with the vector types of the compiler, which takes them apart itself where
// a processor has no such registers.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

#include "quorl/runtime/types.hpp"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace quorl::internal {

/// Eight neighbouring units, each in a lane of its own. `==` and `&` work lane by lane; of a
/// comparison a lane is all ones where it holds, else 0.
using UnitBlock [[gnu::vector_size(16)]] = std::uint16_t;
inline constexpr std::size_t kBlockUnits = 8;

/// The eight units at `units`, and a block of eight times the same one.
inline UnitBlock BlockAt(const char16_t* units) noexcept {
  UnitBlock block;
  std::memcpy(&block, units, sizeof block);
  return block;
}
inline UnitBlock BlockOf(char16_t unit) noexcept {
  return UnitBlock{} + static_cast<std::uint16_t>(unit);
}

/// The lanes in which a comparison holds, as bits of one number, the first lane lowest.
class Lanes {
 public:
  Lanes() noexcept = default;
  explicit Lanes(UnitBlock holds) noexcept {
#ifdef __SSE2__
    // The one instruction for this, which the compilers do not find by themselves.
    bits_ = static_cast<Bits>(_mm_movemask_epi8(reinterpret_cast<__m128i>(holds)));
#else
    using Bytes [[gnu::vector_size(8)]] = std::uint8_t;
    bits_ = std::bit_cast<Bits>(__builtin_convertvector(holds, Bytes));
    if constexpr (std::endian::native == std::endian::big) bits_ = __builtin_bswap64(bits_);
#endif
  }

  bool IsEmpty() const noexcept { return bits_ == 0; }
  std::size_t First() const noexcept {
    return static_cast<std::size_t>(std::countr_zero(bits_)) / kBitsOfLane;
  }
  /// Only the last `count` lanes, at least one, as if the block began with them.
  Lanes Last(std::size_t count) const noexcept {
    Lanes last;
    last.bits_ = bits_ >> ((kBlockUnits - count) * kBitsOfLane);
    return last;
  }

 private:
#ifdef __SSE2__
  using Bits = std::uint32_t;
  static constexpr std::size_t kBitsOfLane = 2;
#else
  using Bits = std::uint64_t;
  static constexpr std::size_t kBitsOfLane = 8;
#endif
  Bits bits_ = 0;
};

}  // namespace quorl::internal
