#include "quorl/qt/decimal_keys.hpp"

#include <QCoreApplication>
#include <QKeyEvent>

#include "quorl/runtime/raised_error.hpp"

namespace quorl::qt {
namespace {

// The character that the key types instead; its own where there is no separator.
QChar Converted(const Regional& regional, QChar typed) {
  auto key = static_cast<Int16>(typed.unicode());
  try {
    regional.ConvertDecimalPoint(key);
  } catch (const RaisedError&) {
    return typed;
  }
  return QChar(static_cast<char16_t>(key));
}

}  // namespace

DecimalKeyFilter::DecimalKeyFilter(QWidget* field, DecimalKeys keys, const Regional& regional)
    : QObject(field), keys_(keys), regional_(regional) {
  if (field != nullptr) field->installEventFilter(this);
}

bool DecimalKeyFilter::eventFilter(QObject* field, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return false;
  const auto& press = static_cast<const QKeyEvent&>(*event);
  const bool counts =
      keys_ == DecimalKeys::kEvery || press.modifiers().testFlag(Qt::KeypadModifier);
  if (!counts || press.text().size() != 1) return false;
  const QChar typed = press.text().front();
  const QChar converted = Converted(regional_, typed);
  // The mark itself, which is what is sent on, stays what it is.
  if (converted == typed) return false;
  QKeyEvent sent(QEvent::KeyPress, converted.toUpper().unicode(), press.modifiers(),
                 QString(converted), press.isAutoRepeat());
  QCoreApplication::sendEvent(field, &sent);
  return true;
}

}  // namespace quorl::qt
