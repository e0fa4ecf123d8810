#include "ShellWindow.h"

#include <QCloseEvent>

ShellWindow::ShellWindow(const QString& name, const QString& caption) {
  setObjectName(name);
  setWindowTitle(caption);
  resize(360, 200);
}

void ShellWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  hide();
}
