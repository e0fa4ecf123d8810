// Shows the wait cursor while it lives.
#pragma once

#include <QGuiApplication>

class WaitCursor {
 public:
  WaitCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
  ~WaitCursor() { QGuiApplication::restoreOverrideCursor(); }
  WaitCursor(const WaitCursor&) = delete;
  WaitCursor& operator=(const WaitCursor&) = delete;
};
