// ICU's spell-out rules with one formatter for all amounts: whole part and hundredths, the names
// appended.
#include <unicode/rbnf.h>

#include <cstdlib>
#include <memory>

#include "bench/money/inputs.hpp"

namespace {

using namespace quorl::bench;
using icu::RuleBasedNumberFormat;
using icu::UnicodeString;

auto SpellOutIn(const Language& language) {
  UErrorCode status = U_ZERO_ERROR;
  auto rules = std::make_shared<const RuleBasedNumberFormat>(icu::URBNF_SPELLOUT,
                                                             icu::Locale(language.locale), status);
  if (U_FAILURE(status) != 0) std::abort();
  return [rules](std::int64_t units) {
    UnicodeString text;
    rules->format(units / 10000, text).append(u" euros ", 7);
    rules->format(units % 10000 / 100, text).append(u" cents", 6);
    return text;
  };
}

const AtStart rows([] {
  for (const Language& language : kLanguages) {
    Measure(ToTextOf(kInvoices, language), "ICU", Invoices, SpellOutIn(language));
    Measure(ToTextOf(kAllSizes, language), "ICU", AllSizes, SpellOutIn(language));
  }
});

}  // namespace
