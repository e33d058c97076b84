#include "quorl/forms/forms.hpp"

#include <array>

#include "quorl/runtime/compare.hpp"
#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/screen.hpp"
#include "quorl/runtime/variant.hpp"

namespace quorl {
namespace {

// A host's number for the border of a form that can be resized.
constexpr Double kSizable = 2;

// The least distance from the left and top of what a form is centred in.
constexpr Double kMargin = 100;

struct Size {
  Double width = 0;
  Double height = 0;
};

Double LengthOf(const Object& host, StringView member) { return ToDouble(host.Get(member)); }

bool HasBorder(const Object& form, Double style) {
  return CompareToNumber(form.Get(u"BorderStyle"), style) == 0;
}

Size ReferenceSize(const Object& container) {
  if (!container) return {Screen::Width(), Screen::Height()};
  const Double width = LengthOf(container, u"ScaleWidth");
  return {width, LengthOf(container, u"ScaleHeight")};
}

Double ChosenLength(const Object& form, StringView member, Double wanted, Double reference) {
  if (wanted != 0) return wanted;
  return HasBorder(form, kSizable) ? reference / 3 * 2 : LengthOf(form, member);
}

Double MaxOf(Double a, Double b) { return a >= b ? a : b; }

Double Centred(Double length, Double reference) { return MaxOf((reference - length) / 2, kMargin); }

}  // namespace

void Forms::InitFormSettings(const Object& Frm, const Object& Container, Double Width,
                             Double Height) {
  const Size reference = ReferenceSize(Container);
  const Double width = ChosenLength(Frm, u"Width", Width, reference.width);
  const Double height = ChosenLength(Frm, u"Height", Height, reference.height);
  // Asked even without a container: a form has to know whether it is a child.
  const bool is_child = ToBoolean(Frm.Get(u"MDIChild"));
  const bool is_shifted = Container && !is_child;
  Double left = Centred(width, reference.width);
  if (is_shifted) left += LengthOf(Container, u"Left");
  Double top = Centred(height, reference.height);
  if (is_shifted) top += LengthOf(Container, u"Top");
  std::array<Variant, 4> place{left, top, width, height};
  Frm.Call(u"Move", place);
}

}  // namespace quorl
