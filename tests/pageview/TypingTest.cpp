#include "KeyTable.h"
#include "PageViewFixture.h"

namespace {

class Typing : public PageViewTest {
 protected:
  Typing() { Put("abcd", 2); }

  void Put(const QString& text, int at) {
    page_.ShowBody("<FONT id='here'>" + text + "</FONT>");
    ASSERT_TRUE(page_.PutPoint("here", at));
  }
  void Key(int keyCode, bool shift = false) { page_.browser->KeyUp(keyCode, shift); }
  QString Text() { return InnerHtml(Named("here").node(), false); }
};

struct KeyRow {
  int keyCode;
  const char* plain;
  const char* shifted;
};

const KeyRow kKeyRows[] = {
    {48, "0", ")"},  {49, "1", "!"},     {50, "2", "@"},  {51, "3", "#"},     {52, "4", "$"},      {53, "5", "%"},
    {54, "6", "^"},  {55, "7", "&amp;"}, {56, "8", "*"},  {57, "9", "("},     {32, " ", "&nbsp;"}, {186, ";", ":"},
    {187, "=", "+"}, {188, ",", "&lt;"}, {189, "-", "_"}, {190, ".", "&gt;"}, {191, "/", "?"},     {192, "`", "~"},
    {219, "[", "{"}, {220, "\\", "|"},   {221, "]", "}"}, {222, "'", "\""},
};

TEST_F(Typing, EveryRowOfTheKeyTable) {
  for (const KeyRow& row : kKeyRows) {
    for (const bool shift : {false, true}) {
      SCOPED_TRACE(row.keyCode);
      const QString html = shift ? row.shifted : row.plain;
      Put("abcd", 2);
      QSignalSpy pressed(&view_, &WBUC::KeyPress);
      Key(row.keyCode, shift);
      EXPECT_EQ("ab" + html + "cd", Text());
      ASSERT_EQ(1, pressed.size());
      EXPECT_EQ(html, pressed[0][0].toString());
    }
  }
}

TEST_F(Typing, EveryLetterInBothSizes) {
  for (int code = 'A'; code <= 'Z'; ++code) {
    Put("abcd", 2);
    Key(code);
    Key(code, true);
    EXPECT_EQ(QString("ab") + QChar(code + 32) + QChar(code) + "cd", Text());
  }
}

TEST_F(Typing, KeysOutsideOfTheTableDoNothingButRaiseKeyPress) {
  for (int code = 0; code < 256; ++code) {
    bool known = (code >= 'A' && code <= 'Z') || code == 8 || code == 13 || code == 46;
    for (const KeyRow& row : kKeyRows) known = known || row.keyCode == code;
    if (known) continue;
    for (const bool shift : {false, true}) {
      const auto range = view_.CurrentTextRange();
      QSignalSpy pressed(&view_, &WBUC::KeyPress);
      Key(code, shift);
      EXPECT_EQ("abcd", Text()) << code;
      ASSERT_EQ(1, pressed.size()) << code;
      EXPECT_EQ("", pressed[0][0].toString()) << code;
      EXPECT_EQ((8 + 2 * 8) * 15, pressed[0][1].toInt()) << code;
      EXPECT_EQ(8 * 15, pressed[0][2].toInt()) << code;
      EXPECT_EQ(range, view_.CurrentTextRange());
      EXPECT_EQ(2, range->range().start.offset);
    }
  }
}

// Meant in KeyToText: the arrow keys and the numeric keypad do nothing.
TEST_F(Typing, ArrowsAndTheKeypadMoveNothing) {
  for (const int code : {37, 38, 39, 40, 36, 35, 9, 96, 105, 110}) Key(code);
  Key('X');
  EXPECT_EQ("abxcd", Text());
}

TEST_F(Typing, ShiftIsThatOfTheReleaseAndModifierKeysTypeNothing) {
  // Shift released before the letter, as a fast typist does; then Ctrl, Caps Lock and Alt by themselves.
  Key(16, true);
  Key('Q', false);
  for (const int code : {16, 17, 18, 20}) Key(code);
  Key('C');
  EXPECT_EQ("abqccd", Text());
}

TEST_F(Typing, TheCaretIsToldAgainWhenAModifierIsReleased) {
  QSignalSpy pressed(&view_, &WBUC::KeyPress);
  Key('X');
  Key(16);
  ASSERT_EQ(2, pressed.size());
  EXPECT_EQ((8 + 3 * 8) * 15, pressed[0][1].toInt());
  EXPECT_EQ(pressed[0][1], pressed[1][1]);
  EXPECT_EQ(pressed[0][2], pressed[1][2]);
}

TEST_F(Typing, PlainSpacesNeverBecomeNonBreaking) {
  for (int i = 0; i < 3; ++i) Key(32);
  EXPECT_EQ("ab   cd", Text());
  Key(32, true);
  EXPECT_EQ("ab   &nbsp;cd", Text());
}

// Meant in WBUC::Doc_onkeyup: a space over a range with content leaves its text and drops its markup.
TEST_F(Typing, ASpaceOverARangeWithContentKeepsItsTextAlone) {
  page_.ShowBody("<FONT id='here'>one <B>two</B> three</FONT>");
  const auto range = page_.Document().body().createTextRange();
  ASSERT_TRUE(range->moveToElementText(ElementById(page_.Document(), "here")));
  view_.SetCurrentTextRange(range);
  Key(32);
  EXPECT_EQ("one two three ", Body());
}

// Meant in WBUC::Doc_onkeyup: Return types a line break and a blank, with the insertion point between them.
TEST_F(Typing, ReturnAddsABreakAndABlankWithThePointBetween) {
  QSignalSpy pressed(&view_, &WBUC::KeyPress);
  Key(13);
  EXPECT_EQ("ab<br />&nbsp;cd", Text());
  ASSERT_EQ(1, pressed.size());
  EXPECT_EQ("<BR>", pressed[0][0].toString());
  EXPECT_EQ(8 * 15, pressed[0][1].toInt());
  EXPECT_EQ((8 + 16) * 15, pressed[0][2].toInt());
  Key('N');
  EXPECT_EQ("ab<br />n&nbsp;cd", Text());
}

// Meant in WBUC::Doc_onkeyup: the blanks of several Returns pile up behind the text.
TEST_F(Typing, TheBlanksOfReturnsPileUpBehindTheText) {
  Key(13);
  Key(13);
  Key(13);
  EXPECT_EQ("ab<br /><br /><br />&nbsp;&nbsp;&nbsp;cd", Text());
}

TEST_F(Typing, ShiftReturnClearsFloats) {
  QSignalSpy pressed(&view_, &WBUC::KeyPress);
  Key(13, true);
  EXPECT_EQ("ab<br clear=\"all\" />&nbsp;cd", Text());
  ASSERT_EQ(1, pressed.size());
  EXPECT_EQ("<BR CLEAR=\"all\">", pressed[0][0].toString());
}

// Meant in KeyToText: a double quote is typed as it stands.
TEST_F(Typing, ADoubleQuoteIsNotEscaped) {
  EXPECT_EQ("\"", KeyToText(222, true, QString()).html);
  Key(222, true);
  EXPECT_EQ("ab\"cd", Text());
}

// Meant in WBUC::Doc_onkeyup: typing doesn't replace what is selected.
TEST_F(Typing, TheSelectionIsNeitherReplacedNorChanged) {
  const Node* const text = TextOf(Named("here"));
  page_.Document().selection().Mirror({BoundaryPoint::InText(text, 0), BoundaryPoint::InText(text, 2)});
  Key('X');
  Key(8);
  Key('Y');
  EXPECT_EQ("abycd", Text());
  EXPECT_EQ("Text", page_.Document().selection().type());
  EXPECT_EQ("ab", page_.Document().selection().createRange()->text());
}

TEST_F(Typing, BackspaceAndDeleteWorkBesideTheInsertionPoint) {
  const auto range = view_.CurrentTextRange();
  QSignalSpy pressed(&view_, &WBUC::KeyPress);
  Key(8);
  EXPECT_EQ("acd", Text());
  Key(46, true);
  EXPECT_EQ("ad", Text());
  EXPECT_EQ(range, view_.CurrentTextRange());
  EXPECT_EQ(1, range->range().start.offset);
  ASSERT_EQ(2, pressed.size());
  EXPECT_EQ("", pressed[0][0].toString());
  EXPECT_EQ("", pressed[1][0].toString());
  EXPECT_EQ((8 + 8) * 15, pressed[1][1].toInt());
}

// Meant in WBUC::BackspaceChar: Backspace deletes what stands before a range with content, which keeps its content.
TEST_F(Typing, BackspaceLeavesARangeWithContentAsItIs) {
  // The work is done on a duplicate, so what the range spans stays.
  const Node* const text = TextOf(Named("here"));
  view_.CurrentTextRange()->SetRange({BoundaryPoint::InText(text, 1), BoundaryPoint::InText(text, 3)});
  Key(8);
  EXPECT_EQ("bcd", Text());
  EXPECT_EQ("bc", view_.CurrentTextRange()->text());
}

TEST_F(Typing, Code46IsDeleteAnd190ThePeriod) {
  Key(46);
  EXPECT_EQ("abd", Text());
  Key(190);
  EXPECT_EQ("ab.d", Text());
  EXPECT_EQ(KeyAction::Delete, KeyToText(46, false, QString()).action);
}

TEST_F(Typing, KeysAreGatedOnTheInsertionPointOnly) {
  view_.Navo(page_.test.Path("none.html"), false);
  ASSERT_FALSE(view_.DocReady());
  ASSERT_TRUE(page_.PutPoint("here", 2));
  Key('X');
  EXPECT_EQ("abxcd", Text());
}

TEST_F(Typing, WithoutAnInsertionPointKeyPressIsEmptyAtZero) {
  view_.SetCurrentTextRange(nullptr);
  QSignalSpy pressed(&view_, &WBUC::KeyPress);
  for (const int code : {int('A'), 13, 8, 46, 32}) Key(code);
  EXPECT_EQ("abcd", Text());
  ASSERT_EQ(5, pressed.size());
  for (const auto& arguments : pressed) EXPECT_EQ((QList<QVariant>{"", 0, 0}), arguments);
}

TEST_F(Typing, ALeftPressEndsIt) {
  Fire(EventType::MouseDown, "here");
  Key('X');
  EXPECT_EQ("abcd", Text());
}

TEST_F(Typing, TheInsertionPointStaysTheSameObject) {
  const auto range = view_.CurrentTextRange();
  for (const int code : {int('A'), 32, 13, 8, 46}) Key(code);
  EXPECT_EQ(range, view_.CurrentTextRange());
}

TEST_F(Typing, AClickAndItsKeysGoToTheClickedPlace) {
  page_.ShowBody("<FONT id='one'>one</FONT><BR><FONT id='here'>two</FONT>");
  page_.browser->Click(*page_.browser->PointAt(BoundaryPoint::InText(TextOf(Named("here")), 2)));
  Key('X');
  EXPECT_EQ("twxo", Text());
  EXPECT_EQ("FONT", view_.CurrentElementTag());
}

}  // namespace
