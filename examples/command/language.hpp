// The language in which a command speaks to a person: French or English, by the person's locale.
#pragma once

#include <cstdint>
#include <string_view>

namespace command {

enum class Language : std::uint8_t { kEnglish, kFrench };

/// The environment variables that say it; null or empty where one says nothing.
struct LocaleVariables {
  const char* lc_all = nullptr;
  const char* lc_messages = nullptr;
  const char* lang = nullptr;
  const char* language = nullptr;
};

/// The first of `lc_all`, `lc_messages` and `lang` that says something is the locale. Unless that
/// is "C" or "POSIX", the first language of `language` ("fr:en") that a command speaks goes before
/// it. What is not French is answered in English.
Language LanguageOf(const LocaleVariables& variables);

/// That of the process's environment, looked up once.
Language PersonsLanguage();

}  // namespace command
