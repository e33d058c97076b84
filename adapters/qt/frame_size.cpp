#include "internal/frame_size.hpp"

#include <QEvent>
#include <QTimer>

namespace quorl::qt {
namespace {

QSize FrameOf(const QWidget& window) { return window.frameGeometry().size() - window.size(); }

// Waits, as a child of the window, for its frame. Holds as long as the size stays what was asked.
class PendingSize : public QObject {
 public:
  PendingSize(QWidget& window, QSize asked) : QObject(&window), asked_(asked) {
    window.installEventFilter(this);
    inner_ = window.size();
  }

  static PendingSize* Of(const QWidget& window) {
    for (QObject* child : window.children()) {
      if (auto* pending = dynamic_cast<PendingSize*>(child)) return pending;
    }
    return nullptr;
  }

  bool Holds() const { return Window().size() == inner_ && FrameOf(Window()).isNull(); }
  QSize Asked() const { return asked_; }

  // Not from within the event: the window system is still at work on the window.
  bool eventFilter(QObject*, QEvent* event) override {
    const QEvent::Type type = event->type();
    const bool may_have_frame = type == QEvent::Show || type == QEvent::Move ||
                                type == QEvent::Resize || type == QEvent::Paint;
    if (may_have_frame) QTimer::singleShot(0, this, [this] { Settle(); });
    return false;
  }

 private:
  QWidget& Window() const { return static_cast<QWidget&>(*parent()); }

  void Settle() {
    if (Holds()) return;
    const QSize frame = FrameOf(Window());
    if (Window().size() == inner_) Window().resize(asked_ - frame);
    delete this;
  }

  QSize asked_;
  QSize inner_;
};

}  // namespace

QSize SizeWithFrame(const QWidget& window) {
  const PendingSize* pending = PendingSize::Of(window);
  return pending != nullptr && pending->Holds() ? pending->Asked() : window.frameGeometry().size();
}

void ResizeWithFrame(QWidget& window, QSize size) {
  delete PendingSize::Of(window);
  const QSize frame = FrameOf(window);
  window.resize(size - frame);
  const bool may_get_frame = window.isWindow() && frame.isNull() &&
                             !window.windowFlags().testFlag(Qt::FramelessWindowHint);
  if (may_get_frame && window.size() == size) new PendingSize(window, size);
}

}  // namespace quorl::qt
