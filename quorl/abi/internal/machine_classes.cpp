#include "quorl/abi/internal/machine_classes.hpp"

#include <algorithm>
#include <fstream>
#include <string_view>
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

// Whether a line tells a class, and which.
bool ReadLine(std::string_view line, MachineClass& row) {
  const std::size_t blank = line.find(' ');
  if (blank == std::string_view::npos) return false;
  row.progid = Utf16(line.substr(0, blank));
  return ReadGuidText(Utf16(line.substr(blank + 1)), row.identifier);
}

// A list that cannot be read is none. Memory that runs out is raised, so that no part of a list is
// kept for the whole.
std::vector<MachineClass> ReadList(const std::string& path) try {
  std::vector<MachineClass> classes;
  std::ifstream list(path);
  list.exceptions(std::ios::badbit);
  MachineClass row;
  for (std::string line; std::getline(list, line);) {
    if (ReadLine(line, row)) classes.push_back(row);
  }
  return classes;
} catch (const std::ios::failure&) {
  return {};
}

struct MachineClasses {
  std::string folder;
  std::vector<MachineClass> classes;
};

MachineClasses ListBesideThisLibrary() {
  const std::string file = LibraryFileOf(reinterpret_cast<const void*>(&ListBesideThisLibrary));
  // Without a place of its own it must not come to that of the process.
  if (file.empty()) return {};
  const std::string folder = file.substr(0, file.rfind('/') + 1);
  return {folder, ReadList(folder + "quorl/classes")};
}

const MachineClasses& List() {
  static const MachineClasses list = ListBesideThisLibrary();
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
