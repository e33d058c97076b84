// Windows of the toolkit as the forms that `Forms` places, and the screen that it places them on.
//
// A form is a top-level widget, or a QMdiSubWindow in its area. Lengths count 15 to a
// device-independent pixel, so that a scaled screen, fractional scales included, gives the same
// numbers as a plain one. Places and sizes are those of the window with its frame. A top-level
// form's place counts from the upper left corner of the screen on which it stands, a subwindow's
// from that of its area.
//
// - `Name`, read: objectName, or without one the name of its class.
// - `Left`, `Top`, read and written: place of the frame's upper left corner.
// - `Width`, `Height`, read and written: size with the frame.
// - `ScaleWidth`, `ScaleHeight`, read: size of what it can hold: of the QMdiArea where that is its
//   central widget, else without the frame.
// - `WindowState`, read and written: 0 normal, 1 minimised, 2 maximised or full screen.
// - `BorderStyle`, read: 0 none, 1 fixed, 2 sizable, 3 fixed dialog, 4 fixed tool window, 5 sizable
//   tool window.
// - `MDIChild`, read: whether it is a QMdiSubWindow.
// - `Move`, call: left; then, where given, top, width, height.
//
// Other names are properties and methods of the widget (object.hpp). Called from the thread of the
// widgets.
#pragma once

#include <QWidget>

#include "quorl/runtime/object.hpp"
#include "quorl/runtime/types.hpp"

namespace quorl::qt {

/// Units of length in a device-independent pixel.
inline constexpr Double kUnitsPerPixel = 15;

/// A reference to the form in which the widget stands: the nearest QMdiSubWindow or window, itself
/// included. The empty reference for a null pointer. It does not keep the window alive.
///
/// A window whose frame is not known yet, because it was never shown, takes the size that `Move`
/// gives it as one with frame, and is corrected by itself once the frame is there, unless someone
/// has sized it meanwhile. Lengths are rounded to the nearest pixel, and the window's own smallest
/// and largest size hold.
///
///     UseScreenOf(window);
///     Forms::GetFormSettings(settings, FormOf(window));
///
/// Failures of the members: 91 for a deleted window; 5 for a `WindowState` but 0, 1 and 2, for
/// `Move` with no or more than four arguments, and for moving or sizing a form that is minimised or
/// maximised; 6 for a length beyond 16777215 pixels and a `WindowState` beyond an Int16; 13 and 94
/// for what is no number; 438 for writing a member that is only read. The form is then as it was.
Object FormOf(QWidget* widget);

/// Makes the screen on which the widget's window stands the ambient `Screen`, in the unit above.
/// Call it before `Forms`, each time: the window may have been taken to another screen, and a
/// screen's size and scale may change. Does nothing for a null pointer and where there is no
/// screen.
void UseScreenOf(const QWidget* widget);

}  // namespace quorl::qt
