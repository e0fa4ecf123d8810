#include "PicturesFixture.h"

namespace {

class PictureOps : public PicturesTest {};

// Meant in ModPics::CropPicture: the last column and row of the area are left out.
TEST_F(PictureOps, CropLeavesOutTheLargerColumnAndRow) {
  Open(100, 80);
  Drag({10, 20}, {50, 35});
  pics_.CropPicture();
  EXPECT_EQ(PlacePicture(100, 80).copy(10, 20, 40, 15), Shown());
  EXPECT_EQ(Shown(), viewer_.Pic->Picture());
  EXPECT_EQ(QSize(40, 15), viewer_.Pic->size());
  EXPECT_EQ(QSize(40, 15), viewer_.size());
  EXPECT_EQ("40", tWd_);
  EXPECT_EQ("15", tHt_);
  EXPECT_EQ("", tJSz_);
  // The whole picture, dragged from corner to corner, loses its last column and row.
  Open(100, 80);
  Drag({-9, -9}, {500, 500});
  pics_.CropPicture();
  EXPECT_EQ(PlacePicture(99, 79), Shown());
}

TEST_F(PictureOps, TheDirectionOfTheDragDoesNotMatter) {
  for (const auto& [from, to] :
       {std::pair(QPoint(10, 20), QPoint(50, 35)), std::pair(QPoint(50, 35), QPoint(10, 20)),
        std::pair(QPoint(50, 20), QPoint(10, 35)), std::pair(QPoint(10, 35), QPoint(50, 20))}) {
    Open(100, 80);
    Drag(from, to);
    pics_.CropPicture();
    EXPECT_EQ(PlacePicture(100, 80).copy(10, 20, 40, 15), Shown());
  }
}

TEST_F(PictureOps, CropTakesTheBandOffTheSnapshot) {
  Open(100, 80);
  Drag({10, 20}, {50, 35});
  pics_.CropPicture();
  EXPECT_EQ(PlacePicture(100, 80), ReadPicture(Scratch("cvtemp.bmp")).convertToFormat(QImage::Format_RGB32));
}

TEST_F(PictureOps, CropTakesAwayTheLastJpegAndTheRoutineLeavesTheFlags) {
  Open(100, 80);
  ASSERT_TRUE(PutFile(Scratch("cvtemp.jpg"), "x"));
  Drag({10, 20}, {50, 35});
  state_.JpegCurrent = true;
  pics_.CropPicture();
  EXPECT_FALSE(Has("cvtemp.jpg"));
  // Clearing them is the editor window's doing.
  EXPECT_TRUE(state_.CropDefined);
  EXPECT_TRUE(state_.JpegCurrent);
}

TEST_F(PictureOps, CropKeepsTheCaption) {
  Open(100, 80);
  const QString caption = Caption();
  Drag({10, 20}, {50, 35});
  pics_.CropPicture();
  EXPECT_EQ(caption, Caption());
}

TEST_F(PictureOps, TheNoteOfACutWindowStaysOverAPictureThatFitsByNow) {
  Open(3000, 100);
  ASSERT_EQ(kCutCaption, Caption());
  Drag({10, 20}, {50, 35});
  pics_.CropPicture();
  EXPECT_EQ(QSize(40, 15), viewer_.size());
  EXPECT_EQ(kCutCaption, Caption());
  pics_.ResizePicture(200);
  EXPECT_EQ(kCutCaption, Caption());
  Open(60, 40);
  EXPECT_EQ(test_.Path("open.bmp"), Caption());
}

TEST_F(PictureOps, ResizeIsOfThePictureOnShow) {
  Open(100, 80);
  pics_.ResizePicture(50);
  EXPECT_EQ(QSize(50, 40), Shown().size());
  pics_.ResizePicture(50);
  EXPECT_EQ(QSize(25, 20), Shown().size());
  EXPECT_EQ("25", tWd_);
  EXPECT_EQ("20", tHt_);
  EXPECT_EQ(QSize(25, 20), viewer_.size());
}

TEST_F(PictureOps, ResizedLengthsAreRoundedToTheEvenOne) {
  struct Row {
    QSize from;
    qint16 percent;
    QSize to;
  };
  for (const Row& row : {Row{{100, 75}, 33, {33, 25}}, Row{{25, 35}, 50, {12, 18}}, Row{{101, 103}, 50, {50, 52}},
                         Row{{100, 75}, 150, {150, 112}}, Row{{10, 10}, 1000, {100, 100}}}) {
    Open(row.from.width(), row.from.height());
    pics_.ResizePicture(row.percent);
    EXPECT_EQ(row.to, viewer_.Pic->size()) << row.percent;
    EXPECT_EQ(row.to, Shown().size()) << row.percent;
    EXPECT_EQ(QString::number(row.to.width()), tWd_);
    EXPECT_EQ(QString::number(row.to.height()), tHt_);
  }
}

TEST_F(PictureOps, ResizeFillsToTheLastPixel) {
  OpenOneColor("blue.bmp", Qt::blue, QSize(100, 75));
  pics_.ResizePicture(33);
  EXPECT_EQ(QColor(Qt::blue), PixelShown(32, 24));
  EXPECT_EQ(QColor(Qt::blue), PixelShown(0, 0));
}

TEST_F(PictureOps, ResizeClearsTheJpegSizeAndLeavesItsFile) {
  Open(100, 80);
  ASSERT_TRUE(pics_.NView.CompressPicture(80));
  ASSERT_NE("", tJSz_);
  pics_.ResizePicture(50);
  EXPECT_EQ("", tJSz_);
  EXPECT_TRUE(Has("cvtemp.jpg"));
}

TEST_F(PictureOps, ResizeToNothingLeavesNoPictureUntilUndone) {
  Open(4, 3);
  pics_.ResizePicture(10);
  EXPECT_EQ("0", tWd_);
  EXPECT_EQ("0", tHt_);
  EXPECT_TRUE(viewer_.Pic->Picture().isNull());
  EXPECT_TRUE(Shown().isNull());
  EXPECT_FALSE(pics_.NView.SavePictureAsJpeg(test_.Path("none.jpg")));
  Open(4, 3);
  pics_.ResizePicture(10);
  pics_.UndoPicture();
  EXPECT_EQ(PlacePicture(4, 3), Shown());
  EXPECT_EQ("4", tWd_);
}

TEST_F(PictureOps, AResultTooLargeToBeHeldLeavesThePictureAndTheStepBack) {
  Open(1000, 800);
  EXPECT_TRUE(pics_.ResizePicture(50));
  const QImage half = Shown();
  const QByteArray snapshot = FileBytes(Scratch("cvtemp.bmp"));
  const int before = notices_;
  EXPECT_FALSE(pics_.ResizePicture(32767));
  EXPECT_EQ(half, Shown());
  EXPECT_EQ(before, notices_);
  EXPECT_EQ(snapshot, FileBytes(Scratch("cvtemp.bmp")));
  pics_.UndoPicture();
  EXPECT_EQ(PlacePicture(1000, 800), Shown());
}

// Beyond what a window system counts with in 16 bits.
TEST_F(PictureOps, AVeryLongStripIsResizedCroppedAndTakenBack) {
  Open(1000, 2);
  EXPECT_TRUE(pics_.ResizePicture(7000));
  EXPECT_EQ("70000", tWd_);
  EXPECT_EQ(QSize(70'000, 140), Shown().size());
  EXPECT_EQ(QColor(qRgb(999 % 256, 1, 48)), PixelShown(69'990, 139));
  const QImage whole = Shown();
  Drag({65'000, 10}, {69'000, 60});
  EXPECT_EQ(QColor(whole.pixel(66'000, 10) ^ 0xFFFFFF), PixelShown(66'000, 10));
  pics_.CropPicture();
  EXPECT_EQ(whole.copy(65'000, 10, 4000, 50), Shown());
  pics_.UndoPicture();
  EXPECT_EQ(whole, Shown());
}

// Anything can have happened to a file on the disk.
TEST_F(PictureOps, ASnapshotThatCantBeReadIsNoStepBack) {
  Open(100, 80);
  pics_.ResizePicture(50);
  const QImage half = Shown();
  QFile file(Scratch("cvtemp.bmp"));
  ASSERT_TRUE(file.resize(file.size() - 100));
  pics_.UndoPicture();
  EXPECT_EQ(QStringList{"Only one level of undo."}, Messages());
  EXPECT_EQ(half, Shown());
  EXPECT_EQ("50", tWd_);
}

TEST_F(PictureOps, WhatTheScratchSurfaceMadeIsNotKeptTwice) {
  Open(100, 80);
  pics_.ResizePicture(50);
  EXPECT_TRUE(viewer_.PicX->Picture().isNull());
  EXPECT_FALSE(viewer_.PicX->HasDrawings());
}

TEST_F(PictureOps, UndoGivesBackWhatWas) {
  Open(100, 80);
  pics_.ResizePicture(50);
  tJSz_ = "7";
  ASSERT_TRUE(PutFile(Scratch("cvtemp.jpg"), "x"));
  pics_.UndoPicture();
  EXPECT_EQ(PlacePicture(100, 80), Shown());
  EXPECT_EQ(QSize(100, 80), viewer_.size());
  EXPECT_EQ("100", tWd_);
  EXPECT_EQ("80", tHt_);
  EXPECT_EQ("", tJSz_);
  EXPECT_FALSE(Has("cvtemp.bmp"));
  EXPECT_FALSE(Has("cvtemp.jpg"));
  EXPECT_TRUE(Messages().isEmpty());
}

TEST_F(PictureOps, ThereIsOneLevelOfUndo) {
  Open(100, 80);
  pics_.ResizePicture(50);
  pics_.ResizePicture(50);
  pics_.UndoPicture();
  EXPECT_EQ(QSize(50, 40), Shown().size());
  pics_.UndoPicture();
  EXPECT_EQ(QSize(50, 40), Shown().size());
  ASSERT_EQ(1, test_.platform.dialogs.Boxes.size());
  const ScriptedDialogs::Box box = test_.platform.dialogs.Boxes[0];
  EXPECT_EQ("Only one level of undo.", box.text);
  EXPECT_EQ(MessageIcon::Information, box.icon);
  EXPECT_EQ(MessageButtons::Ok, box.buttons);
}

TEST_F(PictureOps, UndoWithoutAViewerOnShowDoesNothing) {
  pics_.UndoPicture();
  Open(100, 80);
  pics_.ResizePicture(50);
  viewer_.hide();
  pics_.UndoPicture();
  EXPECT_EQ(QSize(50, 40), Shown().size());
  EXPECT_TRUE(Has("cvtemp.bmp"));
  EXPECT_TRUE(Messages().isEmpty());
}

TEST_F(PictureOps, UndoAfterOpeningAnotherPictureBringsTheFirstBack) {
  OpenOneColor("a.bmp", Qt::red);
  pics_.ResizePicture(50);
  OpenOneColor("b.bmp", Qt::green, QSize(20, 20));
  EXPECT_TRUE(Has("cvtemp.bmp"));
  pics_.UndoPicture();
  EXPECT_EQ(QColor(Qt::red), PixelShown(0, 0));
  EXPECT_EQ(QSize(60, 40), Shown().size());
}

TEST_F(PictureOps, ResizeAndUndoKeepTheCropAreaThoughItIsGoneFromView) {
  Open(100, 80);
  Drag({10, 20}, {50, 35});
  pics_.ResizePicture(50);
  EXPECT_TRUE(state_.CropDefined);
  EXPECT_EQ(viewer_.Pic->Picture(), Shown());
  const QImage half = Shown();
  pics_.CropPicture();
  // The old numbers, on the smaller picture.
  EXPECT_EQ("40", tWd_);
  EXPECT_EQ("15", tHt_);
  EXPECT_EQ(half.copy(10, 20, 40, 15), Shown());
  pics_.UndoPicture();
  EXPECT_TRUE(state_.CropDefined);
  EXPECT_EQ(half, Shown());
  pics_.CropPicture();
  EXPECT_EQ(half.copy(10, 20, 40, 15), Shown());
}

TEST_F(PictureOps, AnOldCropAreaBeyondThePictureShowsTheBackground) {
  Open(100, 80);
  Drag({40, 30}, {90, 70});
  pics_.ResizePicture(50);
  const QImage half = Shown();
  pics_.CropPicture();
  EXPECT_EQ(QSize(50, 40), Shown().size());
  EXPECT_EQ(half.pixel(49, 39), Shown().pixel(9, 9));
  EXPECT_EQ(QColor(Qt::white), PixelShown(10, 9));
  EXPECT_EQ(QColor(Qt::white), PixelShown(49, 39));
}

// Meant in ModPics::ResizePicture: a crop band on show goes into the snapshot of a resize.
TEST_F(PictureOps, ABandOnShowGoesIntoTheSnapshotOfAResize) {
  OpenOneColor("white.bmp", Qt::white);
  Drag({5, 5}, {40, 30});
  pics_.ResizePicture(50);
  EXPECT_EQ(QColor(Qt::white), PixelShown(3, 3));
  pics_.UndoPicture();
  EXPECT_EQ(QColor(Qt::black), PixelShown(5, 5));
}

TEST_F(PictureOps, ClosingDeletesFilesThatNobodyWritesAndLeavesTheScratchFiles) {
  for (const char* name : {"qktemp.bmp", "qktemp.jpg", "cvtemp.bmp", "cvtemp.jpg"})
    ASSERT_TRUE(PutFile(Scratch(name), "x"));
  pics_.DeleteFilesAtClose();
  EXPECT_FALSE(Has("qktemp.bmp"));
  EXPECT_FALSE(Has("qktemp.jpg"));
  EXPECT_TRUE(Has("cvtemp.bmp"));
  EXPECT_TRUE(Has("cvtemp.jpg"));
  ASSERT_TRUE(PutFile(Scratch("qktemp.bmp"), "x"));
  pics_.DeleteScratchFiles();
  EXPECT_TRUE(Has("qktemp.bmp"));
  EXPECT_FALSE(Has("cvtemp.bmp"));
  EXPECT_FALSE(Has("cvtemp.jpg"));
}

}  // namespace
