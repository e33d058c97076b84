// Texts and values between the toolkit and the library, both ways without loss. A value that has no
// exact counterpart is a failure, never a near miss.
//
// Both sides keep texts as UTF-16, so that a text is lent where its life allows it (`Lend`) and
// copied code unit by code unit otherwise. Any thread; each value from one thread at a time.
//
// | toolkit                                   | library                                         |
// |-------------------------------------------|-------------------------------------------------|
// | invalid QVariant                          | Empty                                           |
// | NULL of any type, invalid date or time    | Null (back: NULL)                               |
// | bool                                      | Boolean                                         |
// | uchar; char, short; ushort, int           | Byte; Int16; Int32                              |
// | wider whole numbers, enumerations, flags  | Int32 where it fits, else Double if exact       |
// | float, double                             | Single, Double                                  |
// | quorl::Currency                           | Currency                                        |
// | QDate, QTime, QDateTime (wall clock)      | Date, to the millisecond                        |
// | QString, QChar, QUuid                     | String (a QUuid as "{...}" in capitals)         |
// | QByteArray                                | array of bytes                                  |
// | QStringList, QVariantList                 | array of texts, array of Variants, from 0       |
// | QObject* and pointers to derived classes  | Object (object.hpp); null: the empty reference  |
#pragma once

#include <QMetaType>
#include <QString>
#include <QVariant>

#include "quorl/runtime/variant.hpp"

Q_DECLARE_METATYPE(quorl::Currency)

namespace quorl::qt {

/// The text lent: valid until `text` is changed or gone. Never pass a temporary that ends sooner.
///     DbLib::StrToField(Lend(edit->text()));  // the temporary lives until the call returns
inline StringView Lend(const QString& text) noexcept {
  return StringView(QStringView(text).utf16(), static_cast<std::size_t>(text.size()));
}
/// The other way, under the same rule.
inline QStringView Lend(StringView text) noexcept {
  return QStringView(text.data(), static_cast<qsizetype>(text.size()));
}

/// A copy of the text. Lone surrogates stay as they are.
inline QString ToQString(StringView text) { return Lend(text).toString(); }
inline String FromQString(const QString& text) { return String(Lend(text)); }

/// The value in the library's types, by the table above. Of a QDateTime the clock time counts,
/// whatever its time zone.
/// Failure 6 for a whole number that no Double holds exactly and for a date outside the years 100
/// to 9999; 13 for a type that the table lacks (a colour, a map).
Variant FromQt(const QVariant& value);

/// The value in the toolkit's types. Empty is the invalid QVariant, Null a NULL (a null pointer's
/// QVariant), which a query binds as NULL. A Date is a QDate at midnight, a QTime on 1899-12-30,
/// else a QDateTime in local time, or in UTC for an hour that the local clock leaves out. A
/// Currency stays one: it converts to QString as digits with "." and four decimals, which is how
/// SQL drivers bind it, and to double. An Object gives the QObject behind it.
/// Failure 6 for a date outside the calendar; 13 for Missing, an array of two dimensions and an
/// object of another host; 91 for an object that was deleted.
QVariant ToQt(const Variant& value);

}  // namespace quorl::qt
