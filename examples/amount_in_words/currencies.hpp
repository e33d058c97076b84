// The languages, and the names of the currencies in each of them.
#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "examples/amount_in_words/problem.hpp"
#include "quorl/runtime/locale.hpp"

namespace amounts {

struct Language {
  quorl::StringView code;
  quorl::Locale locale;
};

/// FR, UK, NL, DE.
const std::array<Language, 4>& Languages();

/// A currency in a language; each currency has a row for every language, in their order.
struct Names {
  quorl::StringView currency, language;
  quorl::StringView unit, units, sub_unit, sub_units;
  quorl::Int16 decimals, unit_kind, sub_unit_kind;
};

/// Language by language for each currency.
std::span<const Names> AllNames();

template <class Kind>
const Language& LanguageOf(quorl::StringView code) {
  for (const Language& language : Languages()) {
    if (language.code == code) return language;
  }
  Refuse<Kind>(messages::kUnknownLanguage, code);
}

template <class Kind>
const Names& NamesOf(quorl::StringView currency, const Language& language) {
  const auto first = static_cast<std::size_t>(&language - Languages().data());
  for (std::size_t at = first; at < AllNames().size(); at += Languages().size()) {
    if (AllNames()[at].currency == currency) return AllNames()[at];
  }
  Refuse<Kind>(messages::kUnknownCurrency, currency);
}

}  // namespace amounts
