// Character filters and the reading of a number.

#include <algorithm>

#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/internal/text.hpp"
#include "quorl/runtime/internal/within_memory.hpp"
#include "quorl/runtime/number_text.hpp"
#include "quorl/text/strings.hpp"

namespace quorl {

using namespace internal;

namespace {

constexpr bool IsLetter(char16_t unit) {
  return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z');
}
constexpr bool IsLetterOrDigit(char16_t unit) { return IsLetter(unit) || IsDigit(unit); }

// Published limit: the counter is 16 bits and must reach size + 1, so 32767 characters overflow
// (failure 6).
void CheckScanned(StringView text) { CheckedInt16(static_cast<std::int64_t>(text.size()) + 1); }

template <bool (*kKept)(char16_t)>
String Filtered(StringView text) {
  CheckScanned(text);
  String result = WithinMemory([&] { return String(text.size(), u'\0'); });
  // Every character is written and the next overwrites one that is not kept: no branch to guess.
  std::size_t length = 0;
  for (const char16_t unit : text) {
    result[length] = unit;
    length += kKept(unit) ? 1 : 0;
  }
  result.resize(length);
  return result;
}

}  // namespace

String Strings::AphpaNumericOf(StringView Text) { return Filtered<IsLetterOrDigit>(Text); }

String Strings::DigitsOf(StringView Text) { return Filtered<IsDigit>(Text); }

Double Strings::WinVal(StringView Text) {
  Double number = 0;
  return ReadDouble(Text, Locale::Current(), number) == NumberReading::kGood ? number : 0;
}

String Strings::AlphpaNumericOf(StringView Text) { return AphpaNumericOf(Text); }

String Strings::AlphpabeticOf(StringView Text) { return Filtered<IsLetter>(Text); }

Boolean Strings::IsDigits(StringView Text) {
  LengthAsInt16(Text);
  if (!std::ranges::all_of(Text, IsDigit)) return false;
  CheckScanned(Text);
  return true;
}

}  // namespace quorl
