// Clicks and choices that go the whole way: through the window, so that whatever lies under the mouse gets them.
#pragma once

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QMenu>
#include <QTest>
#include <QWindow>

// Presses and releases a button of the mouse at a place of a widget that is in view, in its own pixels.
inline void ClickAt(QWidget& widget, QPoint at, Qt::MouseButton button = Qt::LeftButton) {
  ASSERT_TRUE(widget.isVisible()) << qPrintable(widget.objectName());
  QTest::mouseClick(widget.window()->windowHandle(), button, {}, widget.mapTo(widget.window(), at));
}

inline void ClickOn(QWidget& widget, Qt::MouseButton button = Qt::LeftButton) {
  ClickAt(widget, widget.rect().center(), button);
}

inline void MoveOver(QWidget& widget, QPoint at) {
  ASSERT_TRUE(widget.isVisible()) << qPrintable(widget.objectName());
  QTest::mouseMove(widget.window()->windowHandle(), widget.mapTo(widget.window(), at));
}

// Opens a menu and clicks on an entry of it. An entry that is switched off is clicked as well, and nothing comes of it.
inline void ClickEntry(QMenu& menu, QAction& entry) {
  menu.popup(QPoint(20, 20));
  ASSERT_TRUE(menu.isVisible());
  const QRect place = menu.actionGeometry(&entry);
  ASSERT_FALSE(place.isEmpty()) << qPrintable(entry.objectName());
  QTest::mouseClick(menu.windowHandle(), Qt::LeftButton, {}, place.center());
  // A click on an entry without effect leaves the menu open.
  menu.close();
}

// Opens a list by its key, goes to an entry of it and takes that, also the one that is chosen already.
inline void PickEntry(QComboBox& list, int index) {
  ASSERT_TRUE(list.isVisible() && list.isEnabled()) << qPrintable(list.objectName());
  QTest::keyClick(&list, Qt::Key_F4);
  ASSERT_TRUE(list.view()->isVisible()) << qPrintable(list.objectName());
  QTest::keyClick(list.view(), Qt::Key_Home);
  for (int step = 0; step < index; ++step) QTest::keyClick(list.view(), Qt::Key_Down);
  QTest::keyClick(list.view(), Qt::Key_Return);
  EXPECT_FALSE(list.view()->isVisible()) << "the list closes behind a choice";
  EXPECT_EQ(index, list.currentIndex());
}
