// The picture editor; empty so far.
#pragma once

#include "ShellWindow.h"

class FPic : public ShellWindow {
  Q_OBJECT

 public:
  FPic() : ShellWindow(QStringLiteral("FPic"), QStringLiteral("Picture Editor")) {}
};
