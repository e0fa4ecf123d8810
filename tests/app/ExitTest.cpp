// The exit out of every loop that a window can be in: the windows stay until all of them have ended, and what was under
// way comes to its end without a word. Boxes and menus are the real ones here, and so is the application's loop.
#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include "EmailPanel.h"
#include "FPic.h"
#include "FSets.h"
#include "FTools.h"
#include "HostDialogs.h"
#include "OpenProjectPanel.h"
#include "PackPanel.h"
#include "PackedFiles.h"
#include "RunningProgram.h"
#include "StringTable.h"
#include "Swatch.h"
#include "fBitmap.h"
#include "fIconMaker.h"

namespace {

template <typename Window>
Window* WindowOf() {
  for (QWidget* const window : QApplication::topLevelWidgets())
    if (auto* const found = qobject_cast<Window*>(window)) return found;
  return nullptr;
}

class Exit : public ::testing::Test {
 protected:
  Exit() {
    EXPECT_TRUE(run_.Start());
    QObject::connect(&run_.modMain, &ModMain::Ended, &run_.modMain, [] { QCoreApplication::exit(); });
    QObject::connect(&run_.modMain, &ModMain::WindowReleased, &run_.modMain, [this] { ++released_; });
  }

  // Runs the application until it ends. `begin` is what the user does first; the exit is asked for as soon as a box or
  // menu is up, or by `begin` itself.
  void RunUntilTheEnd(const std::function<void()>& begin, bool isBoxExpected = true) {
    bool hasReturned = false;
    QTimer::singleShot(0, qApp, [&] {
      begin();
      hasReturned = true;
      // A command that has no loop of its own has nothing to be caught in.
      EXPECT_TRUE(asked_ || !isBoxExpected) << "no box or menu came up";
      if (!asked_) PostExit();
    });
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [this] { Look(); });
    watch.start(0);
    QTimer bound;
    bound.setSingleShot(true);
    QObject::connect(&bound, &QTimer::timeout, [] {
      ADD_FAILURE() << "the program hasn't ended";
      QCoreApplication::exit(1);
    });
    bound.start(20000);
    EXPECT_EQ(0, QApplication::exec());
    EXPECT_TRUE(hasReturned);
    EXPECT_TRUE(run_.ended);
    EXPECT_EQ(0, released_) << "a window went while a loop ran";
    for (QWidget* const window : QApplication::topLevelWidgets())
      EXPECT_FALSE(window->isVisible() && !window->testAttribute(Qt::WA_DontShowOnScreen) &&
                   !qobject_cast<QMenu*>(window))
          << qPrintable(window->objectName());
    run_.Release();
    EXPECT_EQ(9, released_);
  }

  // In the next pass of messages, as the click on a close box comes.
  void PostExit() {
    asked_ = true;
    QMetaObject::invokeMethod(qApp, [this] { run_.modMain.ExitProgram(); }, Qt::QueuedConnection);
  }

  FOps& Ops() { return *run_.modMain.Ops(); }
  PackPanel& Pack() { return *Ops().FrOps0; }
  FTools& Tools() { return *run_.modMain.Tools(); }

  // A picture in the editor, which is on show.
  FPic* OpenEditor() {
    QImage picture(60, 40, QImage::Format_RGB32);
    picture.fill(Qt::red);
    EXPECT_TRUE(picture.save(run_.test.Path("a.bmp")));
    EXPECT_TRUE(run_.Choose("mPicEditor"));
    auto* const editor = WindowOf<FPic>();
    auto* const viewer = WindowOf<fBitmap>();
    EXPECT_TRUE(viewer->Pic->LoadPicture(run_.test.Path("a.bmp")));
    viewer->show();
    return editor;
  }

  void ReadyPack() {
    ASSERT_TRUE(run_.Choose("mMakePack"));
    Pack().tMakePath->setText(run_.test.Path("desktop"));
    Pack().tMakeFileName->setText("pack");
    for (int i = 0; i < 3; ++i) ASSERT_TRUE(PutFile(run_.test.WorkFile(QString("f%1.txt").arg(i)), "x"));
  }

  HostDialogs dialogs_;
  RunningProgram run_{nullptr, &dialogs_};

 private:
  // Looks at what is up: the exit's own question is answered, and anything else is the loop out of which the program is
  // to end.
  void Look() {
    QWidget* const up = QApplication::activeModalWidget();
    if (auto* const box = qobject_cast<QMessageBox*>(up); box && box->text() == StringText(187)) {
      box->button(QMessageBox::No)->click();
      return;
    }
    // Posted: a timer doesn't come again while it is at work.
    if (!asked_ && (up || QApplication::activePopupWidget())) PostExit();
  }

  bool asked_ = false;
  int released_ = 0;
};

TEST_F(Exit, OutOfNothing) {
  RunUntilTheEnd([] {}, false);
}

TEST_F(Exit, OutOfAMessageBox) {
  RunUntilTheEnd([this] { run_.Choose("mOpenProject"); });
  EXPECT_FALSE(QDir(run_.PathInApp("card")).exists());
}

TEST_F(Exit, OutOfAQuestionThatCountsAsCancelled) {
  RunUntilTheEnd([this] { run_.Choose("mNewProject"); });
  // A question answered with OK would have made the workspace again.
  EXPECT_FALSE(QDir(run_.PathInApp("card")).exists());
}

TEST_F(Exit, OutOfALineOfText) {
  RunUntilTheEnd([this] { run_.Choose("mSaveProject"); });
  EXPECT_EQ(QStringList(), QDir(run_.PathInApp("saved")).entryList(QDir::Dirs | QDir::NoDotAndDotDot));
}

TEST_F(Exit, OutOfAnOpenDialog) {
  RunUntilTheEnd([this] { run_.Choose("mOpenFile"); });
}

TEST_F(Exit, OutOfASaveDialog) {
  RunUntilTheEnd([this] { run_.Choose("mSavePageFil"); });
}

TEST_F(Exit, OutOfTheSaveDialogOfTheWholeProject) {
  RunUntilTheEnd([this] { run_.Choose("mSaveOneFile"); });
}

TEST_F(Exit, OutOfAFolderDialog) {
  RunUntilTheEnd([this] {
    run_.Choose("mMakePack");
    Pack().bCreate[1]->click();
  });
}

TEST_F(Exit, OutOfTheSettingsWindowsDialogs) {
  RunUntilTheEnd([this] {
    run_.Choose("mSettings");
    run_.modMain.Sets()->bSets[0]->click();
  });
}

TEST_F(Exit, OutOfTheColourDialog) {
  RunUntilTheEnd([this] { run_.Web().BoxColor[0]->click(); });
}

TEST_F(Exit, OutOfTheToolWindowsColourDialog) {
  RunUntilTheEnd([this] {
    run_.Choose("mPageProps");
    Tools().ShowTool(ToolTask::PageProperties, QString());
    Tools().BoxColor[0]->click();
  });
}

TEST_F(Exit, OutOfThePictureChoiceOfTheToolWindow) {
  RunUntilTheEnd([this] { Tools().AddPicture(&run_.Web()); });
}

TEST_F(Exit, OutOfTheOpenProjectPanelsQuestion) {
  ASSERT_TRUE(PutFile(run_.PathInApp("saved/ann/wgcard.html"), "<html><body>a</body></html>"));
  RunUntilTheEnd([this] {
    run_.Choose("mOpenProject");
    Ops().FrOps1->bOpenProj[2]->click();  // nothing selected
  });
  EXPECT_TRUE(QFile::exists(run_.PathInApp("saved/ann/wgcard.html")));
}

TEST_F(Exit, OutOfTheIconEditorsDialog) {
  RunUntilTheEnd([this] {
    run_.Choose("mOpenIcoEd");
    WindowOf<fIconMaker>()->findChild<QAction*>("mSaveIco")->trigger();
  });
}

TEST_F(Exit, OutOfTheEmailPanelsBox) {
  RunUntilTheEnd([this] {
    run_.Choose("mEmail");
    Ops().FrOps2->bEmail[0]->click();  // nothing filled in
  });
}

TEST_F(Exit, WhileAMessageIsOnItsWay) {
  EmailPanel& panel = *Ops().FrOps2;
  RunUntilTheEnd(
      [&] {
        run_.Choose("mEmail");
        panel.ComboMail[0]->setEditText("bob@example.net");
        panel.ComboMail[1]->setEditText("ann@example.org");
        panel.TMail[2]->setText("mail.example.org");
        panel.bEmail[0]->click();
        EXPECT_TRUE(run_.test.platform.sockets.IsOpen());
      },
      false);
  EXPECT_FALSE(run_.test.platform.sockets.IsOpen());
}

TEST_F(Exit, OutOfTheSmallPasteMenu) {
  RunUntilTheEnd([this] { run_.Web().ShowPaste2Menu(); });
}

TEST_F(Exit, WithTheRightButtonsMenuOpen) {
  RunUntilTheEnd(
      [this] {
        run_.Web().mPop->popup({10, 10});
        EXPECT_TRUE(QApplication::activePopupWidget());
      },
      false);
}

TEST_F(Exit, OutOfABuild) {
  RunUntilTheEnd([this] {
    ReadyPack();
    PostExit();
    Pack().bCreate[0]->click();
    EXPECT_FALSE(Ops().Busy);
  });
  // The workspace went under the build.
  EXPECT_FALSE(QDir(run_.PathInApp("card")).exists());
  EXPECT_FALSE(QFile::exists(run_.test.Path("desktop/pack.exe")));
}

TEST_F(Exit, OutOfABuildOfASavedProjectWhichComesToItsEnd) {
  ASSERT_TRUE(PutFile(run_.PathInApp("saved/ann/wgcard.html"), "<html><body>a</body></html>"));
  run_.program().project.SavedAs(Project::UnsavedName(), run_.PathInApp("saved/ann"));
  RunUntilTheEnd([this] {
    ReadyPack();
    PostExit();
    Pack().bCreate[0]->click();
  });
  EXPECT_EQ(4, FilesInPack(run_.test.Path("desktop/pack.exe")).size());
  EXPECT_FALSE(QFile::exists(run_.PathInApp("saved/ann/card.zip")));
}

TEST_F(Exit, OutOfTheQuestionBehindABuild) {
  RunUntilTheEnd([this] {
    ReadyPack();
    Pack().bCreate[0]->click();
  });
  EXPECT_EQ(4, FilesInPack(run_.test.Path("desktop/pack.exe")).size());
}

TEST_F(Exit, OutOfTheCompressionOfAPicture) {
  RunUntilTheEnd([this] {
    FPic* const editor = OpenEditor();
    editor->tPercComp->setText("50");
    PostExit();
    editor->bCompress->click();
    EXPECT_FALSE(editor->Busy);
  });
}

TEST_F(Exit, OutOfTheCropAndTheResizeOfAPicture) {
  RunUntilTheEnd([this] {
    FPic* const editor = OpenEditor();
    editor->tPercSize->setText("50");
    PostExit();
    editor->bResize->click();
    EXPECT_FALSE(editor->Busy);
  });
}

TEST_F(Exit, OutOfThePictureEditorsDialog) {
  RunUntilTheEnd([this] {
    FPic* const editor = OpenEditor();
    editor->bSaveJPG->click();
    EXPECT_FALSE(editor->Busy);
  });
}

}  // namespace
