#include "quorl/fields/db_lib.hpp"

#include <array>
#include <optional>

#include "quorl/runtime/compare.hpp"
#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/date_text.hpp"
#include "quorl/runtime/internal/guid_text.hpp"
#include "quorl/runtime/internal/text.hpp"
#include "quorl/runtime/internal/within_memory.hpp"
#include "quorl/runtime/number_text.hpp"

namespace quorl {

using namespace internal;
namespace {

// The third state of a truth value: no value.
constexpr Int16 kNoState = 2;

// The text of a field by `write`, which is asked for whatever is neither Null nor a text.
template <class Write>
String TrimmedText(const Variant& value, Write write) {
  if (value.IsNull()) return {};
  if (const String* text = value.If<String>()) return CopyOf(TrimTrailing(*text));
  return CopyOf(Trim(write(value)));
}

Variant NameOfField(const Object& fields, Int16 index) {
  // A fresh argument each time: what the host writes back to it does not move the search.
  std::array<Variant, 1> arguments{Variant(index)};
  return RequireObject(fields.Get({}, arguments)).Get(u"Name");
}

}  // namespace

Int16 DbLib::FieldPos(StringView FieldName, const Variant& Fields) {
  const Object fields = RequireObject(Fields);
  const Int16 last = ToInt16(ToDouble(fields.Get(u"Count")) - 1);
  for (Int32 index = 0; index <= last; ++index) {
    const Variant name = NameOfField(fields, static_cast<Int16>(index));
    if (CompareToText(name, FieldName) == 0) return CheckedInt16(index + 1);
  }
  return 0;
}

String DbLib::StrFieldValue(const Variant& FieldValue) { return TrimmedText(FieldValue, ToString); }

String DbLib::GuidFieldValue(const Variant& GUID) {
  return GUID.IsNull() ? CopyOf(kZeroGuidText) : ToString(GUID);
}

Variant DbLib::NumFieldValue(const Variant& FieldValue) {
  if (FieldValue.IsNull()) return Int16{0};
  return CopyOf(FieldValue);
}

Date DbLib::DateFieldValue(const Variant& FieldValue) {
  return FieldValue.IsNull() ? Date() : ToDate(FieldValue);
}

String DbLib::StrDateFieldValue(const Variant& FieldValue) {
  return FieldValue.IsNull() ? String() : WriteDate(ToDate(FieldValue));
}

Boolean DbLib::BoolFieldValue(const Variant& FieldValue) {
  return !FieldValue.IsNull() && ToBoolean(FieldValue);
}

Int16 DbLib::TriStateFieldValue(const Variant& FieldValue) {
  if (FieldValue.IsNull()) return kNoState;
  return CompareToBoolean(FieldValue, true) == 0 ? 1 : 0;
}

Variant DbLib::StrToField(StringView Text) {
  if (Trim(Text).empty()) return Null;
  return CopyOf(Text);
}

Variant DbLib::StrGuidToField(StringView Text) {
  if (Text == kZeroGuidText) return Null;
  return CopyOf(Text);
}

Variant DbLib::StrNumToField(StringView Text) {
  Double number = 0;
  const NumberReading reading = ReadDouble(Text, Locale::Current(), number);
  return reading == NumberReading::kGood ? Variant(number) : Variant(Null);
}

Variant DbLib::StrDateToField(StringView Text) {
  const std::optional<Date> date = ReadDate(Text);
  return date ? Variant(*date) : Variant(Null);
}

Variant DbLib::TriStateToBoolField(Int16 NumValue) {
  switch (NumValue) {
    case 0:
      return false;
    case 1:
      return true;
    default:
      return Null;
  }
}

String DbLib::DotStrFieldValue(const Variant& FieldValue) {
  return TrimmedText(FieldValue, DottedNumber);
}

Variant DbLib::DotStrNumToField(StringView Text) {
  if (Trim(Text).empty()) return Null;
  return ReadLeadingNumber(Text);
}

String DbLib::DuplicateQuotte(StringView Text) {
  constexpr StringView kQuote = u"'";
  return WithinMemory([&] {
    String doubled;
    Int16 start = 1;
    while (const Int16 quote = CheckedInt16(Find(start, Text, kQuote))) {
      doubled.append(Slice(Text, start, quote - start)).append(kQuote).append(kQuote);
      start = CheckedInt16(quote + 1);
    }
    doubled.append(SliceFrom(Text, start));
    return doubled;
  });
}

String DbLib::SpaceIfEmptyOrNull(const Variant& xVar) {
  if (xVar.IsNull() || CompareToText(xVar, {}) == 0) return u" ";
  return ToString(xVar);
}

}  // namespace quorl
