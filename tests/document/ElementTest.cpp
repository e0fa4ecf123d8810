#include <gtest/gtest.h>

#include "HTMLDocument.h"
#include "QtPrinters.h"
#include "TestPage.h"

namespace {

QStringList Names(const HTMLElementCollection& elements) {
  QStringList names;
  for (int index = 0; index < elements.length(); ++index) names += elements.item(index).tagName();
  return names;
}

TEST(Element, AllListsElementsInSourceOrder) {
  TestPage page("a<b><i></i></b><!--c--><img>");
  EXPECT_EQ(Names(page.document.all()), (QStringList{"HTML", "HEAD", "BODY", "B", "I", "IMG"}));
  EXPECT_EQ(Names(page.document.body().all()), (QStringList{"B", "I", "IMG"}));
  EXPECT_EQ(Names(page.document.body().children()), (QStringList{"B", "IMG"}));
  for (int index = 0; index < 6; ++index) EXPECT_EQ(page.document.all().item(index).sourceIndex(), index);
  for (const int index : {-1, 6, 100}) EXPECT_FALSE(page.document.all().item(index));
  EXPECT_FALSE(page.document.body().children().item(2));
  EXPECT_EQ(HTMLElementCollection(HTMLElement(), HTMLElementCollection::Kind::Children).length(), 0);
}

TEST(Element, Parents) {
  TestPage page("<table><tr><td>x</td></tr></table>");
  HTMLElement cell = page.Element("TD");
  EXPECT_EQ(cell.parentElement().parentElement().parentElement().tagName(), "TABLE");
  EXPECT_FALSE(page.document.documentElement().parentElement());
}

TEST(Element, WritingOuterHtml) {
  const std::pair<const char*, const char*> rows[] = {{"", "12"},
                                                      {"x", "1x2"},
                                                      {"<i>x</i>", "1<i>x</i>2"},
                                                      {"x<i>y</i>z", "1x<i>y</i>z2"},
                                                      {"<i>x</i>z", "1<i>x</i>z2"}};
  for (const auto& [html, after] : rows) {
    TestPage page("1<b>b</b>2");
    HTMLElement bold = page.Element("B");
    bold.setOuterHTML(html);
    EXPECT_EQ(page.Body(), after);
    EXPECT_EQ(page.Problems(), QStringList());
    EXPECT_EQ(bold.sourceIndex(), -1);
    EXPECT_EQ(bold.outerHTML(), "<b>b</b>") << "a removed element still answers";
  }
}

TEST(Element, InsertAdjacentHtml) {
  const std::pair<const char*, const char*> rows[] = {{"BeforeBegin", "1x<i></i><b>b</b>2"},
                                                      {"afterbegin", "1<b>x<i></i>b</b>2"},
                                                      {"BEFOREEND", "1<b>bx<i></i></b>2"},
                                                      {"AfterEnd", "1<b>b</b>x<i></i>2"},
                                                      {"nowhere", "1<b>b</b>2"}};
  for (const auto& [where, after] : rows) {
    TestPage page("1<b>b</b>2");
    page.Element("B").insertAdjacentHTML(where, "x<i></i>");
    EXPECT_EQ(page.Body(), after);
    EXPECT_EQ(page.Problems(), QStringList());
  }
}

TEST(Element, NothingStandsBesideTheRoot) {
  TestPage page("ab");
  HTMLElement root = page.document.documentElement();
  const QString before = root.outerHTML();
  for (const char* where : {"BeforeBegin", "AfterEnd"}) root.insertAdjacentHTML(where, "x<i></i>");
  root.setOuterHTML("x");
  EXPECT_EQ(page.document.documentElement().outerHTML(), before);
  EXPECT_EQ(page.document.all().item(0).tagName(), "HTML");
  EXPECT_EQ(page.Problems(), QStringList());
}

TEST(Element, RowsAndCellsGoIntoTables) {
  TestPage page("<table><tr><td>1</td></tr></table>");
  page.Element("TD").insertAdjacentHTML("AfterEnd", "<td>2</td>");
  page.Element("TR").insertAdjacentHTML("AfterEnd", "<tr><td>3</td></tr>");
  EXPECT_EQ(page.Body(), "<table><tbody><tr><td>1</td><td>2</td></tr><tr><td>3</td></tr></tbody></table>");
}

// Meant in HTMLElement::insertAdjacentHTML: an element that is no longer in the page does nothing, and says nothing.
TEST(Element, AStaleElementDoesNothing) {
  TestPage page("1<b id=x>b<i>c</i></b>2");
  HTMLElement bold = page.Element("B");
  HTMLElement italic = page.Element("I");
  bold.setOuterHTML("");
  bold.setOuterHTML("x");
  for (const char* where : {"BeforeBegin", "AfterBegin", "BeforeEnd", "AfterEnd"}) bold.insertAdjacentHTML(where, "x");
  bold.setAttribute("id", "y");
  EXPECT_FALSE(bold.removeAttribute("id"));
  EXPECT_EQ(page.Body(), "12");
  EXPECT_EQ(bold.id(), "x");
  EXPECT_EQ(bold.sourceIndex(), -1);
  EXPECT_FALSE(bold.parentElement());
  EXPECT_EQ(italic.parentElement().tagName(), "B");
  EXPECT_EQ(page.Problems(), QStringList());
}

TEST(Element, StaleElementsOutliveTheirDocument) {
  HTMLElement inner, attached;
  {
    TestPage page("<b><i>c</i></b><u>d</u>");
    inner = page.Element("I");
    attached = page.Element("U");
    page.Element("B").setOuterHTML("");
  }
  EXPECT_EQ(inner.tagName(), "I");
  EXPECT_EQ(attached.tagName(), "U");
  attached.setOuterHTML("x");
  EXPECT_EQ(attached.sourceIndex(), -1);
  EXPECT_FALSE(attached.parentElement());
}

TEST(Element, ManyRemovedElementsAreSweptAndHeldOnesStay) {
  TestPage page("");
  std::vector<HTMLElement> held;
  for (int round = 0; round < 500; ++round) {
    page.document.body().insertAdjacentHTML("BeforeEnd", QStringLiteral("<b id=n%1><i></i></b>").arg(round));
    HTMLElement element = page.Element("I");
    if (round % 7 == 0) held.push_back(element);
    page.Element("B").setOuterHTML("");
  }
  for (std::size_t at = 0; at < held.size(); ++at)
    EXPECT_EQ(held[at].parentElement().id(), QStringLiteral("n%1").arg(7 * at));
}

TEST(Element, Attributes) {
  TestPage page("<img SRC=a.png Width=5 bgColor=black href='b c'>");
  HTMLElement image = page.Element("IMG");
  EXPECT_EQ(image.getAttribute("src"), "a.png");
  EXPECT_EQ(image.getAttribute("Src", 0), "a.png");
  EXPECT_EQ(image.getAttribute("WIDTH", 0), "5");
  EXPECT_EQ(image.getAttribute("bgcolor"), "#000000");
  EXPECT_EQ(image.getAttribute("href"), "b c");
  EXPECT_EQ(image.getAttribute("none"), "");
  image.setAttribute("width", "6");
  image.setAttribute("cellPadding", "1");
  EXPECT_EQ(image.outerHTML(), "<img src=\"a.png\" width=\"6\" bgcolor=\"black\" href=\"b c\" cellpadding=\"1\" />");
  EXPECT_TRUE(image.removeAttribute("WIDTH", 0));
  EXPECT_FALSE(image.removeAttribute("WIDTH", 0));
  EXPECT_EQ(page.Problems(), QStringList());
}

TEST(Element, NoneAnswersNothing) {
  HTMLElement none;
  EXPECT_FALSE(none);
  EXPECT_EQ(none.tagName(), "");
  EXPECT_EQ(none.outerHTML(), "");
  EXPECT_EQ(none.sourceIndex(), -1);
  EXPECT_EQ(none.style().fontSize(), "");
  none.setOuterHTML("x");
  none.setAttribute("a", "b");
  none.style().setFontSize("1px");
  EXPECT_FALSE(HTMLDocument().body());
  EXPECT_EQ(HTMLDocument().bgColor(), "");
}

TEST(Document, TitleIsMadeWhereItIsMissing) {
  TestPage page("a");
  EXPECT_EQ(page.document.title(), "");
  page.document.setTitle("A & B");
  EXPECT_EQ(page.document.title(), "A & B");
  EXPECT_EQ(page.document.documentElement().outerHTML(),
            "<html><head><title>A &amp; B</title></head><body>a</body></html>");
  page.document.setTitle("");
  EXPECT_EQ(page.document.title(), "");
  EXPECT_EQ(page.Problems(), QStringList());
}

}  // namespace
