// Takes pictures of the desk at work, into the folder that is given: orders and settings are made
// for the purpose and end with it.
//
//     QT_QPA_PLATFORM=offscreen order_desk_pictures FOLDER
#include <QApplication>
#include <QDir>
#include <QTemporaryDir>
#include <iostream>

#include "desk_window.hpp"
#include "quorl/qt/values.hpp"
#include "quorl/regional/global_instance.hpp"
#include "quorl/regional/regional.hpp"
#include "quorl/runtime/raised_error.hpp"
#include "quorl/store/memory_store.hpp"
#include "quorl/store/operations.hpp"
#include "separators.hpp"

using namespace Qt::StringLiterals;

namespace {

using namespace desk;

void Take(QWidget& window, const QString& file) {
  window.show();
  QApplication::processEvents();
  if (!window.grab().save(file)) {
    std::cerr << "order_desk_pictures: cannot write " << file.toStdString() << '\n';
    std::exit(1);
  }
}

void TakeAll(const QDir& folder, const QString& orders) {
  quorl::MemoryStore store;
  const quorl::ScopedStore in_memory(store);
  quorl::Regional& regional = quorl::GlobalInstance<quorl::Regional>();
  regional.SetRegional(quorl::riNumDecimalChar, u",");
  regional.SetRegional(quorl::riNumThousandChar, u" ");
  regional.SetRegional(quorl::riMonDecimalChar, u",");
  regional.SetRegional(quorl::riMonThousandChar, u" ");
  DeskWindow window(orders);
  window.resize(1100, 580);
  window.Form().Show(
      {u""_s, 101, u"Oak table, 2,40 m"_s, u"1 289,50"_s, u"3"_s, u"2026-12-24"_s, 0});
  Take(window, folder.filePath(u"order_desk.png"_s));
  window.Form().Show({u"nobody"_s, 0, u""_s, u"12..5"_s, u"0"_s, u"2026-02-30"_s, 2});
  window.Save();
  Take(window, folder.filePath(u"order_desk_faults.png"_s));
  window.Discard();
  window.ShowOrder(3);
  window.ShowCustomer();
  Take(window.CustomerCard(), folder.filePath(u"order_desk_customer.png"_s));
  SeparatorsDialog dialog(&window);
  Take(dialog, folder.filePath(u"order_desk_separators.png"_s));
}

}  // namespace

int main(int count, char** arguments) {
  QApplication application(count, arguments);
  const QStringList given = QApplication::arguments();
  if (given.size() != 2 || !QDir().mkpath(given.at(1))) {
    std::cerr << "usage: order_desk_pictures FOLDER\n";
    return 2;
  }
  SetAppearance();
  const QTemporaryDir folder;
  TakeAll(QDir(given.at(1)), folder.filePath(u"orders.sqlite"_s));
}
