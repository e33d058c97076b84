// A number that nobody can guess, from the system.
#pragma once

#include <cstdint>

namespace quorl::internal {

std::uint64_t RandomNumber() noexcept;

}  // namespace quorl::internal
