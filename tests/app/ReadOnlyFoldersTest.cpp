// Folders of the program that turn read-only while it runs, tried as a user whom that binds. Files that are there are
// written all the same, new ones come to nothing without a word.
#include <QComboBox>
#include <QTemporaryFile>

#include "OrdinaryUser.h"
#include "ProgramFixture.h"

namespace {

class ReadOnlyFolder : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!user_.IsBound()) GTEST_SKIP() << "root can't become anybody else here";
    ASSERT_TRUE(run_.emplace().Start());
    run_->Type("one");
    ASSERT_TRUE(run_->Choose("mSavePage"));
  }
  void TearDown() override {
    for (const char* const folder : {"card", "saved", "saved/ann"}) Lock(folder, false);
  }

  void Lock(const QString& folder, bool yes = true) {
    const QFile::Permissions read = QFile::ReadOwner | QFile::ExeOwner;
    QFile::setPermissions(run_->PathInApp(folder), yes ? read : read | QFile::WriteOwner);
  }
  bool IsWritable(const QString& folder) { return QTemporaryFile(run_->PathInApp(folder + "/probe")).open(); }
  void SaveProjectAs(const QString& name) {
    run_->Dialogs().Texts = {name};
    ASSERT_TRUE(run_->Choose("mSaveProject"));
  }
  void Exit(MessageAnswer answer) {
    run_->Dialogs().Answers = {answer};
    ASSERT_TRUE(run_->Choose("mExit"));
    EXPECT_TRUE(run_->ended);
    EXPECT_EQ(1, run_->Dialogs().Boxes.size()) << "the question alone";
  }
  QByteArray FileIn(const QString& name) { return FileBytes(run_->PathInApp(name)); }
  QStringList Names(const QString& folder) {
    return QDir(run_->PathInApp(folder)).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
  }

 private:
  OrdinaryUser user_;

 protected:
  std::optional<RunningProgram> run_;
};

TEST_F(ReadOnlyFolder, TheFolderOfProjectsTakesNoNewOneAndTheWorkspaceIsWhole) {
  SaveProjectAs("ann");
  Lock("saved");
  ASSERT_FALSE(IsWritable("saved"));
  ASSERT_TRUE(run_->Choose("mNewPage"));
  const QByteArray page = FileIn("card/wgcard.html");
  run_->program().project.StartNew();
  SaveProjectAs("bob");
  EXPECT_EQ("bob", run_->program().project.ProjectName());
  EXPECT_EQ(QStringList{"ann"}, Names("saved"));
  EXPECT_EQ(page, FileIn("card/wgcard.html"));
  EXPECT_TRUE(run_->Dialogs().Boxes.isEmpty());
}

TEST_F(ReadOnlyFolder, AProjectTakesItsPagesButNoFurtherOne) {
  SaveProjectAs("ann");
  Lock("saved/ann");
  ASSERT_FALSE(IsWritable("saved/ann"));
  run_->Type("two");
  ASSERT_TRUE(run_->Choose("mSavePage"));
  EXPECT_EQ(run_->View().SourceForFile(), FileIn("saved/ann/wgcard.html"));
  EXPECT_TRUE(FileIn("saved/ann/wgcard.html").contains("two"));
  ASSERT_TRUE(run_->Choose("mNewPage"));
  EXPECT_EQ(QStringList{"wgcard.html"}, Names("saved/ann"));
  run_->Web().BoxPage->setCurrentIndex(0);
  run_->Settle();
  EXPECT_EQ("onetwo", ShownLetters(*run_->View().WBDocument()));
  run_->Type("three");
  EXPECT_TRUE(run_->Dialogs().Boxes.isEmpty());
  Exit(MessageAnswer::Yes);
  EXPECT_TRUE(FileIn("saved/ann/wgcard.html").contains("three"));
  EXPECT_EQ(QStringList{"wgcard.html"}, Names("saved/ann"));
}

TEST_F(ReadOnlyFolder, APictureOfAProjectCanBeWrittenOverAndNoneIsAdded) {
  SaveProjectAs("ann");
  ASSERT_TRUE(PutFile(run_->PathInApp("saved/ann/p.gif"), QByteArray(90000, 'o')));
  ASSERT_TRUE(PutFile(run_->test.Path("p.gif"), QByteArray(70000, 'n')));
  Lock("saved/ann");
  ASSERT_FALSE(IsWritable("saved/ann"));
  for (const char* const name : {"p.gif", "q.gif"})
    run_->program().Files.CopyFileOver(run_->test.Path("p.gif"), run_->PathInApp(QString("saved/ann/") + name));
  EXPECT_EQ(QByteArray(70000, 'n'), FileIn("saved/ann/p.gif"));
  EXPECT_EQ(QStringList({"p.gif", "wgcard.html"}), Names("saved/ann"));
}

TEST_F(ReadOnlyFolder, TheWorkspaceIsSavedIntoAndGoesWithTheExit) {
  Lock("card");
  ASSERT_FALSE(IsWritable("card"));
  run_->Type("two");
  ASSERT_TRUE(run_->Choose("mSavePage"));
  EXPECT_TRUE(FileIn("card/wgcard.html").contains("two"));
  EXPECT_TRUE(run_->Dialogs().Boxes.isEmpty());
  Exit(MessageAnswer::No);
  EXPECT_FALSE(QDir(run_->PathInApp("card")).exists());
}

}  // namespace
