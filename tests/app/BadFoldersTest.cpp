// Folders that vanish, and disks that are full or can't be written. Nothing is said, nothing ends, and once the trouble
// is over all goes on.
#include <QLineEdit>

#include "FoldersFixture.h"
#include "OnSmallDisk.h"
#include "PackPanel.h"
#include "RescueFile.h"

namespace {

class VanishedFolder : public FoldersTest {
 protected:
  void Vanish() { ASSERT_TRUE(QDir(run_.program().project.WorkPath()).removeRecursively()); }
  void ExpectSilence() {
    EXPECT_TRUE(run_.Dialogs().Boxes.isEmpty()) << qPrintable(run_.Dialogs().Messages().join(" | "));
    EXPECT_FALSE(Web().Busy);
  }
};

TEST_F(VanishedFolder, SavingIsLostInSilenceAndThePageStaysInView) {
  MakePages({"one"});
  Vanish();
  ASSERT_TRUE(run_.Choose("mSavePage"));
  ExpectSilence();
  EXPECT_FALSE(CardExists());
  EXPECT_EQ("one", LettersInView());
}

TEST_F(VanishedFolder, TheNextPageChangeMakesItAgain) {
  MakePages({"one"});
  Vanish();
  ASSERT_TRUE(run_.Choose("mNewPage"));
  ExpectSilence();
  EXPECT_EQ(QStringList{"wgcard.html"}, Names("card"));
  run_.Type("two");
  ASSERT_TRUE(run_.Choose("mSavePage"));
  EXPECT_EQ("two", LettersIn("card")["wgcard.html"]);
}

TEST_F(VanishedFolder, AThemeIsAppliedWithoutItsPicture) {
  ASSERT_TRUE(PutFile(run_.PathInApp("samples/paper.jpg"), "paper"));
  Vanish();
  ASSERT_TRUE(run_.Choose("mmthemeS5"));
  ExpectSilence();
  EXPECT_EQ("paper.jpg", View().BackPic());
  EXPECT_FALSE(CardExists());
}

TEST_F(VanishedFolder, AProjectSavedFromItIsMovedToAndNotMade) {
  MakePages({"one"});
  Vanish();
  SaveProjectAs("ann");
  ExpectSilence();
  EXPECT_EQ("ann", run_.program().project.ProjectName());
  EXPECT_EQ(QStringList(), Names("saved"));
}

TEST_F(VanishedFolder, TheExitGoesOn) {
  Vanish();
  Exit({MessageAnswer::No});
  EXPECT_TRUE(run_.ended);
}

TEST_F(VanishedFolder, TheExitGoesOnWithoutAnyFolderOfTheProgram) {
  MakePages({"one"});
  SaveProjectAs("ann");
  ASSERT_TRUE(QDir(run_.PathInApp("")).removeRecursively());
  ASSERT_TRUE(run_.Choose("mSavePage"));
  ExpectSilence();
  Exit({MessageAnswer::Yes});
  EXPECT_TRUE(run_.ended);
  EXPECT_EQ(1, run_.Dialogs().Boxes.size()) << "the question alone";
  EXPECT_FALSE(QDir(run_.PathInApp("")).exists());
}

class SmallDisk : public OnSmallDisk<FoldersTest> {
 protected:
  void ExpectSilence() {
    EXPECT_TRUE(run_.Dialogs().Boxes.isEmpty()) << qPrintable(run_.Dialogs().Messages().join(" | "));
    EXPECT_FALSE(Web().Busy);
  }
};

class FullDisk : public SmallDisk {};
class DiskThatCantBeWritten : public SmallDisk {};

TEST_F(FullDisk, ASavedPageMayBeLostThereButNeverInView) {
  MakePages({QString(9000, u'a')});
  ASSERT_TRUE(run_.Choose("mSavePage"));
  run_.Type(QString(4200, u'b'));
  Fill();
  ASSERT_TRUE(run_.Choose("mSavePage"));
  ExpectSilence();
  EXPECT_EQ(13200, LettersInView().size());
  EXPECT_NE(InView(), FileIn("card/wgcard.html"));
  Free();
  ASSERT_TRUE(run_.Choose("mSavePage"));
  EXPECT_EQ(InView(), FileIn("card/wgcard.html"));
}

TEST_F(FullDisk, ANewPageComesUpAndCanBeSavedOnceThereIsRoom) {
  MakePages({"one"});
  Fill();
  ASSERT_TRUE(run_.Choose("mNewPage"));
  ExpectSilence();
  Free();
  ASSERT_TRUE(run_.Choose("mRefresh"));
  run_.Type("two");
  ASSERT_TRUE(run_.Choose("mSavePage"));
  EXPECT_TRUE(LettersIn("card").values().contains("two")) << qPrintable(Names("card").join(' '));
}

TEST_F(FullDisk, AFirstSaveMovesToTheNewFolderAllTheSame) {
  MakePages({"one"});
  ASSERT_TRUE(PutFile(run_.PathInApp("card/p.gif"), QByteArray(20000, 'p')));
  Fill();
  SaveProjectAs("ann");
  ExpectSilence();
  EXPECT_EQ("ann", run_.program().project.ProjectName());
  EXPECT_EQ(QByteArray(20000, 'p'), FileIn("card/p.gif")) << "what was there stays";
  EXPECT_EQ("one", LettersInView());
  EXPECT_EQ("<missing>", FileIn("saved/ann/p.gif")) << "half of it would pass for the picture";
  Free();
  ASSERT_TRUE(run_.Choose("mSavePage"));
  EXPECT_EQ(InView(), FileIn("saved/ann/wgcard.html"));
}

TEST_F(FullDisk, ABuildIsToldAsFailedAndLosesNoPage) {
  MakePages({QString(9000, u'a'), QString(9000, u'b')});
  ASSERT_TRUE(run_.Choose("mSavePage"));
  const Tree before = TreeOf("card");
  ASSERT_TRUE(run_.Choose("mMakePack"));
  run_.modMain.Ops()->FrOps0->tMakePath->setText(run_.test.Path("desktop"));
  Fill();
  run_.modMain.Ops()->FrOps0->bCreate[0]->click();
  EXPECT_EQ(QStringList{StringText(129)}, run_.Dialogs().Messages());
  EXPECT_EQ(before, TreeOf("card"));
  EXPECT_TRUE(Names("").filter("scratch").isEmpty());
  Free();
  run_.Dialogs().Boxes.clear();
  run_.modMain.Ops()->FrOps0->bCreate[0]->click();
  EXPECT_TRUE(FileIn("card/wgcard.html").contains("Next Page"));
  EXPECT_TRUE(QFile::exists(run_.test.Path("desktop/Greeting.exe")));
}

// The archive fits, the pack doesn't any more.
TEST_F(FullDisk, ATargetThatFillsUpIsToldAndTheProjectIsWhole) {
  MakePages({"one"});
  ASSERT_TRUE(run_.Choose("mMakePack"));
  run_.modMain.Ops()->FrOps0->tMakePath->setText(run_.test.Path("desktop"));
  Fill();
  QFile filler(Filler());
  ASSERT_TRUE(filler.resize(filler.size() - (48 << 10)));
  run_.modMain.Ops()->FrOps0->bCreate[0]->click();
  EXPECT_EQ(QStringList{StringText(130)}, run_.Dialogs().Messages());
  EXPECT_EQ(QStringList({"card.zip", "wgcard.html"}), Names("card"));
  EXPECT_EQ("one", LettersIn("card")["wgcard.html"]);
}

TEST_F(FullDisk, SendingAPageOutSaysNothing) {
  MakePages({QString(9000, u'a')});
  AddPicture("p.gif", "p.gif");
  Fill();
  Answer({}, {run_.test.Path("mine.html")});
  ASSERT_TRUE(run_.Choose("mSavePageFil"));
  ExpectSilence();
  EXPECT_EQ("p.gif", FileIn("card/p.gif"));
}

TEST_F(FullDisk, TheExitGoesOn) {
  MakePages({"one"});
  Fill();
  Exit({MessageAnswer::Yes}, {"ann"});
  EXPECT_TRUE(run_.ended);
  EXPECT_FALSE(CardExists());
}

TEST_F(DiskThatCantBeWritten, NothingChangesAndAllGoesOnAfterwards) {
  MakePages({"one", "two"});
  ASSERT_TRUE(run_.Choose("mSavePage"));
  SaveProjectAs("ann");
  const Tree before = TreeOf();
  run_.Type("more");
  MakeWritable(false);
  for (const char* command : {"mSavePage", "mNewPage", "mSavePage", "mSavePageFil"}) {
    Answer({}, {run_.test.Path("mine.html")});
    ASSERT_TRUE(run_.Choose(command));
    ExpectSilence();
  }
  GoToPage(1);
  EXPECT_EQ("one", LettersInView());
  DeleteSaved("ann");
  EXPECT_EQ(1, run_.Dialogs().Boxes.size()) << "the question, and nothing about what came of it";
  Answer({MessageAnswer::Ok});
  ASSERT_TRUE(run_.Choose("mNewProject"));
  EXPECT_EQ(1, run_.Dialogs().Boxes.size());
  EXPECT_EQ(Tree(), Changes(before, TreeOf()));
  MakeWritable(true);
  Answer({MessageAnswer::Ok});
  ASSERT_TRUE(run_.Choose("mNewProject"));
  run_.Type("again");
  ASSERT_TRUE(run_.Choose("mSavePage"));
  EXPECT_EQ(InView(), FileIn("card/wgcard.html"));
}

TEST_F(DiskThatCantBeWritten, AFirstSaveMovesToAFolderThatIsNotMade) {
  MakePages({"one"});
  ASSERT_TRUE(run_.Choose("mSavePage"));
  const Tree before = TreeOf();
  MakeWritable(false);
  SaveProjectAs("ann");
  ExpectSilence();
  EXPECT_EQ("ann", run_.program().project.ProjectName());
  EXPECT_EQ("one", LettersInView());
  EXPECT_EQ(Tree(), Changes(before, TreeOf()));
  MakeWritable(true);
  EXPECT_EQ(Tree(), Changes(before, TreeOf()));
}

TEST_F(DiskThatCantBeWritten, TheExitGoesOnAndTheNextStartKeepsTheWork) {
  MakePages({"one"});
  ASSERT_TRUE(run_.Choose("mSavePage"));
  const QByteArray page = FileIn("card/wgcard.html");
  MakeWritable(false);
  Exit({MessageAnswer::Yes}, {"ann"});
  EXPECT_TRUE(run_.ended);
  EXPECT_EQ(page, FileIn("card/wgcard.html"));
  MakeWritable(true);
  KeepLeftOvers(run_.program());
  const QStringList kept = Names("rescued");
  ASSERT_EQ(1, kept.size());
  EXPECT_EQ(page, FileIn("rescued/" + kept.first() + "/wgcard.html"));
}

}  // namespace
