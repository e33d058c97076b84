// Texts generated from the catalogue: the type description, the class tables of the C header and
// the catalogue for machines.
#pragma once

#include <string>

#include "quorl/abi/quorl.h"

namespace quorl::tools {

/// The library as interface-definition text, UTF-8, from what it tells at run time alone.
std::string TypeDescription(QuorlLibraryInfo& library);

/// Enumerations, identifiers and tables of all classes as plain C.
std::string HeaderTables();

/// Everything that a generator of bindings needs, as JSON; docs/catalogue.md describes its form.
std::string CatalogueJson();

}  // namespace quorl::tools
