#include "HtmlParser.h"

#include <gtest/gtest.h>

#include "QtPrinters.h"
#include "Serializer.h"
#include "TestPage.h"
#include "TreeBuilder.h"

namespace {

QString Parsed(const QString& html, const char* context = "body") {
  const Tag* const tag = Tag::Of(QString::fromLatin1(context));
  Node* const parent = TreeBuilder::Element(Tag::Of(QStringLiteral("div")));
  for (Node* node : ParseFragment(html, tag)) TreeBuilder::Insert(parent, node);
  const QString written = InnerHtml(parent, false);
  DestroyTree(parent);
  return written;
}

TEST(HtmlParser, TheContextDecidesWhatATagBecomes) {
  EXPECT_EQ(Parsed("<td>x"), "x");
  EXPECT_EQ(Parsed("<td>x", "tr"), "<td>x</td>");
  EXPECT_EQ(Parsed("<tr><td>x", "tbody"), "<tr><td>x</td></tr>");
  EXPECT_EQ(Parsed("<tr><td>x", "table"), "<tbody><tr><td>x</td></tr></tbody>");
  EXPECT_EQ(Parsed("<b>x", "unheardof"), "<b>x</b>");
  EXPECT_EQ(Parsed("<b>x", "font"), "<b>x</b>");
  EXPECT_EQ(Parsed("", "html"), "<head></head><body></body>");
}

TEST(HtmlParser, PlainTextTakesTheSameWayAsHtml) {
  for (const char* text : {"a", " ", "  a ", "\n", "a\nb", "\xC2\xA0", "\xF0\x9F\x98\x80"})
    for (const char* context : {"body", "td", "font", "pre", "textarea", "table", "tr", "title", "style", "colgroup"}) {
      const QString plain = QString::fromUtf8(text);
      // The comment keeps the text from the short cut for plain text.
      EXPECT_EQ(Parsed(plain, context), Parsed("<!---->" + plain, context).remove("<!---->").remove("&lt;!----&gt;"))
          << context << ": " << text;
    }
}

TEST(HtmlParser, TextsSideBySideBecomeOne) {
  // The text that a table pushes out comes to stand beside the text before the table.
  const TestPage page("a<table>b<tr>c<td>d</table>e");
  EXPECT_EQ(page.Body(), "abc<table><tbody><tr><td>d</td></tr></tbody></table>e");
  for (const Node* node = page.document.tree().root(); node; node = NextInTree(node))
    EXPECT_FALSE(node->IsText() && node->next() && node->next()->IsText());
}

TEST(HtmlParser, AByteOrderMarkInThePageIsACharacter) {
  const TestPage page(QString::fromUtf8("<b title='&#xfeff;x'>&#xfeff;y</b>"));
  EXPECT_EQ(page.Element("B").getAttribute("title"), QString(QChar(0xFEFF)) + "x");
  EXPECT_EQ(page.Text("y")->data(), QString(QChar(0xFEFF)) + "y");
}

int DeepestOf(const Node* root) {
  int deepest = 0;
  int depth = 0;
  for (const Node* node = root; node;) {
    deepest = std::max(deepest, depth);
    if (node->firstChild()) {
      node = node->firstChild();
      ++depth;
      continue;
    }
    while (node && !node->next()) node = node->parent(), --depth;
    if (node) node = node->next();
  }
  return deepest;
}

TEST(HtmlParser, NestingIsCut) {
  for (const char* tag : {"<div>", "<b>", "<font>", "<span>"}) {
    HTMLDocument document;
    ParseDocument(QString::fromLatin1(tag).repeated(550) + "x", document.tree());
    EXPECT_LE(DeepestOf(document.tree().root()), 513) << tag;
    EXPECT_GE(DeepestOf(document.tree().root()), 500) << tag;
    EXPECT_EQ(document.body().all().length(), 550) << tag;
  }
  // The depth of the place counts.
  TestPage page(QString("<div>").repeated(500) + "^");
  page.Range()->pasteHTML(QString("<div>").repeated(500));
  EXPECT_LE(DeepestOf(page.document.tree().root()), 513);
  EXPECT_EQ(page.Problems(), QStringList());
}

TEST(HtmlParser, OfHundredsOfThousandsOfLevelsTheDeepestAreDropped) {
  HTMLDocument document;
  ParseDocument(QString("<q>").repeated(200000) + "x", document.tree());
  EXPECT_EQ(document.body().all().length(), 600);
  EXPECT_EQ(document.body().createTextRange()->text(), "x");
  EXPECT_LE(DeepestOf(document.tree().root()), 513);
}

TEST(HtmlParser, WhatStandsRoundTheDocumentElement) {
  const std::pair<const char*, QStringList> rows[] = {
      {"<!--a--><!DOCTYPE html><!--b--><p>", {"a", "!html", "b", "HTML"}},
      {"<!-- <!doctype x> --><!--b--><!DOCTYPE html><p>", {" <!doctype x> ", "b", "!html", "HTML"}},
      {"<!--><!--b--><!DOCTYPE html><!--<!doctype-->", {"", "b", "!html", "<!doctype", "HTML"}},
      {"<?x <!doctype?><!DOCTYPE html>", {"?x <!doctype?", "!html", "HTML"}},
      {"<!--a--><p></html><!--c-->", {"a", "HTML", "c"}},
  };
  for (const auto& [html, expected] : rows) {
    HTMLDocument document;
    ParseDocument(html, document.tree());
    QStringList children;
    for (const Node* child = document.tree().root()->firstChild(); child; child = child->next())
      children += child->IsElement()                          ? child->tag()->tagName
                  : child->type() == Node::Type::DocumentType ? '!' + child->data()
                                                              : child->data();
    EXPECT_EQ(children, expected) << html;
  }
}

TEST(HtmlParser, Quirks) {
  const auto quirks = [](const char* html) {
    HTMLDocument document;
    ParseDocument(html, document.tree());
    return document.tree().quirks();
  };
  EXPECT_TRUE(quirks("<p>"));
  EXPECT_FALSE(quirks("<!DOCTYPE html><p>"));
}

}  // namespace
