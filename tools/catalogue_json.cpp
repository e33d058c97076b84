#include <array>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "quorl/abi/internal/guid.hpp"
#include "quorl/frame/internal/catalogue.hpp"
#include "quorl/frame/internal/enumerations.hpp"
#include "quorl/frame/internal/identifiers.hpp"
#include "quorl/frame/internal/listing.hpp"
#include "quorl/runtime/internal/join.hpp"
#include "quorl/runtime/raised_error.hpp"
#include "quorl/runtime/utf.hpp"
#include "tools/description.hpp"
#include "tools/type_names.hpp"

namespace quorl::tools {

using namespace frame;
namespace {

// ----------------------------------------------------------------------------- the form of JSON

constexpr int kFormVersion = 1;

std::string Concat(std::initializer_list<std::string_view> parts) {
  std::string text;
  for (const std::string_view part : parts) text += part;
  return text;
}

std::string Quoted(StringView text) {
  std::string quoted = "\"";
  for (const char byte : Utf8(text)) {
    if (byte == '"' || byte == '\\') quoted += '\\';
    quoted += byte;
  }
  return quoted + '"';
}

std::string Number(std::int64_t number) { return std::to_string(number); }

// A field without text is left out.
using Field = std::pair<std::string_view, std::string>;

std::string FieldsOf(std::initializer_list<Field> fields, std::string_view separator) {
  std::string text;
  for (const auto& [name, value] : fields) {
    if (value.empty()) continue;
    text += Concat({text.empty() ? "" : separator, "\"", name, "\": ", value});
  }
  return text;
}

std::string ObjectOf(std::initializer_list<Field> fields) {
  return Concat({"{", FieldsOf(fields, ", "), "}"});
}

std::string NewLine(std::size_t depth) { return Concat({"\n", std::string(2 * depth, ' ')}); }

// One field a line.
std::string LongObjectOf(std::initializer_list<Field> fields, std::size_t depth) {
  const std::string line = NewLine(depth + 1);
  return Concat({"{", line, FieldsOf(fields, Concat({",", line})), NewLine(depth), "}"});
}

std::string Joined(const std::vector<std::string>& elements, std::string_view separator) {
  std::string text;
  for (const std::string& element : elements) {
    text += Concat({text.empty() ? "" : separator, element});
  }
  return text;
}

std::string ListOf(const std::vector<std::string>& elements) {
  return Concat({"[", Joined(elements, ", "), "]"});
}

// One element a line.
std::string LinesOf(const std::vector<std::string>& elements, std::size_t depth) {
  if (elements.empty()) return "[]";
  const std::string line = NewLine(depth + 1);
  return Concat({"[", line, Joined(elements, Concat({",", line})), NewLine(depth), "]"});
}

template <class Rows, class Write>
std::vector<std::string> Each(const Rows& rows, Write write) {
  std::vector<std::string> written;
  for (const auto& row : rows) written.push_back(write(row));
  return written;
}

// ------------------------------------------------------------------------------- the catalogue

std::string Identifier(const GUID& guid) { return Quoted(abi::GuidText(guid)); }

std::string PublishedNameOf(const TypeRow& type, bool is_object) {
  const bool has_name = !type.name.empty() && (type.type == VariantType::kObject) == is_object;
  return has_name ? Quoted(type.name) : "";
}

std::string TypeText(const TypeRow& type) {
  if (type.type == VariantType::kEmpty) return "";
  return ObjectOf({{"type", Quoted(ValueTypeName(type.type))},
                   {"enumeration", PublishedNameOf(type, false)},
                   {"class", PublishedNameOf(type, true)}});
}

std::string DefaultText(const DefaultValue& otherwise) {
  if (otherwise.kind == DefaultValue::Kind::kNumber) return Number(otherwise.number);
  return otherwise.kind == DefaultValue::Kind::kText ? Quoted(otherwise.text) : "";
}

std::string ArgumentText(const Argument& argument, const TypeRow& type) {
  return ObjectOf({{"name", Quoted(argument.name)},
                   {"type", Quoted(ValueTypeName(type.type))},
                   {"enumeration", PublishedNameOf(type, false)},
                   {"class", PublishedNameOf(type, true)},
                   {"optional", argument.IsOptional() ? "true" : "false"},
                   {"default", DefaultText(argument.otherwise)},
                   {"by_reference", type.by_reference ? "true" : "false"}});
}

StringView KindName(MemberKind kind) {
  constexpr std::array kNames{StringView(u"method"), StringView(u"get"), StringView(u"put")};
  return kNames[static_cast<std::size_t>(kind)];
}

std::string MemberText(const ClassRow& row, const MemberRow& member) {
  std::vector<std::string> arguments;
  for (std::size_t i = 0; i < member.arguments.count; ++i) {
    arguments.push_back(ArgumentText(member.arguments.elements[i], member.types.elements[i]));
  }
  const auto place = &member - row.members.data();
  return ObjectOf(
      {{"name", Quoted(member.name)},
       {"kind", Quoted(KindName(member.kind))},
       {"id", Number(member.identifier)},
       {"slot",
        Number(static_cast<std::int64_t>(sizeof(QuorlDispatchTable) / sizeof(void*)) + place)},
       {"listed", Number(static_cast<std::int64_t>(ListingPlaceOf(row, member)))},
       {"arguments", ListOf(arguments)},
       {"result", TypeText(member.result)},
       {"help", member.help.empty() ? "" : Quoted(member.help)}});
}

std::string InterfaceText(const ClassRow& row, const InterfaceRow& version) {
  const auto minor = static_cast<std::size_t>(&version - row.interfaces.data());
  return ObjectOf({{"name", Quoted(InterfaceName(row, minor))},
                   {"version", Quoted(VersionText(minor))},
                   {"identifier", Identifier(version.identifier)},
                   {"members", Number(static_cast<std::int64_t>(version.members))}});
}

std::string ClassText(const ClassRow& row) {
  const auto interface = [&](const InterfaceRow& version) { return InterfaceText(row, version); };
  const auto member = [&](const MemberRow& known) { return MemberText(row, known); };
  return LongObjectOf({{"name", Quoted(row.name)},
                       {"kind", row.kind == ClassKind::kGlobal ? "\"global\"" : "\"creatable\""},
                       {"progid", Quoted(internal::Joined(kLibraryName, u".", row.name))},
                       {"identifier", Identifier(row.identifier)},
                       {"interfaces", LinesOf(Each(row.interfaces, interface), 3)},
                       {"members", LinesOf(Each(row.members, member), 3)}},
                      2);
}

std::string EnumerationText(const EnumerationRow& row) {
  const auto write = [](const EnumeratorRow& member) {
    return ObjectOf({{"name", Quoted(member.name)}, {"value", Number(member.value)}});
  };
  return LongObjectOf(
      {{"name", Quoted(row.name)}, {"members", LinesOf(Each(row.members, write), 3)}}, 2);
}

std::string TypeRowText(VariantType type) {
  return ObjectOf({{"name", Quoted(ValueTypeName(type))}, {"vt", Number(static_cast<int>(type))}});
}

std::string FailureText(FailureNumber number) {
  return ObjectOf({{"number", Number(static_cast<Int32>(number))},
                   {"description", Quoted(DescriptionOf(number))}});
}

constexpr std::array kFailures{
    FailureNumber::kInvalidArgument, FailureNumber::kOverflow,
    FailureNumber::kOutOfMemory,     FailureNumber::kSubscriptOutOfRange,
    FailureNumber::kDivisionByZero,  FailureNumber::kTypeMismatch,
    FailureNumber::kNoObject,        FailureNumber::kInvalidUseOfNull,
    FailureNumber::kObjectRequired,  FailureNumber::kNoSuchMember,
};

}  // namespace

std::string CatalogueJson() {
  const std::string library = ObjectOf({{"name", Quoted(kLibraryName)},
                                        {"version", Quoted(VersionText(0))},
                                        {"identifier", Identifier(kLibraryIdentifier)}});
  const std::string text =
      LongObjectOf({{"form", Number(kFormVersion)},
                    {"library", library},
                    {"types", LinesOf(Each(ValueTypes(), TypeRowText), 1)},
                    {"enumerations", LinesOf(Each(kEnumerations, EnumerationText), 1)},
                    {"classes", LinesOf(Each(Catalogue(), ClassText), 1)},
                    {"failures", LinesOf(Each(kFailures, FailureText), 1)}},
                   0);
  return Concat({text, "\n"});
}

}  // namespace quorl::tools
