// Word forms.

#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/internal/join.hpp"
#include "quorl/runtime/internal/text.hpp"
#include "quorl/runtime/text_case.hpp"
#include "quorl/text/strings.hpp"

namespace quorl {

using namespace internal;

namespace {

constexpr StringView kVowels = u"aàâäeéèêioôöuûü";
constexpr StringView kBlankText(&kBlank, 1);

// What makes a plural of a word that ends in `last`.
StringView PluralEnding(char16_t last) {
  const char16_t lower = LowerCase(last);
  if (lower == u's' || lower == u'x') return u"";
  return last < u'a' ? u"S" : u"s";
}

}  // namespace

String Strings::Pluriel(StringView Text) {
  const StringView word = Trim(Text);
  return Joined({word, word.empty() ? u"S" : PluralEnding(word.back())});
}

String Strings::ProperCase(StringView Text) {
  const Int16 length = LengthAsInt16(Text);
  String words = LowerCase(Text);
  std::int64_t position = 1;
  while (position <= length) {
    char16_t& initial = words[static_cast<std::size_t>(position - 1)];
    initial = UpperCase(initial);
    const std::int64_t blank = Find(position, words, kBlankText);
    if (blank == 0) break;
    position = CheckedInt16(blank + 1);
  }
  return words;
}

Boolean Strings::IsVoyelle(StringView Text) {
  // The empty text is found among the vowels like any text.
  if (Text.empty()) return true;
  return kVowels.find(LowerCase(Text.front())) != StringView::npos;
}

}  // namespace quorl
