#include "HTMLTxtRange.h"

#include <gtest/gtest.h>

#include "QtPrinters.h"
#include "TestPage.h"

namespace {

// One edit of a marked range and what the page looks like afterwards, with the range's place.
struct Edit {
  const char* before;
  const char* html;
  const char* after;
};

class PasteHtml : public testing::TestWithParam<Edit> {};

TEST_P(PasteHtml, LeavesTheRangeBehindWhatWasPasted) {
  TestPage page(QString::fromUtf8(GetParam().before));
  const auto range = page.Range();
  range->pasteHTML(QString::fromUtf8(GetParam().html));
  EXPECT_EQ(page.Show(range->range()), QString::fromUtf8(GetParam().after));
  EXPECT_EQ(page.Problems(), QStringList());
}

INSTANTIATE_TEST_SUITE_P(
    Cases, PasteHtml,
    testing::Values(
        Edit{"a^b", "x", "ax^b"}, Edit{"a^b", "<b>x</b>", "a<b>x</b>^b"}, Edit{"a^b", "1<b>x</b>2", "a1<b>x</b>2^b"},
        Edit{"a^b", "<br>", "a<br>^b"}, Edit{"^", "x", "x^"}, Edit{"<font>a</font>^", "x", "<font>a</font>x^"},
        Edit{"<font>^</font>", "x", "<font>x^</font>"}, Edit{"a<br>^", "1<i>2</i>", "a<br>1<i>2</i>^"},
        Edit{"a^bc^d", "x", "ax^d"}, Edit{"a^bc^d", "", "a^d"}, Edit{"a^b<i>c</i>d^e", "", "a^e"},
        Edit{"a^b<i>c^d</i>e", "x", "ax^<i>d</i>e"}, Edit{"<b>a^b</b><i>c^d</i>", "x", "<b>ax^</b><i>d</i>"},
        // The last character of a FONT goes, the FONT stays for what is typed next.
        Edit{"<font>^a^</font>", "", "<font>^</font>"}, Edit{"<font>a^b^</font>c", "", "<font>a^</font>c"},
        // Both tags in the range: the element goes, and the texts beside it become one.
        Edit{"a^<font>b</font>^c", "", "a^c"},
        // An edge alone can't be deleted.
        Edit{"<p>a^</p><p>^b</p>", "", "<p>a^</p><p>b</p>"}, Edit{"<p>a^</p><p>b^c</p>", "", "<p>a^</p><p>c</p>"},
        Edit{"<table><tr><td>a^</td><td>^b</td></tr></table>", "",
             "<table><tbody><tr><td>a^</td><td>b</td></tr></tbody></table>"},
        // Cells of a table that is covered in part stay, also those that lie wholly in the range.
        Edit{"<table><tr><td>a^b</td><td>c</td><td>d^e</td></tr></table>", "",
             "<table><tbody><tr><td>a^</td><td></td><td>e</td></tr></tbody></table>"},
        Edit{"x^y<table><tr><td>a</td></tr><tr><td>b^c</td></tr></table>", "",
             "x^<table><tbody><tr><td></td></tr><tr><td>c</td></tr></tbody></table>"},
        Edit{"a^<table><tr><td>b</td></tr></table>^c", "", "a^c"}));

TEST(TxtRange, TypedSpacesAndLettersStandInOrder) {
  TestPage page("^");
  const auto range = page.Range();
  for (const char* key : {"a", " ", " ", "b"}) {
    if (*key == ' ') {
      EXPECT_EQ(range->text(), "");
      range->setText(" ");
    } else {
      range->pasteHTML(key);
      range->move("character", 0);
    }
  }
  EXPECT_EQ(page.Show(range->range()), "a  b^");
  EXPECT_EQ(page.Problems(), QStringList());
}

TEST(TxtRange, TextIsNotParsed) {
  TestPage page("a^b^c");
  const auto range = page.Range();
  range->setText("<i>&amp;");
  EXPECT_EQ(page.Body(), "a&lt;i&gt;&amp;amp;c");
  EXPECT_TRUE(range->range().IsCollapsed());
}

// The key Backspace: one character back, over which the content is deleted.
void Backspace(HTMLTxtRange& range) {
  range.move("character", -1);
  range.moveEnd("character", 1);
  range.pasteHTML("");
}

struct Key {
  const char* before;
  const char* after;
};

class BackspaceKey : public testing::TestWithParam<Key> {};

TEST_P(BackspaceKey, DeletesOneCharacter) {
  TestPage page(QString::fromUtf8(GetParam().before));
  const auto range = page.Range();
  Backspace(*range);
  EXPECT_EQ(page.Show(range->range()), QString::fromUtf8(GetParam().after));
  EXPECT_EQ(page.Problems(), QStringList());
}

INSTANTIATE_TEST_SUITE_P(
    Cases, BackspaceKey,
    testing::Values(Key{"ab^c", "a^c"}, Key{"a<br>^b", "a^b"}, Key{"a<img>^b", "a^b"}, Key{"a&nbsp;^b", "a^b"},
                    Key{"a \xF0\x9F\x98\x80^b", "a ^b"}, Key{"a  ^b", "a ^b"},
                    Key{"<font>a</font><b>b^</b>", "<font>a</font><b>^</b>"},
                    Key{"<table><tr><td>a</td><td>^b</td></tr></table>",
                        "<table><tbody><tr><td>a^</td><td>b</td></tr></tbody></table>"},
                    Key{"<p>a</p><p>^b</p>", "<p>a^</p><p>b</p>"},
                    // At the very start of the page there is no step back, and the character behind goes.
                    Key{"^ab", "^b"}, Key{"<font>^ab</font>", "<font>^b</font>"}));

TEST(TxtRange, APictureHasContentAndNoText) {
  TestPage page("a<img src='x.png'>b");
  const auto range = page.document.body().createTextRange();
  range->moveToElementText(page.Element("IMG"));
  EXPECT_EQ(range->compareEndPoints("StartToEnd", *range), -1);
  EXPECT_EQ(range->text(), "");
  EXPECT_EQ(range->htmlText(), "<img src=\"x.png\" />");
}

TEST(TxtRange, MoveToElementTextCoversTheTags) {
  for (const char* tag : {"FONT", "TABLE", "TR", "TD", "P", "IMG"}) {
    TestPage page("x<font size=2>a<b>b</b></font><table><tr><td>c<td>d</table><p>e</p><img src=i>");
    const auto range = page.document.body().createTextRange();
    range->moveToElementText(page.Element(tag));
    EXPECT_EQ(range->htmlText(), page.Element(tag).outerHTML()) << tag;
    range->pasteHTML("");
    EXPECT_EQ(page.Problems(), QStringList()) << tag;
  }
}

TEST(TxtRange, PastingNothingOverAnElementRemovesIt) {
  const QStringList contents = {
      "<font></font>", "<font>a</font>", "<table></table>", "<table><tr><td></td></tr></table>", "<p></p>",
      "<img>",         "<font> </font>", "<font>\n</font>", "<span><font></font></span>"};
  for (const QString& content : contents) {
    TestPage page("1" + content + "2");
    const auto range = page.document.body().createTextRange();
    range->moveToElementText(HTMLElement(page.document.tree().bodyNode()->firstChild()->next()));
    EXPECT_EQ(range->compareEndPoints("StartToEnd", *range), -1);
    range->pasteHTML("");
    EXPECT_EQ(page.Show(range->range()), "1^2") << content.toStdString();
    EXPECT_EQ(page.Problems(), QStringList());
  }
}

TEST(TxtRange, BodyAndHtmlAreCoveredWithoutTheirTags) {
  TestPage page("a<b>b</b>");
  const auto range = page.Range();
  range->SetRange({BoundaryPoint::AtStart(page.document.tree().bodyNode()),
                   BoundaryPoint::AtStart(page.document.tree().bodyNode())});
  range->moveToElementText(page.document.body());
  EXPECT_EQ(range->htmlText(), "a<b>b</b>");
  range->moveToElementText(page.document.documentElement());
  EXPECT_EQ(range->htmlText(), "<head></head><body>a<b>b</b></body>");
  // From outside of BODY a step comes into it.
  range->move("character", -1);
  EXPECT_EQ(page.Show(range->range()), "^a<b>b</b>");
  range->moveToElementText(page.document.documentElement());
  range->move("character", 1);
  EXPECT_TRUE(page.document.tree().bodyNode()->Contains(range->range().start.container));
}

TEST(TxtRange, TextEditGoesToTheEndOfTheText) {
  const std::pair<const char*, const char*> rows[] = {
      {"<font>a</font>", "<font>a^</font>"},
      {"<font>a</font>\n", "<font>a^</font>\n"},
      {"x<font></font>", "x<font>^</font>"},
      {"<p>a</p>", "<p>a^</p>"},
      {"a<br>", "a<br>^"},
      {"a<img>", "a<img>^"},
      {"", "^"},
      {"a<table><tr><td>b</td></tr></table>", "a<table><tbody><tr><td>b</td></tr></tbody></table>^"},
      {"<div><table><tr><td>b</td></tr></table></div>",
       "<div><table><tbody><tr><td>b</td></tr></tbody></table>^</div>"},
      {"<font>a</font><!--c--><script>x</script>", "<font>a^</font><!--><script>x</script>"},
  };
  for (const auto& [html, shown] : rows) {
    TestPage page(QString::fromUtf8(html));
    const auto range = page.document.selection().createRange();
    range->move("textedit", 1);
    EXPECT_EQ(page.Show(range->range()), shown);
    range->move("textedit", -1);
    EXPECT_TRUE(range->range().start == BoundaryPoint::AtStart(page.document.tree().bodyNode()));
  }
}

TEST(TxtRange, AMoveByNothingLeavesTheRangeAtItsStart) {
  TestPage page("a^bc^d");
  const auto range = page.Range();
  range->move("character", 0);
  EXPECT_EQ(page.Show(range->range()), "a^bcd");
}

TEST(TxtRange, APointOutsideOfBodyIsTakenToTheNearerEndOfIt) {
  TestPage page("ab");
  const auto range = page.document.body().createTextRange();
  const Node* const html = page.document.tree().root();
  for (const auto& [point, shown] :
       {std::pair{BoundaryPoint::AtStart(html), "^ab"}, {BoundaryPoint::AtEnd(html), "ab^"}}) {
    range->SetRange({point, point});
    range->move("character", 0);
    EXPECT_EQ(page.Show(range->range()), shown);
    range->SetRange({point, point});
    range->moveEnd("character", 0);
    EXPECT_EQ(page.Show(BoundaryPoint(range->range().end)), shown);
  }
}

TEST(TxtRange, ASelectionOfTheWholeDocumentGoesToTheEndsOfBody) {
  TestPage page("<p>ab</p>");
  const Node* const html = page.document.tree().htmlNode();
  const LiveRange whole[] = {{BoundaryPoint::AtStart(html), BoundaryPoint::AtEnd(html)},
                             {BoundaryPoint::Before(page.document.tree().bodyNode()), BoundaryPoint::AtEnd(html)}};
  for (const LiveRange& range : whole) {
    page.document.selection().Mirror(range);
    EXPECT_EQ(page.document.selection().createRange()->htmlText(), "<p>ab</p>");
  }
  page.document.selection().createRange()->pasteHTML("");
  EXPECT_EQ(page.document.documentElement().outerHTML().count("<body"), 1);
  EXPECT_EQ(page.Body(), "");
  EXPECT_EQ(page.Problems(), QStringList());
}

TEST(TxtRange, APlaceThatCantBeToldIsThatOfBefore) {
  TestPage page("ab");
  const auto range = page.document.body().createTextRange();
  int done = 0;
  range->Measure([&] { ++done; });
  EXPECT_FALSE(range->offsetLeft());
  page.page->position = QPoint(30, 40);
  range->Measure([&] { ++done; });
  page.page->position.reset();
  range->Measure([&] { ++done; });
  EXPECT_EQ(done, 3);
  EXPECT_EQ(range->offsetLeft(), 30);
  EXPECT_EQ(range->offsetTop(), 40);
}

TEST(TxtRange, CompareEndPoints) {
  TestPage page("a^bc^d");
  const auto range = page.Range();
  const auto other = range->duplicate();
  EXPECT_EQ(range->compareEndPoints("StartToEnd", *range), -1);
  EXPECT_EQ(range->compareEndPoints("EndToStart", *other), 1);
  EXPECT_EQ(range->compareEndPoints("StartToStart", *other), 0);
  EXPECT_EQ(range->compareEndPoints("endtoend", *other), 0);
  other->move("character", 0);
  EXPECT_EQ(other->compareEndPoints("StartToEnd", *other), 0);
}

TEST(TxtRange, ADuplicateDoesNotMoveItsOriginal) {
  TestPage page("ab^cd");
  const auto range = page.Range();
  const auto other = range->duplicate();
  other->move("character", 1);
  EXPECT_EQ(page.Show(range->range()), "ab^cd");
  EXPECT_EQ(page.Show(other->range()), "abc^d");
}

TEST(TxtRange, MoveEndTakesTheStartAlongWhenItPassesIt) {
  TestPage page("ab^cd^e");
  const auto range = page.Range();
  range->moveEnd("character", -3);
  EXPECT_EQ(page.Show(range->range()), "a^bcde");
  range->moveEnd("character", 2);
  EXPECT_EQ(page.Show(range->range()), "a^bc^de");
  range->moveEnd("character", 100);
  EXPECT_EQ(page.Show(range->range()), "a^bcde^");
}

TEST(TxtRange, StaysBeforeAnInsertionAtItsPlace) {
  TestPage page("ab^cd");
  const auto range = page.Range();
  const auto other = range->duplicate();
  other->pasteHTML("xy");
  EXPECT_EQ(page.Show(range->range()), "ab^xycd");
  EXPECT_EQ(page.Show(other->range()), "abxy^cd");
}

TEST(TxtRange, MovesWithItsCharactersWhenAPictureIsPutBeforeThem) {
  TestPage page("ab^cd^e");
  const auto range = page.Range();
  const auto other = page.Range();
  other->SetRange({BoundaryPoint::InText(page.Text("abcde"), 1), BoundaryPoint::InText(page.Text("abcde"), 1)});
  other->pasteHTML("<img>");
  EXPECT_EQ(page.Show(range->range()), "a<img>b^cd^e");
  other->moveToElementText(page.Element("IMG"));
  other->pasteHTML("");
  EXPECT_EQ(page.Show(range->range()), "ab^cd^e");
}

TEST(TxtRange, ARangeOfAGonePageDoesNothing) {
  std::shared_ptr<HTMLTxtRange> range;
  HTMLElement element;
  {
    TestPage page("a^b^<b>c</b>");
    range = page.Range();
    element = page.Element("B");
  }
  EXPECT_EQ(range->text(), "");
  EXPECT_EQ(range->htmlText(), "");
  range->pasteHTML("x");
  range->setText("x");
  range->move("character", 1);
  range->moveEnd("character", 1);
  range->moveToElementText(element);
  range->moveToPoint(1, 1);
  range->select();
  EXPECT_EQ(range->duplicate(), nullptr);
  EXPECT_EQ(range->compareEndPoints("StartToEnd", *range), 0);
}

TEST(TxtRange, AnElementOutOfThePageIsNoPlace) {
  TestPage page("a^b<b>c</b>");
  const auto range = page.Range();
  const HTMLElement bold = page.Element("B");
  page.Element("B").setOuterHTML("");
  range->moveToElementText(bold);
  EXPECT_EQ(page.Show(range->range()), "a^b");
}

TEST(TxtRange, MoveToPointTakesTheCaretOfTheCurrentEvent) {
  TestPage page("ab<b>c</b>");
  const BoundaryPoint caret = BoundaryPoint::InText(page.Text("ab"), 1);
  page.document.Dispatch(HTMLEventObj(EventType::Click).At(5, 6).Caret(caret, QPoint(16, 8)));
  const auto range = page.document.body().createTextRange();
  EXPECT_FALSE(range->offsetLeft());
  range->moveToPoint(5, 6);
  EXPECT_EQ(page.Show(range->range()), "a^b<b>c</b>");
  EXPECT_EQ(range->offsetLeft(), 16);
  EXPECT_EQ(range->offsetTop(), 8);
  range->moveToPoint(7, 6);
  EXPECT_EQ(page.Show(range->range()), "ab<b>c</b>^");
  EXPECT_FALSE(range->offsetLeft());
}

TEST(TxtRange, SelectionFollowsSelectAndEmpty) {
  TestPage page("a^bc^d");
  HTMLSelectionObject& selection = page.document.selection();
  EXPECT_EQ(selection.type(), "None");
  EXPECT_EQ(page.Show(selection.createRange()->range()), "^abcd");
  page.Range()->select();
  EXPECT_EQ(selection.type(), "Text");
  EXPECT_EQ(selection.createRange()->htmlText(), "bc");
  EXPECT_TRUE(page.page->selectionShown);
  selection.empty();
  EXPECT_EQ(selection.type(), "None");
  EXPECT_FALSE(page.page->selectionShown);
}

struct Reading {
  const char* marked;
  const char* text;
  const char* html;
};

class ReadRange : public testing::TestWithParam<Reading> {};

TEST_P(ReadRange, TextAndHtml) {
  TestPage page(QString::fromUtf8(GetParam().marked));
  EXPECT_EQ(page.Range()->text(), QString::fromUtf8(GetParam().text));
  EXPECT_EQ(page.Range()->htmlText(), QString::fromUtf8(GetParam().html));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ReadRange,
    testing::Values(Reading{"a^b^c", "b", "b"}, Reading{"^a<br>b^", "a\r\nb", "a<br />b"},
                    Reading{"^&nbsp;^", "\xC2\xA0", "&nbsp;"}, Reading{"^a<img>b^", "ab", "a<img />b"},
                    Reading{"<p>^a</p><p>b^</p>", "a\r\nb", "<p>a</p><p>b</p>"}, Reading{"<p>a^</p><p>^b</p>", "", ""},
                    Reading{"^a\n  b^", "a b", "a\n  b"},
                    Reading{"<table><tr><td>a^b</td><td>c^d</td></tr></table>", "b\r\nc", "<td>b</td><td>c</td>"},
                    Reading{"<table><tr><td>a^</td><td>^b</td></tr></table>", "", ""},
                    Reading{"<font>a^b<b>c</b></font><i>d^e</i>", "bcd", "<font>b<b>c</b></font><i>d</i>"},
                    Reading{"a^<br>^b", "\r\n", "<br />"},
                    Reading{"a^<script>x()</script>b^", "b", "<script>x()</script>b"},
                    Reading{"a^b<button>c^d</button>e", "b", "b<button>c</button>"}));

}  // namespace
