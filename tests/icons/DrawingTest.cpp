#include <QTest>

#include "IconFixture.h"

namespace {

class DrawingTest : public IconTest {
 protected:
  DrawingTest() { UseColor(Red); }
  QRgb Seen(int x, int y) const { return Plane(planes_.Pic1).pixel(x, y); }
  QRgb Work(int x, int y) const { return Plane(planes_.PicBig).pixel(x, y); }
  QPoint CellOf(double x, double y) {
    editor_.Drawing.PointToCell(false, x, y);
    return {editor_.Drawing.CellX0, editor_.Drawing.CellY0};
  }
  static QRgb Inverted(QRgb pixel) { return pixel ^ 0xFFFFFF; }
};

// --- cells

// Meant in DrawingEngine::PointToCell: the middle row of a cell falls into the next cell, its middle column doesn't.
TEST_F(DrawingTest, TheMiddleRowOfACellFallsIntoTheNextCellAndTheMiddleColumnDoesNot) {
  for (int cell = 0; cell < 32; ++cell) {
    const int middle = cell * 7 + 3;
    const bool isOff = cell >= 2 && cell <= 29;
    EXPECT_EQ(QPoint(cell, cell + (isOff ? 1 : 0)), CellOf(middle, middle));
  }
  EXPECT_EQ(QPoint(3, 4), CellOf(24, 24));
  EXPECT_EQ(QPoint(29, 30), CellOf(206, 206));
}

TEST_F(DrawingTest, EveryOtherPositionIsInItsCell) {
  for (int at = 0; at < 224; ++at) {
    if (at % 7 == 3) continue;
    EXPECT_EQ(QPoint(at / 7, at / 7), CellOf(at, at)) << at;
  }
}

TEST_F(DrawingTest, APlaceBetweenTwoPixelsIsTheNearerOne) {
  EXPECT_EQ(QPoint(1, 0), CellOf(6.6, 6.4));
  EXPECT_EQ(QPoint(0, 1), CellOf(6.5, 7.5));
}

// Meant in DrawingEngine::PointToCell: above the work area the row is the one with the column's number.
TEST_F(DrawingTest, LeftOfTheAreaIsTheFirstColumnAndAboveItIsTheRowOfTheColumnsNumber) {
  EXPECT_EQ(QPoint(0, 5), CellOf(-3, 37));
  EXPECT_EQ(QPoint(14, 14), CellOf(100, -3));
  EXPECT_EQ(QPoint(0, 0), CellOf(-3, -3));
  EXPECT_EQ(QPoint(-1, -1), CellOf(-7, -7));
}

TEST_F(DrawingTest, BeyondTheAreaCellsGoOn) {
  EXPECT_EQ(QPoint(32, 33), CellOf(227, 227));
  EXPECT_EQ(QPoint(4681, 4681), CellOf(1e9, 1e9));
  EXPECT_EQ(QPoint(0, 0), CellOf(-1e9, -1e9));
}

// --- dots

TEST_F(DrawingTest, AClickInOneCellIsADotWithEveryTool) {
  for (const Tool tool : {Tool::Line, Tool::Rectangle, Tool::SolidRectangle, Tool::Ellipse, Tool::SolidEllipse}) {
    editor_.bclear->click();
    Use(tool);
    Press({36, 37});
    Release({41, 35});
    EXPECT_EQ(QList<QPoint>{QPoint(5, 5)}, Opaque());
    EXPECT_EQ(qRgb(255, 0, 0), Seen(5, 5));
  }
}

TEST_F(DrawingTest, AClickWithAWidePenIsABlobWithEveryTool) {
  UseWidth(3);
  for (const Tool tool : {Tool::Line, Tool::Rectangle, Tool::SolidRectangle, Tool::Ellipse, Tool::SolidEllipse}) {
    editor_.bclear->click();
    Use(tool);
    Drag({5, 5}, {5, 5});
    EXPECT_EQ(QStringList({".#.", "###", ".#."}), OpaqueShape());
    EXPECT_EQ(QRect(4, 4, 3, 3), OpaqueRect());
  }
}

// --- lines

// Meant in IsNear: a line that leaves its row or column by one cell is drawn straight.
TEST_F(DrawingTest, ALineWithinOneCellOfStraightSnaps) {
  Drag({5, 5}, {6, 15});
  EXPECT_EQ(QRect(5, 5, 1, 11), OpaqueRect());
  editor_.bclear->click();
  Drag({5, 5}, {15, 4});
  EXPECT_EQ(QRect(5, 5, 11, 1), OpaqueRect());
  editor_.bclear->click();
  Drag({5, 5}, {7, 15});
  EXPECT_EQ(QRect(5, 5, 3, 10), OpaqueRect());
}

// Meant in DrawingEngine::DrawLine: a straight line gets its end point, a slanted one doesn't.
TEST_F(DrawingTest, AStraightLineGetsItsEndPointAndASlantedOneDoesNot) {
  for (const QPoint end : {QPoint(20, 10), QPoint(4, 10), QPoint(10, 20), QPoint(10, 4)}) {
    editor_.bclear->click();
    Drag({10, 10}, end);
    EXPECT_EQ(QRect(QPoint(10, 10), QSize(1, 1)) | QRect(end, QSize(1, 1)), OpaqueRect());
    EXPECT_TRUE(Opaque().contains(end));
  }
  editor_.bclear->click();
  Drag({10, 10}, {15, 15});
  EXPECT_EQ(QRect(10, 10, 5, 5), OpaqueRect());
  EXPECT_FALSE(Opaque().contains(QPoint(15, 15)));
  editor_.bclear->click();
  Drag({10, 10}, {2, 6});
  EXPECT_TRUE(Opaque().contains(QPoint(3, 6)) || Opaque().contains(QPoint(3, 7)));
  EXPECT_FALSE(Opaque().contains(QPoint(2, 6)));
}

TEST_F(DrawingTest, ADragToTheNextCellWithTheLineToolIsOnePixel) {
  for (const QPoint end : {QPoint(6, 5), QPoint(4, 5), QPoint(5, 6), QPoint(5, 4), QPoint(6, 6), QPoint(4, 4)}) {
    editor_.bclear->click();
    Drag({5, 5}, end);
    EXPECT_EQ(QList<QPoint>{QPoint(5, 5)}, Opaque());
  }
}

// --- shapes

// Meant in DrawingEngine::DrawShape: shapes that are drawn to the right and down get their last cell, those to the left
// and up don't.
TEST_F(DrawingTest, ShapesToTheRightAndDownGetTheirLastCellAndThoseToTheLeftAndUpDoNot) {
  for (const Tool tool : {Tool::Rectangle, Tool::SolidRectangle, Tool::Ellipse, Tool::SolidEllipse}) {
    Use(tool);
    const auto drawn = [&](QPoint from, QPoint to) {
      editor_.bclear->click();
      Drag(from, to);
      return OpaqueRect();
    };
    EXPECT_EQ(QRect(3, 3, 8, 8), drawn({3, 3}, {10, 10}));
    EXPECT_EQ(QRect(3, 3, 7, 7), drawn({10, 10}, {3, 3}));
    EXPECT_EQ(QRect(3, 3, 8, 7), drawn({3, 10}, {10, 3}));
    EXPECT_EQ(QRect(3, 3, 7, 8), drawn({10, 3}, {3, 10}));
  }
}

// Meant in DrawingEngine::DrawShape: a shape within one row or column draws nothing and is a step for Undo all the
// same.
TEST_F(DrawingTest, AShapeWithinOneRowOrColumnIsNothingToTheRightOrDownAndStillAStep) {
  for (const Tool tool : {Tool::Rectangle, Tool::SolidRectangle, Tool::Ellipse, Tool::SolidEllipse})
    for (const QPoint end : {QPoint(12, 5), QPoint(2, 5), QPoint(5, 12), QPoint(5, 2)}) {
      editor_.bclear->click();
      Use(tool);
      Drag({5, 5}, end);
      EXPECT_TRUE(Opaque().isEmpty());
      EXPECT_TRUE(UndoEnabled());
    }
}

TEST_F(DrawingTest, AShapeUpByOneRowIsOneRowThick) {
  Use(Tool::SolidRectangle);
  Drag({5, 5}, {12, 4});
  EXPECT_EQ(QRect(5, 4, 8, 1), OpaqueRect());
}

TEST_F(DrawingTest, OutlinesLeaveTheInsideAndSolidShapesFillIt) {
  Drag({6, 6}, {6, 6});
  UseColor(Blue);
  Use(Tool::Rectangle);
  Drag({3, 3}, {10, 10});
  EXPECT_EQ(qRgb(255, 0, 0), Seen(6, 6));
  EXPECT_EQ(PixelOf(TransparentColor), Seen(5, 5));
  Use(Tool::Ellipse);
  Drag({3, 3}, {10, 10});
  EXPECT_EQ(qRgb(255, 0, 0), Seen(6, 6));
  Use(Tool::SolidEllipse);
  Drag({3, 3}, {10, 10});
  EXPECT_EQ(qRgb(0, 0, 255), Seen(6, 6));
  UseColor(Green);
  Use(Tool::SolidRectangle);
  Drag({3, 3}, {10, 10});
  EXPECT_EQ(64, Opaque().size());
  EXPECT_EQ(qRgb(0, 255, 0), Seen(3, 3));
  ExpectPlanesAgree();
}

TEST_F(DrawingTest, AWideOutlineReachesBeyondItsCells) {
  UseWidth(4);
  Use(Tool::Rectangle);
  Drag({8, 8}, {20, 20});
  EXPECT_EQ(QRect(6, 6, 16, 16), OpaqueRect());
  EXPECT_FALSE(Opaque().contains(QPoint(14, 14)));
  ExpectPlanesAgree();
}

TEST_F(DrawingTest, TheSeeThroughColorClearsABlockInAllThreePlanes) {
  Use(Tool::SolidRectangle);
  Drag({0, 0}, {31, 31});
  EXPECT_EQ(1024, Opaque().size());
  UseSeeThrough();
  Drag({10, 10}, {19, 19});
  EXPECT_EQ(1024 - 100, Opaque().size());
  EXPECT_EQ(PixelOf(TransparentColor), Seen(10, 10));
  EXPECT_EQ(PixelOf(0), Plane(planes_.Pic1Black).pixel(10, 10));
  EXPECT_EQ(PixelOf(0xFFFFFF), Plane(planes_.Pic2).pixel(10, 10));
  ExpectPlanesAgree();
}

TEST_F(DrawingTest, WhatIsDrawnOutsideIsCutOff) {
  Use(Tool::SolidRectangle);
  Press(InCell({28, 28}));
  Release({4000, 4000});
  EXPECT_EQ(QRect(28, 28, 4, 4), OpaqueRect());
}

TEST_F(DrawingTest, TheWorkAreaIsTheIconSevenTimesAsLarge) {
  Use(Tool::SolidEllipse);
  Drag({3, 5}, {20, 27});
  EXPECT_EQ(Enlarged(Plane(planes_.Pic1)), Plane(planes_.PicBig));
  EXPECT_EQ(QSize(224, 224), planes_.PicBig->size());
}

// --- the rubber line

// Meant in DrawingEngine::MouseMove: while the mouse is dragged a straight line shows, whatever the tool.
TEST_F(DrawingTest, TheOnlyPreviewIsOneStraightLineWhateverTheTool) {
  for (const Tool tool : {Tool::Line, Tool::Rectangle, Tool::SolidRectangle, Tool::Ellipse, Tool::SolidEllipse}) {
    editor_.bclear->click();
    Use(tool);
    const QList<QImage> before = AllPlanes();
    Press({20, 20});
    MoveTo({80, 20});
    MoveTo({120, 120});
    for (int at = 20; at <= 120; ++at) EXPECT_EQ(Inverted(PixelOf(TransparentColor)), Work(at, at));
    EXPECT_EQ(PixelOf(TransparentColor), Work(50, 20));
    EXPECT_EQ(PixelOf(TransparentColor), Work(120, 20));
    EXPECT_EQ(before.first(3), AllPlanes().first(3));
    Release({120, 120});
    EXPECT_EQ(Enlarged(Plane(planes_.Pic1)), Plane(planes_.PicBig));
  }
}

// Meant in DrawingEngine::MouseMove: a line that ended left of the work area stays standing.
TEST_F(DrawingTest, ALastLineEndLeftOfTheAreaCountsAsNoLineAndStaysStanding) {
  Press({20, 20});
  MoveTo({-5, 20});
  EXPECT_EQ(Inverted(PixelOf(TransparentColor)), Work(0, 20));
  MoveTo({20, 60});
  // The new line is wiped at the release, the one to the left never.
  EXPECT_EQ(Inverted(PixelOf(TransparentColor)), Work(0, 20));
  Release({20, 60});
  EXPECT_EQ(Enlarged(Plane(planes_.Pic1)), Plane(planes_.PicBig));
  editor_.bUndo->click();
  EXPECT_EQ(Inverted(PixelOf(TransparentColor)), Work(0, 20));
  EXPECT_EQ(PixelOf(TransparentColor), Work(20, 50));
  EXPECT_TRUE(Opaque().isEmpty());
}

TEST_F(DrawingTest, OnlyTheLeftButtonAloneShowsTheLine) {
  Press({20, 20}, Qt::MiddleButton);
  MoveTo({90, 90}, Qt::MiddleButton);
  MoveTo({90, 90}, Qt::LeftButton | Qt::RightButton);
  EXPECT_TRUE(IsBlank());
  MoveTo({90, 90}, Qt::LeftButton);
  EXPECT_FALSE(IsBlank());
}

TEST_F(DrawingTest, WithoutAPressNoLineIsShown) {
  MoveTo({90, 90}, Qt::LeftButton);
  EXPECT_TRUE(IsBlank());
}

// --- buttons

TEST_F(DrawingTest, TheMiddleButtonDraws) {
  Drag({5, 5}, {15, 5}, Qt::MiddleButton);
  EXPECT_EQ(QRect(5, 5, 11, 1), OpaqueRect());
  EXPECT_TRUE(UndoEnabled());
}

TEST_F(DrawingTest, TheRightButtonDrawsNothing) {
  Drag({5, 5}, {15, 5}, Qt::RightButton);
  EXPECT_TRUE(IsBlank());
  EXPECT_FALSE(UndoEnabled());
  EXPECT_FALSE(editor_.Drawing.MouseIsDown);
}

// Meant in DrawingEngine::MouseUp: the release of the right button ends a press of the left one.
TEST_F(DrawingTest, ARightReleaseEndsALeftPressAndLeavesItsLineUntilTheNextStep) {
  Press({20, 20});
  MoveTo({90, 90});
  Release({90, 90}, Qt::RightButton);
  EXPECT_FALSE(editor_.Drawing.MouseIsDown);
  EXPECT_EQ(Inverted(PixelOf(TransparentColor)), Work(50, 50));
  MoveTo({120, 20});
  EXPECT_EQ(PixelOf(TransparentColor), Work(100, 20));
  editor_.bMoveIm[0]->click();
  EXPECT_TRUE(IsBlank());
}

TEST_F(DrawingTest, ARightPressDuringADragChangesNothing) {
  Press(InCell({5, 5}));
  Press({200, 200}, Qt::RightButton);
  EXPECT_TRUE(editor_.Drawing.MouseIsDown);
  Release(InCell({15, 5}));
  EXPECT_EQ(QRect(5, 5, 11, 1), OpaqueRect());
}

TEST_F(DrawingTest, AReleaseWhileAnotherCommandRunsDrawsNothing) {
  Press(InCell({5, 5}));
  editor_.Busy = true;
  Release(InCell({15, 5}));
  EXPECT_TRUE(IsBlank());
  EXPECT_TRUE(editor_.Busy);
  EXPECT_FALSE(editor_.Drawing.MouseIsDown);
}

TEST_F(DrawingTest, AReleaseWithoutAPressDrawsFromTheCellOfTheLastPress) {
  Drag({5, 5}, {9, 5});
  Release(InCell({5, 15}));
  EXPECT_EQ(5 + 10, Opaque().size());
  EXPECT_TRUE(Opaque().contains(QPoint(5, 15)));
}

// --- undo

TEST_F(DrawingTest, UndoBringsBackAllPlanesAndOnlyOnce) {
  Drag({1, 1}, {9, 9});
  const QList<QImage> before = AllPlanes();
  Use(Tool::SolidRectangle);
  Drag({3, 3}, {20, 20});
  EXPECT_TRUE(UndoEnabled());
  editor_.bUndo->click();
  EXPECT_EQ(before, AllPlanes());
  EXPECT_FALSE(UndoEnabled());
  editor_.bUndo->click();
  EXPECT_EQ(before, AllPlanes());
  EXPECT_EQ(planes_.PicBig, editor_.focusWidget());
}

TEST_F(DrawingTest, TheStepAfterAnUndoIsDrawnOnWhatCameBack) {
  Drag({1, 1}, {9, 1});
  Drag({1, 3}, {9, 3});
  editor_.bUndo->click();
  Drag({1, 5}, {9, 5});
  EXPECT_EQ(18, Opaque().size());
  ExpectPlanesAgree();
}

// --- moving

TEST_F(DrawingTest, MovingShiftsByOnePixelAndWhatComesInIsSeeThrough) {
  const QPoint steps[] = {{1, 0}, {0, 1}, {-1, 0}, {0, -1}};
  for (int direction = 0; direction < 4; ++direction) {
    editor_.bclear->click();
    Use(Tool::SolidRectangle);
    Drag({0, 0}, {31, 31});
    UseColor(Blue);
    Drag({10, 12}, {10, 12});
    UseColor(Red);
    editor_.bMoveIm[std::size_t(direction)]->click();
    const QPoint now = QPoint(10, 12) + steps[direction];
    EXPECT_EQ(qRgb(0, 0, 255), Seen(now.x(), now.y()));
    EXPECT_EQ(1024 - 32, Opaque().size());
    EXPECT_EQ(QRect(0, 0, 32, 32) & QRect(steps[direction], QSize(32, 32)), OpaqueRect());
    ExpectPlanesAgree();
    EXPECT_EQ(Enlarged(Plane(planes_.Pic1)), Plane(planes_.PicBig));
  }
}

TEST_F(DrawingTest, Moving32TimesLeavesNothing) {
  for (QPushButton* button : editor_.bMoveIm) {
    Use(Tool::SolidRectangle);
    Drag({0, 0}, {31, 31});
    for (int step = 0; step < 31; ++step) button->click();
    EXPECT_EQ(32, Opaque().size());
    button->click();
    EXPECT_TRUE(IsBlank());
  }
}

// Meant in DrawingEngine::MoveImage: moving the icon can't be taken back.
TEST_F(DrawingTest, MovingTakesNoSnapshotAndDisablesUndo) {
  Drag({5, 5}, {15, 5});
  const QList<QImage> copies = {Plane(planes_.Pic1A), Plane(planes_.Pic1BlackA), Plane(planes_.Pic2A),
                                Plane(planes_.PicBig2)};
  editor_.bMoveIm[1]->click();
  EXPECT_FALSE(UndoEnabled());
  EXPECT_EQ(copies, (QList<QImage>{Plane(planes_.Pic1A), Plane(planes_.Pic1BlackA), Plane(planes_.Pic2A),
                                   Plane(planes_.PicBig2)}));
  editor_.bUndo->click();
  EXPECT_EQ(QRect(5, 6, 11, 1), OpaqueRect());
}

TEST_F(DrawingTest, MovingDoesNothingWhileAnotherCommandRuns) {
  Drag({5, 5}, {15, 5});
  editor_.Busy = true;
  editor_.bMoveIm[1]->click();
  EXPECT_EQ(QRect(5, 5, 11, 1), OpaqueRect());
  EXPECT_TRUE(UndoEnabled());
}

}  // namespace
