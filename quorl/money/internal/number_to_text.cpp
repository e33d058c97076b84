#include "quorl/money/internal/number_to_text.hpp"

#include <algorithm>

#include "quorl/money/internal/word_tables.hpp"
#include "quorl/runtime/internal/text.hpp"

namespace quorl::internal {

namespace {

constexpr StringView kHyphen = u"-";
constexpr StringView kOne = u"1";
constexpr Int16 kThousandLevel = 1;
constexpr Int16 kTopLevel = 4;

constexpr Int32 ValueOf(char16_t digit) noexcept { return digit - u'0'; }

// How a number of three digits or more is cut: the level of its highest scale word, the digits
// after it, and which of the two rows of joiners and thresholds holds.
struct Scale {
  Int16 level;
  std::size_t tail_length;
  Int32 size_class;
};

Scale ScaleOf(std::size_t digits) noexcept {
  const auto level =
      static_cast<Int16>(std::min<std::size_t>((digits - 1) / 3, std::size_t{kTopLevel}));
  return {level, level == 0 ? std::size_t{2} : std::size_t{3} * static_cast<std::size_t>(level),
          level < 2 ? 0 : 1};
}

// Writes one number after what was written so far.
class Writer {
 public:
  Writer(char16_t* out, Int32 base) noexcept : out_(out), base_(base) {}

  void Number(StringView digits, Int16 level, Int16 kind) {
    digits = TrimLeading(digits, u'0');
    if (digits.empty()) {
      Put(Row(kZeroRow));
    } else if (digits.size() > 2) {
      Scaled(digits, level, kind);
    } else if (digits.size() == 1 || digits[0] == u'1') {
      BelowTwenty(digits, kind);
    } else {
      BelowHundred(digits, level, kind);
    }
  }

  char16_t* End() const noexcept { return out_; }

 private:
  StringView Row(Int32 row) const noexcept { return LoadWordRow(base_ + row); }
  void Put(StringView piece) noexcept { out_ = std::copy(piece.begin(), piece.end(), out_); }

  void BelowTwenty(StringView digits, Int16 kind) {
    if (digits == kOne) return One(kind);
    const Int32 tens = digits.size() == 2 ? 10 : 0;
    Put(Alternative(Row(tens + ValueOf(digits.back())), 0));
  }

  void One(Int16 kind) {
    const StringView row = Row(kOneRow);
    Put(Alternative(row, std::min<Int32>(kind, LastAlternative(row))));
  }

  void BelowHundred(StringView digits, Int16 level, Int16 kind) {
    const StringView tens = Row(kTensRow + ValueOf(digits[0]));
    const StringView unit = digits.substr(1);
    if (unit == u"0") {
      const bool plural = base_ == kFrenchWords && digits == u"80" && level != kThousandLevel;
      Put(Alternative(tens, plural ? 1 : 0));
    } else if (base_ == kFrenchWords || base_ == kEnglishWords) {
      TensThenUnit(Alternative(tens, 0), digits, kind);
    } else {
      UnitThenTens(Alternative(tens, 0), unit);
    }
  }

  void TensThenUnit(StringView tens, StringView digits, Int16 kind) {
    Put(tens);
    Put(kHyphen);
    if (base_ == kFrenchWords && digits[1] == u'1' && digits[0] != u'8') {
      Put(Alternative(Row(kJoiningRow), 0));
      Put(kHyphen);
    }
    BelowTwenty(digits.substr(1), kind);
  }

  // "eenentwintig", "tweeëntwintig", "einundzwanzig".
  void UnitThenTens(StringView tens, StringView unit) {
    const bool dutch = base_ == kDutchWords;
    BelowTwenty(unit, dutch ? 0 : 1);
    const bool after_vowel = dutch && (unit == u"2" || unit == u"3");
    Put(Alternative(Row(kJoiningRow), after_vowel ? 1 : 0));
    Put(tens);
  }

  // The head stands before the highest scale word, the tail after it.
  void Scaled(StringView digits, Int16 level, Int16 kind) {
    const Scale scale = ScaleOf(digits.size());
    const StringView head = digits.substr(0, digits.size() - scale.tail_length);
    const StringView tail = digits.substr(head.size());
    Multiplier(head, scale);
    ScaleWord(head, tail, scale, level);
    Remainder(tail, scale, base_ == kGermanWords ? Int16{0} : kind);
  }

  void Multiplier(StringView head, const Scale& scale) {
    const StringView threshold = Row(kThresholdRow + scale.size_class);
    if (head.size() == 1 && head < threshold) return;
    Number(head, scale.level, base_ == kGermanWords ? 2 : 0);
    Put(Joiner(Row(kMultiplierJoinerRow + scale.size_class)));
  }

  void ScaleWord(StringView head, StringView tail, const Scale& scale, Int16 level) {
    bool plural = head != kOne;
    if (scale.level == 0) plural = plural && IsZero(tail) && level != kThousandLevel;
    Put(Alternative(Row(kHundredRow + scale.level), plural ? 1 : 0));
  }

  void Remainder(StringView tail, const Scale& scale, Int16 kind) {
    if (IsZero(tail)) return;
    Put(Joiner(Row(kRemainderJoinerRow + scale.size_class)));
    Number(tail, 0, kind);
  }

  static bool IsZero(StringView digits) noexcept { return TrimLeading(digits, u'0').empty(); }

  char16_t* out_;
  Int32 base_;
};

constexpr std::size_t LongestRow(Int32 base, Int32 first, Int32 last) {
  std::size_t longest = 0;
  for (Int32 row = first; row <= last; ++row) {
    longest = std::max(longest, LoadWordRow(base + row).size());
  }
  return longest;
}

// Hundreds, tens and unit, then a scale word, and a joiner on either side of both scale words. A
// group of three digits stands before one scale word at most.
constexpr std::size_t LongestGroup(Int32 base) {
  const std::size_t word = LongestRow(base, 1, 19);
  const std::size_t joiners = LongestRow(base, kMultiplierJoinerRow, kRemainderJoinerRow - 1) +
                              LongestRow(base, kRemainderJoinerRow, kThresholdRow - 1);
  const std::size_t tens =
      LongestRow(base, 20, 27) + LoadWordRow(base + kJoiningRow).size() + 2 * kHyphen.size() + word;
  return word + LoadWordRow(base + kHundredRow).size() + joiners + tens +
         LongestRow(base, kHundredRow + 1, kJoiningRow - 1) + joiners;
}

static_assert(LongestGroup(kFrenchWords) <= LongestWords(0));
static_assert(LongestGroup(kEnglishWords) <= LongestWords(0));
static_assert(LongestGroup(kDutchWords) <= LongestWords(0));
static_assert(LongestGroup(kGermanWords) <= LongestWords(0));

}  // namespace

char16_t* NumberToText(char16_t* out, Int32 language_base, StringView digits, Int16 scale_level,
                       Int16 kind) {
  Writer writer(out, language_base);
  writer.Number(digits, scale_level, kind);
  return writer.End();
}

}  // namespace quorl::internal
