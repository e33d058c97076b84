// What the desk knows of customers and orders.
#pragma once

#include <QString>
#include <vector>

#include "quorl/runtime/variant.hpp"

namespace desk {

struct Customer {
  int number = 0;
  QString name;
  QString town;
  /// The language of amounts in words: "FR", "NL", "DE" or "UK".
  QString language;
};

/// An order as the database has it. A `number` of 0 is one that is not saved yet.
struct Order {
  int number = 0;
  int customer = 0;
  quorl::Variant article;
  quorl::Currency price;
  quorl::Double quantity = 0;
  quorl::Variant delivery;  ///< Date or Null.
  quorl::Variant paid;      ///< Boolean or Null.
};

/// An order as it stands in the entry form: what was typed, good or not.
struct Entry {
  QString customer_text;
  int customer = 0;
  QString article;
  QString price;
  QString quantity;
  QString delivery;
  int paid = 2;  ///< 0 no, 1 yes, 2 unknown.

  friend bool operator==(const Entry&, const Entry&) = default;
};

}  // namespace desk
