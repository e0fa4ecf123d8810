#include <QApplication>
#include <QGroupBox>
#include <QImage>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>

#include "FPic.h"
#include "FTools.h"
#include "ProgramFixture.h"
#include "Surface.h"
#include "fBitmap.h"

namespace {

// The picture editor among the program's other windows.
class PictureEditor : public ProgramTest {
 protected:
  PictureEditor() { EXPECT_TRUE(run_.Start()); }

  template <typename Window>
  static Window& Find() {
    for (QWidget* widget : QApplication::topLevelWidgets())
      if (auto* const window = qobject_cast<Window*>(widget)) return *window;
    abort();
  }
  FTools& Tools() { return *run_.modMain.Tools(); }
  FPic& Editor() { return Find<FPic>(); }
  fBitmap& Viewer() { return Find<fBitmap>(); }
  bool ToolsAreOnTop() { return Tools().windowFlags().testFlag(Qt::WindowStaysOnTopHint); }

  QString Picture(int width, int height) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::red);
    const QString path = run_.test.Path("a.bmp");
    EXPECT_TRUE(image.save(path));
    return path;
  }
  void OpenPicture(const QString& path) {
    run_.Dialogs().Texts = {path};
    Editor().bGetPic->click();
    run_.Settle();
  }
};

TEST_F(PictureEditor, TheMenuOpensItAndTheToolWindowGoes) {
  Tools().ShowTool(ToolTask::PageProperties, QString());
  ASSERT_TRUE(ToolsAreOnTop());
  for (const char* name : {"cvtemp.bmp", "cvtemp.jpg"}) ASSERT_TRUE(PutFile(run_.PathInApp(name), "x"));
  Viewer().State.JpegCurrent = true;
  ASSERT_TRUE(run_.Choose("mPicEditor"));
  EXPECT_TRUE(Editor().isVisible());
  EXPECT_FALSE(Editor().isModal());
  EXPECT_FALSE(Tools().isVisible());
  EXPECT_FALSE(ToolsAreOnTop());
  EXPECT_EQ("<missing>", FileIn("cvtemp.bmp"));
  EXPECT_EQ("<missing>", FileIn("cvtemp.jpg"));
  EXPECT_FALSE(Viewer().State.JpegCurrent);
}

TEST_F(PictureEditor, OpeningItBringsItBackFromMinimised) {
  ASSERT_TRUE(run_.Choose("mPicEditor"));
  Editor().setWindowState(Editor().windowState() | Qt::WindowMinimized);
  ASSERT_TRUE(Editor().isMinimized());
  ASSERT_TRUE(run_.Choose("mPicEditor"));
  EXPECT_FALSE(Editor().isMinimized());
  EXPECT_TRUE(Editor().isMaximized());
}

TEST_F(PictureEditor, TheToolButtonOpensItToo) {
  QAbstractButton* found = nullptr;
  for (auto* button : Web().findChildren<QAbstractButton*>())
    if (button->toolTip() == "Open Picture Editor") found = button;
  ASSERT_TRUE(found);
  found->click();
  EXPECT_TRUE(Editor().isVisible());
}

TEST_F(PictureEditor, OpeningAPictureHidesTheToolWindow) {
  ASSERT_TRUE(run_.Choose("mPicEditor"));
  Tools().ShowTool(ToolTask::PageProperties, QString());
  OpenPicture(Picture(60, 40));
  EXPECT_TRUE(Viewer().isVisible());
  EXPECT_FALSE(Tools().isVisible());
  EXPECT_FALSE(ToolsAreOnTop());
  EXPECT_EQ("60", Editor().tWd->text());
}

TEST_F(PictureEditor, TheViewerStaysAboveTheFrame) {
  ASSERT_TRUE(run_.Choose("mPicEditor"));
  OpenPicture(Picture(50, 3000));
  const int screen = Viewer().screen()->geometry().height();
  EXPECT_EQ(screen - Editor().FrPicEdit->height(), Viewer().frameGeometry().height());
}

TEST_F(PictureEditor, TheToolPanelsPictureLeavesTheEditorsNumbers) {
  ASSERT_TRUE(run_.Choose("mPicEditor"));
  OpenPicture(Picture(60, 40));
  QImage other(30, 20, QImage::Format_RGB32);
  other.fill(Qt::blue);
  ASSERT_TRUE(other.save(run_.test.Path("b.jpg")));
  run_.Dialogs().Texts = {run_.test.Path("b.jpg")};
  Tools().AddPicture(&Web());
  EXPECT_EQ("30", Tools().TSpec[0]->text());
  EXPECT_EQ("60", Editor().tWd->text());
}

TEST_F(PictureEditor, TheProgramEndsWithAPictureOnShow) {
  ASSERT_TRUE(run_.Choose("mPicEditor"));
  OpenPicture(Picture(60, 40));
  Editor().tPercSize->setText("50");
  Editor().bResize->click();
  Exit({MessageAnswer::No});
  EXPECT_TRUE(run_.ended);
}

// What the editor saved is added to a page by the tool panel like any other picture.
TEST_F(PictureEditor, ItsJpegGoesIntoAPage) {
  ASSERT_TRUE(run_.Choose("mPicEditor"));
  OpenPicture(Picture(60, 40));
  Editor().tPercSize->setText("50");
  Editor().bResize->click();
  run_.Dialogs().Texts = {run_.test.Path("small.jpg")};
  Editor().bSaveJPG->click();
  Editor().bClosePicEdit->click();
  run_.Dialogs().Texts = {run_.test.Path("small.jpg")};
  Tools().AddPicture(&Web());
  Tools().bOKPic[0]->click();
  run_.Settle();
  EXPECT_EQ(FileBytes(run_.test.Path("small.jpg")), FileBytes(run_.test.WorkFile("small.jpg")));
  const QString page = View().Source();
  EXPECT_TRUE(page.contains("src=\"small.jpg\"", Qt::CaseInsensitive)) << qPrintable(page);
  EXPECT_TRUE(page.contains("width=\"30\"", Qt::CaseInsensitive)) << qPrintable(page);
}

}  // namespace
