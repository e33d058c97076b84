// A form's place: on the screen or in a container, and kept between two runs of a host.
//
// Forms and containers are the host's own objects, reached by the names of their members; all
// lengths are in the host's unit. No member keeps a reference to what it is given. Called from the
// thread that owns the forms.
//
// The screen is `Screen` of quorl/runtime/screen.hpp, its size in single precision. It is 0 by 0
// until the host sets it (`Screen::SetSize`, `QuorlSetScreen`), and until then `InitFormSettings`
// makes a form without a container of no size, and `GetFormSettings` moves one to -1000, -1000.
#pragma once

#include "quorl/registry/registry.hpp"
#include "quorl/runtime/object.hpp"
#include "quorl/runtime/types.hpp"
#include "quorl/runtime/variant.hpp"

namespace quorl {

class Forms {
 public:
  /// Sizes `Frm` and centres it, on the screen or, if `Container` is given, in that form.
  ///
  /// A `Width` or `Height` of 0 means two thirds of the screen or container for a form that can be
  /// resized (`BorderStyle` 2), else the form's own. The place is never less than 100 from the left
  /// and top of what it is centred in. A form that is no child of its container (`MDIChild` is
  /// False) is shifted by the container's `Left` and `Top`.
  ///
  /// Reads, in this order: `ScaleWidth` and `ScaleHeight` of the container; `BorderStyle`, then
  /// `Width` unless it is 2, for a `Width` of 0; the same for `Height`; `MDIChild` always; `Left`
  /// and `Top` of the container where they count. Calls `Move` with left, top, width and height,
  /// each a Double, as the last step and only change.
  ///
  ///     Screen::SetSize(900, 600);
  ///     Forms::InitFormSettings(form);  // BorderStyle 2: form.Move(150, 100, 600, 400)
  ///
  /// Failure 91 for an empty `Frm`; 438 for a member that is missing; 94, 13 and 6 for a member
  /// that is no length or no truth value (Null, no number, beyond a Double); 7 when memory is
  /// short; others of the host unchanged.
  static void InitFormSettings(const Object& Frm, const Object& Container = {}, Double Width = 0,
                               Double Height = 0);

  /// Saves the form's place below the root of `Reg`, in the key `FrmName`, or without it the one
  /// named by the form's `Name`: the REG_DWORD values "Top", "Left", "Height", "Width" and
  /// "WindowState". A backslash in the name makes further levels, an empty one is the root itself.
  ///
  /// All five are written for a form in the normal state (0). Of a maximised form (2) and of any
  /// other, which counts as normal, "WindowState" alone is written, so that the place that was
  /// saved before stays. `WindowState` is read for each comparison and for the value of 2; each
  /// length is read just before it is written, rounded to a whole number, ties to even: 10.5 is
  /// saved as 10.
  ///
  ///     Registry settings;
  ///     settings.InitApp(u"Atelier", u"Orders");
  ///     Forms::SaveFormSettings(settings, form);  // ...\Atelier\Orders\FrmOrder
  ///
  /// Failure 91 for an empty `Frm`; 438 for a member that is missing; 94, 13 and 6 for a name
  /// without a text and for a member that is no number or, a length, beyond an Int32; 7 when memory
  /// is short; those of `Registry::SaveValue`; others of the host unchanged. What was written
  /// before the failure stays written.
  static void SaveFormSettings(Registry& Reg, const Object& Frm, const Variant& FrmName = Missing);

  /// Puts the form back to where `SaveFormSettings` found it. Without a saved "WindowState", or
  /// with one of -1, the form is not touched. Otherwise `WindowState` is set to it (an Int32), and
  /// for 0 the form is moved: its left and top are those saved, or its own where none are. One
  /// below 0 becomes 0; any other that is beyond the screen's size less 1000 becomes that, in
  /// single precision, which on a screen narrower than 1000 lies below 0. Width and height are
  /// restored, without any limit, for a form that can be resized: `BorderStyle` 2 or 5, or none
  /// that can be read.
  ///
  /// Reads, in this order: `Name` unless `FrmName` is given; `BorderStyle` twice; then, each just
  /// before the saved value that it stands in for, `Left`, `Top`, `Width` and `Height`. Calls
  /// `Move` with two or four Doubles.
  ///
  /// Failure 91 for an empty `Frm`, with `FrmName` given only once there is something to restore;
  /// 438 for a member that is missing; 94, 13 and 6 for a name without a text and for a length of
  /// the form that is no number; of what is saved, 13 for a text that is no number and for
  /// REG_BINARY, 94 for a type that `Registry::GetValue` gives as Null, 6 for a number out of
  /// range; 7 when memory is short; those of `Registry::GetValue`; others of the host unchanged. A
  /// `WindowState` that was set stays.
  static void GetFormSettings(Registry& Reg, const Object& Frm, const Variant& FrmName = Missing);
};

}  // namespace quorl
