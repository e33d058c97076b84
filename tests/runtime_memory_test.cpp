// Every allocation of every operation fails once: each gives failure 7, and nothing else happens.
#include <gtest/gtest.h>

#include <array>
#include <functional>

#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/internal/join.hpp"
#include "quorl/runtime/number_text.hpp"
#include "quorl/runtime/text_case.hpp"
#include "tests/support/holder.hpp"
#include "tests/support/raises.hpp"
#include "tests/support/store_failing_allocation.hpp"

namespace quorl {

using namespace internal;
namespace {

TEST(Memory, RunningOutOfItIsFailure7AndChangesNothing) {
  const LocaleScope neutral{Locale()};
  const String text(1000, u'x');
  const Variant longest = text;
  const Variant held = MakeObject<Holder>(longest);
  const Locale wordy{.true_word = text};
  const Array texts = Array::OfStrings(std::array{text, text});
  Array array = texts;
  const std::string bytes(1000, '7');
  struct Case {
    const char* name;
    std::function<void()> work;
    Int32 in_the_end = 0;  // the failure that stays once there is memory
  };
  for (const Case& c : {
           Case{"text", [&] { ToString(longest); }},
           {"number", [] { ToString(-1.2345678901234567e-7); }},
           {"date", [] { ToString(Date(-1.25)); }},
           {"dotted", [] { DottedNumber(0.123456789); }},
           {"format", [] { FormatNumber(1e300, u"#,##0.00"); }},
           {"truth", [&] { ToBoolean(longest); }, 13},
           {"copy", [&] { ConvertTo(longest, VariantType::kString); }},
           {"join", [&, joined = String()]() mutable { AppendText(joined, longest); }},
           {"lower", [&] { LowerCase(StringView(text)); }},
           {"to UTF-8", [&] { Utf8(text); }},
           {"to UTF-16", [&] { Utf16(bytes); }},
           {"element", [&] { texts.Get({1}); }},
           {"array", [] { Array::WithBounds(VariantType::kString, 0, 9); }},
           {"default member", [&] { ToString(held); }},
           {"locale", [&] { LocaleScope{wordy}; }},
           {"failure", [] { Raise(FailureNumber::kTypeMismatch); }, 13},
           {"write", [&] { array.Set({0}, 5); }},
       }) {
    Failure failure = RuntimeFailure(7);
    for (std::int64_t most = 0; failure == RuntimeFailure(7); ++most) {
      ASSERT_LT(most, 100) << c.name;
      ASSERT_EQ(array, texts) << c.name;
      failure = FailureOf([&] {
        const FailingAllocation failing(most, true);
        c.work();
      });
    }
    EXPECT_EQ(failure, c.in_the_end == 0 ? Failure{} : RuntimeFailure(c.in_the_end)) << c.name;
  }
  // Reading and comparing numbers needs no memory at all, however long the text.
  const Variant digits = String(5000, u'7') + u"E-4990";
  std::array<Double, 3> read{};
  {
    const FailingAllocation failing(0, true);
    read = {ToDouble(digits), ToDouble(ToCurrency(digits)), ToDouble(Currency::Highest())};
  }
  EXPECT_EQ(read, (std::array{7777777777.7777777, 7777777777.7778, 922337203685477.5807}));
}

}  // namespace
}  // namespace quorl
