#include "Serializer.h"

#include <gtest/gtest.h>

#include <random>

#include "BoundaryPoint.h"
#include "HtmlParser.h"
#include "PageText.h"
#include "QtPrinters.h"
#include "TestPage.h"
#include "TreeBuilder.h"

namespace {

struct Row {
  const char* html;
  const char* written;
};

class Serialise : public testing::TestWithParam<Row> {};

TEST_P(Serialise, Body) {
  EXPECT_EQ(TestPage(QString::fromUtf8(GetParam().html)).Body(), QString::fromUtf8(GetParam().written));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, Serialise,
    testing::Values(Row{"<B>a</B>", "<b>a</b>"}, Row{"<img SRC=x.png>", "<img src=\"x.png\" />"},
                    Row{"a<br>b", "a<br />b"}, Row{"<hr>", "<hr />"},
                    Row{"<img style='a:b' src=x id=i>", "<img src=\"x\" id=\"i\" style=\"a:b\" />"},
                    Row{"<p STYLE='a:b' align=left>", "<p align=\"left\" style=\"a:b\"></p>"},
                    Row{"<a href='a&amp;b\"c<>'>", "<a href=\"a&amp;b&quot;c<>\"></a>"},
                    Row{"<a title='x&nbsp;y'>", "<a title=\"x&nbsp;y\"></a>"},
                    Row{"1 &lt; 2 &gt; 1 &amp; \"'", "1 &lt; 2 &gt; 1 &amp; \"'"}, Row{"a&nbsp;b", "a&nbsp;b"},
                    Row{"<!-- c -->", "<!-- c -->"}, Row{"<script>a<b&&c</script>", "<script>a<b&&c</script>"},
                    Row{"<style>a>b</style>", "<style>a>b</style>"}, Row{"<xmp><b></xmp>", "<xmp><b></xmp>"},
                    Row{"<textarea>a<b></textarea>", "<textarea>a&lt;b&gt;</textarea>"},
                    Row{"<iframe>a<b></iframe>", "<iframe>a<b></iframe>"},
                    Row{"<template><i>x</template>", "<template><i>x</i></template>"},
                    Row{"<input disabled>", "<input disabled=\"\" />"},
                    Row{"<svg viewbox=1><g/></svg>", "<svg viewBox=\"1\"><g></g></svg>"},
                    Row{"\xE2\x82\xAC", "\xE2\x82\xAC"}));

// The parser drops one.
TEST(Serializer, ATextThatBeginsWithALineEndGetsOneMoreWhereOneIsDropped) {
  for (const char* html : {"<pre>\n\na</pre>", "<textarea>\n\n</textarea>", "<listing>\n\n\na</listing>",
                           "<pre><b>\na</b></pre>", "<pre>a\n</pre>", "<div>\na</div>"})
    EXPECT_EQ(TestPage(html).Body(), html);
  const TestPage page("<pre>\n\na</pre>");
  EXPECT_EQ(InnerHtml(page.Find("PRE"), false), "\na") << "without its tag nothing is dropped";
}

TEST(Serializer, NothingIsWrittenBehindAPlaintext) {
  const TestPage page("a<plaintext>b<i>&amp;\n");
  EXPECT_TRUE(
      page.document.documentElement().outerHTML().startsWith("<html><head></head><body>a<plaintext>b<i>&amp;\n"));
  const QByteArray file = FileHtml(page.document.tree());
  HTMLDocument read;
  ParseDocument(DecodePage(file).text, read.tree());
  EXPECT_EQ(FileHtml(read.tree()), file);
}

TEST(Serializer, ACarriageReturnAndOtherControlsAreReferences) {
  TestPage page("<b title='a&#13;b'>c&#13;d&#1;\te</b>");
  EXPECT_EQ(page.Body(), "<b title=\"a&#13;b\">c&#13;d&#1;\te</b>");
}

TEST(Serializer, AFileIsAsciiWithReferencesInTextAndValues) {
  const TestPage page(QString::fromUtf8("<img alt='\u00e9' src='M\u00fcller.gif'>\u5199<b>\U0001F389</b>"));
  const QByteArray file = FileHtml(page.document.tree());
  EXPECT_TRUE(file.contains("<img alt=\"&#233;\" src=\"M&#252;ller.gif\" />&#20889;<b>&#127881;</b>"))
      << file.constData();
  EXPECT_FALSE(file.contains("<meta"));
}

TEST(Serializer, ARawTextAboveAsciiMakesTheFileSayUtf8AndNotTheModel) {
  const TestPage page(QString::fromUtf8("<script>'\u00e9'</script>\u00e9"));
  const QByteArray file = FileHtml(page.document.tree());
  EXPECT_TRUE(file.contains("<head><meta charset=\"utf-8\" /></head>")) << file.constData();
  EXPECT_TRUE(file.contains("<script>'\xC3\xA9'</script>&#233;")) << file.constData();
  EXPECT_FALSE(page.document.documentElement().outerHTML().contains("meta"));
}

TEST(Serializer, AQueryKeepsTheEncodingThatThePageWasLoadedIn) {
  TestPage page(QString::fromUtf8("<a href='x?\u00e9'>a</a>"));
  page.document.tree().SetEncoding("KOI8-R");
  EXPECT_TRUE(FileHtml(page.document.tree()).contains("<head><meta charset=\"KOI8-R\" /></head>"));
  page.document.tree().SetEncoding("windows-1252");
  EXPECT_FALSE(FileHtml(page.document.tree()).contains("<meta"));
}

// Meant in HTMLElement::outerHTML: the source of a page has no document type and no comments outside of HTML.
TEST(Serializer, TheDocumentElementHasNoDoctypeAndNoCommentsAround) {
  TestPage page("a");
  page.document.setTitle("T");
  page.document.gateway().Insert(page.document.tree().root(), page.document.tree().htmlNode(),
                                 TreeBuilder::Comment("c"));
  EXPECT_EQ(page.document.documentElement().outerHTML(), "<html><head><title>T</title></head><body>a</body></html>");
}

TEST(Serializer, NoscriptIsRawOnlyWhereScriptsRun) {
  TestPage page("<noscript id=n></noscript>");
  const Node* const element = page.Find("NOSCRIPT");
  page.document.gateway().Insert(element, nullptr, TreeBuilder::Text("<b>"));
  EXPECT_EQ(InnerHtml(element, true), "<b>");
  EXPECT_EQ(InnerHtml(element, false), "&lt;b&gt;");
}

TEST(Serializer, ABlankStandsBehindEveryPictureName) {
  const TestPage page("<img src=a.png><img style='border:0' src=b.png><img src=c.png width=1>");
  for (const char* name : {"a.png", "b.png", "c.png"})
    EXPECT_TRUE(page.Body().contains(QString::fromLatin1(name) + "\" ")) << name;
}

TEST(Serializer, ADeepPageDoesNotNeedTheStack) {
  TestPage page("");
  Node* const top = TreeBuilder::Element(Known().b);
  Node* inner = top;
  for (int depth = 0; depth < 200000; ++depth) {
    Node* const next = TreeBuilder::Element(Known().b);
    TreeBuilder::Insert(inner, next);
    inner = next;
  }
  page.document.gateway().Insert(page.document.tree().bodyNode(), nullptr, top);
  EXPECT_EQ(page.Body().size(), 200001 * 7);
}

// A clone of what a range covers, cut out by the definition of the DOM standard: node by node, by recursion.
QString SlowRangeHtml(const Node* node, const LiveRange& range, const TreeOrder& order, bool isCommon) {
  const auto isCovered = [&](const BoundaryPoint& from, const BoundaryPoint& to) {
    return ComparePoints(order, range.start, from) <= 0 && ComparePoints(order, to, range.end) <= 0;
  };
  if (!isCommon && isCovered(BoundaryPoint::Before(node), BoundaryPoint::Behind(node))) return OuterHtml(node, false);
  if (node->IsText()) {
    QString data;
    for (int at = 0; at < node->Length(); ++at)
      if (isCovered(BoundaryPoint::InText(node, at), BoundaryPoint::InText(node, at + 1))) data += node->data()[at];
    Node* const copy = TreeBuilder::Text(data);
    const QString html = OuterHtml(copy, false);
    DestroyTree(copy);
    return html;
  }
  if (!isCommon && !node->Contains(range.start.container) && !node->Contains(range.end.container)) return {};
  QString inner;
  for (const Node* child = node->firstChild(); child; child = child->next())
    inner += SlowRangeHtml(child, range, order, false);
  if (isCommon || !node->IsElement()) return inner;
  QString outer = OuterHtml(node, false);
  const qsizetype startTagEnd = outer.indexOf(u'>') + 1;
  return outer.left(startTagEnd) + inner + (node->tag()->isVoid ? QString() : "</" + node->tag()->localName + '>');
}

TEST(Serializer, PartialRangesAreCutAsByHand) {
  std::mt19937 random(3);
  const char* const pages[] = {
      "ab<b>cd<i>ef</i>gh</b>ij<img><p>kl</p><p></p>mn",
      "<table><tr><td>a</td><td><font size=1>b</font></td></tr><tr><td></td></tr></table>x&nbsp;&amp;<br>",
      "<div><div><div>x</div>y</div>z</div><!--c--><ul><li>1<li>2</ul>",
  };
  for (const char* html : pages) {
    const TestPage page(QString::fromLatin1(html));
    std::vector<BoundaryPoint> points;
    const Node* const body = page.document.tree().bodyNode();
    for (const Node* node = body; node; node = NextInTree(node, body)) {
      if (node->IsText()) {
        for (int at = 0; at <= node->Length(); ++at) points.push_back(BoundaryPoint::InText(node, at));
      } else if (node->IsElement()) {
        for (const Node* child = node->firstChild(); child; child = child->next())
          points.push_back(BoundaryPoint::Before(child));
        points.push_back(BoundaryPoint::AtEnd(node));
      }
    }
    for (const BoundaryPoint& a : points)
      for (const BoundaryPoint& b : points) {
        if (ComparePoints(page.document.tree().order(), a, b) > 0) continue;
        const Node* common = a.container;
        while (!common->Contains(b.container)) common = common->parent();
        const LiveRange range{a, b};
        ASSERT_EQ(RangeHtml(range, false), SlowRangeHtml(common, range, page.document.tree().order(), true))
            << page.Show(range).toStdString();
      }
  }
}

}  // namespace
