// The desk: the order at hand on the left, the orders found on the right.
//
// The order at hand is changed, saved or discarded; no other is shown as long as it has changes
// that are not saved. What the database or the settings refuse is said in a line above the order,
// and what was typed stays.
#pragma once

#include <QCloseEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QPushButton>
#include <QTableView>

#include "customer_window.hpp"
#include "desk_settings.hpp"
#include "entry_form.hpp"
#include "order_list.hpp"
#include "order_store.hpp"

namespace desk {

class DeskWindow : public QMainWindow {
 public:
  /// Opens the orders in `file` and restores what the settings kept. What cannot be read is said in
  /// the window.
  explicit DeskWindow(const QString& file);

  /// Shows an empty order, one by its number, the one looked at before or after it. False, with the
  /// order at hand as it was, where that has unsaved changes or the other cannot be read.
  bool ShowNew();
  bool ShowOrder(int number);
  bool ShowPrevious();
  bool ShowNext();

  /// Saves the order at hand. False where it has faults, which are marked, or cannot be saved.
  bool Save();
  /// Puts the order at hand back to what is saved.
  void Discard();

  /// Reads customers and orders again.
  void Reload();
  void EditSeparators();
  void ShowCustomer();

  /// The number of the order at hand, 0 for a new one.
  int Number() const { return number_; }
  EntryForm& Form() { return *form_; }
  OrderStore& Orders() { return store_; }
  quorl::RollBuffer& Recent() { return recent_; }
  CustomerWindow& CustomerCard() { return *customer_card_; }

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void BuildMenus();
  QWidget* BuildOrder();
  QWidget* BuildList();
  void Restore();
  void Find();
  void SetAtHand(int number, const Entry& saved);
  bool MayLeave();
  bool Walk(void (quorl::RollBuffer::*step)(), quorl::Int32 target);
  bool ShowWithoutNote(int number);
  bool HasChanges() const;
  void UpdateTitle();
  void Say(const QString& message);
  template <class Action>
  bool Try(Action action);

  OrderStore store_;
  DeskSettings settings_;
  quorl::RollBuffer recent_;
  int number_ = 0;
  Entry saved_;
  std::vector<Customer> customers_;

  QLabel* title_;
  QLabel* alert_;
  EntryForm* form_;
  QPushButton* save_;
  QPushButton* discard_;
  QLineEdit* find_;
  OrderList* list_;
  QTableView* table_;
  CustomerWindow* customer_card_;
};

/// How the desk looks, for the whole application.
void SetAppearance();

}  // namespace desk
