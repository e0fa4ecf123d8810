// The window that answers the questions of the Quick Tips menu; empty so far.
#pragma once

#include "ShellWindow.h"

class FTip : public ShellWindow {
  Q_OBJECT

 public:
  FTip() : ShellWindow(QStringLiteral("FTip"), QStringLiteral("Quick Tip")) {}
};
