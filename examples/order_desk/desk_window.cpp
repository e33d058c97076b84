#include "desk_window.hpp"

#include <QAction>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QMenuBar>
#include <QSplitter>
#include <QStatusBar>
#include <QVBoxLayout>

#include "quorl/qt/values.hpp"
#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/locale.hpp"
#include "quorl/runtime/raised_error.hpp"
#include "separators.hpp"

namespace desk {

using namespace Qt::StringLiterals;
using namespace quorl;

namespace {

constexpr Int32 kRecentOrders = 20;

}  // namespace

// Does something that the database or the settings may refuse; what they say stands in the window.
template <class Action>
bool DeskWindow::Try(Action action) {
  try {
    action();
    return true;
  } catch (const StoreFailure& failure) {
    Say(failure.Message());
  } catch (const RaisedError& error) {
    Say(qt::ToQString(error.Description()));
  }
  return false;
}

DeskWindow::DeskWindow(const QString& file)
    : store_(file),
      title_(new QLabel(this)),
      alert_(new QLabel(this)),
      form_(new EntryForm),
      save_(new QPushButton(u"&Save"_s, this)),
      discard_(new QPushButton(u"Disca&rd"_s, this)),
      find_(new QLineEdit(this)),
      list_(new OrderList(store_, this)),
      table_(new QTableView(this)),
      customer_card_(new CustomerWindow(this)) {
  setObjectName(u"FrmOrders"_s);
  setMinimumSize(760, 480);
  recent_.BufferSize(kRecentOrders);
  auto* splitter = new QSplitter(this);
  splitter->setChildrenCollapsible(false);
  splitter->addWidget(BuildOrder());
  splitter->addWidget(BuildList());
  splitter->setStretchFactor(0, 2);
  splitter->setStretchFactor(1, 3);
  splitter->setSizes({400, 600});
  setCentralWidget(splitter);
  BuildMenus();
  Say({});
  form_->on_change = [this] { UpdateTitle(); };
  Restore();
  form_->setFocus();
}

QWidget* DeskWindow::BuildOrder() {
  auto* pane = new QWidget(this);
  auto* lines = new QVBoxLayout(pane);
  lines->setContentsMargins(20, 16, 20, 16);
  title_->setObjectName(u"title"_s);
  title_->setIndent(0);
  alert_->setObjectName(u"alert"_s);
  alert_->setAccessibleName(u"Message"_s);
  alert_->setWordWrap(true);
  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(discard_);
  buttons->addWidget(save_);
  save_->setObjectName(u"save"_s);
  save_->setDefault(true);
  connect(save_, &QPushButton::clicked, this, &DeskWindow::Save);
  connect(discard_, &QPushButton::clicked, this, &DeskWindow::Discard);
  lines->addWidget(title_);
  lines->addWidget(alert_);
  lines->addWidget(form_);
  lines->addStretch();
  lines->addLayout(buttons);
  form_->setFocusProxy(form_->findChild<QWidget*>(u"customer"_s));
  return pane;
}

QWidget* DeskWindow::BuildList() {
  auto* pane = new QWidget(this);
  auto* lines = new QVBoxLayout(pane);
  lines->setContentsMargins(0, 16, 20, 16);
  find_->setObjectName(u"find"_s);
  find_->setAccessibleName(u"Find orders"_s);
  find_->setPlaceholderText(u"Find an article or a customer"_s);
  find_->setClearButtonEnabled(true);
  connect(find_, &QLineEdit::textChanged, this, &DeskWindow::Find);
  table_->setObjectName(u"orders"_s);
  table_->setAccessibleName(u"Orders found"_s);
  table_->setModel(list_);
  table_->setSelectionBehavior(QAbstractItemView::SelectRows);
  table_->setSelectionMode(QAbstractItemView::SingleSelection);
  table_->setTabKeyNavigation(false);
  table_->setAlternatingRowColors(true);
  table_->setShowGrid(false);
  table_->setWordWrap(false);
  table_->verticalHeader()->hide();
  table_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 10);
  QHeaderView* header = table_->horizontalHeader();
  header->setHighlightSections(false);
  for (const auto& [column, width] : {std::pair{0, 56}, {1, 160}, {3, 100}, {4, 100}, {5, 52}}) {
    header->resizeSection(column, width);
  }
  header->setSectionResizeMode(2, QHeaderView::Stretch);
  connect(table_, &QTableView::activated, this,
          [this](const QModelIndex& index) { ShowOrder(list_->NumberAt(index.row())); });
  connect(table_, &QTableView::clicked, this,
          [this](const QModelIndex& index) { ShowOrder(list_->NumberAt(index.row())); });
  lines->addWidget(find_);
  lines->addWidget(table_);
  return pane;
}

void DeskWindow::BuildMenus() {
  const auto add = [this](QMenu* menu, const char16_t* text, const QKeySequence& keys,
                          auto action) {
    menu->addAction(QString::fromUtf16(text), keys, this, action);
  };
  QMenu* order = menuBar()->addMenu(u"&Order"_s);
  add(order, u"&New", QKeySequence::New, [this] { ShowNew(); });
  add(order, u"&Save", QKeySequence::Save, [this] { Save(); });
  add(order, u"&Discard changes", QKeySequence(u"Ctrl+D"_s), [this] { Discard(); });
  order->addSeparator();
  add(order, u"&Quit", QKeySequence(u"Ctrl+Q"_s), [this] { close(); });
  QMenu* go = menuBar()->addMenu(u"&Go"_s);
  add(go, u"&Previous order looked at", QKeySequence(u"Alt+Left"_s), [this] { ShowPrevious(); });
  add(go, u"&Next order looked at", QKeySequence(u"Alt+Right"_s), [this] { ShowNext(); });
  add(go, u"&Find", QKeySequence::Find, [this] { find_->setFocus(); });
  add(go, u"&Customer", QKeySequence(u"F4"_s), [this] { ShowCustomer(); });
  add(go, u"&Read again", QKeySequence::Refresh, [this] { Reload(); });
  QMenu* settings = menuBar()->addMenu(u"Se&ttings"_s);
  add(settings, u"&Separators...", QKeySequence(u"F9"_s), [this] { EditSeparators(); });
}

void DeskWindow::Restore() {
  std::optional<Draft> draft;
  Try([&] {
    settings_.RestorePlace(*this);
    UseSeparators();
    settings_.RestoreRecent(recent_);
    draft = settings_.RestoreDraft();
  });
  Reload();
  const bool has_order = draft && draft->number != 0 && ShowWithoutNote(draft->number);
  if (!has_order) SetAtHand(0, {});
  if (draft) form_->Show(draft->entry);
}

void DeskWindow::Reload() {
  const bool is_read = Try([&] {
    customers_ = store_.Customers();
    form_->SetCustomers(customers_);
    list_->Find(find_->text());
    const int count = store_.CountOrders();
    statusBar()->showMessage(count == 1 ? u"1 order"_s : u"%1 orders"_s.arg(count));
  });
  if (is_read) Say({});
}

void DeskWindow::Find() {
  Try([&] { list_->Find(find_->text()); });
}

void DeskWindow::Say(const QString& message) {
  alert_->setText(message);
  alert_->setVisible(!message.isEmpty());
}

void DeskWindow::SetAtHand(int number, const Entry& saved) {
  number_ = number;
  form_->Show(saved);
  // As it stands in the fields, the customer's text included.
  saved_ = form_->Typed();
  UpdateTitle();
}

bool DeskWindow::HasChanges() const { return form_->Typed() != saved_; }

void DeskWindow::UpdateTitle() {
  const QString order = number_ == 0 ? u"New order"_s : u"Order %1"_s.arg(number_);
  const bool has_changes = HasChanges();
  title_->setText(order + (has_changes ? u" - not saved"_s : QString()));
  setWindowTitle(order + u"[*] - Order desk"_s);
  setWindowModified(has_changes);
  discard_->setEnabled(has_changes);
}

bool DeskWindow::MayLeave() {
  if (!HasChanges()) return true;
  Say(u"This order has changes. Save them (Ctrl+S) or discard them (Ctrl+D) first."_s);
  return false;
}

bool DeskWindow::ShowNew() {
  if (!MayLeave()) return false;
  Say({});
  SetAtHand(0, {});
  form_->setFocus();
  return true;
}

// Shows it without making it the latest of those looked at.
bool DeskWindow::ShowWithoutNote(int number) {
  return Try([&] {
    const Object fields = store_.Read(number);
    if (fields.IsEmpty()) throw StoreFailure(u"There is no order %1."_s.arg(number));
    SetAtHand(number, EntryOf(fields));
    Say({});
  });
}

bool DeskWindow::ShowOrder(int number) {
  if (number == number_) return true;
  if (!MayLeave() || !ShowWithoutNote(number)) return false;
  const bool is_current = recent_.Count() != 0 && !recent_.BOF() && !recent_.AtEOF() &&
                          ToInt32(recent_.CurrentItem()) == number;
  if (!is_current) recent_.AddItem(Int32{number});
  return true;
}

bool DeskWindow::Walk(void (RollBuffer::*step)(), Int32 target) {
  if (target < 0 || target >= recent_.Count()) return false;
  const bool is_shown = MayLeave() && ShowWithoutNote(ToInt32(recent_.Items(target)));
  if (is_shown) (recent_.*step)();
  return is_shown;
}

// From a new order the way back leads to the order looked at last.
bool DeskWindow::ShowPrevious() {
  const bool is_on_current =
      recent_.Count() != 0 && recent_.Index() >= 0 && ToInt32(recent_.CurrentItem()) == number_;
  if (!is_on_current && recent_.Count() != 0) {
    return MayLeave() && ShowWithoutNote(ToInt32(recent_.CurrentItem()));
  }
  return Walk(&RollBuffer::MovePrevious, recent_.Index() - 1);
}

bool DeskWindow::ShowNext() { return Walk(&RollBuffer::MoveNext, recent_.Index() + 1); }

bool DeskWindow::Save() {
  form_->PickCustomer();
  const Entry entry = form_->Typed();
  const std::vector<Fault> faults = FaultsOf(entry);
  form_->Mark(faults);
  if (!faults.empty()) return false;
  const bool is_new = number_ == 0;
  const bool is_saved = Try([&] {
    number_ = store_.Save(OrderOf(number_, entry));
    saved_ = entry;
  });
  if (!is_saved) return false;
  if (is_new) recent_.AddItem(Int32{number_});
  Reload();
  // As it is read back from the database from now on.
  ShowWithoutNote(number_);
  return true;
}

void DeskWindow::Discard() {
  Say({});
  if (number_ == 0) return SetAtHand(0, {});
  if (!ShowWithoutNote(number_)) SetAtHand(number_, saved_);
}

void DeskWindow::EditSeparators() {
  const Locale former = Locale::Current();
  SeparatorsDialog dialog(this);
  if (dialog.exec() != QDialog::Accepted) return;
  const Entry typed = Rewritten(form_->Typed(), former);
  saved_ = Rewritten(saved_, former);
  form_->Show(typed);
  UpdateTitle();
  Find();
}

void DeskWindow::ShowCustomer() {
  const int number = form_->CustomerNumber();
  Customer shown;
  for (const Customer& customer : customers_) {
    if (customer.number == number) shown = customer;
  }
  customer_card_->Show(shown);
  if (!customer_card_->isVisible()) Try([&] { settings_.RestorePlace(*customer_card_, this); });
  customer_card_->show();
  customer_card_->raise();
}

// Nothing is asked: what was typed and not saved is there again at the next start.
void DeskWindow::closeEvent(QCloseEvent* event) {
  const bool is_kept = Try([&] {
    settings_.SaveDraft(HasChanges() ? std::optional(Draft{number_, form_->Typed()})
                                     : std::nullopt);
    settings_.SaveRecent(recent_);
    settings_.SavePlace(*this);
    if (customer_card_->isVisible()) settings_.SavePlace(*customer_card_);
  });
  // With changes that could not be kept the window stays; without, nothing of value is lost.
  event->setAccepted(is_kept || !HasChanges());
  if (event->isAccepted()) customer_card_->close();
}

}  // namespace desk
