// Records of SQL as the collection of fields that `DbLib` reads, and what `DbLib` gives back bound
// as parameters of a query.
//
// - Of the collection, `Count`: the number of fields, an Int32.
// - Of the collection, the default member and `Item`: the field at an index from 0, or of that name
//   without case.
// - Of a field, `Name`: its name.
// - Of a field, the default member and `Value`: its value.
//
// Values pass by values.hpp, with what SQL declares on top: NULL is Null; a whole number of a
// field declared as a truth value is a Boolean; a decimal is a Currency where its value has at most
// four decimals and lies in range, else a Double. A value counts as a decimal when the driver gives
// it digit by digit, when it is a number of a field declared DECIMAL in SQLite, and when the field
// is named in `decimals`, whatever the driver makes of it. SQLite itself keeps 15 digits of a field
// declared DECIMAL or NUMERIC, and every digit of one declared TEXT: name such a field in
// `decimals`.
#pragma once

#include <QSqlQuery>
#include <QSqlRecord>
#include <QStringList>

#include "quorl/runtime/object.hpp"
#include "quorl/runtime/variant.hpp"

namespace quorl::qt {

/// A reference to a copy of the record: what happens to the query later does not reach it. Any
/// thread.
///
///     Object fields = FieldsOf(query, {"price"});
///     Int16 at = DbLib::FieldPos(u"price", fields);
///
/// Failures of the members: 9 for an index or a name that no field has, 5 for another number of
/// arguments than the one index, 438 for any other member and for a write; of `Value` those of
/// values.hpp.
Object FieldsOf(const QSqlRecord& record, const QStringList& decimals = {});
/// The row on which the query stands; every value is Null where it stands on none.
Object FieldsOf(const QSqlQuery& query, const QStringList& decimals = {});

/// The value of the field of that name, without case; as `Value` above. Failure 9 where there is no
/// such field, 91 for the empty reference, 424 and 438 for one that is no collection of fields.
Variant FieldValue(const Object& fields, StringView name);

/// Binds a value of `DbLib`, or any other, to the next "?" or to a named placeholder of a prepared
/// query: text is never pasted into a statement. Null and Empty are bound as NULL, a Currency digit
/// by digit. Failures of `ToQt` (values.hpp); nothing is bound then.
///
///     query.prepare("insert into orders (article, price) values (?, ?)");
///     Bind(query, DbLib::StrToField(u"l'eau"));
///     Bind(query, ToCurrency(u"1,50"));
void Bind(QSqlQuery& query, const Variant& value);
void Bind(QSqlQuery& query, const QString& placeholder, const Variant& value);

}  // namespace quorl::qt
