#include "WindowPlace.h"

#include <gtest/gtest.h>

#include <QTest>
#include <QWidget>
#include <QWindow>

namespace {

// A laptop left of and below the desktop's main screen, as somebody may have put them; the panels take 40 pixels.
const QRect kLaptop(-1366, 400, 1366, 728);
const QRect kMain(0, 0, 1920, 1040);
const QList<QRect> kBoth = {kMain, kLaptop};

TEST(CenterOver, StandsInTheMiddle) {
  EXPECT_EQ(QRect(760, 420, 400, 200), CenterOver({400, 200}, kMain, kBoth));
  EXPECT_EQ(QRect(-883, 664, 400, 200), CenterOver({400, 200}, kLaptop, kBoth));
  EXPECT_EQ(QRect(150, 175, 200, 100), CenterOver({200, 100}, {100, 100, 300, 250}, kBoth));
}

TEST(CenterOver, StaysOnTheScreenOfTheWindowBelow) {
  // Small and in a corner; most of it on the laptop; and out of every screen.
  EXPECT_EQ(QRect(0, 0, 400, 300), CenterOver({400, 300}, {10, 10, 100, 50}, kBoth));
  EXPECT_EQ(QRect(-400, 550, 400, 300), CenterOver({400, 300}, {-300, 600, 400, 200}, kBoth));
  EXPECT_EQ(QRect(1520, 740, 400, 300), CenterOver({400, 300}, {5000, 5000, 400, 200}, kBoth));
  EXPECT_EQ(QRect(-1366, 400, 400, 300), CenterOver({400, 300}, {-4000, 100, 400, 200}, kBoth));
}

TEST(CenterOver, AWindowTooLargeForItsScreenShowsItsUpperLeftCorner) {
  EXPECT_EQ(QRect(-1366, 400, 2000, 900), CenterOver({2000, 900}, kLaptop, kBoth));
  EXPECT_EQ(QRect(-900, -430, 2000, 900), CenterOver({2000, 900}, {0, 0, 200, 40}, {}));
}

TEST(KeepWithin, MovesNoMoreThanItTakes) {
  const QRect inside(100, 100, 300, 200);
  EXPECT_EQ(inside, KeepWithin(inside, kBoth));
  EXPECT_EQ(QRect(100, 840, 300, 200), KeepWithin({100, 900, 300, 200}, kBoth));
  EXPECT_EQ(QRect(1620, 0, 300, 200), KeepWithin({1800, -10, 300, 200}, kBoth));
  // Between the two it goes where most of it is already.
  EXPECT_EQ(QRect(0, 500, 300, 200), KeepWithin({-100, 500, 300, 200}, kBoth));
  EXPECT_EQ(QRect(-300, 500, 300, 200), KeepWithin({-200, 500, 300, 200}, kBoth));
  EXPECT_EQ(QRect(0, 2, 5000, 200), KeepWithin({-3, 2, 5000, 200}, {kMain}));
  EXPECT_EQ(QRect(7, 8, 9, 9), KeepWithin({7, 8, 9, 9}, {}));
}

class OpenOverTest : public ::testing::Test {
 protected:
  OpenOverTest() {
    main_.setGeometry(FreeAreas().first().adjusted(20, 30, -60, -40));
    main_.show();
    window_.resize(200, 100);
    OpenOver(window_, main_);
  }
  QPoint Middle() const { return main_.frameGeometry().center(); }
  QPoint MiddleOfWindow() const { return window_.frameGeometry().center(); }

  QWidget main_;
  QWidget window_;
};

TEST_F(OpenOverTest, TheFirstTimeInTheMiddleAndThenWhereTheUserLeftIt) {
  window_.show();
  EXPECT_LE((MiddleOfWindow() - Middle()).manhattanLength(), 2);
  const QPoint users = main_.pos() + QPoint(3, 5);
  window_.move(users);
  window_.hide();
  window_.show();
  EXPECT_EQ(users, window_.pos());
  main_.move(main_.pos() + QPoint(10, 10));
  window_.hide();
  window_.show();
  EXPECT_EQ(users, window_.pos());
}

TEST_F(OpenOverTest, AWindowWhoseScreenHasGoneComesBackIntoTheMiddle) {
  window_.show();
  window_.move(20000, 30000);
  window_.hide();
  window_.show();
  EXPECT_LE((MiddleOfWindow() - Middle()).manhattanLength(), 2);
}

TEST_F(OpenOverTest, AWindowThatFillsItsScreenGoesOnDoingSo) {
  window_.setWindowState(Qt::WindowMaximized);
  window_.show();
  EXPECT_TRUE(window_.isMaximized());
  window_.hide();
  window_.show();
  EXPECT_TRUE(window_.isMaximized());
}

// See TwoScreens.json.
TEST(TwoScreens, WhatOpensOverAWindowStaysOnItsScreen) {
  const QList<QRect> areas = FreeAreas();
  ASSERT_EQ(2, areas.size());
  EXPECT_NE(QPoint(), areas[0].topLeft()) << "the first one isn't at the origin";
  for (const QRect& area : areas) {
    for (const QPoint& corner : {area.topLeft(), area.bottomRight() - QPoint(150, 120), area.center()}) {
      QWidget main;
      main.setGeometry(QRect(corner, QSize(140, 90)));
      main.show();
      QWidget window;
      window.resize(300, 200);
      OpenOver(window, main);
      window.show();
      EXPECT_TRUE(area.contains(window.frameGeometry())) << area.x() << ' ' << window.x() << ' ' << window.y();
    }
  }
}

TEST(KeepInFrontOf, TiesTheWindowsAndDeletesNone) {
  auto main = std::make_unique<QWidget>();
  QWidget window;
  KeepInFrontOf(window, *main);
  EXPECT_EQ(Qt::Dialog, window.windowType());
  EXPECT_EQ(nullptr, window.parentWidget());
  window.show();
  EXPECT_NE(nullptr, main->windowHandle());
  EXPECT_EQ(main->windowHandle(), window.windowHandle()->transientParent());
  window.hide();
  window.show();
  EXPECT_EQ(main->windowHandle(), window.windowHandle()->transientParent());
  main.reset();
  EXPECT_EQ(nullptr, window.windowHandle()->transientParent());
  EXPECT_TRUE(window.isVisible());
}

}  // namespace
