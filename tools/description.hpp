// Texts generated from the catalogue: the type description, the class tables of the C header and
// the catalogue for machines.
#pragma once

#include <string>

namespace quorl::tools {

/// The library as interface-definition text, UTF-8.
std::string TypeDescription();

/// Enumerations, identifiers and tables of all classes as plain C.
std::string HeaderTables();

/// Everything that a generator of bindings needs, as JSON; docs/catalogue.md describes its form.
std::string CatalogueJson();

}  // namespace quorl::tools
