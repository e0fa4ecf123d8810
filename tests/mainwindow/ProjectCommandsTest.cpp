#include <QTest>

#include "ProjectsFixture.h"

namespace {

using Letters = QMap<QString, QString>;

using ProjectCommands = ProjectsTest;

// The workspace at each event.

// Meant in FWeb::SaveProject: the first save of a project copies the files as they stand, without the edits of the page
// in view.
TEST_F(ProjectCommands, TheFirstSaveCopiesTheFilesAsTheyStandAndLeavesTheWorkspace) {
  MakePages({"one", "two"});
  ASSERT_TRUE(PutFile(run_.PathInApp("card/p.gif"), "picture"));
  ASSERT_TRUE(PutFile(run_.PathInApp("card/sub/deep.gif"), "deep"));
  const Tree before = TreeOf();
  SaveProjectAs("ann");
  // The text of page 2 was never written, and neither subfolders nor the hidden attribute go along.
  EXPECT_EQ((Tree{{"saved/", ""},
                  {"saved/ann/", ""},
                  {"saved/ann/p.gif", "picture"},
                  {"saved/ann/wgcard.html", before["card/wgcard.html"]},
                  {"saved/ann/Page2.html", before["card/Page2.html"]}}),
            Changes(before, TreeOf()));
  EXPECT_EQ((Letters{{"wgcard.html", "one"}, {"Page2.html", ""}}), LettersIn("saved/ann"));
  ExpectProject("ann", "saved/ann");
  ExpectFile("card/Page2.html");
  EXPECT_TRUE(IsHidden("card"));
  EXPECT_FALSE(IsHidden("saved/ann"));
  ASSERT_EQ(1, run_.Dialogs().Questions.size());
  EXPECT_EQ("Save Project", run_.Dialogs().Questions[0].title);
  EXPECT_EQ("Enter name for project.", run_.Dialogs().Questions[0].prompt);
  EXPECT_EQ("", run_.Dialogs().Questions[0].given);
  EXPECT_TRUE(run_.Dialogs().Boxes.isEmpty());
}

// The box is what refuses; the routine takes what it gets.
TEST_F(ProjectCommands, TheBoxForTheNameTakesNoneThatCantBeAFolder) {
  SaveProjectAs("ann");
  const auto& check = run_.Dialogs().Questions[0].check;
  ASSERT_TRUE(check);
  EXPECT_EQ("", check("ann"));
  EXPECT_EQ("", check("")) << "an empty answer gives up";
  EXPECT_EQ("", check("project1")) << "this one has a box of its own";
  EXPECT_EQ("/ can't be part of a name.", check("Holiday 2024/25"));
}

// Meant in FWeb::mRefresh: after the first save of a project Refresh writes the new file and shows the old one.
TEST_F(ProjectCommands, AfterTheFirstSaveRefreshWritesTheNewFileAndShowsTheOldOne) {
  MakePages({"one"});
  ASSERT_TRUE(run_.Choose("mSavePage"));
  SaveProjectAs("ann");
  run_.Type("more");
  ASSERT_TRUE(run_.Choose("mRefresh"));
  EXPECT_EQ("onemore", LettersIn("saved/ann")["wgcard.html"]);
  EXPECT_EQ("one", LettersIn("card")["wgcard.html"]);
  EXPECT_EQ("one", LettersInView());
  ExpectFile("card/wgcard.html");
}

TEST_F(ProjectCommands, AfterTheFirstSaveAPageChangePutsTheFileRight) {
  MakePages({"one", "two"});
  SaveProjectAs("ann");
  GoToPage(1);
  ExpectFile("saved/ann/wgcard.html");
  EXPECT_EQ("two", LettersIn("saved/ann")["Page2.html"]) << "the edits went into the new folder";
  EXPECT_EQ("", LettersIn("card")["Page2.html"]);
}

TEST_F(ProjectCommands, TheFirstSaveCutsThePathsOfPicturesInEveryPage) {
  MakePages({"one", "two"});
  const QByteArray page = "<body background=\"a/b/back.jpg\" >x<img src=\"file:///c/p.gif\" width=1></body>";
  ASSERT_TRUE(PutFile(run_.PathInApp("card/Page2.html"), page));
  ASSERT_TRUE(PutFile(run_.PathInApp("card/stray.html"), page));
  SaveProjectAs("ann");
  const QByteArray clean = "<body background=\"back.jpg\" >x<img src=\"p.gif\" width=1></body>";
  EXPECT_EQ(clean, FileIn("saved/ann/Page2.html"));
  EXPECT_EQ(clean, FileIn("saved/ann/stray.html"));
  EXPECT_EQ(page, FileIn("card/Page2.html"));
}

// Meant in FWeb::SaveProject: the last step of a save empties a page that can't be read.
TEST_F(ProjectCommands, TheLastStepOfASaveEmptiesAPageThatCantBeRead) {
  MakePages({"one", "two"});
  ASSERT_TRUE(run_.Choose("mSavePage"));
  const QString page = run_.PathInApp("saved/ann/Page2.html");
  // Another program takes it away between the copy and the reading of it.
  run_.test.platform.attributes.BeforeSet = [page](const QString& path) {
    if (path == page) QFile::remove(page);
  };
  SaveProjectAs("ann");
  run_.test.platform.attributes.BeforeSet = nullptr;
  EXPECT_EQ("", FileBytes(page));
  EXPECT_EQ("two", LettersIn("card")["Page2.html"]);
  EXPECT_EQ("one", LettersIn("saved/ann")["wgcard.html"]);
}

// Meant in FWeb::OpenProject: opening a project throws the unsaved one away without a question.
TEST_F(ProjectCommands, OpeningAProjectThrowsTheUnsavedOneAwayWithoutAQuestion) {
  MakePages({"one"});
  ASSERT_TRUE(run_.Choose("mSavePage"));
  SaveProjectAs("ann");
  Answer({MessageAnswer::Ok});
  ASSERT_TRUE(run_.Choose("mNewProject"));
  run_.Type("unsaved");
  ASSERT_TRUE(run_.Choose("mSavePage"));
  ASSERT_TRUE(PutFile(run_.PathInApp("card/p.gif"), "picture"));
  const Tree before = TreeOf();
  OpenSaved("ann");
  EXPECT_TRUE(run_.Dialogs().Boxes.isEmpty());
  EXPECT_EQ((Tree{{"card/wgcard.html", "<gone>"}, {"card/p.gif", "<gone>"}}), Changes(before, TreeOf()))
      << "nothing is copied";
  EXPECT_TRUE(IsHidden("card"));
  ExpectProject("ann", "saved/ann");
  ExpectFile("saved/ann/wgcard.html");
  EXPECT_EQ("one", LettersInView());
  EXPECT_FALSE(run_.modMain.Ops()->isVisible());
}

// Meant in FWeb::OpenProject: opening a project while the list stands beyond page 1 writes the page in view into that
// project.
TEST_F(ProjectCommands, OpeningWithTheListElsewhereWritesTheOldPageIntoTheNewProject) {
  MakePages({"one", "two"});
  ASSERT_TRUE(run_.Choose("mSavePage"));
  SaveProjectAs("ann");
  Answer({MessageAnswer::Ok});
  ASSERT_TRUE(run_.Choose("mNewProject"));
  MakePages({"x", "y", "z"});  // "card" kept its pages, so these are pages 1, 3 and 4
  ASSERT_EQ(4, run_.program().project.CurPageNo());
  const QByteArray view = InView();
  const QByteArray page1 = FileIn("saved/ann/wgcard.html");
  const QByteArray page2 = FileIn("saved/ann/Page2.html");
  OpenSaved("ann");
  // It went in as page 4, and the count of the pages then closed the gap.
  EXPECT_EQ((Tree{{"Page2.html", page2}, {"Page3.html", view}, {"wgcard.html", page1}}), TreeOf("saved/ann"));
  EXPECT_EQ(1, run_.program().project.CurPageNo());
  EXPECT_EQ(0, Web().BoxPage->currentIndex());
  EXPECT_EQ("one", LettersInView());
}

TEST_F(ProjectCommands, OpeningAProjectWithoutItsFirstPageMakesABlankOneThere) {
  ASSERT_TRUE(PutFile(run_.PathInApp("saved/bare/p.gif"), "picture"));
  OpenSaved("bare");
  EXPECT_EQ((Tree{{"p.gif", "picture"}, {"wgcard.html", FileIn("blank.html")}}), TreeOf("saved/bare"));
  ExpectProject("bare", "saved/bare");
}

TEST_F(ProjectCommands, ANewProjectAsksFirst) {
  MakePages({"one"});
  const Tree before = TreeOf();
  Answer({MessageAnswer::Cancel});
  ASSERT_TRUE(run_.Choose("mNewProject"));
  EXPECT_EQ(Tree(), Changes(before, TreeOf()));
  EXPECT_EQ("one", LettersInView());
  EXPECT_FALSE(Web().Busy);
  ASSERT_EQ(1, run_.Dialogs().Boxes.size());
  const auto& box = run_.Dialogs().Boxes[0];
  EXPECT_EQ("This will discard current work if not already saved as a saved project. Proceed?", box.text);
  EXPECT_EQ("Discard?", box.title);
  EXPECT_EQ(MessageIcon::Question, box.icon);
  EXPECT_EQ(MessageButtons::OkCancel, box.buttons);
}

TEST_F(ProjectCommands, ANewProjectOnTheUnsavedOneEmptiesTheWorkspace) {
  MakePages({"one", "two"});
  ASSERT_TRUE(PutFile(run_.PathInApp("card/p.gif"), "picture"));
  const Tree before = TreeOf();
  Answer({MessageAnswer::Ok});
  ASSERT_TRUE(run_.Choose("mNewProject"));
  EXPECT_EQ((Tree{{"card/p.gif", "<gone>"}, {"card/Page2.html", "<gone>"}, {"card/wgcard.html", FileIn("blank.html")}}),
            Changes(before, TreeOf()));
  EXPECT_TRUE(IsHidden("card"));
  ExpectProject("Project1", "card");
  ExpectFile("card/wgcard.html");
  EXPECT_EQ(1, run_.program().project.CurPageNo());
}

// Meant in FWeb::mNewProject: a new project after a save brings back what the workspace held.
TEST_F(ProjectCommands, ANewProjectAfterASaveBringsTheOldPagesBack) {
  MakePages({"one", "two"});
  ASSERT_TRUE(run_.Choose("mSavePage"));
  SaveProjectAs("ann");
  run_.Type("lost");
  run_.test.platform.attributes.Clear(run_.PathInApp("card"));
  const Tree before = TreeOf();
  Answer({MessageAnswer::Ok});
  ASSERT_TRUE(run_.Choose("mNewProject"));
  EXPECT_EQ(Tree(), Changes(before, TreeOf())) << "no page is blanked, and the saved project isn't written";
  EXPECT_EQ("one", LettersInView());
  EXPECT_TRUE(IsHidden("card"));
  ExpectProject("Project1", "card");
  EXPECT_EQ(0, Web().BoxPage->currentIndex());
}

TEST_F(ProjectCommands, TheExitDeletesTheWorkspaceAndLeavesTheSavedProjects) {
  MakePages({"one"});
  SaveProjectAs("ann");
  const Tree before = TreeOf();
  Exit({MessageAnswer::No});
  EXPECT_EQ((Tree{{"card/", "<gone>"}, {"card/wgcard.html", "<gone>"}}), Changes(before, TreeOf()));
}

// Names.

TEST_F(ProjectCommands, TheDefaultNameIsRefusedInAnyCaseAndAskedForAgain) {
  Answer({}, {"Project1", "pRoJeCt1", "PROJECT1", ""});
  ASSERT_TRUE(run_.Choose("mSaveProject"));
  EXPECT_EQ(4, run_.Dialogs().Questions.size());
  ASSERT_EQ(3, run_.Dialogs().Boxes.size());
  EXPECT_EQ("The name Project1 cannot be used. It is the default name for unsaved projects.",
            run_.Dialogs().Boxes[0].text);
  EXPECT_EQ(MessageIcon::Information, run_.Dialogs().Boxes[0].icon);
  ExpectProject("Project1", "card");
  EXPECT_EQ(Tree(), TreeOf("saved"));
  EXPECT_FALSE(Web().Busy);
  // With blanks around it is another name.
  SaveProjectAs("Project1 ");
  EXPECT_TRUE(QDir(run_.PathInApp("saved/Project1 ")).exists());
}

// Meant in FWeb::SaveProject: blanks around a project's name stay when it is saved and go when it is opened.
TEST_F(ProjectCommands, ANameIsNotTrimmedOnSavingButOnOpening) {
  SaveProjectAs(" a ");
  ExpectProject(" a ", "saved/ a ");
  EXPECT_EQ(QStringList{"wgcard.html"}, Names("saved/ a "));
  const Tree before = TreeOf();
  InPanel(" a ", 0);
  EXPECT_EQ(QStringList{"No project is selected."}, run_.Dialogs().Messages());
  EXPECT_EQ(MessageIcon::Information, run_.Dialogs().Boxes[0].icon);
  InPanel(" a ", 2, {MessageAnswer::Ok});
  EXPECT_TRUE(run_.Dialogs().Boxes.isEmpty()) << "deleting says nothing at all";
  EXPECT_EQ(Tree(), Changes(before, TreeOf()));
}

// Meant in FWeb::SaveProject: a project that is replaced goes before the new one is copied.
TEST_F(ProjectCommands, ReplacingAProjectRemovesTheOldFolderFirst) {
  MakePages({"old", "older"});
  ASSERT_TRUE(PutFile(run_.PathInApp("saved/ann/sub/deep.gif"), "x"));
  ASSERT_TRUE(PutFile(run_.PathInApp("saved/ann/p.gif"), "x"));
  Answer({MessageAnswer::Cancel}, {"ann"});
  const Tree before = TreeOf();
  ASSERT_TRUE(run_.Choose("mSaveProject"));
  EXPECT_EQ(Tree(), Changes(before, TreeOf()));
  ExpectProject("Project1", "card");
  ASSERT_EQ(1, run_.Dialogs().Boxes.size());
  EXPECT_EQ("A project is already saved with that name. Replace it?", run_.Dialogs().Boxes[0].text);
  EXPECT_EQ(MessageIcon::Question, run_.Dialogs().Boxes[0].icon);
  EXPECT_EQ(MessageButtons::OkCancel, run_.Dialogs().Boxes[0].buttons);
  Answer({MessageAnswer::Ok}, {"ann"});
  ASSERT_TRUE(run_.Choose("mSaveProject"));
  EXPECT_EQ(QStringList({"Page2.html", "wgcard.html"}), Names("saved/ann"));
  ExpectProject("ann", "saved/ann");
}

// Meant in FWeb::SaveProject: a project whose files couldn't be copied goes by its new name all the same.
TEST_F(ProjectCommands, AFailedCopyStillMovesToTheNewName) {
  MakePages({"one"});
  ASSERT_TRUE(run_.Choose("mSavePage"));
  const Tree before = TreeOf();
  SaveProjectAs("no/where");
  ExpectProject("no/where", "saved/no/where");
  EXPECT_EQ((Tree{{"saved/", ""}}), Changes(before, TreeOf()));
  // Nothing can be written there, and nothing is said.
  run_.Type("x");
  ASSERT_TRUE(run_.Choose("mSavePage"));
  EXPECT_EQ((Tree{{"saved/", ""}}), Changes(before, TreeOf()));
  EXPECT_TRUE(run_.Dialogs().Boxes.isEmpty());
}

TEST_F(ProjectCommands, ANameTooLongForAFolderMovesJustTheSame) {
  MakePages({"one"});
  const Tree before = TreeOf();
  const QString name(300, u'n');
  SaveProjectAs(name);
  ExpectProject(name, "saved/" + name);
  EXPECT_EQ((Tree{{"saved/", ""}}), Changes(before, TreeOf()));
}

TEST_F(ProjectCommands, NoNameLeadsOutOfTheSavedProjects) {
  MakePages({"one"});
  SaveProjectAs("ann");
  Answer({MessageAnswer::Ok});
  ASSERT_TRUE(run_.Choose("mNewProject"));
  ASSERT_TRUE(PutFile(run_.PathInApp("samples/s.jpg"), "sample"));
  ASSERT_TRUE(PutFile(run_.test.Path("desktop/mine.html"), "<img src=\"a/b.gif\" >"));
  const Tree before = TreeOf();
  for (const char* name : {"..", ".", "../samples", "../../desktop", "ann/..", "../new", "./", "ann/../../samples"}) {
    Answer({MessageAnswer::Ok}, {name, ""});
    ASSERT_TRUE(run_.Choose("mSaveProject"));
    EXPECT_EQ(Tree(), Changes(before, TreeOf())) << name;
    EXPECT_EQ("<img src=\"a/b.gif\" >", FileBytes(run_.test.Path("desktop/mine.html"))) << name;
    EXPECT_EQ(2, run_.Dialogs().Questions.size()) << "the name is asked for again: " << name;
    EXPECT_TRUE(run_.Dialogs().Boxes.isEmpty()) << name;
    ExpectProject("Project1", "card");
  }
}

TEST_F(ProjectCommands, ARowThatIsNoProjectsNameWithoutItsBlanksTouchesNothing) {
  SaveProjectAs("ann");
  for (const char* name : {" ", " ..", " . "}) QDir(run_.PathInApp("saved")).mkdir(name);
  const Tree before = TreeOf();
  for (const char* name : {" ", " ..", " . "}) {
    InPanel(name, 2, {MessageAnswer::Ok});
    EXPECT_TRUE(run_.Dialogs().Boxes.isEmpty()) << name;
    InPanel(name, 0);
    EXPECT_EQ(QStringList{StringText(138)}, run_.Dialogs().Messages()) << name;
    EXPECT_EQ(Tree(), Changes(before, TreeOf())) << name;
    ExpectProject("ann", "saved/ann");
  }
}

TEST_F(ProjectCommands, ReturnInTheListOpensWhatIsChosenThere) {
  ASSERT_TRUE(PutFile(run_.PathInApp("saved/ann/wgcard.html"), "<html><body>a</body></html>"));
  Answer({});
  ASSERT_TRUE(run_.Choose("mOpenProject"));
  ASSERT_TRUE(QTest::qWaitForWindowActive(run_.modMain.Ops()));
  QTest::keyClick(Panel().BoxProj, Qt::Key_Return);
  EXPECT_EQ(QStringList{"No project is selected."}, run_.Dialogs().Messages());
  QTest::keyClick(Panel().BoxProj, Qt::Key_Down);
  QTest::keyClick(Panel().BoxProj, Qt::Key_Enter, Qt::KeypadModifier);
  run_.Settle();
  EXPECT_EQ("ann", run_.program().project.ProjectName());
  EXPECT_FALSE(run_.modMain.Ops()->isVisible());
  EXPECT_EQ(1, run_.Dialogs().Boxes.size());
}

TEST_F(ProjectCommands, ThePanelOpensWithItsListInUseAndEscapeLeavesIt) {
  SaveProjectAs("ann");
  Answer({});
  ASSERT_TRUE(run_.Choose("mOpenProject"));
  EXPECT_EQ(Panel().BoxProj, run_.modMain.Ops()->focusWidget());
  Panel().bOpenProj[2]->setFocus();
  ASSERT_TRUE(run_.Choose("mOpenProject"));
  EXPECT_EQ(Panel().BoxProj, run_.modMain.Ops()->focusWidget());
  QTest::keyClick(Panel().BoxProj, Qt::Key_Escape);
  EXPECT_FALSE(run_.modMain.Ops()->isVisible());
}

// The project's state.

TEST_F(ProjectCommands, AProjectWhoseFolderHasGoneIsAskedForItsNameAndNothingIsCopied) {
  MakePages({"one"});
  SaveProjectAs("ann");
  ASSERT_TRUE(QDir(run_.PathInApp("saved/ann")).removeRecursively());
  const Tree before = TreeOf();
  SaveProjectAs("bob");
  EXPECT_EQ(1, run_.Dialogs().Questions.size());
  ExpectProject("bob", "saved/bob");
  EXPECT_EQ(Tree(), Changes(before, TreeOf()));
}

TEST_F(ProjectCommands, TheProjectThatIsReplacedGoesAlsoWhereThereIsNothingToCopy) {
  MakePages({"one"});
  SaveProjectAs("ann");
  ASSERT_TRUE(QDir(run_.PathInApp("saved/ann")).removeRecursively());
  ASSERT_TRUE(PutFile(run_.PathInApp("saved/bob/wgcard.html"), "his"));
  ASSERT_TRUE(PutFile(run_.PathInApp("saved/bob/sub/p.gif"), "his"));
  const Tree before = TreeOf();
  Answer({MessageAnswer::Ok}, {"bob"});
  ASSERT_TRUE(run_.Choose("mSaveProject"));
  EXPECT_EQ((Tree{{"saved/bob/", "<gone>"},
                  {"saved/bob/wgcard.html", "<gone>"},
                  {"saved/bob/sub/", "<gone>"},
                  {"saved/bob/sub/p.gif", "<gone>"}}),
            Changes(before, TreeOf()));
  ExpectProject("bob", "saved/bob");
}

TEST_F(ProjectCommands, FromAnyProjectToAnyOther) {
  MakePages({"one"});
  ASSERT_TRUE(run_.Choose("mSavePage"));
  SaveProjectAs("ann");
  ExpectProject("ann", "saved/ann");
  Answer({MessageAnswer::Ok});
  ASSERT_TRUE(run_.Choose("mNewProject"));
  ExpectProject("Project1", "card");
  run_.Type("two");
  ASSERT_TRUE(run_.Choose("mSavePage"));
  SaveProjectAs("bob");
  ExpectProject("bob", "saved/bob");
  OpenSaved("ann");
  ExpectProject("ann", "saved/ann");
  EXPECT_EQ("one", LettersInView());
  OpenSaved("bob");
  ExpectProject("bob", "saved/bob");
  EXPECT_EQ("onetwo", LettersInView());
  OpenSaved("bob");
  ExpectProject("bob", "saved/bob");
  Answer({MessageAnswer::Ok});
  ASSERT_TRUE(run_.Choose("mNewProject"));
  ExpectProject("Project1", "card");
  EXPECT_EQ("", LettersInView()) << "opening a saved project had emptied the workspace";
}

TEST_F(ProjectCommands, AProjectOfFiveThousandFilesIsSavedAndOpenedWhole) {
  MakePages({"one"});
  ASSERT_TRUE(run_.Choose("mSavePage"));
  for (int i = 0; i < 5000; ++i)
    ASSERT_TRUE(PutFile(run_.PathInApp(QString("card/picture%1.gif").arg(i)), QByteArray::number(i)));
  SaveProjectAs("big");
  EXPECT_EQ(TreeOf("card"), TreeOf("saved/big"));
  OpenSaved("big");
  EXPECT_EQ(5001, Names("saved/big").size());
  EXPECT_EQ("one", LettersInView());
  DeleteSaved("big");
  EXPECT_EQ(QStringList(), Names("saved"));
}

TEST_F(ProjectCommands, ADeletedProjectGoesToTheTrashWhole) {
  run_.test.platform.shell.HasTrash = true;
  SaveProjectAs("ann");
  DeleteSaved("ann");
  EXPECT_EQ(QStringList{run_.PathInApp("saved/ann")}, run_.test.platform.shell.Trashed);
  EXPECT_EQ(QStringList(), Names("saved"));
}

}  // namespace
