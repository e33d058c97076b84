#include "quorl/money/money.hpp"

#include <algorithm>
#include <array>

#include "quorl/money/internal/number_to_text.hpp"
#include "quorl/money/internal/word_tables.hpp"
#include "quorl/runtime/arithmetic.hpp"
#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/internal/join.hpp"
#include "quorl/runtime/internal/text.hpp"
#include "quorl/runtime/internal/within_memory.hpp"
#include "quorl/text/strings.hpp"

namespace quorl {

using namespace internal;

namespace {

constexpr StringView kOneBlank = u" ";
constexpr StringView kNothing = u"";
constexpr std::int64_t kMillion = 1000000;
// 922337203685477, the highest whole part, and 2147483647, the highest count of sub-units.
constexpr std::size_t kWholeDigits = 15;
constexpr std::size_t kCountDigits = 10;

struct LanguageBlock {
  StringView code;
  Int32 base;
};

constexpr std::array kLanguages{
    LanguageBlock{u"FR", kFrenchWords},
    LanguageBlock{u"UK", kEnglishWords},
    LanguageBlock{u"NL", kDutchWords},
    LanguageBlock{u"DE", kGermanWords},
};

[[noreturn]] void RaiseUnknownLanguage(StringView language) {
  throw WithinMemory([&] {
    String description = u"La langue '";
    description.append(language).append(u"' n'est pas gérée par cet objet");
    return RaisedError(kFailedCheck, u"Quorl.Money", description);
  });
}

Int32 LanguageBase(StringView language) {
  for (const LanguageBlock& block : kLanguages) {
    if (block.code == language) return block.base;
  }
  RaiseUnknownLanguage(language);
}

struct SplitAmount {
  bool negative;
  std::int64_t whole;
  Int32 count;
};

SplitAmount Split(Currency amount, Int16 sub_unit_row) {
  if (amount == Currency::Lowest()) Raise(FailureNumber::kOverflow);
  const bool negative = amount < Currency();
  const std::int64_t units = (negative ? -amount : amount).TenThousandths();
  const Double fraction = ToDouble(Currency::FromTenThousandths(units % Currency::kScale));
  return {negative, units / Currency::kScale,
          TruncateToInt32(PowerOfTen(sub_unit_row) * fraction + 0.5)};
}

// The words of one number of at most `digits` digits, in storage of its own.
template <std::size_t digits>
class Words {
 public:
  Words(Int32 base, std::int64_t number, Int16 kind) {
    std::array<char16_t, digits> written;
    auto first = written.end();
    for (; number > 0; number /= 10) *--first = static_cast<char16_t>(u'0' + number % 10);
    end_ = WriteNumber(text_.data(), base, StringView(first, written.end()), 0, kind);
  }
  Words(const Words&) = delete;
  Words& operator=(const Words&) = delete;

  StringView View() const noexcept { return StringView(text_.data(), end_); }

 private:
  std::array<char16_t, LongestWords(digits)> text_;
  char16_t* end_;
};

// What stands between the words of the whole part and the unit's name.
StringView LinkTo(StringView name, Int32 base, std::int64_t whole) {
  if (name.empty()) return kNothing;
  if (whole == 0 || whole % kMillion != 0) return kOneBlank;
  const StringView links = LoadWordRow(base + kUnitLinkRow);
  return Alternative(links, Strings::IsVoyelle(name) ? std::min(1, LastAlternative(links)) : 0);
}

}  // namespace

String Money::ToText(Currency amount) const {
  const Int32 base = LanguageBase(Language);
  const SplitAmount split = Split(amount, SubUnitRow);
  const StringView minus = split.negative ? LoadWordRow(base + kMinusRow) : kNothing;
  const StringView gap = split.negative ? kOneBlank : kNothing;
  const Words<kWholeDigits> whole(base, split.whole, UnitKind);
  const StringView name = split.whole <= 1 ? Unit : Units;
  const StringView link = LinkTo(name, base, split.whole);
  // Either way the one allocation of an amount is that of its result.
  if (split.count == 0) return Joined({minus, gap, whole.View(), link, name});
  const Words<kCountDigits> count(base, split.count, SubUnitKind);
  // Blanks at the end are taken off behind sub-units only.
  const StringView sub_name = TrimTrailing(split.count <= 1 ? SubUnit : SubUnits);
  const StringView sub_gap = sub_name.empty() ? kNothing : kOneBlank;
  return Joined({minus, gap, whole.View(), link, name, kOneBlank, count.View(), sub_gap, sub_name});
}

}  // namespace quorl
