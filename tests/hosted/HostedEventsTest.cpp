// Real mouse and key events in the real engine.
#include <gtest/gtest.h>

#include <QApplication>
#include <QSignalSpy>
#include <QTest>
#include <QWebEngineNavigationRequest>
#include <QWebEngineNewWindowRequest>
#include <QWebEnginePage>

#include "HostedView.h"

namespace {

const char blocks[] =
    "<HTML><HEAD><TITLE></TITLE></HEAD><BODY BGCOLOR=\"#FFFFFF\"><FONT ID=a SIZE=4>first block</FONT><BR>"
    "<FONT ID=b SIZE=4>second <B ID=c>bold</B></FONT><BR><TABLE ID=t BORDER=1 WIDTH=300 HEIGHT=80><TR><TD ID=d>"
    "<FONT ID=e>cell</FONT></TD><TD ID=f><IMG ID=g WIDTH=20 HEIGHT=20></TD></TR></TABLE>"
    "<A ID=l HREF=\"other.html\">a link</A></BODY></HTML>";

// Whether what it watches has been hidden.
class HideWatch : public QObject {
 public:
  bool Seen = false;
  bool eventFilter(QObject*, QEvent* event) override {
    Seen = Seen || event->type() == QEvent::Hide;
    return false;
  }
};

}  // namespace

TEST(HostedEvents, ClickPlacesTheInsertionPointAndKeysGoIn) {
  HostedView page;
  ASSERT_TRUE(page.Load(blocks));
  ASSERT_TRUE(page.Click(page.PointIn(QStringLiteral("#a"), 6)));
  EXPECT_EQ(page.jWB().CurrentElement().id(), QStringLiteral("a"));
  ASSERT_TRUE(page.jWB().HasCurrentTextRange());
  ASSERT_TRUE(page.Key(Qt::Key_X, QStringLiteral("x")));
  ASSERT_TRUE(page.Key(Qt::Key_Space, QStringLiteral(" ")));
  ASSERT_TRUE(page.Key(Qt::Key_Y, QStringLiteral("Y"), Qt::ShiftModifier));
  EXPECT_TRUE(page.Body().startsWith(QStringLiteral("<font id=\"a\" size=\"4\">first x Yblock</font>")));
  EXPECT_EQ(page.ScriptText(QStringLiteral("document.querySelector('#a').textContent")),
            QStringLiteral("first x Yblock"));
}

TEST(HostedEvents, KeyPressTellsWhereTheCaretIs) {
  HostedView page;
  ASSERT_TRUE(page.Load(blocks));
  ASSERT_TRUE(page.Click(page.PointIn(QStringLiteral("#a"), 0)));
  QSignalSpy keys(&page.jWB(), &WBUC::KeyPress);
  ASSERT_TRUE(page.Key(Qt::Key_M, QStringLiteral("m")));
  const QString expected = page.ScriptText(QStringLiteral(
      "(() => { const r = document.createRange(); r.setStart(document.querySelector('#a').firstChild, 1);"
      "r.collapse(true); const b = r.getClientRects()[0]; return Math.round(b.left) + ',' + Math.round(b.top); })()"));
  EXPECT_EQ(keys[0][0].toString(), QStringLiteral("m"));
  EXPECT_EQ(QStringLiteral("%1,%2").arg(keys[0][1].toInt() / 15).arg(keys[0][2].toInt() / 15), expected);
}

TEST(HostedEvents, DoubleClickSelectsTheBlockAndMarksNothingInThePage) {
  HostedView page;
  ASSERT_TRUE(page.Load(blocks));
  const QString before = page.jWB().Source();
  QSignalSpy doubles(&page.jWB(), &WBUC::DoubleClick);
  const QPoint point = page.PointIn(QStringLiteral("#a"), 3);
  page.DoubleClick(point);
  ASSERT_TRUE(HostedPage::WaitFor([&] { return doubles.count() > 0; }));
  EXPECT_EQ(doubles.last()[0].toString(), QStringLiteral("FONT"));
  EXPECT_EQ(page.jWB().IfSelection(), WBUC::ElementSelected);
  EXPECT_TRUE(
      HostedPage::WaitFor([&] { return page.ScriptText(QStringLiteral("String(getSelection())")) == u"first block"; }));
  EXPECT_EQ(page.jWB().Source(), before);
}

TEST(HostedEvents, DragSelectsTextAndIfSelectionIsOne) {
  HostedView page;
  ASSERT_TRUE(page.Load(blocks));
  QSignalSpy clicks(&page.jWB(), &WBUC::Click);
  const QPoint from = page.PointIn(QStringLiteral("#a"), 2);
  const QPoint to = page.PointIn(QStringLiteral("#b"), 4);
  QTest::mousePress(page.Input(), Qt::LeftButton, {}, from);
  QTest::mouseMove(page.Input(), (from + to) / 2);
  QTest::mouseMove(page.Input(), to);
  QTest::mouseRelease(page.Input(), Qt::LeftButton, {}, to);
  ASSERT_TRUE(HostedPage::WaitFor([&] { return clicks.count() == 1; }));
  EXPECT_EQ(clicks[0][0].toString(), QStringLiteral("FONT"));  // the element under the pointer, not the page
  EXPECT_EQ(page.jWB().CurrentElement().id(), QStringLiteral("b"));
  EXPECT_EQ(page.jWB().IfSelection(), WBUC::TextSelected);
}

TEST(HostedEvents, RightButtonRaisesRightClickOnceOnBothRoads) {
  for (const bool compat : {false, true}) {
    HostedView page;
    page.program().Compat4On = compat;
    ASSERT_TRUE(page.Load(blocks));
    EXPECT_EQ(page.jWB().IsHooked(), compat);
    QSignalSpy rights(&page.jWB(), &WBUC::RightClick);
    QTest::mouseClick(page.Input(), Qt::RightButton, {}, page.PointIn(QStringLiteral("#a"), 3));
    ASSERT_TRUE(HostedPage::WaitFor([&] { return rights.count() > 0; }));
    page.ScriptText(QStringLiteral("'settled'"));  // whatever else the click does has arrived by then
    EXPECT_EQ(rights.count(), 1) << compat;
    // A press that the page never gets to hear of isn't waited for, or it would be given to a page that came back.
    EXPECT_TRUE(HostedPage::WaitFor([&] { return page.browser().IsQuiet(); }, 5000)) << compat;
  }
}

// The page that the link leads to is there, and every road that a browser knows is tried.
TEST(HostedEvents, LinksAreNeverFollowed) {
  HostedView page;
  const QString target = page.File(QStringLiteral("other.html"), "<BODY>the other page</BODY>");
  ASSERT_TRUE(page.Load(blocks));
  QWebEnginePage& engine = *page.browser().enginePage();
  QStringList asked;
  QObject::connect(&engine, &QWebEnginePage::navigationRequested, &engine,
                   [&](const QWebEngineNavigationRequest& request) { asked += request.url().fileName(); });
  QObject::connect(&engine, &QWebEnginePage::newWindowRequested, &engine,
                   [&](const QWebEngineNewWindowRequest& request) { asked += request.requestedUrl().fileName(); });
  // A move within the page reaches the program behind all that was asked for before.
  int moves = 0;
  const auto settled = [&] {
    const QString place = QStringLiteral("place%1").arg(++moves);
    page.Script(QStringLiteral("location.hash = '%1'").arg(place));
    return HostedPage::WaitFor([&] { return engine.url().fragment() == place; });
  };
  ASSERT_TRUE(settled());
  asked.clear();
  const auto stays = [&](const char* road) {
    ASSERT_TRUE(settled()) << road;
    EXPECT_EQ(asked, QStringList()) << road;
    EXPECT_TRUE(page.ScriptText(QStringLiteral("document.body.textContent")).contains(u"first block")) << road;
  };
  const QPoint link = page.PointIn(QStringLiteral("#l"), 2);
  ASSERT_TRUE(page.Click(link));
  EXPECT_EQ(page.jWB().CurrentElementTag(), QStringLiteral("A"));
  stays("click");
  page.DoubleClick(link);
  stays("double click");
  for (const auto modifier : {Qt::ControlModifier, Qt::ShiftModifier}) {
    QTest::mouseClick(page.Input(), Qt::LeftButton, modifier, link);
    stays("click with a key held");
  }
  QTest::mouseClick(page.Input(), Qt::MiddleButton, {}, link);
  stays("middle button");
  page.Script(QStringLiteral("document.querySelector('#l').focus()"));
  QTest::keyClick(page.Input(), Qt::Key_Return);
  stays("Return");
  page.Script(QStringLiteral("document.querySelector('#l').click()"));
  stays("a script's click");
  page.Script(QStringLiteral("document.querySelector('#l').target = '_blank'"));
  ASSERT_TRUE(page.Click(link));
  stays("click for a window of its own");
  // Where the program itself goes there it shows, and would have shown above.
  ASSERT_TRUE(page.HostedPage::Load(target));
  EXPECT_EQ(page.Body(), QStringLiteral("the other page"));
  EXPECT_EQ(asked, QStringList{QStringLiteral("other.html")});
}

TEST(HostedEvents, CellsTakeTextOnlyWithAFontOfTheirOwn) {
  HostedView page;
  ASSERT_TRUE(page.Load(blocks));
  QSignalSpy clicks(&page.jWB(), &WBUC::Click);
  ASSERT_TRUE(page.Click(page.CenterOf(QStringLiteral("#d")) + QPoint(50, 20)));
  EXPECT_EQ(page.jWB().CurrentElement().id(), QStringLiteral("e"));
  EXPECT_TRUE(page.jWB().HasCurrentTextRange());
  ASSERT_TRUE(page.Click(page.CenterOf(QStringLiteral("#f")) + QPoint(40, 20)));
  EXPECT_EQ(clicks.last()[0].toString(), QStringLiteral("TD"));
  EXPECT_FALSE(page.jWB().HasCurrentTextRange());
}

TEST(HostedEvents, SpaceDoesntScrollWhileTyping) {
  HostedView page;
  QByteArray longPage = "<HTML><BODY><FONT ID=a>start</FONT>";
  for (int i = 0; i < 200; ++i) longPage += "<BR>line";
  ASSERT_TRUE(page.Load(longPage + "</BODY></HTML>"));
  ASSERT_TRUE(page.Click(page.PointIn(QStringLiteral("#a"), 2)));
  ASSERT_TRUE(page.Key(Qt::Key_Space, QStringLiteral(" ")));
  EXPECT_EQ(page.ScriptText(QStringLiteral("String(scrollY)")), QStringLiteral("0"));
}

TEST(HostedEvents, TheKeysGoOnIntoThePageWhoseRendererDied) {
  HostedPage hosted;
  ASSERT_TRUE(hosted.LoadHtml("<BODY>text</BODY>"));
  QWidget other(&hosted.window());
  other.setFocusPolicy(Qt::StrongFocus);
  other.show();
  const auto hasKeys = [&] { return hosted.window().focusWidget() == hosted.Input(); };
  hosted.browser().FocusPage();
  ASSERT_TRUE(hasKeys());
  bool strayed = false;
  const auto watch = QObject::connect(qApp, &QApplication::focusChanged, &other,
                                      [&](QWidget*, QWidget* now) { strayed = strayed || now == &other; });
  for (int death = 0; death < 2; ++death) {
    ASSERT_TRUE(hosted.KillRenderer());
    EXPECT_TRUE(HostedPage::WaitFor(hasKeys, 5000)) << death;
  }
  EXPECT_FALSE(strayed);
  QObject::disconnect(watch);
  other.setFocus();
  ASSERT_TRUE(hosted.KillRenderer());
  hosted.LiveHtml();
  EXPECT_EQ(hosted.window().focusWidget(), &other);
}

TEST(HostedEvents, TheKeysStayInThePageWhoseWindowIsMinimised) {
  HostedPage hosted;
  ASSERT_TRUE(hosted.LoadHtml("<BODY>text</BODY>"));
  hosted.browser().FocusPage();
  HideWatch watch;
  hosted.Input()->installEventFilter(&watch);
  hosted.window().showMinimized();
  EXPECT_TRUE(HostedPage::WaitFor([&] { return watch.Seen; }, 5000));
  EXPECT_EQ(hosted.window().focusWidget(), hosted.Input());
  hosted.window().showNormal();
  EXPECT_EQ(hosted.window().focusWidget(), hosted.Input());
}

// The engine hands keys that the page has no use for back to the windows around it, first as a possible shortcut. By
// then the next key may be down, and 65 is the letter A as well as the space bar's place on many keyboards.
TEST(HostedEvents, AKeyHandedBackIsNotTakenForTheNextOne) {
  HostedView page;
  ASSERT_TRUE(page.Load(blocks));
  ASSERT_TRUE(page.Click(page.PointIn(QStringLiteral("#a"), 0)));
  QSignalSpy keys(&page.jWB(), &WBUC::KeyPress);
  const auto send = [&](QObject* to, QEvent::Type type, Qt::Key key, quint32 place, const QString& text) {
    QKeyEvent event(type, key, Qt::NoModifier, place, 0, 0, text);
    QCoreApplication::sendEvent(to, &event);
  };
  send(page.Input(), QEvent::KeyPress, Qt::Key_Space, 65, QStringLiteral(" "));
  send(&page.jWB(), QEvent::ShortcutOverride, Qt::Key_A, 0, QStringLiteral("a"));
  send(page.Input(), QEvent::KeyRelease, Qt::Key_Space, 65, QStringLiteral(" "));
  EXPECT_TRUE(HostedPage::WaitFor([&] { return keys.count() == 1; }));
  EXPECT_TRUE(page.Body().contains(QStringLiteral(" first block"))) << qPrintable(page.Body());
}

TEST(HostedEvents, ClickBelowATableAtTheEndStandsBehindIt) {
  HostedView page;
  ASSERT_TRUE(
      page.Load("<HTML><BODY>text<TABLE ID=t BORDER=1><TR><TD><FONT>cell</FONT></TD></TR></TABLE></BODY></HTML>"));
  ASSERT_TRUE(page.Click(QPoint(400, 400)));
  ASSERT_TRUE(page.Key(Qt::Key_Z, QStringLiteral("z")));
  EXPECT_TRUE(page.Body().endsWith(QStringLiteral("</table>z")));
}
