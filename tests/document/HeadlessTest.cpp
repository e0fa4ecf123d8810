#include "HeadlessWebBrowser.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>

#include "GridLayout.h"
#include "HTMLDocument.h"
#include "HTMLDocumentEvents.h"
#include "HTMLTxtRange.h"
#include "QtPrinters.h"
#include "Serializer.h"
#include "TestPlatform.h"

namespace {

// Keeps what the handlers are told.
class Listener : public HTMLDocumentEvents {
 public:
  explicit Listener(HTMLDocument& document) : document_(document) { document.ConnectEvents(this); }
  bool onclick() override { return Note("click"); }
  bool ondblclick() override { return Note("dblclick"); }
  void onkeyup() override { Note("keyup"); }
  void onmousedown() override { Note("mousedown"); }
  void onmouseup() override { Note("mouseup"); }
  void onmouseout() override { Note("mouseout"); }
  void onmouseover() override { Note("mouseover"); }
  bool oncontextmenu() override { return Note("contextmenu"); }

  QStringList events;
  QString tag;
  BoundaryPoint caret;
  int button = -1;

 private:
  bool Note(const char* name) {
    const HTMLEventObj& event = document_.parentWindow().event();
    events += name;
    tag = event.srcElement().tagName();
    caret = event.caret();
    button = event.button();
    return false;
  }
  HTMLDocument& document_;
};

class Headless : public testing::Test {
 protected:
  void Show(const char* body) {
    browser.SetHtml(QStringLiteral("<html><body>%1</body></html>").arg(QString::fromUtf8(body)));
    listener = std::make_unique<Listener>(*browser.Document());
  }
  static QPoint Middle(int line, int column) { return {8 + 8 * column + 2, 8 + 16 * line + 8}; }
  const Node* Text(const QString& data) {
    for (const Node* node = browser.Document()->tree().root(); node; node = NextInTree(node))
      if (node->IsText() && node->data().contains(data)) return node;
    return nullptr;
  }
  void Click(QPoint point) { browser.Click(point); }

  HeadlessWebBrowser browser;
  std::unique_ptr<Listener> listener;
};

TEST_F(Headless, OneDocumentCompleteForTwoNavigations) {
  QTemporaryDir folder;
  const QString path = folder.filePath("a.html");
  ASSERT_TRUE(PutFile(path, "<p>x</p>"));
  QSignalSpy before(&browser, &WebBrowser::BeforeNavigate2);
  QSignalSpy complete(&browser, &WebBrowser::DocumentComplete);
  EXPECT_EQ(browser.Document(), nullptr);
  browser.Navigate("about:blank", 14);
  browser.Navigate(path, 14);
  EXPECT_EQ(complete.count(), 0);
  browser.Finish();
  QCoreApplication::processEvents();
  EXPECT_EQ(before.count(), 2);
  EXPECT_EQ(complete.count(), 1);
  EXPECT_EQ(browser.Document()->body().outerHTML(), "<body><p>x</p></body>");
  browser.Navigate(folder.filePath("missing.html"), 14);
  browser.Finish();
  EXPECT_EQ(complete.count(), 2);
  EXPECT_EQ(browser.Document(), nullptr);
  browser.Click({10, 10});
  browser.KeyUp(65);
  browser.Drag({1, 1}, {20, 20});
}

TEST_F(Headless, WhatCantBeReadGivesNoDocument) {
  QTemporaryDir folder;
  const QString pipe = folder.filePath("pipe.html");
  ASSERT_EQ(::mkfifo(qPrintable(pipe), 0600), 0);
  ASSERT_TRUE(QDir().mkdir(folder.filePath("folder.html")));
  // The last is there, but reading its start fails even for root.
  for (const QString& path : {folder.filePath("folder.html"), pipe, QString("/proc/self/mem")}) {
    Show("before");
    EXPECT_FALSE(WebBrowser::CanBeShown(path)) << path.toStdString();
    QSignalSpy complete(&browser, &WebBrowser::DocumentComplete);
    browser.Navigate(path, 14);
    browser.Finish();
    EXPECT_EQ(complete.count(), 1) << path.toStdString();
    EXPECT_EQ(browser.Document(), nullptr) << path.toStdString();
  }
  const QString empty = folder.filePath("empty.html");
  ASSERT_TRUE(PutFile(empty, ""));
  EXPECT_TRUE(WebBrowser::CanBeShown(empty));
}

TEST_F(Headless, AClickMeetsTheCharacterUnderIt) {
  Show("ab<b>cd</b><img>");
  Click(Middle(0, 1));
  EXPECT_EQ(listener->tag, "BODY");
  EXPECT_EQ(listener->caret, BoundaryPoint::InText(Text("ab"), 1));
  Click(Middle(0, 1) + QPoint(4, 0));
  EXPECT_EQ(listener->caret, BoundaryPoint::InText(Text("ab"), 2)) << "the nearer side of the character";
  Click(Middle(0, 2));
  EXPECT_EQ(listener->tag, "B");
  EXPECT_EQ(listener->caret, BoundaryPoint::InText(Text("cd"), 0));
  Click(Middle(0, 4));
  EXPECT_EQ(listener->tag, "IMG");
  Click(Middle(0, 30));
  EXPECT_EQ(listener->tag, "BODY");
  Click(Middle(20, 0));
  EXPECT_EQ(listener->tag, "BODY");
}

TEST_F(Headless, LeftOfALineIsItsStart) {
  Show("ab<br>cd");
  Click({2, 8 + 16 + 8});
  EXPECT_EQ(listener->caret, BoundaryPoint::InText(Text("cd"), 0));
}

TEST_F(Headless, BreaksAndBlocksStartLines) {
  Show("a<br>b<p>c</p>d");
  const char* const letters[] = {"a", "b", "c", "d"};
  for (int line = 0; line < 4; ++line)
    EXPECT_EQ(*browser.PointAt(BoundaryPoint::InText(Text(letters[line]), 0)), QPoint(9, 8 + 16 * line + 8));
}

TEST_F(Headless, APointOfAPlaceHitsThatPlace) {
  Show(
      "ab<b>c</b><p>d\xF0\x9F\x98\x80"
      "e</p><table><tr><td>f</td><td>g</td></tr></table>h");
  for (const Node* node = browser.Document()->tree().bodyNode(); node; node = NextInTree(node)) {
    if (!node->IsText()) continue;
    for (int at = 0; at < node->Length(); ++at) {
      if (node->data()[at].isLowSurrogate()) continue;
      Click(*browser.PointAt(BoundaryPoint::InText(node, at)));
      EXPECT_EQ(listener->caret, BoundaryPoint::InText(node, at));
    }
  }
}

TEST_F(Headless, CellsAndWhatIsBesideATable) {
  Show("<table><tr><td>f</td><td></td></tr></table>");
  Click(*browser.PointAt(BoundaryPoint::InText(Text("f"), 0)));
  EXPECT_EQ(listener->tag, "TD");
  Click(Middle(0, 20));
  EXPECT_EQ(listener->tag, "TD");
  // Below a table at the end of the page text goes behind it.
  Click(Middle(40, 0));
  EXPECT_EQ(listener->tag, "BODY");
  EXPECT_EQ(listener->caret, BoundaryPoint::AtEnd(browser.Document()->tree().bodyNode()));
}

TEST_F(Headless, OrderOfEvents) {
  Show("abc");
  browser.DoubleClick(Middle(0, 1));
  EXPECT_EQ(listener->events,
            (QStringList{"mousedown", "mouseup", "click", "mousedown", "mouseup", "click", "dblclick"}));
  listener->events.clear();
  browser.RightClick(Middle(0, 1));
  EXPECT_EQ(listener->events, (QStringList{"mousedown", "contextmenu", "mouseup"}));
  EXPECT_EQ(listener->button, 2);
  listener->events.clear();
  browser.MouseOver(Middle(0, 1));
  browser.MouseOut(Middle(0, 1));
  browser.KeyUp(65, true);
  EXPECT_EQ(listener->events, (QStringList{"mouseover", "mouseout", "keyup"}));
  EXPECT_TRUE(browser.Document()->parentWindow().event().shiftKey());
}

TEST_F(Headless, ADragSelectsAndTheNextPressDropsIt) {
  Show("abcdef");
  browser.Drag(Middle(0, 4), Middle(0, 1));
  EXPECT_EQ(browser.Document()->selection().type(), "Text");
  EXPECT_EQ(browser.Document()->selection().createRange()->text(), "bcd");
  browser.MouseDown(Middle(0, 0), 2);
  EXPECT_EQ(browser.Document()->selection().type(), "Text") << "the right button leaves it";
  browser.MouseDown(Middle(0, 0));
  EXPECT_EQ(browser.Document()->selection().type(), "None");
}

TEST_F(Headless, AnEmptyPageTakesClicks) {
  Show("");
  Click(Middle(0, 0));
  EXPECT_EQ(listener->tag, "BODY");
  EXPECT_EQ(listener->caret, BoundaryPoint::AtStart(browser.Document()->tree().bodyNode()));
  browser.SetHtml("<frameset><frame></frameset>");
  browser.Click(Middle(0, 0));
}

}  // namespace
