#include "quorl/abi/internal/machine_classes.hpp"

#include <algorithm>
#include <fstream>
#include <vector>

#include "quorl/abi/internal/guid.hpp"
#include "quorl/abi/internal/library_file.hpp"
#include "quorl/runtime/text_case.hpp"
#include "quorl/runtime/utf.hpp"

namespace quorl::abi {
namespace {

struct MachineClass {
  String progid;
  GUID identifier;
};

struct MachineClasses {
  std::string folder;
  std::vector<MachineClass> classes;
};

MachineClasses ReadList() {
  const std::string file = LibraryFileOf(reinterpret_cast<const void*>(&ReadList));
  MachineClasses read{.folder = file.substr(0, file.rfind('/') + 1), .classes = {}};
  std::ifstream list;
  // Memory that runs out raises, so that no part of a list is kept for the whole.
  list.exceptions(std::ios::badbit);
  list.open(read.folder + "quorl/classes");
  for (std::string line; std::getline(list, line);) {
    const std::size_t blank = line.find(' ');
    MachineClass row{Utf16(line.substr(0, blank)), {}};
    if (blank != std::string::npos && ReadGuidText(Utf16(line.substr(blank + 1)), row.identifier)) {
      read.classes.push_back(std::move(row));
    }
  }
  return read;
}

const MachineClasses& List() {
  static const MachineClasses list = ReadList();
  return list;
}

}  // namespace

bool FindMachineClass(StringView progid, GUID& out) {
  const auto& classes = List().classes;
  const auto found = std::ranges::find_if(
      classes, [&](const MachineClass& row) { return EqualsIgnoringCase(row.progid, progid); });
  if (found == classes.end()) return false;
  out = found->identifier;
  return true;
}

std::string FindMachineLibrary(const GUID& class_identifier) {
  const MachineClasses& list = List();
  const bool is_listed = std::ranges::find(list.classes, class_identifier,
                                           &MachineClass::identifier) != list.classes.end();
  return is_listed ? list.folder + "libquorl.so" : std::string();
}

}  // namespace quorl::abi
