#include "PicturesFixture.h"

namespace {

// On a real display with a window manager, whose doing this is.
class OnDisplay : public PicturesTest {};

TEST_F(OnDisplay, TheKeyboardStaysWhereItWasAndTheViewerStandsAbove) {
  QWidget other;
  other.setGeometry(100, 100, 800, 500);
  other.show();
  other.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
  Open(300, 200);
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&viewer_));
  const QPoint middle = viewer_.mapToGlobal(QPoint(150, 100));
  ASSERT_TRUE(other.geometry().contains(middle));
  const auto seen = [&] {
    return other.screen()->grabWindow(0, middle.x(), middle.y(), 1, 1).toImage().pixelColor(0, 0);
  };
  // The active window comes up as far as it can.
  other.raise();
  EXPECT_TRUE(QTest::qWaitFor([&] { return seen() == PlacePicture(300, 200).pixelColor(150, 100); }));
  EXPECT_TRUE(other.isActiveWindow());
  EXPECT_FALSE(viewer_.isActiveWindow());
}

// The frame isn't there yet; it will be like that of the window to which the picture is tied.
TEST_F(OnDisplay, TheFrameOfTheWindowCountsAtItsFirstOpeningToo) {
  QWidget other;
  other.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&other));
  ASSERT_TRUE(QTest::qWaitFor([&] { return other.frameGeometry().height() > other.height(); }));
  viewer_.TieTo(&other);
  EXPECT_EQ(other.frameGeometry().size() - other.size(), viewer_.Border());
  Open(300, 668);
  EXPECT_EQ(kCutCaption, Caption());
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&viewer_));
  EXPECT_TRUE(QTest::qWaitFor([this] { return viewer_.frameGeometry().height() == 668; }))
      << viewer_.frameGeometry().height();
  EXPECT_TRUE(QTest::qWaitFor([this] { return viewer_.frameGeometry().top() == 27; }));
}

TEST_F(OnDisplay, TheFrameOfTheWindowCounts) {
  Open(300, 200);
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&viewer_));
  ASSERT_TRUE(QTest::qWaitFor([this] { return viewer_.Border().height() > 0; }));
  EXPECT_TRUE(pics_.SizeViewer(300, 668, 1500, ""));
  EXPECT_TRUE(QTest::qWaitFor([this] { return viewer_.frameGeometry().height() == 668; }));
  EXPECT_TRUE(QTest::qWaitFor([this] { return viewer_.frameGeometry().top() == 27; }));
}

}  // namespace
