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
// 922337203685477 and 2147483647 are the most.
constexpr std::size_t kUnitDigits = 15;
constexpr std::size_t kSubUnitDigits = 10;

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
  const Double fraction = ToDouble(Currency::FromTenThousandths(size % Currency::kScale));
  return {is_negative, size / Currency::kScale,
          TruncateToInt32(PowerOfTen(sub_unit_row) * fraction + 0.5)};
}

// The words of one number of at most `digits` digits, in storage of its own.
template <std::size_t digits>
class NumberWords {
 public:
  NumberWords(Int32 base, std::int64_t number, Int16 kind) {
    std::array<char16_t, digits> written;
    auto first = written.end();
    for (; number > 0; number /= 10) *--first = static_cast<char16_t>(u'0' + number % 10);
    end_ = NumberToText(text_.data(), base, StringView(first, written.end()), 0, kind);
  }
  NumberWords(const NumberWords&) = delete;
  NumberWords& operator=(const NumberWords&) = delete;

  StringView View() const noexcept { return StringView(text_.data(), end_); }

 private:
  std::array<char16_t, LongestWords(digits)> text_;
  char16_t* end_;
};

// What stands between the words of the units and their name.
StringView LinkTo(StringView name, Int32 base, std::int64_t units) {
  if (name.empty()) return kNothing;
  if (units == 0 || units % kMillion != 0) return kOneBlank;
  const StringView links = LoadWordRow(base + kUnitLinkRow);
  return Alternative(links, Strings::IsVoyelle(name) ? std::min(1, LastAlternative(links)) : 0);
}

}  // namespace

String Money::ToText(Currency amount) const {
  const Int32 base = LanguageBase(Language);
  const AmountParts parts = PartsOf(amount, SubUnitRow);
  const StringView minus = parts.is_negative ? LoadWordRow(base + kMinusRow) : kNothing;
  const StringView gap = parts.is_negative ? kOneBlank : kNothing;
  const NumberWords<kUnitDigits> units(base, parts.units, UnitKind);
  const StringView name = parts.units <= 1 ? Unit : Units;
  const StringView link = LinkTo(name, base, parts.units);
  // Either way the one allocation of an amount is that of its result.
  if (parts.sub_units == 0) return Joined({minus, gap, units.View(), link, name});
  const NumberWords<kSubUnitDigits> sub_units(base, parts.sub_units, SubUnitKind);
  // Blanks at the end are taken off after sub-units only.
  const StringView sub_name = TrimTrailing(parts.sub_units <= 1 ? SubUnit : SubUnits);
  const StringView sub_gap = sub_name.empty() ? kNothing : kOneBlank;
  return Joined(
      {minus, gap, units.View(), link, name, kOneBlank, sub_units.View(), sub_gap, sub_name});
}

}  // namespace quorl
