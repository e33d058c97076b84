#include "quorl/store/internal/counted_tree.hpp"

#include "quorl/store/internal/random_number.hpp"

namespace quorl::internal {

std::uint32_t DrawPriority() noexcept {
  // Nobody can foresee the numbers, and so nobody can choose names that unbalance a tree.
  thread_local std::uint64_t state = RandomNumber() | 1;
  state ^= state << 13;
  state ^= state >> 7;
  state ^= state << 17;
  return static_cast<std::uint32_t>(state >> 32);
}

}  // namespace quorl::internal
