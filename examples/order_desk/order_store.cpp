#include "order_store.hpp"

#include <QUuid>
#include <array>

#include "quorl/fields/db_lib.hpp"
#include "quorl/qt/fields.hpp"
#include "quorl/qt/values.hpp"
#include "quorl/runtime/convert.hpp"

namespace desk {

using namespace Qt::StringLiterals;
using namespace quorl;
using qt::FieldValue;

namespace {

// SQLite's own result codes, of which the low byte is the kind.
struct Explanation {
  int code;
  const char16_t* message;
};
constexpr std::array kExplanations{
    Explanation{5, u"Someone else is writing to the orders. Try again in a moment."},
    Explanation{6, u"Someone else is writing to the orders. Try again in a moment."},
    Explanation{8, u"The orders can be read but not changed: the file is read-only."},
    Explanation{10, u"The disk reports an error."},
    Explanation{11, u"The file of orders is damaged. Put a copy in its place."},
    Explanation{13, u"The disk is full. Make room, then save again."},
    Explanation{14, u"The file of orders cannot be opened."},
    Explanation{26, u"The file of orders is damaged, or no file of orders at all."},
};

[[noreturn]] void RaiseFailure(const QSqlError& error) {
  const int code = error.nativeErrorCode().toInt() & 0xFF;
  for (const Explanation& known : kExplanations) {
    if (known.code == code) throw StoreFailure(QString::fromUtf16(known.message));
  }
  throw StoreFailure(error.text());
}

// A price is kept as digits: of a number SQLite would keep no more than 15 of them.
constexpr std::array kSchema{
    u"create table if not exists customers (number integer primary key, name text not null,"
    u" town text not null, language text not null)",
    u"create table if not exists orders (number integer primary key,"
    u" customer integer not null references customers, article text not null,"
    u" price text not null, quantity real not null, delivery date, paid boolean)",
};

const std::vector<Customer>& FirstCustomers() {
  static const std::vector<Customer> customers{
      {101, u"Atelier du Pont"_s, u"Liège"_s, u"FR"_s},
      {102, u"Brasserie de la Place"_s, u"Namur"_s, u"FR"_s},
      {103, u"De Vries & Zonen"_s, u"Gent"_s, u"NL"_s},
      {104, u"Drukkerij Janssens"_s, u"Antwerpen"_s, u"NL"_s},
      {105, u"Gasthof zur Brücke"_s, u"Eupen"_s, u"DE"_s},
      {106, u"Schreinerei Vogel"_s, u"Aachen"_s, u"DE"_s},
      {107, u"Harbour Books"_s, u"Dover"_s, u"UK"_s},
      {108, u"L'Épicerie d'Été"_s, u"Bruxelles"_s, u"FR"_s},
  };
  return customers;
}

std::vector<Order> FirstOrders() {
  const auto amount = [](std::int64_t cents) { return Currency::FromTenThousandths(cents * 100); };
  const auto day = [](int month, int number) { return Date(DateOf({2026, month, number})); };
  return {
      {0, 101, u"Oak boards, planed", amount(4250), 24, day(3, 12), true},
      {0, 103, u"Tulip bulbs, mixed", amount(38), 1500, day(9, 28), true},
      {0, 107, u"Shelving, 2 m", amount(18999), 6, day(4, 2), false},
      {0, 102, u"Beer glasses, 33 cl", amount(215), 480, day(5, 20), true},
      {0, 105, u"Bed linen, double", amount(6480), 32, Null, Null},
      {0, 104, u"Paper, 80 g, A4", amount(489), 250, day(6, 1), false},
      {0, 108, u"Olives in brine", amount(3175), 18, day(6, 15), true},
      {0, 106, u"Hinges, brass", amount(612), 144, day(7, 3), Null},
      {0, 101, u"Linseed oil, 5 l", amount(2790), 12, Null, false},
  };
}

}  // namespace

OrderStore::OrderStore(const QString& file)
    : connection_(QUuid::createUuid().toString()),
      database_(QSqlDatabase::addDatabase(u"QSQLITE"_s, connection_)) {
  database_.setDatabaseName(file);
  database_.setConnectOptions(u"QSQLITE_BUSY_TIMEOUT=300"_s);
}

OrderStore::~OrderStore() {
  database_ = QSqlDatabase();
  QSqlDatabase::removeDatabase(connection_);
}

QSqlDatabase& OrderStore::Opened() {
  if (!database_.isOpen() && !database_.open()) RaiseFailure(database_.lastError());
  if (!is_ready_) Fill();
  is_ready_ = true;
  return database_;
}

void OrderStore::Run(QSqlQuery& query) {
  if (!query.exec()) RaiseFailure(query.lastError());
}

QSqlQuery OrderStore::Prepared(const QString& statement) {
  QSqlQuery query(database_);
  query.setForwardOnly(true);
  if (!query.prepare(statement)) RaiseFailure(query.lastError());
  return query;
}

// All of it or nothing: a start that is cut off leaves no half-filled file.
void OrderStore::Fill() {
  QSqlQuery tables = Prepared(u"select count(*) from sqlite_master where name = 'orders'"_s);
  Run(tables);
  if (tables.next() && tables.value(0).toInt() != 0) return;
  tables.finish();
  if (!database_.transaction()) RaiseFailure(database_.lastError());
  try {
    for (const char16_t* statement : kSchema) {
      QSqlQuery query = Prepared(QString::fromUtf16(statement));
      Run(query);
    }
    for (const Customer& customer : FirstCustomers()) {
      QSqlQuery query = Prepared(u"insert into customers values (?, ?, ?, ?)"_s);
      qt::Bind(query, Int32{customer.number});
      for (const QString& text : {customer.name, customer.town, customer.language}) {
        qt::Bind(query, qt::Lend(text));
      }
      Run(query);
    }
    is_ready_ = true;
    for (const Order& order : FirstOrders()) Save(order);
    if (!database_.commit()) RaiseFailure(database_.lastError());
  } catch (...) {
    is_ready_ = false;
    database_.rollback();
    throw;
  }
}

std::vector<Customer> OrderStore::Customers() {
  Opened();
  QSqlQuery query = Prepared(u"select number, name, town, language from customers order by name"_s);
  Run(query);
  std::vector<Customer> customers;
  while (query.next()) {
    const Object fields = qt::FieldsOf(query);
    const auto text = [&](StringView name) {
      return qt::ToQString(DbLib::StrFieldValue(FieldValue(fields, name)));
    };
    customers.push_back(
        {ToInt32(FieldValue(fields, u"number")), text(u"name"), text(u"town"), text(u"language")});
  }
  return customers;
}

int OrderStore::CountOrders() {
  Opened();
  QSqlQuery query = Prepared(u"select count(*) from orders"_s);
  Run(query);
  return query.next() ? query.value(0).toInt() : 0;
}

Object OrderStore::Read(int number) {
  Opened();
  QSqlQuery query = Prepared(u"select * from orders where number = ?"_s);
  qt::Bind(query, Int32{number});
  Run(query);
  return query.next() ? qt::FieldsOf(query, {u"price"_s}) : Object();
}

int OrderStore::Save(const Order& order) {
  Opened();
  QSqlQuery query = Prepared(
      order.number == 0
          ? u"insert into orders (customer, article, price, quantity, delivery, paid)"
            u" values (?, ?, ?, ?, ?, ?)"_s
          : u"update orders set customer = ?, article = ?, price = ?, quantity = ?, delivery = ?,"
            u" paid = ? where number = ?"_s);
  for (const Variant& value : {Variant(Int32{order.customer}), order.article, Variant(order.price),
                               Variant(order.quantity), order.delivery, order.paid}) {
    qt::Bind(query, value);
  }
  if (order.number != 0) qt::Bind(query, Int32{order.number});
  Run(query);
  if (query.numRowsAffected() != 1) throw StoreFailure(u"Someone has deleted this order."_s);
  return order.number == 0 ? query.lastInsertId().toInt() : order.number;
}

std::vector<Object> OrderStore::Page(const QString& part, int before, int most) {
  Opened();
  QSqlQuery query = Prepared(
      u"select o.number, c.name, o.article, o.price, o.quantity, o.delivery, o.paid"
      u" from orders o join customers c on c.number = o.customer"
      u" where o.number < ? and (? = '' or instr(lower(o.article), lower(?)) > 0"
      u" or instr(lower(c.name), lower(?)) > 0) order by o.number desc limit ?"_s);
  qt::Bind(query, Int32{before});
  for (int i = 0; i < 3; ++i) qt::Bind(query, qt::Lend(part));
  qt::Bind(query, Int32{most});
  Run(query);
  std::vector<Object> page;
  while (query.next()) page.push_back(qt::FieldsOf(query, {u"price"_s}));
  return page;
}

}  // namespace desk
