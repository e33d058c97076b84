// The order desk as a person uses it: by the keyboard, over restarts, and with a database that
// refuses.
#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <map>

#include "desk_window.hpp"
#include "quorl/qt/fields.hpp"
#include "quorl/qt/values.hpp"
#include "quorl/regional/global_instance.hpp"
#include "quorl/regional/regional.hpp"
#include "quorl/runtime/convert.hpp"
#include "quorl/store/memory_store.hpp"
#include "quorl/store/operations.hpp"
#include "quorl/store/persistent_store.hpp"
#include "support/random.hpp"

inline void PrintTo(const QString& text, std::ostream* out) { *out << text.toStdString(); }

namespace desk {

using namespace quorl;
using namespace Qt::StringLiterals;

inline void PrintTo(const Entry& entry, std::ostream* out) {
  const QStringList fields{entry.customer_text, entry.article, entry.price, entry.quantity};
  *out << fields.join(u'|').toStdString();
}

namespace {

// What the file of orders holds, in order: each as one line of text.
using Rows = std::map<int, QString>;

class Desk : public testing::Test {
 protected:
  void Start() {
    window = std::make_unique<DeskWindow>(file);
    window->show();
    // Without a window manager nobody else makes a window the active one.
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
  }
  void Restart() {
    ASSERT_TRUE(window->close());
    window.reset();
    Start();
  }

  template <class Widget = QLineEdit>
  Widget* Find(const char* name) {
    return window->findChild<Widget*>(QString::fromLatin1(name));
  }
  QLineEdit* Customer() { return Find<QComboBox>("customer")->lineEdit(); }
  QString Text(const char* label) { return Find<QLabel>(label)->text(); }
  QString Alert() { return Find<QLabel>("alert")->isVisible() ? Text("alert") : QString(); }

  // Keys go to the list that is open, or to whatever has the focus, as a person's do.
  QWidget* Focused() {
    if (QWidget* popup = QApplication::activePopupWidget()) return popup;
    QWidget* focused = QApplication::focusWidget();
    return focused != nullptr ? focused : window.get();
  }
  void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(Focused(), key, modifiers);
  }
  void Type(const QString& text) {
    for (const QChar typed : text) {
      QTest::sendKeyEvent(QTest::Click, Focused(), Qt::Key_unknown, typed, {});
    }
  }
  void TypeOrder(const QStringList& fields) {
    Press(Qt::Key_N, Qt::ControlModifier);
    for (const QString& field : fields) {
      Type(field);
      Press(Qt::Key_Tab);
    }
  }

  Rows Stored() {
    Rows rows;
    QSqlQuery query(QSqlDatabase::database(window->Orders().Connection()));
    query.exec(
        u"select number, customer || '|' || article || '|' || price || '|' || quantity || "
        u"'|' || ifnull(delivery, '-') || '|' || ifnull(paid, '-') from orders"_s);
    while (query.next()) rows[query.value(0).toInt()] = query.value(1).toString();
    return rows;
  }

  QTemporaryDir folder;
  QString file = folder.filePath(u"orders.sqlite"_s);
  MemoryStore store;
  ScopedStore in_memory{store};
  std::unique_ptr<DeskWindow> window;
};

TEST_F(Desk, TakesAnOrderByTheKeyboard) {
  Start();
  TypeOrder({u"du pon"_s, u"Café noir, 1 kg"_s, u"12"_s});
  // The focus is on the quantity; the point of the numeric pad in the price.
  Press(Qt::Key_Tab, Qt::ShiftModifier);
  Press(Qt::Key_End);
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Period, Qt::KeypadModifier);
  Type(u"345"_s);
  Press(Qt::Key_Tab);
  Type(u"3"_s);
  EXPECT_EQ(Customer()->text(), u"Atelier du Pont, Liège"_s);
  EXPECT_EQ(Text("total"), u"37.04 EUR"_s);
  EXPECT_EQ(Text("words"), u"trente-sept euros quatre cents"_s);
  Press(Qt::Key_Tab);
  Type(u"2026-12-24"_s);
  Press(Qt::Key_Tab);
  Press(Qt::Key_Up);
  Press(Qt::Key_S, Qt::ControlModifier);
  EXPECT_EQ(Alert(), QString());
  EXPECT_EQ(Stored()[10], u"101|Café noir, 1 kg|12.3450|3.0|2026-12-24|1"_s);
  EXPECT_EQ(window->Number(), 10);
  EXPECT_FALSE(window->isWindowModified());
  EXPECT_TRUE(window->ShowOrder(3) && window->ShowPrevious());
  EXPECT_EQ(window->Number(), 10);
}

TEST_F(Desk, MarksWhatIsWrongAndLosesNothing) {
  Start();
  TypeOrder({u"nobody"_s, u""_s, u"1..2"_s, u"-3"_s, u"2026-02-30"_s});
  const Entry typed = window->Form().Typed();
  const Rows before = Stored();
  EXPECT_FALSE(window->Save());
  EXPECT_EQ(window->Form().Typed(), typed);
  EXPECT_EQ(Stored(), before);
  for (const char* name : {"article", "price", "quantity", "delivery"}) {
    EXPECT_TRUE(Find(name)->property("fault").toBool()) << name;
    EXPECT_FALSE(Find(name)->accessibleDescription().isEmpty()) << name;
  }
  EXPECT_EQ(QApplication::focusWidget(), Find<QWidget>("customer"))
      << "the first fault has the focus";
  EXPECT_FALSE(window->ShowOrder(3)) << "what is typed is not given up";
  EXPECT_FALSE(window->ShowNew());
  EXPECT_EQ(window->Form().Typed(), typed);
  {
    PersistentStore on_a_file({file.toStdString(), file.toStdString()});
    const ScopedStore refusing(on_a_file);
    EXPECT_FALSE(window->close()) << "settings that cannot be written do not cost the entry";
  }
  Restart();
  EXPECT_EQ(window->Form().Typed(), typed) << "it is there at the next start";
  Press(Qt::Key_D, Qt::ControlModifier);
  EXPECT_FALSE(window->isWindowModified());
  EXPECT_FALSE(Find("price")->property("fault").toBool());
}

TEST_F(Desk, EveryFieldIsReachedAndNamed) {
  Start();
  window->ShowNew();
  for (const char* name : {"article", "price", "quantity", "delivery"}) {
    Press(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), Find(name)) << name;
  }
  Press(Qt::Key_Tab);
  EXPECT_EQ(QApplication::focusWidget(), Find<QWidget>("paid"));
  for (const char* name : {"customer", "article", "price", "quantity", "delivery", "paid", "total",
                           "words", "alert", "find", "orders"}) {
    EXPECT_FALSE(Find<QWidget>(name)->accessibleName().isEmpty()) << name;
  }
}

TEST_F(Desk, FindsEverythingAgainAfterARestart) {
  const QTemporaryDir settings;
  const StoreFolders folders{settings.path().toStdString(), settings.path().toStdString()};
  QRect place, card;
  for (int run = 0; run < 2; ++run) {
    // A store of its own each time, as another process has it.
    PersistentStore on_disk(folders);
    const ScopedStore current(on_disk);
    Start();
    if (run == 0) {
      for (const int number : {3, 5, 7}) EXPECT_TRUE(window->ShowOrder(number));
      EXPECT_TRUE(window->ShowPrevious());
      window->move(window->screen()->geometry().topLeft() + QPoint(33, 21));
      window->resize(777, 501);
    }
    window->ShowCustomer();
    if (run == 0) window->CustomerCard().setGeometry(QRect(150, 140, 360, 200));
    QTest::qWait(100);
    if (run == 0) {
      place = window->frameGeometry();
      card = window->CustomerCard().frameGeometry();
    } else {
      EXPECT_EQ(window->frameGeometry(), place);
      EXPECT_EQ(window->CustomerCard().frameGeometry(), card);
      EXPECT_TRUE(window->ShowPrevious());
      EXPECT_EQ(window->Number(), 5);
      EXPECT_TRUE(window->ShowPrevious());
      EXPECT_EQ(window->Number(), 3);
      EXPECT_FALSE(window->ShowPrevious());
      EXPECT_TRUE(window->ShowNext() && window->ShowNext());
      EXPECT_EQ(window->Number(), 7);
      EXPECT_FALSE(window->ShowNext());
    }
    EXPECT_TRUE(window->close());
    window.reset();
  }
}

// Answers the dialog that opens next.
template <class Answer>
void WhenADialogOpens(Answer answer) {
  QTimer::singleShot(0, qApp, [answer] {
    auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    answer(*dialog);
    if (dialog->isVisible()) dialog->reject();
  });
}

TEST_F(Desk, ChangesTheSeparators) {
  Start();
  window->ShowOrder(6);
  Find("price")->setText(u"1,234.5"_s);
  Find("article")->setText(u"1,5"_s);
  WhenADialogOpens([](QDialog& dialog) {
    const QList<QLineEdit*> edits = dialog.findChildren<QLineEdit*>();
    edits[0]->setText(u","_s);
    dialog.accept();
    EXPECT_TRUE(dialog.isVisible()) << "a comma for both";
    edits[1]->setText(u"."_s);
    dialog.accept();
    EXPECT_FALSE(dialog.isVisible());
  });
  window->EditSeparators();
  EXPECT_EQ(Find("price")->text(), u"1.234,50"_s);
  EXPECT_EQ(Find("article")->text(), u"1,5"_s);
  EXPECT_EQ(Text("total"), u"308.625,00 EUR"_s);
  Restart();
  EXPECT_EQ(Find("price")->text(), u"1.234,50"_s);
  EXPECT_EQ(Find<QTableView>("orders")->model()->index(0, 3).data(), u"334,80"_s);
}

TEST_F(Desk, SaysWhatTheDatabaseRefusesAndKeepsTheEntry) {
  Start();
  const Rows before = Stored();
  QSqlDatabase other = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"other"_s);
  other.setDatabaseName(file);
  ASSERT_TRUE(other.open());
  QSqlQuery own(QSqlDatabase::database(window->Orders().Connection()));
  QSqlQuery others(other);
  struct Case {
    QSqlQuery& query;
    QString begin, end, message;
  };
  // A full disk is one on which no page can be added.
  const std::vector<Case> cases{
      {others, u"begin exclusive"_s, u"rollback"_s, u"Someone else"_s},
      {own, u"pragma query_only = 1"_s, u"pragma query_only = 0"_s, u"read-only"_s},
      {own, u"pragma max_page_count = 1"_s, u"pragma max_page_count = 100000"_s, u"full"_s}};
  TypeOrder({u"gent"_s, u""_s, u"1"_s, u"2"_s});
  Find("article")->setText(QString(20000, u'x'));
  const Entry typed = window->Form().Typed();
  for (const Case& refused : cases) {
    ASSERT_TRUE(refused.query.exec(refused.begin));
    EXPECT_FALSE(window->Save());
    EXPECT_TRUE(Alert().contains(refused.message)) << Alert().toStdString();
    EXPECT_EQ(window->Form().Typed(), typed);
    refused.query.exec(refused.end);
    refused.query.finish();
    EXPECT_EQ(Stored(), before);
  }
  EXPECT_TRUE(window->Save()) << "once it may, it does";
  own.finish();
  own = QSqlQuery();
  others = QSqlQuery();
  other = QSqlDatabase();
  QSqlDatabase::removeDatabase(u"other"_s);
}

TEST_F(Desk, OpensOnADamagedFile) {
  Start();
  ASSERT_TRUE(window->close());
  window.reset();
  QFile damaged(file);
  ASSERT_TRUE(damaged.open(QFile::ReadWrite));
  const QByteArray whole = damaged.readAll();
  damaged.seek(0);
  damaged.write(QByteArray(4096, 'x'));
  damaged.close();
  Start();
  EXPECT_TRUE(Alert().contains(u"damaged"_s)) << Alert().toStdString();
  Find("article")->setText(u"Coal"_s);
  ASSERT_TRUE(damaged.open(QFile::WriteOnly));
  damaged.write(whole);
  damaged.close();
  Press(Qt::Key_F5);
  EXPECT_EQ(Alert(), QString());
  EXPECT_EQ(Find("article")->text(), u"Coal"_s);
  EXPECT_TRUE(window->ShowNew() || window->isWindowModified());
}

// One person's walk, and what the file must hold after each step of it.
class Walk {
 public:
  Walk(std::unique_ptr<DeskWindow>& window, std::uint64_t seed) : window_(window), random_(seed) {}

  void Type() {
    static const QStringList customers{u"101"_s, u"103"_s, u"107"_s, u"0"_s};
    static const QStringList prices{u"1"_s, u"0.0001"_s, u"1,234.56"_s, u"99999999999.9999"_s,
                                    u"x"_s};
    static const QStringList quantities{u"1"_s, u"2.5"_s, u"0"_s, u""_s, u"1000"_s};
    static const QStringList days{u""_s, u"2026-12-24"_s, u"24/12/2026 x"_s, u"2026-1-5"_s};
    Entry entry = window_->Form().Typed();
    entry.customer_text.clear();
    entry.customer = AnyOf(customers).toInt();
    entry.article = qt::ToQString(random_.Text(u"aé'\";-œ漢", 6));
    entry.price = AnyOf(prices);
    entry.quantity = AnyOf(quantities);
    entry.delivery = AnyOf(days);
    entry.paid = static_cast<int>(random_.Whole(0, 2));
    window_->Form().Show(entry);
  }
  void Save() {
    const Entry entry = window_->Form().Typed();
    const bool is_good = entry.customer != 0 && !entry.article.isEmpty() && entry.price != u"x"_s &&
                         entry.quantity.toDouble() > 0 && !entry.delivery.endsWith(u'x');
    const int former = window_->Number();
    ASSERT_EQ(window_->Save(), is_good) << entry.price.toStdString();
    if (!is_good) return;
    ASSERT_EQ(window_->Number(), former == 0 ? last_ + 1 : former);
    last_ = std::max(last_, window_->Number());
    model[window_->Number()] = LineOf(entry);
  }
  void Look() {
    const int number = static_cast<int>(random_.Whole(1, last_));
    const bool may = !window_->isWindowModified() || number == window_->Number();
    ASSERT_EQ(window_->ShowOrder(number), may);
    ASSERT_EQ(window_->Number() == number, may);
  }
  void GoBack() { window_->ShowPrevious(); }
  void GoOn() { window_->ShowNext(); }
  void New() { ASSERT_NE(window_->ShowNew(), window_->isWindowModified()); }
  void Discard() {
    window_->Discard();
    ASSERT_FALSE(window_->isWindowModified());
  }

  Rows model;
  std::int64_t Draw(std::int64_t most) { return random_.Whole(0, most); }
  void Knows(const Rows& rows) {
    model = rows;
    last_ = rows.rbegin()->first;
  }

 private:
  QString AnyOf(const QStringList& choices) {
    return choices[random_.Whole(0, choices.size() - 1)];
  }
  static QString LineOf(const Entry& entry) {
    const QString day = entry.delivery == u"2026-1-5"_s ? u"2026-01-05"_s : entry.delivery;
    const QString price = QString(entry.price).remove(u',');
    const QString decimals = price.section(u'.', 1);
    return QStringList{QString::number(entry.customer),
                       entry.article,
                       price.section(u'.', 0, 0) + u'.' + decimals.leftJustified(4, u'0'),
                       QString::number(entry.quantity.toDouble(), 'f', 1),
                       day.isEmpty() ? u"-"_s : day,
                       entry.paid == 2 ? u"-"_s : QString::number(entry.paid)}
        .join(u'|');
  }

  std::unique_ptr<DeskWindow>& window_;
  Random random_;
  int last_ = 0;
};

TEST_F(Desk, HoldsWhatAPersonSavedOverRandomWalks) {
  using Step = void (Walk::*)();
  constexpr std::array<Step, 9> kSteps{&Walk::Type, &Walk::Type,    &Walk::Save,
                                       &Walk::Save, &Walk::Look,    &Walk::GoBack,
                                       &Walk::GoOn, &Walk::Discard, &Walk::New};
  for (std::uint64_t seed = 1; seed <= 200; ++seed) {
    file = folder.filePath(u"walk%1.sqlite"_s.arg(seed));
    Start();
    // What is tried here is not the disk.
    QSqlQuery(u"pragma synchronous = off"_s, QSqlDatabase::database(window->Orders().Connection()));
    Walk walk(window, seed);
    walk.Knows(Stored());
    for (int step = 0; step < 20; ++step) {
      const auto drawn = static_cast<std::size_t>(walk.Draw(kSteps.size()));
      if (drawn == kSteps.size()) {
        const int number = window->Number();
        const Entry typed = window->Form().Typed();
        const bool has_changes = window->isWindowModified();
        Restart();
        ASSERT_EQ(window->isWindowModified(), has_changes);
        ASSERT_TRUE(!has_changes || window->Form().Typed() == typed);
        ASSERT_EQ(window->Number(), has_changes ? number : 0);
      } else {
        (walk.*kSteps[drawn])();
      }
      if (HasFatalFailure()) break;
      ASSERT_EQ(Stored(), walk.model) << "seed " << seed << ", step " << step;
    }
    ASSERT_FALSE(HasFatalFailure()) << "seed " << seed;
    window->Discard();
    ASSERT_TRUE(window->close());
    window.reset();
  }
}

}  // namespace
}  // namespace desk
