// What the desk finds again at its next start, besides the orders: places of windows, the orders
// that were looked at last, and an entry that was not saved. All of it is kept by `Registry`.
#pragma once

#include <QWidget>
#include <optional>

#include "order.hpp"
#include "quorl/buffer/roll_buffer.hpp"
#include "quorl/registry/registry.hpp"

namespace desk {

/// An order's number and what was typed over it.
struct Draft {
  int number = 0;
  Entry entry;
};

/// Every member raises RaisedError where the settings cannot be read or written.
class DeskSettings {
 public:
  DeskSettings();

  /// Centred, in `container` or without one on the screen, then where it was when it was saved.
  void RestorePlace(QWidget& window, QWidget* container = nullptr);
  void SavePlace(QWidget& window);

  /// The numbers of the orders in `recent`, and which of them is current.
  void RestoreRecent(quorl::RollBuffer& recent);
  void SaveRecent(const quorl::RollBuffer& recent);

  std::optional<Draft> RestoreDraft();
  /// None forgets the one that was kept.
  void SaveDraft(const std::optional<Draft>& draft);

 private:
  quorl::Registry registry_;
};

}  // namespace desk
