#include "quorl/numeric/dates.hpp"

#include <gtest/gtest.h>

#include "quorl/runtime/locale.hpp"
#include "quorl/runtime/utf.hpp"

namespace quorl {
namespace {

TEST(Dates, BlankOrADateOfTheLocale) {
  constexpr std::pair<StringView, bool> cases[] = {
      {u"", true},           {u"   ", true},         {u"\t", false},         {u" \u00A0 ", false},
      {u"31/12/2024", true}, {u"12/31/2024", false}, {u"29/02/2023", false}, {u"29/02/2024", true},
      {u" 1/2/2024 ", true}, {u"14:30", true},       {u"31/12", false},      {u"abc", false},
  };
  const LocaleScope belgian{*Locale::Named(u"fr-BE")};
  for (const auto& [text, want] : cases) EXPECT_EQ(Dates::IsDateOrEmpty(text), want) << Utf8(text);
}

TEST(Dates, AnotherOrderTakesOtherDates) {
  const LocaleScope american{*Locale::Named(u"en-US")};
  EXPECT_TRUE(Dates::IsDateOrEmpty(u"12/31/2024"));
  EXPECT_FALSE(Dates::IsDateOrEmpty(u"31/12/2024"));
}

}  // namespace
}  // namespace quorl
