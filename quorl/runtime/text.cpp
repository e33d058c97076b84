#include "quorl/runtime/text.hpp"

#include <algorithm>

#include "quorl/runtime/raised_error.hpp"

namespace quorl {
namespace {

std::size_t CountedUnits(StringView text, std::int64_t count) {
  if (count < 0) Raise(FailureNumber::kInvalidArgument);
  return std::min(text.size(), static_cast<std::size_t>(count));
}

}  // namespace

std::int64_t Find(std::int64_t start, StringView text, StringView sought) {
  if (start < 1) Raise(FailureNumber::kInvalidArgument);
  // The standard search finds an empty text inside an empty one; here nothing is found in it.
  if (text.empty()) return 0;
  const std::size_t found = text.find(sought, static_cast<std::size_t>(start - 1));
  return found == StringView::npos ? 0 : static_cast<std::int64_t>(found) + 1;
}

StringView Slice(StringView text, std::int64_t start, std::int64_t count) {
  return FirstOf(SliceFrom(text, start), count);
}

StringView SliceFrom(StringView text, std::int64_t start) {
  if (start < 1) Raise(FailureNumber::kInvalidArgument);
  return text.substr(CountedUnits(text, start - 1));
}

StringView FirstOf(StringView text, std::int64_t count) {
  return text.substr(0, CountedUnits(text, count));
}

StringView LastOf(StringView text, std::int64_t count) {
  return text.substr(text.size() - CountedUnits(text, count));
}

StringView TrimLeading(StringView text, char16_t unit) noexcept {
  const std::size_t kept = text.find_first_not_of(unit);
  return kept == StringView::npos ? StringView{} : text.substr(kept);
}

StringView TrimTrailing(StringView text, char16_t unit) noexcept {
  return text.substr(0, text.find_last_not_of(unit) + 1);
}

StringView Trim(StringView text) noexcept { return TrimTrailing(TrimLeading(text)); }

}  // namespace quorl
