#include "quorl/regional/regional.hpp"

#include <gtest/gtest.h>

#include <string>

#include "quorl/regional/global_instance.hpp"
#include "quorl/registry/registry.hpp"
#include "quorl/runtime/locale.hpp"
#include "quorl/store/memory_store.hpp"
#include "quorl/store/operations.hpp"
#include "tests/support/print.hpp"
#include "tests/support/raises.hpp"
#include "tests/support/recording_store.hpp"

namespace quorl {
namespace {

class RegionalTest : public testing::Test {
 protected:
  RegionalTest() { settings_.InitAbsolute(HKEY_CURRENT_USER, u"Control Panel\\International"); }
  void TearDown() override { EXPECT_EQ(store_.OpenKeyCount(), 0); }

  // The four separators of the settings, with bars between.
  static String FourOf(const Regional& regional) {
    return regional.NumDecimalChar() + u'|' + regional.NumThousandChar() + u'|' +
           regional.MonDecimalChar() + u'|' + regional.MonThousandChar();
  }

  MemoryStore memory_;
  RecordingStore store_{memory_};
  ScopedStore guard_{store_};
  Registry settings_;
};

Locale WithSeparators(StringView decimal, StringView thousand) {
  Locale locale;
  locale.decimal_separator = decimal;
  locale.thousand_separator = thousand;
  return locale;
}

TEST_F(RegionalTest, SeparatorsOfTheLibraryAreReadOffTheSample) {
  struct Case {
    Locale locale;
    StringView decimal;
    StringView thousand;
  };
  const Case cases[] = {
      {Locale(), u".", u","},
      {*Locale::Named(u"nl-BE"), u",", u"."},
      {*Locale::Named(u"fr-BE"), u",", u"\u202F"},
      {*Locale::Named(u"de-CH"), u".", u"\u2019"},
      {WithSeparators(u",", u""), u"2", u"0"},
      {WithSeparators(u",", u"ab"), u"0", u"a"},
      {WithSeparators(u"", u""), u"", u"0"},
      {WithSeparators(u"<>", u" "), u"<", u" "},
  };
  for (const Case& c : cases) {
    const LocaleScope scope(c.locale);
    const Regional regional;
    EXPECT_EQ(regional.DecimalChar(), c.decimal) << Utf8(c.locale.thousand_separator);
    EXPECT_EQ(regional.ThousandChar(), c.thousand) << Utf8(c.locale.thousand_separator);
  }
}

TEST_F(RegionalTest, TypedPointsAndCommasBecomeTheSeparator) {
  struct Case {
    Locale locale;
    Int16 comma_and_point;
  };
  const Case cases[] = {{Locale(), u'.'},
                        {*Locale::Named(u"fr-FR"), u','},
                        {WithSeparators(u"\u066B", u","), 0x066B},
                        {WithSeparators(u",", u""), u'2'}};
  for (const Case& c : cases) {
    const LocaleScope scope(c.locale);
    const Regional regional;
    for (int key = -200; key <= 500; ++key) {
      auto code = static_cast<Int16>(key);
      regional.ConvertDecimalPoint(code);
      EXPECT_EQ(code, key == 44 || key == 46 ? c.comma_and_point : key) << key;
    }
  }
  const LocaleScope scope(WithSeparators(u"", u""));
  const Regional regional;
  Int16 code = 46;
  EXPECT_RAISES(regional.ConvertDecimalPoint(code), RuntimeFailure(5));
  EXPECT_EQ(code, 46);
}

TEST_F(RegionalTest, SettingsAreReadWhenMadeAndOnRequest) {
  settings_.SaveValue(u"", u"sDecimal", u",");
  settings_.SaveValue(u"", u"sThousand", 7);
  settings_.SaveValue(u"", u"sMonThousandSep", u"long");
  Regional regional;
  EXPECT_EQ(FourOf(regional), u",|7||long");
  settings_.SaveValue(u"", u"sDecimal", u".");
  settings_.DeleteValue(u"", u"sThousand");
  const LocaleScope scope(*Locale::Named(u"nl-NL"));
  EXPECT_EQ(FourOf(regional), u",|7||long");
  EXPECT_EQ(regional.DecimalChar(), u".");
  regional.GetRegional();
  EXPECT_EQ(FourOf(regional), u".|||long");
  EXPECT_EQ(regional.DecimalChar(), u",");
}

TEST_F(RegionalTest, SetRegionalWritesOneAndRemembersIt) {
  struct Case {
    Int32 item;
    StringView name;
    StringView four;
  };
  const Case cases[] = {{0, u"sDecimal", u";|||"},
                        {1, u"sThousand", u";|;||"},
                        {2, u"sMonDecimalSep", u";|;|;|"},
                        {3, u"sMonThousandSep", u";|;|;|;"}};
  Regional regional;
  const Regional other;
  for (const Case& c : cases) {
    regional.SetRegional(static_cast<RegionalItemEnum>(c.item), u";");
    EXPECT_EQ(FourOf(regional), c.four) << c.item;
    EXPECT_EQ(settings_.GetValue(u"", c.name, Null), Variant(u";")) << c.item;
  }
  EXPECT_EQ(FourOf(other), u"|||");
  EXPECT_EQ(regional.DecimalChar(), u".");
  store_.FailNever();
  for (const Int32 item : {4, -1, INT32_MIN}) {
    regional.SetRegional(static_cast<RegionalItemEnum>(item), u"!");
  }
  EXPECT_TRUE(store_.Calls().empty());
  EXPECT_EQ(FourOf(regional), u";|;|;|;");
}

TEST_F(RegionalTest, NumbersAndMoneyAgreeOnlyInBoth) {
  Regional regional;
  EXPECT_TRUE(regional.CheckRegional());
  struct Step {
    RegionalItemEnum item;
    StringView value;
    bool agree;
  };
  for (const Step& step :
       {Step{riNumThousandChar, u".", false}, Step{riMonThousandChar, u".", true},
        Step{riNumDecimalChar, u",", false}, Step{riMonDecimalChar, u",", true},
        Step{riMonThousandChar, u" ", false}}) {
    regional.SetRegional(step.item, step.value);
    EXPECT_EQ(regional.CheckRegional(), step.agree) << step.item << Utf8(step.value);
  }
}

TEST_F(RegionalTest, FailuresKeepWhatWasReadAndWritten) {
  const auto denied = [](StringView call) {
    return Failure{5, u"qlWinRegistry",
                   u"Erreur d'accès au registre windows dans la fonction " + String(call) +
                       u"\n\nL'accès est refusé.\r\n"};
  };
  settings_.SaveValue(u"", u"sDecimal", u",");
  Regional regional;
  settings_.SaveValue(u"", u"sDecimal", u"d");
  settings_.SaveValue(u"", u"sThousand", u"t");
  store_.FailAt(3, kAccessDenied);  // the opening for the second value
  EXPECT_RAISES(regional.GetRegional(), denied(u"GetValue(, sThousand, )"));
  EXPECT_EQ(FourOf(regional), u"d|||");
  store_.FailAt(1, kAccessDenied);
  EXPECT_RAISES(regional.SetRegional(riNumDecimalChar, u"x"),
                denied(u"SaveValue(, sDecimal, x, 1)"));
  EXPECT_EQ(FourOf(regional), u"d|||");
  store_.FailNever();
  settings_.SaveValue(u"", u"sMonDecimalSep", u"x", REG_BINARY);
  EXPECT_RAISES(regional.GetRegional(), RuntimeFailure(13));
  EXPECT_EQ(FourOf(regional), u"d|t||");
}

TEST_F(RegionalTest, HiddenInstanceIsMadeAtTheFirstUseThatWorks) {
  store_.FailAt(0, kAccessDenied);
  EXPECT_EQ(FailureOf([] { GlobalInstance<Regional>(); }).number, kAccessDenied);
  store_.FailNever();
  settings_.SaveValue(u"", u"sDecimal", u"h");
  EXPECT_EQ(GlobalInstance<Regional>().NumDecimalChar(), u"h");
  settings_.SaveValue(u"", u"sDecimal", u"i");
  EXPECT_EQ(GlobalInstance<Regional>().NumDecimalChar(), u"h");
}

}  // namespace
}  // namespace quorl
