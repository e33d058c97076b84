#include "quorl/runtime/locale.hpp"

#include <array>
#include <atomic>
#include <cstdlib>
#include <thread>

#include "quorl/runtime/internal/locale_forms.hpp"
#include "tests/support/values.hpp"

namespace quorl {
namespace {

// All of a locale on one line: "1,234.5 mdy/ 12:00 True/False".
std::string Described(const Locale& locale) {
  static constexpr StringView kOrders[] = {u"dmy", u"mdy", u"ymd"};
  return Utf8(u'1' + locale.thousand_separator + u"234" + locale.decimal_separator + u"5 " +
              String(kOrders[static_cast<int>(locale.date_order)]) + locale.date_separator +
              u" 12" + locale.time_separator + u"00 " + locale.true_word + u'/' +
              locale.false_word);
}

TEST(Locale, EveryLanguageInEveryCountry) {
  for (const String& language : Cells(u"de|en|fr|nl")) {
    for (const String& country : Cells(u"BE|FR|NL|DE|CH|LU|GB|US")) {
      const auto locale = Locale::Named(language + u"-" + country);
      ASSERT_TRUE(locale && locale->decimal_separator != locale->thousand_separator);
      for (const String& suffix : Cells(u".UTF-8|@euro|.ISO-8859-15@euro")) {
        EXPECT_EQ(Locale::Named(language + u"_" + country + suffix), locale) << Shown(country);
      }
    }
  }
  for (const auto& [name, expected] :
       Pairs(u"fr-BE=1\u202F234,5 dmy/ 12:00 Vrai/Faux|NL_be=1.234,5 dmy/ 12:00 Waar/Onwaar"
             u"|de-CH=1\u2019234.5 dmy. 12:00 Wahr/Falsch|en-US=1,234.5 mdy/ 12:00 True/False"
             u"|en-GB=1,234.5 dmy/ 12:00 True/False|nl-NL=1.234,5 dmy- 12:00 Waar/Onwaar")) {
    EXPECT_EQ(Described(*Locale::Named(name)), expected);
  }
  for (const String& name :
       Cells(u"|fr|frBE|fr-B|fr-BEL|it-CH|fr-CA|fr BE|-|.UTF-8|C|POSIX|fr-BE-x")) {
    EXPECT_FALSE(Locale::Named(name)) << Shown(name);
  }
}

TEST(Locale, ScopesNestAndReferencesStayGood) {
  Locale::UseSystem();
  EXPECT_EQ(Locale::Current(), Locale::System());
  std::vector<const Locale*> taken;
  for (const String& name : Cells(u"de-DE|nl-BE|fr-CH|de-DE")) {
    Locale::SetCurrent(*Locale::Named(name));
    taken.push_back(&Locale::Current());
  }
  EXPECT_EQ(*taken[0], Locale::Named(u"de-DE"));
  EXPECT_EQ(taken[3], taken[0]);  // kept once
  {
    const LocaleScope outer(*Locale::Named(u"fr-FR"));
    EXPECT_EQ((LocaleScope(Locale()), ToString(0.5)), u"0.5");
    EXPECT_EQ(ToString(0.5), u"0,5");
    taken.push_back(&Locale::Current());
  }
  EXPECT_EQ(*taken.back(), Locale::Named(u"fr-FR"));
  EXPECT_EQ(Locale::Current(), Locale::Named(u"de-DE"));
  Locale::UseSystem();
}

TEST(Locale, ConversionsSeeOneLocaleWhileAnotherThreadReplacesIt) {
  std::array<Locale, 3> locales;
  for (std::size_t i = 0; i < locales.size(); ++i) {
    locales[i].true_word = String(20 + i, static_cast<char16_t>(u'a' + i));
  }
  Locale::SetCurrent(locales[0]);
  std::atomic<bool> done = false;
  std::thread replacing([&] {
    for (std::size_t i = 0; i < 30000; ++i) Locale::SetCurrent(locales[i % locales.size()]);
    done = true;
  });
  while (!done) {
    const String word = ToString(true);
    EXPECT_EQ(word, String(word.size(), word[0]));
    EXPECT_EQ(word.size(), 20U + (word[0] - u'a'));
  }
  replacing.join();
  Locale::UseSystem();
}

TEST(Locale, FormatsOfTheSystem) {
  for (const auto& [format, expected] :
       Pairs(u"%d/%m/%Y=dmy/|%m/%d/%Y=mdy/|%D=mdy/|%F=ymd-|%Y.%m.%d=ymd.|%-d. %-m. %y=dmy.|%e.%m.%Y"
             u"=dmy.|%d/%m-%Y=ymd-|%Y%m%d=ymd-|%a %d %b=ymd-|%Y/%d/%m=ymd-|%=ymd-|=ymd-")) {
    Locale locale;
    internal::ApplyDateFormat(format, locale);
    EXPECT_EQ(Described(locale), "1,234.5 " + expected + " 12:00 True/False") << Shown(format);
  }
  for (const auto& [format, expected] :
       Pairs(u"%H.%M.%S=.|%T=:|%r=:|%H.%M:%S=:|%H%M%S=:|%I.%M.%S=:|%H.%M.%S %Z=:|=:")) {
    Locale locale;
    internal::ApplyTimeFormat(format, locale);
    EXPECT_EQ(Utf8(locale.time_separator), expected) << Shown(format);
  }
}

TEST(Locale, SystemFollowsTheEnvironment) {
  EXPECT_EQ(Locale::System(), internal::LocaleOfEnvironment());
  // Environments, with ";" between two, and the locale that they mean.
  for (const auto& [expected, environments] :
       {std::pair(Described(Locale()),
                  u";LANG=C;LANG=C.UTF-8;LC_ALL=POSIX|LANG=fr_FR;LANG=xx_YY.UTF-8;LANG=french"
                  u";LANG=../../etc/passwd;LC_ALL=" +
                      String(5000, u'x')),
        {Described(*Locale::Named(u"fr-FR")),
         u"LANG=fr_FR.UTF-8;LC_ALL=|LANG=fr_FR;LANG=fr_CA;LANG=fr;LANG=fr_xx@euro"
         u";LC_ALL=fr_FR.UTF-8|LC_NUMERIC=C|LANG=de_DE"},
        {Described(*Locale::Named(u"fr-CH")), u"LANG=fr_CH.UTF-8"},
        {Described(*Locale::Named(u"de-DE")), u"LANG=de_AT.UTF-8"},
        {Described(*Locale::Named(u"nl-NL")), u"LANG=nl_AW"},
        {Described(*Locale::Named(u"en-GB")), u"LANG=en_IE"},
        {"1.234,5 ymd- 12:00 True/False", u"LC_NUMERIC=de_AT"},
        {"1\u2019234.5 mdy/ 12:00 Vrai/Faux",
         u"LANG=fr_FR.UTF-8|LC_NUMERIC=de_CH.UTF-8|LC_TIME=en_US.UTF-8"}}) {
    for (const String& environment : Cells(environments, u';')) {
      clearenv();
      for (const auto& [name, value] : Pairs(environment)) {
        if (!name.empty()) setenv(Utf8(name).c_str(), value.c_str(), 1);
      }
      EXPECT_EQ(Described(internal::LocaleOfEnvironment()), expected)
          << Shown(StringView(environment).substr(0, 200));
    }
  }
}

}  // namespace
}  // namespace quorl
