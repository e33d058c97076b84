// Money amounts in words, with the names of a currency's unit and sub-unit, in French, English,
// Dutch or German.
//
// A Money holds a currency's names and a language; `ToText` writes as many amounts as wanted.
// A plain value: copies are independent, and several threads may call `ToText` on one that none of
// them changes. For the numbers see number_to_text.hpp, for their words word_tables.hpp.
#pragma once

#include "quorl/runtime/currency.hpp"
#include "quorl/runtime/types.hpp"

namespace quorl {

///     Money euros;
///     euros.Unit = u"euro";
///     euros.Units = u"euros";
///     euros.SubUnit = u"cent";
///     euros.SubUnits = u"cents";
///     euros.SubUnitRow = 2;
///     euros.Language = u"FR";
///     euros.ToText(1000000.50_cy);  // u"un million d'euros cinquante cents"
class Money {
 public:
  /// Free for the host: nothing here reads or writes it.
  Currency Value;
  /// Name of the unit for a whole part of 0 or 1. Names are used as they stand; an empty one leaves
  /// the number by itself.
  String Unit;
  /// Name of the unit for a whole part above 1; nothing falls back on `Unit`.
  String Units;
  /// Name of the sub-unit for a count of 1.
  String SubUnit;
  /// Name of the sub-unit for a count above 1.
  String SubUnits;
  /// The form of the word for one in the whole part, that is the gender of `Unit`: in French 0 is
  /// "un" and 1 "une"; in German 0 is "eins", 1 "ein", 2 "eine"; a higher one counts as the last.
  Int16 UnitKind = 0;
  /// The same for the sub-units.
  Int16 SubUnitKind = 0;
  /// The power of ten of sub-units that makes a unit: 2 for hundredths, 3 for thousandths. Below 0
  /// no sub-units are ever written.
  Int16 SubUnitRow = 0;
  /// "FR", "UK", "NL" or "DE", in capitals.
  String Language;

  /// The amount in words: the word for minus, the whole part, its unit's name and, unless their
  /// count is 0, the sub-units. The whole part is written when it is 0 too. A half sub-unit goes
  /// up, and a count that reaches a whole unit is not carried: 1.9999 is "un euro cent cents".
  /// The one allocation that it makes is the result's.
  ///
  /// Failures: 5000 ("Quorl.Money") for any other `Language`; 6 for the lowest Currency, which has
  /// no absolute value, for a `SubUnitRow` above 308, and where it gives a count beyond an Int32;
  /// 9 where a negative kind is needed for the word for one; 7 where memory does not hold the text.
  String ToText(Currency Value) const;
};

}  // namespace quorl
