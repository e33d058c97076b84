// The form in which an order is typed: fields, the total in figures and in words as one types, and
// what is wrong, beside the field where it stands.
#pragma once

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QWidget>
#include <array>
#include <functional>
#include <vector>

#include "entry.hpp"

namespace desk {

class EntryForm : public QWidget {
 public:
  explicit EntryForm(QWidget* parent = nullptr);

  /// Fills the list of customers; what is typed stays.
  void SetCustomers(const std::vector<Customer>& customers);

  /// What stands in the fields now.
  Entry Typed() const;
  /// Puts an entry into the fields, with no faults marked. Without a `customer_text` the customer
  /// is found by number.
  void Show(const Entry& entry);

  /// Picks the customer whose name was typed, or the only one in whose entry the text occurs.
  void PickCustomer();

  /// Marks each fault where it stands, clears all other marks, and goes to the first.
  void Mark(const std::vector<Fault>& faults);

  /// The number of the customer that is picked, or 0.
  int CustomerNumber() const;

  /// Called after every change of a field.
  std::function<void()> on_change;

  /// The total in figures and in words.
  struct TotalTexts {
    QString figures;
    QString words;
  };
  /// What they are for an entry, in a customer's language. May be replaced, to compare.
  std::function<TotalTexts(const Entry&, const QString&)> total_texts;

  bool eventFilter(QObject* popup, QEvent* event) override;

 private:
  static constexpr std::size_t kFields = 5;
  struct Marked {
    QWidget* field = nullptr;
    QLabel* note = nullptr;
  };

  QLineEdit* AddEdit(EntryField field, const char16_t* name, const char16_t* label);
  void Add(EntryField field, QWidget* widget, const char16_t* name, const char16_t* label);
  void BuildCustomers();
  void BuildTotal();
  void ShowCustomer(const Entry& entry);
  void ShowTotal();
  void Changed();

  std::vector<Customer> customers_;
  std::array<Marked, kFields> marked_;
  QComboBox* customer_;
  QLineEdit* article_ = nullptr;
  QLineEdit* price_ = nullptr;
  QLineEdit* quantity_ = nullptr;
  QLineEdit* delivery_ = nullptr;
  QComboBox* paid_;
  QLabel* total_;
  QLabel* words_;
};

}  // namespace desk
