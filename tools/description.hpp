// Texts generated from the catalogue: the type description, the class tables of the C header, the
// catalogue for machines and the list of classes.
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

/// A line for each class, its name as hosts know it and its identifier: what an installation for
/// every user has as quorl/classes.
std::string ClassList();

}  // namespace quorl::tools
