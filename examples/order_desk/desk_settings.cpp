#include "desk_settings.hpp"

#include <QGuiApplication>
#include <QScreen>

#include "quorl/forms/forms.hpp"
#include "quorl/qt/form.hpp"
#include "quorl/qt/values.hpp"
#include "quorl/runtime/convert.hpp"
#include "quorl/text/strings.hpp"

namespace desk {

using namespace quorl;
using qt::FormOf;

namespace {

constexpr StringView kRecent = u"Recent";
constexpr StringView kDraft = u"Draft";
// Stands between the fields of a draft; nobody types it.
constexpr QChar kBetween = u'\x1F';

QString PackedOf(const Draft& draft) {
  const Entry& entry = draft.entry;
  return QStringList{QString::number(draft.number),
                     entry.customer_text,
                     QString::number(entry.customer),
                     entry.article,
                     entry.price,
                     entry.quantity,
                     entry.delivery,
                     QString::number(entry.paid)}
      .join(kBetween);
}

std::optional<Draft> DraftOfPacked(const QString& packed) {
  const QStringList parts = packed.split(kBetween);
  if (parts.size() != 8) return std::nullopt;
  return Draft{parts[0].toInt(), Entry{parts[1], parts[2].toInt(), parts[3], parts[4], parts[5],
                                       parts[6], parts[7].toInt()}};
}

// The settings keep texts as single bytes; what a person typed is kept as it is, in code units.
QString TextOfBytes(const Variant& bytes) {
  QString text;
  const std::span<const Byte> units = bytes.If<Array>()->Bytes();
  for (std::size_t i = 0; i + 1 < units.size(); i += 2) {
    text.append(QChar(static_cast<char16_t>(units[i] | (units[i + 1] << 8))));
  }
  return text;
}

QScreen* ScreenNamed(const QString& name) {
  for (QScreen* screen : QGuiApplication::screens()) {
    if (screen->name() == name) return screen;
  }
  return nullptr;
}

}  // namespace

DeskSettings::DeskSettings() { registry_.InitApp(u"Quorl", u"Order desk"); }

// A place counts from the corner of the window's screen, so the screen comes first.
void DeskSettings::RestorePlace(QWidget& window, QWidget* container) {
  const Variant screen = registry_.GetValue(qt::FromQString(window.objectName()), u"Screen", u"");
  if (QScreen* former = ScreenNamed(qt::ToQString(ToString(screen)))) {
    window.move(former->geometry().topLeft());
  }
  qt::UseScreenOf(&window);
  // In a container the window keeps its own size, on the screen it takes two thirds of it.
  const QSize size = container == nullptr ? QSize(0, 0) : window.size();
  Forms::InitFormSettings(FormOf(&window), FormOf(container), size.width() * qt::kUnitsPerPixel,
                          size.height() * qt::kUnitsPerPixel);
  Forms::GetFormSettings(registry_, FormOf(&window));
}

void DeskSettings::SavePlace(QWidget& window) {
  Forms::SaveFormSettings(registry_, FormOf(&window));
  registry_.SaveValue(qt::FromQString(window.objectName()), u"Screen",
                      qt::FromQString(window.screen()->name()));
}

void DeskSettings::RestoreRecent(RollBuffer& recent) {
  const String orders = ToString(registry_.GetValue(kRecent, u"Orders", u""));
  for (const QString& number : qt::ToQString(orders).split(u' ', Qt::SkipEmptyParts)) {
    recent.AddItem(Int32{number.toInt()});
  }
  const Int32 current = ToInt32(registry_.GetValue(kRecent, u"Current", -1));
  if (current >= 0 && current < recent.Count()) recent.Index(current);
}

void DeskSettings::SaveRecent(const RollBuffer& recent) {
  QStringList numbers;
  for (Int32 i = 0; i < recent.Count(); ++i) {
    numbers.append(QString::number(ToInt32(recent.Items(i))));
  }
  registry_.SaveValue(kRecent, u"Orders", qt::FromQString(numbers.join(u' ')));
  registry_.SaveValue(kRecent, u"Current", recent.Index());
}

std::optional<Draft> DeskSettings::RestoreDraft() {
  const Variant packed = registry_.GetValue(kDraft, u"Entry", Null);
  return packed.Holds<Array>() ? DraftOfPacked(TextOfBytes(packed)) : std::nullopt;
}

// In one value, so that no draft stands beside the number of another.
void DeskSettings::SaveDraft(const std::optional<Draft>& draft) {
  if (!draft) return registry_.DeleteKey(kDraft);
  registry_.SaveValue(kDraft, u"Entry", qt::FromQString(PackedOf(*draft)), REG_BINARY);
}

}  // namespace desk
