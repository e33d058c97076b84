// Writes what is generated from the catalogue to standard output.
//
//   describe idl      the type description, docs/quorl.idl
//   describe json     the catalogue for machines, docs/quorl.json
//   describe classes  the names and identifiers of the classes, docs/quorl.classes
//   describe tables   the class tables of quorl/abi/quorl.h, between its two marks
#include <iostream>
#include <string_view>

#include "quorl/abi/internal/ref_counted.hpp"
#include "quorl/frame/internal/library_info.hpp"
#include "tools/description.hpp"

int main(int count, char** arguments) {
  const std::string_view what = count == 2 ? arguments[1] : "";
  if (what == "idl") {
    const auto library =
        quorl::abi::Reference<QuorlLibraryInfo>::Adopt(quorl::frame::NewLibraryInfo());
    std::cout << quorl::tools::TypeDescription(*library.Get());
  } else if (what == "json") {
    std::cout << quorl::tools::CatalogueJson();
  } else if (what == "classes") {
    std::cout << quorl::tools::ClassList();
  } else if (what == "tables") {
    std::cout << quorl::tools::HeaderTables();
  } else {
    std::cerr << "describe idl | json | classes | tables\n";
    return 2;
  }
  return 0;
}
