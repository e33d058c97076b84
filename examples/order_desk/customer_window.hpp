// A window of its own beside the desk: the customer of the order at hand.
#pragma once

#include <QLabel>
#include <QWidget>

#include "order.hpp"

namespace desk {

class CustomerWindow : public QWidget {
 public:
  explicit CustomerWindow(QWidget* parent);

  void Show(const Customer& customer);

 private:
  QLabel* name_;
  QLabel* details_;
};

}  // namespace desk
