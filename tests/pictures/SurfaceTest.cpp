#include "Surface.h"

#include <gtest/gtest.h>

#include <QPainter>

#include "PictureFiles.h"
#include "ReadPicture.h"
#include "TestPlatform.h"

namespace {

class SurfaceTest : public ::testing::Test {
 protected:
  static QImage OneColor(QSize size, QColor color) {
    QImage image(size, QImage::Format_ARGB32);
    image.fill(color);
    return image;
  }
  // What the screen would show.
  static QImage Painted(Surface& surface) {
    QImage image(surface.size(), QImage::Format_RGB32);
    image.fill(Qt::magenta);
    surface.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
  }

  TestProgram test_;
  Surface surface_{"Box"};
};

TEST_F(SurfaceTest, AutoSizingFollowsThePictureAndClearingLeavesTheSize) {
  surface_.resize(10, 10);
  surface_.SetPicture(PlacePicture(30, 20));
  EXPECT_EQ(QSize(10, 10), surface_.size());
  surface_.SetAutoSize(true);
  EXPECT_EQ(QSize(30, 20), surface_.size());
  surface_.SetPicture(PlacePicture(5, 6));
  EXPECT_EQ(QSize(5, 6), surface_.size());
  surface_.ClearPicture();
  EXPECT_EQ(QSize(5, 6), surface_.size());
  EXPECT_TRUE(surface_.Picture().isNull());
}

TEST_F(SurfaceTest, AFixedSizeShowsTheTopLeftOfALargerPicture) {
  surface_.resize(10, 8);
  surface_.SetPicture(PlacePicture(30, 20));
  EXPECT_EQ(PlacePicture(10, 8), surface_.Image());
  EXPECT_EQ(PlacePicture(10, 8), Painted(surface_));
}

TEST_F(SurfaceTest, ASmallerPictureLiesOnTheBackground) {
  surface_.resize(30, 20);
  surface_.SetBackground(Qt::blue);
  surface_.SetPicture(PlacePicture(10, 8));
  EXPECT_EQ(PlacePicture(10, 8), surface_.Image().copy(0, 0, 10, 8));
  EXPECT_EQ(QColor(Qt::blue), surface_.Image().pixelColor(10, 7));
  EXPECT_EQ(QColor(Qt::blue), surface_.Image().pixelColor(29, 19));
  EXPECT_EQ(surface_.Image(), Painted(surface_));
}

TEST_F(SurfaceTest, TheImageHasOnePixelForEachWhateverTheScreen) {
  QImage fine = PlacePicture(30, 20);
  fine.setDevicePixelRatio(2);
  surface_.SetAutoSize(true);
  surface_.SetPicture(fine);
  EXPECT_EQ(QSize(30, 20), surface_.size());
  EXPECT_EQ(1, surface_.Image().devicePixelRatio());
  EXPECT_EQ(PlacePicture(30, 20), surface_.Image());
}

TEST_F(SurfaceTest, WhatIsSeeThroughShowsTheBackground) {
  surface_.SetAutoSize(true);
  surface_.SetPicture(OneColor(QSize(4, 4), Qt::transparent));
  EXPECT_EQ(QColor(Qt::white), surface_.Image().pixelColor(1, 1));
  surface_.SetBackground(Qt::green);
  EXPECT_EQ(QColor(Qt::green), surface_.Image().pixelColor(1, 1));
  EXPECT_FALSE(surface_.Image().hasAlphaChannel());
  EXPECT_EQ(surface_.Image(), Painted(surface_));
}

TEST_F(SurfaceTest, ClearingTheDrawingsBringsThePictureBack) {
  surface_.SetAutoSize(true);
  surface_.SetPicture(PlacePicture(30, 20));
  surface_.InvertRectangle({3, 4}, {20, 15});
  surface_.PaintPicture(OneColor({5, 5}, Qt::red), QRect(10, 10, 5, 5), QRect(0, 0, 5, 5));
  EXPECT_NE(PlacePicture(30, 20), surface_.Image());
  EXPECT_EQ(PlacePicture(30, 20), surface_.Picture());
  EXPECT_EQ(surface_.Image(), Painted(surface_));
  surface_.ClearDrawings();
  EXPECT_EQ(PlacePicture(30, 20), surface_.Image());
  EXPECT_EQ(PlacePicture(30, 20), Painted(surface_));
  // A second drawing starts from the picture as well.
  surface_.InvertRectangle({0, 0}, {0, 0});
  EXPECT_EQ(QColor(Qt::white), surface_.Image().pixelColor(0, 0));
  surface_.ClearDrawings();
  EXPECT_EQ(PlacePicture(30, 20), surface_.Image());
}

TEST_F(SurfaceTest, ClearingTheDrawingsBringsTheBackgroundBackToo) {
  surface_.resize(30, 20);
  surface_.SetBackground(Qt::yellow);
  surface_.SetPicture(OneColor({10, 10}, QColor(0, 0, 0, 100)));
  const QImage before = surface_.Image();
  surface_.InvertRectangle({5, 5}, {25, 15});
  ASSERT_NE(before, surface_.Image());
  surface_.ClearDrawings();
  EXPECT_EQ(before, surface_.Image());
  EXPECT_EQ(before, Painted(surface_));
}

TEST_F(SurfaceTest, PictureAndBackgroundWipeOffTheDrawings) {
  surface_.resize(8, 8);
  const auto draw = [this] {
    surface_.InvertRectangle({1, 1}, {6, 6});
    ASSERT_NE(surface_.Picture().isNull() ? OneColor({8, 8}, Qt::white).pixel(1, 1) : PlacePicture(8, 8).pixel(1, 1),
              surface_.Image().pixel(1, 1));
  };
  draw();
  surface_.SetPicture(PlacePicture(8, 8));
  EXPECT_EQ(PlacePicture(8, 8), surface_.Image());
  draw();
  surface_.SetBackground(Qt::white);
  EXPECT_EQ(PlacePicture(8, 8), surface_.Image());
  draw();
  surface_.ClearPicture();
  EXPECT_EQ(QColor(Qt::white), surface_.Image().pixelColor(1, 1));
}

TEST_F(SurfaceTest, TakingAnImageTakesItsDrawingsAsPicture) {
  Surface other("Other");
  other.SetAutoSize(true);
  other.SetPicture(PlacePicture(12, 9));
  other.InvertRectangle({2, 2}, {8, 7});
  surface_.SetAutoSize(true);
  surface_.TakeImageOf(other);
  EXPECT_EQ(other.Image(), surface_.Picture());
  EXPECT_EQ(QSize(12, 9), surface_.size());
  other.ClearDrawings();
  surface_.ClearDrawings();
  EXPECT_NE(other.Image(), surface_.Image());
}

TEST_F(SurfaceTest, DrawingsStayWhenTheSizeChanges) {
  surface_.resize(10, 10);
  surface_.InvertRectangle({2, 2}, {4, 4});
  surface_.resize(20, 20);
  EXPECT_EQ(QColor(Qt::black), surface_.Image().pixelColor(2, 2));
  EXPECT_EQ(QColor(Qt::white), surface_.Image().pixelColor(15, 15));
  EXPECT_EQ(surface_.Image(), Painted(surface_));
  surface_.InvertRectangle({15, 15}, {18, 18});
  EXPECT_EQ(QColor(Qt::black), surface_.Image().pixelColor(2, 2));
  EXPECT_EQ(QColor(Qt::black), surface_.Image().pixelColor(15, 15));
  surface_.resize(8, 8);
  surface_.ClearDrawings();
  surface_.resize(20, 20);
  EXPECT_EQ(QColor(Qt::white), surface_.Image().pixelColor(2, 2));
}

TEST_F(SurfaceTest, AnInvertedOutlineIsOnePixelWideAndGoesASecondTime) {
  surface_.SetAutoSize(true);
  const QImage picture = PlacePicture(30, 20);
  surface_.SetPicture(picture);
  struct Row {
    QPoint from, to;
    int pixels;
  };
  for (const Row& row :
       {Row{{3, 4}, {10, 9}, 2 * 8 + 2 * 4}, Row{{10, 9}, {3, 4}, 24}, Row{{5, 5}, {5, 5}, 1}, Row{{5, 5}, {9, 5}, 5},
        Row{{5, 5}, {5, 9}, 5}, Row{{5, 5}, {6, 6}, 4}, Row{{0, 0}, {29, 19}, 2 * 30 + 2 * 18},
        Row{{-5, -5}, {4, 3}, 8}, Row{{-5, -5}, {100, 100}, 0}, Row{{25, 15}, {100'000'000, 100'000'000}, 9}}) {
    surface_.InvertRectangle(row.from, row.to);
    int changed = 0;
    const QImage image = surface_.Image();
    for (int y = 0; y < 20; ++y)
      for (int x = 0; x < 30; ++x) {
        if (image.pixel(x, y) == picture.pixel(x, y)) continue;
        EXPECT_EQ(picture.pixel(x, y) ^ 0xFFFFFF, image.pixel(x, y));
        ++changed;
      }
    EXPECT_EQ(row.pixels, changed) << row.from.x() << ' ' << row.to.x();
    surface_.InvertRectangle(row.from, row.to);
    EXPECT_EQ(picture, surface_.Image());
  }
}

TEST_F(SurfaceTest, PaintingCopiesAPartAndLeavesOutWhatTheSourceHasNot) {
  surface_.resize(10, 10);
  const QImage source = PlacePicture(20, 20);
  surface_.PaintPicture(source, QRect(0, 0, 10, 10), QRect(5, 6, 10, 10));
  EXPECT_EQ(source.copy(5, 6, 10, 10), surface_.Image());
  surface_.ClearDrawings();
  surface_.PaintPicture(source, QRect(0, 0, 10, 10), QRect(15, 12, 10, 10));
  EXPECT_EQ(source.pixel(19, 19), surface_.Image().pixel(4, 7));
  EXPECT_EQ(QColor(Qt::white), surface_.Image().pixelColor(5, 7));
  EXPECT_EQ(QColor(Qt::white), surface_.Image().pixelColor(4, 8));
  surface_.ClearDrawings();
  surface_.PaintPicture(QImage(), QRect(0, 0, 10, 10), QRect());
  EXPECT_EQ(QColor(Qt::white), surface_.Image().pixelColor(0, 0));
}

TEST_F(SurfaceTest, PaintingStretchesSmoothly) {
  // A net of black and white becomes an even grey; a filter that picks pixels would keep it black or white.
  QImage net(100, 100, QImage::Format_RGB32);
  for (int y = 0; y < 100; ++y)
    for (int x = 0; x < 100; ++x) net.setPixel(x, y, (x + y) % 2 ? 0xFFFFFFFF : 0xFF000000);
  surface_.resize(50, 50);
  surface_.PaintPicture(net, QRect(0, 0, 50, 50), net.rect());
  for (const QPoint at : {QPoint(0, 0), QPoint(25, 25), QPoint(49, 49)})
    EXPECT_NEAR(128, qGray(surface_.Image().pixel(at)), 10) << at.x();
}

TEST_F(SurfaceTest, SavingWritesPictureAndDrawings) {
  surface_.SetAutoSize(true);
  surface_.SetPicture(PlacePicture(13, 9));
  surface_.InvertRectangle({1, 1}, {5, 5});
  ASSERT_TRUE(surface_.SaveImage(test_.Path("saved.bmp")));
  EXPECT_TRUE(FileBytes(test_.Path("saved.bmp")).startsWith("BM"));
  EXPECT_EQ(surface_.Image(), ReadPicture(test_.Path("saved.bmp")).convertToFormat(QImage::Format_RGB32));
  EXPECT_FALSE(surface_.SaveImage(test_.Path("no/such/folder.bmp")));
}

TEST_F(SurfaceTest, WithoutAnAreaThereIsNoImage) {
  surface_.resize(0, 0);
  surface_.InvertRectangle({0, 0}, {5, 5});
  surface_.PaintPicture(PlacePicture(5, 5), QRect(0, 0, 5, 5), QRect(0, 0, 5, 5));
  EXPECT_TRUE(surface_.Image().isNull());
  EXPECT_FALSE(surface_.SaveImage(test_.Path("none.bmp")));
  EXPECT_FALSE(QFile::exists(test_.Path("none.bmp")));
}

TEST_F(SurfaceTest, AnUnreadableFileLeavesThePicture) {
  surface_.SetAutoSize(true);
  surface_.SetPicture(PlacePicture(13, 9));
  surface_.InvertRectangle({1, 1}, {5, 5});
  const QImage before = surface_.Image();
  EXPECT_FALSE(surface_.LoadPicture(test_.Path("missing.png")));
  EXPECT_EQ(before, surface_.Image());
}

}  // namespace
