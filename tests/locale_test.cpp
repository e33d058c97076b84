#include "quorl/runtime/locale.hpp"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "quorl/runtime/convert.hpp"
#include "tests/support/print.hpp"

namespace quorl {
namespace {

// All of a locale on one line: "1,234.5 mdy/ 12:00 True/False".
std::string Described(const Locale& locale) {
  static constexpr const char* kOrders[] = {"dmy", "mdy", "ymd"};
  std::ostringstream text;
  text << '1' << Utf8(locale.thousand_separator) << "234" << Utf8(locale.decimal_separator) << "5 "
       << kOrders[static_cast<int>(locale.date_order)] << Utf8(locale.date_separator) << " 12"
       << Utf8(locale.time_separator) << "00 " << Utf8(locale.true_word) << '/'
       << Utf8(locale.false_word);
  return std::move(text).str();
}

TEST(Locale, EveryLanguageInEveryCountry) {
  for (const char16_t* language : {u"de", u"en", u"fr", u"nl"}) {
    for (const char16_t* country : {u"BE", u"FR", u"NL", u"DE", u"CH", u"LU", u"GB", u"US"}) {
      const String name = language + (u"-" + String(country));
      const auto locale = Locale::Named(name);
      ASSERT_TRUE(locale) << Shown(name);
      EXPECT_EQ(locale->decimal_separator.size(), 1U) << Shown(name);
      EXPECT_EQ(locale->thousand_separator.size(), 1U) << Shown(name);
      EXPECT_NE(locale->decimal_separator, locale->thousand_separator) << Shown(name);
      EXPECT_EQ(locale->date_separator.size(), 1U) << Shown(name);
      EXPECT_NE(locale->true_word, locale->false_word) << Shown(name);
      for (const StringView suffix : {u".UTF-8", u"@euro", u".ISO-8859-15@euro"}) {
        const String full = language + (u"_" + String(country)) + String(suffix);
        EXPECT_EQ(Locale::Named(full), locale) << Shown(full);
      }
    }
  }
  const std::pair<StringView, std::string> cases[] = {
      {u"fr-BE", "1\u202F234,5 dmy/ 12:00 Vrai/Faux"},
      {u"NL_be", "1.234,5 dmy/ 12:00 Waar/Onwaar"},
      {u"de-CH", "1\u2019234.5 dmy. 12:00 Wahr/Falsch"},
      {u"en-US", "1,234.5 mdy/ 12:00 True/False"},
      {u"en-GB", "1,234.5 dmy/ 12:00 True/False"},
      {u"nl-NL", "1.234,5 dmy- 12:00 Waar/Onwaar"},
  };
  for (const auto& [name, expected] : cases) EXPECT_EQ(Described(*Locale::Named(name)), expected);
  for (const StringView name : {u"", u"fr", u"frBE", u"fr-B", u"fr-BEL", u"it-CH", u"fr-CA",
                                u"fr BE", u"-", u".UTF-8", u"C", u"POSIX", u"fr-BE-x"}) {
    EXPECT_FALSE(Locale::Named(name)) << Shown(name);
  }
}

TEST(Locale, ScopesNestAndComeBack) {
  const Locale french = *Locale::Named(u"fr-FR");
  Locale::UseSystem();
  const Locale system = Locale::Current();
  EXPECT_EQ(system, Locale::System());
  Locale::SetCurrent(*Locale::Named(u"de-DE"));
  {
    const LocaleScope outer(french);
    EXPECT_EQ(ToString(Variant(0.5)), u"0,5");
    {
      const LocaleScope inner{Locale()};
      EXPECT_EQ(ToString(Variant(0.5)), u"0.5");
    }
    EXPECT_EQ(Locale::Current(), french);
  }
  EXPECT_EQ(ToString(Variant(true)), u"Wahr");
  Locale::SetCurrent(Locale::Current());
  Locale::SetCurrent(french);
  EXPECT_EQ(Locale::Current(), french);
  Locale::UseSystem();
  EXPECT_EQ(Locale::Current(), system);
}

using Environment = std::map<std::string, std::string>;

// What `Locale::System` is in a new process with that environment: a child of this one, which must
// not have asked for it before.
std::string SystemIn(const Environment& environment) {
  int ends[2];
  if (pipe(ends) != 0) return "no pipe";
  const pid_t child = fork();
  if (child == 0) {
    clearenv();
    setenv("QUORL_PRINT_LOCALE", std::to_string(ends[1]).c_str(), 1);
    for (const auto& [name, value] : environment) setenv(name.c_str(), value.c_str(), 1);
    execl("/proc/self/exe", "locale_test", "--gtest_filter=Locale.EveryLanguageInEveryCountry",
          static_cast<char*>(nullptr));
    _exit(1);
  }
  close(ends[1]);
  std::string described(200, '\0');
  const ssize_t size = read(ends[0], described.data(), described.size());
  close(ends[0]);
  waitpid(child, nullptr, 0);
  described.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
  return described;
}

// In such a child: writes the description and ends, before any test runs.
const bool kIsParent = [] {
  const char* const end = std::getenv("QUORL_PRINT_LOCALE");
  if (end == nullptr) return true;
  const std::string described = Described(Locale::System());
  std::_Exit(write(std::atoi(end), described.data(), described.size()) > 0 ? 0 : 1);
}();

TEST(Locale, SystemFollowsTheEnvironment) {
  ASSERT_TRUE(kIsParent);
  const std::string neutral = Described(Locale());
  const std::string french = Described(*Locale::Named(u"fr-FR"));
  const std::string swiss_numbers = "1\u2019234.5 mdy/ 12:00 Vrai/Faux";
  const std::pair<Environment, std::string> cases[] = {
      {{}, neutral},
      {{{"LANG", "C"}}, neutral},
      {{{"LANG", "C.UTF-8"}}, neutral},
      {{{"LC_ALL", "POSIX"}, {"LANG", "fr_FR.UTF-8"}}, neutral},
      {{{"LANG", "xx_YY.UTF-8"}}, neutral},
      {{{"LANG", "../../etc/passwd"}}, neutral},
      {{{"LC_ALL", std::string(5000, 'x')}}, neutral},
      {{{"LANG", "fr_FR.UTF-8"}}, french},
      {{{"LC_ALL", ""}, {"LANG", "fr_FR.UTF-8"}}, french},
      {{{"LC_ALL", "fr_FR.UTF-8"}, {"LC_NUMERIC", "C"}, {"LANG", "de_DE"}}, french},
      {{{"LANG", "fr_FR.UTF-8"}, {"LC_NUMERIC", "de_CH.UTF-8"}, {"LC_TIME", "en_US.UTF-8"}},
       swiss_numbers},
  };
  for (const auto& [environment, expected] : cases) {
    EXPECT_EQ(SystemIn(environment), expected)
        << ::testing::PrintToString(environment).substr(0, 200);
  }
}

}  // namespace
}  // namespace quorl
