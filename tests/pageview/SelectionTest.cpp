#include "PageViewFixture.h"
#include "TreeBuilder.h"

namespace {

const char* const kEveryTag =
    "<FONT id='font'>f<B id='b'>b</B><STRONG id='strong'>s</STRONG><A id='a' href='x.html'>a</A></FONT>"
    "<B id='loneb'>lb</B><STRONG id='lonestrong'>ls</STRONG><IMG id='img' src='i.gif'>"
    "<TABLE id='table'><TR id='tr'><TD id='td'><FONT id='cellfont'>c</FONT></TD>"
    "<TD id='bold'><B>x<FONT id='deep'>y</FONT></B></TD><TD id='picture'><IMG src='p.gif'></TD>"
    "<TD id='second'><I>i</I><FONT id='later'>z</FONT></TD></TR></TABLE>"
    "<P id='p'>p</P><DIV id='div'>d</DIV><SPAN id='span'>s</SPAN><H1 id='h1'>h</H1><UL><LI id='li'>l</LI></UL>"
    "<I id='i'>i</I><U id='u'>u</U><CENTER id='center'>c</CENTER>";

class Selection : public PageViewTest {
 protected:
  Selection() { page_.ShowBody(kEveryTag); }
  QString IdOfCurrent() { return view_.CurrentElement().id(); }
};

struct ClickRow {
  const char* source;
  const char* sTag;
  const char* currentTag;
  const char* currentElement;  // "" is none
  bool range;
};

const ClickRow kClickRows[] = {
    {"font", "FONT", "FONT", "font", true},
    {"b", "B", "B", "b", true},
    {"loneb", "B", "B", "loneb", true},
    {"a", "A", "A", "a", true},
    {"strong", "STRONG", "STRONG", "strong", true},
    {"img", "IMG", "IMG", "img", false},
    {"tr", "TR", "TR", "tr", false},
    {"table", "TABLE", "TABLE", "table", false},
    {"td", "FONT", "FONT", "cellfont", true},
    {"second", "FONT", "FONT", "later", true},
    {"bold", "TD", "TD", "", false},
    {"picture", "TD", "TD", "", false},
    {"", "BODY", "BODY", "", true},
    {"p", "", "P", "", false},
    {"div", "", "DIV", "", false},
    {"span", "", "SPAN", "", false},
    {"h1", "", "H1", "", false},
    {"li", "", "LI", "", false},
    {"i", "", "I", "", false},
    {"u", "", "U", "", false},
    {"center", "", "CENTER", "", false},
};

TEST_F(Selection, EveryRowOfTheClickTable) {
  for (const ClickRow& row : kClickRows) {
    SCOPED_TRACE(row.source);
    QSignalSpy clicked(&view_, &WBUC::Click);
    Click(row.source);
    ASSERT_EQ(1, clicked.size());
    EXPECT_EQ(row.sTag, clicked[0][0].toString());
    EXPECT_EQ(40 * 15, clicked[0][1].toInt());
    EXPECT_EQ(60 * 15, clicked[0][2].toInt());
    EXPECT_EQ(row.range ? 17 * 15 : -1, clicked[0][3].toInt());
    EXPECT_EQ(row.range ? 33 * 15 : -1, clicked[0][4].toInt());
    EXPECT_EQ(row.currentTag, view_.CurrentElementTag());
    EXPECT_EQ(row.currentElement, IdOfCurrent());
    EXPECT_EQ(*row.currentElement != '\0', view_.HasCurrentElement());
    EXPECT_EQ(row.range, view_.HasCurrentTextRange());
    EXPECT_EQ("", view_.CurrentSelElementTag());
  }
}

TEST_F(Selection, AnElementThatIsNotEditableTakesNoKeys) {
  for (const char* id : {"p", "div", "span", "h1", "li", "i", "u", "center", "bold", "picture", "img", "table"}) {
    const QString before = Body();
    Click(id);
    QSignalSpy pressed(&view_, &WBUC::KeyPress);
    page_.browser->KeyUp('A');
    EXPECT_EQ(before, Body()) << id;
    ASSERT_EQ(1, pressed.size()) << id;
    EXPECT_EQ((QList<QVariant>{"", 0, 0}), pressed[0]) << id;
  }
}

TEST_F(Selection, AClickBeforeTheDocumentIsReadyDoesNothing) {
  view_.Navo(page_.test.Path("none.html"), false);
  QSignalSpy clicked(&view_, &WBUC::Click);
  QSignalSpy doubleClicked(&view_, &WBUC::DoubleClick);
  Fire(EventType::Click, "font");
  Fire(EventType::DoubleClick, "font");
  EXPECT_EQ(0, clicked.size());
  EXPECT_EQ(0, doubleClicked.size());
  EXPECT_FALSE(view_.HasCurrentElement());
}

TEST_F(Selection, ClicksAndTheContextMenuAreCancelled) {
  Fire(EventType::Click, "a");
  EXPECT_FALSE(view_.Doc_onclick());
  EXPECT_FALSE(view_.Doc_ondblclick());
  EXPECT_FALSE(view_.Doc_oncontextmenu());
}

struct DoubleClickRow {
  const char* source;
  const char* sTag;            // null: no event
  const char* currentElement;  // after the double click, "" is none
  const char* selTag;          // "" is none
  bool range;
};

const DoubleClickRow kDoubleClickRows[] = {
    {"img", "IMG", "img", "IMG", false},
    {"font", "FONT", "font", "FONT", false},
    {"b", "FONT", "font", "FONT", true},
    {"strong", "FONT", "font", "FONT", true},
    {"loneb", "B", "loneb", "", true},
    {"lonestrong", "STRONG", "lonestrong", "", true},
    {"table", "TABLE", "table", "TABLE", false},
    {"tr", "TABLE", "table", "TABLE", false},
    {"td", "TABLE", "table", "TABLE", true},
    {"bold", "TABLE", "table", "TABLE", false},
    {"", "BODY", "", "", true},
    {"a", "A", "a", "", true},
    {"p", "P", "", "", false},
    {"i", "I", "", "", false},
};

TEST_F(Selection, EveryRowOfTheDoubleClickTable) {
  for (const DoubleClickRow& row : kDoubleClickRows) {
    SCOPED_TRACE(row.source);
    page_.ShowBody(kEveryTag);
    QSignalSpy doubleClicked(&view_, &WBUC::DoubleClick);
    DoubleClick(row.source);
    ASSERT_EQ(1, doubleClicked.size());
    EXPECT_EQ(row.sTag, doubleClicked[0][0].toString());
    EXPECT_EQ(row.sTag, view_.CurrentElementTag());
    EXPECT_EQ(row.currentElement, IdOfCurrent());
    EXPECT_EQ(row.selTag, view_.CurrentSelElementTag());
    EXPECT_EQ(row.range, view_.HasCurrentTextRange());
    EXPECT_EQ(*row.selTag ? "Text" : "None", page_.Document().selection().type());
    EXPECT_EQ(*row.selTag ? WBUC::ElementSelected : WBUC::NothingSelected, view_.IfSelection());
  }
}

TEST_F(Selection, DoubleClickOnBoldSelectsTheBlockAroundItAndKeepsTheInsertionPoint) {
  Click("b");
  const auto range = view_.CurrentTextRange();
  Fire(EventType::DoubleClick, "b");
  EXPECT_EQ(range, view_.CurrentTextRange());
  EXPECT_EQ("font", IdOfCurrent());
  page_.browser->KeyUp('Z');
  EXPECT_TRUE(Body().contains("z"));
}

// Meant in WBUC::Doc_ondblclick: a double click on a cell selects its table and keeps the insertion point.
TEST_F(Selection, DoubleClickOnACellSelectsItsTableAndKeepsTheInsertionPoint) {
  Click("td");
  const auto range = view_.CurrentTextRange();
  ASSERT_TRUE(range);
  Fire(EventType::DoubleClick, "td");
  EXPECT_EQ(range, view_.CurrentTextRange());
  EXPECT_EQ("TABLE", view_.CurrentSelElementTag());
}

// Meant in WBUC::Doc_ondblclick: a table is looked for three steps above a cell and no further.
TEST_F(Selection, ACellMoreThanThreeStepsBelowItsTableRaisesNoDoubleClick) {
  // No parser makes such a tree, so it is built by hand.
  HTMLDocument& document = page_.Document();
  const Node* const row = Named("tr").node();
  const Node* const body = row->parent();
  Node* const between = TreeBuilder::Element(Tag::Of("div"));
  document.gateway().Insert(body, nullptr, between);
  document.gateway().Insert(between, nullptr, document.gateway().Take(row));
  QSignalSpy doubleClicked(&view_, &WBUC::DoubleClick);
  DoubleClick("bold");
  EXPECT_EQ(0, doubleClicked.size());
  EXPECT_EQ("", view_.CurrentSelElementTag());
  EXPECT_EQ("TD", view_.CurrentElementTag());
  EXPECT_EQ("None", document.selection().type());
  // A row is one step nearer and still finds it.
  DoubleClick("tr");
  EXPECT_EQ(1, doubleClicked.size());
  EXPECT_EQ("TABLE", view_.CurrentSelElementTag());
  // It is the current element that is asked, so with a table current already the event goes out for the cell.
  doubleClicked.clear();
  Click("bold");
  view_.SetCurrentElement(Named("table"));
  Fire(EventType::DoubleClick, "bold");
  ASSERT_EQ(1, doubleClicked.size());
  EXPECT_EQ("TD", doubleClicked[0][0].toString());
  EXPECT_EQ("", view_.CurrentSelElementTag());
}

TEST_F(Selection, DoubleClickOnThePageMovesTheInsertionPointToTheEndOfItsText) {
  page_.ShowBody("<FONT id='font'>one</FONT>");
  DoubleClick("");
  ASSERT_TRUE(view_.HasCurrentTextRange());
  EXPECT_FALSE(view_.HasCurrentElement());
  page_.browser->KeyUp('X');
  EXPECT_EQ("<font id=\"font\">onex</font>", Body());
}

// Meant in WBUC::Doc_ondblclick: a double click on a link selects nothing and is told all the same.
TEST_F(Selection, ALinkCannotBeSelectedByDoubleClickButTheEventGoesOut) {
  QSignalSpy doubleClicked(&view_, &WBUC::DoubleClick);
  DoubleClick("a");
  ASSERT_EQ(1, doubleClicked.size());
  EXPECT_EQ("A", doubleClicked[0][0].toString());
  EXPECT_EQ("", view_.CurrentSelElementTag());
  EXPECT_EQ(WBUC::NothingSelected, view_.IfSelection());
}

TEST_F(Selection, LeftButtonDownClearsEverything) {
  Click("b");
  Fire(EventType::DoubleClick, "b");
  ASSERT_TRUE(view_.HasCurrentElement() && view_.HasCurrentTextRange());
  Fire(EventType::MouseDown, "img");
  EXPECT_FALSE(view_.HasCurrentElement());
  EXPECT_FALSE(view_.HasCurrentTextRange());
  EXPECT_EQ("", view_.CurrentSelElementTag());
  EXPECT_EQ("", view_.CurrentElementTag());
}

// Meant in WBUC::Doc_onmousedown: a press of the left button clears everything even while no page is ready.
TEST_F(Selection, LeftButtonDownClearsEvenWhileNoDocumentIsReady) {
  view_.Navo(page_.test.Path("none.html"), false);
  ASSERT_FALSE(view_.DocReady());
  view_.SetCurrentElement(Named("font"));
  ASSERT_TRUE(page_.PutPoint("font", 0));
  Fire(EventType::MouseDown, "img");
  EXPECT_FALSE(view_.HasCurrentElement());
  EXPECT_FALSE(view_.HasCurrentTextRange());
}

TEST_F(Selection, OtherButtonsChangeNoState) {
  for (const int button : {2, 4}) {
    Click("b");
    Fire(EventType::DoubleClick, "b");
    const auto range = view_.CurrentTextRange();
    for (const EventType type : {EventType::MouseDown, EventType::ContextMenu, EventType::MouseUp})
      Fire(type, "img", button);
    EXPECT_EQ("font", IdOfCurrent());
    EXPECT_EQ("FONT", view_.CurrentSelElementTag());
    EXPECT_EQ("FONT", view_.CurrentElementTag());
    EXPECT_EQ(range, view_.CurrentTextRange());
    EXPECT_EQ(WBUC::ElementSelected, view_.IfSelection());
  }
}

TEST_F(Selection, NothingIsMarkedInThePage) {
  const QString before = page_.Document().documentElement().outerHTML();
  for (const DoubleClickRow& row : kDoubleClickRows) DoubleClick(row.source);
  const QString after = page_.Document().documentElement().outerHTML();
  EXPECT_EQ(before, after);
  EXPECT_FALSE(after.contains("contenteditable", Qt::CaseInsensitive));
}

TEST_F(Selection, IfSelectionTellsTextOnlyWhereSomethingIsSelected) {
  page_.ShowBody("<FONT id='font'>some text</FONT><IMG id='img' src='i.gif'>");
  EXPECT_EQ(WBUC::NothingSelected, view_.IfSelection());
  const Node* const text = TextOf(Named("font"));
  page_.browser->Drag(*page_.browser->PointAt(BoundaryPoint::InText(text, 1)),
                      *page_.browser->PointAt(BoundaryPoint::InText(text, 4)));
  EXPECT_EQ(WBUC::TextSelected, view_.IfSelection());
  EXPECT_TRUE(view_.HasCurrentTextRange());
  // A picture alone is a selection without text.
  const Node* const picture = Named("img").node();
  page_.Document().selection().Mirror({BoundaryPoint::Before(picture), BoundaryPoint::Behind(picture)});
  EXPECT_EQ(WBUC::NothingSelected, view_.IfSelection());
}

// Meant in WBUC::IfSelection: the selection counts as that element whatever is selected by keyboard afterwards.
TEST_F(Selection, IfSelectionStaysAtTheElementWhateverTheUserSelectsByKeyboard) {
  DoubleClick("img");
  page_.Document().selection().Mirror({});
  EXPECT_EQ(WBUC::ElementSelected, view_.IfSelection());
  const Node* const text = TextOf(Named("font"));
  page_.Document().selection().Mirror({BoundaryPoint::InText(text, 0), BoundaryPoint::InText(text, 1)});
  EXPECT_EQ(WBUC::ElementSelected, view_.IfSelection());
}

TEST_F(Selection, SettingTheCurrentElementLeavesTheSelectedOne) {
  DoubleClick("font");
  view_.SetCurrentElement(Named("img"));
  EXPECT_EQ("img", IdOfCurrent());
  EXPECT_EQ("IMG", view_.CurrentElementTag());
  EXPECT_EQ("FONT", view_.CurrentSelElementTag());
  view_.SetCurrentElement(HTMLElement());
  EXPECT_EQ("img", IdOfCurrent());
  EXPECT_EQ("IMG", view_.CurrentElementTag());
}

TEST_F(Selection, TheTagOfTheSelectedElementIsAsTheDocumentGivesIt) {
  // Names inside a drawing keep their letters; only CurrentElementTag is upper case.
  page_.ShowBody("<svg><font id='drawn'></font></svg>");
  DoubleClick("drawn");
  EXPECT_EQ("font", view_.CurrentSelElementTag());
  EXPECT_EQ("FONT", view_.CurrentElementTag());
}

TEST_F(Selection, NavoAndANewDocumentForgetEverything) {
  DoubleClick("b");
  view_.Navo(page_.test.Path("none.html"), false);
  EXPECT_FALSE(view_.HasCurrentElement());
  EXPECT_FALSE(view_.HasCurrentTextRange());
  EXPECT_EQ("", view_.CurrentSelElementTag());
  EXPECT_EQ("", view_.CurrentElementTag());
  page_.ShowBody(kEveryTag);
  DoubleClick("b");
  page_.ShowBody(kEveryTag);
  EXPECT_FALSE(view_.HasCurrentElement());
  EXPECT_FALSE(view_.HasCurrentTextRange());
  EXPECT_EQ("", view_.CurrentSelElementTag());
}

TEST_F(Selection, HoverTellsTheTagAndThenNothing) {
  page_.ShowBody("<FONT id='font'>t</FONT><svg id='svg'></svg>");
  QSignalSpy hover(&view_, &WBUC::ElementHover);
  Fire(EventType::MouseOver, "font", 0);
  Fire(EventType::MouseOut, "font", 0);
  Fire(EventType::MouseOver, "svg", 0);
  ASSERT_EQ(3, hover.size());
  EXPECT_EQ("FONT", hover[0][0].toString());
  EXPECT_EQ("", hover[1][0].toString());
  EXPECT_EQ("svg", hover[2][0].toString());
}

}  // namespace
