#include "examples/amount_in_words/currencies.hpp"

#include <array>

namespace amounts {

namespace {

constexpr auto kNames = std::to_array<Names>({
    {u"EUR", u"FR", u"euro", u"euros", u"cent", u"cents", 2, 0, 0},
    {u"EUR", u"UK", u"euro", u"euros", u"cent", u"cents", 2, 0, 0},
    {u"EUR", u"NL", u"euro", u"euro", u"cent", u"cent", 2, 0, 0},
    {u"EUR", u"DE", u"Euro", u"Euro", u"Cent", u"Cent", 2, 1, 1},
    {u"CHF", u"FR", u"franc", u"francs", u"centime", u"centimes", 2, 0, 0},
    {u"CHF", u"UK", u"franc", u"francs", u"centime", u"centimes", 2, 0, 0},
    {u"CHF", u"NL", u"frank", u"frank", u"rappen", u"rappen", 2, 0, 0},
    {u"CHF", u"DE", u"Franken", u"Franken", u"Rappen", u"Rappen", 2, 1, 1},
    {u"GBP", u"FR", u"livre", u"livres", u"penny", u"pence", 2, 1, 0},
    {u"GBP", u"UK", u"pound", u"pounds", u"penny", u"pence", 2, 0, 0},
    {u"GBP", u"NL", u"pond", u"pond", u"penny", u"pence", 2, 0, 0},
    {u"GBP", u"DE", u"Pfund", u"Pfund", u"Penny", u"Pence", 2, 1, 1},
    {u"USD", u"FR", u"dollar", u"dollars", u"cent", u"cents", 2, 0, 0},
    {u"USD", u"UK", u"dollar", u"dollars", u"cent", u"cents", 2, 0, 0},
    {u"USD", u"NL", u"dollar", u"dollar", u"cent", u"cent", 2, 0, 0},
    {u"USD", u"DE", u"Dollar", u"Dollar", u"Cent", u"Cent", 2, 1, 1},
    {u"JPY", u"FR", u"yen", u"yens", u"", u"", 0, 0, 0},
    {u"JPY", u"UK", u"yen", u"yen", u"", u"", 0, 0, 0},
    {u"JPY", u"NL", u"yen", u"yen", u"", u"", 0, 0, 0},
    {u"JPY", u"DE", u"Yen", u"Yen", u"", u"", 0, 1, 1},
    {u"TND", u"FR", u"dinar", u"dinars", u"millime", u"millimes", 3, 0, 0},
    {u"TND", u"UK", u"dinar", u"dinars", u"millime", u"millimes", 3, 0, 0},
    {u"TND", u"NL", u"dinar", u"dinar", u"millime", u"millime", 3, 0, 0},
    {u"TND", u"DE", u"Dinar", u"Dinar", u"Millime", u"Millime", 3, 1, 1},
});

}  // namespace

const std::array<Language, 4>& Languages() {
  static const std::array<Language, 4> all{{
      {u"FR", *quorl::Locale::Named(u"fr-FR")},
      {u"UK", *quorl::Locale::Named(u"en-GB")},
      {u"NL", *quorl::Locale::Named(u"nl-NL")},
      {u"DE", *quorl::Locale::Named(u"de-DE")},
  }};
  return all;
}

std::span<const Names> AllNames() { return kNames; }

}  // namespace amounts
