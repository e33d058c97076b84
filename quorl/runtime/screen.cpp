#include "quorl/runtime/screen.hpp"

#include <atomic>

#include "quorl/runtime/convert.hpp"

namespace quorl {
namespace {

struct Size {
  Single width = 0;
  Single height = 0;
};

constinit std::atomic<Size> current{Size{}};
static_assert(decltype(current)::is_always_lock_free);

}  // namespace

Single Screen::Width() noexcept { return current.load().width; }
Single Screen::Height() noexcept { return current.load().height; }

void Screen::SetSize(Double width, Double height) {
  current.store(Size{ToSingle(width), ToSingle(height)});
}

}  // namespace quorl
