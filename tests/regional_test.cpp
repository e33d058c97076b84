#include "quorl/regional/regional.hpp"

#include "quorl/regional/global_instance.hpp"
#include "quorl/registry/registry.hpp"
#include "quorl/store/memory_store.hpp"
#include "quorl/store/operations.hpp"
#include "tests/support/recording_store.hpp"
#include "tests/support/values.hpp"

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

TEST_F(RegionalTest, SeparatorsOfTheLibraryAreReadOffTheSample) {
  // A locale's decimal and thousand separators, and those that are found.
  for (const auto& row : Rows(u".|,|.|,;,|.|,|.;\u066B|,|\u066B|,;,||2|0;,|ab|0|a;|||0;<>| |<| ")) {
    Locale locale;
    locale.decimal_separator = row[0];
    locale.thousand_separator = row[1];
    const LocaleScope scope(locale);
    const Regional regional;
    EXPECT_EQ(regional.DecimalChar(), row[2]) << Utf8(row[1]);
    EXPECT_EQ(regional.ThousandChar(), row[3]) << Utf8(row[1]);
    // Typed points and commas become the separator, and nothing else does.
    for (Int16 key = -200; key <= 500; ++key) {
      Int16 code = key;
      const bool becomes = key == 44 || key == 46;
      EXPECT_RAISES(regional.ConvertDecimalPoint(code),
                    becomes && row[2].empty() ? RuntimeFailure(5) : Failure{});
      EXPECT_EQ(code, becomes && !row[2].empty() ? row[2][0] : key) << key;
    }
  }
}

TEST_F(RegionalTest, SettingsAreReadWhenMadeAndOnRequestAndWrittenOneByOne) {
  settings_.SaveValue(u"", u"sDecimal", u",");
  settings_.SaveValue(u"", u"sThousand", 7);
  Regional regional;
  EXPECT_EQ(FourOf(regional), u",|7||");
  settings_.DeleteValue(u"", u"sThousand");
  const LocaleScope scope(*Locale::Named(u"nl-NL"));
  EXPECT_EQ(FourOf(regional) + regional.DecimalChar(), u",|7||.");
  regional.GetRegional();
  EXPECT_EQ(FourOf(regional) + regional.DecimalChar(), u",|||,");
  const Regional other;
  // An item, its name and new value, all four then, and whether numbers and money agree.
  for (const auto& row : Rows(u"1|sThousand|.|,|.|||0;3|sMonThousandSep|.|,|.||.|0;2|"
                              u"sMonDecimalSep|,|,|.|,|.|1;0|sDecimal|long|long|.|,|.|0")) {
    regional.SetRegional(static_cast<RegionalItemEnum>(std::stoi(Utf8(row[0]))), row[2]);
    EXPECT_EQ(FourOf(regional), row[3] + u'|' + row[4] + u'|' + row[5] + u'|' + row[6]);
    EXPECT_EQ(regional.CheckRegional(), row[7] == u"1") << Utf8(row[1]);
    EXPECT_EQ(settings_.GetValue(u"", row[1], Null), Variant(row[2])) << Utf8(row[1]);
  }
  EXPECT_EQ(FourOf(other), u",|||");
  store_.FailNever();
  for (const Int32 item : {4, -1, INT32_MIN}) {
    regional.SetRegional(static_cast<RegionalItemEnum>(item), u"!");
  }
  EXPECT_TRUE(store_.Calls().empty());
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
  // The hidden instance is made at the first use that works.
  EXPECT_RAISES(GlobalInstance<Regional>(), RuntimeFailure(13));
  settings_.SaveValue(u"", u"sMonDecimalSep", u"h");
  EXPECT_EQ(GlobalInstance<Regional>().MonDecimalChar(), u"h");
  settings_.SaveValue(u"", u"sMonDecimalSep", u"i");
  EXPECT_EQ(GlobalInstance<Regional>().MonDecimalChar(), u"h");
}

}  // namespace
}  // namespace quorl
