#include "quorl/forms/forms.hpp"

#include <array>
#include <span>

#include "quorl/runtime/compare.hpp"
#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/raised_error.hpp"
#include "quorl/runtime/screen.hpp"
#include "quorl/runtime/variant.hpp"

namespace quorl {
namespace {

// A host's numbers for the borders of a form, and of a tool window, that can be resized.
constexpr Double kSizable = 2;
constexpr Double kSizableTool = 5;

// A host's numbers for the states of a form; the library's for no state.
constexpr Int16 kNormal = 0;
constexpr Int16 kMaximised = 2;
constexpr Int16 kNeverSaved = -1;

// How much of a restored form stays on the screen at least.
constexpr Single kVisible = 1000;

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

bool HasState(const Object& form, Int16 state) {
  return CompareToNumber(form.Get(u"WindowState"), state) == 0;
}

// The values of one form in the registry.
class SavedForm {
 public:
  SavedForm(Registry& registry, const Object& form, const Variant& name)
      : registry_(registry),
        key_(name.IsMissing() ? ToString(form.Get(u"Name")) : ToString(name)) {}

  void Save(StringView name, const Variant& value) {
    registry_.SaveValue(key_, name, value, REG_DWORD);
  }
  Variant Value(StringView name, const Variant& otherwise) {
    return registry_.GetValue(key_, name, otherwise);
  }
  // The saved length of that name, or the form's own.
  Double Length(StringView name, const Object& form) {
    return ToDouble(Value(name, form.Get(name)));
  }

 private:
  Registry& registry_;
  String key_;
};

// A form that does not tell can be resized.
bool CanBeResized(const Object& form) {
  try {
    const bool is_sizable = HasBorder(form, kSizable);
    const bool is_sizable_tool = HasBorder(form, kSizableTool);
    return is_sizable || is_sizable_tool;
  } catch (const RaisedError&) {
    return true;
  }
}

// A narrow screen has a limit below 0, which then holds.
Double OnScreen(Double place, Single screen) {
  if (place < 0) return 0;
  const Single limit = screen - kVisible;
  return ToSingle(place) > limit ? limit : place;
}

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

void Forms::SaveFormSettings(Registry& Reg, const Object& Frm, const Variant& FrmName) {
  SavedForm saved(Reg, Frm, FrmName);
  if (HasState(Frm, kNormal)) {
    for (const StringView length : {u"Top", u"Left", u"Height", u"Width"}) {
      saved.Save(length, Frm.Get(length));
    }
    saved.Save(u"WindowState", kNormal);
  } else if (HasState(Frm, kMaximised)) {
    saved.Save(u"WindowState", Frm.Get(u"WindowState"));
  } else {
    saved.Save(u"WindowState", kNormal);
  }
}

void Forms::GetFormSettings(Registry& Reg, const Object& Frm, const Variant& FrmName) {
  SavedForm saved(Reg, Frm, FrmName);
  const bool can_be_resized = CanBeResized(Frm);
  const Int32 state = ToInt32(saved.Value(u"WindowState", kNeverSaved));
  if (state == kNeverSaved) return;
  Frm.Put(u"WindowState", {}, state);
  if (state != kNormal) return;
  const Double left = OnScreen(saved.Length(u"Left", Frm), Screen::Width());
  const Double top = OnScreen(saved.Length(u"Top", Frm), Screen::Height());
  std::array<Variant, 4> place{left, top};
  if (can_be_resized) {
    place[2] = saved.Length(u"Width", Frm);
    place[3] = saved.Length(u"Height", Frm);
  }
  Frm.Call(u"Move", std::span(place).first(can_be_resized ? 4 : 2));
}

}  // namespace quorl
