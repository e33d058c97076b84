// The size of a window with its frame, before the window system has given it one.
#pragma once

#include <QObject>
#include <QWidget>

namespace quorl::qt {

/// The size with frame; the one that was asked for while the frame is still unknown.
QSize SizeWithFrame(const QWidget& window);

/// Sizes the window so that it has that size with its frame, now or when the frame is known.
void ResizeWithFrame(QWidget& window, QSize size);

}  // namespace quorl::qt
