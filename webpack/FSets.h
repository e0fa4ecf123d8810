// The settings window; empty so far.
#pragma once

#include "ShellWindow.h"

class FSets : public ShellWindow {
  Q_OBJECT

 public:
  FSets() : ShellWindow(QStringLiteral("FSets"), QStringLiteral("Settings")) {}
};
