#include <QScrollBar>
#include <QWheelEvent>

#include "PicturesFixture.h"

namespace {

// A picture that is larger than its window, as most photos are.
class ViewerScrolling : public PicturesTest {
 protected:
  QScrollBar& Bar(const char* name) { return *viewer_.findChild<QScrollBar*>(name); }
  QScrollBar& Across() { return Bar("ScrollAcross"); }
  QScrollBar& Down() { return Bar("ScrollDown"); }
  QPoint Place() const { return viewer_.Pic->pos(); }
  // What is seen, without the bars.
  QSize View() { return viewer_.size() - QSize(Down().width(), Across().height()); }

  void Wheel(QPoint steps, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QWheelEvent event(QPointF(50, 50), viewer_.mapToGlobal(QPointF(50, 50)), QPoint(), steps * 120, Qt::NoButton,
                      modifiers, Qt::NoScrollPhase, false);
    QApplication::sendEvent(viewer_.Pic, &event);
  }
  // With the pointer there, counted from the window's corner.
  void Send(QEvent::Type type, QPoint inWindow) {
    const QPoint at = inWindow - Place();
    const bool isMove = type == QEvent::MouseMove;
    QMouseEvent event(type, at, viewer_.mapToGlobal(inWindow), isMove ? Qt::NoButton : Qt::LeftButton,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(viewer_.Pic, &event);
  }
};

TEST_F(ViewerScrolling, APictureThatFitsHasNoBars) {
  Open(300, 200);
  EXPECT_TRUE(Across().isHidden());
  EXPECT_TRUE(Down().isHidden());
  Wheel({0, -3});
  EXPECT_EQ(QPoint(0, 0), Place());
}

TEST_F(ViewerScrolling, TheBarsLieOverTheWindowWhoseSizeStays) {
  Open(3000, 1200);
  EXPECT_EQ(QSize(922, 668), viewer_.size());
  EXPECT_TRUE(Across().isVisible());
  EXPECT_TRUE(Down().isVisible());
  EXPECT_TRUE(viewer_.rect().contains(Across().geometry()));
  EXPECT_TRUE(viewer_.rect().contains(Down().geometry()));
  Across().setValue(100);
  Down().setValue(40);
  EXPECT_EQ(QPoint(-100, -40), Place());
  // To the last pixel.
  Across().setValue(Across().maximum());
  Down().setValue(Down().maximum());
  EXPECT_EQ(QPoint(View().width() - 3000, View().height() - 1200), Place());
}

TEST_F(ViewerScrolling, AWindowThatGrowsAtTheEndShowsMoreOfThePicture) {
  Open(3000, 1200);
  Across().setValue(Across().maximum());
  Down().setValue(Down().maximum());
  viewer_.resize(1000, 700);
  EXPECT_EQ(QPoint(View().width() - 3000, View().height() - 1200), Place());
  EXPECT_EQ(Place(), QPoint(-Across().maximum(), -Down().maximum()));
  viewer_.resize(3200, 1300);
  EXPECT_EQ(QPoint(0, 0), Place());
}

TEST_F(ViewerScrolling, TheWheelGoesDownAndSideways) {
  Open(3000, 1200);
  Wheel({0, -1});
  EXPECT_EQ(QPoint(0, -72), Place());
  Wheel({-1, 0});
  EXPECT_EQ(QPoint(-72, -72), Place());
  Wheel({0, -1}, Qt::ShiftModifier);
  EXPECT_EQ(QPoint(-144, -72), Place());
  Wheel({0, 5});
  EXPECT_EQ(QPoint(-144, 0), Place());
}

TEST_F(ViewerScrolling, TheHiddenPartCanBeCropped) {
  Open(3000, 1200);
  Across().setValue(1500);
  Down().setValue(300);
  Send(QEvent::MouseButtonPress, {10, 20});
  Send(QEvent::MouseMove, {110, 90});
  Send(QEvent::MouseButtonRelease, {110, 90});
  EXPECT_EQ("100 X 70", labCropSize_);
  pics_.CropPicture();
  EXPECT_EQ(PlacePicture(3000, 1200).copy(1510, 320, 100, 70), Shown());
  // The rest is in view from its corner on.
  EXPECT_EQ(QPoint(0, 0), Place());
  EXPECT_TRUE(Across().isHidden());
}

TEST_F(ViewerScrolling, ADragBeyondTheEdgeGoesOnUntilThePicturesEnd) {
  Open(3000, 1200);
  Send(QEvent::MouseButtonPress, {10, 20});
  const QPoint pointer(viewer_.width() + 30, viewer_.height() + 30);
  Send(QEvent::MouseMove, pointer);
  EXPECT_TRUE(QTest::qWaitFor([this] { return Across().value() == Across().maximum(); }));
  EXPECT_TRUE(QTest::qWaitFor([this] { return Down().value() == Down().maximum(); }));
  // The band has followed without a move of the mouse.
  const QPoint end = pointer - Place();
  EXPECT_EQ(QStringLiteral("%1 X %2").arg(end.x() - 10).arg(end.y() - 20), labCropSize_);
  Send(QEvent::MouseButtonRelease, pointer);
  EXPECT_EQ(2999, state_.CropX1);
  EXPECT_EQ(1199, state_.CropY1);
  pics_.CropPicture();
  EXPECT_EQ(PlacePicture(3000, 1200).copy(10, 20, 2989, 1179), Shown());
}

TEST_F(ViewerScrolling, BackInViewOrWithTheButtonUpItStops) {
  Open(3000, 1200);
  for (const bool released : {false, true}) {
    Across().setValue(0);
    Send(QEvent::MouseButtonPress, {10, 20});
    Send(QEvent::MouseMove, {viewer_.width() + 5, 50});
    EXPECT_TRUE(QTest::qWaitFor([this] { return Across().value() > 0; }));
    Send(released ? QEvent::MouseButtonRelease : QEvent::MouseMove,
         released ? QPoint(viewer_.width() + 5, 50) : QPoint(400, 50));
    const QPoint place = Place();
    // As long as several of its steps take.
    QSignalSpy moved(&Across(), &QScrollBar::valueChanged);
    EXPECT_FALSE(moved.wait(200));
    EXPECT_EQ(place, Place());
    if (!released) Send(QEvent::MouseButtonRelease, {400, 50});
  }
}

TEST_F(ViewerScrolling, EachPictureComesUpAtItsCorner) {
  Open(3000, 1200);
  Across().setValue(500);
  Open(2500, 1300);
  EXPECT_EQ(QPoint(0, 0), Place());
  EXPECT_EQ(0, Across().value());
  Down().setValue(200);
  pics_.ResizePicture(90);
  EXPECT_EQ(QPoint(0, 0), Place());
}

}  // namespace
