#include "RightButtonHook.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWidget>

void RightButtonHook::Install(QWidget* window) {
  if (window_ || !window) return;
  window_ = window;
  qApp->installEventFilter(this);  // in front of whoever counts what the page is handed
}

void RightButtonHook::Remove() {
  qApp->removeEventFilter(this);
  window_.clear();
}

bool RightButtonHook::eventFilter(QObject* watched, QEvent* event) {
  const bool mouse = event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonRelease ||
                     event->type() == QEvent::MouseButtonDblClick;
  if (watched != window_ || (!mouse && event->type() != QEvent::ContextMenu)) return false;
  if (event->type() == QEvent::ContextMenu) return true;
  if (static_cast<QMouseEvent*>(event)->button() != Qt::RightButton) return false;
  if (event->type() == QEvent::MouseButtonRelease) emit Released();
  return true;
}
