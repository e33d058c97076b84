// Invoices of a file, written out as a table.
#pragma once

#include <string>

namespace amounts {

/// True if every line was written; what is wrong with one leaves the others as they are. "-" is
/// standard input.
bool PrintFile(const std::string& name);

}  // namespace amounts
