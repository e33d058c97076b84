// The user's separators: kept by `Regional`, in force as the current locale.
#pragma once

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <array>

#include "quorl/regional/regional.hpp"

namespace desk {

/// Makes the current locale the system's with the separators of the user's settings, where these
/// name any, and lets the hidden `Regional` read them again. Raises RaisedError where the settings
/// cannot be read.
void UseSeparators();

/// A dialog that changes the four separators of the settings. What cannot be used together is
/// marked, and the dialog stays.
class SeparatorsDialog : public QDialog {
 public:
  explicit SeparatorsDialog(QWidget* parent);

  void accept() override;

 private:
  QString FaultOf() const;
  void Preview();

  std::array<QLineEdit*, 4> edits_{};
  QLabel* note_;
};

}  // namespace desk
