#include "quorl/qt/form.hpp"

#include <QGuiApplication>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScreen>
#include <array>
#include <cmath>

#include "internal/frame_size.hpp"
#include "internal/host_object.hpp"
#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/screen.hpp"

namespace quorl::qt {
namespace {

enum class State : Int16 { kNormal = 0, kMinimised = 1, kMaximised = 2 };
enum class Border : Int16 { kNone, kFixed, kSizable, kFixedDialog, kFixedTool, kSizableTool };

const QScreen* ScreenUnder(const QWidget& window) {
  const QScreen* screen = QGuiApplication::screenAt(window.frameGeometry().center());
  return screen != nullptr ? screen : window.screen();
}

QWidget* FormAround(QWidget* widget) {
  while (!widget->isWindow() && qobject_cast<QMdiSubWindow*>(widget) == nullptr) {
    widget = widget->parentWidget();
  }
  return widget;
}

Variant InUnits(int pixels) { return pixels * kUnitsPerPixel; }

int InPixels(const Variant& length) {
  const Double pixels = std::round(ToDouble(length) / kUnitsPerPixel);
  if (!(std::fabs(pixels) <= QWIDGETSIZE_MAX)) Raise(FailureNumber::kOverflow);
  return static_cast<int>(pixels);
}

State StateOf(Qt::WindowStates states) {
  if (states.testFlag(Qt::WindowMinimized)) return State::kMinimised;
  const bool fills = states.testAnyFlags(Qt::WindowMaximized | Qt::WindowFullScreen);
  return fills ? State::kMaximised : State::kNormal;
}

Qt::WindowStates FlagsOf(const Variant& state) {
  switch (static_cast<State>(ToInt16(state))) {
    case State::kNormal:
      return Qt::WindowNoState;
    case State::kMinimised:
      return Qt::WindowMinimized;
    case State::kMaximised:
      return Qt::WindowMaximized;
  }
  Raise(FailureNumber::kInvalidArgument);
}

Border BorderOf(const QWidget& window) {
  if (window.windowFlags().testFlag(Qt::FramelessWindowHint)) return Border::kNone;
  const bool is_fixed = window.minimumSize() == window.maximumSize();
  if (window.windowType() == Qt::Tool) return is_fixed ? Border::kFixedTool : Border::kSizableTool;
  if (!is_fixed) return Border::kSizable;
  return window.windowType() == Qt::Dialog ? Border::kFixedDialog : Border::kFixed;
}

class Form final : public WithMembers<Form, HostObject> {
 public:
  using WithMembers::WithMembers;

  Variant Name(Arguments) {
    const QString name = Window().objectName();
    return name.isEmpty() ? FromQString(Window().metaObject()->className()) : FromQString(name);
  }
  template <int kSide>
  Variant Side(Arguments) {
    return InUnits(Place().at(kSide));
  }
  template <int kSide>
  void PutSide(const Variant& length) {
    PlaceAndSize wanted = Place();
    wanted.at(kSide) = InPixels(length);
    MoveTo(wanted);
  }
  Variant Move(Arguments lengths) {
    PlaceAndSize wanted = Place();
    if (lengths.empty() || lengths.size() > wanted.size()) Raise(FailureNumber::kInvalidArgument);
    for (std::size_t i = 0; i < lengths.size(); ++i) wanted.at(i) = InPixels(lengths[i]);
    MoveTo(wanted);
    return {};
  }
  Variant ScaleWidth(Arguments) { return InUnits(Content().width()); }
  Variant ScaleHeight(Arguments) { return InUnits(Content().height()); }
  Variant WindowState(Arguments) { return static_cast<Int16>(StateOf(Window().windowState())); }
  void PutWindowState(const Variant& state) {
    constexpr Qt::WindowStates kAll =
        Qt::WindowMinimized | Qt::WindowMaximized | Qt::WindowFullScreen;
    const Qt::WindowStates flags = FlagsOf(state);
    Window().setWindowState((Window().windowState() & ~kAll) | flags);
  }
  Variant BorderStyle(Arguments) { return static_cast<Int16>(BorderOf(Window())); }
  Variant MdiChild(Arguments) { return IsSubWindow(); }

  static const Member<Form> kMembers[11];

 private:
  // Left, top, width and height, in pixels.
  using PlaceAndSize = std::array<int, 4>;

  QWidget& Window() const { return static_cast<QWidget&>(Alive()); }
  bool IsSubWindow() const { return qobject_cast<QMdiSubWindow*>(&Window()) != nullptr; }

  QPoint Origin() const {
    const QScreen* screen = IsSubWindow() ? nullptr : ScreenUnder(Window());
    return screen == nullptr ? QPoint() : screen->geometry().topLeft();
  }
  PlaceAndSize Place() const {
    const QPoint corner = Window().frameGeometry().topLeft() - Origin();
    const QSize size = SizeWithFrame(Window());
    return {corner.x(), corner.y(), size.width(), size.height()};
  }
  void MoveTo(const PlaceAndSize& wanted) const {
    if (StateOf(Window().windowState()) != State::kNormal) Raise(FailureNumber::kInvalidArgument);
    const PlaceAndSize now = Place();
    const QPoint corner = Origin() + QPoint(wanted[0], wanted[1]);
    const QSize size(wanted[2], wanted[3]);
    if (size != QSize(now[2], now[3])) ResizeWithFrame(Window(), size);
    Window().move(corner);
  }
  QSize Content() const {
    if (const auto* main = qobject_cast<const QMainWindow*>(&Window())) {
      if (const auto* area = qobject_cast<const QMdiArea*>(main->centralWidget())) {
        return area->viewport()->size();
      }
    }
    return Window().contentsRect().size();
  }
};

const Member<Form> Form::kMembers[11] = {
    {u"Name", &Form::Name},
    {u"Left", &Form::Side<0>, &Form::PutSide<0>},
    {u"Top", &Form::Side<1>, &Form::PutSide<1>},
    {u"Width", &Form::Side<2>, &Form::PutSide<2>},
    {u"Height", &Form::Side<3>, &Form::PutSide<3>},
    {u"ScaleWidth", &Form::ScaleWidth},
    {u"ScaleHeight", &Form::ScaleHeight},
    {u"WindowState", &Form::WindowState, &Form::PutWindowState},
    {u"BorderStyle", &Form::BorderStyle},
    {u"MDIChild", &Form::MdiChild},
    {u"Move", nullptr, nullptr, &Form::Move},
};

}  // namespace

Object FormOf(QWidget* widget) {
  return widget == nullptr ? Object() : MakeObject<Form>(*FormAround(widget));
}

void UseScreenOf(const QWidget* widget) {
  if (widget == nullptr) return;
  const QScreen* screen = ScreenUnder(*widget->window());
  if (screen == nullptr) return;
  const QSize size = screen->geometry().size();
  Screen::SetSize(size.width() * kUnitsPerPixel, size.height() * kUnitsPerPixel);
}

}  // namespace quorl::qt
