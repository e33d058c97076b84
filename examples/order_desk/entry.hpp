// From what a person typed to an order and back, by the user's separators. No widgets here.
#pragma once

#include <optional>
#include <vector>

#include "order.hpp"
#include "quorl/runtime/locale.hpp"
#include "quorl/runtime/object.hpp"

namespace desk {

enum class EntryField { kCustomer, kArticle, kPrice, kQuantity, kDelivery };

/// What is wrong with a field, in words for the person.
struct Fault {
  EntryField field;
  QString message;
};

/// Everything that is wrong, in the order of the fields; empty for an entry that can be saved.
std::vector<Fault> FaultsOf(const Entry& entry);

/// The order that an entry without faults says.
Order OrderOf(int number, const Entry& entry);

/// A record of orders (the fields of the table) as it is shown. `customer_text` stays empty.
Entry EntryOf(const quorl::Object& fields);

/// Price times quantity, rounded commercially to cents; none while either is no number.
std::optional<quorl::Currency> TotalOf(const Entry& entry);

/// The same of a record of orders.
quorl::Currency TotalOf(const quorl::Object& fields);

/// "1 234,50" in the user's separators.
QString AmountText(const quorl::Variant& amount);

/// The amount in euros in words; empty for a language that nobody here writes.
QString AmountInWords(quorl::Currency amount, const QString& language);

/// The entry with its good numbers and date written by the current locale, where it was typed by
/// `former`; anything else stays as it was typed.
Entry Rewritten(Entry entry, const quorl::Locale& former);

}  // namespace desk
