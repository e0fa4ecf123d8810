// The editor for icons; empty so far.
#pragma once

#include "ShellWindow.h"

class fIconMaker : public ShellWindow {
  Q_OBJECT

 public:
  fIconMaker() : ShellWindow(QStringLiteral("fIconMaker"), QStringLiteral("Icon Editor")) {}
};
