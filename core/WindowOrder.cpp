#include "WindowOrder.h"

#include <QWidget>
#include <QWindow>

namespace {

void SetStaysOnTop(QWidget* widget, bool onTop) {
  if (!widget) return;
  QWidget* window = widget->window();
  Qt::WindowFlags flags = window->windowFlags();
  flags.setFlag(Qt::WindowStaysOnTopHint, onTop);
  // QWidget::setWindowFlags would hide the window.
  window->overrideWindowFlags(flags);
  if (QWindow* handle = window->windowHandle()) handle->setFlag(Qt::WindowStaysOnTopHint, onTop);
}

}  // namespace

void SetTopmost(QWidget* Window) {
  SetStaysOnTop(Window, true);
}
void SetNotTopmost(QWidget* Window) {
  SetStaysOnTop(Window, false);
}

void ShowInFront(QWidget& Window) {
  Window.setWindowState(Window.windowState() & ~Qt::WindowMinimized);
  Window.show();
  Window.raise();
  Window.activateWindow();
}
