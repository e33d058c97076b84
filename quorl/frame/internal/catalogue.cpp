#include "quorl/frame/internal/catalogue.hpp"

#include <algorithm>
#include <array>

#include "quorl/abi/internal/ref_counted.hpp"
#include "quorl/buffer/roll_buffer.hpp"
#include "quorl/fields/db_lib.hpp"
#include "quorl/forms/combo_box_ex.hpp"
#include "quorl/forms/forms.hpp"
#include "quorl/frame/internal/class_table.hpp"
#include "quorl/frame/internal/enumerations.hpp"
#include "quorl/frame/internal/identifiers.hpp"
#include "quorl/money/money.hpp"
#include "quorl/numeric/dates.hpp"
#include "quorl/numeric/math.hpp"
#include "quorl/regional/guids.hpp"
#include "quorl/regional/regional.hpp"
#include "quorl/registry/registry.hpp"
#include "quorl/runtime/text_case.hpp"
#include "quorl/text/strings.hpp"

namespace quorl::frame {
namespace {

// The class without members, which stands in the catalogue as an application object.
struct Global {};

using M = RowsOf<Math>;
constexpr std::tuple kMath{
    M::Method<&Math::StdRound>(u"StdRound", Required(u"Nombre"), Optional(u"Nombredecimales", 1)),
    M::Method<&Math::FixRound>(u"FixRound", Required(u"Nombre"), Optional(u"Nombredecimales", 1)),
    M::Method<&Math::RoundSup>(u"RoundSup", Required(u"Nombre"), Optional(u"Nombredecimales", 0))
        .Helped(u"Retourne la valeur arrondie supérieure au nombre de décimales spécifié."),
    M::Method<&Math::RoundInf>(u"RoundInf", Required(u"Nombre"), Optional(u"Nombredecimales", 0)),
    M::Method<&Math::Min>(u"Min", Required(u"Expression1"), Required(u"Expression2"))
        .Helped(u"Renvoie la valeur minimim de Expression1 et Expression2"),
    M::Method<&Math::Max>(u"Max", Required(u"Expression1"), Required(u"Expression2"))
        .Helped(u"Renvoie la valeur maximum de Expression1 et Expression2"),
    M::Method<&Math::IsNullOrZero>(u"IsNullOrZero", Required(u"Value"), Required(u"Default")),
    M::Method<&Math::ZeroAsNull>(u"ZeroAsNull", Required(u"Value")),
    M::Method<&Math::ZeroOrOneAsNull>(u"ZeroOrOneAsNull", Required(u"Value")),
    M::Method<&Math::NullOrZeroAsOne>(u"NullOrZeroAsOne", Required(u"Value")),
    M::Method<&Math::StdTruncate>(u"StdTruncate", Required(u"Nombre"),
                                  Optional(u"Nombredecimales", 1))
        .Listed(0),
    M::Method<&Math::Round2019>(u"Round2019", Required(u"Nombre")),
};

using D = RowsOf<Dates>;
constexpr std::tuple kDates{
    D::Method<&Dates::IsDateOrEmpty>(u"IsDateOrEmpty", Required(u"Text"))
        .Helped(u"Retourne vrai si le string passé en argument est vide ou s'il représente une "
                u"date valide."),
};

using S = RowsOf<Strings>;
constexpr std::tuple kStrings{
    S::Method<&Strings::IsEmptyString>(u"IsEmptyString", Required(u"Text")),
    S::Method<&Strings::IfIsNull>(u"IfIsNull", Required(u"Value"), Required(u"ReplaceValue")),
    S::Method<&Strings::Padl>(u"Padl", Required(u"Text"), Required(u"Length"),
                              Optional(u"PadChar", u" ")),
    S::Method<&Strings::Padr>(u"Padr", Required(u"Text"), Required(u"Length"),
                              Optional(u"PadChar", u" ")),
    S::Method<&Strings::Pluriel>(u"Pluriel", Required(u"Text")),
    S::Method<&Strings::ProperCase>(u"ProperCase", Required(u"Text")),
    S::Method<&Strings::NbrTokens>(u"NbrTokens", Required(u"Text"), Required(u"Separator")),
    S::Method<&Strings::GetToken>(u"GetToken", Required(u"Text"), Optional(u"Separator", u" "),
                                  Optional(u"Index", 1)),
    S::Method<&Strings::StrCount>(u"StrCount", Required(u"Text"), Required(u"SubString")),
    S::Method<&Strings::StrTran>(u"StrTran", Required(u"Text"), Required(u"OldSubString"),
                                 Required(u"NewSubString")),
    S::Method<&Strings::AphpaNumericOf>(u"AphpaNumericOf", Required(u"Text")),
    S::Method<&Strings::DigitsOf>(u"DigitsOf", Required(u"Text")),
    S::Method<&Strings::WinVal>(u"WinVal", Required(u"Text")),
    S::Method<&Strings::AlphpaNumericOf>(u"AlphpaNumericOf", Required(u"Text")),
    S::Method<&Strings::AlphpabeticOf>(u"AlphpabeticOf", Required(u"Text")),
    S::Method<&Strings::RTrimEx>(u"RTrimEx", Required(u"Text"), Optional(u"Char", u" ")),
    S::Method<&Strings::LTrimEx>(u"LTrimEx", Required(u"Text"), Optional(u"Char", u" ")),
    S::Method<&Strings::IsVoyelle>(u"IsVoyelle", Required(u"Text")),
    S::Method<&Strings::IndexOf>(u"IndexOf", Required(u"cText"), Required(u"cSubString"),
                                 Optional(u"nStart", 1), Optional(u"nCount", 0)),
    S::Method<&Strings::Contains>(u"Contains", Required(u"cText"), Required(u"cSubString"),
                                  Optional(u"nStart", 1), Optional(u"nCount", 0)),
    S::Method<&Strings::IndexOfAny>(u"IndexOfAny", Required(u"cText"), Required(u"cAnyOf"),
                                    Optional(u"nStart", 1), Optional(u"nCount", 0)),
    S::Method<&Strings::ContainsAny>(u"ContainsAny", Required(u"cText"), Required(u"cAnyOf"),
                                     Optional(u"nStart", 1), Optional(u"nCount", 0)),
    S::Method<&Strings::IsDigits>(u"IsDigits", Required(u"Text")),
    S::Method<&Strings::TruncateMiddle>(u"TruncateMiddle", Required(u"Text"), Required(u"Length"),
                                        Optional(u"DotsPosition")),
};

using F = RowsOf<DbLib>;
constexpr std::tuple kDbLib{
    F::Method<&DbLib::FieldPos>(u"FieldPos", Required(u"FieldName"), Required(u"Fields")),
    F::Method<&DbLib::StrFieldValue>(u"StrFieldValue", Required(u"FieldValue")),
    F::Method<&DbLib::GuidFieldValue>(u"GuidFieldValue", Required(u"GUID")),
    F::Method<&DbLib::NumFieldValue>(u"NumFieldValue", Required(u"FieldValue")),
    F::Method<&DbLib::DateFieldValue>(u"DateFieldValue", Required(u"FieldValue")),
    F::Method<&DbLib::StrDateFieldValue>(u"StrDateFieldValue", Required(u"FieldValue")),
    F::Method<&DbLib::BoolFieldValue>(u"BoolFieldValue", Required(u"FieldValue")),
    F::Method<&DbLib::TriStateFieldValue>(u"TriStateFieldValue", Required(u"FieldValue")),
    F::Method<&DbLib::StrToField>(u"StrToField", Required(u"Text")),
    F::Method<&DbLib::StrGuidToField>(u"StrGuidToField", Required(u"Text")),
    F::Method<&DbLib::StrNumToField>(u"StrNumToField", Required(u"Text")),
    F::Method<&DbLib::StrDateToField>(u"StrDateToField", Required(u"Text")),
    F::Method<&DbLib::TriStateToBoolField>(u"TriStateToBoolField", Required(u"NumValue")),
    F::Method<&DbLib::DotStrFieldValue>(u"DotStrFieldValue", Required(u"FieldValue")),
    F::Method<&DbLib::DotStrNumToField>(u"DotStrNumToField", Required(u"Text")),
    F::Method<&DbLib::DuplicateQuotte>(u"DuplicateQuotte", Required(u"Text")),
    F::Method<&DbLib::SpaceIfEmptyOrNull>(u"SpaceIfEmptyOrNull", Required(u"xVar")),
};

using B = RowsOf<RollBuffer>;
constexpr std::tuple kRollBuffer{
    B::Get<Int32, &RollBuffer::BufferSize>(u"BufferSize"),
    B::Put<Int32, &RollBuffer::BufferSize>(u"BufferSize", u"New_BufferSize"),
    B::Get<Int32, &RollBuffer::Count>(u"Count"),
    B::Get<Int32, &RollBuffer::Index>(u"Index"),
    B::Put<Int32, &RollBuffer::Index>(u"Index", u"New_Index"),
    B::Get<Variant, &RollBuffer::CurrentItem>(u"CurrentItem"),
    B::Put<const Variant&, &RollBuffer::CurrentItem>(u"CurrentItem", u"New_Item"),
    B::IndexedGet<&RollBuffer::Items>(u"Items", Required(u"Index")),
    B::Get<Boolean, &RollBuffer::BOF>(u"BOF"),
    B::Get<Boolean, &RollBuffer::OnFirst>(u"OnFirst"),
    B::Get<Boolean, &RollBuffer::OnLast>(u"OnLast"),
    B::Get<Boolean, &RollBuffer::AtEOF>(u"EOF"),
    B::Method<&RollBuffer::Clear>(u"Clear"),
    B::Method<&RollBuffer::AddItem>(u"AddItem", Required(u"Item")),
    B::Method<&RollBuffer::MoveFirst>(u"MoveFirst"),
    B::Method<&RollBuffer::MoveLast>(u"MoveLast"),
    B::Method<&RollBuffer::MoveNext>(u"MoveNext"),
    B::Method<&RollBuffer::MovePrevious>(u"MovePrevious"),
};

using C = RowsOf<ComboBoxEx>;
constexpr std::tuple kComboBoxEx{
    C::Method<&ComboBoxEx::CmbSelectMatchString>(u"CmbSelectMatchString", Required(u"Combo"),
                                                 Required(u"Text"), Optional(u"Length", 0)),
    C::Method<&ComboBoxEx::CmbSelectMatchToken>(u"CmbSelectMatchToken", Required(u"Combo"),
                                                Required(u"Text"), Optional(u"Index", 1)),
    C::Method<&ComboBoxEx::CmbSelectMatchSubString>(u"CmbSelectMatchSubString", Required(u"Combo"),
                                                    Required(u"Text"), Optional(u"Start", 1),
                                                    Optional(u"Length", 0)),
    C::Method<&ComboBoxEx::CmbSelectItemData>(u"CmbSelectItemData", Required(u"Combo"),
                                              Required(u"ItemData")),
    C::Method<&ComboBoxEx::CmbCurrentItemData>(u"CmbCurrentItemData", Required(u"Combo"),
                                               Required(u"DefValue")),
};

using P = RowsOf<Forms>;
constexpr std::tuple kForms{
    P::Method<&Forms::InitFormSettings>(u"InitFormSettings", Required(u"Frm"),
                                        Optional(u"Container"), Optional(u"Width", 0),
                                        Optional(u"Height", 0)),
    P::Method<&Forms::SaveFormSettings>(u"SaveFormSettings", Required(u"Reg"), Required(u"Frm"),
                                        Optional(u"FrmName")),
    P::Method<&Forms::GetFormSettings>(u"GetFormSettings", Required(u"Reg"), Required(u"Frm"),
                                       Optional(u"FrmName")),
};

constexpr std::tuple<> kGlobal{};

using R = RowsOf<Regional>;
constexpr std::tuple kRegional{
    R::Get<String, &Regional::DecimalChar>(u"DecimalChar"),
    R::Get<String, &Regional::ThousandChar>(u"ThousandChar"),
    R::Method<&Regional::GetRegional>(u"GetRegional"),
    R::Method<&Regional::ConvertDecimalPoint>(u"ConvertDecimalPoint", Required(u"KeyAscii")),
    R::Get<String, &Regional::NumDecimalChar>(u"NumDecimalChar"),
    R::Get<String, &Regional::NumThousandChar>(u"NumThousandChar"),
    R::Get<String, &Regional::MonDecimalChar>(u"MonDecimalChar"),
    R::Get<String, &Regional::MonThousandChar>(u"MonThousandChar"),
    R::Method<&Regional::CheckRegional>(u"CheckRegional"),
    R::Method<&Regional::SetRegional>(u"SetRegional", Required(u"regionalItem"),
                                      Required(u"Value")),
};

using G = RowsOf<GUIDs>;
constexpr std::tuple kGUIDs{
    G::Method<&GUIDs::CreateGUID>(u"CreateGUID"),
    G::Method<&GUIDs::GetNullGUID>(u"GetNullGUID"),
    G::Method<&GUIDs::GetZeroGUID>(u"GetZeroGUID"),
    G::Method<&GUIDs::GetNumGUID>(u"GetNumGUID", Required(u"Number")),
};

using K = RowsOf<Registry>;
constexpr std::tuple kRegistry{
    K::Put<HKeyEnum, &Registry::HKey>(u"HKey", u"New_HKey"),
    K::Get<HKeyEnum, &Registry::HKey>(u"HKey"),
    K::Put<StringView, &Registry::RootKeyName>(u"RootKeyName", u"New_RootKeyName"),
    K::Get<String, &Registry::RootKeyName>(u"RootKeyName"),
    K::Method<&Registry::InitAbsolute>(u"InitAbsolute", Required(u"New_HKey"),
                                       Required(u"New_RootKeyName")),
    K::Method<&Registry::InitApp>(u"InitApp", Required(u"Compagny"), Required(u"AppName"),
                                  Optional(u"Mode", 0)),
    K::Method<&Registry::KeyFullName>(u"KeyFullName", Required(u"KeyName")),
    K::Method<&Registry::KeyExists>(u"KeyExists", Required(u"KeyName")),
    K::Method<&Registry::GetValue>(u"GetValue", Required(u"KeyName"), Required(u"ValueName"),
                                   Required(u"Default")),
    K::Method<&Registry::SaveValue>(u"SaveValue", Required(u"KeyName"), Required(u"ValueName"),
                                    Required(u"Value"), Optional(u"dataType", 0)),
    K::Method<&Registry::GetAllValues>(u"GetAllValues", Required(u"KeyName")),
    K::Method<&Registry::GetSubKeys>(u"GetSubKeys", Required(u"KeyName"), Optional(u"Levels", 1)),
    K::Method<&Registry::DeleteKey>(u"DeleteKey", Required(u"KeyName")),
    K::Method<&Registry::DeleteValue>(u"DeleteValue", Required(u"KeyName"), Required(u"ValueName")),
    K::Method<&Registry::CopyKey>(u"CopyKey", Required(u"SourceKeyName"),
                                  Required(u"DestinationKeyName")),
};

using A = RowsOf<Money>;
constexpr auto kMoney =
    std::tuple_cat(A::Property<&Money::Value>(u"Value", u"New_Value"),
                   A::Property<&Money::Unit>(u"Unit", u"New_Unit"),
                   A::Property<&Money::Units>(u"Units", u"New_Units"),
                   A::Property<&Money::SubUnit>(u"SubUnit", u"New_SubUnit"),
                   A::Property<&Money::SubUnits>(u"SubUnits", u"New_SubUnits"),
                   A::Property<&Money::UnitKind>(u"UnitKind", u"New_UnitKind"),
                   A::Property<&Money::SubUnitKind>(u"SubUnitKind", u"New_SubUnitKind"),
                   A::Property<&Money::SubUnitRow>(u"SubUnitRow", u"New_SubUnitRow"),
                   A::Property<&Money::Language>(u"Language", u"New_Language"),
                   std::tuple(A::Method<&Money::ToText>(u"ToText", Required(u"Value"))));

constexpr auto kIsGlobal = ClassKind::kGlobal;
constexpr auto kIsCreatable = ClassKind::kCreatable;

constexpr std::array kClasses{
    Described<Math, kMath>::Row(u"Math", kIsGlobal, kMathClass, kMathInterfaces),
    Described<Dates, kDates>::Row(u"Dates", kIsGlobal, kDatesClass, kDatesInterfaces),
    Described<Strings, kStrings>::Row(u"Strings", kIsGlobal, kStringsClass, kStringsInterfaces),
    Described<DbLib, kDbLib>::Row(u"DbLib", kIsGlobal, kDbLibClass, kDbLibInterfaces),
    Described<RollBuffer, kRollBuffer>::Row(u"RollBuffer", kIsCreatable, kRollBufferClass,
                                            kRollBufferInterfaces),
    Described<ComboBoxEx, kComboBoxEx>::Row(u"ComboBoxEx", kIsGlobal, kComboBoxExClass,
                                            kComboBoxExInterfaces),
    Described<Forms, kForms>::Row(u"Forms", kIsGlobal, kFormsClass, kFormsInterfaces),
    Described<Global, kGlobal>::Row(u"Global", kIsGlobal, kGlobalClass, kGlobalInterfaces),
    Described<Regional, kRegional>::Row(u"Regional", kIsGlobal, kRegionalClass,
                                        kRegionalInterfaces),
    Described<GUIDs, kGUIDs>::Row(u"GUIDs", kIsGlobal, kGUIDsClass, kGUIDsInterfaces),
    Described<Registry, kRegistry>::Row(u"Registry", kIsCreatable, kRegistryClass,
                                        kRegistryInterfaces),
    Described<Money, kMoney>::Row(u"Money", kIsCreatable, kMoneyClass, kMoneyInterfaces),
};

// What hosts rely on, pinned: how many, in which order, under which names.

consteval bool CountsAre(std::initializer_list<std::size_t> members,
                         std::initializer_list<std::size_t> interfaces) {
  return std::ranges::equal(kClasses, members, {},
                            [](const ClassRow& row) { return row.members.size(); }) &&
         std::ranges::equal(kClasses, interfaces, {},
                            [](const ClassRow& row) { return row.interfaces.size(); });
}
static_assert(CountsAre({12, 1, 24, 17, 18, 5, 3, 0, 10, 4, 15, 19},
                        {5, 1, 7, 1, 1, 1, 1, 1, 3, 1, 3, 1}));

// A name stands once, or twice in a row as a property's get and put.
constexpr bool NamesAreUnique(const ClassRow& row) {
  for (std::size_t i = 0; i < row.members.size(); ++i) {
    for (std::size_t j = i + 1; j < row.members.size(); ++j) {
      const MemberRow& first = row.members[i];
      const MemberRow& second = row.members[j];
      if (first.name != second.name) continue;
      const bool is_pair = j == i + 1 && first.kind != second.kind &&
                           first.kind != MemberKind::kMethod && second.kind != MemberKind::kMethod;
      if (!is_pair) return false;
    }
  }
  return true;
}
static_assert([] {
  for (const ClassRow& row : kClasses) {
    if (!NamesAreUnique(row)) return false;
  }
  return true;
}());

// The last arguments are the optional ones.
static_assert([] {
  for (const ClassRow& row : kClasses) {
    for (const MemberRow& member : row.members) {
      if (!std::ranges::is_sorted(member.arguments.Span(), {}, &Argument::IsOptional)) return false;
    }
  }
  return true;
}());

consteval bool EndsWith(StringView class_name, std::initializer_list<StringView> last) {
  for (const ClassRow& row : kClasses) {
    if (row.name != class_name) continue;
    return std::ranges::equal(row.members.last(last.size()), last, {}, &MemberRow::name);
  }
  return false;
}
static_assert(EndsWith(u"Math", {u"NullOrZeroAsOne", u"StdTruncate", u"Round2019"}));
static_assert(EndsWith(u"Strings", {u"ContainsAny", u"IsDigits", u"TruncateMiddle"}));
static_assert(EndsWith(u"Registry", {u"DeleteKey", u"DeleteValue", u"CopyKey"}));
static_assert(EndsWith(u"Regional", {u"MonThousandChar", u"CheckRegional", u"SetRegional"}));

}  // namespace

std::span<const ClassRow> Catalogue() noexcept { return kClasses; }

const ClassRow* FindClass(const GUID& identifier) noexcept {
  const auto* found = std::ranges::find_if(
      kClasses, [&](const ClassRow& row) { return abi::operator==(row.identifier, identifier); });
  return found == kClasses.end() ? nullptr : found;
}

const ClassRow* FindClass(StringView name) noexcept {
  const auto* found = std::ranges::find(kClasses, name, &ClassRow::name);
  return found == kClasses.end() ? nullptr : found;
}

Registry& RegistryBehind(QuorlDispatch* pointer) {
  if (pointer == nullptr) Raise(FailureNumber::kNoObject);
  const ClassRow& row = *FindClass(u"Registry");
  if (pointer->table != row.table) Raise(FailureNumber::kTypeMismatch);
  return InstanceOf<Registry>::In(pointer);
}

Registry& RegistryBehind(const Object& object) {
  QuorlDispatch* pointer = abi::ForeignPointerOf(object);
  // A host's object in C++ has no pointer to a table.
  if (pointer == nullptr && object) Raise(FailureNumber::kTypeMismatch);
  return RegistryBehind(pointer);
}

bool IsSameName(StringView a, StringView b) noexcept {
  const auto lower = [](char16_t unit) { return LowerCase(unit); };
  return std::ranges::equal(a, b, {}, lower, lower);
}

const MemberRow* FindByName(const ClassRow& row, StringView name) noexcept {
  const auto found = std::ranges::find_if(
      row.members, [&](const MemberRow& member) { return IsSameName(member.name, name); });
  return found == row.members.end() ? nullptr : &*found;
}

std::int32_t IdentifierOf(const ClassRow& row, const MemberRow& member) noexcept {
  // A property's get and put stand side by side.
  const auto place = &member - row.members.data();
  const bool is_second =
      place > 0 && row.members[static_cast<std::size_t>(place) - 1].name == member.name;
  return static_cast<std::int32_t>(is_second ? place : place + 1);
}

}  // namespace quorl::frame
