// How numbers, dates and truth values are written and read.
//
// Conversions use `Locale::Current()`, which is the system's until a host puts another in its
// place. That can be done at any time, also while other threads convert: each conversion keeps to
// the locale that was current when it began, and a reference that was taken stays good to the end
// of the process.
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

  /// The locale of the process environment, read once, without touching the C library's global
  /// locale. Of these variables the first that is set and not empty counts: LC_ALL, then
  /// LC_NUMERIC for the separators of numbers, LC_TIME for order and separators of dates and times,
  /// LC_MESSAGES for the truth words, then LANG.
  ///
  /// A name of a language in `Named` gives the same on every machine, whatever locales its C
  /// library has: what `Named` gives, and in any other country, or without one, the language's
  /// usual form (fr as fr-FR, nl as nl-NL, de as de-DE, en as en-GB). A name of another language
  /// gives what the C library has under it, with True and False for words. No name, C, POSIX, and a
  /// name that nobody knows give a default Locale: decimal point, comma for thousands, dates
  /// year-month-day. Failure 7 where memory does not suffice to read it.
  static const Locale& System();

  /// A language and a country, "fr-BE" or "fr_BE", in any case; a suffix such as ".UTF-8" is
  /// ignored. Languages fr, nl, de, en; countries BE, FR, NL, DE, CH, LU, GB, US; none for any
  /// other name. Needs no locale files of the system. Failure 7 where memory does not hold it.
  static std::optional<Locale> Named(StringView name);

  /// What conversions use. Failure 7 as for `System`.
  static const Locale& Current();
  /// Makes `locale` the current one until the next call. Each different locale that was ever made
  /// current is kept. Not for use within a `LocaleScope`, whose end brings back what was current
  /// before it. Failure 7 where memory does not hold it; nothing has changed then.
  static void SetCurrent(const Locale& locale);
  /// Makes the system's the current one again.
  static void UseSystem() noexcept;

  friend bool operator==(const Locale&, const Locale&) = default;
};

/// Puts a locale in place for as long as the scope lasts, then the former one again. Scopes nest;
/// those of two threads must not overlap, since there is one current locale for all. Failure 7 as
/// for `Locale::SetCurrent`.
///
///     LocaleScope french(*Locale::Named(u"fr-FR"));
///     ToString(0.5);  // u"0,5"
class QUORL_API LocaleScope {
 public:
  explicit LocaleScope(const Locale& locale);
  ~LocaleScope();
  LocaleScope(const LocaleScope&) = delete;
  LocaleScope& operator=(const LocaleScope&) = delete;

 private:
  const Locale* former_;
};

}  // namespace quorl
