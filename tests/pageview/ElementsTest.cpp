#include <QRegularExpression>

#include "ElementsFixture.h"
#include "StringTable.h"

namespace {

class Elements : public ElementsTest {};

TEST_F(Elements, CutTakesSelectedTextAndPastePutsItAtTheInsertionPoint) {
  Show(two);
  Select("a", 1, 2);
  view_.Cut();
  EXPECT_EQ(Body(), "<font id=\"a\">oe</font><font id=\"b\">two</font>");
  EXPECT_TRUE(view_.HasTextClip());
  EXPECT_FALSE(view_.HasTagClip());
  ASSERT_TRUE(page_.PutPoint("b", 3));
  view_.Paste(WBUC::FromTextClip);
  view_.Paste(WBUC::FromTextClip);
  EXPECT_EQ(Body(), "<font id=\"a\">oe</font><font id=\"b\">twonn</font>");
}

TEST_F(Elements, PasteReplacesTheContentOfTheTextRange) {
  Show(two);
  Select("a", 0, 3);
  view_.Copy();
  const Node* const text = TextOf(Named("b"));
  view_.SetCurrentTextRange(std::make_shared<HTMLTxtRange>(
      page_.Document(), LiveRange{BoundaryPoint::InText(text, 0), BoundaryPoint::InText(text, 2)}));
  view_.Paste(WBUC::FromTextClip);
  EXPECT_EQ(Body(), "<font id=\"a\">one</font><font id=\"b\">oneo</font>");
}

TEST_F(Elements, NothingSelectedIsNeitherCutNorCopied) {
  Show(two);
  Click("a");
  view_.Cut();
  view_.Copy();
  EXPECT_FALSE(view_.HasTextClip());
  EXPECT_FALSE(view_.HasTagClip());
  view_.Paste(WBUC::FromTextClip);
  view_.Paste(WBUC::FromTagClip);
  EXPECT_EQ(Body(), "<font id=\"a\">one</font><font id=\"b\">two</font>");
}

TEST_F(Elements, CopyingTwiceKeepsTheLastOfEachKind) {
  Show(two + "<img id='i'>");
  DoubleClick("i");
  view_.Copy();
  Select("a", 0, 3);
  view_.Copy();
  Select("b", 0, 3);
  view_.Copy();
  Show("");
  view_.Paste(WBUC::FromTextClip);
  view_.Paste(WBUC::FromTagClip);
  EXPECT_EQ(Body(), "two<img id=\"i\" />") << "the text clip doesn't disturb the tag clip";
}

// Meant in WBUC::Cut: the current element stays the one that has been cut.
TEST_F(Elements, CutOfAnElementStoresItAndLeavesCurrentElementStale) {
  Show(two);
  DoubleClick("a");
  view_.Cut();
  EXPECT_EQ(Body(), "<font id=\"b\">two</font>");
  EXPECT_EQ(view_.IfSelection(), WBUC::NothingSelected);
  EXPECT_TRUE(view_.HasCurrentElement());
  EXPECT_TRUE(view_.HasTagClip());
}

// Meant in WBUC::Paste: an element that is pasted right behind the cut doesn't show before another click.
TEST_F(Elements, PastingACutElementAtOnceShowsNothingUntilAnotherClick) {
  Show(two);
  DoubleClick("a");
  view_.Cut();
  view_.Paste(WBUC::FromTagClip);
  EXPECT_EQ(Body(), "<font id=\"b\">two</font>");
  Click("b");
  view_.Paste(WBUC::FromTagClip);
  EXPECT_EQ(Body(), "<font id=\"b\">two</font><font id=\"a\">one</font>");
}

TEST_F(Elements, PasteOfAnElementWithNothingCurrentGoesToTheEnd) {
  Show(two);
  DoubleClick("a");
  view_.Copy();
  Click("");  // into the page beside everything
  view_.Paste(WBUC::FromTagClip);
  EXPECT_EQ(Body(), "<font id=\"a\">one</font><font id=\"b\">two</font><font id=\"a\">one</font>");
}

TEST_F(Elements, PastingAnElementTakesTheHighlightAwayAndPastingTextLeavesIt) {
  Show(two);
  DoubleClick("a");
  view_.Copy();
  for (const bool current : {true, false}) {
    Click(current ? "b" : "");
    const Node* const text = TextOf(Named("b"));
    page_.Document().selection().Mirror({BoundaryPoint::InText(text, 0), BoundaryPoint::InText(text, 2)});
    ASSERT_EQ(page_.Document().selection().type(), "Text");
    view_.Paste(WBUC::FromTagClip);
    EXPECT_EQ(page_.Document().selection().type(), "None");
    EXPECT_EQ(view_.IfSelection(), WBUC::NothingSelected);
  }
  const Node* const text = TextOf(Named("b"));
  page_.Document().selection().Mirror({BoundaryPoint::InText(text, 0), BoundaryPoint::InText(text, 2)});
  view_.Copy();
  view_.SetCurrentTextRange(nullptr);
  view_.Paste(WBUC::FromTextClip);
  EXPECT_EQ(page_.Document().selection().type(), "Text");
}

// Meant in WBUC::Paste: pasting nothing takes the highlight away.
TEST_F(Elements, WithAnEmptyClipPastingAnElementStillTakesTheHighlightAway) {
  Show(two);
  const Node* const text = TextOf(Named("b"));
  page_.Document().selection().Mirror({BoundaryPoint::InText(text, 0), BoundaryPoint::InText(text, 2)});
  view_.Paste(WBUC::FromTagClip);
  EXPECT_EQ(page_.Document().selection().type(), "None");
  EXPECT_EQ(Body(), "<font id=\"a\">one</font><font id=\"b\">two</font>");
}

TEST_F(Elements, PasteOfTextWhereNothingWasClickedGoesToTheEnd) {
  Show(two);
  Select("a", 0, 2);
  view_.Copy();
  view_.SetCurrentTextRange(nullptr);
  view_.Paste(WBUC::FromTextClip);
  EXPECT_TRUE(Body().endsWith("two</font>on")) << qPrintable(Body());
}

// Meant in WBUC::Copy: Copy takes what is highlighted, where Cut takes the selected element.
TEST_F(Elements, CutOfAnElementStoresItsTagsButCopyWhatIsHighlighted) {
  Show(two);
  DoubleClick("a");
  // The highlight is changed from outside; the element stays selected.
  page_.Document().selection().Mirror(
      {BoundaryPoint::InText(TextOf(Named("b")), 0), BoundaryPoint::InText(TextOf(Named("b")), 2)});
  view_.Copy();
  EXPECT_EQ(view_.IfSelection(), WBUC::ElementSelected) << "Copy keeps the element selected";
  view_.Cut();  // of which the highlight is none of the business
  EXPECT_EQ(view_.IfSelection(), WBUC::TextSelected);
  Click("b");
  view_.Paste(WBUC::FromTagClip);
  EXPECT_EQ(Body(), "<font id=\"b\">two</font><font id=\"a\">one</font>");
}

TEST_F(Elements, CopyOfAnElementWithAChangedHighlightTakesTheHighlight) {
  Show(two);
  DoubleClick("a");
  page_.Document().selection().Mirror(
      {BoundaryPoint::InText(TextOf(Named("b")), 0), BoundaryPoint::InText(TextOf(Named("b")), 2)});
  view_.Copy();
  Click("");
  view_.Paste(WBUC::FromTagClip);
  EXPECT_TRUE(Body().endsWith("two</font>tw")) << qPrintable(Body());
}

TEST_F(Elements, CopyOfAnElementWithNothingHighlightedEmptiesTheClip) {
  Show(two);
  DoubleClick("a");
  view_.Copy();
  ASSERT_TRUE(view_.HasTagClip());
  const BoundaryPoint start = BoundaryPoint::InText(TextOf(Named("b")), 0);
  page_.Document().selection().Mirror({start, start});
  view_.Copy();
  EXPECT_FALSE(view_.HasTagClip());
  EXPECT_EQ(view_.IfSelection(), WBUC::ElementSelected);
}

// Meant in WBUC::Paste: pasting nothing drops the selected element.
TEST_F(Elements, PasteDropsTheSelectedElementEvenWhenThereIsNothingToPaste) {
  for (const int origin : {int(WBUC::FromTextClip), int(WBUC::FromTagClip), 7, -1}) {
    Show(two);
    DoubleClick("a");
    view_.Paste(origin);
    EXPECT_EQ(view_.IfSelection() == WBUC::ElementSelected, false) << origin;
    EXPECT_EQ(Body(), "<font id=\"a\">one</font><font id=\"b\">two</font>");
  }
}

// Meant in WBUC::Paste: text of other programs is taken as HTML, and what is cut or copied here never reaches them.
TEST_F(Elements, SystemTextIsTakenAsHtmlAndNeverWritten) {
  Show(two);
  PutOnSystemClipboard("x<b>y</b> &amp; z");
  Select("a", 0, 3);
  view_.Copy();
  DoubleClick("b");
  view_.Cut();
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "x<b>y</b> &amp; z");
  ASSERT_TRUE(page_.PutPoint("a", 3));
  view_.Paste(WBUC::FromSystem);
  EXPECT_EQ(Body(), "<font id=\"a\">onex<b>y</b> &amp; z</font>");
  EXPECT_TRUE(view_.HasTextClip() && view_.HasTagClip());
}

TEST_F(Elements, WithoutADocumentPasteKeepsTheSelectedElement) {
  Show(two);
  DoubleClick("a");
  view_.Copy();
  view_.Navo("nowhere.html", false);
  view_.Paste(WBUC::FromTagClip);
  view_.AddNewElement("x");
  view_.AddTable("1", "1", "1", "", "", "", "", "1");
  view_.CreateLinkSel("u");
  view_.ToggleBold();
  EXPECT_EQ(view_.SelText(), "");
  EXPECT_TRUE(view_.HasTagClip()) << "the clipboards live on across pages";
}

TEST_F(Elements, DeleteElementTakesTheElementWithItsTagsAndTouchesNoField) {
  Show(two);
  DoubleClick("b");
  view_.DeleteElement(Named("a"));
  EXPECT_EQ(Body(), "<font id=\"b\">two</font>");
  EXPECT_EQ(view_.IfSelection(), WBUC::ElementSelected);
  view_.DeleteElement({});
  const HTMLElement b = Named("b");
  view_.DeleteElement(b);
  EXPECT_EQ(Body(), "");
  Show(two);
  view_.DeleteElement(b);
  EXPECT_EQ(Body(), "<font id=\"a\">one</font><font id=\"b\">two</font>") << "a stale element takes nothing along";
}

TEST_F(Elements, ReplaceElemHtmlPutsHtmlInTheElementsPlace) {
  Show(two);
  view_.ReplaceElemHTML(Named("a"), "<i>x</i>y");
  EXPECT_EQ(Body(), "<i>x</i>y<font id=\"b\">two</font>");
}

// Meant in WBUC::AddNewElement: a new element goes to the page's end wherever the insertion point is.
TEST_F(Elements, NewElementsAndTablesGoToTheEndWhereverTheInsertionPointIs) {
  Show(two);
  Click("a");
  ASSERT_TRUE(page_.PutPoint("a", 1));
  view_.AddNewElement("<hr>");
  EXPECT_EQ(Body(), "<font id=\"a\">one</font><font id=\"b\">two</font><hr />");
  view_.AddTable("100", "50", "1", "#FFFFFF", "Center", "Left", "Top", "5");
  EXPECT_TRUE(Body().contains("<hr /><table align=\"Center\"")) << qPrintable(Body());
}

TEST_F(Elements, ATablesNumbersGoUnquotedAndItsWordsQuoted) {
  Show("");
  view_.StoredValues() = {"A B", "3 x=y", "#010203", "", ""};
  view_.AddTable("100% a=1", "50 b=2", "1 c=3", "red d=4", "Left e=5", "Right f=6", "Top g=7", "5 h=8");
  EXPECT_EQ(Body(),
            "<table align=\"Left e=5\" width=\"100%\" a=\"1\" height=\"50\" b=\"2\" border=\"1\" c=\"3\" "
            "bgcolor=\"red d=4\" cellpadding=\"5\" h=\"8\"><tbody><tr><td align=\"Right f=6\" valign=\"Top g=7\">"
            "<font face=\"A B\" size=\"3\" x=\"y\" color=\"#010203\">&nbsp;</font></td></tr></tbody></table>");
}

TEST_F(Elements, LinkOfSelectedText) {
  Show(two);
  Select("a", 1, 3);
  view_.CreateLinkSel("http://x/");
  EXPECT_EQ(Body(), "<font id=\"a\">o<a href=\"http://x/\">ne</a></font><font id=\"b\">two</font>");
  EXPECT_EQ(page_.Document().selection().createRange()->text(), "ne");
}

// Meant in WBUC::CreateLinkSel: a link is put on a text block that was selected by double click, which no other format
// is.
TEST_F(Elements, LinkWorksOnADoubleClickedTextBlockToo) {
  Show(two);
  DoubleClick("a");
  view_.CreateLinkSel("u");
  EXPECT_EQ(Body(), "<font id=\"a\"><a href=\"u\">one</a></font><font id=\"b\">two</font>");
}

TEST_F(Elements, MoveOneElementChangesPlacesWithTheNeighbourAndSelectsNothing) {
  Show(two);
  DoubleClick("a");
  EXPECT_EQ(view_.MoveElementOneElement(1), WBUC::Moved);
  EXPECT_EQ(Body(), "<font id=\"b\">two</font><font id=\"a\">one</font>");
  EXPECT_EQ(view_.IfSelection(), WBUC::NothingSelected);
  EXPECT_EQ(view_.MoveElementOneElement(1), WBUC::NoElementSelected);
  DoubleClick("a");
  EXPECT_EQ(view_.MoveElementOneElement(-1), WBUC::Moved);
  EXPECT_EQ(Body(), "<font id=\"a\">one</font><font id=\"b\">two</font>");
}

// Meant in WBUC::MoveElementOneElement: an element that changed places has to be clicked again before it moves by a
// space.
TEST_F(Elements, AfterAMoveTheSpaceButtonsDoNothing) {
  Show(two);
  DoubleClick("a");
  ASSERT_EQ(view_.MoveElementOneElement(1), WBUC::Moved);
  for (int direction = 0; direction <= 3; ++direction) view_.MoveElementOneSpace(direction);
  EXPECT_EQ(Body(), "<font id=\"b\">two</font><font id=\"a\">one</font>");
}

// Meant in WBUC::MoveElementOneElement: a text block that is moved past a picture inside of it is lost.
TEST_F(Elements, MovingATextBlockPastAPictureInsideItLosesIt) {
  Show("<font id='a'>one<img id='i'></font><font id='b'>two</font>");
  DoubleClick("a");
  EXPECT_EQ(view_.MoveElementOneElement(1), WBUC::Moved);
  EXPECT_EQ(Body(), "<font id=\"b\">two</font>");
}

TEST_F(Elements, MovingBackTheFirstTextBlockInAnotherMovesItBeforeThatOne) {
  Show("<font id='a'><font id='b'>two</font>one</font>");
  DoubleClick("b");
  EXPECT_EQ(view_.MoveElementOneElement(-1), WBUC::Moved);
  EXPECT_EQ(Body(), "<font id=\"b\">two</font><font id=\"a\">one</font>");
}

// Any number counts as a step, and only -1 puts the element in front of its neighbour.
TEST_F(Elements, OtherDirectionsAreLongerStepsAndNoStepLosesTheElement) {
  const auto moved = [this](const char* id, int direction) {
    Show("<font id='a'>a</font><font id='b'>b</font><font id='c'>c</font><font id='d'>d</font>");
    DoubleClick(id);
    EXPECT_EQ(view_.MoveElementOneElement(direction), WBUC::Moved);
    return Body().remove(QRegularExpression("<[^>]*>"));
  };
  EXPECT_EQ(moved("a", 2), "bcad");
  EXPECT_EQ(moved("d", -2), "abdc");
  EXPECT_EQ(moved("b", 0), "acd");
}

TEST_F(Elements, TablesAreNotMovable) {
  Show("<table id='t'><tr><td id='c'><font>x</font></td></tr></table><font>y</font>");
  DoubleClick("c");
  EXPECT_EQ(view_.CurrentSelElementTag(), "TABLE");
  EXPECT_EQ(view_.MoveElementOneElement(1), WBUC::NotMovable);
}

// Meant in WBUC::MoveElementOneElement: the neighbour to change places with is looked for among ten elements and no
// further.
TEST_F(Elements, TheNeighbourIsLookedForAmongTenElementsOfAnyKind) {
  Show("<font id='a'>one</font>" + QString("<br>").repeated(9) + "<font id='b'>two</font>");
  DoubleClick("a");
  EXPECT_EQ(view_.MoveElementOneElement(1), WBUC::Moved);
  Show("<font id='a'>one</font>" + QString("<br>").repeated(10) + "<font id='b'>two</font>");
  DoubleClick("a");
  const QString before = Body();
  EXPECT_EQ(view_.MoveElementOneElement(1), WBUC::NoNeighbour);
  EXPECT_EQ(Body(), before);
  // The parts of a table count, too.
  Show("<font id='a'>one</font>" + QString("<br>").repeated(6) +
       "<table><tr><td><b><font id='b'>two</font></b></td></tr></table>");
  DoubleClick("a");
  EXPECT_EQ(view_.MoveElementOneElement(1), WBUC::NoNeighbour);
}

TEST_F(Elements, TheLastBlockHasNoNeighbourBehindIt) {
  Show(two);
  DoubleClick("b");
  EXPECT_EQ(view_.MoveElementOneElement(1), WBUC::NoNeighbour);
  EXPECT_EQ(Body(), "<font id=\"a\">one</font><font id=\"b\">two</font>");
}

// Meant in WBUC::MoveElementOneSpace: one of the moves takes the selected element, the other the current one.
TEST_F(Elements, OneMovesTheSelectedElementTheOtherTheCurrentOne) {
  Show(two);
  DoubleClick("a");
  view_.SetCurrentElement(Named("b"));
  view_.MoveElementOneSpace(3);
  EXPECT_EQ(Body(), "<font id=\"a\">one</font><br /><font id=\"b\">two</font>");
  EXPECT_EQ(view_.MoveElementOneElement(1), WBUC::Moved);
  EXPECT_EQ(Body(), "<br /><font id=\"b\">two</font><font id=\"a\">one</font>");
}

struct Step {
  const char* body;
  int direction;
  const char* after;
};

TEST_F(Elements, MovingBackTakesAwayOnlyWhatMovingOnPutsThere) {
  const Step steps[] = {
      {"x<font id='e'>y</font>", 2, "x&nbsp;<font id=\"e\">y</font>"},
      {"x<font id='e'>y</font>", 3, "x<br /><font id=\"e\">y</font>"},
      {"x&nbsp;<font id='e'>y</font>", 0, "x<font id=\"e\">y</font>"},
      {"x&nbsp;&nbsp;<font id='e'>y</font>", 0, "x&nbsp;<font id=\"e\">y</font>"},
      // Neither a blank nor a letter goes.
      {"x <font id='e'>y</font>", 0, "x <font id=\"e\">y</font>"},
      {"x<font id='e'>y</font>", 0, "x<font id=\"e\">y</font>"},
      {"<font>x&nbsp;</font><font id='e'>y</font>", 0, "<font>x</font><font id=\"e\">y</font>"},
      {"x<br><font id='e'>y</font>", 1, "x<font id=\"e\">y</font>"},
      {"x<br>z<font id='e'>y</font>", 1, "xz<font id=\"e\">y</font>"},
      {"x<hr><font id='e'>y</font>", 1, "x<hr /><font id=\"e\">y</font>"},
      {"x&nbsp;<font id='e'>y</font>", 4, "x&nbsp;<font id=\"e\">y</font>"},
      {"x&nbsp;<font id='e'>y</font>", -1, "x&nbsp;<font id=\"e\">y</font>"},
      // At the very start of the page the element's own first character is looked at, but its tag comes along.
      {"<font id='e'>&nbsp;y</font>", 0, "<font id=\"e\">&nbsp;y</font>"},
      // A space of the cell before is out of reach.
      {"<table><tr><td>a&nbsp;</td><td><font id='e'>y</font></td></tr></table>", 0,
       "<table><tbody><tr><td>a&nbsp;</td><td><font id=\"e\">y</font></td></tr></tbody></table>"},
  };
  for (const Step& step : steps) {
    Show(step.body);
    view_.SetCurrentElement(Named("e"));
    view_.MoveElementOneSpace(step.direction);
    EXPECT_EQ(Body(), step.after) << step.body << " " << step.direction;
  }
}

// Meant in WBUC::MoveElementOneSpace: moving up takes a line break away that belongs to another block.
TEST_F(Elements, MovingUpTakesALineBreakOfAnotherBlocksTextToo) {
  Show("<font>one<br></font><font id='e'>two</font>");
  view_.SetCurrentElement(Named("e"));
  view_.MoveElementOneSpace(1);
  EXPECT_EQ(Body(), "<font>one</font><font id=\"e\">two</font>");
}

TEST_F(Elements, AfterCutTheCurrentElementIsStaleAndMovesNothing) {
  Show("&nbsp;<font id='a'>one</font><font id='b'>two</font>");
  DoubleClick("a");
  view_.Cut();
  for (int direction = 0; direction <= 3; ++direction) view_.MoveElementOneSpace(direction);
  EXPECT_EQ(Body(), "&nbsp;<font id=\"b\">two</font>");
}

TEST_F(Elements, AnElementThatIsGoneIsNotHighlightedByAMove) {
  for (int direction = 0; direction <= 3; ++direction) {
    Show(two);
    DoubleClick("a");
    view_.DeleteElement(Named("a"));
    view_.MoveElementOneSpace(direction);
    EXPECT_EQ(Body(), "<font id=\"b\">two</font>") << direction;
    EXPECT_EQ(page_.Document().selection().type(), "None") << direction;
  }
}

TEST_F(Elements, WhatTheUserSelectedSinceStaysSelectedWhenTheElementMoves) {
  Show(two);
  DoubleClick("a");
  const Node* const b = Named("b").node()->firstChild();
  page_.Document().selection().Mirror({BoundaryPoint::InText(b, 0), BoundaryPoint::InText(b, 2)});
  for (int direction = 0; direction <= 3; ++direction) {
    view_.MoveElementOneSpace(direction);
    EXPECT_EQ(page_.Document().selection().createRange()->text(), "tw") << direction;
  }
}

TEST_F(Elements, TheTextForNothingCutExistsThoughNothingShowsIt) {
  EXPECT_EQ(StringText(109),
            "There is no cut element to paste. (Note: Only full elements can be pasted. To add a cut text selection "
            "back in, edit the respective element.)");
}

}  // namespace
