// The tool window with its four panels; empty so far.
#pragma once

#include "ShellWindow.h"

class FTools : public ShellWindow {
  Q_OBJECT

 public:
  FTools() : ShellWindow(QStringLiteral("FTools"), QStringLiteral("Tools")) {}
};
