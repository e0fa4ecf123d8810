// Habits of controls that every window of the program shares and Qt doesn't have by itself.
#pragma once

#include <QObject>
#include <functional>

class QWidget;

// From now on Return in the control, a list say, runs that. Lists have a signal of their own for it, which some
// desktops send for a single click, too.
void RunOnReturn(QWidget& control, std::function<void()> run);

// While it lives, in all windows of the program: Return presses the button that has the focus, of whatever kind, and no
// other; and the wheel of the mouse turns lists, numbers and sliders only while they have the focus, else it belongs to
// what lies around them.
class ControlHabits : public QObject {
 public:
  explicit ControlHabits(QObject* parent = nullptr);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
};
