// Keys on their way into the page: which of them count, and that they are answered in order, whether the program can
// answer one by itself or has to wait for the page.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMetaEnum>
#include <QWebEnginePage>
#include <csignal>

#include "HostedView.h"
#include "KeyCodes.h"
#include "KeyTable.h"

namespace {

const char blocks[] =
    "<HTML><HEAD><TITLE></TITLE></HEAD><BODY BGCOLOR=\"#FFFFFF\"><FONT ID=a SIZE=4>first block</FONT><BR>"
    "<FONT ID=b SIZE=4>second block</FONT></BODY></HTML>";

const QString a = QStringLiteral("#a");
const QString b = QStringLiteral("#b");

struct KeyMove {
  QEvent::Type type;
  Qt::Key key = Qt::Key_X;
  Qt::KeyboardModifiers modifiers = {};
  bool isRepeat = false;
};

void Send(QObject* to, const KeyMove& move) {
  const QString text = move.key >= Qt::Key_A && move.key <= Qt::Key_Z ? QString(QChar(int(move.key) + 32)) : QString();
  QKeyEvent event(move.type, move.key, move.modifiers, text, move.isRepeat);
  QCoreApplication::sendEvent(to, &event);
}

void Type(QObject* to, const char* letters) {
  for (const char* at = letters; *at; ++at) {
    Send(to, {QEvent::KeyPress, Qt::Key(*at - 32)});
    Send(to, {QEvent::KeyRelease, Qt::Key(*at - 32)});
  }
}

// The codes of the keys that the page's own script has seen come up.
QString SeenByThePage(HostedPage& hosted) {
  return hosted.ScriptText(QStringLiteral("window.codes.splice(0).join()"));
}

void WatchKeys(HostedPage& hosted) {
  hosted.Script(QStringLiteral("window.codes = []; addEventListener('keyup', e => codes.push(e.keyCode))"));
}

}  // namespace

class HostedKeys : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(hosted.Load(blocks));
    WatchKeys(hosted);
    ASSERT_TRUE(hosted.Click(hosted.PointIn(a, 6)));
    ASSERT_TRUE(HostedPage::WaitFor([this] { return hosted.browser().IsQuiet(); }));
  }
  // Until the page has seen that many keys and everything that they brought is told.
  void Settle(int keys) {
    HostedPage::WaitFor([&] { return hosted.ScriptText(QStringLiteral("String(codes.length)")).toInt() >= keys; },
                        5000);
    EXPECT_EQ(hosted.ModelHtml().toStdString(), hosted.LiveHtml().toStdString());
  }
  bool Has(const char* text) { return hosted.Body().contains(QLatin1String(text)); }

  // A field in it that takes the keys by itself would take them when the engine likes, behind the click as well.
  void GoIntoAFrame() {
    hosted.File(QStringLiteral("frame.html"), "<body><input id=i></body>");
    hosted.browser().FocusPage();
    ASSERT_TRUE(HostedPage::WaitFor(
        [&] { return hosted.ScriptText(QStringLiteral("String(document.hasFocus())")) == u"true"; }, 5000));
    hosted.Script(
        QStringLiteral("{ const f = document.createElement('iframe'); f.src = 'frame.html'; f.id = 'f';"
                       "document.body.append(f); f.onload = () => f.focus(); }"));
    const auto isInFrame = [&] { return hosted.ScriptText(QStringLiteral("document.activeElement.id")) == u"f"; };
    ASSERT_TRUE(HostedPage::WaitFor(isInFrame, 5000));
    hosted.LiveHtml();
  }

  HostedView hosted;
};

// The engine makes a key's code of its name and of nothing else, so a table can know it.
// A window that closes at the press may take the release with it.
TEST_F(HostedKeys, AKeyWhoseReleaseNobodyGotElsewhereIsTypedTheNextTime) {
  QLineEdit other;
  Send(&other, {QEvent::KeyPress});
  HostedPage::WaitFor([] { return false; }, 1500);
  Type(hosted.Input(), "x");
  Settle(1);
  EXPECT_TRUE(Has("first xblock")) << hosted.Body().toStdString();
}

// Where nobody has the focus, the window itself gets the keys.
TEST_F(HostedKeys, AKeyOfElsewhereWhoseReleaseTheWindowGotIsTypedTheNextTime) {
  QLineEdit other;
  Send(&other, {QEvent::KeyPress});
  Send(hosted.Input()->window(), {QEvent::KeyRelease});
  Type(hosted.Input(), "x");
  Settle(1);
  EXPECT_TRUE(Has("first xblock")) << hosted.Body().toStdString();
}

TEST_F(HostedKeys, TheTableOfCodesIsTheEngines) {
  const QMetaEnum keys = QMetaEnum::fromType<Qt::Key>();
  int typing = 0;
  for (int at = 0; at < keys.keyCount(); ++at) {
    const auto key = Qt::Key(keys.value(at));
    for (const Qt::KeyboardModifiers modifiers : {Qt::KeyboardModifiers(), Qt::KeyboardModifiers(Qt::KeypadModifier)}) {
      hosted.Script(QStringLiteral("codes.length = 0"));
      Send(hosted.Input(), {QEvent::KeyPress, key, modifiers});
      Send(hosted.Input(), {QEvent::KeyRelease, key, modifiers});
      ASSERT_TRUE(
          HostedPage::WaitFor([&] { return !hosted.ScriptText(QStringLiteral("codes.join()")).isEmpty(); }, 5000))
          << keys.key(at);
      const int reported = SeenByThePage(hosted).toInt();
      const int known = KeyCodeOf(key, modifiers.testFlag(Qt::KeypadModifier));
      if (known != 0) {
        EXPECT_EQ(known, reported) << keys.key(at) << (modifiers ? " on the keypad" : "");
      }
      // Whatever types is known.
      if (KeyToText(reported, false, QString()).action != KeyAction::Nothing) {
        EXPECT_EQ(known, reported) << keys.key(at) << (modifiers ? " on the keypad" : "");
        ++typing;
      }
    }
  }
  EXPECT_GT(typing, 60);
}

TEST_F(HostedKeys, AKeyIsAnsweredBeforeThePageHasSeenIt) {
  hosted.KeepBusy(400);
  Type(hosted.Input(), "xyz");
  EXPECT_TRUE(Has("first xyzblock")) << hosted.Body().toStdString();
  Settle(3);
  EXPECT_EQ(SeenByThePage(hosted), QStringLiteral("88,89,90"));
  EXPECT_TRUE(Has("first xyzblock")) << hosted.Body().toStdString();
}

TEST_F(HostedKeys, EveryKeyRaisesOneKeyPressInOrder) {
  QSignalSpy presses(&hosted.jWB(), &WBUC::KeyPress);
  hosted.KeepBusy(200);
  Type(hosted.Input(), "xy");
  Send(hosted.Input(), {QEvent::KeyPress, Qt::Key_Left});
  Send(hosted.Input(), {QEvent::KeyRelease, Qt::Key_Left});
  Type(hosted.Input(), "z");
  ASSERT_TRUE(HostedPage::WaitFor([&] { return presses.count() == 4; }));
  Settle(4);
  QStringList told;
  for (const QList<QVariant>& press : presses) told += press[0].toString();
  EXPECT_EQ(told, QStringList({"x", "y", "", "z"}));
  EXPECT_TRUE(Has("first xyzblock")) << hosted.Body().toStdString();
}

TEST_F(HostedKeys, AKeyBehindAClickWaitsForIt) {
  const QPoint point = hosted.PointIn(b, 7);
  hosted.KeepBusy(300);
  Type(hosted.Input(), "x");
  QTest::mouseClick(hosted.Input(), Qt::LeftButton, {}, point);
  Type(hosted.Input(), "yz");
  EXPECT_TRUE(Has("first xblock")) << hosted.Body().toStdString();
  EXPECT_FALSE(Has("y")) << hosted.Body().toStdString();
  Settle(3);
  EXPECT_TRUE(Has("second yzblock")) << hosted.Body().toStdString();
}

TEST_F(HostedKeys, OfKeysBehindAKeyThatThePageAnswersNoneOvertakesIt) {
  hosted.KeepBusy(200);
  Send(hosted.Input(), {QEvent::KeyPress, Qt::Key_F2});
  Send(hosted.Input(), {QEvent::KeyRelease, Qt::Key_F2});
  Type(hosted.Input(), "xy");
  EXPECT_TRUE(Has("first block")) << hosted.Body().toStdString();
  Settle(3);
  EXPECT_TRUE(Has("first xyblock")) << hosted.Body().toStdString();
}

TEST_F(HostedKeys, KeysOfAFrameTypeNothingInThePageThatComesBackEither) {
  ASSERT_NO_FATAL_FAILURE(GoIntoAFrame());
  Type(hosted.Input(), "xyz");
  hosted.LiveHtml();
  ASSERT_TRUE(hosted.KillRenderer());
  ASSERT_TRUE(HostedPage::WaitFor([this] { return hosted.browser().IsQuiet(); }));
  // One that is meant for the page goes in behind whatever was kept.
  Type(hosted.Input(), "w");
  hosted.LiveHtml();
  EXPECT_TRUE(Has("first wblock")) << hosted.Body().toStdString();
}

TEST_F(HostedKeys, KeysInAFrameOfThePageTypeNothing) {
  ASSERT_NO_FATAL_FAILURE(GoIntoAFrame());
  Type(hosted.Input(), "xyz");
  hosted.LiveHtml();
  EXPECT_TRUE(Has("first block")) << hosted.Body().toStdString();
  ASSERT_TRUE(hosted.Click(hosted.PointIn(b, 7)));
  Type(hosted.Input(), "xyz");
  Settle(3);
  EXPECT_TRUE(Has("second xyzblock"))
      << hosted.Body().toStdString()
      << hosted.ScriptText("document.activeElement.id + document.hasFocus()").toStdString();
}

// --- Which keys count

TEST_F(HostedKeys, AKeyThatWentDownInAnotherControlTypesNothing) {
  QLineEdit other(&hosted.window());
  other.show();
  QSignalSpy presses(&hosted.jWB(), &WBUC::KeyPress);
  Send(&other, {QEvent::KeyPress, Qt::Key_Return});
  Send(hosted.Input(), {QEvent::KeyPress, Qt::Key_Return});  // its repeats come here
  Send(hosted.Input(), {QEvent::KeyRelease, Qt::Key_Return});
  Type(hosted.Input(), "x");
  Settle(1);
  EXPECT_EQ(presses.count(), 1);
  EXPECT_TRUE(Has("first xblock")) << hosted.Body().toStdString();
}

TEST_F(HostedKeys, AKeyWhosePressNobodyHasSeenTypesNothing) {
  QSignalSpy presses(&hosted.jWB(), &WBUC::KeyPress);
  Send(hosted.Input(), {QEvent::KeyRelease, Qt::Key_Return});
  Type(hosted.Input(), "x");
  Settle(1);
  EXPECT_EQ(presses.count(), 1);
  EXPECT_TRUE(Has("first xblock")) << hosted.Body().toStdString();
}

TEST_F(HostedKeys, ARepeatOfAKeyWhosePressNobodyHasSeenTypesNothing) {
  Send(hosted.Input(), {QEvent::KeyPress, Qt::Key_Return, {}, true});
  Send(hosted.Input(), {QEvent::KeyRelease, Qt::Key_Return});
  Type(hosted.Input(), "x");
  Settle(1);
  EXPECT_TRUE(Has("first xblock")) << hosted.Body().toStdString();
}

TEST_F(HostedKeys, AKeyThatCameUpInAnotherControlTypesNothingLater) {
  QLineEdit other(&hosted.window());
  other.show();
  Send(hosted.Input(), {QEvent::KeyPress, Qt::Key_Return});
  Send(&other, {QEvent::KeyRelease, Qt::Key_Return});
  Send(hosted.Input(), {QEvent::KeyRelease, Qt::Key_Return});
  Type(hosted.Input(), "x");
  Settle(1);
  EXPECT_TRUE(Has("first xblock")) << hosted.Body().toStdString();
}

TEST_F(HostedKeys, AHeldKeyTypesOneLetterWhenItComesUp) {
  for (int repeat = 0; repeat < 20; ++repeat) {
    Send(hosted.Input(), {QEvent::KeyPress, Qt::Key_X, {}, repeat > 0});
    if (repeat % 2) Send(hosted.Input(), {QEvent::KeyRelease, Qt::Key_X, {}, true});
  }
  EXPECT_TRUE(Has("first block")) << hosted.Body().toStdString();
  Send(hosted.Input(), {QEvent::KeyRelease, Qt::Key_X});
  EXPECT_TRUE(Has("first xblock")) << hosted.Body().toStdString();
  Settle(1);
}

TEST_F(HostedKeys, KeysThatOverlapAllCountInTheOrderInWhichTheyComeUp) {
  for (const Qt::Key key : {Qt::Key_X, Qt::Key_Y, Qt::Key_Z}) Send(hosted.Input(), {QEvent::KeyPress, key});
  for (const Qt::Key key : {Qt::Key_Y, Qt::Key_X, Qt::Key_Z}) Send(hosted.Input(), {QEvent::KeyRelease, key});
  EXPECT_TRUE(Has("first yxzblock")) << hosted.Body().toStdString();
  Settle(3);
}

TEST_F(HostedKeys, TheTabulatorDoesNothingAndLosesNoKey) {
  hosted.document().body().insertAdjacentHTML(QStringLiteral("BeforeEnd"),
                                              QStringLiteral("<A HREF=\"x.html\">link</A>"));
  QLineEdit other(&hosted.window());
  other.show();
  hosted.browser().FocusPage();
  ASSERT_TRUE(HostedPage::WaitFor([&] { return hosted.window().focusWidget() == hosted.Input(); }, 5000));
  for (int times = 0; times < 3; ++times) {
    Send(hosted.Input(), {QEvent::KeyPress, Qt::Key_Tab});
    Send(hosted.Input(), {QEvent::KeyRelease, Qt::Key_Tab});
  }
  Type(hosted.Input(), "xyz");
  Settle(6);
  EXPECT_EQ(hosted.window().focusWidget(), hosted.Input());
  EXPECT_EQ(hosted.ScriptText(QStringLiteral("document.activeElement.tagName")), QStringLiteral("BODY"));
  EXPECT_TRUE(Has("first xyzblock")) << hosted.Body().toStdString();
}

// --- A renderer that dies

namespace {

// Until the page has lost its renderer; it isn't back yet.
bool Kill(HostedPage& hosted) {
  bool died = false;
  QWebEnginePage* const engine = hosted.browser().enginePage();
  const auto watch = QObject::connect(engine, &QWebEnginePage::renderProcessTerminated, [&died] { died = true; });
  ::kill(pid_t(engine->renderProcessPid()), SIGKILL);
  HostedPage::WaitFor([&] { return died; });
  QObject::disconnect(watch);
  return died;
}

}  // namespace

TEST_F(HostedKeys, KeysOfAPageWithoutARendererAreAnsweredAtOnce) {
  hosted.browser().FocusPage();
  QSignalSpy back(&hosted.browser(), &WebBrowser::Recovered);
  ASSERT_TRUE(Kill(hosted));
  QWidget* const keys = hosted.window().focusWidget();
  Type(keys ? keys : &hosted.window(), "xyz");
  EXPECT_TRUE(Has("first xyzblock")) << hosted.Body().toStdString();
  ASSERT_TRUE(HostedPage::WaitFor([&] { return back.count() == 1; }));
  EXPECT_EQ(hosted.ModelHtml().toStdString(), hosted.LiveHtml().toStdString());
  EXPECT_TRUE(Has("first xyzblock")) << hosted.Body().toStdString();
}

TEST_F(HostedKeys, ClicksThatADeadRendererTookWithItAreDoneInTheNextOne) {
  hosted.browser().FocusPage();
  const QPoint point = hosted.PointIn(b, 7);
  QSignalSpy back(&hosted.browser(), &WebBrowser::Recovered);
  QSignalSpy clicks(&hosted.jWB(), &WBUC::Click);
  hosted.KeepBusy(2000);
  QTest::mouseClick(hosted.Input(), Qt::LeftButton, {}, point);
  Type(hosted.Input(), "x");
  ASSERT_TRUE(Kill(hosted));
  QWidget* const keys = hosted.window().focusWidget();
  Type(keys ? keys : &hosted.window(), "yz");
  EXPECT_TRUE(Has("second block")) << hosted.Body().toStdString();
  ASSERT_TRUE(HostedPage::WaitFor([&] { return back.count() == 1; }));
  ASSERT_TRUE(HostedPage::WaitFor([&] { return Has("second xyzblock"); }, 10000)) << hosted.Body().toStdString();
  EXPECT_EQ(clicks.count(), 1);
  EXPECT_EQ(hosted.ModelHtml().toStdString(), hosted.LiveHtml().toStdString());
}

TEST_F(HostedKeys, AClickWhileThereIsNoPageLandsInTheNextOne) {
  const QPoint point = hosted.PointIn(b, 7);
  QSignalSpy back(&hosted.browser(), &WebBrowser::Recovered);
  QSignalSpy clicks(&hosted.jWB(), &WBUC::Click);
  ASSERT_TRUE(Kill(hosted));
  QTest::mouseClick(hosted.browser().Widget(), Qt::LeftButton, {}, point);
  ASSERT_TRUE(HostedPage::WaitFor([&] { return back.count() == 1; }));
  ASSERT_TRUE(HostedPage::WaitFor([&] { return clicks.count() == 1; }, 10000));
  ASSERT_TRUE(HostedPage::WaitFor([this] { return hosted.browser().IsQuiet(); }));
  Type(hosted.Input(), "x");
  EXPECT_TRUE(Has("second xblock")) << hosted.Body().toStdString();
  EXPECT_EQ(hosted.ModelHtml().toStdString(), hosted.LiveHtml().toStdString());
}

TEST_F(HostedKeys, ADeathBetweenPressAndReleaseCostsNoClick) {
  const QPoint point = hosted.PointIn(b, 7);
  QSignalSpy clicks(&hosted.jWB(), &WBUC::Click);
  QTest::mousePress(hosted.Input(), Qt::LeftButton, {}, point);
  ASSERT_TRUE(
      HostedPage::WaitFor([this] { return !hosted.jWB().HasCurrentTextRange() && hosted.browser().IsQuiet(); }));
  ASSERT_TRUE(Kill(hosted));
  QTest::mouseRelease(hosted.browser().Widget(), Qt::LeftButton, {}, point);
  EXPECT_TRUE(HostedPage::WaitFor([&] { return clicks.count() == 1; }, 10000));
  EXPECT_EQ(hosted.jWB().CurrentElement().id(), QStringLiteral("b"));
}

TEST_F(HostedKeys, APageWhoseRendererDiedOnItsWayTakesClicksAndKeys) {
  QSignalSpy complete(&hosted.jWB(), &WBUC::DocComplete);
  hosted.jWB().Navo(hosted.File(QStringLiteral("next.html"), QByteArray(blocks)), false);
  ASSERT_TRUE(Kill(hosted));
  ASSERT_TRUE(HostedPage::WaitFor([&] { return complete.count() > 0 && hosted.jWB().DocReady(); }));
  WatchKeys(hosted);
  ASSERT_TRUE(hosted.Click(hosted.PointIn(b, 7)));
  Type(hosted.Input(), "xyz");
  Settle(3);
  EXPECT_TRUE(Has("second xyzblock")) << hosted.Body().toStdString();
}

TEST_F(HostedKeys, ThePlaceToWhichAScriptScrolledOutlivesTheRenderer) {
  hosted.document().body().insertAdjacentHTML(QStringLiteral("BeforeEnd"),
                                              QStringLiteral("<DIV STYLE=\"height: 5000px\">tall</DIV>"));
  hosted.LiveHtml();
  hosted.Script(QStringLiteral("scrollTo(0, 700)"));
  const auto isThere = [&] { return hosted.ScriptText(QStringLiteral("String(scrollY)")) == u"700"; };
  ASSERT_TRUE(HostedPage::WaitFor(isThere, 5000));
  HostedPage::WaitFor([] { return false; }, 200);  // a frame of the screen, with which the page tells it
  ASSERT_TRUE(hosted.KillRenderer());
  EXPECT_TRUE(HostedPage::WaitFor(isThere, 5000)) << hosted.ScriptText(QStringLiteral("String(scrollY)")).toStdString();
}
