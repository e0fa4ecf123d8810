// Habits of controls that every window of the program shares and Qt doesn't have by itself.
#pragma once

#include <QObject>

// While it lives, in all windows of the program: Return presses the button that has the focus, of whatever kind, and no
// other; and the wheel of the mouse turns lists, numbers and sliders only while they have the focus, else it belongs to
// what lies around them.
class ControlHabits : public QObject {
 public:
  explicit ControlHabits(QObject* parent = nullptr);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
};
