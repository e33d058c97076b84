#include "quorl/runtime/internal/text.hpp"

#include <algorithm>
#include <cstdint>
#include <functional>

#include "quorl/runtime/raised_error.hpp"

namespace quorl::internal {
namespace {

std::size_t CountedUnits(StringView text, std::int64_t count) {
  if (count < 0) Raise(FailureNumber::kInvalidArgument);
  return std::min(text.size(), static_cast<std::size_t>(count));
}

// Where a text is cut in two, and the period of its right part.
struct Cut {
  std::size_t at;
  std::size_t period;
};

// The suffix of `text` that comes last in the order of `before`.
template <class Order>
Cut LastSuffix(StringView text, Order before) {
  Cut last{0, 1};
  std::size_t next = 1;
  for (std::size_t equal = 0; next + equal < text.size();) {
    const char16_t unit = text[next + equal], other = text[last.at + equal];
    if (unit == other && ++equal < last.period) continue;
    if (unit == other) {
      next += last.period;
    } else if (before(unit, other)) {
      next += equal + 1;
      last.period = next - last.at;
    } else {
      last = {next, 1};
      ++next;
    }
    equal = 0;
  }
  return last;
}

// As the standard search, whose time grows with the product of both lengths, in a time that grows
// with their sum and without memory: the two-way search of Crochemore and Perrin. The right part is
// compared first; after a difference in it no match begins before that place less the cut. The cut
// is such that after a difference in the left part the search moves on by the period of the whole.
std::size_t FindTwoWay(StringView text, StringView sought, std::size_t from) {
  const Cut up = LastSuffix(sought, std::less<>());
  const Cut down = LastSuffix(sought, std::greater<>());
  auto [cut, period] = up.at > down.at ? up : down;
  const bool repeats = sought.substr(period).starts_with(sought.substr(0, cut));
  if (!repeats) period = std::max(cut, sought.size() - cut) + 1;
  // Of a text that repeats itself, a move by its period leaves all but the last one compared.
  const std::size_t compared_by_move = repeats ? sought.size() - period : 0;
  std::size_t compared = 0;
  while (from <= text.size() && sought.size() <= text.size() - from) {
    // Most places fail at the first unit, and the standard search for one unit is the fastest.
    if (text[from + cut] != sought[cut]) {
      from = std::min(text.find(sought[cut], from + cut), text.size()) - cut;
      compared = 0;
      continue;
    }
    std::size_t right = std::max(cut, compared);
    while (right < sought.size() && sought[right] == text[from + right]) ++right;
    if (right < sought.size()) {
      from += right - cut + 1;
      compared = 0;
      continue;
    }
    std::size_t left = cut;
    while (left > compared && sought[left - 1] == text[from + left - 1]) --left;
    if (left <= compared) return from;
    from += period;
    compared = compared_by_move;
  }
  return StringView::npos;
}

}  // namespace

std::int64_t Find(std::int64_t start, StringView text, StringView sought) {
  if (start < 1) Raise(FailureNumber::kInvalidArgument);
  // The standard search finds an empty text inside an empty one; here nothing is found in it.
  if (text.empty()) return 0;
  const auto from = static_cast<std::size_t>(start - 1);
  const std::size_t found =
      sought.size() < 2 ? text.find(sought, from) : FindTwoWay(text, sought, from);
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

}  // namespace quorl::internal
