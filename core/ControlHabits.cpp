#include "ControlHabits.h"

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QKeyEvent>
#include <QRadioButton>
#include <QScrollBar>
#include <utility>

namespace {

bool IsPlainReturn(const QKeyEvent& key) {
  const bool isReturn = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
  return isReturn && !(key.modifiers() & ~Qt::KeypadModifier);
}

class ReturnRunner : public QObject {
 public:
  ReturnRunner(QObject* control, std::function<void()> run) : QObject(control), run_(std::move(run)) {
    control->installEventFilter(this);
  }

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() != QEvent::KeyPress || !IsPlainReturn(static_cast<const QKeyEvent&>(*event))) return false;
    if (!static_cast<const QKeyEvent*>(event)->isAutoRepeat()) run_();
    return true;
  }

 private:
  std::function<void()> run_;
};

// What is ticked is no button that does something.
QAbstractButton* ButtonOf(QObject* control) {
  if (qobject_cast<QCheckBox*>(control) || qobject_cast<QRadioButton*>(control)) return nullptr;
  return qobject_cast<QAbstractButton*>(control);
}

bool TurnsByWheel(const QObject* control) {
  const bool turns = qobject_cast<const QComboBox*>(control) || qobject_cast<const QAbstractSpinBox*>(control) ||
                     qobject_cast<const QAbstractSlider*>(control);
  return turns && !qobject_cast<const QScrollBar*>(control);
}

}  // namespace

void RunOnReturn(QWidget& control, std::function<void()> run) {
  new ReturnRunner(&control, std::move(run));  // the control's child
}

ControlHabits::ControlHabits(QObject* parent) : QObject(parent) {
  qApp->installEventFilter(this);
}

bool ControlHabits::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress) {
    QAbstractButton* const button = ButtonOf(watched);
    if (!button || !button->isEnabled() || !IsPlainReturn(static_cast<const QKeyEvent&>(*event))) return false;
    if (!static_cast<const QKeyEvent*>(event)->isAutoRepeat()) button->click();
    event->accept();
    return true;
  }
  if (event->type() == QEvent::Wheel && TurnsByWheel(watched) && !static_cast<QWidget*>(watched)->hasFocus()) {
    event->ignore();
    return true;
  }
  return false;
}
