#include "customer_window.hpp"

#include <QVBoxLayout>

#include "quorl/qt/values.hpp"
#include "quorl/regional/guids.hpp"

namespace desk {

using namespace Qt::StringLiterals;

namespace {

QString LanguageName(const QString& code) {
  if (code == u"FR") return u"French"_s;
  if (code == u"NL") return u"Dutch"_s;
  return code == u"DE" ? u"German"_s : u"English"_s;
}

}  // namespace

CustomerWindow::CustomerWindow(QWidget* parent)
    : QWidget(parent, Qt::Window), name_(new QLabel(this)), details_(new QLabel(this)) {
  setObjectName(u"FrmCustomer"_s);
  setWindowTitle(u"Customer"_s);
  resize(340, 170);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(20, 18, 20, 18);
  name_->setObjectName(u"title"_s);
  name_->setIndent(0);
  details_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  details_->setAlignment(Qt::AlignTop);
  layout->addWidget(name_);
  layout->addWidget(details_, 1);
  Show({});
}

void CustomerWindow::Show(const Customer& customer) {
  if (customer.number == 0) {
    name_->setText(u"No customer"_s);
    return details_->setText(u"The order at hand has none yet."_s);
  }
  name_->setText(customer.name);
  details_->setText(u"%1\nNumber %2\nAmounts in %3\nRecord %4"_s.arg(
      customer.town, QString::number(customer.number), LanguageName(customer.language),
      quorl::qt::ToQString(quorl::GUIDs::GetNumGUID(customer.number))));
}

}  // namespace desk
