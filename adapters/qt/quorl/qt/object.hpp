// Any object of the toolkit as a late-bound object: its properties and its invokable methods, by
// name.
//
// Names are matched as they are written, and where there is none of that spelling without case, so
// that `WindowTitle` finds `windowTitle`. Values pass by values.hpp. Forms, combo boxes and fields
// have members of their own (form.hpp, combo.hpp, fields.hpp) and answer to these besides.
//
// A reference does not keep the toolkit's object alive. Once that is deleted, every use of the
// reference is failure 91. Called from the object's thread.
#pragma once

#include <QObject>

#include "quorl/runtime/object.hpp"

namespace quorl::qt {

/// A reference to the object; the empty reference for a null pointer.
///
/// - A read gives a property, declared or dynamic; with arguments, or where there is no such
///   property, what an invokable method of that name and that many arguments gives.
/// - A write sets a property.
/// - A call calls an invokable method or slot; the first whose number of arguments fits and to
///   whose types the arguments convert. Empty is the result of one that gives none.
///
///     Object button = ObjectOf(push_button);
///     button.Put(u"Text", {}, u"Save");
///     button.Call(u"click");
///
/// Failures: 91 for a deleted object; 438 for a member that it lacks, that cannot be read or
/// written, a read with arguments of a plain property, and any write with arguments; 5 for a wrong
/// number of arguments; 13 for a value that does not convert to the property's or argument's type,
/// and for a type that values.hpp lacks; those of values.hpp. A failure that a method raises passes
/// unchanged.
Object ObjectOf(QObject* object);

/// Whether the reference leads to an object of the toolkit, a deleted one too; false for the empty
/// reference and for fields.
bool IsOfQt(const Object& object) noexcept;

/// The toolkit's object behind the reference. Failure 91 for the empty reference and a deleted
/// object, 13 for an object of another host.
QObject* QObjectOf(const Object& object);

}  // namespace quorl::qt
