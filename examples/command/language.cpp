#include "examples/command/language.hpp"

#include <algorithm>
#include <cstdlib>
#include <initializer_list>
#include <optional>

namespace command {
namespace {

std::string_view FirstSaid(std::initializer_list<const char*> texts) {
  for (const char* const text : texts) {
    if (text != nullptr && *text != '\0') return text;
  }
  return {};
}

// "fr_BE.UTF-8" is "fr".
std::string_view LanguagePart(std::string_view locale) {
  return locale.substr(0, locale.find_first_of("_.@-"));
}

std::optional<Language> Spoken(std::string_view locale) {
  const std::string_view language = LanguagePart(locale);
  if (language == "fr") return Language::kFrench;
  if (language == "en") return Language::kEnglish;
  return std::nullopt;
}

}  // namespace

Language LanguageOf(const LocaleVariables& variables) {
  const std::string_view locale =
      FirstSaid({variables.lc_all, variables.lc_messages, variables.lang});
  const std::string_view part = LanguagePart(locale);
  if (part.empty() || part == "C" || part == "POSIX") return Language::kEnglish;
  for (std::string_view wished = FirstSaid({variables.language}); !wished.empty();) {
    const std::size_t end = std::min(wished.find(':'), wished.size());
    if (const auto spoken = Spoken(wished.substr(0, end))) return *spoken;
    wished.remove_prefix(std::min(end + 1, wished.size()));
  }
  return Spoken(locale).value_or(Language::kEnglish);
}

Language PersonsLanguage() {
  static const Language language = LanguageOf({std::getenv("LC_ALL"), std::getenv("LC_MESSAGES"),
                                               std::getenv("LANG"), std::getenv("LANGUAGE")});
  return language;
}

}  // namespace command
