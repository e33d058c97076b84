// Locales by name, from our own tables.

#include <algorithm>
#include <array>

#include "quorl/runtime/internal/locale_forms.hpp"
#include "quorl/runtime/text_case.hpp"

namespace quorl {

namespace {

constexpr StringView kPoint = u".";
constexpr StringView kComma = u",";
constexpr StringView kNarrowBlank = u"\u202F";
constexpr StringView kApostrophe = u"\u2019";

struct Language {
  StringView code;
  StringView usual_country;
  StringView true_word;
  StringView false_word;
};

constexpr std::array kLanguages{
    Language{u"de", u"de", u"Wahr", u"Falsch"},
    Language{u"en", u"gb", u"True", u"False"},
    Language{u"fr", u"fr", u"Vrai", u"Faux"},
    Language{u"nl", u"nl", u"Waar", u"Onwaar"},
};

// Separators and date order belong to the country; where people of one language write otherwise
// there, a row with that language stands before the country's own, which has none.
struct Country {
  StringView code;
  StringView language;
  StringView decimal;
  StringView thousand;
  DateOrder order;
  StringView date;
};

constexpr auto kDmy = DateOrder::kDayMonthYear;
constexpr std::array kCountries{
    Country{u"be", u"de", kComma, kPoint, kDmy, u"."},
    Country{u"be", u"fr", kComma, kNarrowBlank, kDmy, u"/"},
    Country{u"be", u"", kComma, kPoint, kDmy, u"/"},
    Country{u"fr", u"", kComma, kNarrowBlank, kDmy, u"/"},
    Country{u"nl", u"", kComma, kPoint, kDmy, u"-"},
    Country{u"de", u"", kComma, kPoint, kDmy, u"."},
    Country{u"ch", u"fr", kComma, kNarrowBlank, kDmy, u"."},
    Country{u"ch", u"", kPoint, kApostrophe, kDmy, u"."},
    Country{u"lu", u"de", kComma, kPoint, kDmy, u"."},
    Country{u"lu", u"fr", kComma, kNarrowBlank, kDmy, u"/"},
    Country{u"lu", u"", kComma, kPoint, kDmy, u"/"},
    Country{u"gb", u"", kPoint, kComma, kDmy, u"/"},
    Country{u"us", u"", kPoint, kComma, DateOrder::kMonthDayYear, u"/"},
};

const Language* LanguageOf(StringView code) {
  const auto* found = std::ranges::find(kLanguages, code, &Language::code);
  return found == kLanguages.end() ? nullptr : found;
}

const Country* CountryOf(StringView code, StringView language) {
  const auto* found = std::ranges::find_if(kCountries, [&](const Country& country) {
    return country.code == code && (country.language.empty() || country.language == language);
  });
  return found == kCountries.end() ? nullptr : found;
}

// What "fr-BE", "fr_BE.UTF-8" or "fr_BE@euro" names; a null country for one that is not listed.
struct Found {
  const Language* language = nullptr;
  const Country* country = nullptr;
};

Found Find(StringView name) {
  const String lowered = LowerCase(name.substr(0, name.find_first_of(u".@")));
  const StringView text = lowered;
  const std::size_t mark = std::min(text.find_first_of(u"-_"), text.size());
  Found found{LanguageOf(text.substr(0, mark))};
  if (found.language != nullptr && mark < text.size()) {
    found.country = CountryOf(text.substr(mark + 1), found.language->code);
  }
  return found;
}

Locale LocaleOf(const Language& language, const Country& country) {
  Locale locale;
  locale.decimal_separator = country.decimal;
  locale.thousand_separator = country.thousand;
  locale.date_order = country.order;
  locale.date_separator = country.date;
  locale.true_word = language.true_word;
  locale.false_word = language.false_word;
  return locale;
}

}  // namespace

std::optional<Locale> Locale::Named(StringView name) {
  const Found found = Find(name);
  if (found.country == nullptr) return std::nullopt;
  return LocaleOf(*found.language, *found.country);
}

std::optional<Locale> internal::UsualLocale(StringView name) {
  Found found = Find(name);
  if (found.language == nullptr) return std::nullopt;
  if (found.country == nullptr) {
    found.country = CountryOf(found.language->usual_country, found.language->code);
  }
  return LocaleOf(*found.language, *found.country);
}

}  // namespace quorl
