#include <functional>

#include "CaretBar.h"
#include "FoldersFixture.h"
#include "ToolButton.h"

namespace {

class PageCommands : public FoldersTest {
 protected:
  // Two pages with page 2 in view, which has an edit and a picture with a path that aren't on the disk yet.
  void OpenPageTwoWithAnEdit() {
    MakePages({"one", "two"});
    ASSERT_TRUE(run_.Choose("mSavePage"));
    AddPicture("p.gif", "far/away/p.gif");
    run_.Type("edit");
    view_ = InView();
    ASSERT_TRUE(view_.contains("far/away/p.gif"));
    ASSERT_TRUE(view_.contains("edit"));
  }
  QByteArray Tidied() const { return QByteArray(view_).replace("far/away/", ""); }
  void Tool(int index) {
    Web().ImTool[std::size_t(index)]->click();
    run_.Settle();
  }
  void ExpectPage(int page, const QString& workPath = QStringLiteral("card")) {
    EXPECT_EQ(page, run_.program().project.CurPageNo());
    const QString name = page == 1 ? QStringLiteral("wgcard.html") : QStringLiteral("Page%1.html").arg(page);
    EXPECT_EQ(run_.PathInApp(workPath + u'/' + name), run_.program().project.CurPageFile());
  }
  // What stays dead once a deletion has left the program busy.
  void ExpectDeadCommands() {
    EXPECT_TRUE(Web().Busy);
    const Tree before = TreeOf();
    const int page = run_.program().project.CurPageNo();
    const QByteArray view = InView();
    Answer({MessageAnswer::Ok, MessageAnswer::Ok}, {"name", "name"});
    for (const char* command : {"mNewPage", "mDelPage", "mOpenFile", "mSavePageFil", "mSaveOneFile", "mNewProject",
                                "mOpenProject", "mSaveProject"})
      ASSERT_TRUE(run_.Choose(command));
    GoToPage(Web().BoxPage->currentIndex() == 4 ? 6 : 5);
    EXPECT_EQ(Tree(), Changes(before, TreeOf()));
    EXPECT_TRUE(run_.Dialogs().Boxes.isEmpty());
    EXPECT_TRUE(run_.Dialogs().Questions.isEmpty());
    EXPECT_EQ(page, run_.program().project.CurPageNo());
    EXPECT_EQ(view, InView());
  }

  QByteArray view_;
};

// When a page is written. Each row looks at all of the program's folders.

TEST_F(PageCommands, ChoosingAPageWritesTheOneInView) {
  OpenPageTwoWithAnEdit();
  const Tree before = TreeOf();
  GoToPage(1);
  EXPECT_EQ((Tree{{"card/Page2.html", view_}}), Changes(before, TreeOf()));
  ExpectPage(1);
  EXPECT_EQ("one", LettersInView());
  EXPECT_FALSE(Web().Busy);
  EXPECT_EQ(&View(), Web().focusWidget()) << "the keys go to the page";
}

TEST_F(PageCommands, ANewPageWritesTheOneInView) {
  OpenPageTwoWithAnEdit();
  const Tree before = TreeOf();
  ASSERT_TRUE(run_.Choose("mNewPage"));
  EXPECT_EQ((Tree{{"card/Page2.html", view_}, {"card/Page3.html", FileIn("blank.html")}}), Changes(before, TreeOf()));
  ExpectPage(3);
  EXPECT_EQ(2, Web().BoxPage->currentIndex());
}

TEST_F(PageCommands, ABlankPageThatHasGoneIsWrittenAgainForTheNextPage) {
  ASSERT_TRUE(QFile::remove(run_.PathInApp("blank.html")));
  ASSERT_TRUE(run_.Choose("mNewPage"));
  const QByteArray blank =
      "<HTML><HEAD><TITLE></TITLE></HEAD><BODY BGCOLOR=\"#FFFFFF\" TEXT=\"#000000\"></BODY></HTML>";
  EXPECT_EQ(blank, FileIn("blank.html"));
  EXPECT_EQ(blank, FileIn("card/Page2.html"));
}

TEST_F(PageCommands, TheToolOfANewPageDoesTheSame) {
  OpenPageTwoWithAnEdit();
  const Tree before = TreeOf();
  Tool(0);
  EXPECT_EQ((Tree{{"card/Page2.html", view_}, {"card/Page3.html", FileIn("blank.html")}}), Changes(before, TreeOf()));
  ExpectPage(3);
}

// Meant in FWeb::mSavePage: saving doesn't ask whether the program is busy.
TEST_F(PageCommands, SavingWritesThePageAsItStandsEvenWhileBusy) {
  OpenPageTwoWithAnEdit();
  const Tree before = TreeOf();
  Web().Busy = true;
  ASSERT_TRUE(run_.Choose("mSavePage"));
  EXPECT_EQ((Tree{{"card/Page2.html", view_}}), Changes(before, TreeOf()));
  ExpectPage(2);
}

TEST_F(PageCommands, TheToolOfSavingDoesTheSameEvenWhileBusy) {
  OpenPageTwoWithAnEdit();
  const Tree before = TreeOf();
  Web().Busy = true;
  Tool(3);
  EXPECT_EQ((Tree{{"card/Page2.html", view_}}), Changes(before, TreeOf()));
}

// Meant in FWeb::mRefresh: refreshing doesn't ask whether the program is busy.
TEST_F(PageCommands, RefreshWritesThePageWithoutPathsAndLoadsItEvenWhileBusy) {
  OpenPageTwoWithAnEdit();
  const Tree before = TreeOf();
  Web().Busy = true;
  ASSERT_TRUE(run_.Choose("mRefresh"));
  EXPECT_EQ((Tree{{"card/Page2.html", Tidied()}}), Changes(before, TreeOf()));
  EXPECT_FALSE(InView().contains("far/away"));
  EXPECT_TRUE(LettersInView().contains("edit"));
}

TEST_F(PageCommands, TheEmailPanelWritesThePage) {
  for (const bool byTool : {false, true}) {
    OpenPageTwoWithAnEdit();
    const Tree before = TreeOf();
    if (byTool)
      Tool(7);
    else
      ASSERT_TRUE(run_.Choose("mEmail"));
    EXPECT_EQ((Tree{{"card/Page2.html", view_}}), Changes(before, TreeOf()));
    Answer({MessageAnswer::Ok});
    run_.Choose("mNewProject");
  }
}

TEST_F(PageCommands, TheWebPackPanelWritesThePage) {
  for (const bool byTool : {false, true}) {
    OpenPageTwoWithAnEdit();
    const Tree before = TreeOf();
    if (byTool)
      Tool(8);
    else
      ASSERT_TRUE(run_.Choose("mMakePack"));
    EXPECT_EQ((Tree{{"card/Page2.html", view_}}), Changes(before, TreeOf()));
    EXPECT_TRUE(run_.modMain.Ops()->isVisible());
    Answer({MessageAnswer::Ok});
    run_.Choose("mNewProject");
  }
}

TEST_F(PageCommands, SavingASavedProjectWritesThePageInViewWithoutPathsAndNothingElse) {
  OpenPageTwoWithAnEdit();
  SaveProjectAs("ann");
  const Tree before = TreeOf();
  Answer({});
  ASSERT_TRUE(run_.Choose("mSaveProject"));
  EXPECT_EQ((Tree{{"saved/ann/Page2.html", Tidied()}}), Changes(before, TreeOf()));
  ASSERT_EQ(1, run_.Dialogs().Boxes.size());
  EXPECT_EQ("ann is already a saved project. The current page has been updated.", run_.Dialogs().Boxes[0].text);
  EXPECT_EQ(MessageIcon::None, run_.Dialogs().Boxes[0].icon);
  EXPECT_EQ(MessageButtons::Ok, run_.Dialogs().Boxes[0].buttons);
  EXPECT_TRUE(run_.Dialogs().Questions.isEmpty()) << "there is no way to another name";
}

TEST_F(PageCommands, TheExitOfANamedProjectWritesThePageAsItStands) {
  OpenPageTwoWithAnEdit();
  SaveProjectAs("ann");
  const Tree before = TreeOf("saved");
  Exit({MessageAnswer::Yes});
  EXPECT_EQ((Tree{{"ann/Page2.html", view_}}), Changes(before, TreeOf("saved")));
}

// Meant in FWeb::mOpenFile: opening a file loses the edits of the page in view.
TEST_F(PageCommands, OpeningAFileLosesTheEditsOfThePageInView) {
  OpenPageTwoWithAnEdit();
  const QString file = run_.test.Path("mine.html");
  const QByteArray theirs = "<html><body><img src=\"t.gif\" />new</body></html>";
  ASSERT_TRUE(PutFile(file, theirs));
  ASSERT_TRUE(PutFile(run_.test.Path("t.gif"), "picture"));
  const Tree before = TreeOf();
  Answer({}, {file});
  ASSERT_TRUE(run_.Choose("mOpenFile"));
  // Its pictures aren't fetched.
  EXPECT_EQ((Tree{{"card/Page3.html", theirs}}), Changes(before, TreeOf()));
  ExpectPage(3);
  EXPECT_EQ(2, Web().BoxPage->currentIndex());
  EXPECT_EQ("new", LettersInView());
  GoToPage(2);
  EXPECT_EQ("two", LettersInView());
  const auto& question = run_.Dialogs().Questions.at(0);
  EXPECT_EQ(ScriptedDialogs::Question::Kind::OpenFile, question.kind);
  EXPECT_EQ("Select HTML file", question.title);
  EXPECT_EQ(QList<FileFilter>({{"HTML Files(*.html)", "*.html"}}), question.filters);
  EXPECT_EQ("", question.given);
  EXPECT_EQ(&Web(), question.owner);
}

TEST_F(PageCommands, OpeningNoFileChangesNothing) {
  OpenPageTwoWithAnEdit();
  const Tree before = TreeOf();
  Answer({}, {""});
  ASSERT_TRUE(run_.Choose("mOpenFile"));
  EXPECT_EQ(Tree(), Changes(before, TreeOf()));
  EXPECT_FALSE(Web().Busy);
  ExpectPage(2);
}

// Meant in FWeb::mDelPage: deleting a page doesn't write the one in view.
TEST_F(PageCommands, DeletingAPageDoesntWriteTheOneInView) {
  MakePages({"one", "two", "three"});
  ASSERT_TRUE(run_.Choose("mSavePage"));
  GoToPage(2);
  run_.Type("lost");
  Web().Busy = true;  // so that the list can be put elsewhere alone
  GoToPage(3);
  Web().Busy = false;
  const Tree before = TreeOf();
  ASSERT_TRUE(run_.Choose("mDelPage"));
  EXPECT_EQ((Tree{{"card/Page3.html", "<gone>"}}), Changes(before, TreeOf()));
  EXPECT_EQ("two", LettersInView());
}

// Meant in FWeb::mNewProject: a new project loses the edits of the page in view.
TEST_F(PageCommands, ANewProjectLosesTheEditsOfThePageInView) {
  OpenPageTwoWithAnEdit();
  SaveProjectAs("ann");
  const Tree before = TreeOf("saved");
  Answer({MessageAnswer::Ok});
  ASSERT_TRUE(run_.Choose("mNewProject"));
  EXPECT_EQ(Tree(), Changes(before, TreeOf("saved")));
}

TEST_F(PageCommands, NothingIsWrittenWhileThePageIsStillLoading) {
  MakePages({"one"});
  ASSERT_TRUE(run_.Choose("mSavePage"));
  const Tree before = TreeOf();
  Web().LoadPage(run_.program().project.CurPageFile());
  ASSERT_EQ("", View().Source());
  Web().mSavePage();
  EXPECT_EQ(Tree(), Changes(before, TreeOf()));
  run_.Settle();
  EXPECT_EQ("one", LettersInView());
}

TEST_F(PageCommands, APageNumberBelowOneIsNeverWritten) {
  MakePages({"one"});
  const Tree before = TreeOf();
  for (const int number : {0, -1}) Web().SavePage(number, false);
  EXPECT_EQ(Tree(), Changes(before, TreeOf()));
}

// A separator among the first three characters counts as that of a root.
TEST_F(PageCommands, APagesFolderIsNotMadeWhenItsPathIsShorterThanThreeCharacters) {
  const QString before = QDir::currentPath();
  ASSERT_TRUE(QDir().mkpath(run_.test.Path("here")));
  ASSERT_TRUE(QDir::setCurrent(run_.test.Path("here")));
  for (const char* const path : {"ab/p.html", "abc/p.html"}) Web().LoadPage(path);
  run_.Settle();
  EXPECT_EQ(QStringList{"abc"}, QDir(run_.test.Path("here")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot));
  EXPECT_TRUE(QFile::exists("abc/p.html"));
  EXPECT_TRUE(QDir::setCurrent(before));
}

// Switching.

// Meant in FWeb::OnBoxPage: choosing a page beyond the last one makes one page more.
TEST_F(PageCommands, AChoiceBeyondTheEndGivesOnePageMoreAndTheListGoesBack) {
  MakePages({"one", "two", "three"});
  GoToPage(20);
  ExpectPage(4);
  EXPECT_EQ(3, Web().BoxPage->currentIndex());
  EXPECT_EQ(QStringList({"Page2.html", "Page3.html", "Page4.html", "wgcard.html"}), Names("card"));
  EXPECT_EQ("", LettersInView());
}

// Meant in NextPageName: counting the pages renames files to close gaps.
TEST_F(PageCommands, CountingThePagesRenamesFilesToCloseGaps) {
  MakePages({"a", "b", "c", "d"});
  ASSERT_TRUE(run_.Choose("mSavePage"));
  GoToPage(1);
  ASSERT_TRUE(QFile::remove(run_.PathInApp("card/Page2.html")));
  // Nothing but a look at page 2.
  GoToPage(2);
  EXPECT_EQ((QMap<QString, QString>{{"wgcard.html", "a"}, {"Page2.html", "c"}, {"Page3.html", "d"}}),
            LettersIn("card"));
  EXPECT_EQ("c", LettersInView());
}

// Meant in NextPageName: any HTML file in the folder counts as a page.
TEST_F(PageCommands, AStrayHtmlFileCountsAsAPage) {
  MakePages({"a"});
  ASSERT_TRUE(PutFile(run_.PathInApp("card/notes.HTML"), "x"));
  ASSERT_TRUE(PutFile(run_.PathInApp("card/Page2.html"), "<html><body>b</body></html>"));
  ASSERT_TRUE(PutFile(run_.PathInApp("card/Page3.html"), "<html><body>c</body></html>"));
  ASSERT_TRUE(PutFile(run_.PathInApp("card/Page5.html"), "<html><body>e</body></html>"));
  // Five files, so the search goes on to page 5 and moves it down; with four it would stop at page 4.
  ASSERT_TRUE(run_.Choose("mNewPage"));
  ExpectPage(5);
  EXPECT_EQ("e", LettersIn("card")["Page4.html"]);
  EXPECT_EQ("x", FileIn("card/notes.HTML"));
}

TEST_F(PageCommands, WithAStrayFileAloneTheSecondPageComesFirst) {
  ASSERT_TRUE(QFile::remove(run_.PathInApp("card/wgcard.html")));
  ASSERT_TRUE(PutFile(run_.PathInApp("card/stray.html"), "x"));
  run_.program().project.TurnTo(0);  // nothing is written
  ASSERT_TRUE(run_.Choose("mNewPage"));
  ExpectPage(2);
  EXPECT_EQ(QStringList({"Page2.html", "stray.html"}), Names("card"));
}

TEST_F(PageCommands, WithoutAFirstPageANewPageOpensTheLastOneThatIsThere) {
  MakePages({"a", "b", "c"});
  ASSERT_TRUE(run_.Choose("mSavePage"));
  ASSERT_TRUE(QFile::remove(run_.PathInApp("card/wgcard.html")));
  const Tree before = TreeOf();
  ASSERT_TRUE(run_.Choose("mNewPage"));
  ExpectPage(3);
  EXPECT_EQ("c", LettersInView());
  EXPECT_EQ(Tree(), Changes(before, TreeOf()));
}

// Meant in FWeb::mNewPage: beyond thirty pages the page list stays where it is and the number goes on.
TEST_F(PageCommands, BeyondThirtyPagesTheListStaysAndTheNumberGoesOn) {
  QStringList texts;
  for (int i = 0; i < 30; ++i) texts.append(QString(QChar(u'a' + i % 26)));
  MakePages(texts);
  EXPECT_EQ(29, Web().BoxPage->currentIndex());
  for (const int page : {31, 32}) {
    ASSERT_TRUE(run_.Choose("mNewPage"));
    ExpectPage(page);
    EXPECT_EQ(29, Web().BoxPage->currentIndex());
  }
  run_.Type("far");
  ASSERT_TRUE(run_.Choose("mSavePage"));
  EXPECT_EQ("far", LettersIn("card")["Page32.html"]);
  // Deletion goes by the list: page 30 goes, and the ones behind it move down.
  ASSERT_TRUE(run_.Choose("mDelPage"));
  EXPECT_EQ("far", LettersIn("card")["Page31.html"]);
  EXPECT_FALSE(LettersIn("card").contains("Page32.html"));
  ExpectPage(1);
}

TEST_F(PageCommands, NinetyNinePagesWork) {
  MakePages({"first"});
  ASSERT_TRUE(run_.Choose("mSavePage"));
  for (int page = 2; page <= 99; ++page)
    ASSERT_TRUE(PutFile(run_.PathInApp(QString("card/Page%1.html").arg(page)),
                        PageAround(QString(page % 7 + 1, u'p')).toUtf8()));
  ASSERT_TRUE(run_.Choose("mNewPage"));
  ExpectPage(100);
  Web().BoxPage->setCurrentIndex(0);
  run_.Settle();
  GoToPage(3);
  EXPECT_EQ("pppp", LettersInView());
  ASSERT_TRUE(run_.Choose("mDelPage"));
  EXPECT_EQ(99, LettersIn("card").size());
  EXPECT_EQ("ppppp", LettersIn("card")["Page3.html"]);
  EXPECT_EQ("pp", LettersIn("card")["Page98.html"]) << "page 99 has come down";
  EXPECT_EQ("", LettersIn("card")["Page99.html"]);
}

// Deleting.

TEST_F(PageCommands, DeletingTheOnlyPageGivesAFreshBlankOne) {
  MakePages({"one"});
  ASSERT_TRUE(run_.Choose("mSavePage"));
  const Tree before = TreeOf();
  ASSERT_TRUE(run_.Choose("mDelPage"));
  EXPECT_EQ((Tree{{"card/wgcard.html", FileIn("blank.html")}}), Changes(before, TreeOf()));
  ExpectPage(1);
  EXPECT_EQ("", LettersInView());
  EXPECT_FALSE(Web().Busy);
  EXPECT_TRUE(run_.Dialogs().Boxes.isEmpty()) << "nothing is asked";
}

TEST_F(PageCommands, DeletingTheLastPageGoesToTheOneBefore) {
  for (const int pages : {2, 3, 4}) {
    Answer({MessageAnswer::Ok});
    ASSERT_TRUE(run_.Choose("mNewProject"));
    MakePages(QStringList({"a", "b", "c", "d"}).mid(0, pages));
    ASSERT_TRUE(run_.Choose("mSavePage"));
    const Tree before = TreeOf();
    ASSERT_TRUE(run_.Choose("mDelPage"));
    EXPECT_EQ((Tree{{QString("card/Page%1.html").arg(pages), "<gone>"}}), Changes(before, TreeOf()));
    ExpectPage(pages - 1);
    EXPECT_EQ(pages - 2, Web().BoxPage->currentIndex());
    EXPECT_EQ(QString(QChar(u'a' + pages - 2)), LettersInView());
    EXPECT_FALSE(Web().Busy);
  }
}

TEST_F(PageCommands, DeletingPageThreeOfFourMovesTheLastOneDownAndShowsTheFirst) {
  MakePages({"a", "b", "c", "d"});
  ASSERT_TRUE(run_.Choose("mSavePage"));
  GoToPage(3);
  ASSERT_TRUE(run_.Choose("mDelPage"));
  EXPECT_EQ((QMap<QString, QString>{{"wgcard.html", "a"}, {"Page2.html", "b"}, {"Page3.html", "d"}}),
            LettersIn("card"));
  ExpectPage(1);
  EXPECT_EQ(0, Web().BoxPage->currentIndex());
  EXPECT_EQ("a", LettersInView());
  EXPECT_FALSE(Web().Busy);
}

TEST_F(PageCommands, DeletingPageOneOfFourMovesAllOthersDown) {
  MakePages({"a", "b", "c", "d"});
  GoToPage(1);
  ASSERT_TRUE(run_.Choose("mDelPage"));
  EXPECT_EQ((QMap<QString, QString>{{"wgcard.html", "b"}, {"Page2.html", "c"}, {"Page3.html", "d"}}),
            LettersIn("card"));
  EXPECT_EQ("b", LettersInView());
}

// Meant in FWeb::mDelPage: deleting page 1 of 2 leaves the program busy until it is started again.
TEST_F(PageCommands, DeletingPageOneOfTwoLeavesTheProgramBusyForEver) {
  MakePages({"a", "b"});
  GoToPage(1);
  ASSERT_TRUE(run_.Choose("mDelPage"));
  EXPECT_EQ((QMap<QString, QString>{{"wgcard.html", "b"}}), LettersIn("card"));
  EXPECT_EQ("a", LettersInView()) << "the deleted page stays in view";
  ExpectPage(1);
  ExpectDeadCommands();
  // These two still work, and write what is in view over the page that has moved down.
  ASSERT_TRUE(run_.Choose("mSavePage"));
  EXPECT_EQ((QMap<QString, QString>{{"wgcard.html", "a"}}), LettersIn("card"));
  run_.Type("x");
  ASSERT_TRUE(run_.Choose("mRefresh"));
  EXPECT_EQ((QMap<QString, QString>{{"wgcard.html", "ax"}}), LettersIn("card"));
}

// Meant in FWeb::mDelPage: deleting page 1 of 3 leaves a gap and the program busy until it is started again.
TEST_F(PageCommands, DeletingPageOneOfThreeLeavesAGapAndTheProgramBusyForEver) {
  MakePages({"a", "b", "c"});
  GoToPage(1);
  ASSERT_TRUE(run_.Choose("mDelPage"));
  EXPECT_EQ((QMap<QString, QString>{{"wgcard.html", "b"}, {"Page3.html", "c"}}), LettersIn("card"));
  EXPECT_EQ("a", LettersInView());
  ExpectPage(1);
  ExpectDeadCommands();
}

// Meant in FWeb::mDelPage: deleting page 2 of 3 leaves a gap and the program busy until it is started again.
TEST_F(PageCommands, DeletingPageTwoOfThreeLeavesAGapAndTheProgramBusyForEver) {
  MakePages({"a", "b", "c"});
  GoToPage(2);
  ASSERT_TRUE(run_.Choose("mDelPage"));
  EXPECT_EQ((QMap<QString, QString>{{"wgcard.html", "a"}, {"Page3.html", "c"}}), LettersIn("card"));
  EXPECT_EQ("b", LettersInView());
  ExpectPage(2);
  ExpectDeadCommands();
  ASSERT_TRUE(run_.Choose("mSavePage"));
  EXPECT_EQ("b", LettersIn("card")["Page2.html"]) << "and it is back";
}

// Meant in FWeb::mDelPage: deleting a page that isn't there deletes nothing and leaves the program busy until it is
// started again.
TEST_F(PageCommands, DeletingWithTheListBeyondThePagesDeletesNothingAndLeavesTheProgramBusyForEver) {
  MakePages({"a", "b"});
  ASSERT_TRUE(QFile::remove(run_.PathInApp("card/Page2.html")));
  const Tree before = TreeOf();
  ASSERT_TRUE(run_.Choose("mDelPage"));
  EXPECT_EQ(Tree(), Changes(before, TreeOf()));
  EXPECT_EQ("b", LettersInView());
  ExpectDeadCommands();
}

// Meant in FWeb::mDelPage: the page that the list names is deleted, which needn't be the one in view.
TEST_F(PageCommands, DeletingGoesByTheListAndNotByThePageInView) {
  MakePages({"a", "b", "c", "d"});
  ASSERT_TRUE(run_.Choose("mSavePage"));
  Web().Busy = true;
  GoToPage(3);
  Web().Busy = false;
  ASSERT_EQ(4, run_.program().project.CurPageNo());
  ASSERT_TRUE(run_.Choose("mDelPage"));
  EXPECT_EQ((QMap<QString, QString>{{"wgcard.html", "a"}, {"Page2.html", "b"}, {"Page3.html", "d"}}),
            LettersIn("card"));
}

TEST_F(PageCommands, AStuckProgramDoesntAnswerClicksAndTools) {
  MakePages({"a", "b"});
  GoToPage(1);
  ASSERT_TRUE(run_.Choose("mDelPage"));
  ASSERT_TRUE(Web().Busy);
  const bool before = Web().FrCaret->isVisible();
  const QPoint place = Web().FrCaret->pos();
  run_.browser->Click(QPoint(4, 4));
  EXPECT_EQ(before, Web().FrCaret->isVisible());
  EXPECT_EQ(place, Web().FrCaret->pos());
}

TEST_F(PageCommands, NoPageCommandRemovesAPicture) {
  MakePages({"a", "b", "c", "d"});
  AddPicture("p.gif", "p.gif");
  ASSERT_TRUE(run_.Choose("mSavePage"));
  ASSERT_TRUE(run_.Choose("mDelPage"));
  GoToPage(1);
  ASSERT_TRUE(run_.Choose("mRefresh"));
  ASSERT_TRUE(run_.Choose("mNewPage"));
  EXPECT_EQ("p.gif", FileIn("card/p.gif"));
}

}  // namespace
