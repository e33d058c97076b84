#include <algorithm>
#include <iomanip>
#include <sstream>
#include <vector>

#include "quorl/abi/internal/guid.hpp"
#include "quorl/frame/internal/catalogue.hpp"
#include "quorl/frame/internal/enumerations.hpp"
#include "quorl/frame/internal/identifiers.hpp"
#include "quorl/frame/internal/listing.hpp"
#include "quorl/runtime/utf.hpp"
#include "tools/description.hpp"
#include "tools/type_names.hpp"

namespace quorl::tools {

using namespace frame;
namespace {

// An alias that stands for a former version: hidden.
constexpr std::uint16_t kAliasFlags = 0x10;

// Without its braces.
std::string Identifier(const GUID& guid) {
  const std::string text = Utf8(abi::GuidText(guid));
  return text.substr(1, text.size() - 2);
}

std::string Flags(std::uint16_t flags) {
  std::ostringstream text;
  text << "flags(0x" << std::hex << flags << ")";
  return text.str();
}

std::string Version(std::size_t minor) { return "version(" + Utf8(VersionText(minor)) + ")"; }

std::string CurrentName(const ClassRow& row) {
  return Utf8(InterfaceName(row, row.MinorVersion()));
}

std::string DefaultText(const Argument& argument) {
  const DefaultValue& otherwise = argument.otherwise;
  if (otherwise.kind == DefaultValue::Kind::kNumber) {
    return ", defaultvalue(" + std::to_string(otherwise.number) + ")";
  }
  if (otherwise.kind == DefaultValue::Kind::kText) {
    return ", defaultvalue(\"" + Utf8(otherwise.text) + "\")";
  }
  return "";
}

std::string ArgumentText(const Argument& argument, const TypeRow& type) {
  std::string text = type.by_reference ? "[in, out" : "[in";
  if (argument.IsOptional()) text += ", optional" + DefaultText(argument);
  return text + "] " + DescribedType(type) + " " + Utf8(argument.name);
}

std::string MemberAttributes(const ClassRow& row, const MemberRow& member) {
  const auto place = static_cast<std::size_t>(&member - row.members.data());
  std::string text = "id(" + std::to_string(IdentifierOf(row, member)) + "), slot(" +
                     std::to_string(kCommonSlotCount + place) + ")";
  if (member.kind == MemberKind::kGet) text += ", propget";
  if (member.kind == MemberKind::kPut) text += ", propput";
  if (!member.help.empty()) text += ", helpstring(\"" + Utf8(member.help) + "\")";
  return text;
}

void WriteMember(std::ostream& out, const ClassRow& row, const MemberRow& member) {
  out << "    [" << MemberAttributes(row, member) << "]\n    HRESULT " << Utf8(member.name) << "(";
  const char* separator = "";
  for (std::size_t i = 0; i < member.arguments.count; ++i) {
    out << separator << ArgumentText(member.arguments.elements[i], member.types.elements[i]);
    separator = ", ";
  }
  if (member.result.type != VariantType::kEmpty) {
    out << separator << "[out, retval] " << DescribedType(member.result) << "* result";
  }
  out << ");\n";
}

std::vector<const MemberRow*> InListingOrder(const ClassRow& row) {
  std::vector<const MemberRow*> listed(row.members.size());
  for (const MemberRow& member : row.members) listed[ListingPlaceOf(row, member)] = &member;
  return listed;
}

void WriteInterface(std::ostream& out, const ClassRow& row) {
  out << "\n  [uuid(" << Identifier(row.CurrentInterface()) << "), " << Version(row.MinorVersion())
      << ", hidden, dual, nonextensible, automation, " << Flags(kInterfaceFlags)
      << "]\n  interface " << CurrentName(row) << " : IDispatch {\n";
  for (const MemberRow* member : InListingOrder(row)) WriteMember(out, row, *member);
  out << "  };\n";
}

void WriteAliases(std::ostream& out, const ClassRow& row) {
  for (std::size_t version = 0; version < row.MinorVersion(); ++version) {
    out << "\n  [uuid(" << Identifier(row.interfaces[version].identifier) << "), "
        << Version(version) << ", hidden, " << Flags(kAliasFlags) << "]\n  typedef "
        << CurrentName(row) << " " << Utf8(InterfaceName(row, version)) << ";\n";
  }
}

void WriteClass(std::ostream& out, const ClassRow& row) {
  const bool is_global = row.kind == ClassKind::kGlobal;
  out << "\n  [uuid(" << Identifier(row.identifier) << "), " << Version(row.MinorVersion())
      << (is_global ? ", appobject, creatable, predeclared, " : ", creatable, ")
      << Flags(ClassFlags(row)) << "]\n  coclass " << Utf8(row.name)
      << " {\n    [default] interface " << CurrentName(row) << ";\n  };\n";
}

void WriteEnumeration(std::ostream& out, const EnumerationRow& row) {
  out << "\n  typedef enum {\n";
  for (const EnumeratorRow& member : row.members) {
    out << "    " << Utf8(member.name) << " = " << member.value << ",\n";
  }
  out << "  } " << Utf8(row.name) << ";\n";
}

}  // namespace

std::string TypeDescription() {
  std::ostringstream out;
  out << "// Generated from the catalogue by the program describe; do not edit.\n"
      << "//\n"
      << "// Members stand in listing order; slot() is their place in the table of members, which "
         "is\n"
      << "// what hosts rely on.\n\n"
      << "[uuid(" << Identifier(kLibraryIdentifier) << "), version(1.0)]\nlibrary "
      << Utf8(kLibraryName) << " {\n";
  for (const EnumerationRow& row : kEnumerations) WriteEnumeration(out, row);
  for (const ClassRow& row : Catalogue()) {
    WriteInterface(out, row);
    WriteAliases(out, row);
    WriteClass(out, row);
  }
  out << "};\n";
  return out.str();
}

}  // namespace quorl::tools
