#include "quorl/store/internal/random_number.hpp"

#include <unistd.h>

#include <chrono>

namespace quorl::internal {

std::uint64_t RandomNumber() noexcept {
  std::uint64_t number = 0;
  if (getentropy(&number, sizeof number) == 0) return number;
  const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
  return static_cast<std::uint64_t>(now) ^ reinterpret_cast<std::uintptr_t>(&number);
}

}  // namespace quorl::internal
