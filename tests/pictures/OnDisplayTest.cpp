#include "PicturesFixture.h"
#include "WindowPlace.h"

namespace {

// On a real display with a window manager, whose doing this is.
class OnDisplay : public PicturesTest {
 protected:
  ::testing::AssertionResult IsFramed(int top, int height) {
    if (QTest::qWaitFor([&] { return WithEdges(viewer_).height() == height && WithEdges(viewer_).top() == top; }))
      return ::testing::AssertionSuccess();
    const QRect frame = WithEdges(viewer_);
    return ::testing::AssertionFailure() << "at " << frame.top() << " with " << frame.height();
  }
};

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
  ASSERT_TRUE(QTest::qWaitFor([&] { return EdgesOf(other).has_value(); }));
  viewer_.TieTo(&other);
  EXPECT_EQ(WithEdges(other).size() - other.size(), viewer_.Border());
  Open(300, 668);
  EXPECT_EQ(kCutCaption, Caption());
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&viewer_));
  EXPECT_TRUE(IsFramed(27, 668));
}

TEST_F(OnDisplay, TheFrameOfTheWindowCounts) {
  Open(300, 200);
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&viewer_));
  ASSERT_TRUE(QTest::qWaitFor([this] { return viewer_.Border().height() > 0; }));
  EXPECT_TRUE(pics_.SizeViewer(300, 668, 1500, ""));
  EXPECT_TRUE(IsFramed(27, 668));
}

}  // namespace
