#include "quorl/money/money.hpp"

#include "bench/money/inputs.hpp"

namespace {

using namespace quorl;
using namespace quorl::bench;

Money EurosIn(const char16_t* language) {
  Money money;
  money.Unit = u"euro";
  money.Units = u"euros";
  money.SubUnit = u"cent";
  money.SubUnits = u"cents";
  money.SubUnitRow = 2;
  money.Language = language;
  return money;
}

auto ToTextIn(const Language& language) {
  return [money = EurosIn(language.code)](std::int64_t units) {
    return money.ToText(Currency::FromTenThousandths(units));
  };
}

// What no way of writing words can do without: an allocation, and the units moved.
void MeasureCopies(const char* amounts, const Language& language, Amounts (*make)()) {
  Measure(
      ToTextOf(amounts, language), "copy of the text",
      [=] { return Turned(make(), ToTextIn(language)); },
      [](const String& text) { return String(text); });
}

const AtStart rows([] {
  for (const Language& language : kLanguages) {
    Measure(ToTextOf(kInvoices, language), "Quorl", Invoices, ToTextIn(language));
    MeasureCopies(kInvoices, language, Invoices);
  }
  for (const Language& language : kLanguages) {
    Measure(ToTextOf(kAllSizes, language), "Quorl", AllSizes, ToTextIn(language));
    MeasureCopies(kAllSizes, language, AllSizes);
  }
  for (const std::size_t digits : {1U, 4U, 15U}) {
    const double high = 100 * std::pow(10.0, digits) - 100;
    Measure(
        "Money.ToText, amounts of N digits, French", AtSize("Quorl", digits),
        [=] { return AmountsBetween(high / 9, high); }, ToTextIn(kLanguages[0]));
  }
});

}  // namespace
