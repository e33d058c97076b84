#include "quorl/money/internal/number_to_text.hpp"

#include <algorithm>

#include "quorl/runtime/raised_error.hpp"

namespace quorl::internal {

namespace {

using Words = const LanguageWords&;

char16_t* BelowHundred(char16_t* out, Words words, const Slot& slot, Int16 kind) {
  out = slot.CopyTo(out);
  if (!slot.before_one) return out;
  if (kind < 0) Raise(FailureNumber::kSubscriptOutOfRange);
  return words.one[static_cast<std::size_t>(std::min<Int16>(kind, 2))].CopyTo(out);
}

// A number below a thousand, nothing for 0.
char16_t* Group(char16_t* out, Words words, std::uint64_t number, Int16 kind) {
  const std::uint64_t hundreds = number / 100, rest = number % 100;
  out = (rest == 0 ? words.hundreds : words.hundreds_before_more)[hundreds].CopyTo(out);
  return BelowHundred(out, words, words.below_hundred[rest], kind);
}

char16_t* GroupBeforeThousand(char16_t* out, Words words, std::uint64_t number) {
  const std::uint64_t hundreds = number / 100, rest = number % 100;
  out = (rest == 0 ? words.hundreds_before_thousand : words.hundreds_before_more)[hundreds].CopyTo(
      out);
  return BelowHundred(out, words,
                      number == 80 ? words.eighty_before_thousand : words.below_hundred[rest], 0);
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
    out = GroupBeforeThousand(out, words, head);
  } else if constexpr (level == kBillions) {
    out = NumberToText(out, words, head, 0);  // which may have scale words of its own
  } else {
    out = Group(out, words, head, 0);
  }
  return (number == 0 ? words.scale : words.scale_before_more)[level].CopyTo(out);
}

// The seven groups of digits of the longest number have hundreds, what is below them, the word for
// one and a scale word each, and the last place may be written behind the last word.
static_assert((7 * 4 + 1) * Slot::kRoom <= kRoomForWords);

}  // namespace

char16_t* NumberToText(char16_t* out, const LanguageWords& words, std::uint64_t number,
                       Int16 kind) {
  if (number == 0) return words.zero.CopyTo(out);
  if (number >= 100 && !words.has_kind_behind_hundreds) kind = 0;
  if (number >= 1'000'000) {
    out = TakeScale<kBillions, 1'000'000'000'000>(out, words, number);
    out = TakeScale<kMilliards, 1'000'000'000>(out, words, number);
    out = TakeScale<kMillions, 1'000'000>(out, words, number);
  }
  out = TakeScale<kThousands, 1'000>(out, words, number);
  return Group(out, words, number, kind);
}

}  // namespace quorl::internal
