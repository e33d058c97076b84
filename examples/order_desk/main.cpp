// The order desk: a window in which orders are entered and found again.
//
//     order_desk [FILE]
//
// FILE holds the orders and is made at the first start; without one it is orders.sqlite in the
// user's folder for data. Settings lie where those of every host lie.
#include <QApplication>
#include <QDir>
#include <QStandardPaths>

#include "desk_window.hpp"

using namespace Qt::StringLiterals;

int main(int count, char** arguments) {
  QApplication application(count, arguments);
  QApplication::setApplicationName(u"order_desk"_s);
  QApplication::setApplicationDisplayName(u"Order desk"_s);
  const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
  const QStringList given = QApplication::arguments();
  if (given.size() < 2) QDir().mkpath(folder);
  desk::SetAppearance();
  desk::DeskWindow window(given.size() < 2 ? folder + u"/orders.sqlite"_s : given.at(1));
  window.show();
  return QApplication::exec();
}
