#include "quorl/runtime/text_case.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

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

String LowerCase(StringView text) {
  String lowered = CopyOf(text);
  MakeLowerCase(lowered);
  return lowered;
}

void MakeLowerCase(String& text) noexcept {
  std::ranges::transform(text, text.begin(), [](char16_t unit) { return LowerCase(unit); });
}

}  // namespace quorl
