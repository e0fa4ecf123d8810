// Undo on the real engine: the live page follows, also into a fresh renderer.
#include <QDropEvent>
#include <QMimeData>

#include "HostedView.h"
#include "PageOnView.h"

class HostedUndo : public testing::Test {
 protected:
  void Same(const char* what) {
    const std::string live = hosted.LiveHtml().toStdString();
    EXPECT_EQ(live, hosted.ModelHtml().toStdString()) << what;
  }
  HTMLElement Element(const QString& id) { return ElementById(hosted.document(), id); }

  HostedView hosted;
};

TEST_F(HostedUndo, WhatWasTypedGoesAndComesBack) {
  ASSERT_TRUE(hosted.Load("<HTML><BODY><FONT ID=a>one two</FONT></BODY></HTML>"));
  const QString before = hosted.Body();
  ASSERT_TRUE(hosted.Click(hosted.PointIn(QStringLiteral("#a"), 3)));
  for (const char letter : {'x', 'y'}) ASSERT_TRUE(hosted.Key(Qt::Key(letter - 'a' + 'A'), QString(QChar(letter))));
  const QString typed = hosted.Body();
  ASSERT_NE(before, typed);
  QSignalSpy places(&hosted.jWB(), &WBUC::KeyPress);
  hosted.jWB().Undo();
  EXPECT_EQ(before, hosted.Body());
  EXPECT_TRUE(HostedPage::WaitFor([&] { return places.count() == 1; })) << "the bar's place";
  Same("undone");
  hosted.jWB().Redo();
  EXPECT_EQ(typed, hosted.Body());
  Same("redone");
  ASSERT_TRUE(hosted.Key(Qt::Key_Z, QStringLiteral("z")));
  EXPECT_TRUE(hosted.Body().contains(QStringLiteral("xyz")));
  Same("typed on");
}

TEST_F(HostedUndo, AStepReachesBackBehindTheDeathOfARenderer) {
  ASSERT_TRUE(hosted.Load("<HTML><BODY><FONT ID=a>one</FONT><P ID=p>two<B>three</B></P></BODY></HTML>"));
  const QString before = hosted.Body();
  hosted.jWB().DeleteElement(Element(QStringLiteral("p")));
  hosted.document().body().setAttribute(QStringLiteral("lang"), QStringLiteral("en"));
  ASSERT_TRUE(hosted.KillRenderer());
  // What the page itself adds in the meantime must not get the numbers of what comes back.
  hosted.ScriptText(QStringLiteral("for (let i = 0; i < 50; ++i) a.append(document.createElement('i')); ''"));
  hosted.LiveHtml();
  while (hosted.jWB().History().CanUndo()) hosted.jWB().Undo();
  Same("undone");
  EXPECT_TRUE(hosted.Body().endsWith(QStringLiteral("<p id=\"p\">two<b>three</b></p>")));
  while (hosted.jWB().History().CanRedo()) hosted.jWB().Redo();
  Same("redone");
}

TEST_F(HostedUndo, WhatAScriptTookOutOfSomethingThatWentAndCameBackIsThereOnceOnBothSides) {
  ASSERT_TRUE(hosted.Load("<HTML><BODY><DIV ID=d>x<B ID=b>bold</B></DIV><P ID=p>y</P></BODY></HTML>"));
  hosted.browser().RunPageScript(QStringLiteral("p.append(b)"));
  hosted.jWB().DeleteElement(Element(QStringLiteral("d")));
  hosted.jWB().Undo();
  Same("undone");
  hosted.ScriptText(QStringLiteral("for (const one of document.querySelectorAll('b')) one.append('!'); ''"));
  Same("the numbers of the nodes are right");
}

TEST_F(HostedUndo, AnAttributeComesBackToItsPlace) {
  ASSERT_TRUE(hosted.Load("<HTML><BODY><P ID=p TITLE=t ALIGN=left LANG=en>x</P></BODY></HTML>"));
  HTMLElement element = Element(QStringLiteral("p"));
  element.removeAttribute(QStringLiteral("title"));
  hosted.jWB().Undo();
  EXPECT_EQ("<p id=\"p\" title=\"t\" align=\"left\" lang=\"en\">x</p>", hosted.Body().toStdString());
  Same("undone");
}

// The window gets it, and the page is what lies there.
TEST_F(HostedUndo, APictureDroppedOnThePageReachesThePageView) {
  ASSERT_TRUE(hosted.Load("<HTML><BODY>x</BODY></HTML>"));
  QWidget* const window = hosted.jWB().window();
  QMimeData data;
  data.setUrls({QUrl::fromLocalFile(QStringLiteral("/somewhere/p.JPG"))});
  const QPoint point = hosted.jWB().mapTo(window, QPoint(60, 60));
  QDragEnterEvent enter(point, Qt::CopyAction, &data, Qt::LeftButton, {});
  QCoreApplication::sendEvent(window->windowHandle(), &enter);
  ASSERT_TRUE(enter.isAccepted());
  EXPECT_FALSE(hosted.Input()->acceptDrops());
  QDragMoveEvent move(point, Qt::CopyAction, &data, Qt::LeftButton, {});
  move.accept();  // as the window system takes over the answer of before
  QCoreApplication::sendEvent(window->windowHandle(), &move);
  EXPECT_TRUE(move.isAccepted());
  QSignalSpy dropped(&hosted.jWB(), &WBUC::PicturesDropped);
  QDropEvent drop(QPointF(point), Qt::CopyAction, &data, Qt::LeftButton, {});
  QCoreApplication::sendEvent(window->windowHandle(), &drop);
  ASSERT_TRUE(HostedPage::WaitFor([&] { return dropped.count() == 1; }));
  EXPECT_EQ(QStringList{QStringLiteral("/somewhere/p.JPG")}, dropped[0][0].toStringList());
  Same("dropped");
}
