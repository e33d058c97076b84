#include "quorl/runtime/text_case.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "quorl/runtime/internal/unit_block.hpp"
#include "quorl/runtime/internal/within_memory.hpp"

namespace quorl {

using namespace internal;
namespace {

#include "quorl/runtime/internal/case_table.inc"

constexpr std::size_t kPage = 256;

char16_t Mapped(char16_t unit, const auto& index, const auto& deltas) noexcept {
  const std::size_t page = index[unit / kPage];
  return static_cast<char16_t>(unit + deltas[page * kPage + unit % kPage]);
}

}  // namespace

char16_t LowerCase(char16_t unit) noexcept { return Mapped(unit, kLowerIndex, kLowerDeltas); }

char16_t UpperCase(char16_t unit) noexcept { return Mapped(unit, kUpperIndex, kUpperDeltas); }

bool EqualsIgnoringCase(StringView left, StringView right) noexcept {
  const auto lowered = [](char16_t unit) { return LowerCase(unit); };
  return std::ranges::equal(left, right, {}, lowered, lowered);
}

namespace {

// A block of units, most often of the first page. There the capitals are A to Z and, without the
// sign among them, À to Þ, each 32 below its small letter.
void LowerBlock(const char16_t* units, char16_t* lowered) noexcept {
  const UnitBlock block = BlockAt(units);
  if (!Lanes(block >= BlockOf(kPage)).IsEmpty()) {
    for (std::size_t i = 0; i < kBlockUnits; ++i) lowered[i] = LowerCase(units[i]);
    return;
  }
  const UnitBlock is_capital = (block - BlockOf(u'A') < BlockOf(26)) |
                               ((block - BlockOf(u'À') < BlockOf(31)) & (block != BlockOf(u'×')));
  const UnitBlock small = block + (is_capital & BlockOf(32));
  std::memcpy(lowered, &small, sizeof small);
}

// Into `lowered`, which has room for as many units, or is the text itself.
void LowerUnits(StringView text, char16_t* lowered) noexcept {
  if (text.size() < kBlockUnits) {
    for (const char16_t unit : text) *lowered++ = LowerCase(unit);
    return;
  }
  for (std::size_t at = 0; at < text.size(); at += kBlockUnits) {
    // The last block has units in common with the one before: small letters stay.
    const std::size_t block = std::min(at, text.size() - kBlockUnits);
    LowerBlock(text.data() + block, lowered + block);
  }
}

}  // namespace

String LowerCase(StringView text) {
  String lowered = WithinMemory([text] { return String(text.size(), u'\0'); });
  LowerUnits(text, lowered.data());
  return lowered;
}

}  // namespace quorl
