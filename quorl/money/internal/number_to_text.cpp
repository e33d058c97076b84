#include "quorl/money/internal/number_to_text.hpp"

namespace quorl::internal {

namespace {

using Words = const LanguageWords&;

// A number below a thousand, nothing for 0.
char16_t* Group(char16_t* out, Words words, std::uint32_t number, Int16 kind) {
  const std::uint32_t hundreds = number / 100, rest = number % 100;
  if (rest == 0) return words.hundreds[hundreds].CopyTo(out);
  out = words.hundreds_before_more[hundreds].CopyTo(out);
  return LastOf(words, rest, kind).CopyTo(out);
}

char16_t* GroupBeforeThousand(char16_t* out, Words words, std::uint32_t number) {
  if (number == 80) return words.eighty_before_thousand.CopyTo(out);
  if (number % 100 == 0) return words.hundreds_before_thousand[number / 100].CopyTo(out);
  return Group(out, words, number, 0);
}

// Writes the multiplier of a scale word and the word, and leaves the rest of `number`.
template <ScaleLevel level, std::uint64_t scale>
char16_t* TakeScale(char16_t* out, Words words, std::uint64_t& number) {
  if (number < scale) return out;
  const std::uint64_t head = number / scale;
  number %= scale;
  if (head == 1) {
    return (number == 0 ? words.one_scale : words.one_scale_before_more)[level].CopyTo(out);
  }
  if constexpr (level == kThousands) {
    out = GroupBeforeThousand(out, words, static_cast<std::uint32_t>(head));
  } else if constexpr (level == kBillions) {
    out = NumberToText(out, words, head, 0);  // which may have scale words of its own
  } else {
    out = Group(out, words, static_cast<std::uint32_t>(head), 0);
  }
  return (number == 0 ? words.scale : words.scale_before_more)[level].CopyTo(out);
}

// The seven groups of digits of the longest number have hundreds, what is below them and a scale
// word each, and the last place may be written behind the last word.
static_assert((7 * 3 + 1) * Slot::kRoom <= kRoomForWords);

}  // namespace

char16_t* LargeNumberToText(char16_t* out, const LanguageWords& words, std::uint64_t number,
                            Int16 kind) {
  if (!words.has_kind_behind_hundreds) kind = 0;
  if (number >= 1'000'000) {
    out = TakeScale<kBillions, 1'000'000'000'000>(out, words, number);
    out = TakeScale<kMilliards, 1'000'000'000>(out, words, number);
    out = TakeScale<kMillions, 1'000'000>(out, words, number);
  }
  out = TakeScale<kThousands, 1'000>(out, words, number);
  return Group(out, words, static_cast<std::uint32_t>(number), kind);
}

}  // namespace quorl::internal
