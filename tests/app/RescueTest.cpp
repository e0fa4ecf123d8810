// What a run that ended badly left behind, and the file that keeps the page in view.
#include <QComboBox>
#include <QElapsedTimer>

#include "ProgramFixture.h"
#include "RescueFile.h"

namespace {

class LeftOvers : public ::testing::Test {
 protected:
  LeftOvers() {
    test_.program.project.EnterWorkspace();
    EXPECT_TRUE(PutFile(InApp("blank.html"), "blank"));
  }
  QString InApp(const QString& name) const { return test_.program.AppPath + u'/' + name; }
  QStringList Names(const QString& folder) const {
    return QDir(InApp(folder)).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
  }
  // The one folder of rescued things.
  QString Rescued() const {
    const QStringList folders = Names("rescued");
    EXPECT_EQ(1, folders.size());
    return folders.isEmpty() ? QString() : "rescued/" + folders.first();
  }
  void Keep() { KeepLeftOvers(test_.program); }

  TestProgram test_;
};

TEST_F(LeftOvers, NothingIsKeptOfARunThatEndedWell) {
  Keep();
  EXPECT_FALSE(QFileInfo::exists(InApp("rescued")));
}

TEST_F(LeftOvers, OneBlankPageIsNotKept) {
  ASSERT_TRUE(PutFile(InApp("card/wgcard.html"), "blank"));
  Keep();
  EXPECT_FALSE(QFileInfo::exists(InApp("rescued")));
  EXPECT_EQ("blank", FileBytes(InApp("card/wgcard.html")));
}

TEST_F(LeftOvers, AWorkspaceWithWorkInItIsKeptAsItIs) {
  ASSERT_TRUE(PutFile(InApp("card/wgcard.html"), "mine"));
  ASSERT_TRUE(PutFile(InApp("card/p.gif"), "picture"));
  Keep();
  EXPECT_EQ((QStringList{"p.gif", "wgcard.html"}), Names(Rescued()));
  EXPECT_EQ("mine", FileBytes(InApp(Rescued() + "/wgcard.html")));
  EXPECT_FALSE(QFileInfo::exists(InApp("card")));
}

TEST_F(LeftOvers, ASecondPageAloneIsReasonEnough) {
  ASSERT_TRUE(PutFile(InApp("card/wgcard.html"), "blank"));
  ASSERT_TRUE(PutFile(InApp("card/Page2.html"), "blank"));
  Keep();
  EXPECT_EQ(2, Names(Rescued()).size());
}

TEST_F(LeftOvers, ARescueFileComesAlongAndItsHalvesDoNot) {
  ASSERT_TRUE(PutFile(InApp("rescue/Site - Page2 (not saved).html"), "seen"));
  ASSERT_TRUE(PutFile(InApp("rescue/scratch.XyZ"), "half"));
  Keep();
  EXPECT_EQ(QStringList{"Site - Page2 (not saved).html"}, Names(Rescued()));
  EXPECT_FALSE(QFileInfo::exists(InApp("rescue")));
}

TEST_F(LeftOvers, TheFolderBearsTheMomentAndIsNeverOneThatIsThere) {
  const QString moment = test_.platform.stamps.Moment.toLocalTime().toString("yyyy-MM-dd HH.mm.ss");
  for (int run = 0; run < 3; ++run) {
    ASSERT_TRUE(PutFile(InApp("card/wgcard.html"), "mine"));
    Keep();
  }
  EXPECT_EQ((QStringList{moment, moment + " (2)", moment + " (3)"}), Names("rescued"));
}

TEST_F(LeftOvers, TheLastTenAreKept) {
  for (int run = 0; run < 12; ++run) {
    test_.platform.stamps.Moment = test_.platform.stamps.Moment.addDays(1);
    ASSERT_TRUE(PutFile(InApp("card/wgcard.html"), QByteArray::number(run)));
    Keep();
  }
  const QStringList folders = Names("rescued");
  ASSERT_EQ(10, folders.size());
  EXPECT_EQ("2", FileBytes(InApp("rescued/" + folders.first() + "/wgcard.html")));
  EXPECT_EQ("11", FileBytes(InApp("rescued/" + folders.last() + "/wgcard.html")));
}

TEST_F(LeftOvers, TheNewestIsKeptWhereTheClockHasGoneBack) {
  for (int run = 0; run < 11; ++run) {
    test_.platform.stamps.Moment = test_.platform.stamps.Moment.addDays(run < 10 ? 1 : -1000);
    ASSERT_TRUE(PutFile(InApp("card/wgcard.html"), QByteArray::number(run)));
    Keep();
  }
  const QStringList folders = Names("rescued");
  ASSERT_EQ(10, folders.size());
  EXPECT_EQ("10", FileBytes(InApp("rescued/" + folders.first() + "/wgcard.html")));
  EXPECT_EQ("1", FileBytes(InApp("rescued/" + folders[1] + "/wgcard.html")));
}

TEST_F(LeftOvers, FoldersOfTheUsersOwnStay) {
  for (const char* const name : {"!important", "0000", "2020-01-01 garden"})
    ASSERT_TRUE(PutFile(InApp("rescued/") + name + "/a.html", "hers"));
  for (int run = 0; run < 11; ++run) {
    ASSERT_TRUE(PutFile(InApp("card/wgcard.html"), "mine"));
    Keep();
  }
  EXPECT_EQ(13, Names("rescued").size());
  EXPECT_TRUE(QFileInfo::exists(InApp("rescued/2020-01-01 garden/a.html")));
}

class RescueFileTest : public ProgramTest {
 protected:
  RescueFileTest() {
    EXPECT_TRUE(run_.Start());
    run_.modMain.KeepRescueFile(kPeriodMs);
  }
  static constexpr int kPeriodMs = 50;
  QString Path() const { return run_.PathInApp("rescue/Project1 - wgcard (not saved).html"); }
  void PutAFolderInThePagesWay() {
    const Project& project = run_.program().project;
    const QString page = project.PageFile(project.CurPageNo());
    ASSERT_TRUE(!QFileInfo::exists(page) || QFile::remove(page));
    ASSERT_TRUE(QDir().mkpath(page));
  }
  bool Comes(const std::function<bool()>& what) {
    QElapsedTimer clock;
    for (clock.start(); !what() && clock.elapsed() < 5000;) QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    return what();
  }
};

TEST_F(RescueFileTest, ThePageInViewIsWrittenSoonAfterAnEdit) {
  EXPECT_FALSE(QFileInfo::exists(Path()));
  run_.Type("abc");
  ASSERT_TRUE(Comes([&] { return FileBytes(Path()) == View().SourceForFile(); }));
  run_.Type("d");
  ASSERT_TRUE(Comes([&] { return FileBytes(Path()) == View().SourceForFile(); }));
  EXPECT_EQ(QStringList{"wgcard.html"}, Names("card")) << "nothing beside the project's own files";
}

// Whoever types without a pause changes a large page faster than it can be read beside that.
TEST_F(RescueFileTest, ALargePageIsWrittenAlsoWhileItIsChangedWithoutAPause) {
  View().WBDocument()->body().insertAdjacentHTML("beforeEnd",
                                                 QString("<p>a line, <b>and another</b></p>").repeated(20000));
  run_.Type("x");
  QElapsedTimer clock;
  int change = 0;
  for (clock.start(); !QFileInfo::exists(Path()) && clock.elapsed() < 10000; QCoreApplication::processEvents())
    View().WBDocument()->body().setAttribute("change", QString::number(++change));
  EXPECT_TRUE(QFileInfo::exists(Path()));
}

// The user had asked to save, and the end came while the name was asked for.
TEST_F(RescueFileTest, AnEndFromOutsideWhileTheExitAsksKeepsTheWorkspace) {
  run_.Type("abc");
  const QByteArray page = View().SourceForFile();
  int ends = 0;
  QObject::connect(&run_.modMain, &ModMain::Ended, [&ends] { ++ends; });
  run_.Dialogs().WhileShown = [this] {
    if (!run_.Dialogs().Questions.isEmpty()) run_.modMain.EndUnasked();
  };
  Exit({MessageAnswer::Yes}, {QString()});
  EXPECT_EQ(1, ends);
  EXPECT_TRUE(CardExists());
  EXPECT_EQ(page, FileIn("rescue/Project1 - wgcard (not saved).html"));
}

TEST_F(RescueFileTest, AnEndFromOutsideWritesTheLastLetters) {
  run_.Type("a");
  ASSERT_TRUE(Comes([&] { return QFileInfo::exists(Path()); }));
  for (int letter = 0; letter < 200; ++letter) run_.Type("b");
  const QByteArray page = View().SourceForFile();
  run_.modMain.EndUnasked();
  ASSERT_TRUE(run_.ended);
  run_.Release();
  EXPECT_EQ(page, FileIn("rescue/Project1 - wgcard (not saved).html"));
}

TEST_F(RescueFileTest, NothingIsWrittenWithoutAnEdit) {
  QElapsedTimer clock;
  for (clock.start(); clock.elapsed() < 4 * kPeriodMs;) QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
  EXPECT_FALSE(QFileInfo::exists(run_.PathInApp("rescue")));
}

TEST_F(RescueFileTest, AnotherPageTakesItsPlace) {
  run_.Type("abc");
  ASSERT_TRUE(Comes([&] { return QFileInfo::exists(Path()); }));
  ASSERT_TRUE(run_.Choose("mNewPage"));
  EXPECT_TRUE(Comes([&] { return !QFileInfo::exists(Path()); }));
  run_.Type("x");
  EXPECT_TRUE(Comes([&] { return QFileInfo::exists(run_.PathInApp("rescue/Project1 - Page2 (not saved).html")); }));
}

TEST_F(RescueFileTest, ItTakesTheProjectsNewName) {
  run_.Type("abc");
  ASSERT_TRUE(Comes([&] { return QFileInfo::exists(Path()); }));
  SaveProjectAs("ann");
  run_.Type("d");
  ASSERT_TRUE(Comes([&] { return FileIn("rescue/ann - wgcard (not saved).html") == View().SourceForFile(); }));
  EXPECT_EQ(QStringList{"ann - wgcard (not saved).html"}, Names("rescue"));
  Exit({MessageAnswer::No});
  EXPECT_TRUE(Names("rescue").isEmpty());
}

// The last letters as well, which would have been written soon.
TEST_F(RescueFileTest, APageThatCouldNotBeWrittenStaysInIt) {
  run_.Type("abc");
  const QByteArray page = View().SourceForFile();
  PutAFolderInThePagesWay();
  ASSERT_TRUE(run_.Choose("mRefresh"));
  ASSERT_NE(page, View().SourceForFile());
  ASSERT_TRUE(Comes([&] { return FileBytes(Path()) == page; }));
  Exit({MessageAnswer::No});
  EXPECT_EQ(page, FileBytes(Path()));
}

TEST_F(RescueFileTest, OneThatWasLeftIsNotWrittenOverByTheNextPageOfItsName) {
  ASSERT_TRUE(run_.Choose("mNewPage"));
  run_.Type("abc");
  const QByteArray page = View().SourceForFile();
  PutAFolderInThePagesWay();
  Web().BoxPage->setCurrentIndex(0);
  run_.Settle();
  ASSERT_TRUE(QDir().rmdir(run_.program().project.PageFile(2)));
  Web().BoxPage->setCurrentIndex(1);
  run_.Settle();
  run_.Type("x");
  const QByteArray next = View().SourceForFile();
  ASSERT_TRUE(Comes([&] { return FileIn("rescue/Project1 - Page2 (not saved) (2).html") == next; }));
  Exit({MessageAnswer::No});
  EXPECT_EQ(QStringList{"Project1 - Page2 (not saved).html"}, Names("rescue"));
  EXPECT_EQ(page, FileIn("rescue/Project1 - Page2 (not saved).html"));
}

TEST_F(RescueFileTest, OneThatWasLeftIsNotWrittenOverUnderANewNameEither) {
  run_.Type("abc");
  SaveProjectAs("ann");
  PutAFolderInThePagesWay();
  ASSERT_TRUE(run_.Choose("mRefresh"));
  const QString left = run_.PathInApp("rescue/ann - wgcard (not saved).html");
  ASSERT_TRUE(Comes([&] { return QFileInfo::exists(left); }));
  const QByteArray page = FileBytes(left);
  run_.Dialogs().Answers = {MessageAnswer::Ok};
  ASSERT_TRUE(run_.Choose("mNewProject"));
  run_.Type("x");
  ASSERT_TRUE(Comes([&] { return QFileInfo::exists(Path()); }));
  ASSERT_TRUE(QDir(run_.PathInApp("saved/ann")).removeRecursively());
  SaveProjectAs("ANN");
  run_.Type("y");
  ASSERT_TRUE(Comes([&] { return FileIn("rescue/ANN - wgcard (not saved) (2).html") == View().SourceForFile(); }));
  EXPECT_EQ(page, FileBytes(left));
}

// What an earlier run has left, and the start couldn't put aside.
TEST_F(RescueFileTest, OneThatLiesThereFromTheBeginningIsNotWrittenOver) {
  ASSERT_TRUE(PutFile(Path(), "earlier"));
  run_.modMain.KeepRescueFile(kPeriodMs);
  run_.Type("abc");
  EXPECT_TRUE(
      Comes([&] { return QFileInfo::exists(run_.PathInApp("rescue/Project1 - wgcard (not saved) (2).html")); }));
  EXPECT_EQ("earlier", FileBytes(Path()));
}

TEST_F(RescueFileTest, OpeningAProjectLeavesThePageThatCouldNotBeWritten) {
  PutAFolderInThePagesWay();
  run_.Type("abc");
  ASSERT_TRUE(run_.Choose("mSavePage"));
  run_.Type("d");
  const QByteArray page = View().SourceForFile();
  const QString ann = run_.PathInApp("saved/ann");
  ASSERT_TRUE(PutFile(ann + "/wgcard.html", "<html><body>hers</body></html>"));
  Web().OpenProject("ann", ann);
  ASSERT_TRUE(Comes([&] { return View().Source().contains("hers"); }));
  EXPECT_TRUE(Comes([&] { return FileBytes(Path()) == page; }));
  Exit({MessageAnswer::No});
  EXPECT_EQ(page, FileBytes(Path()));
}

TEST_F(RescueFileTest, APageWithoutAnEditIsTakenWhenItsOwnFileWentInTheAttempt) {
  const QByteArray page = View().SourceForFile();
  PutAFolderInThePagesWay();
  ASSERT_TRUE(run_.Choose("mNewPage"));
  EXPECT_TRUE(Comes([&] { return FileBytes(Path()) == page; }));
}

// Its file in the unsaved project's folder, which is the page's own until another is loaded, stays behind the first
// save.
TEST_F(RescueFileTest, SoItIsBehindAFirstSave) {
  run_.Type("abc");
  ASSERT_TRUE(run_.Choose("mRefresh"));
  SaveProjectAs("ann");
  const QByteArray page = View().SourceForFile();
  PutAFolderInThePagesWay();
  ASSERT_TRUE(run_.Choose("mSavePage"));
  EXPECT_TRUE(Comes([&] { return FileIn("rescue/ann - wgcard (not saved).html") == page; }));
}

TEST_F(RescueFileTest, ANewProjectLeavesThePageOfASavedOneThatCouldNotBeWritten) {
  SaveProjectAs("ann");
  run_.Type("abc");
  const QByteArray page = View().SourceForFile();
  PutAFolderInThePagesWay();
  ASSERT_TRUE(run_.Choose("mSavePage"));
  run_.Dialogs().Answers = {MessageAnswer::Ok};
  ASSERT_TRUE(run_.Choose("mNewProject"));
  run_.Settle();
  Exit({MessageAnswer::No});
  EXPECT_EQ(page, FileIn("rescue/ann - wgcard (not saved).html"));
}

TEST_F(RescueFileTest, ANewProjectDiscardsThePageOfTheUnsavedOneThatCouldNotBeWritten) {
  run_.Type("abc");
  PutAFolderInThePagesWay();
  ASSERT_TRUE(run_.Choose("mSavePage"));
  ASSERT_TRUE(Comes([&] { return QFileInfo::exists(Path()); }));
  run_.Dialogs().Answers = {MessageAnswer::Ok};
  ASSERT_TRUE(run_.Choose("mNewProject"));
  EXPECT_TRUE(Comes([&] { return !QFileInfo::exists(Path()); }));
}

TEST_F(RescueFileTest, APageWithoutAnEditWhoseFileIsStillThereIsNotTaken) {
  ASSERT_TRUE(run_.Choose("mSavePage"));
  Web().TellPageWritten(false);
  run_.Release();
  EXPECT_FALSE(QFileInfo::exists(run_.PathInApp("rescue")));
}

TEST_F(RescueFileTest, AnExitWhoseSaveFailedLeavesIt) {
  SaveProjectAs("ann");
  run_.Type("abc");
  const QByteArray page = View().SourceForFile();
  PutAFolderInThePagesWay();
  Exit({MessageAnswer::Yes});
  ASSERT_TRUE(run_.ended);
  EXPECT_EQ(page, FileIn("rescue/ann - wgcard (not saved).html"));
}

TEST_F(RescueFileTest, AnEndAsItShouldBeLeavesNone) {
  run_.Type("abc");
  ASSERT_TRUE(Comes([&] { return QFileInfo::exists(Path()); }));
  Exit({MessageAnswer::No});
  EXPECT_TRUE(run_.ended);
  EXPECT_FALSE(QFileInfo::exists(Path()));
}

TEST_F(RescueFileTest, AnExitThatWasCalledOffKeepsIt) {
  run_.Type("abc");
  ASSERT_TRUE(Comes([&] { return QFileInfo::exists(Path()); }));
  Exit({MessageAnswer::Cancel});
  EXPECT_FALSE(run_.ended);
  EXPECT_TRUE(QFileInfo::exists(Path()));
}

TEST_F(RescueFileTest, AnEndFromOutsideWritesWhatIsInViewAndKeepsTheWorkspace) {
  ASSERT_TRUE(run_.Choose("mNewPage"));
  run_.Type("abc");
  const QByteArray page = View().SourceForFile();
  run_.modMain.EndUnasked();
  ASSERT_TRUE(run_.ended);
  run_.Release();
  EXPECT_EQ(page, FileIn("rescue/Project1 - Page2 (not saved).html"));
  EXPECT_TRUE(CardExists());
}

}  // namespace
