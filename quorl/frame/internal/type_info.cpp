#include "quorl/frame/internal/type_info.hpp"

#include <algorithm>
#include <new>

#include "quorl/abi/internal/bstr.hpp"
#include "quorl/abi/internal/guarded.hpp"
#include "quorl/abi/internal/ref_counted.hpp"
#include "quorl/abi/internal/values.hpp"
#include "quorl/frame/internal/class_row.hpp"
#include "quorl/frame/internal/invoke.hpp"
#include "quorl/frame/internal/library_info.hpp"
#include "quorl/frame/internal/listing.hpp"

namespace quorl::frame {
namespace {

std::uint16_t Small(std::size_t value) { return static_cast<std::uint16_t>(value); }

std::uint16_t InvokeKindOf(MemberKind kind) {
  switch (kind) {
    case MemberKind::kGet:
      return DISPATCH_PROPERTYGET;
    case MemberKind::kPut:
      return DISPATCH_PROPERTYPUT;
    default:
      return DISPATCH_METHOD;
  }
}

// That of an argument, or of the result for QUORL_RESULT; null for a place after the last.
const TypeRow* FindType(const ClassRow& row, std::uint32_t index, std::uint32_t argument) {
  if (index >= row.members.size()) return nullptr;
  const MemberRow& member = row.members[index];
  if (argument == QUORL_RESULT) return &member.result;
  return argument < member.types.count ? &member.types.elements[argument] : nullptr;
}

class TypeInfo final : public abi::Counted<TypeInfo, QuorlTypeInfo> {
 public:
  explicit TypeInfo(const ClassRow& row) noexcept : Counted(kTable), row_(row) { CountUse(+1); }
  ~TypeInfo() { CountUse(-1); }

  static bool Answers(const GUID& identifier) {
    return abi::operator==(identifier, QUORL_IID_TYPE_INFO) ||
           abi::operator==(identifier, QUORL_IID_TYPE_INFO_2);
  }

  static HRESULT GetTypeAttributes(QuorlTypeInfo* self, QuorlTypeAttributes* out) {
    if (out == nullptr) return E_POINTER;
    const ClassRow& row = From(self)->row_;
    *out = {row.identifier,
            row.CurrentInterface(),
            1,
            Small(row.MinorVersion()),
            ClassFlags(row),
            kInterfaceFlags,
            static_cast<std::uint32_t>(row.members.size())};
    return S_OK;
  }

  static HRESULT GetFunction(QuorlTypeInfo* self, std::uint32_t index, QuorlFunction* out) {
    if (out == nullptr) return E_POINTER;
    *out = {};
    const ClassRow& row = From(self)->row_;
    if (index >= row.members.size()) return DISP_E_BADINDEX;
    const MemberRow& member = row.members[index];
    *out = {member.identifier,
            InvokeKindOf(member.kind),
            Small(kCommonSlotCount + index),
            Small(ListingPlaceOf(row, member)),
            static_cast<std::uint16_t>(member.result.type),
            Small(member.arguments.count),
            Small(static_cast<std::size_t>(
                std::ranges::count_if(member.arguments.Span(), &Argument::IsOptional)))};
    return S_OK;
  }

  static HRESULT GetArgument(QuorlTypeInfo* self, std::uint32_t index, std::uint32_t argument,
                             QuorlArgument* out) {
    if (out == nullptr) return E_POINTER;
    *out = {};
    const ClassRow& row = From(self)->row_;
    if (index >= row.members.size() || argument >= row.members[index].arguments.count) {
      return DISP_E_BADINDEX;
    }
    const TypeRow& type = row.members[index].types.elements[argument];
    const Argument& known = row.members[index].arguments.elements[argument];
    return abi::GuardedSlot([&] {
      const bool has_default = known.otherwise.kind == DefaultValue::Kind::kNumber ||
                               known.otherwise.kind == DefaultValue::Kind::kText;
      abi::OwnedVariant otherwise(has_default ? DefaultOf(known, type) : Variant(Missing));
      out->name = abi::NewBstr(known.name);
      out->default_value = otherwise.Detach();
      out->type = Small(static_cast<std::size_t>(type.type) |
                        (type.by_reference ? unsigned{VT_BYREF} : 0U));
      out->optional = known.IsOptional() ? kTrueAsNumber : Int16{0};
      return S_OK;
    });
  }

  static HRESULT GetDocumentation(QuorlTypeInfo* self, std::int32_t id, BSTR* name, BSTR* help) {
    if (name != nullptr) *name = nullptr;
    if (help != nullptr) *help = nullptr;
    const ClassRow& row = From(self)->row_;
    const auto found = std::ranges::find(row.members, id, &MemberRow::identifier);
    if (id != -1 && found == row.members.end()) return DISP_E_MEMBERNOTFOUND;
    const HRESULT code = abi::GuardedSlot([&] {
      if (name != nullptr) *name = abi::NewBstr(id == -1 ? row.name : found->name);
      if (help != nullptr) *help = abi::NewBstr(id == -1 ? StringView() : found->help);
      return S_OK;
    });
    if (code != S_OK && name != nullptr) SysFreeString(std::exchange(*name, nullptr));
    return code;
  }

  static HRESULT GetIDsOfNames(QuorlTypeInfo* self, const char16_t** names, std::uint32_t count,
                               std::int32_t* ids) {
    return IdentifiersOf(From(self)->row_, names, count, ids);
  }

  static HRESULT GetTypeName(QuorlTypeInfo* self, std::uint32_t index, std::uint32_t argument,
                             BSTR* out) {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    const TypeRow* type = FindType(From(self)->row_, index, argument);
    if (type == nullptr) return DISP_E_BADINDEX;
    return abi::GuardedSlot([&] {
      if (!type->name.empty()) *out = abi::NewBstr(PublishedName(*type));
      return S_OK;
    });
  }

  static HRESULT GetInterface(QuorlTypeInfo* self, std::uint32_t version, QuorlInterface* out) {
    if (out == nullptr) return E_POINTER;
    *out = {};
    const ClassRow& row = From(self)->row_;
    if (version >= row.interfaces.size()) return DISP_E_BADINDEX;
    return abi::GuardedSlot([&] {
      const InterfaceRow& known = row.interfaces[version];
      *out = {known.identifier, abi::NewBstr(InterfaceName(row, version)),
              static_cast<std::uint32_t>(known.members)};
      return S_OK;
    });
  }

  static HRESULT GetLibrary(QuorlTypeInfo*, QuorlLibraryInfo** out) {
    if (out == nullptr) return E_POINTER;
    *out = NewLibraryInfo();
    return *out == nullptr ? E_OUTOFMEMORY : S_OK;
  }

 private:
  static const QuorlTypeInfoTable kTable;

  const ClassRow& row_;
};

const QuorlTypeInfoTable TypeInfo::kTable{
    QueryInterface,   AddRef,        Release,     GetTypeAttributes, GetFunction, GetArgument,
    GetDocumentation, GetIDsOfNames, GetTypeName, GetInterface,      GetLibrary};

}  // namespace

QuorlTypeInfo* NewTypeInfo(const ClassRow& row) noexcept {
  return new (std::nothrow) TypeInfo(row);
}

}  // namespace quorl::frame
