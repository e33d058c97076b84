// Word forms.

#include <algorithm>

#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/internal/join.hpp"
#include "quorl/runtime/internal/search.hpp"
#include "quorl/runtime/internal/text.hpp"
#include "quorl/runtime/text_case.hpp"
#include "quorl/text/strings.hpp"

namespace quorl {

using namespace internal;

namespace {

constexpr StringView kVowels = u"aàâäeéèêioôöuûü";

// What makes a plural of a word that ends in `last`.
StringView PluralEnding(char16_t last) {
  const char16_t lower = LowerCase(last);
  if (lower == u's' || lower == u'x') return u"";
  return last < u'a' ? u"S" : u"s";
}

}  // namespace

String Strings::Pluriel(StringView Text) {
  const StringView word = Trim(Text);
  return Joined(word, word.empty() ? u"S" : PluralEnding(word.back()));
}

String Strings::ProperCase(StringView Text) {
  // Published limit: the position after a blank is 16 bits too (failure 6).
  CheckedInt16(LengthAsInt16(Text) + (Text.ends_with(kBlank) ? 1 : 0));
  String words = LowerCase(Text);
  for (std::size_t at = 0; at < words.size(); ++at) {
    words[at] = UpperCase(words[at]);
    at = std::min(FindUnit(Text, kBlank, at), words.size());
  }
  return words;
}

Boolean Strings::IsVoyelle(StringView Text) {
  // The empty text is found among the vowels like any text.
  if (Text.empty()) return true;
  return kVowels.find(LowerCase(Text.front())) != StringView::npos;
}

}  // namespace quorl
