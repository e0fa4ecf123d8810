#include "NestingLimit.h"

#include <gtest/gtest.h>

#include "HtmlParser.h"
#include "OwnTime.h"
#include "QtPrinters.h"
#include "TestPage.h"

namespace {

TEST(NestingLimit, TextThatNestsLessComesBackAsItIs) {
  for (const QString& html : {
           QString("<div><b>x</div></b>").repeated(5),
           QString("<p>a<li>b<td>c<br><img>").repeated(50),
           QString("<!-- <b><b><b><b> --><b title='<i><i>'>x</b>").repeated(5),
           QString("<script>'<b><b><b><b>'</script><i>y</i>").repeated(5),
           QString("<!--><b>x</b><?<i><i>>").repeated(2),
           QString("<div><span>x</div>").repeated(50),
           "<table>" + QString("<tr><td><font color=red>x</td></tr>").repeated(9) + "</table>",
           "<table>" + QString("<tr><th><b>x<td><i>y").repeated(9) + "</table>",
           QString("<table><caption><b>x<tr><td><i>y</table>").repeated(9),
           QString("<i a=\"<b>\" b = '<b>' c=>z</i></nothing>").repeated(9),
       })
    EXPECT_EQ(LimitNesting(html, 3), html);
}

TEST(NestingLimit, DeeperTagsGoWithTheirEndTagsAndTheirTextStays) {
  EXPECT_EQ(LimitNesting("<b><i><u>x</u>y</i>z</b>", 2), "<b><i>xy</i>z</b>");
  EXPECT_EQ(LimitNesting("<b><i><u>x</i>y</b><u>z</u>", 2), "<b><i>x</i>y</b><u>z</u>");
  EXPECT_EQ(LimitNesting("<table><tr><td><table><td></div><div>x</table></table>", 1), "<table><tr></div>x</table>");
  EXPECT_EQ(LimitNesting("<DIV><Div A='>'>x</dIV ></DIV>", 1), "<DIV>x</DIV>");
}

// What isn't ended in a cell ends with it.
TEST(NestingLimit, ALongTableOfUnclosedFormattingKeepsAllOfIt) {
  const QString rows = QString("<tr><td><font color=red>x</td></tr>").repeated(2000);
  EXPECT_EQ(LimitNesting("<table>" + rows + "</table>", 600), "<table>" + rows + "</table>");
  const std::vector<Node*> nodes = ParseFragment("<table>" + rows + "</table>", Known().body);
  int fonts = 0;
  for (Node* node : nodes) {
    for (const Node* inner = node; inner; inner = NextInTree(inner, node)) fonts += inner->IsElement(Known().font);
    DestroyTree(node);
  }
  EXPECT_EQ(fonts, 2000);
}

// Where a browser takes no cell, none ends anything.
TEST(NestingLimit, ACellThatIsNoneEndsNothing) {
  EXPECT_EQ(LimitNesting(QString("<td><b>").repeated(4), 3), "<td><b><td><b><td><b><td>");
  EXPECT_EQ(LimitNesting("<table>" + QString("<b a=1><td>").repeated(2) + "<i>", 3), "<table><b a=1><td><td>");
}

TEST(NestingLimit, AHundredThousandLevelsAreReadInNoTime) {
  for (const char* tag :
       {"<div>", "<b>", "<div><table>", "<table><tr><td></div>", "<font><a><p>", "<svg>", "<object></b>", "</b><i>",
        "<td><b>", "<table><b><td>", "<table><td><svg><td>", "<table><td><select><td>", "<tr><i><td>"}) {
    const OwnTime taken;
    const std::vector<Node*> nodes = ParseFragment(QString(tag).repeated(100000) + "end", Known().body);
    EXPECT_LT(taken.Seconds(), 5) << tag;
    for (Node* node : nodes) DestroyTree(node);
  }
}

TEST(NestingLimit, AsDeepAsATreeIsKeptNothingIsLost) {
  TestPage page(QString("<div>").repeated(590) + "x");
  int divs = 0;
  for (const Node* node = page.document.tree().root(); node; node = NextInTree(node))
    divs += node->IsElement() && node->tag()->localName == u"div";
  EXPECT_EQ(divs, 590);
}

}  // namespace
