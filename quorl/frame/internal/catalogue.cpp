#include "quorl/frame/internal/catalogue.hpp"

#include <algorithm>
#include <array>

#include "quorl/abi/internal/guid.hpp"
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
#include "quorl/text/strings.hpp"

namespace quorl::frame {
namespace {

// The class without members; it is in the catalogue as an application object.
struct Global {};

// A row's name is its member's own. Properties are overloaded, so their type tells which is meant;
// a put's argument is named New_ and the property's name, where nothing else is said.
#define QUORL_METHOD(Class, Member, ...) \
  RowsOf<Class>::Method<&Class::Member>(u## #Member __VA_OPT__(, ) __VA_ARGS__)
#define QUORL_GET(Class, Property, Type) RowsOf<Class>::Get<Type, &Class::Property>(u## #Property)
#define QUORL_INDEXED_GET(Class, Property, Index) \
  RowsOf<Class>::IndexedGet<&Class::Property>(u## #Property, Index)
#define QUORL_PUT(Class, Property, Type) \
  RowsOf<Class>::Put<Type, &Class::Property>(u## #Property, u"New_" #Property)
#define QUORL_FIELD(Class, Member) \
  RowsOf<Class>::Field<&Class::Member>(u## #Member, u"New_" #Member)

constexpr std::tuple kMath{
    QUORL_METHOD(Math, StdRound, Required(u"Nombre"), Optional(u"Nombredecimales", 1)),
    QUORL_METHOD(Math, FixRound, Required(u"Nombre"), Optional(u"Nombredecimales", 1)),
    QUORL_METHOD(Math, RoundSup, Required(u"Nombre"), Optional(u"Nombredecimales", 0))
        .Helped(u"Retourne la valeur arrondie supérieure au nombre de décimales spécifié."),
    QUORL_METHOD(Math, RoundInf, Required(u"Nombre"), Optional(u"Nombredecimales", 0)),
    QUORL_METHOD(Math, Min, Required(u"Expression1"), Required(u"Expression2"))
        .Helped(u"Renvoie la valeur minimim de Expression1 et Expression2"),
    QUORL_METHOD(Math, Max, Required(u"Expression1"), Required(u"Expression2"))
        .Helped(u"Renvoie la valeur maximum de Expression1 et Expression2"),
    QUORL_METHOD(Math, IsNullOrZero, Required(u"Value"), Required(u"Default")),
    QUORL_METHOD(Math, ZeroAsNull, Required(u"Value")),
    QUORL_METHOD(Math, ZeroOrOneAsNull, Required(u"Value")),
    QUORL_METHOD(Math, NullOrZeroAsOne, Required(u"Value")),
    QUORL_METHOD(Math, StdTruncate, Required(u"Nombre"), Optional(u"Nombredecimales", 1)).Listed(0),
    QUORL_METHOD(Math, Round2019, Required(u"Nombre")),
};

constexpr std::tuple kDates{
    QUORL_METHOD(Dates, IsDateOrEmpty, Required(u"Text"))
        .Helped(u"Retourne vrai si le string passé en argument est vide ou s'il représente une "
                u"date valide."),
};

constexpr std::tuple kStrings{
    QUORL_METHOD(Strings, IsEmptyString, Required(u"Text")),
    QUORL_METHOD(Strings, IfIsNull, Required(u"Value"), Required(u"ReplaceValue")),
    QUORL_METHOD(Strings, Padl, Required(u"Text"), Required(u"Length"), Optional(u"PadChar", u" ")),
    QUORL_METHOD(Strings, Padr, Required(u"Text"), Required(u"Length"), Optional(u"PadChar", u" ")),
    QUORL_METHOD(Strings, Pluriel, Required(u"Text")),
    QUORL_METHOD(Strings, ProperCase, Required(u"Text")),
    QUORL_METHOD(Strings, NbrTokens, Required(u"Text"), Required(u"Separator")),
    QUORL_METHOD(Strings, GetToken, Required(u"Text"), Optional(u"Separator", u" "),
                 Optional(u"Index", 1)),
    QUORL_METHOD(Strings, StrCount, Required(u"Text"), Required(u"SubString")),
    QUORL_METHOD(Strings, StrTran, Required(u"Text"), Required(u"OldSubString"),
                 Required(u"NewSubString")),
    QUORL_METHOD(Strings, AphpaNumericOf, Required(u"Text")),
    QUORL_METHOD(Strings, DigitsOf, Required(u"Text")),
    QUORL_METHOD(Strings, WinVal, Required(u"Text")),
    QUORL_METHOD(Strings, AlphpaNumericOf, Required(u"Text")),
    QUORL_METHOD(Strings, AlphpabeticOf, Required(u"Text")),
    QUORL_METHOD(Strings, RTrimEx, Required(u"Text"), Optional(u"Char", u" ")),
    QUORL_METHOD(Strings, LTrimEx, Required(u"Text"), Optional(u"Char", u" ")),
    QUORL_METHOD(Strings, IsVoyelle, Required(u"Text")),
    QUORL_METHOD(Strings, IndexOf, Required(u"cText"), Required(u"cSubString"),
                 Optional(u"nStart", 1), Optional(u"nCount", 0)),
    QUORL_METHOD(Strings, Contains, Required(u"cText"), Required(u"cSubString"),
                 Optional(u"nStart", 1), Optional(u"nCount", 0)),
    QUORL_METHOD(Strings, IndexOfAny, Required(u"cText"), Required(u"cAnyOf"),
                 Optional(u"nStart", 1), Optional(u"nCount", 0)),
    QUORL_METHOD(Strings, ContainsAny, Required(u"cText"), Required(u"cAnyOf"),
                 Optional(u"nStart", 1), Optional(u"nCount", 0)),
    QUORL_METHOD(Strings, IsDigits, Required(u"Text")),
    QUORL_METHOD(Strings, TruncateMiddle, Required(u"Text"), Required(u"Length"),
                 Optional(u"DotsPosition")),
};

constexpr std::tuple kDbLib{
    QUORL_METHOD(DbLib, FieldPos, Required(u"FieldName"), Required(u"Fields")),
    QUORL_METHOD(DbLib, StrFieldValue, Required(u"FieldValue")),
    QUORL_METHOD(DbLib, GuidFieldValue, Required(u"GUID")),
    QUORL_METHOD(DbLib, NumFieldValue, Required(u"FieldValue")),
    QUORL_METHOD(DbLib, DateFieldValue, Required(u"FieldValue")),
    QUORL_METHOD(DbLib, StrDateFieldValue, Required(u"FieldValue")),
    QUORL_METHOD(DbLib, BoolFieldValue, Required(u"FieldValue")),
    QUORL_METHOD(DbLib, TriStateFieldValue, Required(u"FieldValue")),
    QUORL_METHOD(DbLib, StrToField, Required(u"Text")),
    QUORL_METHOD(DbLib, StrGuidToField, Required(u"Text")),
    QUORL_METHOD(DbLib, StrNumToField, Required(u"Text")),
    QUORL_METHOD(DbLib, StrDateToField, Required(u"Text")),
    QUORL_METHOD(DbLib, TriStateToBoolField, Required(u"NumValue")),
    QUORL_METHOD(DbLib, DotStrFieldValue, Required(u"FieldValue")),
    QUORL_METHOD(DbLib, DotStrNumToField, Required(u"Text")),
    QUORL_METHOD(DbLib, DuplicateQuotte, Required(u"Text")),
    QUORL_METHOD(DbLib, SpaceIfEmptyOrNull, Required(u"xVar")),
};

constexpr std::tuple kRollBuffer{
    QUORL_GET(RollBuffer, BufferSize, Int32),
    QUORL_PUT(RollBuffer, BufferSize, Int32),
    QUORL_GET(RollBuffer, Count, Int32),
    QUORL_GET(RollBuffer, Index, Int32),
    QUORL_PUT(RollBuffer, Index, Int32),
    QUORL_GET(RollBuffer, CurrentItem, Variant),
    QUORL_PUT(RollBuffer, CurrentItem, const Variant&).Taking(u"New_Item"),
    QUORL_INDEXED_GET(RollBuffer, Items, Required(u"Index")),
    QUORL_GET(RollBuffer, BOF, Boolean),
    QUORL_GET(RollBuffer, OnFirst, Boolean),
    QUORL_GET(RollBuffer, OnLast, Boolean),
    RowsOf<RollBuffer>::Get<Boolean, &RollBuffer::AtEOF>(u"EOF"),
    QUORL_METHOD(RollBuffer, Clear),
    QUORL_METHOD(RollBuffer, AddItem, Required(u"Item")),
    QUORL_METHOD(RollBuffer, MoveFirst),
    QUORL_METHOD(RollBuffer, MoveLast),
    QUORL_METHOD(RollBuffer, MoveNext),
    QUORL_METHOD(RollBuffer, MovePrevious),
};

constexpr std::tuple kComboBoxEx{
    QUORL_METHOD(ComboBoxEx, CmbSelectMatchString, Required(u"Combo"), Required(u"Text"),
                 Optional(u"Length", 0)),
    QUORL_METHOD(ComboBoxEx, CmbSelectMatchToken, Required(u"Combo"), Required(u"Text"),
                 Optional(u"Index", 1)),
    QUORL_METHOD(ComboBoxEx, CmbSelectMatchSubString, Required(u"Combo"), Required(u"Text"),
                 Optional(u"Start", 1), Optional(u"Length", 0)),
    QUORL_METHOD(ComboBoxEx, CmbSelectItemData, Required(u"Combo"), Required(u"ItemData")),
    QUORL_METHOD(ComboBoxEx, CmbCurrentItemData, Required(u"Combo"), Required(u"DefValue")),
};

constexpr std::tuple kForms{
    QUORL_METHOD(Forms, InitFormSettings, Required(u"Frm"), Optional(u"Container"),
                 Optional(u"Width", 0), Optional(u"Height", 0)),
    QUORL_METHOD(Forms, SaveFormSettings, Required(u"Reg"), Required(u"Frm"), Optional(u"FrmName")),
    QUORL_METHOD(Forms, GetFormSettings, Required(u"Reg"), Required(u"Frm"), Optional(u"FrmName")),
};

constexpr std::tuple<> kGlobal{};

constexpr std::tuple kRegional{
    QUORL_GET(Regional, DecimalChar, String),
    QUORL_GET(Regional, ThousandChar, String),
    QUORL_METHOD(Regional, GetRegional),
    QUORL_METHOD(Regional, ConvertDecimalPoint, Required(u"KeyAscii")),
    QUORL_GET(Regional, NumDecimalChar, String),
    QUORL_GET(Regional, NumThousandChar, String),
    QUORL_GET(Regional, MonDecimalChar, String),
    QUORL_GET(Regional, MonThousandChar, String),
    QUORL_METHOD(Regional, CheckRegional),
    QUORL_METHOD(Regional, SetRegional, Required(u"regionalItem"), Required(u"Value")),
};

constexpr std::tuple kGUIDs{
    QUORL_METHOD(GUIDs, CreateGUID),
    QUORL_METHOD(GUIDs, GetNullGUID),
    QUORL_METHOD(GUIDs, GetZeroGUID),
    QUORL_METHOD(GUIDs, GetNumGUID, Required(u"Number")),
};

constexpr std::tuple kRegistry{
    QUORL_PUT(Registry, HKey, HKeyEnum),
    QUORL_GET(Registry, HKey, HKeyEnum),
    QUORL_PUT(Registry, RootKeyName, StringView),
    QUORL_GET(Registry, RootKeyName, String),
    QUORL_METHOD(Registry, InitAbsolute, Required(u"New_HKey"), Required(u"New_RootKeyName")),
    QUORL_METHOD(Registry, InitApp, Required(u"Compagny"), Required(u"AppName"),
                 Optional(u"Mode", 0)),
    QUORL_METHOD(Registry, KeyFullName, Required(u"KeyName")),
    QUORL_METHOD(Registry, KeyExists, Required(u"KeyName")),
    QUORL_METHOD(Registry, GetValue, Required(u"KeyName"), Required(u"ValueName"),
                 Required(u"Default")),
    QUORL_METHOD(Registry, SaveValue, Required(u"KeyName"), Required(u"ValueName"),
                 Required(u"Value"), Optional(u"dataType", 0)),
    QUORL_METHOD(Registry, GetAllValues, Required(u"KeyName")),
    QUORL_METHOD(Registry, GetSubKeys, Required(u"KeyName"), Optional(u"Levels", 1)),
    QUORL_METHOD(Registry, DeleteKey, Required(u"KeyName")),
    QUORL_METHOD(Registry, DeleteValue, Required(u"KeyName"), Required(u"ValueName")),
    QUORL_METHOD(Registry, CopyKey, Required(u"SourceKeyName"), Required(u"DestinationKeyName")),
};

constexpr auto kMoney = std::tuple_cat(
    QUORL_FIELD(Money, Value), QUORL_FIELD(Money, Unit), QUORL_FIELD(Money, Units),
    QUORL_FIELD(Money, SubUnit), QUORL_FIELD(Money, SubUnits), QUORL_FIELD(Money, UnitKind),
    QUORL_FIELD(Money, SubUnitKind), QUORL_FIELD(Money, SubUnitRow), QUORL_FIELD(Money, Language),
    std::tuple(QUORL_METHOD(Money, ToText, Required(u"Value"))));

#define QUORL_CLASS(Name, Kind) \
  Described<Name, k##Name, k##Name##Interfaces>::Row(u## #Name, ClassKind::Kind, k##Name##Class)

constexpr std::array kClasses{
    QUORL_CLASS(Math, kGlobal),          QUORL_CLASS(Dates, kGlobal),
    QUORL_CLASS(Strings, kGlobal),       QUORL_CLASS(DbLib, kGlobal),
    QUORL_CLASS(RollBuffer, kCreatable), QUORL_CLASS(ComboBoxEx, kGlobal),
    QUORL_CLASS(Forms, kGlobal),         QUORL_CLASS(Global, kGlobal),
    QUORL_CLASS(Regional, kGlobal),      QUORL_CLASS(GUIDs, kGlobal),
    QUORL_CLASS(Registry, kCreatable),   QUORL_CLASS(Money, kCreatable),
};

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

}  // namespace quorl::frame
