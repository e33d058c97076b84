#include "quorl/money/money.hpp"

#include <array>
#include <cstring>

#include "quorl/money/internal/language_words.hpp"
#include "quorl/money/internal/number_to_text.hpp"
#include "quorl/money/internal/word_tables.hpp"
#include "quorl/runtime/internal/exact.hpp"
#include "quorl/runtime/internal/text.hpp"
#include "quorl/runtime/internal/within_memory.hpp"
#include "quorl/text/strings.hpp"

namespace quorl {

using namespace internal;

namespace {

// Two numbers, the word for minus, the link and blanks; names of the usual length.
constexpr std::size_t kRoomBesideNames = 2 * kRoomForWords + 32;
constexpr std::size_t kRoomForNames = 128;
constexpr std::uint64_t kMillion = 1000000;

// A code of a language as a number, which takes less time to compare.
constexpr std::uint32_t NumberOf(StringView code) noexcept {
  return code.size() == 2 ? std::uint32_t{code[0]} << 16 | code[1] : 0;
}

[[noreturn]] void RaiseUnknownLanguage(StringView language) {
  throw WithinMemory([&] {
    String description = u"La langue '";
    description.append(language).append(u"' n'est pas gérée par cet objet");
    return RaisedError(kFailedCheck, u"Quorl.Money", description);
  });
}

const LanguageWords& LanguageOf(StringView code) {
  switch (NumberOf(code)) {
    case NumberOf(u"FR"):
      return WordsOf(kFrenchWords);
    case NumberOf(u"UK"):
      return WordsOf(kEnglishWords);
    case NumberOf(u"NL"):
      return WordsOf(kDutchWords);
    case NumberOf(u"DE"):
      return WordsOf(kGermanWords);
    default:
      RaiseUnknownLanguage(code);
  }
}

// A size and a sign: 1.25 with hundredths is 1 unit and 25 sub-units.
struct AmountParts {
  bool is_negative;
  std::uint64_t units;
  Int32 sub_units;
};

AmountParts PartsOf(Currency amount, Int16 sub_unit_row) {
  if (amount == Currency::Lowest()) Raise(FailureNumber::kOverflow);
  const std::int64_t count = amount.TenThousandths();
  // Division of what has no sign takes fewer instructions.
  const auto size = static_cast<std::uint64_t>(count < 0 ? -count : count);
  constexpr std::uint64_t kScale = Currency::kScale;
  const Double fraction = static_cast<Double>(static_cast<Int32>(size % kScale)) / kScale;
  return {count < 0, size / kScale,
          QuickTruncateToInt32(QuickPowerOfTen(sub_unit_row) * fraction + 0.5)};
}

// Writes a text piece by piece to a place that has room for all of it.
class Writer {
 public:
  Writer(char16_t* out, const LanguageWords& words) noexcept : end_(out), words_(words) {}

  void Minus() noexcept { end_ = words_.minus.CopyTo(end_); }
  void Number(std::uint64_t number, Int16 kind) { end_ = NumberToText(end_, words_, number, kind); }
  void Blank() noexcept { *end_++ = kBlank; }
  // What stands between a number and the name of its unit.
  void LinkTo(StringView name, std::uint64_t number) {
    if (number < kMillion || number % kMillion != 0) return Blank();
    end_ = words_.link[Strings::IsVoyelle(name) ? 1 : 0].CopyTo(end_);
  }
  // Most names are short: two moves, which may overlap, take less time than a call.
  void Name(StringView name) noexcept {
    if (name.size() > 16) {
      std::memcpy(end_, name.data(), name.size() * sizeof(char16_t));
    } else if (name.size() >= 8) {
      CopyEnds<8>(name);
    } else if (name.size() >= 4) {
      CopyEnds<4>(name);
    } else if (name.size() >= 2) {
      CopyEnds<2>(name);
    } else if (!name.empty()) {
      *end_ = name.front();
    }
    end_ += name.size();
  }
  void TakeBlanksOff() noexcept {
    while (end_[-1] == kBlank) --end_;
  }

  char16_t* End() const noexcept { return end_; }

 private:
  // The first and the last so many units of a name, which together are all of it.
  template <std::size_t units>
  void CopyEnds(StringView name) noexcept {
    const std::size_t last = name.size() - units;
    std::memcpy(end_, name.data(), units * sizeof(char16_t));
    std::memcpy(end_ + last, name.data() + last, units * sizeof(char16_t));
  }

  char16_t* end_;
  const LanguageWords& words_;
};

// Inline in each of its two places: with a call of it an amount takes 5 % longer.
[[gnu::always_inline]] inline char16_t* Write(const Money& money, const LanguageWords& words,
                                              const AmountParts& amount, char16_t* out) {
  Writer text(out, words);
  if (amount.is_negative) text.Minus();
  text.Number(amount.units, money.UnitKind);
  const StringView name = amount.units <= 1 ? money.Unit : money.Units;
  if (!name.empty()) {
    text.LinkTo(name, amount.units);
    text.Name(name);
  }
  if (amount.sub_units > 0) {
    text.Blank();
    text.Number(static_cast<std::uint64_t>(amount.sub_units), money.SubUnitKind);
    text.Blank();
    text.Name(amount.sub_units <= 1 ? money.SubUnit : money.SubUnits);
    text.TakeBlanksOff();
  }
  return text.End();
}

// Written where it stays.
String LongText(const Money& money, const LanguageWords& words, const AmountParts& amount,
                std::size_t names) {
  String text = WithinMemory([&] { return String(kRoomBesideNames + names, kBlank); });
  text.resize(static_cast<std::size_t>(Write(money, words, amount, text.data()) - text.data()));
  return text;
}

}  // namespace

String Money::ToText(Currency value) const {
  const LanguageWords& words = LanguageOf(Language);
  const AmountParts amount = PartsOf(value, SubUnitRow);
  const std::size_t names = Unit.size() + Units.size() + SubUnit.size() + SubUnits.size();
  // Either way the one allocation is that of the result.
  if (names > kRoomForNames) return LongText(*this, words, amount, names);
  std::array<char16_t, kRoomBesideNames + kRoomForNames> text;
  return CopyOf(StringView(text.data(), Write(*this, words, amount, text.data())));
}

}  // namespace quorl
