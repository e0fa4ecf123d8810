// A click lands where the user clicked, whatever the program was doing to the page in the meantime: real mouse events
// meet changes on their way.
#include <gtest/gtest.h>

#include <QWebEnginePage>
#include <csignal>

#include "HTMLTxtRange.h"
#include "HostedView.h"
#include "TreeBuilder.h"

namespace {

const char page[] =
    "<HTML><HEAD><TITLE></TITLE></HEAD><BODY BGCOLOR=\"#FFFFFF\"><FONT ID=a SIZE=4>first block</FONT><BR>"
    "<FONT ID=b SIZE=4>second <B ID=c>bold</B></FONT><BR>plain text<BR></BODY></HTML>";

const QString a = QStringLiteral("#a");
const QString b = QStringLiteral("#b");

}  // namespace

class HostedPlaces : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(hosted.Load(page)); }
  void TearDown() override { EXPECT_EQ(hosted.ModelHtml().toStdString(), hosted.LiveHtml().toStdString()); }

  // Clicks while the renderer is busy, and changes the page before the click is heard of.
  template <typename Change>
  void ClickThrough(QPoint point, Change change) {
    QSignalSpy clicks(&hosted.jWB(), &WBUC::Click);
    hosted.KeepBusy(300);
    QTest::mouseClick(hosted.Input(), Qt::LeftButton, {}, point);
    change();
    EXPECT_EQ(clicks.count(), 0);  // it is under way
    ASSERT_TRUE(HostedPage::WaitFor([&] { return clicks.count() == 1; }));
  }
  // What typing there gives.
  QString Typed() {
    hosted.Key(Qt::Key_Z, QStringLiteral("z"));
    return hosted.Body();
  }
  HTMLElement Element(const QString& id) {
    const HTMLElementCollection all = hosted.document().all();
    for (int i = 0; i < all.length(); ++i)
      if (all.item(i).id() == id) return all.item(i);
    return {};
  }
  std::shared_ptr<HTMLTxtRange> Characters(const QString& id, int from, int count) {
    auto range = hosted.document().body().createTextRange();
    range->moveToElementText(Element(id));
    range->move(QStringLiteral("character"), 0);  // to its start
    range->move(QStringLiteral("character"), from);
    range->moveEnd(QStringLiteral("character"), count);
    return range;
  }

  HostedView hosted;
};

TEST_F(HostedPlaces, AClickBehindTextThatIsBeingColoredStaysWhereItWas) {
  ASSERT_TRUE(hosted.Drag(hosted.PointIn(a, 0), hosted.PointIn(a, 5)));
  ClickThrough(hosted.PointIn(a, 8), [&] { hosted.jWB().SetSelColor(QStringLiteral("#0000FF")); });
  EXPECT_EQ(hosted.jWB().IfSelection(), WBUC::NothingSelected);
  EXPECT_EQ(hosted.jWB().CurrentElement().id(), QStringLiteral("a"));
  hosted.LiveHtml();
  EXPECT_EQ(hosted.ScriptText(QStringLiteral("String(getSelection())")), QString());
  EXPECT_EQ(hosted.jWB().IfSelection(), WBUC::NothingSelected);
  EXPECT_TRUE(Typed().contains(QStringLiteral("first</font> blzock"))) << hosted.Body().toStdString();
}

TEST_F(HostedPlaces, AClickInTextThatIsBeingColoredReportsItsFont) {
  ASSERT_TRUE(hosted.Drag(hosted.PointIn(a, 0), hosted.PointIn(a, 5)));
  ClickThrough(hosted.PointIn(a, 2), [&] { hosted.jWB().SetSelColor(QStringLiteral("#0000FF")); });
  EXPECT_TRUE(hosted.jWB().CurrentElement().outerHTML().endsWith(QStringLiteral(">first</font>")));
  EXPECT_EQ(hosted.jWB().CurFontProps()[0], QStringLiteral("#0000FF"));
  EXPECT_TRUE(Typed().contains(QStringLiteral("fizrst</font> block"))) << hosted.Body().toStdString();
}

TEST_F(HostedPlaces, AClickInTextThatIsBeingJoinedToAnotherGoesAlong) {
  const HTMLBodyElement body = hosted.document().body();
  hosted.document().body().insertAdjacentHTML(QStringLiteral("BeforeEnd"), QStringLiteral("another line"));
  hosted.LiveHtml();
  const QPoint point = hosted.PointOf(QStringLiteral("document.body.lastChild"), 8);
  const Node* const line = hosted.document().tree().bodyNode()->lastChild();
  ASSERT_TRUE(line->IsText());
  ClickThrough(point, [&] {
    auto range = body.createTextRange();
    range->moveToElementText(HTMLElement(line->previous()));
    range->pasteHTML(QString());
  });
  EXPECT_TRUE(Typed().endsWith(QStringLiteral("plain textanother zline"))) << hosted.Body().toStdString();
}

TEST_F(HostedPlaces, AClickInAnElementThatIsBeingRemovedStandsWhereThatWas) {
  ClickThrough(hosted.PointIn(b, 3), [&] { Element(QStringLiteral("b")).setOuterHTML(QString()); });
  EXPECT_TRUE(Typed().contains(QStringLiteral("</font><br />z<br />plain"))) << hosted.Body().toStdString();
}

TEST_F(HostedPlaces, AClickInALinkThatIsBeingTakenAwayStaysInItsText) {
  Characters(QStringLiteral("a"), 6, 5)->execCommand(QStringLiteral("CreateLink"), false, QStringLiteral("x.html"));
  hosted.document().selection().empty();
  hosted.LiveHtml();
  const HTMLElementCollection all = hosted.document().all();
  HTMLElement link;
  for (int i = 0; i < all.length(); ++i)
    if (all.item(i).tagName() == u"A") link = all.item(i);
  ASSERT_TRUE(link) << hosted.Body().toStdString();
  ClickThrough(hosted.PointIn(QStringLiteral("a"), 2), [&] { hosted.document().gateway().Unwrap(link.node()); });
  EXPECT_EQ(hosted.jWB().CurrentElement().id(), QStringLiteral("a"));
  EXPECT_TRUE(Typed().contains(QStringLiteral("first blzock"))) << hosted.Body().toStdString();
}

TEST_F(HostedPlaces, AClickBehindTextThatIsBeingPastedStaysAtItsLetter) {
  ClickThrough(hosted.PointIn(a, 8),
               [&] { Characters(QStringLiteral("a"), 3, 0)->pasteHTML(QStringLiteral("7<B>l</B>")); });
  EXPECT_TRUE(Typed().contains(QStringLiteral("st blzock"))) << hosted.Body().toStdString();
}

// The engine itself gives no click where the element that was pressed has been taken out, if only to be put elsewhere.
TEST_F(HostedPlaces, APressWhoseElementIsWrappedOrRemovedBeforeTheReleaseIsAClick) {
  for (const bool remove : {false, true}) {
    const QPoint point = hosted.PointIn(b, 3);
    QSignalSpy clicks(&hosted.jWB(), &WBUC::Click);
    QTest::mousePress(hosted.Input(), Qt::LeftButton, {}, point);
    hosted.LiveHtml();
    const Node* const font = Element(QStringLiteral("b")).node();
    if (remove) {
      HTMLElement(font).setOuterHTML(QString());
    } else {
      hosted.document().gateway().Wrap(font, font, TreeBuilder::Element(Known().b));
    }
    hosted.LiveHtml();
    QTest::mouseRelease(hosted.Input(), Qt::LeftButton, {}, point);
    EXPECT_TRUE(HostedPage::WaitFor([&] { return clicks.count() > 0; }, 5000)) << remove;
    hosted.LiveHtml();
    EXPECT_EQ(clicks.count(), 1) << remove;
    const QString typed = Typed();
    EXPECT_TRUE(typed.contains(remove ? QStringLiteral("<b></b>z<br />plain") : QStringLiteral("seczond")))
        << typed.toStdString();
  }
}

TEST_F(HostedPlaces, OfTwoSelectionsThatMeetTheUsersIsTheLater) {
  const QPoint from = hosted.PointIn(b, 0);
  const QPoint to = hosted.PointIn(b, 6);
  QSignalSpy clicks(&hosted.jWB(), &WBUC::Click);
  hosted.KeepBusy(300);
  QTest::mousePress(hosted.Input(), Qt::LeftButton, {}, from);
  QTest::mouseMove(hosted.Input(), (from + to) / 2);
  QTest::mouseMove(hosted.Input(), to);
  QTest::mouseRelease(hosted.Input(), Qt::LeftButton, {}, to);
  Characters(QStringLiteral("a"), 0, 5)->select();
  Characters(QStringLiteral("b"), 2, 2)->execCommand(QStringLiteral("Bold"), false, QString());
  Characters(QStringLiteral("a"), 0, 5)->select();
  ASSERT_TRUE(HostedPage::WaitFor([&] { return clicks.count() == 1; }));
  EXPECT_EQ(hosted.jWB().SelText(), QStringLiteral("second"));
  hosted.LiveHtml();
  EXPECT_EQ(hosted.ScriptText(QStringLiteral("String(getSelection())")), QStringLiteral("second"));
  // And what the program selects from then on counts again.
  Characters(QStringLiteral("a"), 0, 5)->select();
  hosted.LiveHtml();
  EXPECT_EQ(hosted.ScriptText(QStringLiteral("String(getSelection())")), QStringLiteral("first"));
  EXPECT_EQ(hosted.jWB().SelText(), QStringLiteral("first"));
}

TEST_F(HostedPlaces, AClickInTextOfThePagesScriptThatTheProgramHasntHeardOfStandsNearIt) {
  hosted.Script(
      QStringLiteral("setTimeout(() => { const end = performance.now() + 300; while (performance.now() < end);"
                     "document.querySelector('#b').firstChild.remove();"
                     "document.querySelector('#b').prepend('SCRIPTED '); }, 50)"));
  QSignalSpy clicks(&hosted.jWB(), &WBUC::Click);
  const QPoint point = hosted.PointIn(b, 3);
  HostedPage::WaitFor([] { return false; }, 100);  // the script is at work
  QTest::mouseClick(hosted.Input(), Qt::LeftButton, {}, point);
  Characters(QStringLiteral("a"), 0, 0)->pasteHTML(QStringLiteral("x"));
  ASSERT_TRUE(HostedPage::WaitFor([&] { return clicks.count() == 1; }));
  EXPECT_EQ(hosted.jWB().CurrentElement().id(), QStringLiteral("b"));
  ASSERT_TRUE(hosted.document().parentWindow().event().caret());
  EXPECT_TRUE(
      Element(QStringLiteral("b")).node()->Contains(hosted.document().parentWindow().event().caret().container));
  hosted.LiveHtml();
}

TEST_F(HostedPlaces, WhatIsPastedWhileThereIsNoRendererDoesntShiftTheNextClick) {
  bool back = false;
  QObject::connect(&hosted.browser(), &HostedWebBrowser::Recovered, [&back] { back = true; });
  bool died = false;
  QObject::connect(hosted.browser().enginePage(), &QWebEnginePage::renderProcessTerminated, [&died] { died = true; });
  ::kill(pid_t(hosted.browser().enginePage()->renderProcessPid()), SIGKILL);
  ASSERT_TRUE(HostedPage::WaitFor([&] { return died; }));
  Characters(QStringLiteral("a"), 6, 0)->pasteHTML(QStringLiteral("7 more "));
  ASSERT_TRUE(HostedPage::WaitFor([&] { return back; }));
  ASSERT_TRUE(hosted.Click(hosted.PointIn(a, 13)));
  EXPECT_EQ(hosted.document().parentWindow().event().caret().offset, 13);
  EXPECT_TRUE(Typed().contains(QStringLiteral("first 7 more zblock"))) << hosted.Body().toStdString();
}
