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
      {WithSeparators(u"\u066B", u","), u"\u066B", u","},
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
    // Typed points and commas become the separator, and nothing else does.
    for (Int16 key = -200; key <= 500; ++key) {
      Int16 code = key;
      const bool becomes = key == 44 || key == 46;
      EXPECT_RAISES(regional.ConvertDecimalPoint(code),
                    becomes && c.decimal.empty() ? RuntimeFailure(5) : Failure{});
      EXPECT_EQ(code, becomes && !c.decimal.empty() ? c.decimal[0] : key) << key;
    }
  }
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
  Regional regional;
  const Regional other;
  String values[4];
  const StringView names[] = {u"sDecimal", u"sThousand", u"sMonDecimalSep", u"sMonThousandSep"};
  for (Int32 item = 0; item < 4; ++item) {
    values[item] = static_cast<char16_t>(u'a' + item);
    regional.SetRegional(static_cast<RegionalItemEnum>(item), values[item]);
    EXPECT_EQ(FourOf(regional), values[0] + u'|' + values[1] + u'|' + values[2] + u'|' + values[3]);
    EXPECT_EQ(settings_.GetValue(u"", names[item], Null), Variant(values[item])) << item;
  }
  EXPECT_EQ(FourOf(other), u"|||");
  store_.FailNever();
  for (const Int32 item : {4, -1, INT32_MIN}) {
    regional.SetRegional(static_cast<RegionalItemEnum>(item), u"!");
  }
  EXPECT_TRUE(store_.Calls().empty());
  EXPECT_EQ(FourOf(regional), u"a|b|c|d");
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
