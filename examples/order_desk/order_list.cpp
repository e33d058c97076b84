#include "order_list.hpp"

#include <array>
#include <limits>

#include "entry.hpp"
#include "quorl/fields/db_lib.hpp"
#include "quorl/qt/fields.hpp"
#include "quorl/qt/values.hpp"
#include "quorl/runtime/convert.hpp"

namespace desk {

using namespace quorl;
using qt::FieldValue;

namespace {

constexpr int kPage = 200;
constexpr std::array kTitles{u"No.", u"Customer", u"Article", u"Total EUR", u"Delivery", u"Paid"};
constexpr int kTotal = 3;
constexpr std::array kPaid{u"no", u"yes", u"?"};

QStringList CellsOf(const Object& fields) {
  const auto text = [&](StringView name) {
    return qt::ToQString(DbLib::StrFieldValue(FieldValue(fields, name)));
  };
  const auto paid =
      static_cast<std::size_t>(DbLib::TriStateFieldValue(FieldValue(fields, u"paid")));
  return {text(u"number"),
          text(u"name"),
          text(u"article"),
          AmountText(TotalOf(fields)),
          qt::ToQString(DbLib::StrDateFieldValue(FieldValue(fields, u"delivery"))),
          QString::fromUtf16(kPaid.at(paid))};
}

bool IsNumeric(int column) { return column == 0 || column == kTotal; }

}  // namespace

OrderList::OrderList(OrderStore& store, QObject* parent)
    : QAbstractTableModel(parent), store_(store) {}

void OrderList::Find(const QString& part) {
  beginResetModel();
  part_ = part;
  rows_.clear();
  is_complete_ = true;
  endResetModel();
  Add(store_.Page(part_, std::numeric_limits<int>::max(), kPage));
}

void OrderList::Add(const std::vector<Object>& page) {
  is_complete_ = page.size() < kPage;
  if (page.empty()) return;
  const int first = rowCount();
  beginInsertRows({}, first, first + static_cast<int>(page.size()) - 1);
  for (const Object& fields : page) {
    rows_.push_back({ToInt32(FieldValue(fields, u"number")), CellsOf(fields)});
  }
  endInsertRows();
}

int OrderList::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int OrderList::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(kTitles.size());
}

QVariant OrderList::data(const QModelIndex& index, int role) const {
  if (role == Qt::TextAlignmentRole && IsNumeric(index.column())) {
    return QVariant(Qt::AlignRight | Qt::AlignVCenter);
  }
  if (role != Qt::DisplayRole) return {};
  return rows_.at(static_cast<std::size_t>(index.row())).cells.at(index.column());
}

QVariant OrderList::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) return {};
  if (role == Qt::TextAlignmentRole) {
    return QVariant((IsNumeric(section) ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
  }
  if (role != Qt::DisplayRole) return {};
  return QString::fromUtf16(kTitles.at(static_cast<std::size_t>(section)));
}

bool OrderList::canFetchMore(const QModelIndex& parent) const {
  return !parent.isValid() && !is_complete_;
}

// The view asks for this while it paints: a page that cannot be read ends the list.
void OrderList::fetchMore(const QModelIndex&) {
  try {
    Add(store_.Page(part_, rows_.back().number, kPage));
  } catch (const StoreFailure&) {
    is_complete_ = true;
  }
}

}  // namespace desk
