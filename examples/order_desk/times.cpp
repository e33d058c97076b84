// How long the desk takes, beside the same window without the library:
//
//     QT_QPA_PLATFORM=offscreen order_desk_times
//
// The time to open it over 100,000 orders, until the window is painted; and the time from a key
// typed into the price until total and words are painted, with the library's total in words and
// with a sum in Doubles that the toolkit writes in figures.
#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QLocale>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>
#include <algorithm>
#include <iostream>
#include <vector>

#include "desk_window.hpp"
#include "quorl/store/memory_store.hpp"
#include "quorl/store/operations.hpp"

namespace {

using namespace desk;
using namespace Qt::StringLiterals;

constexpr int kOrders = 100000;
constexpr int kOpenings = 9;
constexpr int kKeys = 2000;

double MedianOf(std::vector<double> times) {
  const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
  std::nth_element(times.begin(), middle, times.end());
  return *middle;
}

template <class Work>
double MillisecondsOf(Work work) {
  QElapsedTimer timer;
  timer.start();
  work();
  return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

bool AddOrders(const QString& connection) {
  QSqlQuery query(QSqlDatabase::database(connection));
  return query.exec(
      u"with recursive n(i) as (select 100 union all select i + 1 from n where i < %1)"
      u" insert into orders select i, 101 + i % 8, 'Article ' || i, (i % 9999) || '.50',"
      u" 1 + i % 20, '2026-12-24', i % 2 from n"_s.arg(kOrders + 90));
}

double TypingTime(EntryForm& form) {
  auto* price = form.findChild<QLineEdit*>(u"price"_s);
  std::vector<double> times;
  for (int i = 0; i < kKeys; ++i) {
    if (i % 9 == 0) price->clear();
    QApplication::processEvents();
    times.push_back(MillisecondsOf([&] {
      QTest::keyClick(price, static_cast<Qt::Key>(Qt::Key_1 + i % 9));
      QApplication::processEvents();
    }));
  }
  return MedianOf(times);
}

EntryForm::TotalTexts PlainTexts(const Entry& entry, const QString&) {
  const double total = QLocale::c().toDouble(entry.price) * QLocale::c().toDouble(entry.quantity);
  const QString figures = QLocale::c().toString(total, 'f', 2);
  return {figures + u" EUR"_s, figures + u" in figures, not in words"_s};
}

}  // namespace

int main(int count, char** arguments) {
  QApplication application(count, arguments);
  quorl::MemoryStore store;
  const quorl::ScopedStore in_memory(store);
  SetAppearance();
  const QTemporaryDir folder;
  const QString file = folder.filePath(u"orders.sqlite"_s);
  if (!AddOrders(DeskWindow(file).Orders().Connection())) {
    std::cerr << "order_desk_times: cannot make the orders\n";
    return 1;
  }
  for (const QString& name : {folder.filePath(u"few.sqlite"_s), file}) {
    std::vector<double> times;
    int orders = 0;
    for (int i = 0; i < kOpenings; ++i) {
      std::unique_ptr<DeskWindow> window;
      times.push_back(MillisecondsOf([&] {
        window = std::make_unique<DeskWindow>(name);
        window->show();
        QApplication::processEvents();
      }));
      orders = window->Orders().CountOrders();
    }
    std::cout << "open over " << orders << " orders: " << MedianOf(times) << " ms\n";
  }
  DeskWindow window(file);
  window.show();
  window.Form().Show({u""_s, 101, u"Oak"_s, u""_s, u"3"_s, u""_s, 0});
  std::cout << "a key, with the total in words: " << TypingTime(window.Form()) << " ms\n";
  window.Form().total_texts = PlainTexts;
  std::cout << "a key, in the same window without the library: " << TypingTime(window.Form())
            << " ms\n";
}
