#include <QComboBox>
#include <QListWidget>
#include <QPushButton>

#include "OpenProjectPanel.h"
#include "ProgramFixture.h"

namespace {

class Pages : public ProgramTest {
 protected:
  Pages() { EXPECT_TRUE(run_.Start()); }

  QString Raw(const QString& name) {
    const Attribute* const attribute = View().WBDocument()->tree().bodyNode()->FindAttribute(name);
    return attribute ? attribute->value : QString("<absent>");
  }
  QString FontSize() { return View().WBDocument()->body().style().fontSize(); }
  void Load(const QString& path) {
    Web().LoadPage(path);
    run_.Settle();
  }
  OpenProjectPanel& Panel() { return *run_.modMain.Ops()->FrOps1; }
};

TEST_F(Pages, TheFirstPageOfAStartIsStamped) {
  EXPECT_EQ("small", FontSize());
  EXPECT_EQ("3", View().BodyFontSize());
  EXPECT_EQ("#0000FF", Raw("link"));
}

TEST_F(Pages, ABlankPageOpenedAgainIsReadAndItsSizeTurnsToTwo) {
  Load(run_.program().project.CurPageFile());
  EXPECT_EQ("2", View().BodyFontSize());
  EXPECT_EQ("x-small", FontSize());
  EXPECT_EQ("<absent>", Raw("link"));
  EXPECT_EQ("", View().BodyFontName());
}

TEST_F(Pages, ASavedProjectThatIsOpenedIsReadToo) {
  SaveProjectAs("ann");
  Answer({});
  ASSERT_TRUE(run_.Choose("mOpenProject"));
  Panel().BoxProj->setCurrentRow(0);
  Panel().bOpenProj[0]->click();
  run_.Settle();
  EXPECT_EQ("ann", run_.program().project.ProjectName());
  EXPECT_EQ("2", View().BodyFontSize());
}

TEST_F(Pages, AMissingFileIsMadeFromTheBlankPageAndStamped) {
  const QString path = run_.PathInApp("card/Page2.html");
  Load(path);
  EXPECT_EQ(FileIn("blank.html"), FileIn("card/Page2.html"));
  EXPECT_EQ("small", FontSize());
  // The second time it is there.
  Load(path);
  EXPECT_EQ("x-small", FontSize());
}

TEST_F(Pages, ANewPageIsStampedWithTheFieldsOfThePageSeenBefore) {
  const QString path = run_.PathInApp("card/wgcard.html");
  ASSERT_TRUE(PutFile(path,
                      "<HTML><BODY TEXT=\"#AA0000\" LINK=\"#00AA00\" BGCOLOR=\"#0000AA\" "
                      "STYLE=\"font-family: Tahoma; font-size: large\">x</BODY></HTML>"));
  Load(path);
  run_.Choose("mNewPage");
  ASSERT_EQ(2, run_.program().project.CurPageNo());
  EXPECT_EQ("#AA0000", Raw("text"));
  EXPECT_EQ("#00AA00", Raw("link"));
  EXPECT_EQ("#00AA00", Raw("vlink"));
  EXPECT_EQ("large", FontSize());
  EXPECT_EQ("Tahoma", View().WBDocument()->body().style().fontFamily());
  // The background isn't read from pages, so the new one has the start's.
  EXPECT_EQ("#FFFFFF", Raw("bgcolor"));
}

TEST_F(Pages, LoadPageMakesTheFolderOfADeletedProjectAgainWithOneBlankPage) {
  SaveProjectAs("ann");
  Answer({MessageAnswer::Ok});
  ASSERT_TRUE(run_.Choose("mOpenProject"));
  Panel().BoxProj->setCurrentRow(0);
  Panel().bOpenProj[2]->click();
  ASSERT_FALSE(QDir(run_.PathInApp("saved/ann")).exists());
  run_.Choose("mNewPage");
  EXPECT_EQ(QStringList{"wgcard.html"}, Names("saved/ann"));
  EXPECT_EQ(FileIn("blank.html"), FileIn("saved/ann/wgcard.html"));
  EXPECT_EQ(1, run_.program().project.CurPageNo());
}

TEST_F(Pages, NewProjectWhileASavedOneIsOpenKeepsWhatTheWorkspaceHeld) {
  run_.Type("old");
  run_.Choose("mNewPage");
  SaveProjectAs("ann");
  run_.Type("more");
  Answer({MessageAnswer::Ok});
  run_.Choose("mNewProject");
  EXPECT_EQ("Project1", run_.program().project.ProjectName());
  EXPECT_EQ(run_.PathInApp("card"), run_.program().project.WorkPath());
  EXPECT_EQ("old", ShownLetters(*View().WBDocument()));
  EXPECT_EQ(QStringList({"Page2.html", "wgcard.html"}), Names("card"));
  EXPECT_EQ(AttributeHidden, run_.test.platform.attributes.Get(run_.PathInApp("card")).value_or(0) & AttributeHidden);
}

TEST_F(Pages, NewProjectWhileTheUnsavedOneIsOpenEmptiesTheWorkspace) {
  run_.Type("old");
  run_.Choose("mNewPage");
  Answer({MessageAnswer::Ok});
  run_.Choose("mNewProject");
  EXPECT_EQ(QStringList{"wgcard.html"}, Names("card"));
  EXPECT_EQ("", ShownLetters(*View().WBDocument()));
  EXPECT_EQ(0, Web().BoxPage->currentIndex());
}

TEST_F(Pages, ARowThatOnlyHasTheFocusIsNotSelected) {
  SaveProjectAs("ann");
  Answer({});
  ASSERT_TRUE(run_.Choose("mOpenProject"));
  // What the list does when the keyboard comes to it.
  Panel().BoxProj->setCurrentRow(0, QItemSelectionModel::NoUpdate);
  ASSERT_TRUE(Panel().BoxProj->selectedItems().isEmpty());
  Panel().bOpenProj[0]->click();
  Panel().bOpenProj[2]->click();
  EXPECT_EQ(QStringList({StringText(138), StringText(138)}), run_.Dialogs().Messages());
}

}  // namespace
