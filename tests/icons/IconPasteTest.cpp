// Pasting a picture into the icon editor.
#include "ModIcons2.h"

#include <QMimeData>

#include "IconFilesFixture.h"

namespace {

using IconPaste = IconFilesTest;

// Meant in PasteImage: pasting empties the clipboard and makes the whole icon opaque.
TEST_F(IconPaste, PastingEmptiesTheClipboardAndMakesEverythingOpaqueWhateverTheSize) {
  for (const int side : {1, 10, 32, 70}) {
    PutOnClipboard(Picture(side, side));
    editor_.mPaste();
    EXPECT_TRUE(ClipboardIsEmpty());
    EXPECT_EQ(1024, Opaque().size());
    EXPECT_EQ(qRgb(255, 0, 0), Plane(planes_.Pic1).pixel(0, 0));
    EXPECT_EQ(qRgb(255, 0, 0), Plane(planes_.Pic1Black).pixel(0, 0));
  }
}

// Meant in PasteImage: beside a small pasted bitmap the screen shows white while the file holds opaque black.
TEST_F(IconPaste, BesideASmallPastedBitmapTheScreenShowsWhiteWhileTheFileHoldsOpaqueBlack) {
  PutOnClipboard(Picture(10, 10));
  editor_.mPaste();
  EXPECT_EQ(PixelOf(0xFFFFFF), Plane(planes_.Pic1).pixel(20, 20));
  EXPECT_EQ(PixelOf(0xFFFFFF), Plane(planes_.PicBig).pixel(150, 150));
  EXPECT_EQ(PixelOf(0), Plane(planes_.Pic1Black).pixel(20, 20));
  EXPECT_EQ(PixelOf(0), Plane(planes_.Pic2).pixel(20, 20));
  const QByteArray bytes = Saved();
  EXPECT_EQ(QByteArray(128, '\0'), bytes.mid(638));
  EXPECT_EQ(QByteArray(16 * 22, '\0'), bytes.mid(126, 16 * 22));
}

TEST_F(IconPaste, APasteCanBeTakenBack) {
  UseColor(Green);
  Drag({1, 1}, {9, 9});
  const QList<QImage> before = AllPlanes();
  PutOnClipboard(Picture(40, 40));
  editor_.mPaste();
  EXPECT_TRUE(UndoEnabled());
  editor_.bUndo->click();
  EXPECT_EQ(before, AllPlanes());
}

TEST_F(IconPaste, PastingReducesToThe16Colors) {
  PutOnClipboard(Picture(32, 32, QColor(120, 10, 0)));
  editor_.mPaste();
  EXPECT_EQ(OneColor(qRgb(0x80, 0, 0)), Plane(planes_.Pic1));
  EXPECT_EQ(OneColor(qRgb(0x80, 0, 0)), Plane(planes_.Pic1Black));
}

TEST_F(IconPaste, ABitmapOfADenseScreenIsPastedPixelByPixel) {
  QImage dense = Picture(32, 32);
  dense.setDevicePixelRatio(2);
  PutOnClipboard(dense);
  editor_.mPaste();
  EXPECT_EQ(qRgb(255, 0, 0), Plane(planes_.Pic1).pixel(31, 31));
}

TEST_F(IconPaste, ASeeThroughBitmapIsPastedOnWhite) {
  QImage image(32, 32, QImage::Format_ARGB32);
  image.fill(Qt::transparent);
  PutOnClipboard(image);
  editor_.mPaste();
  EXPECT_EQ(OneColor(PixelOf(0xFFFFFF)), Plane(planes_.Pic1Black));
  EXPECT_EQ(1024, Opaque().size());
}

TEST_F(IconPaste, WithoutABitmapOnTheClipboardNoSurfaceChangesAndUndoStays) {
  UseColor(Green);
  Drag({1, 1}, {9, 9});
  const QList<QImage> before = AllPlanes();
  QGuiApplication::clipboard()->clear();
  editor_.mPaste();
  EXPECT_EQ(before, AllPlanes());
  EXPECT_TRUE(UndoEnabled());
  QGuiApplication::clipboard()->setText("text");
  editor_.mPaste();
  EXPECT_EQ(before, AllPlanes());
  EXPECT_EQ("text", QGuiApplication::clipboard()->text());
}

}  // namespace
