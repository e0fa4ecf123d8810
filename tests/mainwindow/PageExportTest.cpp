// Sending a page out as a file, with its pictures.
#include "FoldersFixture.h"

namespace {

class Export : public FoldersTest {
 protected:
  void SendTo(const QString& path, const QList<MessageAnswer>& answers = {}) {
    Answer(answers, {path});
    ASSERT_TRUE(run_.Choose("mSavePageFil"));
    EXPECT_EQ(0, run_.Dialogs().Unanswered);
    EXPECT_FALSE(Web().Busy);
  }
  QString Out(const QString& name) { return run_.test.Path("out/") + name; }
  QStringList OutNames() {
    return QDir(run_.test.Path("out")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name);
  }
};

TEST_F(Export, APageWithoutPicturesGoesStraightToTheChosenPath) {
  QDir().mkpath(Out(""));
  MakePages({"one"});
  const Tree before = TreeOf();
  const QByteArray view = InView();
  SendTo(Out("my.html"));
  EXPECT_EQ(QStringList{"my.html"}, OutNames());
  EXPECT_EQ(view, FileBytes(Out("my.html")));
  EXPECT_EQ(Tree(), Changes(before, TreeOf()));
  EXPECT_EQ(1, run_.program().project.CurPageNo());
  EXPECT_EQ(run_.PathInApp("card/wgcard.html"), run_.program().project.CurPageFile());
  EXPECT_TRUE(run_.Dialogs().Boxes.isEmpty()) << "nothing confirms it";
  const auto& question = run_.Dialogs().Questions.at(0);
  EXPECT_EQ(ScriptedDialogs::Question::Kind::SaveFile, question.kind);
  EXPECT_EQ("Save Text to File", question.title);
  EXPECT_EQ("html", question.given);
  EXPECT_EQ(QList<FileFilter>({{"HTML Files(*.html)", "*.html"}}), question.filters);
  EXPECT_EQ(&Web(), question.owner);
}

// Meant in FWeb::ExportPage: a page with pictures goes into a folder beside the chosen path, and into another one each
// time.
TEST_F(Export, APageWithPicturesNeverGoesToTheChosenPathAndEachRepeatMakesTheNextFolder) {
  QDir().mkpath(Out(""));
  MakePages({"one"});
  AddPicture("p.gif", "far/p.gif");
  View().AddNewElement("<IMG SRC=\"gone.gif\"><IMG SRC=\"p.gif\">");
  const QByteArray clean = InView().replace("far/", "");
  for (const int number : {1, 2, 3}) {
    SendTo(Out("my.html"));
    EXPECT_TRUE(run_.Dialogs().Boxes.isEmpty());
    const QString folder = Out(QString("my Files%1/").arg(number));
    EXPECT_EQ(QStringList({"my.html", "p.gif"}), QDir(folder).entryList(QDir::Files, QDir::Name)) << number;
    EXPECT_EQ(clean, FileBytes(folder + "my.html"));
    EXPECT_EQ("p.gif", FileBytes(folder + "p.gif"));
  }
  EXPECT_EQ(QStringList({"my Files1", "my Files2", "my Files3"}), OutNames());
}

TEST_F(Export, WithoutADocumentAnEmptyFileTakesThePlaceOfTheChosenOne) {
  ASSERT_TRUE(PutFile(Out("my.html"), "old"));
  MakePages({"one"});
  Web().LoadPage(run_.program().project.CurPageFile());
  ASSERT_EQ("", View().Source());
  Answer({MessageAnswer::Ok}, {Out("my.html")});
  Web().mSavePageFil();
  EXPECT_TRUE(QFile::exists(Out("my.html")));
  EXPECT_EQ("", FileBytes(Out("my.html")));
}

// Meant in FWeb::ExportPage: replacing a file by a page with pictures deletes it and puts the page elsewhere.
TEST_F(Export, ReplacingAFileByAPageWithPicturesDeletesItAndPutsThePageBesideIt) {
  ASSERT_TRUE(PutFile(Out("my.html"), "old"));
  MakePages({"one"});
  AddPicture("p.gif", "p.gif");
  SendTo(Out("my.html"), {MessageAnswer::Ok});
  ASSERT_EQ(1, run_.Dialogs().Boxes.size());
  EXPECT_EQ("File exists. Replace it?", run_.Dialogs().Boxes[0].text);
  EXPECT_EQ(MessageIcon::None, run_.Dialogs().Boxes[0].icon);
  EXPECT_EQ(MessageButtons::OkCancel, run_.Dialogs().Boxes[0].buttons);
  EXPECT_EQ(QStringList{"my Files1"}, OutNames());
}

TEST_F(Export, NotReplacingAFileLeavesAll) {
  ASSERT_TRUE(PutFile(Out("my.html"), "old"));
  MakePages({"one"});
  AddPicture("p.gif", "p.gif");
  SendTo(Out("my.html"), {MessageAnswer::Cancel});
  EXPECT_EQ(QStringList{"my.html"}, OutNames());
  EXPECT_EQ("old", FileBytes(Out("my.html")));
  SendTo("");
  EXPECT_EQ("old", FileBytes(Out("my.html")));
}

TEST_F(Export, AFileIsReplacedByAPageWithoutPictures) {
  ASSERT_TRUE(PutFile(Out("my.html"), "old"));
  MakePages({"one"});
  SendTo(Out("my.html"), {MessageAnswer::Ok});
  EXPECT_EQ(InView(), FileBytes(Out("my.html")));
}

TEST_F(Export, TheStemEndsAtTheLastDotAndANameWithoutOneIsTheStem) {
  QDir().mkpath(Out(""));
  MakePages({"one"});
  AddPicture("p.gif", "p.gif");
  SendTo(Out("a.b.html"));
  SendTo(Out("plain"));
  SendTo(Out(".html"));
  EXPECT_EQ(QStringList({" Files1", "a.b Files1", "plain Files1"}), OutNames());
  EXPECT_TRUE(QFile::exists(Out("plain Files1/plain")));
  EXPECT_TRUE(QFile::exists(Out(" Files1/.html")));
}

// Meant in FWeb::ExportPage: a file in the way of the folder loses the page without a word.
TEST_F(Export, AFileInTheWayOfTheFolderLosesThePageInSilence) {
  ASSERT_TRUE(PutFile(Out("my Files1"), "a file"));
  MakePages({"one"});
  AddPicture("p.gif", "p.gif");
  SendTo(Out("my.html"));
  EXPECT_EQ(QStringList{"my Files1"}, OutNames());
  EXPECT_EQ("a file", FileBytes(Out("my Files1")));
  EXPECT_TRUE(run_.Dialogs().Boxes.isEmpty());
}

TEST_F(Export, APictureGoesAlongWhateverItsNameEndsIn) {
  QDir().mkpath(Out(""));
  for (const char* name : {"plain", "p.", ".gif"}) AddPicture(name, name);
  SendTo(Out("my.html"));
  const QStringList sent = QDir(Out("my Files1")).entryList(QDir::Files | QDir::Hidden, QDir::Name);
  EXPECT_EQ(QStringList({".gif", "my.html", "p.", "plain"}), sent);
}

TEST_F(Export, ABackgroundAndAPictureOfAnyScriptGoAlong) {
  QDir().mkpath(Out(""));
  MakePages({"one"});
  const QString name = QString::fromUtf8("b\xC3\xA4r-\xE7\x86\x8A.gif");
  AddPicture(name, name);
  ASSERT_TRUE(PutFile(run_.test.WorkFile("back.jpg"), "back"));
  View().SetBackPic("back.jpg");
  SendTo(Out("my.html"));
  EXPECT_EQ(QStringList({"back.jpg", name, "my.html"}),
            QDir(Out("my Files1")).entryList(QDir::Files, QDir::Name | QDir::LocaleAware));
}

}  // namespace
