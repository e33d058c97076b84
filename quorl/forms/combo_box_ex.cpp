#include "quorl/forms/combo_box_ex.hpp"

#include <array>
#include <utility>

#include "quorl/runtime/compare.hpp"
#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/internal/text.hpp"
#include "quorl/runtime/text_case.hpp"
#include "quorl/runtime/variant.hpp"
#include "quorl/text/strings.hpp"

namespace quorl {

using namespace internal;
namespace {

constexpr Int16 kNoEntry = -1;

// Each reading has an argument of its own: what the combo writes back to it does not move the walk.
String EntryAt(const Object& combo, Int16 index) {
  std::array<Variant, 1> arguments{index};
  return ToString(combo.GetByReference(u"List", arguments));
}

Variant ItemDataAt(const Object& combo, Variant index) {
  std::array<Variant, 1> arguments{std::move(index)};
  return combo.Get(u"ItemData", arguments);
}

// The index of the first entry for which `matches` holds, kNoEntry without one.
template <class Matches>
Int16 FirstIndex(const Object& combo, Matches matches) {
  const Int16 last = ToInt16(ToDouble(combo.Get(u"ListCount")) - 1);
  for (Int16 index = 0; index <= last; index = CheckedInt16(index + 1)) {
    if (matches(index)) return index;
  }
  return kNoEntry;
}

template <class Matches>
void SelectFirst(const Object& combo, Matches matches) {
  const Variant index = FirstIndex(combo, matches);
  combo.Put(u"ListIndex", {}, index);
}

// Selects the first entry of which `part_of`, given the entry's text, yields what is sought.
template <class PartOf>
void SelectText(const Object& combo, StringView sought, PartOf part_of) {
  SelectFirst(combo, [&](Int16 index) {
    const String entry = EntryAt(combo, index);
    return EqualsIgnoringCase(sought, part_of(entry));
  });
}

}  // namespace

void ComboBoxEx::CmbSelectMatchString(const Object& Combo, StringView Text, Int16 Length) {
  const auto cut = [Length](StringView text) { return Length == 0 ? text : FirstOf(text, Length); };
  SelectText(Combo, Trim(cut(Text)), [&](StringView entry) { return Trim(cut(entry)); });
}

void ComboBoxEx::CmbSelectMatchToken(const Object& Combo, StringView Text, Int16 Index) {
  SelectText(Combo, Trim(Text),
             [&](StringView entry) { return Strings::GetToken(entry, u" ", Index); });
}

void ComboBoxEx::CmbSelectMatchSubString(const Object& Combo, StringView Text, Int16 Start,
                                         Int16 Length) {
  SelectText(Combo, Trim(Text), [&](StringView entry) {
    return Trim(Length == 0 ? SliceFrom(entry, Start) : Slice(entry, Start, Length));
  });
}

void ComboBoxEx::CmbSelectItemData(const Object& Combo, Int32 ItemData) {
  SelectFirst(
      Combo, [&](Int16 index) { return CompareToNumber(ItemDataAt(Combo, index), ItemData) == 0; });
}

Int32 ComboBoxEx::CmbCurrentItemData(const Object& Combo, Int32 DefValue) {
  if (CompareToNumber(Combo.Get(u"ListIndex"), 0) < 0) return DefValue;
  return ToInt32(ItemDataAt(Combo, Combo.Get(u"ListIndex")));
}

}  // namespace quorl
