// The main window's editing commands: font controls and Work Window.

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>

#include "CaretBar.h"
#include "EditingFixture.h"
#include "FTools.h"
#include "Swatch.h"

namespace {

// --- what a click shows

TEST_F(EditingCommands, AClickBringsTheFontControlsUpToDate) {
  Page("<font id='a' color='#010203' face='Courier New' size='5' style='background-color: #0A0B0C'>one</font>");
  PlaceCaret("a", 1);
  Click("a");
  EXPECT_EQ(Web().BoxColor[0]->Color(), 0x030201);
  EXPECT_EQ(Web().BoxColor[1]->Color(), 0x0C0B0A);
  EXPECT_EQ(Web().BoxFace->currentIndex(), 4);
  EXPECT_EQ(Web().BoxSize->currentIndex(), 4);
}

TEST_F(EditingCommands, FacesAreFoundByTheirFirstNameOrTheWholeList) {
  const std::pair<const char*, int> faces[] = {
      {"Arial", 0},  {"Arial, Helvetica", 0},         {"Verdana", 1}, {"Times New Roman", 2}, {"Comic Sans MS", 3},
      {"Tahoma", 5}, {"Verdana, Arial, Helvetica", 1}};
  for (const auto& [face, index] : faces) {
    Page(QString("<font id='a' face='%1'>one</font>").arg(face));
    PlaceCaret("a", 1);
    Click("a");
    EXPECT_EQ(Web().BoxFace->currentIndex(), index) << face;
  }
}

TEST_F(EditingCommands, AnUnknownFontOrSizeLeavesTheControlAsItIs) {
  Page("<font id='a' face='Courier New' size='5'>one</font><font id='b' face='Arial, Times' size='7'>two</font>");
  PlaceCaret("a", 1);
  Click("a");
  PlaceCaret("b", 1);
  Click("b");
  EXPECT_EQ(Web().BoxFace->currentIndex(), 4);
  EXPECT_EQ(Web().BoxSize->currentIndex(), 4);
}

// Meant in FWeb::OnClick: a click on a link leaves the font controls as they are.
TEST_F(EditingCommands, AClickOnALinkShowsTheBarButLeavesTheFontControls) {
  Page("<font color='#010203' size='6'><a id='l' href='x'>one</a></font>");
  PlaceCaret("l", 1);
  Click("l");
  EXPECT_FALSE(Web().FrCaret->isHidden());
  EXPECT_EQ(Web().BoxColor[0]->Color(), 0);
  EXPECT_EQ(Web().BoxSize->currentIndex(), 2);
}

TEST_F(EditingCommands, ASelectionLeavesTheFontControls) {
  Page("<font id='a' size='6'>one</font>");
  Select("a", 0, 2);
  EXPECT_EQ(Web().BoxSize->currentIndex(), 2);
}

// Meant in FWeb::MoveCaret: the caret bar stays where it is when the window or the page changes.
TEST_F(EditingCommands, TheBarStaysWhereItIsWhenTheWindowOrThePageChanges) {
  Page(two);
  Click("a");
  const QPoint place = Web().FrCaret->pos();
  ASSERT_FALSE(Web().FrCaret->isHidden());
  Web().showNormal();
  Web().resize(700, 500);
  run_.Settle();
  ASSERT_TRUE(run_.Choose("mNewPage"));
  EXPECT_EQ(Web().FrCaret->pos(), place);
  EXPECT_FALSE(Web().FrCaret->isHidden());
}

// --- the font controls

TEST_F(EditingCommands, FontControlsFormatTheSelectedText) {
  Page(two);
  Select("a", 0, 2);
  PickEntry(*Web().BoxFace, 3);
  PickEntry(*Web().BoxSize, 5);
  ClickOn(*Web().bBold);
  run_.Dialogs().Colors = {0x0000FF};
  Web().BoxColor[0]->click();
  run_.Dialogs().Colors = {0x00FF00};
  Web().BoxColor[1]->click();
  EXPECT_EQ(Body(),
            "<font id=\"a\"><font face=\"Comic Sans MS\" size=\"6\" color=\"#FF0000\" style=\"background-color: "
            "#00FF00;\"><b>on</b></font>e</font><font id=\"b\">two</font>");
  EXPECT_EQ(Web().BoxColor[0]->Color(), 0x0000FF);
  EXPECT_EQ(Web().BoxColor[1]->Color(), 0x00FF00);
}

TEST_F(EditingCommands, ACancelledColourChangesNothingButBlackDoes) {
  Page(two);
  Select("a", 0, 3);
  Web().BoxColor[1]->click();
  EXPECT_EQ(Body(), two);
  EXPECT_EQ(Web().BoxColor[1]->Color(), 0xFFFFFF);
  run_.Dialogs().Colors = {0};
  Web().BoxColor[1]->click();
  EXPECT_TRUE(Body().contains("background-color: #000000"));
}

TEST_F(EditingCommands, TheToolWindowOwnsTheColourDialogWhileItIsInView) {
  FTools& tools = *run_.modMain.Tools();
  for (const bool shown : {false, true, false}) {
    tools.setVisible(shown);
    run_.Dialogs().ColorQuestions.clear();
    Web().BoxColor[0]->click();
    ASSERT_EQ(run_.Dialogs().ColorQuestions.size(), 1);
    EXPECT_EQ(run_.Dialogs().ColorQuestions[0].owner,
              shown ? static_cast<QWidget*>(&tools) : static_cast<QWidget*>(&Web()));
  }
}

TEST_F(EditingCommands, ListsSetByCodeFormatNothing) {
  Page(two);
  Select("a", 0, 3);
  Web().BoxFace->setCurrentIndex(4);
  Web().BoxSize->setCurrentIndex(0);
  EXPECT_EQ(Body(), two);
}

// Meant in FWeb::mMakeTBlock: a text block is made by giving the text the colour that it has already.
TEST_F(EditingCommands, ATextBlockIsMadeByTheColourThatTheTextHasAlready) {
  Page("<font id='a'>one</font>");
  View().SetBodyFontColor("#112233");
  Select("a", 0, 2);
  ASSERT_TRUE(run_.Choose("mMakeTBlock"));
  EXPECT_EQ(Body(), "<font id=\"a\"><font color=\"#112233\">on</font>e</font>");
}

TEST_F(EditingCommands, ApplyFontTakesFaceSizeAndColourOfTheControls) {
  Page("<font id='a'>one</font>");
  Web().BoxFace->setCurrentIndex(5);
  Web().BoxSize->setCurrentIndex(1);
  Web().BoxColor[0]->SetColor(0x332211);
  Select("a", 0, 2);
  ASSERT_TRUE(run_.Choose("mApplyFontP"));
  EXPECT_EQ(Body(), "<font id=\"a\"><font face=\"Tahoma\" size=\"2\" color=\"#112233\">on</font>e</font>");
}

// Where the list itself leaves blanks away and knows a face for none.
TEST_F(EditingCommands, ApplyFontTakesTheFaceAsItStandsInItsBox) {
  Web().BoxFace->addItem(" Tahoma ");
  for (const auto& [index, face] : {std::pair(6, " Tahoma "), std::pair(-1, "")}) {
    Page("<font id='a'>one</font>");
    Web().BoxFace->setCurrentIndex(index);
    Select("a", 0, 2);
    ASSERT_TRUE(run_.Choose("mApplyFontP"));
    EXPECT_EQ(Body().contains("face=\" Tahoma \""), index == 6) << face << qPrintable(Body());
    EXPECT_FALSE(Body().contains("Arial")) << qPrintable(Body());
    EXPECT_TRUE(Body().contains("size=\"3\"")) << qPrintable(Body());
  }
  Page("<font id='a'>one</font>");
  Select("a", 0, 2);
  PickEntry(*Web().BoxFace, 6);
  EXPECT_EQ(Body(), "<font id=\"a\"><font face=\"Tahoma\">on</font>e</font>");
}

// --- the Work Window

// Meant in FWeb::OnDoubleClick: only a double click switches the buttons that move an element.
TEST_F(EditingCommands, TheMovingButtonsAreSwitchedByADoubleClickAlone) {
  Page(two + "<img id='i'><table><tr><td id='c'><font>x</font></td></tr></table>");
  const auto on = [&] { return Web().FrWork->FrSel->isEnabled() && Web().FrWork->LabSel->isEnabled(); };
  EXPECT_FALSE(on());
  EXPECT_FALSE(Web().FrWork->bSel[9]->isEnabled());
  DoubleClick("a");
  EXPECT_TRUE(on());
  Click("b");
  EXPECT_TRUE(on()) << "a plain click leaves them";
  DoubleClick("c");
  EXPECT_FALSE(on()) << "a table can't be moved from here";
  DoubleClick("i");
  EXPECT_TRUE(on());
  DoubleClick("");
  EXPECT_FALSE(on());
}

TEST_F(EditingCommands, ButtonsCutCopyAndMove) {
  Page(two);
  DoubleClick("a");
  Press(6);
  EXPECT_EQ(Body(), "<font id=\"b\">two</font><font id=\"a\">one</font>");
  DoubleClick("a");
  Press(11);
  EXPECT_EQ(Body(), two);
  DoubleClick("b");
  Press(9);
  EXPECT_EQ(Body(), "<font id=\"a\">one</font>&nbsp;<font id=\"b\">two</font>");
  Press(7);
  EXPECT_EQ(Body(), two);
  Press(10);
  EXPECT_EQ(Body(), "<font id=\"a\">one</font><br /><font id=\"b\">two</font>");
  Press(8);
  EXPECT_EQ(Body(), two);
  Press(1);
  Press(0);
  EXPECT_EQ(Body(), "<font id=\"a\">one</font>");
  EXPECT_TRUE(View().HasTagClip());
  EXPECT_EQ(run_.Dialogs().Boxes.size(), 0);
}

TEST_F(EditingCommands, MovesThatCantBeMadeTellWhy) {
  Page(two);
  DoubleClick("a");
  Press(11);
  EXPECT_EQ(LastBox().text, StringText(111));
  EXPECT_EQ(LastBox().icon, MessageIcon::None);
  Page("<font id='a'>one</font><table id='t'><tr><td id='c'><font>x</font></td></tr></table>");
  DoubleClick("a");
  DoubleClick("c");
  Web().FrWork->FrSel->setEnabled(true);
  Press(6);
  EXPECT_EQ(LastBox().text, StringText(110));
}

// Meant in FWeb::bSel: moving back with nothing current is told with another icon than moving forward.
TEST_F(EditingCommands, BackNeedsACurrentElementAndTellsOtherwiseThanForward) {
  Page("<p id='p'>x</p><font id='a'>one</font>");
  DoubleClick("a");
  Click("p");
  Press(7);
  EXPECT_EQ(LastBox().text, StringText(108));
  EXPECT_EQ(LastBox().icon, MessageIcon::Information);
  Press(6);
  EXPECT_EQ(LastBox().text, StringText(108));
  EXPECT_EQ(LastBox().icon, MessageIcon::None);
  Press(11);
  EXPECT_EQ(LastBox().icon, MessageIcon::Information);
}

TEST_F(EditingCommands, ADoubleClickThenAClickThenForwardTellsThatNothingIsSelected) {
  Page(two);
  DoubleClick("a");
  Click("b");
  Press(6);
  EXPECT_EQ(LastBox().text, StringText(108));
  EXPECT_EQ(Body(), two);
}

TEST_F(EditingCommands, ALinkNeedsSelectedText) {
  Page(two);
  Click("a");
  Press(3);
  EXPECT_EQ(LastBox().text, StringText(113));
  EXPECT_EQ(LastBox().icon, MessageIcon::Information);
  EXPECT_TRUE(run_.Dialogs().Questions.isEmpty());
}

// Meant in FWeb::AddLink: the address that the question about a link offers is taken as an answer.
TEST_F(EditingCommands, TheOfferedAddressIsAValidAnswer) {
  Page(two);
  Select("a", 0, 3);
  Answer({}, {"http://"});
  Press(3);
  const ScriptedDialogs::Question& asked = run_.Dialogs().Questions.last();
  EXPECT_EQ(asked.prompt, "Enter URL for link.");
  EXPECT_EQ(asked.title, "Create Link");
  EXPECT_EQ(asked.given, "http://");
  EXPECT_EQ(Body(), "<font id=\"a\"><a href=\"http://\">one</a></font><font id=\"b\">two</font>");
}

TEST_F(EditingCommands, AnAddressIsTakenAsItWasTyped) {
  Page(two);
  Select("a", 0, 3);
  Answer({}, {"  My Page.html "});
  Press(3);
  EXPECT_EQ(Body(), "<font id=\"a\"><a href=\"  My Page.html \">one</a></font><font id=\"b\">two</font>");
}

TEST_F(EditingCommands, ACancelledLinkChangesNothing) {
  Page(two);
  Select("a", 0, 3);
  Answer({}, {""});
  Press(3);
  EXPECT_EQ(Body(), two);
}

TEST_F(EditingCommands, WhileBusyTheButtonsDoNothing) {
  Page(two);
  DoubleClick("a");
  Web().Busy = true;
  for (int button = 0; button < 12; ++button) Press(button);
  Web().BoxColor[0]->click();
  EXPECT_EQ(Body(), two);
  EXPECT_TRUE(run_.Dialogs().Boxes.isEmpty());
}

}  // namespace
