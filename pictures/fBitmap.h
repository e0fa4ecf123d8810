// The window that shows a picture at its own size; empty so far.
#pragma once

#include "ShellWindow.h"

class fBitmap : public ShellWindow {
  Q_OBJECT

 public:
  fBitmap() : ShellWindow(QStringLiteral("fBitmap"), QStringLiteral("Picture")) {}
};
