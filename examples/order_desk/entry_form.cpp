#include "entry_form.hpp"

#include <QAbstractItemView>
#include <QCompleter>
#include <QGridLayout>
#include <QKeyEvent>
#include <QSignalBlocker>
#include <QStyle>
#include <QVBoxLayout>

#include "quorl/forms/combo_box_ex.hpp"
#include "quorl/qt/combo.hpp"
#include "quorl/qt/decimal_keys.hpp"
#include "quorl/qt/values.hpp"

namespace desk {

using namespace Qt::StringLiterals;
using namespace quorl;

namespace {

QString ListedAs(const Customer& customer) { return u"%1, %2"_s.arg(customer.name, customer.town); }

EntryForm::TotalTexts TextsOf(const Entry& entry, const QString& language) {
  const std::optional<Currency> total = TotalOf(entry);
  if (!total) return {};
  return {AmountText(*total) + u" EUR"_s, AmountInWords(*total, language)};
}

// A style sheet that depends on a property is applied again only when asked to.
void SetFlag(QWidget& widget, const char* name, bool value) {
  if (widget.property(name).toBool() == value) return;
  widget.setProperty(name, value);
  widget.style()->unpolish(&widget);
  widget.style()->polish(&widget);
}

}  // namespace

EntryForm::EntryForm(QWidget* parent)
    : QWidget(parent),
      total_texts(TextsOf),
      customer_(new QComboBox(this)),
      paid_(new QComboBox(this)),
      total_(new QLabel(this)),
      words_(new QLabel(this)) {
  auto* layout = new QGridLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setVerticalSpacing(2);
  layout->setColumnStretch(0, 1);
  layout->setColumnStretch(1, 1);
  BuildCustomers();
  article_ = AddEdit(EntryField::kArticle, u"article", u"&Article");
  price_ = AddEdit(EntryField::kPrice, u"price", u"&Price EUR");
  quantity_ = AddEdit(EntryField::kQuantity, u"quantity", u"&Quantity");
  BuildTotal();
  delivery_ = AddEdit(EntryField::kDelivery, u"delivery", u"&Delivery");
  paid_->setObjectName(u"paid"_s);
  paid_->setAccessibleName(u"Paid"_s);
  // In the order of the third state: 0 no, 1 yes, 2 unknown.
  paid_->addItems({u"no"_s, u"yes"_s, u"unknown"_s});
  auto* paid_label = new QLabel(u"Pa&id"_s, this);
  paid_label->setBuddy(paid_);
  layout->addWidget(paid_label, 9, 1);
  layout->addWidget(paid_, 10, 1);
  connect(paid_, &QComboBox::currentIndexChanged, this, &EntryForm::Changed);
  for (QLineEdit* edit : {price_, quantity_}) {
    edit->setAlignment(Qt::AlignRight);
    new qt::DecimalKeyFilter(edit);
  }
  const std::array<QWidget*, 6> order{customer_, article_, price_, quantity_, delivery_, paid_};
  for (std::size_t i = 0; i + 1 < order.size(); ++i) setTabOrder(order.at(i), order.at(i + 1));
  Show({});
}

// Label above, field, and below it the place of what is wrong with it.
void EntryForm::Add(EntryField field, QWidget* widget, const char16_t* name,
                    const char16_t* label) {
  struct Cell {
    int row, column, columns;
  };
  static constexpr std::array<Cell, kFields> kCells{
      {{0, 0, 2}, {3, 0, 2}, {6, 0, 1}, {6, 1, 1}, {9, 0, 1}}};
  const auto index = static_cast<std::size_t>(field);
  const Cell cell = kCells.at(index);
  auto* title = new QLabel(QString::fromUtf16(label), this);
  auto* note = new QLabel(this);
  title->setBuddy(widget);
  note->setProperty("fault", true);
  note->setIndent(0);
  note->setContentsMargins(0, 0, 0, 6);
  widget->setObjectName(QString::fromUtf16(name));
  widget->setAccessibleName(title->text().remove(u'&'));
  auto* grid = static_cast<QGridLayout*>(layout());
  // Price and quantity share a row, and so do delivery and paid.
  grid->addWidget(title, cell.row, cell.column, 1, cell.columns);
  grid->addWidget(widget, cell.row + 1, cell.column, 1, cell.columns);
  grid->addWidget(note, cell.row + 2, cell.column, 1, cell.columns);
  marked_.at(index) = {widget, note};
}

QLineEdit* EntryForm::AddEdit(EntryField field, const char16_t* name, const char16_t* label) {
  auto* edit = new QLineEdit(this);
  Add(field, edit, name, label);
  connect(edit, &QLineEdit::textChanged, this, &EntryForm::Changed);
  return edit;
}

void EntryForm::BuildCustomers() {
  Add(EntryField::kCustomer, customer_, u"customer", u"&Customer");
  customer_->setEditable(true);
  customer_->setInsertPolicy(QComboBox::NoInsert);
  customer_->lineEdit()->setPlaceholderText(u"part of the name or town"_s);
  customer_->lineEdit()->setAccessibleName(u"Customer"_s);
  QCompleter* completer = customer_->completer();
  completer->setCompletionMode(QCompleter::PopupCompletion);
  completer->setFilterMode(Qt::MatchContains);
  completer->setCaseSensitivity(Qt::CaseInsensitive);
  completer->popup()->installEventFilter(this);
  connect(customer_, &QComboBox::editTextChanged, this, &EntryForm::Changed);
  connect(customer_->lineEdit(), &QLineEdit::editingFinished, this, &EntryForm::PickCustomer);
}

// While names are offered the keys go to their list, where Tab would only close it: it picks the
// customer and goes on to the next field, as it does everywhere else.
bool EntryForm::eventFilter(QObject* popup, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return false;
  const int key = static_cast<const QKeyEvent*>(event)->key();
  if (key != Qt::Key_Tab && key != Qt::Key_Backtab) return false;
  auto& names = static_cast<QAbstractItemView&>(*popup);
  const QModelIndex chosen = names.currentIndex();
  if (chosen.isValid()) customer_->setEditText(chosen.data().toString());
  names.hide();
  PickCustomer();
  focusNextPrevChild(key == Qt::Key_Tab);
  return true;
}

void EntryForm::BuildTotal() {
  auto* panel = new QWidget(this);
  panel->setObjectName(u"totalPanel"_s);
  auto* lines = new QVBoxLayout(panel);
  lines->setContentsMargins(12, 10, 12, 10);
  total_->setObjectName(u"total"_s);
  total_->setAlignment(Qt::AlignRight);
  total_->setAccessibleName(u"Total"_s);
  words_->setObjectName(u"words"_s);
  words_->setAccessibleName(u"Total in words"_s);
  words_->setWordWrap(true);
  words_->setAlignment(Qt::AlignRight | Qt::AlignTop);
  words_->setMinimumHeight(3 * fontMetrics().lineSpacing());
  words_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  lines->addWidget(total_);
  lines->addWidget(words_);
  // Below the delivery date, so that the words may grow downwards.
  static_cast<QGridLayout*>(layout())->addWidget(panel, 12, 0, 1, 2);
}

void EntryForm::SetCustomers(const std::vector<Customer>& customers) {
  const Entry typed = Typed();
  {
    const QSignalBlocker blocker(customer_);
    customers_ = customers;
    customer_->clear();
    for (const Customer& customer : customers_) {
      customer_->addItem(ListedAs(customer), customer.number);
    }
    ShowCustomer(typed);
  }
  ShowTotal();
}

// The combo's index stays where it was while one types: it counts only if its text still stands
// there.
int EntryForm::CustomerNumber() const {
  if (customer_->currentText() != customer_->itemText(customer_->currentIndex())) return 0;
  return ComboBoxEx::CmbCurrentItemData(qt::ComboOf(customer_), 0);
}

Entry EntryForm::Typed() const {
  return {customer_->currentText(), CustomerNumber(),  article_->text(),     price_->text(),
          quantity_->text(),        delivery_->text(), paid_->currentIndex()};
}

void EntryForm::ShowCustomer(const Entry& entry) {
  ComboBoxEx::CmbSelectItemData(qt::ComboOf(customer_), entry.customer);
  if (customer_->currentIndex() < 0) customer_->setEditText(entry.customer_text);
}

void EntryForm::Show(const Entry& entry) {
  {
    const std::array<QSignalBlocker, 6> blockers{
        QSignalBlocker(customer_), QSignalBlocker(article_),  QSignalBlocker(price_),
        QSignalBlocker(quantity_), QSignalBlocker(delivery_), QSignalBlocker(paid_)};
    ShowCustomer(entry);
    article_->setText(entry.article);
    price_->setText(entry.price);
    quantity_->setText(entry.quantity);
    delivery_->setText(entry.delivery);
    paid_->setCurrentIndex(entry.paid);
  }
  Mark({});
  Changed();
}

void EntryForm::PickCustomer() {
  const QString typed = customer_->currentText();
  if (typed.isEmpty() || CustomerNumber() != 0) return;
  int found = 0;
  for (const Customer& customer : customers_) {
    if (!ListedAs(customer).contains(typed, Qt::CaseInsensitive)) continue;
    found = found == 0 ? customer.number : -1;
  }
  const Object combo = qt::ComboOf(customer_);
  const QSignalBlocker blocker(customer_);
  ComboBoxEx::CmbSelectMatchString(combo, qt::Lend(typed));
  if (customer_->currentIndex() < 0) ComboBoxEx::CmbSelectItemData(combo, found);
  // A search that finds nothing clears the field; what was typed stays.
  if (customer_->currentIndex() < 0) customer_->setEditText(typed);
  Changed();
}

void EntryForm::Mark(const std::vector<Fault>& faults) {
  for (Marked& marked : marked_) {
    marked.note->clear();
    SetFlag(*marked.field, "fault", false);
    marked.field->setAccessibleDescription({});
  }
  for (const Fault& fault : faults) {
    const Marked& marked = marked_.at(static_cast<std::size_t>(fault.field));
    marked.note->setText(fault.message);
    SetFlag(*marked.field, "fault", true);
    marked.field->setAccessibleDescription(fault.message);
  }
  if (faults.empty()) return;
  marked_.at(static_cast<std::size_t>(faults.front().field)).field->setFocus();
}

void EntryForm::ShowTotal() {
  QString language = u"UK"_s;
  const Entry entry = Typed();
  for (const Customer& customer : customers_) {
    if (customer.number == entry.customer) language = customer.language;
  }
  const TotalTexts texts = total_texts(entry, language);
  total_->setText(texts.figures);
  words_->setText(texts.words);
}

void EntryForm::Changed() {
  ShowTotal();
  if (on_change) on_change();
}

}  // namespace desk
