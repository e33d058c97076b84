// Where one text stands in another, and how often a unit does. Places count code units from 0.
#pragma once

#include <optional>

#include "quorl/runtime/internal/unit_block.hpp"
#include "quorl/runtime/types.hpp"

namespace quorl::internal {

/// The lowest place at or after `from` at which `unit` stands, or npos.
inline std::size_t FindUnit(StringView text, char16_t unit, std::size_t from) noexcept {
  for (; from + kBlockUnits <= text.size(); from += kBlockUnits) {
    const Lanes lanes(BlockAt(text.data() + from) == BlockOf(unit));
    if (!lanes.IsEmpty()) return from + lanes.First();
  }
  return text.find(unit, from);
}

/// How often `unit` stands in `text`.
QUORL_API std::size_t CountOf(StringView text, char16_t unit) noexcept;

/// Finds the places of one text in another from left to right. Where each call goes on behind the
/// text that the one before found, the time of all calls together grows with the sum of both
/// lengths, whatever the texts. No memory is asked for.
class Search {
 public:
  /// Both texts are lent until the search ends; `sought` is not empty.
  Search(StringView text, StringView sought) noexcept
      : text_(text), sought_(sought), head_(sought.substr(0, kHeadUnits)) {}

  /// The lowest place at or after `from` at which `sought` stands whole, or npos. `from` is never
  /// before that of a former call or a place that was found; after npos it is the text's length or
  /// more.
  std::size_t Next(std::size_t from) noexcept {
    if (sought_.size() == 1) return FindUnit(text_, sought_.front(), from);
    return sought_.size() <= kHeadUnits ? NextOfHead(from) : NextOfLong(from);
  }

 private:
  // As many units are compared in all places of a block at once; of a longer text the rest is
  // compared in the places that are left.
  static constexpr std::size_t kHeadUnits = 16;

  // Where a text is cut in two, and the period of the whole: see the two-way search.
  struct Cut {
    std::size_t at;
    std::size_t period;
    bool repeats;
  };

  static Cut CutOf(StringView sought) noexcept;
  QUORL_API std::size_t NextOfHead(std::size_t from) noexcept;
  QUORL_API std::size_t NextOfLong(std::size_t from) noexcept;
  std::size_t NextTwoWay(std::size_t from) const noexcept;

  StringView text_;
  StringView sought_;
  StringView head_;
  // The places of the head in the last block that was compared, and where that ends.
  Lanes lanes_;
  std::size_t block_end_ = 0;
  // What places of the head without the rest may have cost.
  std::size_t spent_ = 0;
  std::optional<Cut> cut_;
};

}  // namespace quorl::internal
