#include "quorl/store/key_name.hpp"

#include <algorithm>

#include "quorl/store/internal/name_hash.hpp"

namespace quorl {
namespace {

bool HoldsZero(std::string_view text) noexcept { return text.find('\0') != text.npos; }

}  // namespace

std::strong_ordering CompareNames(std::string_view left, std::string_view right) noexcept {
  if (left == right) return std::strong_ordering::equal;
  const auto& folded = internal::FoldedBytes();
  const std::size_t shared = std::min(left.size(), right.size());
  for (std::size_t i = 0; i < shared; ++i) {
    if (left[i] == right[i]) continue;
    const auto order = folded[static_cast<unsigned char>(left[i])] <=>
                       folded[static_cast<unsigned char>(right[i])];
    if (std::is_neq(order)) return order;
  }
  return left.size() <=> right.size();
}

std::string_view TakeLevel(std::string_view& path) noexcept {
  const std::size_t start = path.find_first_not_of(kPathSeparator);
  if (start == path.npos) {
    path = {};
    return {};
  }
  const std::size_t end = std::min(path.find(kPathSeparator, start), path.size());
  const std::string_view level = path.substr(start, end - start);
  path.remove_prefix(end);
  return level;
}

bool IsKeyPath(std::string_view path) noexcept {
  if (HoldsZero(path)) return false;
  for (auto level = TakeLevel(path); !level.empty(); level = TakeLevel(path)) {
    if (level.size() > kLongestKeyName) return false;
  }
  return true;
}

bool IsValueName(std::string_view name) noexcept {
  return name.size() <= kLongestValueName && !HoldsZero(name);
}

}  // namespace quorl
