#include "quorl/runtime/internal/text.hpp"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "quorl/runtime/internal/within_memory.hpp"

namespace quorl::internal {
namespace {

std::size_t CountedUnits(StringView text, std::int64_t count) {
  if (count < 0) Raise(FailureNumber::kInvalidArgument);
  return std::min(text.size(), static_cast<std::size_t>(count));
}

// From this length on, the worst case of the standard search, the product of both lengths, becomes
// noticeable.
constexpr std::size_t kLongSought = 64;

// For each head of a text, how long the longest proper head is that also ends it.
std::vector<std::uint32_t> BordersOf(StringView text) {
  std::vector<std::uint32_t> borders(text.size());
  std::uint32_t border = 0;
  for (std::size_t i = 1; i < text.size(); ++i) {
    while (border > 0 && text[i] != text[border]) border = borders[border - 1];
    if (text[i] == text[border]) ++border;
    borders[i] = border;
  }
  return borders;
}

// As the standard search, but never looks back in `text`: the time grows with the sum of the
// lengths.
std::size_t FindLong(StringView text, StringView sought, std::size_t from) {
  const std::vector<std::uint32_t> borders = WithinMemory([&] { return BordersOf(sought); });
  std::size_t matched = 0;
  for (std::size_t i = from; i < text.size(); ++i) {
    while (matched > 0 && text[i] != sought[matched]) matched = borders[matched - 1];
    if (text[i] == sought[matched]) ++matched;
    if (matched == sought.size()) return i + 1 - matched;
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
      sought.size() < kLongSought ? text.find(sought, from) : FindLong(text, sought, from);
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
