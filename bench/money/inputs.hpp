// Amounts that are written in words, in ten-thousandths, and the languages.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "bench/measure.hpp"

namespace quorl::bench {

struct Language {
  const char* name;
  const char16_t* code;
  const char* locale;  // for ICU
};
inline constexpr std::array<Language, 4> kLanguages{{{"French", u"FR", "fr_BE"},
                                                     {"English", u"UK", "en_GB"},
                                                     {"Dutch", u"NL", "nl_NL"},
                                                     {"German", u"DE", "de_DE"}}};

using Amounts = std::vector<std::int64_t>;

/// From `low` to `high` hundredths, in ten-thousandths.
inline Amounts AmountsBetween(double low, double high) {
  return Seeded::List(
      1, [=](Seeded& seeded) { return static_cast<std::int64_t>(seeded.Scaled(low, high)) * 100; });
}
inline Amounts Invoices() { return AmountsBetween(1'00, 99'999'99); }
inline Amounts AllSizes() { return AmountsBetween(1, 9.2e16); }

inline std::string ToTextOf(const char* amounts, const Language& language) {
  return std::string("Money.ToText, ") + amounts + ", " + language.name;
}
inline constexpr const char* kInvoices = "invoices";
inline constexpr const char* kAllSizes = "to the largest";

}  // namespace quorl::bench
