// How numbers, dates and truth values are written and read.
//
// Conversions use `Locale::Current()`, which is the system's until a host puts another in its
// place. The system's is read once from the process environment, without touching the C library's
// global locale. Replacing the current locale while another thread converts is outside what this
// offers; reading it from several threads is fine.
#pragma once

#include <optional>

#include "quorl/runtime/types.hpp"

namespace quorl {

enum class DateOrder { kDayMonthYear, kMonthDayYear, kYearMonthDay };

/// A plain value; any separator may be empty or longer than one character. Dates and times that are
/// written with an empty separator cannot be read back.
struct QUORL_API Locale {
  String decimal_separator = u".";
  String thousand_separator = u",";
  DateOrder date_order = DateOrder::kYearMonthDay;
  String date_separator = u"-";
  String time_separator = u":";
  String true_word = u"True";
  String false_word = u"False";

  /// The locale of the process environment (LC_ALL, LC_NUMERIC, LC_TIME, LANG). Where it names
  /// none, the plain C locale, or one that neither the system nor `Named` knows: decimal point,
  /// comma for thousands, dates year-month-day, which is also what a default Locale has.
  static const Locale& System();

  /// A language and a country, "fr-BE" or "fr_BE", in any case; a suffix such as ".UTF-8" is
  /// ignored. Languages fr, nl, de, en; countries BE, FR, NL, DE, CH, LU, GB, US; none for any
  /// other name. Needs no locale files of the system.
  static std::optional<Locale> Named(StringView name);

  /// What conversions use.
  static const Locale& Current();
  /// Makes `locale` the current one until the next call. Not for use within a `LocaleScope`, whose
  /// end brings back what was current before it.
  static void SetCurrent(Locale locale);
  /// Makes the system's the current one again.
  static void UseSystem() noexcept;

  friend bool operator==(const Locale&, const Locale&) = default;
};

/// Puts a locale in place for as long as the scope lasts, then the former one again. Scopes nest.
///
///     LocaleScope french(*Locale::Named(u"fr-FR"));
///     ToString(0.5);  // u"0,5"
class QUORL_API LocaleScope {
 public:
  explicit LocaleScope(Locale locale);
  ~LocaleScope();
  LocaleScope(const LocaleScope&) = delete;
  LocaleScope& operator=(const LocaleScope&) = delete;

 private:
  Locale locale_;
  const Locale* former_;
};

}  // namespace quorl
