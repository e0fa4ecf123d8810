// What the windows of this room have in common: an OK button, which hides them as Escape and the close box do, and the
// way in which they come into view.
#pragma once

#include "ShellWindow.h"

class QHBoxLayout;
class QPushButton;

class HelpWindow : public ShellWindow {
  Q_OBJECT

 public:
  using ShellWindow::ShellWindow;

  QPushButton* bClose = nullptr;

 protected:
  void keyPressEvent(QKeyEvent* event) override;

  // Makes the button, at the right of a row of its own. The last thing to be made, as the last that Tab comes to.
  QHBoxLayout* NewButtonRow();
  // In view with the keys on the button.
  void ComeUp();
};
