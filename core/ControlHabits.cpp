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

namespace {

bool IsReturn(const QKeyEvent& key) {
  const bool isReturn = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
  return isReturn && !(key.modifiers() & ~Qt::KeypadModifier);
}

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

ControlHabits::ControlHabits(QObject* parent) : QObject(parent) {
  qApp->installEventFilter(this);
}

bool ControlHabits::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress) {
    QAbstractButton* const button = ButtonOf(watched);
    if (!button || !button->isEnabled() || !IsReturn(static_cast<const QKeyEvent&>(*event))) return false;
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
