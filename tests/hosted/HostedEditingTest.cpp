// Operations on what was selected with the real mouse, and the live page that has to follow.
#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>

#include "HostedView.h"

namespace {

const char blocks[] =
    "<HTML><HEAD><TITLE></TITLE></HEAD><BODY BGCOLOR=\"#FFFFFF\"><FONT ID=a SIZE=4>first block</FONT><BR>"
    "<FONT ID=b SIZE=4>second <B ID=c>bold</B></FONT><BR><TABLE ID=t BORDER=1 WIDTH=300 HEIGHT=80><TR><TD ID=d>"
    "<FONT ID=e>cell</FONT></TD></TR></TABLE><IMG ID=g WIDTH=20 HEIGHT=20></BODY></HTML>";

const QString a = QStringLiteral("#a");
const QString b = QStringLiteral("#b");

// A number that tells a tree of HTML elements from another, made of all that is in it; for pages so large that it takes
// long to bring them over.
class Digest {
 public:
  void Add(int number) { sum_ = sum_ * 31 + std::uint32_t(number); }
  void Add(const QString& text) {
    for (const QChar unit : text) Add(unit.unicode());
    Add(-1);
  }
  std::uint32_t sum() const { return sum_; }

 private:
  std::uint32_t sum_ = 0;
};

QString DigestOf(const Node* top) {
  Digest digest;
  int count = 0;
  int depth = 0;
  for (const Node* node = top; node;) {
    ++count;
    digest.Add(depth);
    digest.Add(node->IsElement() ? node->tag()->localName : QString());
    digest.Add(node->data());
    for (const Attribute& attribute : node->attributes()) {
      digest.Add(attribute.name);
      digest.Add(attribute.value);
    }
    const Node* next = node->firstChild();
    if (next) ++depth;
    for (const Node* up = node; !next && up != top; up = up->parent()) {
      next = up->next();
      if (!next) --depth;
    }
    node = next;
  }
  return QStringLiteral("%1 nodes, %2").arg(count).arg(digest.sum());
}

// The same, in the live page's own words.
const char liveDigest[] = R"((() => {
  let sum = 0, count = 0, depth = 0;
  const add = number => { sum = (Math.imul(sum, 31) + number) >>> 0; };
  const addText = text => { for (let i = 0; i < text.length; ++i) add(text.charCodeAt(i)); add(-1); };
  const top = document.documentElement;
  for (let node = top; node;) {
    ++count;
    add(depth);
    addText(node.nodeType === 1 ? node.localName : '');
    addText(node.data === undefined ? '' : node.data);
    for (const attribute of node.attributes || []) {
      addText(attribute.name);
      addText(attribute.value);
    }
    let next = node.firstChild;
    if (next) ++depth;
    for (let up = node; !next && up !== top; up = up.parentNode) {
      next = up.nextSibling;
      if (!next) --depth;
    }
    node = next;
  }
  return count + ' nodes, ' + sum;
})())";

class HostedEditing : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(page.Load(blocks)); }
  void TearDown() override {
    const QString live = page.LiveHtml();
    EXPECT_EQ(page.ModelHtml().toStdString(), live.toStdString());
  }
  // What the live page shows as selected, once all is quiet.
  QString Highlighted() {
    page.LiveHtml();
    return page.ScriptText(QStringLiteral("String(getSelection())"));
  }
  // The live page's own word on an element.
  QString Live(const QString& expression) {
    page.LiveHtml();
    return page.ScriptText(expression);
  }

  HostedView page;
};

TEST_F(HostedEditing, DraggedTextIsCutAndPastedAtTheNextClick) {
  ASSERT_TRUE(page.Drag(page.PointIn(a, 0), page.PointIn(a, 6)));
  EXPECT_EQ(page.jWB().SelText(), QStringLiteral("first "));
  page.jWB().Cut();
  EXPECT_EQ(Live(QStringLiteral("document.querySelector('#a').textContent")), QStringLiteral("block"));
  ASSERT_TRUE(page.Click(page.PointIn(b, 0)));
  page.jWB().Paste(WBUC::FromTextClip);
  EXPECT_EQ(Live(QStringLiteral("document.querySelector('#b').textContent")), QStringLiteral("first second bold"));
}

TEST_F(HostedEditing, FaceSizeAndColorOfDraggedTextKeepItSelected) {
  ASSERT_TRUE(page.Drag(page.PointIn(a, 0), page.PointIn(a, 5)));
  page.jWB().SetSelFontFace(QStringLiteral("Arial"));
  EXPECT_EQ(Highlighted(), QStringLiteral("first"));
  page.jWB().SetSelFontSize(QStringLiteral("6"));
  page.jWB().SetSelColor(QStringLiteral("#FF0000"));
  page.jWB().ToggleBold();
  EXPECT_EQ(Highlighted(), QStringLiteral("first"));
  EXPECT_EQ(Live(QStringLiteral("(() => { const s = getComputedStyle(document.querySelector('#a b'));"
                                "return [s.fontFamily, s.fontSize, s.color, s.fontWeight].join('|'); })()")),
            QStringLiteral("Arial|32px|rgb(255, 0, 0)|700"));
}

TEST_F(HostedEditing, ColorGoesOverBlocksAndCells) {
  ASSERT_TRUE(page.Drag(page.PointIn(a, 6), page.PointIn(QStringLiteral("#e"), 2)));
  page.jWB().SetSelColor(QStringLiteral("#00FF00"));
  EXPECT_EQ(Live(QStringLiteral("[...document.querySelectorAll('font[color]')].map(f => f.firstChild.data).join('|')")),
            QStringLiteral("block|second |ce"));
}

TEST_F(HostedEditing, ALinkGoesIntoTheDoubleClickedBlock) {
  ASSERT_TRUE(page.DoubleClick(page.PointIn(a, 3)));
  page.jWB().SetSelColor(QStringLiteral("#00FF00"));  // which isn't for elements
  page.jWB().CreateLinkSel(QStringLiteral("http://x/"));
  EXPECT_EQ(Live(QStringLiteral("document.querySelector('#a').outerHTML")),
            QStringLiteral("<font id=\"a\" size=\"4\"><a href=\"http://x/\">first block</a></font>"));
}

TEST_F(HostedEditing, ADoubleClickedBlockChangesPlacesAndNothingStaysSelected) {
  ASSERT_TRUE(page.DoubleClick(page.PointIn(b, 3)));
  EXPECT_EQ(page.jWB().MoveElementOneElement(-1), WBUC::Moved);
  EXPECT_EQ(Live(QStringLiteral("document.querySelectorAll('font')[0].id")), QStringLiteral("b"));
  EXPECT_EQ(page.jWB().IfSelection(), WBUC::NothingSelected);
}

TEST_F(HostedEditing, ADoubleClickedElementStaysSelectedThroughARightClickAndIsCut) {
  ASSERT_TRUE(page.DoubleClick(page.PointIn(b, 3)));
  ASSERT_TRUE(page.RightClick(page.PointIn(a, 3)));
  page.jWB().Cut();
  EXPECT_EQ(Live(QStringLiteral("String(!!document.querySelector('#b'))")), QStringLiteral("false"));
  page.jWB().Paste(WBUC::FromTagClip);  // at once nothing appears
  EXPECT_EQ(Live(QStringLiteral("String(!!document.querySelector('#b'))")), QStringLiteral("false"));
  ASSERT_TRUE(page.Click(page.PointIn(QStringLiteral("#e"), 1)));
  page.jWB().Paste(WBUC::FromTagClip);
  EXPECT_EQ(Live(QStringLiteral("document.querySelector('#e').nextSibling.id")), QStringLiteral("b"));
}

TEST_F(HostedEditing, CopyTakesTheHighlightThatAShiftClickHasChanged) {
  ASSERT_TRUE(page.DoubleClick(page.PointIn(a, 3)));
  page.LiveHtml();  // the program's own highlight is there
  page.ScriptText(
      QStringLiteral("getSelection().collapse(document.querySelector('#b').firstChild, 0),"
                     "getSelection().extend(document.querySelector('#b').firstChild, 6)"));
  ASSERT_TRUE(HostedPage::WaitFor([&] { return page.jWB().SelText() == u"second"; }));
  page.jWB().Copy();
  ASSERT_TRUE(page.Click(page.CenterOf(QStringLiteral("#g"))));
  page.jWB().Paste(WBUC::FromTagClip);
  EXPECT_EQ(Live(QStringLiteral("document.querySelector('#g').nextSibling.data")), QStringLiteral("second"));
}

TEST_F(HostedEditing, AClickInColoredTextReportsItsFont) {
  ASSERT_TRUE(page.Drag(page.PointIn(a, 0), page.PointIn(a, 5)));
  EXPECT_EQ(page.jWB().CurFontProps()[4], QString());
  page.jWB().SetSelColor(QStringLiteral("#0000FF"));
  ASSERT_TRUE(page.Click(page.PointIn(QStringLiteral("#a font"), 2)));
  EXPECT_EQ(page.jWB().CurFontProps()[0], QStringLiteral("#0000FF"));
  EXPECT_EQ(page.jWB().CurFontProps()[2], QStringLiteral("4"));
  EXPECT_EQ(page.jWB().CurFontProps()[4], QStringLiteral("*"));
}

TEST_F(HostedEditing, BrokenDeepAndLargeTextIsPastedWithoutADifference) {
  const QString texts[] = {
      QStringLiteral("<b><i>x</b>y</i><table><td>z<p></table></font></div><!-- <a href='"),
      QStringLiteral("<div>").repeated(100000) + QStringLiteral("deep"),
      QString(QChar(0)) + QStringLiteral("\x01\x02\r\n\t\x1b\x7f\uFFFE\uFFFF") + QChar(0xD800) + QStringLiteral("end"),
      // 10 MB each, of which the engine has little to lay out.
      (QStringLiteral("many <b>words</b>&amp;\n") + QString(200, u' ')).repeated(45000),
      QStringLiteral(" ").repeated(10000000),
  };
  for (const QString& text : texts) {
    QGuiApplication::clipboard()->setText(text);
    ASSERT_TRUE(page.Load(blocks));
    ASSERT_TRUE(page.Click(page.PointIn(a, 3)));
    page.jWB().Paste(WBUC::FromSystem);
    page.jWB().IfSelection();
    ASSERT_TRUE(HostedPage::WaitFor([&] { return page.browser().IsQuiet(); }));
    const QString live = page.ScriptText(QString::fromLatin1(liveDigest));
    EXPECT_EQ(DigestOf(page.document().tree().htmlNode()), live) << text.left(60).toStdString();
    EXPECT_TRUE(page.ModelHtml().contains(QStringLiteral("second")));
    if (text.size() > 1000000) continue;
    EXPECT_EQ(page.ModelHtml(), page.LiveHtml()) << text.left(60).toStdString();
  }
  ASSERT_TRUE(page.Load(blocks));
}

}  // namespace
