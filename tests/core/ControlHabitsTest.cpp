// What controls of all windows do by themselves.
#include "ControlHabits.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWheelEvent>

namespace {

class Controls : public ::testing::Test {
 protected:
  Controls() {
    auto* const column = new QVBoxLayout(&window_);
    for (QWidget* const one :
         {static_cast<QWidget*>(&button_), static_cast<QWidget*>(&tool_), static_cast<QWidget*>(&tick_),
          static_cast<QWidget*>(&list_), static_cast<QWidget*>(&number_), static_cast<QWidget*>(&line_)})
      column->addWidget(one);
    list_.addItems({"one", "two", "three"});
    window_.show();
    window_.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window_));
  }
  // One notch away from the user.
  static void Turn(QWidget& over) {
    const QPointF at(over.rect().center());
    QWheelEvent wheel(at, over.mapToGlobal(at), {}, {0, -120}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&over, &wheel);
  }

  ControlHabits habits_;
  QWidget window_;
  QPushButton button_;
  QToolButton tool_;
  QCheckBox tick_;
  QComboBox list_;
  QSpinBox number_;
  QLineEdit line_;
};

TEST_F(Controls, ReturnPressesTheButtonThatHasTheFocus) {
  for (QAbstractButton* const button :
       {static_cast<QAbstractButton*>(&button_), static_cast<QAbstractButton*>(&tool_)}) {
    QSignalSpy clicks(button, &QAbstractButton::clicked);
    button->setFocus();
    QTest::keyClick(button, Qt::Key_Return);
    QTest::keyClick(button, Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_EQ(clicks.count(), 2);
    QTest::keyClick(button, Qt::Key_Return, Qt::ControlModifier);
    button->setEnabled(false);
    QTest::keyClick(button, Qt::Key_Return);
    EXPECT_EQ(clicks.count(), 2);
  }
  tick_.setFocus();
  QTest::keyClick(&tick_, Qt::Key_Return);
  EXPECT_FALSE(tick_.isChecked());
}

TEST_F(Controls, TheWheelTurnsOnlyWhatHasTheFocus) {
  line_.setFocus();
  Turn(list_);
  Turn(number_);
  EXPECT_EQ(list_.currentIndex(), 0);
  EXPECT_EQ(number_.value(), 0);
  list_.setFocus();
  Turn(list_);
  EXPECT_EQ(list_.currentIndex(), 1);
}

}  // namespace
