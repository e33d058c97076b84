#include <langinfo.h>
#include <locale.h>

#include <array>
#include <cstdlib>
#include <string>
#include <string_view>

#include "quorl/runtime/ansi.hpp"
#include "quorl/runtime/internal/text.hpp"
#include "quorl/runtime/internal/within_memory.hpp"
#include "quorl/runtime/locale.hpp"
#include "quorl/runtime/utf.hpp"

namespace quorl {

using namespace internal;
namespace {

// A locale of the C library, for one category; empty where the environment names none that the
// system has.
class SystemCategory {
 public:
  explicit SystemCategory(int mask, const char* name) : locale_(newlocale(mask, name, nullptr)) {}
  ~SystemCategory() {
    if (locale_ != nullptr) freelocale(locale_);
  }
  SystemCategory(const SystemCategory&) = delete;
  SystemCategory& operator=(const SystemCategory&) = delete;

  bool IsKnown() const { return locale_ != nullptr; }
  String Item(nl_item item) const {
    const std::string_view text = nl_langinfo_l(item, locale_);
    const bool utf8 = std::string_view(nl_langinfo_l(CODESET, locale_)) == "UTF-8";
    // The other character sets in use write separators as Latin letters' sets do.
    return utf8 ? Utf16(text) : FromAnsi(text);
  }

 private:
  locale_t locale_;
};

// The name that the environment gives a category, by the order that POSIX fixes; "" for none.
std::string NameInEnvironment(const char* category) {
  for (const char* variable : {"LC_ALL", category, "LANG"}) {
    const char* value = std::getenv(variable);
    if (value != nullptr && *value != '\0') return value;
  }
  return "";
}

bool IsPlain(std::string_view name) {
  return name.empty() || name == "POSIX" || name == "C" || name.starts_with("C.");
}

// A date format such as "%d/%m/%Y", taken apart: "dmY", and what stands behind its first field and
// behind its second.
struct DateFormat {
  String order;
  std::array<String, 2> separators;

  explicit DateFormat(StringView format) {
    for (std::size_t i = 0; i < format.size(); ++i) {
      if (format[i] == u'%' && i + 1 < format.size()) {
        ++i;
        if (format[i] == u'-' && i + 1 < format.size()) ++i;
        order += format[i] == u'e' ? u'd' : format[i] == u'y' ? u'Y' : format[i];
      } else if (order.size() == 1 || order.size() == 2) {
        separators[order.size() - 1] += format[i];
      }
    }
    for (String& separator : separators) separator = Trim(separator);
  }

  bool HasOneSeparator() const {
    return separators[0].size() == 1 && separators[0] == separators[1];
  }
};

// Puts order and separator of a format in place; what has another form leaves `locale` as it was.
void ApplyDateFormat(const DateFormat& format, Locale& locale) {
  if (format.order == u"D") {  // month/day/year
    locale.date_order = DateOrder::kMonthDayYear;
    locale.date_separator = u"/";
  } else if (format.order == u"F") {  // year-month-day
    locale.date_order = DateOrder::kYearMonthDay;
    locale.date_separator = u"-";
  } else if (format.HasOneSeparator()) {
    if (format.order == u"dmY")
      locale.date_order = DateOrder::kDayMonthYear;
    else if (format.order == u"mdY")
      locale.date_order = DateOrder::kMonthDayYear;
    else if (format.order == u"Ymd")
      locale.date_order = DateOrder::kYearMonthDay;
    else
      return;
    locale.date_separator = format.separators[0];
  }
}

void ApplyNumbers(Locale& locale) {
  const std::string name = NameInEnvironment("LC_NUMERIC");
  if (IsPlain(name)) return;
  // The character set of a category's texts is that of LC_CTYPE, so both are asked for together.
  const SystemCategory system(LC_NUMERIC_MASK | LC_CTYPE_MASK, name.c_str());
  if (system.IsKnown()) {
    locale.decimal_separator = system.Item(RADIXCHAR);
    locale.thousand_separator = system.Item(THOUSEP);
  } else if (const auto named = Locale::Named(Utf16(name))) {
    locale.decimal_separator = named->decimal_separator;
    locale.thousand_separator = named->thousand_separator;
  }
}

void ApplyDates(Locale& locale) {
  const std::string name = NameInEnvironment("LC_TIME");
  if (IsPlain(name)) return;
  const SystemCategory system(LC_TIME_MASK | LC_CTYPE_MASK, name.c_str());
  const auto named = Locale::Named(Utf16(name));
  if (named) {
    locale.date_order = named->date_order;
    locale.date_separator = named->date_separator;
  }
  if (system.IsKnown()) ApplyDateFormat(DateFormat(system.Item(D_FMT)), locale);
}

void ApplyWords(Locale& locale) {
  const auto named = Locale::Named(Utf16(NameInEnvironment("LC_MESSAGES")));
  if (!named) return;
  locale.true_word = named->true_word;
  locale.false_word = named->false_word;
}

Locale ReadFromEnvironment() {
  Locale locale;
  ApplyNumbers(locale);
  ApplyDates(locale);
  ApplyWords(locale);
  return locale;
}

}  // namespace

const Locale& Locale::System() {
  static const Locale locale = WithinMemory(ReadFromEnvironment);
  return locale;
}

}  // namespace quorl
