#include "examples/amount_in_words/fields.hpp"

#include "examples/amount_in_words/problem.hpp"
#include "quorl/runtime/text_case.hpp"

namespace amounts {

using quorl::String;
using quorl::StringView;

namespace {

constexpr StringView kSeparators = u"\t;,";

}  // namespace

void FieldsOf(String& line, char16_t separator, std::vector<StringView>& fields) {
  fields.clear();
  bool quoted = false;
  char16_t* begin = line.data();
  char16_t* end = begin;
  for (std::size_t at = 0; at < line.size(); ++at) {
    const char16_t unit = line[at];
    if (unit != u'"' && (unit != separator || quoted)) {
      *end++ = unit;
    } else if (unit == separator) {
      fields.emplace_back(begin, end);
      begin = end = line.data() + at + 1;
    } else if (quoted && at + 1 < line.size() && line[at + 1] == u'"') {
      *end++ = line[++at];
    } else {
      quoted = !quoted;
    }
  }
  if (quoted) throw Problem(messages::kOpenQuote());
  fields.emplace_back(begin, end);
}

char16_t SeparatorOf(StringView first_line) {
  String outside;
  bool quoted = false;
  for (const char16_t unit : first_line) {
    if (unit == u'"') quoted = !quoted;
    if (!quoted) outside += unit;
  }
  for (const char16_t separator : kSeparators) {
    if (outside.find(separator) != String::npos) return separator;
  }
  return u',';
}

char16_t NamedSeparator(StringView line) {
  constexpr StringView kName = u"sep=";
  if (!quorl::EqualsIgnoringCase(line.substr(0, kName.size()), kName)) return u'\0';
  const StringView named = line.substr(kName.size());
  if (named.size() != 1 || kSeparators.find(named) == StringView::npos) {
    Refuse(messages::kUnknownSeparator, named);
  }
  return named.front();
}

}  // namespace amounts
