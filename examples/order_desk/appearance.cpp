#include <QApplication>
#include <QFont>
#include <QPalette>
#include <QStyleFactory>

#include "desk_window.hpp"

namespace desk {

using namespace Qt::StringLiterals;

namespace {

constexpr char16_t kStyleSheet[] =
    uR"(
  QLabel#title { font-size: 19px; font-weight: 600; color: #1d3557; padding-bottom: 6px; }
  QLabel#alert { background: #fff3e0; border: 1px solid #e8a33d; border-radius: 4px;
                 padding: 7px; color: #6b3d00; }
  QLabel[fault="true"] { color: #b3261e; font-size: 12px; }
  QLineEdit { padding: 5px; border: 1px solid #b8c0cc; border-radius: 4px; background: white;
              min-height: 18px; }
  QLineEdit:focus { border: 2px solid #2a6fb0; padding: 4px; }
  QLineEdit[fault="true"] { border: 2px solid #b3261e; padding: 4px; background: #fdecea; }
  QComboBox { min-height: 24px; }
  QComboBox[fault="true"] { border: 2px solid #b3261e; border-radius: 4px; background: #fdecea; }
  QComboBox[fault="true"]::drop-down { border: none; }
  QWidget#totalPanel { background: #eaf1f8; border-radius: 6px; }
  QLabel#total { font-size: 21px; font-weight: 600; color: #1d3557; }
  QLabel#words { color: #33475b; font-style: italic; }
  QPushButton { padding: 6px 18px; border: 1px solid #b8c0cc; border-radius: 4px;
                background: white; }
  QPushButton:focus { border: 2px solid #2a6fb0; padding: 5px 17px; }
  QPushButton:disabled { color: #9aa4b0; background: #f2f4f7; }
  QPushButton#save { background: #2a6fb0; color: white; border-color: #2a6fb0; }
  QPushButton#save:focus { border-color: #1d3557; }
  QTableView::item { padding: 0 6px; }
  QTableView { border: 1px solid #d5dbe3; border-radius: 4px; background: white;
               alternate-background-color: #f5f8fb; }
  QHeaderView::section { background: #f2f4f7; border: none; border-bottom: 1px solid #d5dbe3;
                         padding: 6px; font-weight: 600; color: #33475b; }
)";

QPalette LightPalette() {
  QPalette palette(QColor(0xF2, 0xF4, 0xF7));
  palette.setColor(QPalette::Base, Qt::white);
  palette.setColor(QPalette::Text, QColor(0x1B, 0x24, 0x30));
  palette.setColor(QPalette::WindowText, QColor(0x1B, 0x24, 0x30));
  palette.setColor(QPalette::Highlight, QColor(0x2A, 0x6F, 0xB0));
  palette.setColor(QPalette::HighlightedText, Qt::white);
  palette.setColor(QPalette::PlaceholderText, QColor(0x7A, 0x86, 0x94));
  return palette;
}

}  // namespace

void SetAppearance() {
  QApplication::setStyle(QStyleFactory::create(u"Fusion"_s));
  QApplication::setPalette(LightPalette());
  qApp->setStyleSheet(QString::fromUtf16(kStyleSheet));
}

}  // namespace desk
