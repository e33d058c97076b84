// The fields of a line of values with a separator between them.
#pragma once

#include <vector>

#include "quorl/runtime/types.hpp"

namespace amounts {

/// The fields of a line; one in quotes may hold the separator, and a quote written twice. Each is
/// put together where it stands in the line, since it is no longer there than it was. Throws a
/// Problem for a quote that does not end.
void FieldsOf(quorl::String& line, char16_t separator, std::vector<quorl::StringView>& fields);

/// The first of the separators, tab, semicolon and comma, that stands outside quotes.
char16_t SeparatorOf(quorl::StringView first_line);

/// Of a line such as "sep=;", 0 for any other. Throws a Problem for one that is no separator.
char16_t NamedSeparator(quorl::StringView line);

}  // namespace amounts
