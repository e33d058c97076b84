// Texts generated from the catalogue: the type description and the class tables of the C header.
#pragma once

#include <string>

namespace quorl::tools {

/// The library as interface-definition text, UTF-8.
std::string TypeDescription();

/// Enumerations, identifiers and tables of all classes as plain C.
std::string HeaderTables();

}  // namespace quorl::tools
