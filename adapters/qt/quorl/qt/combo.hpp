// A combo box of the toolkit as the object that `ComboBoxEx` works with.
//
// - `ListCount`, read: the number of entries, those too that the model has not fetched yet.
// - `List`, read: the text of the entry at an index from 0.
// - `ItemData`, read: what is stored with it under Qt::UserRole; 0 where nothing is.
// - `ListIndex`, read and written: the selected entry; -1 for none.
//
// Other names are properties and methods of the combo box (object.hpp). Called from the thread of
// the widgets.
#pragma once

#include <QComboBox>

#include "quorl/runtime/object.hpp"

namespace quorl::qt {

/// A reference to the combo box; the empty reference for a null pointer. It does not keep the combo
/// box alive.
///
///     ComboBoxEx::CmbSelectItemData(ComboOf(customers), 101);
///
/// Failures of the members: 91 for a deleted combo box; 9 for an index that no entry has; 5 for
/// another number of arguments than the one index; 13, 94 and 6 for an index that is no number; of
/// `ItemData` those of `FromQt` (values.hpp).
/// `ListIndex` takes -1 and the index of any entry, and 9 for all others leaves it as it was.
Object ComboOf(QComboBox* combo);

}  // namespace quorl::qt
