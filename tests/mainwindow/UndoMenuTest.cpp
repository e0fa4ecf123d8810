// Undo and Redo in the Edit menu: what they are called, and what the window shows afterwards.
#include <QAction>
#include <QGroupBox>

#include "CaretBar.h"
#include "ProgramFixture.h"
#include "WorkWindow.h"

namespace {

class UndoMenu : public ProgramTest {
 protected:
  UndoMenu() {
    EXPECT_TRUE(run_.Start());
    Web().show();
  }
  QAction& Entry(const char* name) {
    emit Web().findChild<QMenu*>("mEditMenu")->aboutToShow();
    return *Web().findChild<QAction*>(QLatin1String(name));
  }
};

TEST_F(UndoMenu, TheEntriesTellWhatTheyWouldDo) {
  EXPECT_EQ("&Undo", Entry("mUndo").text());
  EXPECT_FALSE(Entry("mUndo").isEnabled());
  EXPECT_EQ("&Redo", Entry("mRedo").text());
  EXPECT_FALSE(Entry("mRedo").isEnabled());
  run_.Type("ab");
  EXPECT_EQ("&Undo Typing", Entry("mUndo").text());
  View().SetBGColor("#FF0000");
  EXPECT_EQ("&Undo Back Color", Entry("mUndo").text());
  ASSERT_TRUE(run_.Choose("mUndo"));
  EXPECT_EQ("&Undo Typing", Entry("mUndo").text());
  EXPECT_EQ("&Redo Back Color", Entry("mRedo").text());
  EXPECT_TRUE(Entry("mRedo").isEnabled());
}

TEST_F(UndoMenu, NoKeyButThoseOfTheMenuUndoes) {
  EXPECT_TRUE(Entry("mUndo").shortcut().isEmpty());
  EXPECT_TRUE(Entry("mRedo").shortcut().isEmpty());
}

TEST_F(UndoMenu, TheBarStandsWhereTheInsertionPointIsAgain) {
  run_.Type("ab");
  const QPoint behind = Web().FrCaret->pos();
  Fire(EventType::MouseDown, "");
  Web().FrCaret->hide();
  ASSERT_TRUE(run_.Choose("mUndo"));
  EXPECT_TRUE(Web().FrCaret->isVisible());
  EXPECT_NE(behind, Web().FrCaret->pos());
  ASSERT_TRUE(run_.Choose("mRedo"));
  EXPECT_EQ(behind, Web().FrCaret->pos());
}

TEST_F(UndoMenu, ABlockThatComesBackSelectedCanBeMoved) {
  run_.browser->SetHtml(PageAround("<FONT id=a>one</FONT><FONT id=b>two</FONT>"));
  DoubleClick("a");
  ASSERT_TRUE(run_.Choose("mCut"));
  Click("b");
  EXPECT_FALSE(Named("a"));
  ASSERT_TRUE(run_.Choose("mUndo"));
  EXPECT_TRUE(Web().FrWork->FrSel->isEnabled());
  EXPECT_FALSE(Web().FrCaret->isVisible());
}

TEST_F(UndoMenu, ASaveKeepsTheStepsAndAnotherPageDoesNot) {
  run_.Type("ab");
  ASSERT_TRUE(run_.Choose("mSavePage"));
  EXPECT_TRUE(Entry("mUndo").isEnabled());
  ASSERT_TRUE(run_.Choose("mRefresh"));
  EXPECT_FALSE(Entry("mUndo").isEnabled());
  run_.Type("c");
  ASSERT_TRUE(run_.Choose("mNewPage"));
  EXPECT_FALSE(Entry("mUndo").isEnabled());
}

TEST_F(UndoMenu, ACommandOfSeveralPartsIsOneStep) {
  run_.browser->SetHtml(PageAround("<FONT id=a>one</FONT>"));
  const QString before = View().Source();
  const Node* const text = TextOf(Named("a"));
  View().WBDocument()->selection().Select({BoundaryPoint::InText(text, 0), BoundaryPoint::InText(text, 2)});
  ASSERT_TRUE(run_.Choose("mApplyFont"));
  ASSERT_NE(before, View().Source());
  EXPECT_EQ("&Undo Apply Current Font", Entry("mUndo").text());
  ASSERT_TRUE(run_.Choose("mUndo"));
  EXPECT_EQ(before, View().Source());
  EXPECT_FALSE(Entry("mUndo").isEnabled());
}

TEST_F(UndoMenu, AThemeIsOneStep) {
  for (const char* name : {"heart.jpg", "hearttop.gif"}) ASSERT_TRUE(PutFile(run_.PathInApp("samples/") + name, name));
  const QString before = View().Source();
  ASSERT_TRUE(run_.Choose("mmtheme1"));
  ASSERT_NE(before, View().Source());
  EXPECT_EQ("&Undo Theme", Entry("mUndo").text());
  ASSERT_TRUE(run_.Choose("mUndo"));
  EXPECT_EQ(before, View().Source());
}

}  // namespace
