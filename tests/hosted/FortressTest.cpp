// The page stays the one that the program shows, whatever its scripts and the user's hands do.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QTest>
#include <QWebEnginePage>
#include <QWebEngineSettings>
#include <QWheelEvent>

#include "HostedView.h"

namespace {

constexpr const char* kText = "document.body.textContent";

// A move within the page reaches the program behind all that was asked for before.
bool Settles(HostedPage& page) {
  static int moves = 0;
  const QString place = QStringLiteral("place%1").arg(++moves);
  page.Script(QStringLiteral("location.hash = '%1'").arg(place));
  return HostedPage::WaitFor([&] { return page.browser().enginePage()->url().fragment() == place; });
}

void Press(QWidget* widget, QPoint at, Qt::MouseButton button) {
  for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
    QMouseEvent event(type, QPointF(at), widget->mapToGlobal(QPointF(at)), button,
                      type == QEvent::MouseButtonPress ? button : Qt::NoButton, {});
    QCoreApplication::sendEvent(widget, &event);
  }
}

TEST(Fortress, TheMouseGoesNeitherBackNorForward) {
  HostedPage page;
  ASSERT_TRUE(page.Load(page.File("one.html", "<body>one</body>")));
  ASSERT_TRUE(page.Load(page.File("two.html", "<body>two</body>")));
  for (const Qt::MouseButton button : {Qt::BackButton, Qt::ForwardButton}) {
    Press(page.Input(), {20, 20}, button);
    ASSERT_TRUE(Settles(page));
    EXPECT_EQ(page.ScriptText(kText), "two") << button;
    EXPECT_TRUE(page.ModelHtml().contains("two"));
  }
}

TEST(Fortress, NoScriptLeavesThePage) {
  HostedPage page;
  const QString other = page.File("other.html", "<body>other</body>");
  page.File("frame.html", "<body><a id=a target=_top href=other.html>x</a><script>a.click()</script></body>");
  ASSERT_TRUE(page.Load(page.File("before.html", "<body>before</body>")));
  ASSERT_TRUE(page.LoadHtml("<body>mine<form id=f action=other.html></form></body>"));
  for (const char* script :
       {"location.href = 'other.html'", "location.replace('other.html')", "open('other.html', '_self')", "f.submit()",
        "history.back()", "history.go(-1)", "location.reload()",
        "document.head.innerHTML = '<meta http-equiv=refresh content=\"0;url=other.html\">'",
        "{ const i = document.createElement('iframe'); i.src = 'frame.html'; document.body.append(i); }"}) {
    page.Script(script);
    ASSERT_TRUE(Settles(page)) << script;
    EXPECT_EQ(page.ScriptText(kText), "mine") << script;
  }
  EXPECT_TRUE(page.ModelHtml().contains("mine"));
}

TEST(Fortress, APageThatRefreshesItselfToAnotherStays) {
  HostedPage page;
  page.File("other.html", "<body>other</body>");
  ASSERT_TRUE(page.LoadHtml("<head><meta http-equiv=refresh content='0;url=other.html'></head><body>mine</body>"));
  QTest::qWait(300);  // as long as a refresh of no seconds takes at the most
  ASSERT_TRUE(Settles(page));
  EXPECT_EQ(page.ScriptText(kText), "mine");
}

TEST(Fortress, NoScriptPutsABoxOverTheEditor) {
  HostedPage page;
  ASSERT_TRUE(
      page.LoadHtml("<body>a<script>alert(1); var c = confirm(2), p = prompt(3, 'x');"
                    "onbeforeunload = e => { e.preventDefault(); return 'stay'; }</script></body>"));
  EXPECT_EQ(page.ScriptText("[c, p].join()"), "false,");
  Press(page.Input(), {20, 20}, Qt::LeftButton);  // a page that nobody has touched isn't asked
  ASSERT_TRUE(Settles(page));
  ASSERT_TRUE(page.Load(page.File("next.html", "<body>next</body>")));
  EXPECT_EQ(page.ScriptText(kText), "next");
}

TEST(Fortress, ScriptsReadNoFiles) {
  HostedPage page;
  page.File("secret.txt", "secret");
  ASSERT_TRUE(page.LoadHtml("<body>a</body>"));
  page.Script(
      "var told = [];"
      "fetch('secret.txt').then(r => r.text()).then(t => told.push('fetch ' + t), () => told.push('refused'));"
      "{ const x = new XMLHttpRequest(); x.open('GET', 'secret.txt'); x.onload = () => told.push('xhr ' + x.response);"
      "  x.onerror = () => told.push('refused'); x.send(); }");
  ASSERT_TRUE(HostedPage::WaitFor([&] { return page.ScriptText("told.length") == "2"; }));
  EXPECT_EQ(page.ScriptText("told.join()"), "refused,refused");
}

TEST(Fortress, FramesShowWhatLiesWithThePageAndNothingElse) {
  HostedPage page;
  page.File("with.html", "<body>with</body>");
  QTemporaryDir elsewhere;
  QFile file(elsewhere.filePath("other.html"));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("<body>elsewhere</body>");
  file.close();
  ASSERT_TRUE(page.LoadHtml("<body><iframe src=with.html></iframe><iframe src='file://" + file.fileName().toUtf8() +
                            "'></iframe></body>"));
  ASSERT_TRUE(HostedPage::WaitFor([&] { return page.ScriptText("frames[0].document.body.textContent") == "with"; }));
  EXPECT_NE(page.ScriptText("(() => { try { return frames[1].document.body.textContent } catch { return '' } })()"),
            "elsewhere");
}

TEST(Fortress, APageInFramesOfItselfIsShownOnce) {
  HostedPage page;
  QByteArray html = "<body>a";
  for (int i = 0; i < 24; ++i) html += "<iframe src=page.html></iframe><object data=page.html></object>";
  ASSERT_TRUE(page.LoadHtml(html + "</body>"));
  EXPECT_EQ(page.ScriptText("Array.from({length: frames.length}, (_, i) => frames[i]).filter(f => { try { return "
                            "f.length } catch { return false } }).length"),
            "0");
}

TEST(Fortress, APageThatStopsItsLoadIsThereAsFarAsItCame) {
  HostedPage page;
  ASSERT_TRUE(page.LoadHtml("<body>first<script>window.stop()</script>second</body>"));
  EXPECT_TRUE(page.ModelHtml().contains("first"));
  EXPECT_EQ(page.LiveHtml(), page.ModelHtml());
}

TEST(Fortress, APageThatIsWrittenAnewIsHeardAsBefore) {
  HostedView page;
  ASSERT_TRUE(page.Load("<body>old</body>"));
  page.Script("document.open(); document.write('<body><font id=p>written anew</font></body>'); document.close()");
  EXPECT_EQ(page.LiveHtml(), page.ModelHtml());
  EXPECT_TRUE(page.ModelHtml().contains("written anew"));
  page.jWB().SetLinkColor("#123456");
  page.jWB().SetBodyFontColor("#654321");
  page.jWB().SetBackPic("a.gif");
  for (const char* const value : {"link=\"#123456\"", "vlink=\"#123456\"", "text=\"#654321\"", "background=\"a.gif\""})
    EXPECT_TRUE(page.ModelHtml().contains(value)) << page.ModelHtml().toStdString();
  EXPECT_EQ(page.jWB().BackPic(), "a.gif");
  ASSERT_TRUE(page.Click(page.PointIn("#p", 3)));
  ASSERT_TRUE(page.Key(Qt::Key_X));
  EXPECT_TRUE(page.Body().contains("wrixtten")) << page.Body().toStdString();
  EXPECT_EQ(page.LiveHtml(), page.ModelHtml());
}

TEST(Fortress, TheWheelWithControlDoesNotZoom) {
  HostedPage page;
  ASSERT_TRUE(page.LoadHtml("<body>a</body>"));
  QWheelEvent wheel({20, 20}, page.Input()->mapToGlobal(QPointF(20, 20)), {}, {0, 120}, Qt::NoButton,
                    Qt::ControlModifier, Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(page.Input(), &wheel);
  ASSERT_TRUE(Settles(page));
  EXPECT_EQ(page.browser().enginePage()->zoomFactor(), 1);
  EXPECT_EQ(page.ScriptText("devicePixelRatio"), "1");
}

TEST(Fortress, TwoFingersDoNotZoom) {
  HostedPage page;
  ASSERT_TRUE(
      page.LoadHtml("<body>a<script>let moves = 0; addEventListener('touchmove', () => ++moves)</script></body>"));
  static QPointingDevice* const screen = QTest::createTouchDevice();  // there until the program ends
  const auto touch = [&] { return QTest::touchEvent(page.Input(), screen); };
  const auto finger = [](int which, int apart) { return QPoint(300 + (which ? apart : -apart) / 2, 100); };
  const auto move = [&](int fingers) {
    for (int apart = 200; apart <= 500; apart += 20) {
      auto moved = touch();
      for (int which = 0; which < fingers; ++which) moved.move(which, finger(which, apart));
      moved.commit();
      QTest::qWait(10);
    }
  };
  const auto drag = [&] {
    touch().press(0, finger(0, 200));
    move(1);
    touch().release(0, finger(0, 500));
    return Settles(page) ? page.ScriptText("moves").toInt() : 0;
  };
  // Before its first frame a page hears of no fingers.
  ASSERT_TRUE(HostedPage::WaitFor([&] { return drag() > 9; }));
  for (const bool isAtOnce : {false, true}) {
    auto first = touch();
    first.press(0, finger(0, 200));
    if (!isAtOnce) {
      first.commit();
      touch().stationary(0).press(1, finger(1, 200));
    } else {
      first.press(1, finger(1, 200)).commit();
    }
    move(2);
    const int next = isAtOnce ? 0 : 1;  // the one that goes up before the other
    touch().stationary(1 - next).release(next, finger(next, 500));
    touch().release(1 - next, finger(1 - next, 500));
    ASSERT_TRUE(Settles(page));
    EXPECT_EQ(page.ScriptText("visualViewport.scale"), "1") << isAtOnce;
    const int heard = page.ScriptText("moves").toInt();
    EXPECT_GT(drag(), heard) << isAtOnce;
  }
}

TEST(Fortress, ADocumentBeginsUnzoomed) {
  HostedPage page;
  ASSERT_TRUE(page.LoadHtml("<body>a</body>"));
  page.browser().enginePage()->setZoomFactor(2);
  ASSERT_TRUE(page.LoadHtml("<body>b</body>"));
  ASSERT_TRUE(HostedPage::WaitFor([&] { return page.browser().enginePage()->zoomFactor() == 1; }));
}

TEST(Fortress, WhatTheEngineCouldDoMoreIsOff) {
  const HostedPage page;
  const QWebEngineSettings* const settings = const_cast<HostedPage&>(page).browser().enginePage()->settings();
  EXPECT_EQ(settings->unknownUrlSchemePolicy(), QWebEngineSettings::DisallowUnknownUrlSchemes);
  for (const auto attribute : {QWebEngineSettings::LocalStorageEnabled, QWebEngineSettings::WebGLEnabled,
                               QWebEngineSettings::JavascriptCanAccessClipboard, QWebEngineSettings::PluginsEnabled,
                               QWebEngineSettings::FullScreenSupportEnabled, QWebEngineSettings::ScreenCaptureEnabled,
                               QWebEngineSettings::PdfViewerEnabled, QWebEngineSettings::ErrorPageEnabled,
                               QWebEngineSettings::AutoLoadIconsForPage, QWebEngineSettings::DnsPrefetchEnabled,
                               QWebEngineSettings::JavascriptCanOpenWindows})
    EXPECT_FALSE(settings->testAttribute(attribute)) << attribute;
}

}  // namespace
