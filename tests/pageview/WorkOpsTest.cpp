#include "WorkOps.h"

#include "PageViewFixture.h"

namespace {

class WorkOps : public PageViewTest {
 protected:
  // The page with "<hr>" inserted while that element is current; "" is none.
  QString Inserted(const QString& body, const QString& id) {
    page_.ShowBody(body);
    if (!id.isEmpty()) view_.SetCurrentElement(Named(id));
    InsertPageHTML(view_, "<hr>");
    return Body();
  }
  TableProps Props(const QString& attributes, const QString& cells = "<tr><td>x</td></tr>") {
    page_.ShowBody("<table id='t' " + attributes + ">" + cells + "</table>");
    return ReadTableProps(Named("t"));
  }
};

TEST_F(WorkOps, NewContentGoesBehindTextBlocksAndPictures) {
  EXPECT_EQ(Inserted("<font id='e'>a</font>b", "e"), "<font id=\"e\">a</font><hr />b");
  EXPECT_EQ(Inserted("<img id='e'>b", "e"), "<img id=\"e\" /><hr />b");
}

TEST_F(WorkOps, NewContentGoesIntoTheCurrentCell) {
  EXPECT_EQ(Inserted("<table><tr><td id='e'>a</td></tr></table>", "e"),
            "<table><tbody><tr><td id=\"e\">a<hr /></td></tr></tbody></table>");
}

TEST_F(WorkOps, NewContentGoesIntoTheFirstCellOfTheCurrentTable) {
  EXPECT_EQ(Inserted("<table id='e'><tr><td>a</td><td>b</td></tr></table>", "e"),
            "<table id=\"e\"><tbody><tr><td>a<hr /></td><td>b</td></tr></tbody></table>");
  // A table without a TD takes it itself.
  EXPECT_EQ(Inserted("<table id='e'><tr><th>a</th></tr></table>", "e"),
            "<table id=\"e\"><tbody><tr><th>a</th></tr></tbody><hr /></table>");
}

TEST_F(WorkOps, NewContentGoesToTheEndWithAnythingElseCurrentOrNothing) {
  EXPECT_EQ(Inserted("<b id='e'>a</b>b", ""), "<b id=\"e\">a</b>b<hr />");
  for (const char* tag : {"b", "a", "strong", "p"}) {
    const QString body = QString("<%1 id=\"e\">a</%1>b").arg(tag);
    EXPECT_EQ(Inserted(body, "e"), body + "<hr />");
  }
  EXPECT_EQ(Inserted("<table><tr id='e'><td>a</td></tr></table>", "e"),
            "<table><tbody><tr id=\"e\"><td>a</td></tr></tbody></table><hr />");
}

// Meant in InsertPageHTML: nothing is inserted behind a text block that is no longer in the page.
TEST_F(WorkOps, NothingIsInsertedBehindAStaleTextBlock) {
  page_.ShowBody("<font id='a'>one</font><font id='b'>two</font>");
  DoubleClick("a");
  view_.Cut();
  InsertPageHTML(view_, "<hr>");
  EXPECT_EQ(Body(), "<font id=\"b\">two</font>");
}

TEST_F(WorkOps, TableValuesAreReadAsWritten) {
  const TableProps props = Props("width='50%' height=20 border=3 bgcolor='#010203' cellpadding=10 align=CENTER",
                                 "<tr><td align=right valign=top>x</td><td align=left>y</td></tr>");
  EXPECT_EQ(props.Width, "50%");
  EXPECT_EQ(props.Height, "20");
  EXPECT_FALSE(props.HasNoBorder);
  EXPECT_EQ(props.Border, 3);
  EXPECT_EQ(props.Color, 0x030201);
  EXPECT_EQ(props.PaddingIndex, 2);
  EXPECT_EQ(props.Align, "CENTER");
  EXPECT_EQ(props.CellAlign, "right");
  EXPECT_EQ(props.CellVAlign, "top");
}

TEST_F(WorkOps, ABorderThatIsNoNumberTellsNothing) {
  EXPECT_TRUE(Props("border=0").HasNoBorder);
  for (const char* border : {"", "border=''", "border=thin"}) {
    EXPECT_FALSE(Props(border).HasNoBorder);
    EXPECT_EQ(Props(border).Border, std::nullopt) << border;
  }
  EXPECT_EQ(Props("border=20").Border, 20) << "more than the list offers";
}

// Meant in ReadTableProps: a padding of 7 reads as 5.
TEST_F(WorkOps, APaddingOfSevenReadsAsFive) {
  EXPECT_EQ(Props("cellpadding=7").PaddingIndex, 1);
  for (const char* padding : {"", "cellpadding=''", "cellpadding=0", "cellpadding=much", "cellpadding=4"})
    EXPECT_EQ(Props(padding).PaddingIndex, 0) << padding;
}

TEST_F(WorkOps, ATableOfAnotherKindHasNoCellValues) {
  const TableProps props = Props("", "<tr><th align=right>x</th></tr>");
  EXPECT_EQ(props.CellAlign, "");
  EXPECT_EQ(props.Color, 0);
}

}  // namespace
