#include <cstdio>
#include <sstream>

#include "quorl/frame/internal/catalogue.hpp"
#include "quorl/frame/internal/enumerations.hpp"
#include "quorl/frame/internal/identifiers.hpp"
#include "quorl/runtime/utf.hpp"
#include "tools/description.hpp"
#include "tools/type_names.hpp"

namespace quorl::tools {

using namespace frame;
namespace {

std::string Initialiser(const GUID& guid) {
  char text[128];
  const std::uint8_t* last = guid.Data4;
  std::snprintf(text, sizeof(text),
                "{\n    0x%08X, 0x%04X, 0x%04X, {0x%02X, 0x%02X, 0x%02X, 0x%02X, 0x%02X, 0x%02X, "
                "0x%02X, 0x%02X}}",
                guid.Data1, guid.Data2, guid.Data3, last[0], last[1], last[2], last[3], last[4],
                last[5], last[6], last[7]);
  return text;
}

std::string SlotName(const MemberRow& member) {
  const std::string name = Utf8(member.name);
  if (member.kind == MemberKind::kGet) return "get_" + name;
  if (member.kind == MemberKind::kPut) return "put_" + name;
  return name;
}

void WriteSlot(std::ostream& out, const std::string& self, const MemberRow& member) {
  out << "  HRESULT (*" << SlotName(member) << ")(" << self << "* self";
  for (std::size_t i = 0; i < member.arguments.count; ++i) {
    out << ", " << SlotArgumentType(member.types.elements[i])
        << Utf8(member.arguments.elements[i].name);
  }
  if (member.result.type != VariantType::kEmpty) {
    out << ", " << SlotResultType(member.result) << "* result";
  }
  out << ");\n";
}

void WriteIdentifier(std::ostream& out, const std::string& symbol, const GUID& guid) {
  out << "static const GUID QUORL_" << symbol << " = " << Initialiser(guid) << ";\n";
}

// QUORL_IID_Math is the current interface, QUORL_IID_Math_v0 the oldest former one.
void WriteIdentifiers(std::ostream& out, const ClassRow& row) {
  WriteIdentifier(out, "CLSID_" + Utf8(row.name), row.identifier);
  const std::string current = "IID_" + Utf8(row.name);
  WriteIdentifier(out, current, row.CurrentInterface());
  for (std::size_t version = 0; version < row.MinorVersion(); ++version) {
    WriteIdentifier(out, current + "_v" + std::to_string(version),
                    row.interfaces[version].identifier);
  }
}

void WriteClass(std::ostream& out, const ClassRow& row) {
  const std::string self = "Quorl" + Utf8(row.name);
  out << "\n/* Quorl." << Utf8(row.name)
      << (row.kind == ClassKind::kGlobal ? ", a global class */\n" : ", made by its hosts */\n");
  WriteIdentifiers(out, row);
  out << "struct " << self << "Table {\n  QUORL_DISPATCH_SLOTS(" << self << ");\n";
  for (const MemberRow& member : row.members) WriteSlot(out, self, member);
  out << "};\n";
}

void WriteForCpp(std::ostream& out, const EnumerationRow& row) {
  const std::string name = Utf8(row.name);
  out << "\ntypedef quorl::" << name << " Quorl" << name << ";\n";
  for (const EnumeratorRow& member : row.members) {
    out << "using quorl::" << Utf8(member.name) << ";\n";
  }
}

void WriteForC(std::ostream& out, const EnumerationRow& row) {
  out << "\nenum Quorl" << Utf8(row.name) << " {\n";
  const char* separator = "";
  for (const EnumeratorRow& member : row.members) {
    out << separator << "  " << Utf8(member.name) << " = ";
    // The lowest number has no literal of its own in C.
    if (member.value == INT32_MIN) {
      out << "-2147483647 - 1";
    } else {
      out << member.value;
    }
    separator = ",\n";
  }
  out << "\n};\n";
}

// In C++ they are the enumerations of the C++ headers, so that a host may include both.
void WriteEnumerations(std::ostream& out) {
  out << "#ifdef __cplusplus\n";
  for (const EnumerationRow& row : kEnumerations) WriteForCpp(out, row);
  out << "\n#else\n";
  for (const EnumerationRow& row : kEnumerations) WriteForC(out, row);
  out << "\n#endif\n";
}

}  // namespace

std::string HeaderTables() {
  std::ostringstream out;
  out << "/* clang-format off */\n";
  WriteEnumerations(out);
  out << "\n";
  WriteIdentifier(out, "LIBID", kLibraryIdentifier);
  out << "\n";
  // All names first: one class's table may name another's.
  for (const ClassRow& row : Catalogue()) out << "QUORL_OBJECT(Quorl" << Utf8(row.name) << ");\n";
  for (const ClassRow& row : Catalogue()) WriteClass(out, row);
  out << "/* clang-format on */\n";
  return out.str();
}

}  // namespace quorl::tools
