// The orders in an SQLite file. Values go in as parameters and come out as fields; text is never
// pasted into a statement. Every query is finished when its member returns, so that the desk keeps
// nobody else from writing.
#pragma once

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <stdexcept>
#include <vector>

#include "order.hpp"
#include "quorl/runtime/object.hpp"

namespace desk {

/// What went wrong with the database, in words for the person (`Message`). Nothing was changed.
class StoreFailure : public std::runtime_error {
 public:
  explicit StoreFailure(const QString& message)
      : std::runtime_error(message.toStdString()), message_(message) {}
  const QString& Message() const noexcept { return message_; }

 private:
  QString message_;
};

/// Every member but the constructor raises a StoreFailure where the file cannot be used, and the
/// next call tries again.
class OrderStore {
 public:
  /// Touches nothing. The file, with a few customers and orders, is made at the first use.
  explicit OrderStore(const QString& file);
  OrderStore(const OrderStore&) = delete;
  OrderStore& operator=(const OrderStore&) = delete;
  ~OrderStore();

  std::vector<Customer> Customers();
  int CountOrders();

  /// The fields of one order; the empty reference where there is none of that number.
  quorl::Object Read(int number);

  /// Inserts an order of number 0, changes any other. The order's number.
  int Save(const Order& order);

  /// Up to `most` orders before the number `before`, latest first, with the customer's name:
  /// those whose article or customer has `part` in it, or all for an empty one.
  std::vector<quorl::Object> Page(const QString& part, int before, int most);

  /// The connection's name, for whoever has to reach the same database.
  const QString& Connection() const noexcept { return connection_; }

 private:
  QSqlDatabase& Opened();
  void Fill();
  QSqlQuery Prepared(const QString& statement);
  static void Run(QSqlQuery& query);

  QString connection_;
  QSqlDatabase database_;
  bool is_ready_ = false;
};

}  // namespace desk
