// The locale of the process environment.

#include <langinfo.h>

#include <array>
#include <clocale>
#include <cstdlib>
#include <string>
#include <string_view>

#include "quorl/runtime/ansi.hpp"
#include "quorl/runtime/internal/locale_forms.hpp"
#include "quorl/runtime/internal/text.hpp"
#include "quorl/runtime/internal/within_memory.hpp"
#include "quorl/runtime/utf.hpp"

namespace quorl {

using namespace internal;
namespace {

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

// A category of a locale of the C library.
class SystemCategory {
 public:
  // The character set of a category's texts is that of LC_CTYPE, so both are asked for together.
  SystemCategory(int mask, const std::string& name)
      : locale_(IsPlain(name) ? nullptr : newlocale(mask | LC_CTYPE_MASK, name.c_str(), nullptr)) {}
  ~SystemCategory() {
    if (locale_ != nullptr) freelocale(locale_);
  }
  SystemCategory(const SystemCategory&) = delete;
  SystemCategory& operator=(const SystemCategory&) = delete;

  // False for the plain C locale, and where the system lacks the locale.
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

// A format such as "%d/%m/%Y", taken apart: "dmY", and what stands after its first field and after
// its second.
struct FieldFormat {
  String order;
  std::array<String, 2> separators;

  explicit FieldFormat(StringView format) {
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

void ApplyNumbers(Locale& locale) {
  const std::string name = NameInEnvironment("LC_NUMERIC");
  if (const auto usual = UsualLocale(Utf16(name))) {
    locale.decimal_separator = usual->decimal_separator;
    locale.thousand_separator = usual->thousand_separator;
  } else if (const SystemCategory system(LC_NUMERIC_MASK, name); system.IsKnown()) {
    locale.decimal_separator = system.Item(RADIXCHAR);
    locale.thousand_separator = system.Item(THOUSEP);
  }
}

void ApplyDatesAndTimes(Locale& locale) {
  const std::string name = NameInEnvironment("LC_TIME");
  if (const auto usual = UsualLocale(Utf16(name))) {
    locale.date_order = usual->date_order;
    locale.date_separator = usual->date_separator;
    locale.time_separator = usual->time_separator;
  } else if (const SystemCategory system(LC_TIME_MASK, name); system.IsKnown()) {
    ApplyDateFormat(system.Item(D_FMT), locale);
    ApplyTimeFormat(system.Item(T_FMT), locale);
  }
}

// The C library knows no truth words.
void ApplyWords(Locale& locale) {
  if (const auto usual = UsualLocale(Utf16(NameInEnvironment("LC_MESSAGES")))) {
    locale.true_word = usual->true_word;
    locale.false_word = usual->false_word;
  }
}

}  // namespace

Locale internal::LocaleOfEnvironment() {
  Locale locale;
  ApplyNumbers(locale);
  ApplyDatesAndTimes(locale);
  ApplyWords(locale);
  return locale;
}

void internal::ApplyDateFormat(StringView format, Locale& locale) {
  struct Form {
    StringView order;
    DateOrder date_order;
    StringView separator;  // empty for the one that stands in the format
  };
  static constexpr std::array kForms{
      Form{u"D", DateOrder::kMonthDayYear, u"/"},  Form{u"F", DateOrder::kYearMonthDay, u"-"},
      Form{u"dmY", DateOrder::kDayMonthYear, u""}, Form{u"mdY", DateOrder::kMonthDayYear, u""},
      Form{u"Ymd", DateOrder::kYearMonthDay, u""},
  };
  const FieldFormat parsed(format);
  for (const Form& form : kForms) {
    if (parsed.order != form.order) continue;
    if (form.separator.empty() && !parsed.HasOneSeparator()) return;
    locale.date_order = form.date_order;
    locale.date_separator = form.separator.empty() ? parsed.separators[0] : form.separator;
  }
}

void internal::ApplyTimeFormat(StringView format, Locale& locale) {
  const FieldFormat parsed(format);
  if (parsed.order == u"HMS" && parsed.HasOneSeparator()) {
    locale.time_separator = parsed.separators[0];
  }
}

const Locale& Locale::System() {
  // Never freed, as every locale that was current: see locale.cpp.
  static const Locale* const system =
      WithinMemory([] { return new Locale(LocaleOfEnvironment()); });
  return *system;
}

}  // namespace quorl
