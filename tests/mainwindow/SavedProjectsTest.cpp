// The panel with the saved projects.
#include <QTest>

#include "ProjectsFixture.h"

namespace {

using Letters = QMap<QString, QString>;
using SavedProjects = ProjectsTest;

TEST_F(SavedProjects, WithoutSavedProjectsThePanelDoesntOpen) {
  for (const bool withFolder : {false, true}) {
    if (withFolder) QDir().mkpath(run_.PathInApp("saved"));
    Answer({});
    ASSERT_TRUE(run_.Choose("mOpenProject"));
    ASSERT_EQ(1, run_.Dialogs().Boxes.size());
    EXPECT_EQ("There are no saved projects.", run_.Dialogs().Boxes[0].text);
    EXPECT_EQ(MessageIcon::Information, run_.Dialogs().Boxes[0].icon);
    EXPECT_FALSE(run_.modMain.Ops()->isVisible());
    EXPECT_FALSE(Web().Busy);
  }
}

TEST_F(SavedProjects, ThePanelShowsTheFoldersInTheirOrderAndItsTexts) {
  for (const char* name : {"zoe", "Bob", "ann"}) QDir().mkpath(run_.PathInApp("saved/") + name);
  ASSERT_TRUE(PutFile(run_.PathInApp("saved/file"), "x"));
  Answer({});
  ASSERT_TRUE(run_.Choose("mOpenProject"));
  ASSERT_TRUE(run_.Choose("mOpenProject"));
  QStringList rows;
  for (int i = 0; i < Panel().BoxProj->count(); ++i) rows.append(Panel().BoxProj->item(i)->text());
  EXPECT_EQ(QStringList({"ann", "Bob", "zoe"}), rows);
  EXPECT_EQ("OK", Panel().bOpenProj[0]->text());
  EXPECT_EQ("Open selected project.", Panel().bOpenProj[0]->toolTip());
  EXPECT_EQ("Cancel", Panel().bOpenProj[1]->text());
  EXPECT_EQ("Cancel and close window.", Panel().bOpenProj[1]->toolTip());
  EXPECT_EQ("Delete Project", Panel().bOpenProj[2]->text());
  EXPECT_EQ("Delete selected project.", Panel().bOpenProj[2]->toolTip());
  EXPECT_EQ("Open Saved Project", run_.modMain.Ops()->windowTitle());
  EXPECT_FALSE(Web().Busy) << "the window is modeless";
  Panel().bOpenProj[1]->click();
  EXPECT_FALSE(run_.modMain.Ops()->isVisible());
}

TEST_F(SavedProjects, ADoubleClickOnARowOpensItsProject) {
  ASSERT_TRUE(PutFile(run_.PathInApp("saved/ann/wgcard.html"), "<html><body>hers</body></html>"));
  ASSERT_TRUE(run_.Choose("mOpenProject"));
  const QPoint row = Panel().BoxProj->visualItemRect(Panel().BoxProj->item(0)).center();
  QTest::mouseClick(Panel().BoxProj->viewport(), Qt::LeftButton, {}, row);
  run_.Settle();
  EXPECT_EQ("Project1", run_.program().project.ProjectName()) << "a single click only selects";
  QTest::mouseDClick(Panel().BoxProj->viewport(), Qt::LeftButton, {}, row);
  run_.Settle();
  EXPECT_EQ("ann", run_.program().project.ProjectName());
  EXPECT_EQ("hers", LettersInView());
  EXPECT_FALSE(run_.modMain.Ops()->isVisible());
}

TEST_F(SavedProjects, AfterADeleteNoProjectIsSelected) {
  for (const char* name : {"ann", "bob", "cid"}) QDir().mkpath(run_.PathInApp("saved/") + name);
  Answer({MessageAnswer::Ok, MessageAnswer::Ok});
  ASSERT_TRUE(run_.Choose("mOpenProject"));
  Panel().BoxProj->setCurrentRow(1);
  Panel().bOpenProj[2]->click();
  run_.Settle();
  EXPECT_EQ(2, Panel().BoxProj->count());
  EXPECT_FALSE(QFileInfo::exists(run_.PathInApp("saved/bob")));
  Panel().bOpenProj[2]->click();
  EXPECT_EQ("No project is selected.", run_.Dialogs().Messages().last());
  EXPECT_EQ(2, Panel().BoxProj->count());
}

// Meant in OpenProjectPanel::Delete: the project that is open may be deleted, and nothing warns.
TEST_F(SavedProjects, TheOpenProjectMayBeDeletedAndNothingWarns) {
  MakePages({"one"});
  SaveProjectAs("ann");
  const Tree before = TreeOf();
  DeleteSaved("ann", MessageAnswer::Cancel);
  EXPECT_EQ(Tree(), Changes(before, TreeOf()));
  DeleteSaved("ann");
  ASSERT_EQ(1, run_.Dialogs().Boxes.size());
  EXPECT_EQ("Delete ann project?", run_.Dialogs().Boxes[0].text);
  EXPECT_EQ(MessageIcon::Question, run_.Dialogs().Boxes[0].icon);
  EXPECT_EQ(MessageButtons::OkCancel, run_.Dialogs().Boxes[0].buttons);
  EXPECT_EQ((Tree{{"saved/ann/", "<gone>"}, {"saved/ann/wgcard.html", "<gone>"}}), Changes(before, TreeOf()));
  EXPECT_EQ(0, Panel().BoxProj->count());
  EXPECT_TRUE(run_.modMain.Ops()->isVisible());
  ExpectProject("ann", "saved/ann");
  // A write is lost in silence.
  ASSERT_TRUE(run_.Choose("mSavePage"));
  EXPECT_FALSE(QDir(run_.PathInApp("saved/ann")).exists());
  Answer({});
  Panel().bOpenProj[2]->click();
  Panel().bOpenProj[0]->click();
  EXPECT_EQ(QStringList({"No project is selected.", "No project is selected."}), run_.Dialogs().Messages());
}

TEST_F(SavedProjects, AProjectThatHasGoneMeanwhileIsNotOpenedAndNotDeleted) {
  SaveProjectAs("ann");
  SaveProjectAs("bob");
  ASSERT_TRUE(PutFile(run_.PathInApp("saved/bob/x"), "x"));
  Answer({});
  ASSERT_TRUE(run_.Choose("mOpenProject"));
  Panel().BoxProj->setCurrentRow(1);
  ASSERT_TRUE(QDir(run_.PathInApp("saved/bob")).removeRecursively());
  Panel().bOpenProj[2]->click();
  EXPECT_TRUE(run_.Dialogs().Boxes.isEmpty());
  Panel().bOpenProj[0]->click();
  EXPECT_EQ(QStringList{"No project is selected."}, run_.Dialogs().Messages());
  EXPECT_EQ(2, Panel().BoxProj->count());
}

// Meant in OpenProjectPanel::OnClick: the open-project panel works while the main window is busy, and the other way
// round.
TEST_F(SavedProjects, TheTwoGuardsDontKnowEachOther) {
  SaveProjectAs("ann");
  SaveProjectAs("bob");
  Answer({});
  ASSERT_TRUE(run_.Choose("mOpenProject"));
  Panel().BoxProj->setCurrentRow(0);
  // The main window is busy, and the panel works all the same.
  Web().Busy = true;
  Panel().bOpenProj[0]->click();
  run_.Settle();
  ExpectProject("ann", "saved/ann");
  Web().Busy = false;
  // One guard for all panels of the window.
  ASSERT_TRUE(run_.Choose("mOpenProject"));
  Panel().BoxProj->setCurrentRow(0);
  run_.modMain.Ops()->Busy = true;
  for (const int button : {0, 1, 2}) Panel().bOpenProj[std::size_t(button)]->click();
  EXPECT_TRUE(run_.modMain.Ops()->isVisible());
  EXPECT_TRUE(run_.Dialogs().Boxes.isEmpty());
  EXPECT_TRUE(QDir(run_.PathInApp("saved/ann")).exists());
  // The main window doesn't ask it.
  ASSERT_TRUE(run_.Choose("mNewPage"));
  EXPECT_EQ(2, run_.program().project.CurPageNo());
  run_.modMain.Ops()->Busy = false;
}

TEST_F(SavedProjects, ABusyMainWindowOpensAProjectWithoutItsListsHandler) {
  MakePages({"one", "two"});
  ASSERT_TRUE(run_.Choose("mSavePage"));
  SaveProjectAs("ann");
  Answer({});
  ASSERT_TRUE(run_.Choose("mOpenProject"));
  Panel().BoxProj->setCurrentRow(0);
  run_.Type("lost");
  Web().Busy = true;
  Panel().bOpenProj[0]->click();
  run_.Settle();
  EXPECT_EQ((Letters{{"wgcard.html", "one"}, {"Page2.html", "two"}}), LettersIn("saved/ann"));
  EXPECT_EQ("one", LettersInView());
}

}  // namespace
