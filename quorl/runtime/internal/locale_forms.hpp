// Where the parts of the system's locale come from: our own tables by name, and the formats of the
// C library for languages that the tables lack.
#pragma once

#include <optional>

#include "quorl/runtime/locale.hpp"

namespace quorl::internal {

/// As `Locale::Named`, but a language of the tables gives its usual form in any other country and
/// without one: fr as in FR, nl as in NL, de as in DE, en as in GB. None for any other language.
std::optional<Locale> UsualLocale(StringView name);

/// The locale that the environment names now; see `Locale::System`, which asks once.
Locale LocaleOfEnvironment();

/// Puts order and separator of a date format of the C library in place, such as "%d/%m/%Y"; a
/// format of another form, or with different separators, leaves `locale` as it was.
void ApplyDateFormat(StringView format, Locale& locale);
/// The same for the separator of a time format, such as "%H.%M.%S".
void ApplyTimeFormat(StringView format, Locale& locale);

}  // namespace quorl::internal
