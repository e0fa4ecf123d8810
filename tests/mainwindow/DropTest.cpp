// Pictures dropped on the page, things thrown away, and the mark of a page that couldn't be written.
#include <QDropEvent>
#include <QImage>
#include <QMimeData>
#include <QUrl>

#include "SourceText.h"
#include "ToolsFixture.h"

namespace {

class Drop : public ToolsTest {
 protected:
  // Whether the page takes it.
  bool DropFiles(const QStringList& paths) {
    QMimeData data;
    QList<QUrl> urls;
    for (const QString& path : paths) urls.append(QUrl::fromLocalFile(path));
    data.setUrls(urls);
    QDragEnterEvent enter(QPoint(50, 50), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::ShiftModifier);
    enter.ignore();
    QCoreApplication::sendEvent(&View(), &enter);
    if (!enter.isAccepted()) return false;
    QDropEvent drop(QPointF(50, 50), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::ShiftModifier);
    QCoreApplication::sendEvent(&View(), &drop);
    run_.Settle();
    return drop.dropAction() == Qt::CopyAction;
  }
  QString Photo(const QString& name, int width, int height) {
    const QString path = Picture(name);
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::red);
    EXPECT_TRUE(image.save(path, "JPG"));
    return path;
  }
  QString Shown() { return View().Source().section("<body", 1); }
};

TEST_F(Drop, APictureOpensThePanelAsIfItHadBeenChosen) {
  const QString path = Photo("a.jpg", 30, 20);
  ASSERT_TRUE(DropFiles({path}));
  EXPECT_TRUE(Tools().isVisible());
  EXPECT_EQ(path, Tools().TPicPath->text());
  EXPECT_EQ("30", Tools().TSpec[0]->text());
  EXPECT_FALSE(Shown().contains("a.jpg"));
  Tools().bOKPic[0]->click();
  EXPECT_TRUE(Shown().contains("<img src=\"a.jpg\" width=\"30\" height=\"20\""));
}

TEST_F(Drop, SeveralAreTakenOneByOne) {
  const QStringList paths = {Photo("a.jpg", 3, 2), Picture("p.png"), Photo("b.jpg", 5, 4)};
  ASSERT_TRUE(DropFiles(paths));
  EXPECT_EQ(paths[0], Tools().TPicPath->text());
  Tools().bOKPic[1]->click();
  EXPECT_EQ(paths[2], Tools().TPicPath->text());
  EXPECT_TRUE(Tools().isVisible());
  EXPECT_TRUE(Shown().contains("p.png")) << "which goes straight into the page";
  Tools().bOKPic[0]->click();
  EXPECT_FALSE(Tools().isVisible());
  EXPECT_FALSE(Shown().contains("a.jpg"));
  EXPECT_TRUE(Shown().contains("b.jpg"));
}

TEST_F(Drop, TheNextOnesWaitBehindThoseThatWait) {
  const QStringList paths = {Photo("a.jpg", 3, 2), Photo("b.jpg", 5, 4), Photo("c.jpg", 7, 6)};
  ASSERT_TRUE(DropFiles(paths.first(2)));
  ASSERT_TRUE(DropFiles(paths.last(1)));
  for (const QString& path : paths) {
    ASSERT_TRUE(Tools().isVisible());
    EXPECT_EQ(path, Tools().TPicPath->text());
    Tools().bOKPic[0]->click();
  }
  EXPECT_FALSE(Tools().isVisible());
  for (const char* name : {"a.jpg", "b.jpg", "c.jpg"}) EXPECT_TRUE(Shown().contains(name)) << name;
}

TEST_F(Drop, ThoseOfAPanelThatWasPutAwayAreForgotten) {
  ASSERT_TRUE(DropFiles({Photo("a.jpg", 3, 2), Photo("b.jpg", 5, 4)}));
  Tools().OpenPageProps();
  const QString path = Photo("c.jpg", 7, 6);
  ASSERT_TRUE(DropFiles({path}));
  EXPECT_EQ(path, Tools().TPicPath->text());
  Tools().bOKPic[1]->click();
  EXPECT_FALSE(Tools().isVisible());
}

TEST_F(Drop, WhatIsNoPictureIsRefused) {
  ASSERT_TRUE(PutFile(run_.test.Path("x.html"), "x"));
  EXPECT_FALSE(DropFiles({run_.test.Path("x.html")}));
  EXPECT_FALSE(DropFiles({}));
}

TEST_F(Drop, OneThatIsChosenAfterwardsComesAlone) {
  ASSERT_TRUE(DropFiles({Photo("a.jpg", 3, 2), Photo("b.jpg", 5, 4)}));
  Dialogs().Texts = {QString()};
  Tools().AddPicture(&Web());
  Tools().bOKPic[1]->click();
  EXPECT_FALSE(Tools().isVisible());
}

using Discards = ToolsTest;

TEST_F(Discards, ADeletedPageGoesToTheTrashWhereThereIsOne) {
  run_.test.platform.shell.HasTrash = true;
  const QString page = run_.program().project.CurPageFile();
  ASSERT_TRUE(run_.Choose("mDelPage"));
  EXPECT_EQ(QStringList{page}, run_.test.platform.shell.Trashed);
}

TEST_F(Discards, WithoutATrashItIsDeleted) {
  ASSERT_TRUE(run_.Choose("mNewPage"));
  const QString page = run_.program().project.CurPageFile();
  ASSERT_TRUE(QFileInfo::exists(page));
  ASSERT_TRUE(run_.Choose("mDelPage"));
  EXPECT_FALSE(QFileInfo::exists(page));
}

TEST_F(Discards, AMarkStandsInTheCaptionWhileThePageIsNotWritten) {
  const QString good = Web().windowTitle();
  const QString page = run_.program().project.CurPageFile();
  ASSERT_TRUE(QFile::remove(page));
  ASSERT_TRUE(QDir().mkdir(page));  // in its way
  ASSERT_TRUE(run_.Choose("mSavePage"));
  EXPECT_EQ(good + " (page not written)", Web().windowTitle());
  ASSERT_TRUE(QDir().rmdir(page));
  ASSERT_TRUE(run_.Choose("mSavePage"));
  EXPECT_EQ(good, Web().windowTitle());
}

TEST_F(Discards, ASaveThatHasNothingToWriteChangesNoMark) {
  Web().TellPageWritten(false);
  const QString marked = Web().windowTitle();
  Web().SavePage(0, false);
  EXPECT_EQ(marked, Web().windowTitle());
}

TEST_F(Discards, TheMarkStaysWithTheProjectWhosePageCouldNotBeWritten) {
  const QString good = Web().windowTitle();
  Web().TellPageWritten(false);
  run_.Dialogs().Answers = {MessageAnswer::Ok};
  ASSERT_TRUE(run_.Choose("mNewProject"));
  EXPECT_EQ(good, Web().windowTitle());
  Web().TellPageWritten(false);
  const QString path = run_.PathInApp("saved/ann");
  ASSERT_TRUE(PutFile(path + "/wgcard.html", "<html><body>hers</body></html>"));
  Web().OpenProject("ann", path);
  EXPECT_EQ("Corvane - ann", Web().windowTitle());
}

TEST_F(Discards, ChangingTheSourceIsAWriteOfThePageToo) {
  Tools().ShowSource();
  const QString page = run_.program().project.CurPageFile();
  ASSERT_TRUE(QFile::remove(page));
  ASSERT_TRUE(run_.Choose("mSavePage"));
  const QString good = Web().windowTitle();
  Web().TellPageWritten(false);
  EXPECT_NE(good, Web().windowTitle());
  Tools().T1->insertPlainText("x");
  Tools().bCloseText[1]->click();
  run_.Settle();
  EXPECT_EQ(good, Web().windowTitle());
}

}  // namespace
