// The orders as a table to look through: latest first, read page by page as it is scrolled.
#pragma once

#include <QAbstractTableModel>
#include <QStringList>
#include <vector>

#include "order_store.hpp"

namespace desk {

class OrderList : public QAbstractTableModel {
 public:
  /// `store` is lent and outlives the list. Empty until the first `Find`.
  explicit OrderList(OrderStore& store, QObject* parent = nullptr);

  /// Shows the orders with `part` in customer or article, by the separators of now. Raises
  /// StoreFailure, the list being empty then.
  void Find(const QString& part);

  int NumberAt(int row) const { return rows_.at(static_cast<std::size_t>(row)).number; }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  bool canFetchMore(const QModelIndex& parent) const override;
  void fetchMore(const QModelIndex& parent) override;

 private:
  struct Row {
    int number;
    QStringList cells;
  };

  void Add(const std::vector<quorl::Object>& page);

  OrderStore& store_;
  QString part_;
  std::vector<Row> rows_;
  bool is_complete_ = true;
};

}  // namespace desk
