// How the main window opens the icon editor.
#include <gtest/gtest.h>

#include <QApplication>
#include <QPushButton>

#include "FTools.h"
#include "IconColors.h"
#include "IconSurfaces.h"
#include "RunningProgram.h"
#include "Swatch.h"
#include "fIconMaker.h"

namespace {

class IconOpening : public ::testing::Test {
 protected:
  IconOpening() {
    EXPECT_TRUE(run_.Start());
    for (QWidget* widget : QApplication::topLevelWidgets())
      if (auto* const found = qobject_cast<fIconMaker*>(widget)) editor_ = found;
  }

  void DrawDot() {
    emit editor_->PCols[12]->pressed();
    emit editor_->Surfaces.PicBig->MouseDown(Qt::LeftButton, {36, 36});
    emit editor_->Surfaces.PicBig->MouseUp(Qt::LeftButton, {36, 36});
  }
  bool IsBlank() const {
    QImage blank(32, 32, QImage::Format_RGB32);
    blank.fill(PixelOf(TransparentColor));
    return editor_->Surfaces.Pic1->Image() == blank;
  }

  RunningProgram run_;
  fIconMaker* editor_ = nullptr;
};

// Meant in fIconMaker::ResetEditor: opening the editor throws its drawing away without a question and keeps the colour.
TEST_F(IconOpening, EveryOpeningThrowsTheWorkAwayWithoutAQuestionAndKeepsTheColor) {
  ASSERT_TRUE(editor_);
  EXPECT_FALSE(editor_->isVisible());
  ASSERT_TRUE(run_.Choose("mOpenIcoEd"));
  EXPECT_TRUE(editor_->isVisible());
  EXPECT_FALSE(editor_->isModal());
  DrawDot();
  EXPECT_FALSE(IsBlank());
  EXPECT_TRUE(editor_->bUndo->isEnabled());
  ASSERT_TRUE(run_.Choose("mOpenIcoEd"));
  EXPECT_TRUE(IsBlank());
  EXPECT_FALSE(editor_->bUndo->isEnabled());
  EXPECT_EQ(0x0000FF, editor_->Drawing.CurColor);
  EXPECT_TRUE(run_.Dialogs().Boxes.isEmpty());
}

TEST_F(IconOpening, ThePictureOutlivesHidingButNotTheNextOpening) {
  ASSERT_TRUE(editor_);
  ASSERT_TRUE(run_.Choose("mOpenIcoEd"));
  DrawDot();
  editor_->mExit();
  EXPECT_FALSE(IsBlank());
  ASSERT_TRUE(run_.Choose("mOpenIcoEd"));
  EXPECT_TRUE(IsBlank());
}

TEST_F(IconOpening, TheToolWindowGoes) {
  ASSERT_TRUE(editor_);
  FTools& tools = *run_.modMain.Tools();
  ASSERT_TRUE(run_.Choose("mViewSource"));
  ASSERT_TRUE(tools.isVisible());
  ASSERT_TRUE(run_.Choose("mOpenIcoEd"));
  EXPECT_FALSE(tools.isVisible());
  EXPECT_FALSE(tools.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
  EXPECT_FALSE(run_.Web().Busy);
}

TEST_F(IconOpening, NothingHappensWhileTheMainWindowIsBusy) {
  ASSERT_TRUE(editor_);
  run_.Web().Busy = true;
  ASSERT_TRUE(run_.Choose("mOpenIcoEd"));
  EXPECT_FALSE(editor_->isVisible());
  EXPECT_TRUE(run_.Web().Busy);
}

}  // namespace
