#include "quorl/qt/combo.hpp"

#include <QAbstractItemModel>

#include "internal/host_object.hpp"
#include "quorl/runtime/convert.hpp"

namespace quorl::qt {
namespace {

class Combo final : public WithMembers<Combo, HostObject> {
 public:
  using WithMembers::WithMembers;

  Variant ListCount(Arguments) {
    FetchAll();
    return Int32{Box().count()};
  }
  Variant List(Arguments arguments) { return FromQString(Box().itemText(IndexIn(arguments))); }
  Variant ItemData(Arguments arguments) {
    const Variant data = FromQt(Box().itemData(IndexIn(arguments)));
    return data.IsEmpty() ? Variant(Int32{0}) : data;
  }
  Variant ListIndex(Arguments) { return Int32{Box().currentIndex()}; }
  void PutListIndex(const Variant& value) {
    const Int32 index = ToInt32(value);
    if (index != -1) RequireEntry(index);
    Box().setCurrentIndex(index);
  }

  static const Member<Combo> kMembers[4];

 private:
  QComboBox& Box() const { return static_cast<QComboBox&>(Alive()); }

  // A combo box counts only what its model has fetched so far.
  void FetchAll() const {
    QAbstractItemModel& model = *Box().model();
    const QModelIndex root = Box().rootModelIndex();
    while (model.canFetchMore(root)) {
      const int before = model.rowCount(root);
      model.fetchMore(root);
      if (model.rowCount(root) == before) return;
    }
  }
  void RequireEntry(Int32 index) const {
    if (index < 0 || index >= Box().count()) Raise(FailureNumber::kSubscriptOutOfRange);
  }
  Int32 IndexIn(Arguments arguments) const {
    const Int32 index = ToInt32(OnlyOne(arguments));
    RequireEntry(index);
    return index;
  }
};

const Member<Combo> Combo::kMembers[4] = {
    {u"ListCount", &Combo::ListCount},
    {u"List", &Combo::List},
    {u"ItemData", &Combo::ItemData},
    {u"ListIndex", &Combo::ListIndex, &Combo::PutListIndex},
};

}  // namespace

Object ComboOf(QComboBox* combo) { return combo == nullptr ? Object() : MakeObject<Combo>(*combo); }

}  // namespace quorl::qt
