#include "quorl/runtime/screen.hpp"

#include <atomic>
#include <bit>
#include <cstdint>

#include "quorl/runtime/convert.hpp"

namespace quorl {
namespace {

struct Size {
  Single width = 0;
  Single height = 0;
};

// Both lengths in one word, so that nobody reads the width of one size and the height of another.
constinit std::atomic<std::uint64_t> current{std::bit_cast<std::uint64_t>(Size{})};

Size CurrentSize() noexcept { return std::bit_cast<Size>(current.load()); }

}  // namespace

Single Screen::Width() noexcept { return CurrentSize().width; }
Single Screen::Height() noexcept { return CurrentSize().height; }

void Screen::SetSize(Double width, Double height) {
  current.store(std::bit_cast<std::uint64_t>(Size{ToSingle(width), ToSingle(height)}));
}

}  // namespace quorl
