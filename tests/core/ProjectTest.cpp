#include "Project.h"

#include <gtest/gtest.h>

#include <QDir>

#include "TestPlatform.h"

namespace {

class ProjectTest : public ::testing::Test {
 protected:
  ProjectTest() { EXPECT_TRUE(QDir().mkpath(project_.SavedFolder())); }
  QString InApp(const QString& name) const { return test_.program.AppPath + u'/' + name; }
  bool IsHidden(const QString& folder) {
    return (test_.program.Files.Attributes().Get(folder).value_or(0) & AttributeHidden) != 0;
  }
  QStringList FilesOf(const QString& folder) { return QDir(folder).entryList(QDir::Files | QDir::Hidden); }

  TestProgram test_;
  Project& project_ = test_.program.project;
};

TEST_F(ProjectTest, PageOneHasANameOfItsOwn) {
  EXPECT_EQ("wgcard.html", Project::PageName(1));
  EXPECT_EQ("Page2.html", Project::PageName(2));
  EXPECT_EQ("Page31.html", Project::PageName(31));
  EXPECT_EQ(InApp("card/Page2.html"), project_.PageFile(2));
}

TEST_F(ProjectTest, TheNameAloneTellsTheUnsavedOne) {
  project_.SavedAs("Project1", InApp("saved/ann"));
  EXPECT_TRUE(project_.IsUnsaved());
  for (const char* name : {"project1", "Project1 ", "ann", ""}) {
    project_.SavedAs(name, project_.CardPath());
    EXPECT_FALSE(project_.IsUnsaved()) << name;
  }
}

TEST_F(ProjectTest, ANewOneEmptiesTheWorkspaceThatItStandsIn) {
  ASSERT_TRUE(PutFile(project_.CardPath() + "/Page2.html", "old"));
  project_.TurnTo(2);
  project_.StartNew();
  EXPECT_EQ(QStringList(), FilesOf(project_.CardPath()));
  EXPECT_TRUE(IsHidden(project_.CardPath()));
  EXPECT_EQ(1, project_.CurPageNo());
  EXPECT_EQ(InApp("card/wgcard.html"), project_.CurPageFile());
}

TEST_F(ProjectTest, BehindASavedOnePagesLeftInTheWorkspaceComeBack) {
  ASSERT_TRUE(PutFile(project_.CardPath() + "/Page2.html", "old"));
  project_.SavedAs("ann", InApp("saved/ann"));
  project_.StartNew();
  EXPECT_EQ(QStringList("Page2.html"), FilesOf(project_.CardPath()));
  EXPECT_TRUE(IsHidden(project_.CardPath()));
  EXPECT_EQ(project_.CardPath(), project_.WorkPath());
  EXPECT_TRUE(project_.IsUnsaved());
}

TEST_F(ProjectTest, OpeningASavedOneWipesTheWorkspaceAndKeepsThePageInView) {
  ASSERT_TRUE(PutFile(project_.CardPath() + "/Page2.html", "old"));
  project_.TurnTo(2);
  project_.OpenSaved("ann", InApp("saved/ann"));
  EXPECT_EQ(QStringList(), FilesOf(project_.CardPath()));
  EXPECT_TRUE(IsHidden(project_.CardPath()));
  EXPECT_EQ("ann", project_.ProjectName());
  EXPECT_EQ(InApp("saved/ann"), project_.WorkPath());
  EXPECT_EQ(2, project_.CurPageNo());
  EXPECT_EQ(InApp("card/Page2.html"), project_.CurPageFile());
}

TEST_F(ProjectTest, AfterTheFirstSaveThePageFileIsStillThatOfTheWorkspace) {
  project_.TurnTo(1);
  project_.SavedAs("ann", InApp("saved/ann"));
  EXPECT_EQ(InApp("card/wgcard.html"), project_.CurPageFile());
  EXPECT_EQ(InApp("saved/ann/wgcard.html"), project_.PageFile(1));
}

TEST_F(ProjectTest, RemovingTheWorkspaceLeavesNothingAndNothingIsNoFailure) {
  project_.WipeWorkspace();
  ASSERT_TRUE(QDir(project_.CardPath()).exists());
  project_.RemoveWorkspace();
  EXPECT_FALSE(QDir(project_.CardPath()).exists());
  project_.RemoveWorkspace();
  EXPECT_FALSE(QDir(project_.CardPath()).exists());
}

}  // namespace
