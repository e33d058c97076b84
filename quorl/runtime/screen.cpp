#include "quorl/runtime/screen.hpp"

#include "quorl/runtime/convert.hpp"

namespace quorl {
namespace {

struct Size {
  Single width = 0;
  Single height = 0;
};

Size& CurrentSize() noexcept {
  static Size size;
  return size;
}

}  // namespace

Single Screen::Width() noexcept { return CurrentSize().width; }
Single Screen::Height() noexcept { return CurrentSize().height; }

void Screen::SetSize(Double width, Double height) {
  CurrentSize() = Size{ToSingle(width), ToSingle(height)};
}

}  // namespace quorl
