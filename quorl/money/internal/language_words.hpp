// The words of a language, put together from the rows of word_tables.hpp when the library is
// compiled: what is left to do for a number is to copy them one behind another.
//
// Constant data, usable from any thread. For the copying see number_to_text.hpp.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "quorl/money/internal/word_tables.hpp"
#include "quorl/runtime/types.hpp"

namespace quorl::internal {

/// Words in a place of one size for all, so that copying them is a few moves, whatever their
/// length.
class Slot {
 public:
  static constexpr std::size_t kRoom = 19;

  /// For the compiler alone: what does not fit does not compile.
  constexpr void Add(StringView piece) {
    for (const char16_t unit : piece) text_[length_++] = unit;
  }

  /// Writes all `kRoom` units of the place; the end of the words comes back.
  char16_t* CopyTo(char16_t* out) const noexcept {
    std::memcpy(out, text_.data(), sizeof text_);
    return out + length_;
  }

  /// Whether a form of one that is asked for is among these words.
  bool takes_kind = false;

 private:
  std::uint8_t length_ = 0;
  std::array<char16_t, kRoom> text_{};
};

/// The scale words from the thousand on.
enum ScaleLevel : std::size_t { kThousands = 1, kMillions, kMilliards, kBillions };

struct LanguageWords {
  /// By the form of a final one, then by number.
  std::array<std::array<Slot, 100>, 3> below_hundred;
  /// 80 has a form of its own before the thousand.
  Slot eighty_before_thousand;
  /// A digit and the hundred, nothing for 0: with nothing behind them, before more of the same
  /// number, before the thousand.
  std::array<Slot, 10> hundreds, hundreds_before_more, hundreds_before_thousand;
  /// By level: a scale word of several, with nothing behind it and with more.
  std::array<Slot, kBillions + 1> scale, scale_before_more;
  /// The same of one, which stands in front where the language writes it.
  std::array<Slot, kBillions + 1> one_scale, one_scale_before_more;
  /// Whether a final one of several words has the form that is asked for.
  bool has_kind_behind_hundreds;
  /// With a blank behind it.
  Slot minus;
  /// What stands before the name of a unit of which there are whole millions, by whether it begins
  /// with a vowel.
  std::array<Slot, 2> link;
};

/// By language, in the order of the blocks of word_tables.hpp.
extern const std::array<LanguageWords, kWordBlocks> kLanguageWords;

/// The words of the block that begins at `language_base`, one of the four.
inline const LanguageWords& WordsOf(Int32 language_base) noexcept {
  return kLanguageWords[static_cast<std::size_t>(language_base / 1000 - 1)];
}

}  // namespace quorl::internal
