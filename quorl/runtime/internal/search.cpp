#include "quorl/runtime/internal/search.hpp"

#include <algorithm>
#include <functional>

#include "quorl/runtime/internal/unit_block.hpp"

namespace quorl::internal {
namespace {

// How often the head may be found without the rest before that is held against the way made.
constexpr std::size_t kFailuresAllowed = 16;

struct Suffix {
  std::size_t at;
  std::size_t period;
};

// The suffix of `text` that comes last in the order of `before`, and its period.
template <class Order>
Suffix LastSuffix(StringView text, Order before) noexcept {
  Suffix last{0, 1};
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

// The lanes of the eight places from `units` on at which `head` stands whole.
Lanes PlacesOf(const char16_t* units, StringView head) noexcept {
  const std::size_t last = head.size() - 1;
  UnitBlock holds =
      (BlockAt(units) == BlockOf(head.front())) & (BlockAt(units + last) == BlockOf(head.back()));
  // Both ends together are rare in most texts, and what is between them is seldom looked at.
  if (Lanes(holds).IsEmpty()) return {};
  for (std::size_t i = 1; i < last; ++i) holds &= BlockAt(units + i) == BlockOf(head[i]);
  return Lanes(holds);
}

bool AreSame(const char16_t* units, StringView text) noexcept {
  return std::memcmp(units, text.data(), text.size() * sizeof(char16_t)) == 0;
}

}  // namespace

// The lowest place at or after `from` at which the head stands and the whole has room.
std::size_t Search::NextOfHead(std::size_t from) noexcept {
  if (sought_.size() > text_.size()) return StringView::npos;
  const std::size_t places = text_.size() - sought_.size() + 1;
  // With few places there is no whole block of them.
  if (places < kBlockUnits) {
    const std::size_t found = text_.find(head_, from);
    return found < places ? found : StringView::npos;
  }
  if (from < block_end_) {
    const Lanes left = lanes_.Last(block_end_ - from);
    if (!left.IsEmpty()) return from + left.First();
    from = block_end_;
  }
  const std::size_t last_block = places - kBlockUnits;
  const StringView head = head_;
  Lanes lanes;
  while (from < last_block && (lanes = PlacesOf(text_.data() + from, head)).IsEmpty()) {
    from += kBlockUnits;
  }
  if (from >= places) return StringView::npos;
  // The last block has places in common with the one before.
  const std::size_t block = std::min(from, last_block);
  lanes_ = lanes.IsEmpty() ? PlacesOf(text_.data() + block, head) : lanes;
  block_end_ = block + kBlockUnits;
  const Lanes left = lanes_.Last(block_end_ - from);
  return left.IsEmpty() ? StringView::npos : from + left.First();
}

// The head's places in which the rest stands too. Where heads without the rest abound, comparing
// each rest would make the time grow with the product of both lengths: the two-way search goes on
// there.
std::size_t Search::NextOfLong(std::size_t from) noexcept {
  const StringView rest = sought_.substr(kHeadUnits);
  while (!cut_) {
    const std::size_t found = NextOfHead(from);
    if (found == StringView::npos) return found;
    if (AreSame(text_.data() + found + kHeadUnits, rest)) return found;
    from = found + 1;
    spent_ += sought_.size();
    if (spent_ > from + kFailuresAllowed * sought_.size()) cut_ = CutOf(sought_);
  }
  return NextTwoWay(from);
}

// The two-way search of Crochemore and Perrin, in a time that grows with the sum of both lengths
// and without memory. The right part is compared first; after a difference in it no match begins
// before that place less the cut. The cut is such that after a difference in the left part the
// search moves on by the period of the whole.
std::size_t Search::NextTwoWay(std::size_t from) const noexcept {
  const auto [cut, period, repeats] = *cut_;
  // Of a text that repeats itself, a move by its period leaves all but the last one compared.
  const std::size_t compared_by_move = repeats ? sought_.size() - period : 0;
  std::size_t compared = 0;
  while (from <= text_.size() && sought_.size() <= text_.size() - from) {
    std::size_t right = std::max(cut, compared);
    while (right < sought_.size() && sought_[right] == text_[from + right]) ++right;
    if (right < sought_.size()) {
      from += right - cut + 1;
      compared = 0;
      continue;
    }
    std::size_t left = cut;
    while (left > compared && sought_[left - 1] == text_[from + left - 1]) --left;
    if (left <= compared) return from;
    from += period;
    compared = compared_by_move;
  }
  return StringView::npos;
}

Search::Cut Search::CutOf(StringView sought) noexcept {
  const Suffix up = LastSuffix(sought, std::less<>());
  const Suffix down = LastSuffix(sought, std::greater<>());
  const auto [at, period] = up.at > down.at ? up : down;
  const bool repeats = sought.substr(period).starts_with(sought.substr(0, at));
  return {at, repeats ? period : std::max(at, sought.size() - at) + 1, repeats};
}

std::size_t CountOf(StringView text, char16_t unit) noexcept {
  // Counted in parts, each in a counter as wide as a unit, so that the compiler compares and counts
  // whole vectors of them.
  constexpr std::size_t kPart = 0x8000;
  std::size_t total = 0;
  for (; !text.empty(); text.remove_prefix(std::min(text.size(), kPart))) {
    std::uint16_t count = 0;
    for (const char16_t other : text.substr(0, kPart)) {
      count = static_cast<std::uint16_t>(count + (other == unit ? 1 : 0));
    }
    total += count;
  }
  return total;
}

}  // namespace quorl::internal
