#include <QClipboard>
#include <QFontInfo>
#include <QTest>
#include <QTextCursor>

#include "SourceText.h"
#include "ToolsFixture.h"

namespace {

class SourcePanel : public ToolsTest {
 protected:
  void Save() {
    Tools().bCloseText[1]->click();
    run_.Settle();
  }
  QByteArray PageFile() { return FileBytes(run_.program().project.CurPageFile()); }
};

TEST_F(SourcePanel, ShowsThePagesSourceWithNothingToSave) {
  ShowBody("<font size=\"3\">one</font>");
  for (int time = 0; time < 2; ++time) {
    // The second time the window is open already.
    Tools().ShowSource();
    EXPECT_EQ("Page Source", Tools().windowTitle());
    EXPECT_EQ(View().Source(), Tools().T1->Text());
    EXPECT_TRUE(Tools().T1->Text().contains("<font size=\"3\">one</font>"));
    EXPECT_FALSE(Tools().bCloseText[1]->isEnabled());
    EXPECT_TRUE(Tools().bCloseText[0]->isEnabled());
    Tools().T1->insertPlainText("x");
    EXPECT_TRUE(Tools().bCloseText[1]->isEnabled());
  }
  EXPECT_EQ("T1", Tools().T1->objectName());
  EXPECT_EQ("Verdana", Tools().T1->font().family());
  EXPECT_TRUE(QFontInfo(Tools().T1->font()).fixedPitch() || QFontInfo(Tools().T1->font()).family() == "Verdana");
  EXPECT_EQ(Qt::ScrollBarAlwaysOff, Tools().T1->horizontalScrollBarPolicy());
  EXPECT_EQ(Qt::ScrollBarAlwaysOn, Tools().T1->verticalScrollBarPolicy());
}

TEST_F(SourcePanel, AChangeWhileTheWindowIsHiddenEnablesNothing) {
  Tools().T1->insertPlainText("x");
  EXPECT_FALSE(Tools().bCloseText[1]->isEnabled());
}

// Meant in FTools::OnCloseText: OK drops unsaved source without a question.
TEST_F(SourcePanel, OkDropsUnsavedTextWithoutAQuestion) {
  Tools().ShowSource();
  const QByteArray before = PageFile();
  Tools().T1->insertPlainText("changed");
  Tools().bCloseText[0]->click();
  run_.Settle();
  EXPECT_FALSE(Tools().isVisible());
  EXPECT_FALSE(IsOnTop());
  EXPECT_FALSE(Tools().bCloseText[1]->isEnabled());
  EXPECT_EQ(before, PageFile());
  EXPECT_FALSE(View().Source().contains("changed"));
  EXPECT_TRUE(Dialogs().Boxes.isEmpty());
  EXPECT_EQ(0, Dialogs().Unanswered);
}

TEST_F(SourcePanel, SaveChangesReadsThePagesOwnFontsAndLeavesThePanelOpen) {
  Tools().ShowSource();
  const QByteArray page =
      "<HTML><BODY TEXT=\"#AA0000\" STYLE=\"font-family: Tahoma; font-size: large\">one</BODY></HTML>";
  Tools().T1->SetText(page);
  Save();
  EXPECT_EQ(page, PageFile());
  EXPECT_EQ("one", ShownLetters(*View().WBDocument()));
  EXPECT_EQ("#AA0000", View().BodyFontColor());
  EXPECT_EQ("Tahoma", View().BodyFontName());
  EXPECT_EQ("<absent>", Raw("bgcolor"));
  EXPECT_TRUE(Tools().isVisible());
  EXPECT_TRUE(IsOnTop());
  EXPECT_EQ(page, Tools().T1->Text());
  EXPECT_TRUE(Tools().bCloseText[1]->isEnabled());
}

// The page's file is still the one of the workspace, into which nothing else writes any more.
TEST_F(SourcePanel, BehindTheFirstSaveOfAProjectSaveChangesGoesIntoTheWorkspace) {
  Dialogs().Texts = {"ann"};
  ASSERT_TRUE(run_.Choose("mSaveProject"));
  const auto file = [this](const char* name) { return FileBytes(run_.PathInApp(name)); };
  const QByteArray before = file("saved/ann/wgcard.html");
  Tools().ShowSource();
  Tools().T1->SetText("<HTML><BODY>new</BODY></HTML>");
  Save();
  EXPECT_EQ("<HTML><BODY>new</BODY></HTML>", file("card/wgcard.html"));
  EXPECT_EQ(before, file("saved/ann/wgcard.html"));
  EXPECT_EQ("new", ShownLetters(*View().WBDocument()));
  // The next save of the page brings it into the project.
  ASSERT_TRUE(run_.Choose("mSavePage"));
  EXPECT_TRUE(file("saved/ann/wgcard.html").contains("new"));
}

TEST_F(SourcePanel, InvalidHtmlIsWrittenAsItStands) {
  Tools().ShowSource();
  const QByteArray page = "<b>one<table>two</i";
  Tools().T1->SetText(page);
  Save();
  EXPECT_EQ(page, PageFile());
  EXPECT_TRUE(View().DocReady());
}

TEST_F(SourcePanel, TextInAnyScriptIsWrittenAsReferences) {
  Tools().ShowSource();
  const QString page = QString::fromUtf8("<HTML><BODY>\u00e4 \u0416 \U0001F600\nline</BODY></HTML>");
  Tools().T1->SetText(page);
  Save();
  EXPECT_EQ("<HTML><BODY>&#228; &#1046; &#128512;\nline</BODY></HTML>", PageFile());
  EXPECT_TRUE(View().Source().contains(QString::fromUtf8("\u00e4 \u0416 \U0001F600\nline")));
}

// What the page says of its encoding stays, as long as it doesn't matter.
TEST_F(SourcePanel, SavingTenTimesGarblesNothingInAPageOfALegacyEncoding) {
  Tools().ShowSource();
  const QString page = QString::fromUtf8(
      "<html><head><meta charset=\"iso-8859-1\"></head><body><p title=\"Gr\u00fc\u00dfe\">\u20ac 5 "
      "\u00e9</p></body></html>");
  Tools().T1->SetText(page);
  QByteArray first;
  for (int time = 0; time < 10; ++time) {
    Save();
    if (time == 0) first = PageFile();
    EXPECT_EQ(first, PageFile());
    const QString source = View().Source();
    EXPECT_TRUE(source.contains(QString::fromUtf8("title=\"Gr\u00fc\u00dfe\"")));
    EXPECT_TRUE(source.contains(QString::fromUtf8("\u20ac 5 \u00e9")));
    EXPECT_TRUE(source.contains("charset=\"iso-8859-1\""));
    Tools().ShowSource();
  }
}

TEST_F(SourcePanel, AScriptAboveAsciiMakesThePageSayUtf8) {
  Tools().ShowSource();
  Tools().T1->SetText(QString::fromUtf8(
      "<head><meta charset='iso-8859-1'></head><script>a='\u00e9'</script><i title=\u00e9>\u00e9</i>"));
  Save();
  EXPECT_EQ("<head><meta charset='utf-8'></head><script>a='\xC3\xA9'</script><i title=&#233;>&#233;</i>", PageFile());
  EXPECT_TRUE(View().Source().contains(QString::fromUtf8("a='\u00e9'")));
}

TEST_F(SourcePanel, ShiftReturnIsALineEndLikeReturn) {
  Tools().ShowSource();
  Tools().T1->SetText("ab");
  Tools().T1->moveCursor(QTextCursor::End);
  QTest::keyClick(Tools().T1, Qt::Key_Return, Qt::ShiftModifier);
  QTest::keyClick(Tools().T1, 'c');
  QTest::keyClick(Tools().T1, Qt::Key_Return);
  EXPECT_EQ("ab\nc\n", Tools().T1->Text());
}

TEST_F(SourcePanel, LineEndsThatTheBoxDoesntKnowAreShownAsReferences) {
  ShowBody("<p title='a&#13;b'>c&#8232;d&#8233;e&#13;f</p>");
  Tools().ShowSource();
  EXPECT_TRUE(Tools().T1->Text().contains("<p title=\"a&#13;b\">c&#8232;d&#8233;e&#13;f</p>"));
  const QString before = View().Source();
  Save();
  EXPECT_EQ(before, View().Source());
}

TEST_F(SourcePanel, ANoBreakSpaceStaysOne) {
  Tools().ShowSource();
  const QString page = QString::fromUtf8("<HTML><BODY>a\u00a0b  c</BODY></HTML>");
  Tools().T1->SetText(page);
  EXPECT_EQ(page, Tools().T1->Text());
  Save();
  EXPECT_EQ("<HTML><BODY>a&#160;b  c</BODY></HTML>", PageFile());
  // Also when it is moved about in the box.
  Tools().T1->selectAll();
  Tools().T1->cut();
  EXPECT_EQ(page, QApplication::clipboard()->text());
  Tools().T1->paste();
  EXPECT_EQ(page, Tools().T1->Text());
}

TEST_F(SourcePanel, WithoutThePagesFileNothingIsSaved) {
  Tools().ShowSource();
  Tools().T1->SetText("<HTML><BODY>new</BODY></HTML>");
  ASSERT_TRUE(QFile::remove(run_.program().project.CurPageFile()));
  Save();
  EXPECT_EQ("<missing>", PageFile());
  EXPECT_EQ("", ShownLetters(*View().WBDocument()));
  EXPECT_TRUE(Dialogs().Boxes.isEmpty());
}

TEST_F(SourcePanel, EscapeClosesItOnlyWhileNothingIsUnsaved) {
  Tools().ShowSource();
  QTest::keyClicks(Tools().T1, "x");
  QTest::keyClick(Tools().T1, Qt::Key_Escape);
  QTest::keyClick(Tools().bCloseText[0], Qt::Key_Escape);
  EXPECT_TRUE(Tools().isVisible());
  Tools().ShowSource();
  QTest::keyClick(Tools().T1, Qt::Key_Escape);
  EXPECT_FALSE(Tools().isVisible());
}

}  // namespace
