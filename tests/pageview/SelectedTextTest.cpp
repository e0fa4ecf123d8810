#include "ElementsFixture.h"

// What is told and changed of the font of selected text.

namespace {

class SelectedText : public ElementsTest {};

TEST_F(SelectedText, FormatsOfSelectedTextGatherInOneFont) {
  Show("abcd");
  const Node* const text = page_.Document().tree().bodyNode()->firstChild();
  page_.Document().selection().Mirror({BoundaryPoint::InText(text, 1), BoundaryPoint::InText(text, 3)});
  view_.SetSelFontFace("Arial");
  view_.SetSelFontSize("4");
  view_.SetSelColor("#FF0000");
  view_.SetSelBackColor("#00FF00");
  view_.ToggleBold();
  EXPECT_EQ(
      Body(),
      "a<font face=\"Arial\" size=\"4\" color=\"#FF0000\" style=\"background-color: #00FF00;\"><b>bc</b></font>d");
  EXPECT_EQ(view_.SelText(), "bc");
}

// Meant in WBUC::IfSelection: a text block that was selected by double click isn't formatted, though its text is
// highlighted.
TEST_F(SelectedText, ADoubleClickedElementIsNotFormattedThoughItsTextIsHighlighted) {
  Show(two);
  DoubleClick("a");
  view_.SetSelColor("#FF0000");
  view_.SetSelBackColor("#FF0000");
  view_.SetSelFontFace("Arial");
  view_.SetSelFontSize("5");
  view_.ToggleBold();
  EXPECT_EQ(Body(), "<font id=\"a\">one</font><font id=\"b\">two</font>");
}

TEST_F(SelectedText, WithNothingSelectedNothingIsFormatted) {
  Show(two);
  Click("a");
  view_.SetSelColor("#FF0000");
  view_.ToggleBold();
  EXPECT_EQ(Body(), "<font id=\"a\">one</font><font id=\"b\">two</font>");
}

TEST_F(SelectedText, FontUnderASelectionIsFiveEmptyTexts) {
  Show("<font id='a' color='#010203' size='5' face='Arial'>one</font>");
  Select("a", 0, 2);
  EXPECT_EQ(view_.CurFontProps(), (std::array<QString, 5>{}));
}

// Meant in WBUC::CurFontProps: the font that shows is that of the page's selection, not of the insertion point.
TEST_F(SelectedText, FontAtTheInsertionPointIsThatOfThePagesSelectionNotOfCurrentTextRange) {
  Show("<font id='a' color='#010203' size='5' face='Arial'>one</font><font id='b' size='1'>two</font>");
  const BoundaryPoint inA = BoundaryPoint::InText(TextOf(Named("a")), 1);
  page_.Document().selection().Mirror({inA, inA});
  ASSERT_TRUE(page_.PutPoint("b", 1));
  EXPECT_EQ(view_.CurFontProps(), (std::array<QString, 5>{"#010203", "Arial", "5", "#FFFFFF", "*"}));
}

// Meant in WBUC::SetSelText: the selected text is read as text and written as HTML.
TEST_F(SelectedText, SelTextIsReadAsTextAndWrittenAsHtml) {
  Show("<font id='a'>one<br>two</font>");
  EXPECT_EQ(view_.SelText(), "");
  DoubleClick("a");
  EXPECT_EQ(view_.SelText(), "one\r\ntwo");
  view_.SetSelText("<i>x</i>&amp;");
  EXPECT_EQ(Body(), "<i>x</i>&amp;");
  view_.SetSelText("y");  // nothing is selected any more
  EXPECT_EQ(Body(), "<i>x</i>&amp;");
}

}  // namespace
