#include <QMouseEvent>

#include "PicturesFixture.h"

namespace {

class CropBand : public PicturesTest {
 protected:
  void Send(QEvent::Type type, QPointF at, Qt::MouseButton button = Qt::LeftButton) {
    QMouseEvent event(type, at, viewer_.Pic->mapToGlobal(at), button, button, Qt::NoModifier);
    QApplication::sendEvent(viewer_.Pic, &event);
  }
  // The pixels that differ from the picture.
  QRect Outline() const {
    QRect rect;
    const QImage image = Shown();
    for (int y = 0; y < image.height(); ++y)
      for (int x = 0; x < image.width(); ++x)
        if (image.pixel(x, y) != viewer_.Pic->Picture().pixel(x, y)) rect |= QRect(x, y, 1, 1);
    return rect;
  }
};

TEST_F(CropBand, ADragDefinesTheArea) {
  Open(100, 80);
  Send(QEvent::MouseButtonPress, {10, 20});
  EXPECT_EQ("", labCropSize_);
  EXPECT_TRUE(state_.CropDragging);
  EXPECT_FALSE(state_.CropDefined);
  Send(QEvent::MouseMove, {50, 40});
  EXPECT_EQ("40 X 20", labCropSize_);
  EXPECT_EQ(QRect(QPoint(10, 20), QPoint(50, 40)), Outline());
  Send(QEvent::MouseMove, {30, 60});
  EXPECT_EQ("20 X 40", labCropSize_);
  EXPECT_EQ(QRect(QPoint(10, 20), QPoint(30, 60)), Outline());
  Send(QEvent::MouseButtonRelease, {30, 60});
  EXPECT_EQ("20 X 40", labCropSize_);
  EXPECT_EQ(QRect(QPoint(10, 20), QPoint(30, 60)), Outline());
  EXPECT_TRUE(state_.CropDefined);
  EXPECT_FALSE(state_.CropDragging);
  EXPECT_EQ(10, state_.CropX0);
  EXPECT_EQ(20, state_.CropY0);
  EXPECT_EQ(30, state_.CropX1);
  EXPECT_EQ(60, state_.CropY1);
}

TEST_F(CropBand, AMouseThatOnlyPassesDrawsNothing) {
  Open(100, 80);
  Send(QEvent::MouseMove, {50, 40});
  EXPECT_EQ("-", labCropSize_);
  EXPECT_TRUE(Outline().isNull());
}

TEST_F(CropBand, AnyButtonDrags) {
  Open(100, 80);
  for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
    state_ = PictureState();
    Send(QEvent::MouseButtonPress, {10, 20}, button);
    EXPECT_TRUE(state_.CropDragging) << button;
    Send(QEvent::MouseMove, {30, 50}, button);
    EXPECT_EQ(QRect(QPoint(10, 20), QPoint(30, 50)), Outline()) << button;
    Send(QEvent::MouseButtonRelease, {30, 50}, button);
    EXPECT_TRUE(state_.CropDefined) << button;
  }
}

TEST_F(CropBand, TheBandShowsOnLightAndDark) {
  for (const QColor color : {QColor(Qt::white), QColor(Qt::black), QColor(Qt::red), QColor(40, 50, 60)}) {
    OpenOneColor("one.bmp", color);
    Drag({5, 5}, {40, 30});
    EXPECT_EQ(QColor(color.rgb() ^ 0xFFFFFF), PixelShown(5, 5));
    EXPECT_EQ(QColor(color.rgb() ^ 0xFFFFFF), PixelShown(40, 30));
    EXPECT_EQ(color, PixelShown(6, 6));
  }
}

// On the screen only: what is saved has the inverted line.
TEST_F(CropBand, OnMiddleGreyTheBandIsDashedOnTheScreen) {
  for (const int grey : {104, 127, 128, 150}) {
    OpenOneColor("grey.bmp", QColor(grey, grey, grey));
    Drag({5, 5}, {40, 30});
    EXPECT_EQ(qRgb(255 - grey, 255 - grey, 255 - grey), Shown().pixel(20, 5));
    const QImage seen = viewer_.Pic->grab().toImage();
    int black = 0, white = 0;
    for (int x = 5; x <= 40; ++x) {
      black += seen.pixel(x, 5) == qRgb(0, 0, 0) ? 1 : 0;
      white += seen.pixel(x, 30) == qRgb(255, 255, 255) ? 1 : 0;
    }
    EXPECT_NEAR(18, black, 2) << grey;
    EXPECT_NEAR(18, white, 2) << grey;
    int blackDown = 0, whiteDown = 0;
    for (int y = 5; y <= 30; ++y) {
      blackDown += seen.pixel(5, y) == qRgb(0, 0, 0) ? 1 : 0;
      whiteDown += seen.pixel(40, y) == qRgb(255, 255, 255) ? 1 : 0;
    }
    EXPECT_NEAR(13, blackDown, 2) << grey;
    EXPECT_NEAR(13, whiteDown, 2) << grey;
    EXPECT_EQ(qRgb(grey, grey, grey), seen.pixel(20, 6));
    EXPECT_EQ(qRgb(grey, grey, grey), seen.pixel(4, 4));
    // The dashes go with the band.
    pics_.ResizePicture(200);
    EXPECT_EQ(Shown(), viewer_.Pic->grab().toImage().convertToFormat(QImage::Format_RGB32));
  }
}

TEST_F(CropBand, WhereInvertingShowsTheScreenShowsWhatIsSaved) {
  for (const QColor color : {QColor(Qt::white), QColor(Qt::black), QColor(90, 90, 90), QColor(0, 150, 255)}) {
    OpenOneColor("one.bmp", color);
    Drag({5, 5}, {40, 30});
    EXPECT_EQ(Shown(), viewer_.Pic->grab().toImage().convertToFormat(QImage::Format_RGB32));
  }
}

TEST_F(CropBand, TheDashesFollowTheDragAndGoWithAClick) {
  OpenOneColor("grey.bmp", QColor(128, 128, 128));
  viewer_.Pic_MouseDown({5, 5});
  const auto dashed = [this] {
    const QImage seen = viewer_.Pic->grab().toImage();
    QRect rect;
    for (int y = 0; y < seen.height(); ++y)
      for (int x = 0; x < seen.width(); ++x)
        if (std::abs(qGray(seen.pixel(x, y)) - 128) > 100) rect |= QRect(x, y, 1, 1);
    return rect;
  };
  EXPECT_EQ(QRect(), dashed());
  for (const QPoint to : {QPoint(50, 35), QPoint(20, 10)}) {
    viewer_.Pic_MouseMove(to);
    EXPECT_EQ(QRect(QPoint(5, 5), to), dashed());
  }
  viewer_.Pic_MouseDown({30, 30});
  EXPECT_EQ(QRect(), dashed());
}

TEST_F(CropBand, AClickOrADragInOneRowOrColumnDefinesNothing) {
  Open(100, 80);
  for (const QPoint to : {QPoint(10, 20), QPoint(10, 70), QPoint(90, 20)}) {
    Drag({1, 1}, {50, 50});
    ASSERT_TRUE(state_.CropDefined);
    Drag({10, 20}, to);
    EXPECT_FALSE(state_.CropDefined);
    EXPECT_FALSE(state_.CropDragging);
    EXPECT_TRUE(Outline().isNull());
  }
}

// Meant in fBitmap::Pic_MouseUp: the label shows the size as dragged and not as cut.
TEST_F(CropBand, TheAreaIsKeptOnThePictureAndTheLabelShowsTheSizeAsDragged) {
  Open(100, 80);
  Drag({40, 50}, {300, 200});
  EXPECT_EQ("260 X 150", labCropSize_);
  EXPECT_EQ(99, state_.CropX1);
  EXPECT_EQ(79, state_.CropY1);
  EXPECT_EQ(QRect(QPoint(40, 50), QPoint(99, 79)), Outline());
  Drag({40, 50}, {-30, -20});
  EXPECT_EQ("70 X 70", labCropSize_);
  EXPECT_EQ(40, state_.CropX0);
  EXPECT_EQ(0, state_.CropX1);
  EXPECT_EQ(0, state_.CropY1);
  EXPECT_EQ(QRect(QPoint(0, 0), QPoint(40, 50)), Outline());
}

TEST_F(CropBand, ANewPressTakesTheOldBandAway) {
  Open(100, 80);
  Drag({10, 10}, {50, 50});
  viewer_.Pic_MouseDown({70, 70});
  EXPECT_TRUE(Outline().isNull());
  EXPECT_EQ("", labCropSize_);
  EXPECT_FALSE(state_.CropDefined);
}

TEST_F(CropBand, TheSecondOfTwoButtonsStartsAnewAndItsReleaseDefines) {
  Open(100, 80);
  viewer_.Pic_MouseDown({10, 10});
  viewer_.Pic_MouseMove({30, 30});
  viewer_.Pic_MouseDown({30, 30});
  EXPECT_EQ(30, state_.CropX0);
  viewer_.Pic_MouseUp({30, 30});
  EXPECT_FALSE(state_.CropDefined);
  // The other button comes up elsewhere, after the drag has ended: defined, with nothing drawn and the old corner.
  viewer_.Pic_MouseUp({60, 60});
  EXPECT_TRUE(state_.CropDefined);
  EXPECT_TRUE(Outline().isNull());
}

TEST_F(CropBand, PlacesAreWholePixels) {
  Open(100, 80);
  Send(QEvent::MouseButtonPress, {10.9, 20.2});
  EXPECT_EQ(10, state_.CropX0);
  EXPECT_EQ(20, state_.CropY0);
  Send(QEvent::MouseMove, {-0.5, 30.9});
  EXPECT_EQ("11 X 10", labCropSize_);
}

TEST_F(CropBand, AViewerStartsWithoutAnArea) {
  const fBitmap fresh;
  EXPECT_FALSE(fresh.State.CropDefined);
  EXPECT_FALSE(fresh.State.CropDragging);
  EXPECT_FALSE(fresh.State.JpegCurrent);
}

}  // namespace
