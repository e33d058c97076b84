#include <cstdint>
#include <sstream>
#include <stdexcept>
#include <vector>

#include "quorl/abi/internal/bstr.hpp"
#include "quorl/abi/internal/guid.hpp"
#include "quorl/abi/internal/ref_counted.hpp"
#include "quorl/abi/internal/values.hpp"
#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/utf.hpp"
#include "tools/description.hpp"
#include "tools/type_names.hpp"

namespace quorl::tools {
namespace {

// An alias that stands for a former version: hidden.
constexpr std::uint16_t kAliasFlags = 0x10;
constexpr std::uint16_t kApplicationObject = 1;

using ClassInfo = abi::Reference<QuorlTypeInfo>;

void Require(HRESULT code) {
  if (code != S_OK) throw std::runtime_error("type information: " + std::to_string(code));
}

// What a slot of a type information object puts out.
template <class Out, class Self, class Slot, class... Places>
Out Read(Self* self, Slot slot, Places... places) {
  Out out{};
  Require(slot(self, places..., &out));
  return out;
}

std::string Taken(BSTR text) {
  std::string taken = Utf8(abi::ViewOf(text));
  SysFreeString(text);
  return taken;
}

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

std::string Version(std::uint32_t major, std::uint32_t minor) {
  return "version(" + std::to_string(major) + "." + std::to_string(minor) + ")";
}

// ------------------------------------------------------------------------------------- members

struct Member {
  std::uint32_t index;
  QuorlFunction known;
};

std::string TypeText(const ClassInfo& info, const Member& member, std::uint32_t argument,
                     std::uint16_t type) {
  const auto published =
      Read<BSTR>(info.Get(), info.Get()->table->GetTypeName, member.index, argument);
  return DescribedType(static_cast<VariantType>(type & ~VT_BYREF), Taken(published),
                       (type & VT_BYREF) != 0);
}

std::string DefaultText(const VARIANT& value) {
  if (value.vt == VT_ERROR) return "";
  const std::string text = Utf8(ToString(abi::FromBinary(value)));
  return ", defaultvalue(" + (value.vt == VT_BSTR ? "\"" + text + "\"" : text) + ")";
}

std::string ArgumentText(const ClassInfo& info, const Member& member, std::uint32_t place) {
  auto argument =
      Read<QuorlArgument>(info.Get(), info.Get()->table->GetArgument, member.index, place);
  const auto otherwise = abi::OwnedVariant::TakenFrom(&argument.default_value);
  const std::string name = Taken(argument.name);
  std::string text = (argument.type & VT_BYREF) != 0 ? "[in, out" : "[in";
  if (argument.optional != 0) text += ", optional" + DefaultText(otherwise.Get());
  return text + "] " + TypeText(info, member, place, argument.type) + " " + name;
}

std::string MemberAttributes(const Member& member, const std::string& help) {
  std::string text = "id(" + std::to_string(member.known.id) + "), slot(" +
                     std::to_string(member.known.table_slot) + ")";
  if (member.known.invoke_kind == DISPATCH_PROPERTYGET) text += ", propget";
  if (member.known.invoke_kind == DISPATCH_PROPERTYPUT) text += ", propput";
  if (!help.empty()) text += ", helpstring(\"" + help + "\")";
  return text;
}

void WriteMember(std::ostream& out, const ClassInfo& info, const Member& member) {
  BSTR name = nullptr;
  BSTR help = nullptr;
  Require(info.Get()->table->GetDocumentation(info.Get(), member.known.id, &name, &help));
  out << "    [" << MemberAttributes(member, Taken(help)) << "]\n    HRESULT " << Taken(name)
      << "(";
  const char* separator = "";
  for (std::uint32_t place = 0; place < member.known.argument_count; ++place) {
    out << separator << ArgumentText(info, member, place);
    separator = ", ";
  }
  if (member.known.result_type != VT_EMPTY) {
    out << separator << "[out, retval] "
        << TypeText(info, member, QUORL_RESULT, member.known.result_type) << "* result";
  }
  out << ");\n";
}

std::vector<Member> InListingOrder(const ClassInfo& info, std::uint32_t count) {
  std::vector<Member> listed(count);
  for (std::uint32_t index = 0; index < count; ++index) {
    const auto known = Read<QuorlFunction>(info.Get(), info.Get()->table->GetFunction, index);
    listed.at(known.listing_place) = {index, known};
  }
  return listed;
}

// ------------------------------------------------------------------------------------- classes

std::string InterfaceHead(const QuorlTypeAttributes& attributes, std::uint32_t version,
                          const GUID& identifier) {
  return "\n  [uuid(" + Identifier(identifier) + "), " +
         Version(attributes.major_version, version) + ", hidden, ";
}

void WriteInterfaces(std::ostream& out, const ClassInfo& info,
                     const QuorlTypeAttributes& attributes, const std::string& current) {
  out << InterfaceHead(attributes, attributes.minor_version, attributes.interface_identifier)
      << "dual, nonextensible, automation, " << Flags(attributes.interface_flags)
      << "]\n  interface " << current << " : IDispatch {\n";
  for (const Member& member : InListingOrder(info, attributes.functions)) {
    WriteMember(out, info, member);
  }
  out << "  };\n";
  for (std::uint32_t version = 0; version < attributes.minor_version; ++version) {
    const auto former = Read<QuorlInterface>(info.Get(), info.Get()->table->GetInterface, version);
    out << InterfaceHead(attributes, version, former.identifier) << Flags(kAliasFlags)
        << "]\n  typedef " << current << " " << Taken(former.name) << ";\n";
  }
}

void WriteClass(std::ostream& out, const ClassInfo& info) {
  const auto& table = *info.Get()->table;
  const auto attributes = Read<QuorlTypeAttributes>(info.Get(), table.GetTypeAttributes);
  const std::string current =
      Taken(Read<QuorlInterface>(info.Get(), table.GetInterface, attributes.minor_version).name);
  BSTR name = nullptr;
  Require(table.GetDocumentation(info.Get(), -1, &name, nullptr));
  WriteInterfaces(out, info, attributes, current);
  const bool is_global = (attributes.class_flags & kApplicationObject) != 0;
  out << "\n  [uuid(" << Identifier(attributes.class_identifier) << "), "
      << Version(attributes.major_version, attributes.minor_version)
      << (is_global ? ", appobject, creatable, predeclared, " : ", creatable, ")
      << Flags(attributes.class_flags) << "]\n  coclass " << Taken(name)
      << " {\n    [default] interface " << current << ";\n  };\n";
}

void WriteEnumeration(std::ostream& out, QuorlLibraryInfo* library, std::uint32_t index) {
  const auto& table = *library->table;
  const auto enumeration = Read<QuorlEnumeration>(library, table.GetEnumeration, index);
  out << "\n  typedef enum {\n";
  for (std::uint32_t place = 0; place < enumeration.members; ++place) {
    const auto member = Read<QuorlEnumerator>(library, table.GetEnumerator, index, place);
    out << "    " << Taken(member.name) << " = " << member.value << ",\n";
  }
  out << "  } " << Taken(enumeration.name) << ";\n";
}

}  // namespace

std::string TypeDescription(QuorlLibraryInfo& library) {
  const auto& table = *library.table;
  const auto attributes = Read<QuorlLibraryAttributes>(&library, table.GetLibraryAttributes);
  std::ostringstream out;
  out << "// Generated from the catalogue by the program describe; do not edit.\n"
      << "//\n"
      << "// Members stand in listing order; slot() is their place in the table of members, which "
         "is\n"
      << "// what hosts rely on.\n\n"
      << "[uuid(" << Identifier(attributes.identifier) << "), "
      << Version(attributes.major_version, attributes.minor_version) << "]\nlibrary "
      << Taken(attributes.name) << " {\n";
  for (std::uint32_t i = 0; i < attributes.enumerations; ++i) WriteEnumeration(out, &library, i);
  for (std::uint32_t i = 0; i < attributes.classes; ++i) {
    WriteClass(out, ClassInfo::Adopt(Read<QuorlTypeInfo*>(&library, table.GetClass, i)));
  }
  out << "};\n";
  return out.str();
}

}  // namespace quorl::tools
