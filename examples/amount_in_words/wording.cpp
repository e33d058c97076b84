#include "examples/amount_in_words/wording.hpp"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "examples/amount_in_words/amount.hpp"
#include "quorl/runtime/number_text.hpp"

namespace amounts {

using quorl::Currency;
using quorl::Money;
using quorl::String;
using quorl::StringView;

Wording WordingOf(const Names& names, const Language& language) {
  Money money;
  money.Unit = names.unit;
  money.Units = names.units;
  money.SubUnit = names.sub_unit;
  money.SubUnits = names.sub_units;
  money.UnitKind = names.unit_kind;
  money.SubUnitKind = names.sub_unit_kind;
  money.SubUnitRow = names.decimals;
  money.Language = language.code;
  return {std::move(money), &language.locale, names.decimals == 0};
}

String WordsOf(const Wording& wording, Currency amount) {
  if (wording.whole_only && amount.TenThousandths() % Currency::kScale != 0) {
    throw Problem(messages::kWholeOnly());
  }
  return wording.money.ToText(amount);
}

const Wording& KnownWording(const Names& names) {
  static const std::vector<Wording> all = [] {
    std::vector<Wording> made;
    made.reserve(AllNames().size());
    for (const Names& each : AllNames()) {
      made.push_back(WordingOf(each, LanguageOf<Problem>(each.language)));
    }
    return made;
  }();
  return all[static_cast<std::size_t>(&names - AllNames().data())];
}

String FiguresOf(const Wording& wording, Currency amount) {
  constexpr std::array<StringView, kMostDecimals + 1> kFormats{
      u"#,##0.####", u"#,##0.0###", u"#,##0.00##", u"#,##0.000#", u"#,##0.0000"};
  const auto places = static_cast<std::size_t>(wording.money.SubUnitRow);
  const StringView format = kFormats[std::min(places, kMostDecimals)];
  return quorl::FormatNumber(amount, format, *wording.locale);
}

}  // namespace amounts
