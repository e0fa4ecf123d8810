// Sending the whole project out as one HTML file. What browsers make of the file is looked at elsewhere.
#include "FoldersFixture.h"

namespace {

class OneFileCommand : public FoldersTest {
 protected:
  void Save(const QString& path, const QList<MessageAnswer>& answers = {}) {
    Answer(answers, {path});
    ASSERT_TRUE(run_.Choose("mSaveOneFile"));
    EXPECT_EQ(0, run_.Dialogs().Unanswered);
    EXPECT_FALSE(Web().Busy);
    EXPECT_EQ(nullptr, QGuiApplication::overrideCursor());
  }
  QString Out() { return run_.test.Path("desktop/all.html"); }
  QStringList OutNames() {
    return QDir(run_.test.Path("desktop")).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
  }
};

TEST_F(OneFileCommand, AllPagesGoOutAndTheProjectStaysAsItIs) {
  MakePages({"one", "two", "three"});
  AddPicture("p.gif", "p.gif");
  ASSERT_TRUE(run_.Choose("mSavePage"));
  ASSERT_TRUE(PutFile(run_.test.WorkFile("unused.gif"), "unused"));
  const Tree before = TreeOf();
  const QByteArray view = InView();
  Save(Out());
  EXPECT_EQ(Tree(), Changes(before, TreeOf()));
  EXPECT_EQ(view, InView());
  EXPECT_EQ(3, run_.program().project.CurPageNo());
  EXPECT_TRUE(run_.Dialogs().Boxes.isEmpty());
  EXPECT_EQ(QStringList{"all.html"}, OutNames());
  const QByteArray file = FileBytes(Out());
  EXPECT_LT(file.indexOf("one"), file.indexOf("two"));
  EXPECT_LT(file.indexOf("two"), file.indexOf("three"));
  EXPECT_TRUE(file.contains("data:image/gif;base64," + QByteArray("p.gif").toBase64()));
  EXPECT_FALSE(file.contains(QByteArray("unused").toBase64()));
  const auto& question = run_.Dialogs().Questions.at(0);
  EXPECT_EQ(ScriptedDialogs::Question::Kind::SaveFile, question.kind);
  EXPECT_EQ("Save Project as One HTML File", question.title);
  EXPECT_EQ("html", question.given);
  EXPECT_EQ(QList<FileFilter>({{"HTML Files(*.html)", "*.html"}}), question.filters);
  EXPECT_EQ(&Web(), question.owner);
}

TEST_F(OneFileCommand, ThePageInViewGoesOutAsItIsInView) {
  MakePages({"one", "two"});
  ASSERT_TRUE(run_.Choose("mSavePage"));
  run_.Type("later");
  const Tree before = TreeOf();
  Save(Out());
  EXPECT_EQ(Tree(), Changes(before, TreeOf()));
  EXPECT_TRUE(FileBytes(Out()).contains("later"));
  EXPECT_FALSE(FileIn("card/Page2.html").contains("later"));
}

TEST_F(OneFileCommand, GivingUpChangesNothing) {
  MakePages({"one"});
  ASSERT_TRUE(PutFile(Out(), "old"));
  Save("");
  EXPECT_TRUE(run_.Dialogs().Boxes.isEmpty());
  Save(Out(), {MessageAnswer::Cancel});
  EXPECT_EQ(QStringList{StringText(105)}, run_.Dialogs().Messages());
  EXPECT_EQ("old", FileBytes(Out()));
  Save(Out(), {MessageAnswer::Ok});
  EXPECT_TRUE(FileBytes(Out()).contains("one"));
}

TEST_F(OneFileCommand, AFileThatCantBeWrittenIsToldAndNothingElseIsTouched) {
  MakePages({"one"});
  const Tree before = TreeOf();
  Save(run_.test.Path("none/all.html"));
  EXPECT_EQ(QStringList{"Error saving file."}, run_.Dialogs().Messages());
  ASSERT_TRUE(PutFile(Out() + "/inside", "x"));
  Save(Out());
  EXPECT_EQ(QStringList{"Error saving file."}, run_.Dialogs().Messages());
  EXPECT_EQ("x", FileBytes(Out() + "/inside"));
  EXPECT_EQ(QStringList{"all.html"}, OutNames());
  EXPECT_EQ(Tree(), Changes(before, TreeOf()));
}

TEST_F(OneFileCommand, APageThatCantBeReadIsToldAndNotSentOutEmpty) {
  MakePages({"one"});
  ASSERT_TRUE(QFile::link("/proc/self/mem", run_.PathInApp("card/Page2.html")));
  Save(Out());
  EXPECT_EQ(QStringList{"Error saving file."}, run_.Dialogs().Messages());
  EXPECT_EQ(QStringList(), OutNames());
}

TEST_F(OneFileCommand, WhatIsLeftOutGoesWithAllThatIsInIt) {
  const QByteArray head = "<html><head><title>t</title></head><body>";
  ASSERT_TRUE(PutFile(run_.PathInApp("card/Page2.html"),
                      head + "a<noscript><p>n<b id=\"n\">o</b></p><img src=\"x.gif\"></noscript><object><param "
                             "name=\"q\"><embed src=\"e\"></object>b</body></html>"));
  Save(Out());
  EXPECT_TRUE(run_.Dialogs().Boxes.isEmpty());
  EXPECT_TRUE(FileBytes(Out()).contains("class=\"body\">ab</div>"));
}

TEST_F(OneFileCommand, AStyleOfBodyReachesNoOtherPage) {
  ASSERT_TRUE(PutFile(run_.PathInApp("card/Page2.html"),
                      "<html><head><style media=\"print{} .page{display:none} @media all\">p{x:y}</style></head><body "
                      "style=\"color:red}.page{display:none;background:#123;background-image:url('</style>\">a</body>"
                      "</html>"));
  Save(Out());
  const QByteArray file = FileBytes(Out());
  EXPECT_EQ(1, file.count(".page{display:none;"));  // the program's own
  EXPECT_FALSE(file.contains(".page{display:none}"));
  EXPECT_TRUE(file.contains("background:#123;"));
  EXPECT_EQ(file.count("<style>"), file.count("</style>"));
}

TEST_F(OneFileCommand, APictureFromOutsideOfTheProjectStaysThere) {
  ASSERT_TRUE(PutFile(run_.test.Path("secret/s.gif"), "secret"));
  ASSERT_TRUE(QFile::link(run_.test.Path("secret/s.gif"), run_.test.WorkFile("link.gif")));
  View().AddNewElement("<IMG SRC=\"../../secret/s.gif\"><IMG SRC=\"link.gif\">");
  Save(Out());
  EXPECT_FALSE(FileBytes(Out()).contains(QByteArray("secret").toBase64()));
}

TEST_F(OneFileCommand, WhileTheProgramIsBusyItDoesNothing) {
  Web().Busy = true;
  Answer({}, {Out()});
  ASSERT_TRUE(run_.Choose("mSaveOneFile"));
  EXPECT_TRUE(run_.Dialogs().Questions.isEmpty());
  EXPECT_EQ(QStringList(), OutNames());
}

}  // namespace
