// Amounts in words and in figures.
#pragma once

#include "examples/amount_in_words/currencies.hpp"
#include "quorl/money/money.hpp"

namespace amounts {

struct Wording {
  quorl::Money money;
  const quorl::Locale* locale;
  bool whole_only;  ///< The currency has no sub-units.
};

Wording WordingOf(const Names& names, const Language& language);

/// The wording of these names, each made once.
const Wording& KnownWording(const Names& names);

/// Throws a Problem for a part that the currency does not have.
quorl::String WordsOf(const Wording& wording, quorl::Currency amount);

/// All decimals of the sub-unit, and any beyond them that are not zero.
quorl::String FiguresOf(const Wording& wording, quorl::Currency amount);

}  // namespace amounts
