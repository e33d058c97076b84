#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include "bench/text/inputs.hpp"

namespace {

using namespace quorl;
using namespace quorl::bench;
using icu::UnicodeString;

constexpr const char* kWho = "ICU";

UnicodeString Copied(StringView text) {
  return {text.data(), static_cast<std::int32_t>(text.size())};
}

// The same inputs in ICU's form.
template <class Make>
auto InIcu(Make make) {
  return [=] { return Turned(make(), [](const String& text) { return Copied(text); }); };
}

UnicodeString Token(const UnicodeString& text, char16_t separator, int index) {
  std::int32_t start = 0;
  for (; index > 1; --index) {
    const std::int32_t found = text.indexOf(separator, start);
    if (found < 0) return {};
    start = found + 1;
  }
  const std::int32_t end = text.indexOf(separator, start);
  return {text, start, (end < 0 ? text.length() : end) - start};
}

UnicodeString Replaced(UnicodeString text) {
  static const UnicodeString old = Copied(kOld);
  static const UnicodeString replacement = Copied(kNew);
  const std::int32_t at = text.indexOf(old);
  return at < 0 ? text : text.replace(at, old.length(), replacement);
}

UnicodeString Padded(UnicodeString text) {
  text.padLeading(20, u'*');
  return text;
}

UnicodeString Shortened(const UnicodeString& text) {
  UnicodeString shortened(text, 0, 8);
  return shortened.append(u"...", 3).append(text, text.length() - 9, 9);
}

UnicodeString Trimmed(const UnicodeString& text) {
  std::int32_t end = text.length();
  while (end > 0 && text[end - 1] == u' ') --end;
  while (end > 0 && text[end - 1] == u'0') --end;
  return {text, 0, end};
}

// By the rule of ProperCase; ICU's own titles follow rules of words.
UnicodeString Proper(UnicodeString text) {
  const std::int32_t length = text.length();
  char16_t* units = text.getBuffer(length);
  bool starts = true;
  for (std::int32_t i = 0; i < length; ++i) {
    const UChar32 mapped = starts ? u_toupper(units[i]) : u_tolower(units[i]);
    starts = units[i] == u' ';
    units[i] = static_cast<char16_t>(mapped);
  }
  text.releaseBuffer(length);
  return text;
}

const AtStart rows([] {
  Measure(kToken, kWho, InIcu(Lines),
          [](const UnicodeString& text) { return Token(text, u';', 3); });
  Measure(kReplace, kWho, InIcu(TextsWithOld), Replaced);
  Measure(kPad, kWho, InIcu(Figures), Padded);
  Measure(kShorten, kWho, InIcu(Names), Shortened);
  Measure(kTrim, kWho, InIcu(FiguresWithZeros), Trimmed);
  Measure(kProper, kWho, InIcu(FrenchNames), Proper);
});

}  // namespace
