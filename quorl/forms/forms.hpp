// A form's place on the screen or in a container.
//
// Forms and containers are the host's own objects, reached by the names of their members; all
// lengths are in the host's unit. The screen is `Screen` of quorl/runtime/screen.hpp. No member
// keeps a reference to what it is given. Called from the thread that owns the forms.
#pragma once

#include "quorl/runtime/object.hpp"
#include "quorl/runtime/types.hpp"

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
  /// that is no length or no truth value; others of the host unchanged.
  static void InitFormSettings(const Object& Frm, const Object& Container = {}, Double Width = 0,
                               Double Height = 0);
};

}  // namespace quorl
