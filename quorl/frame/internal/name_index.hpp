// Members by name, in a time that does not grow with their number: an open hash table that the
// compiler makes from a class's rows.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "quorl/frame/internal/member_row.hpp"
#include "quorl/runtime/text_case.hpp"

namespace quorl::frame {

/// A slot of the table that holds no row's place.
inline constexpr std::uint8_t kNoRow = 0xFF;

/// LowerCase, with the letters of which names are made at hand.
constexpr char16_t FoldedUnit(char16_t unit) noexcept {
  if (unit >= 0x80) return LowerCase(unit);
  return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + (u'a' - u'A')) : unit;
}

/// EqualsIgnoringCase.
constexpr bool IsSameName(StringView left, StringView right) noexcept {
  return std::ranges::equal(left, right, [](char16_t one, char16_t other) {
    return one == other || FoldedUnit(one) == FoldedUnit(other);
  });
}

/// The same number for all spellings of a name. Its length and three of its units tell the names of
/// a class apart well enough; the comparison that follows looks at all.
constexpr std::size_t NameHash(StringView name) noexcept {
  if (name.empty()) return 0;
  const auto folded = [&](std::size_t place) -> std::size_t {
    const char16_t unit = name[place];
    return (unit < 0x80 ? unit : LowerCase(unit)) & 0x1F;  // the same in both cases of a letter
  };
  return name.size() + 3 * folded(0) + 5 * folded(name.size() / 2) + 7 * folded(name.size() - 1);
}

/// The table: the place of each name's first row, at its hash or in the next free slot after it.
template <std::size_t kCount>
constexpr auto NameIndexOf(const std::array<MemberRow, kCount>& members) {
  static_assert(kCount < kNoRow);
  std::array<std::uint8_t, std::bit_ceil(2 * kCount + 1)> slots{};
  slots.fill(kNoRow);
  for (std::size_t place = 0; place < kCount; ++place) {
    const bool is_first = place == 0 || members[place - 1].name != members[place].name;
    std::size_t slot = NameHash(members[place].name) % slots.size();
    while (is_first && slots[slot] != kNoRow) slot = (slot + 1) % slots.size();
    if (is_first) slots[slot] = static_cast<std::uint8_t>(place);
  }
  return slots;
}

}  // namespace quorl::frame
