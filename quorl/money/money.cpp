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
constexpr std::int64_t kMillion = 1000000;

struct LanguageBlock {
  char16_t first, second;
  Int32 base;
};

constexpr std::array kLanguages{
    LanguageBlock{u'F', u'R', kFrenchWords},
    LanguageBlock{u'U', u'K', kEnglishWords},
    LanguageBlock{u'N', u'L', kDutchWords},
    LanguageBlock{u'D', u'E', kGermanWords},
};

[[noreturn]] void RaiseUnknownLanguage(StringView language) {
  throw WithinMemory([&] {
    String description = u"La langue '";
    description.append(language).append(u"' n'est pas gérée par cet objet");
    return RaisedError(kFailedCheck, u"Quorl.Money", description);
  });
}

const LanguageWords& LanguageOf(StringView code) {
  if (code.size() == 2) {
    for (const LanguageBlock& block : kLanguages) {
      if (code[0] == block.first && code[1] == block.second) return WordsOf(block.base);
    }
  }
  RaiseUnknownLanguage(code);
}

// A size and a sign: 1.25 with hundredths is 1 unit and 25 sub-units.
struct AmountParts {
  bool is_negative;
  std::int64_t units;
  Int32 sub_units;
};

AmountParts PartsOf(Currency amount, Int16 sub_unit_row) {
  if (amount == Currency::Lowest()) Raise(FailureNumber::kOverflow);
  const bool is_negative = amount < Currency();
  const std::int64_t size = (is_negative ? -amount : amount).TenThousandths();
  const Double fraction = static_cast<Double>(size % Currency::kScale) / Currency::kScale;
  return {is_negative, size / Currency::kScale,
          QuickTruncateToInt32(QuickPowerOfTen(sub_unit_row) * fraction + 0.5)};
}

// Writes a text piece by piece to a place that has room for all of it.
class Writer {
 public:
  Writer(char16_t* out, const LanguageWords& words) noexcept : end_(out), words_(words) {}

  void Minus() noexcept { end_ = words_.minus.CopyTo(end_); }
  void Number(std::int64_t number, Int16 kind) {
    end_ = NumberToText(end_, words_, static_cast<std::uint64_t>(number), kind);
  }
  void Blank() noexcept { *end_++ = kBlank; }
  // What stands between a number and the name of its unit.
  void LinkTo(StringView name, std::int64_t number) {
    if (number == 0 || number % kMillion != 0) return Blank();
    end_ = words_.link[Strings::IsVoyelle(name) ? 1 : 0].CopyTo(end_);
  }
  // Names are short: a loop over them takes less time than a call.
  void Name(StringView name) noexcept {
    constexpr std::size_t kStep = 4;
    for (; name.size() >= kStep; name.remove_prefix(kStep)) {
      std::memcpy(end_, name.data(), kStep * sizeof(char16_t));
      end_ += kStep;
    }
    for (const char16_t unit : name) *end_++ = unit;
  }
  void TakeBlanksOff() noexcept {
    while (end_[-1] == kBlank) --end_;
  }

  char16_t* End() const noexcept { return end_; }

 private:
  char16_t* end_;
  const LanguageWords& words_;
};

// An amount as it is to be written.
struct Amount {
  const LanguageWords& words;
  AmountParts parts;
  StringView name, sub_name;
  Int16 kind, sub_kind;
};

inline char16_t* Write(const Amount& amount, char16_t* out) {
  Writer text(out, amount.words);
  if (amount.parts.is_negative) text.Minus();
  text.Number(amount.parts.units, amount.kind);
  if (!amount.name.empty()) {
    text.LinkTo(amount.name, amount.parts.units);
    text.Name(amount.name);
  }
  if (amount.parts.sub_units > 0) {
    text.Blank();
    text.Number(amount.parts.sub_units, amount.sub_kind);
    text.Blank();
    text.Name(amount.sub_name);
    text.TakeBlanksOff();
  }
  return text.End();
}

// Written where it stays.
String LongText(const Amount& amount) {
  const std::size_t names = amount.name.size() + amount.sub_name.size();
  String text = WithinMemory([&] { return String(kRoomBesideNames + names, kBlank); });
  text.resize(static_cast<std::size_t>(Write(amount, text.data()) - text.data()));
  return text;
}

}  // namespace

String Money::ToText(Currency value) const {
  const LanguageWords& words = LanguageOf(Language);
  const AmountParts parts = PartsOf(value, SubUnitRow);
  const Amount amount{words,
                      parts,
                      parts.units <= 1 ? Unit : Units,
                      parts.sub_units <= 1 ? SubUnit : SubUnits,
                      UnitKind,
                      SubUnitKind};
  // Either way the one allocation is that of the result.
  if (amount.name.size() + amount.sub_name.size() > kRoomForNames) return LongText(amount);
  std::array<char16_t, kRoomBesideNames + kRoomForNames> text;
  return CopyOf(StringView(text.data(), Write(amount, text.data())));
}

}  // namespace quorl
