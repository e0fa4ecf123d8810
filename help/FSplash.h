// The window that tells about the program; empty so far.
#pragma once

#include "ShellWindow.h"

class FSplash : public ShellWindow {
  Q_OBJECT

 public:
  FSplash() : ShellWindow(QStringLiteral("FSplash"), QStringLiteral("About Corvane")) {}
};
