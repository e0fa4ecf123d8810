// What a hand at the mouse finds in the page: what a press begins, where text can follow, and that what is typed stays
// in view.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QMouseEvent>

#include "HostedView.h"

namespace {

const QString a = QStringLiteral("#a");
const QString b = QStringLiteral("#b");

const char blocks[] =
    "<HTML><HEAD><TITLE></TITLE></HEAD><BODY BGCOLOR=\"#FFFFFF\"><FONT ID=a SIZE=4>first block</FONT><BR>"
    "<FONT ID=b SIZE=4>second block</FONT><BR><A ID=l HREF=\"x.html\">a link to drag over</A></BODY></HTML>";

constexpr const char* selected = "String(getSelection())";

}  // namespace

class HostedHands : public testing::Test {
 protected:
  std::string Typed() {
    hosted.Key(Qt::Key_Z, QStringLiteral("z"));
    return hosted.Body().toStdString();
  }
  // The text that a click hits. The event is the click's only while that is being told.
  QString TextHitAt(QPoint point) {
    QString text;
    const auto hit = QObject::connect(&hosted.jWB(), &WBUC::Click, &hosted.jWB(), [&] {
      const BoundaryPoint& caret = hosted.document().parentWindow().event().caret();
      text = caret ? caret.container->data() : QStringLiteral("nothing");
    });
    hosted.Click(point);
    QObject::disconnect(hit);
    return text;
  }
  std::string Asked(const char* expression) { return hosted.ScriptText(QLatin1String(expression)).toStdString(); }

  HostedView hosted;
};

// --- Presses

TEST_F(HostedHands, APressOnTheScrollBarIsNoneInThePage) {
  QByteArray tall = "<HTML><BODY><FONT ID=a>start</FONT>";
  for (int i = 0; i < 200; ++i) tall += "<BR>line";
  for (const char* const type : {"", "<!DOCTYPE html>"}) {
    ASSERT_TRUE(hosted.Load(type + tall + "</BODY></HTML>"));
    ASSERT_TRUE(hosted.Click(hosted.PointIn(a, 2)));
    QSignalSpy clicks(&hosted.jWB(), &WBUC::Click);
    QTest::mouseClick(hosted.Input(), Qt::LeftButton, {}, {795, 400});
    ASSERT_TRUE(HostedPage::WaitFor([&] { return Asked("String(scrollY > 0)") == "true"; }, 5000));
    hosted.LiveHtml();
    EXPECT_TRUE(hosted.jWB().HasCurrentTextRange()) << type;
    EXPECT_EQ(clicks.count(), 0);
    EXPECT_NE(Typed().find("stzart"), std::string::npos) << type;
  }
}

TEST_F(HostedHands, TheThirdPressOfAQuickRowBeginsAnew) {
  ASSERT_TRUE(hosted.Load(blocks));
  const QPointF point(hosted.PointIn(a, 3));
  hosted.Script(QStringLiteral("window.row = []; addEventListener('mousedown', e => row.push(e.detail))"));
  QSignalSpy clicks(&hosted.jWB(), &WBUC::Click);
  QSignalSpy doubles(&hosted.jWB(), &WBUC::DoubleClick);
  // As the window system delivers them.
  for (const auto press : {QEvent::MouseButtonPress, QEvent::MouseButtonDblClick, QEvent::MouseButtonPress}) {
    for (const auto type : {press, QEvent::MouseButtonRelease}) {
      QMouseEvent event(type, point, hosted.Input()->mapToGlobal(point), Qt::LeftButton,
                        type == press ? Qt::LeftButton : Qt::NoButton, {});
      QCoreApplication::sendEvent(hosted.Input(), &event);
    }
  }
  ASSERT_TRUE(HostedPage::WaitFor([&] { return clicks.count() == 3; }));
  hosted.LiveHtml();
  EXPECT_EQ(doubles.count(), 1);
  ASSERT_EQ(Asked("row.join()"), "1,2,3");
  EXPECT_EQ(hosted.jWB().IfSelection(), WBUC::NothingSelected);
  EXPECT_TRUE(hosted.jWB().HasCurrentTextRange());
  EXPECT_EQ(Asked(selected), "");
}

TEST_F(HostedHands, ADragThatBeginsOnALinkSelectsItsText) {
  ASSERT_TRUE(hosted.Load(blocks));
  ASSERT_TRUE(hosted.Drag(hosted.PointIn(QStringLiteral("#l"), 2), hosted.PointIn(QStringLiteral("#l"), 6)));
  EXPECT_EQ(Asked(selected), "link");
  EXPECT_EQ(hosted.jWB().IfSelection(), WBUC::TextSelected);
  EXPECT_EQ(hosted.jWB().SelText(), QStringLiteral("link"));
  hosted.Script(
      QStringLiteral("document.open(); document.write('<body><a id=l href=x>a link anew</a>'); document.close()"));
  hosted.LiveHtml();
  ASSERT_TRUE(hosted.Drag(hosted.PointIn(QStringLiteral("#l"), 2), hosted.PointIn(QStringLiteral("#l"), 6)));
  EXPECT_EQ(Asked(selected), "link");
}

// --- Text behind what stands at the side

TEST_F(HostedHands, TextCanFollowWhatStandsAtTheSide) {
  const char* const sides[] = {
      "<TABLE ID=s ALIGN=Left WIDTH=300 HEIGHT=100 BORDER=1><TR><TD><FONT>cell</FONT></TD></TR></TABLE>",
      "<TABLE ID=s ALIGN=Right WIDTH=300 HEIGHT=100 BORDER=1><TR><TD><FONT>cell</FONT></TD></TR></TABLE>",
      "<IMG ID=s ALIGN=left WIDTH=200 HEIGHT=100>", "<IMG ID=s ALIGN=right WIDTH=200 HEIGHT=100>"};
  for (const char* const side : sides) {
    for (const char* const before : {"", "Text<BR>", "<FONT SIZE=3>Text</FONT>"}) {
      const QByteArray page = QByteArray("<HTML><BODY>") + before + side + "</BODY></HTML>";
      ASSERT_TRUE(hosted.Load(page));
      const QPoint beside = hosted.CenterOf(QStringLiteral("#s"));
      for (const QPoint point : {QPoint(400, 400), QPoint(390, beside.y() + 30)}) {
        ASSERT_TRUE(hosted.Load(page));
        ASSERT_TRUE(hosted.Click(point));
        const std::string typed = Typed();
        EXPECT_EQ(typed.back(), 'z') << typed << " at " << point.y();
      }
    }
  }
}

TEST_F(HostedHands, TheBarStandsWhereTextBehindAPictureAtTheSideBegins) {
  for (const bool right : {false, true}) {
    ASSERT_TRUE(hosted.Load(QByteArray("<HTML><BODY><IMG ID=s WIDTH=200 HEIGHT=100 ALIGN=") +
                            (right ? "right" : "left") + "></BODY></HTML>"));
    QSignalSpy clicks(&hosted.jWB(), &WBUC::Click);
    ASSERT_TRUE(hosted.Click({400, 400}));
    const int left = clicks[0][3].toInt() / 15;
    const int top = clicks[0][4].toInt() / 15;
    Typed();
    hosted.LiveHtml();
    const QPoint letter = hosted.PointOf(QStringLiteral("document.body.lastChild"), 0);
    EXPECT_NEAR(left, letter.x() - 1, 4) << right;
    EXPECT_NEAR(top, letter.y(), 20) << right;
  }
}

TEST_F(HostedHands, ShiftAndReturnGoOnBelowAPictureAtTheSide) {
  ASSERT_TRUE(hosted.Load("<HTML><BODY>Text<IMG ID=s ALIGN=left WIDTH=200 HEIGHT=100></BODY></HTML>"));
  ASSERT_TRUE(hosted.Click({400, 400}));
  ASSERT_TRUE(hosted.Key(Qt::Key_Return, {}, Qt::ShiftModifier));
  const std::string typed = Typed();
  EXPECT_TRUE(QString::fromStdString(typed).endsWith(QStringLiteral("<br clear=\"all\" />z&nbsp;"))) << typed;
  hosted.LiveHtml();
  EXPECT_EQ(Asked("(() => { const r = document.createRange(); r.selectNode(document.body.lastChild);"
                  "return String(r.getBoundingClientRect().top >= s.getBoundingClientRect().bottom); })()"),
            "true");
}

TEST_F(HostedHands, AClickBesideTheLastLineStaysInIt) {
  ASSERT_TRUE(hosted.Load("<HTML><BODY><FONT ID=a>Text</FONT><IMG ALIGN=right WIDTH=200 HEIGHT=100></BODY></HTML>"));
  ASSERT_TRUE(hosted.Click({300, hosted.PointIn(a, 0).y()}));
  EXPECT_NE(Typed().find("Textz"), std::string::npos) << hosted.Body().toStdString();
}

TEST_F(HostedHands, AClickBetweenLinesStaysThere) {
  ASSERT_TRUE(
      hosted.Load("<HTML><BODY><P ID=a STYLE=\"margin-bottom: 120px\">upper</P><P ID=b>lower</P><BR></BODY></HTML>"));
  for (const int y : {40, 70, 100, 140}) {
    const QString where = TextHitAt({400, y});
    EXPECT_TRUE(where == u"upper" || where == u"lower") << y << " " << where.toStdString();
  }
}

TEST_F(HostedHands, AClickBetweenLinesThatAPictureAtTheSideKeepsApartStaysThere) {
  ASSERT_TRUE(
      hosted.Load("<HTML><BODY>upper<IMG ALIGN=left WIDTH=200 HEIGHT=200><BR CLEAR=all>lower<BR>last</BODY></HTML>"));
  for (const int y : {60, 100, 150, 190}) {
    const QString where = TextHitAt({400, y});
    EXPECT_TRUE(where == u"upper" || where == u"lower") << y << " " << where.toStdString();
  }
}

TEST_F(HostedHands, AClickAtTheLeftOfATableInTheMiddleStandsBeforeIt) {
  ASSERT_TRUE(
      hosted.Load("<HTML><BODY><CENTER>above</CENTER><TABLE ID=t ALIGN=center WIDTH=300 HEIGHT=80 BORDER=1>"
                  "<TR><TD><FONT>cell</FONT></TD></TR></TABLE><FONT>below</FONT></BODY></HTML>"));
  ASSERT_TRUE(hosted.Click({20, hosted.CenterOf(QStringLiteral("#t")).y()}));
  const std::string typed = Typed();
  EXPECT_NE(typed.find("z<table"), std::string::npos) << typed;
}

// --- What is seen

TEST_F(HostedHands, ThePageScrollsWithWhatIsTyped) {
  ASSERT_TRUE(hosted.Load("<HTML><BODY><FONT ID=a>start</FONT></BODY></HTML>"));
  hosted.browser().SetCovered(150);
  ASSERT_TRUE(hosted.Click(hosted.PointIn(a, 5)));
  QSignalSpy keys(&hosted.jWB(), &WBUC::KeyPress);
  for (int line = 0; line < 50; ++line) ASSERT_TRUE(hosted.Key(Qt::Key_Return));
  EXPECT_GT(Asked("String(Math.round(scrollY))"), "0");
  EXPECT_LE(keys.last()[2].toInt() / 15, 600 - 150 - 17);
  EXPECT_GT(keys.last()[2].toInt() / 15, 300);
  // By hand it goes where the hand wants, and a key that changes nothing leaves it there.
  hosted.Script(QStringLiteral("scrollTo(0, 0)"));
  ASSERT_TRUE(hosted.Key(Qt::Key_Shift));
  EXPECT_EQ(Asked("String(scrollY)"), "0");
  ASSERT_TRUE(hosted.Key(Qt::Key_X, QStringLiteral("x")));
  EXPECT_NE(Asked("String(scrollY)"), "0");
  EXPECT_EQ(hosted.ModelHtml().toStdString(), hosted.LiveHtml().toStdString());
}

TEST_F(HostedHands, TheHighlightStaysOnAnElementThatIsMovedByBlanks) {
  ASSERT_TRUE(hosted.Load(blocks));
  hosted.DoubleClick(hosted.PointIn(b, 3));
  for (const int direction : {2, 2, 3, 0}) {
    hosted.jWB().MoveElementOneSpace(direction);
    hosted.LiveHtml();
    EXPECT_EQ(Asked(selected), "second block") << direction;
    EXPECT_EQ(hosted.jWB().IfSelection(), WBUC::ElementSelected);
  }
}

TEST_F(HostedHands, AColorOfThePageReachesTextInTables) {
  for (const char* const type : {"", "<!DOCTYPE html>"}) {
    ASSERT_TRUE(hosted.Load(QByteArray(type) +
                            "<HTML><BODY TEXT=\"#000000\"><TABLE><TR><TD ID=a>cell</TD></TR></TABLE></BODY></HTML>"));
    hosted.jWB().SetBodyFontColor(QStringLiteral("#336699"));
    hosted.LiveHtml();
    EXPECT_EQ(Asked("getComputedStyle(document.querySelector('#a')).color"), "rgb(51, 102, 153)") << type;
  }
}

TEST_F(HostedHands, AnEmptyTableThatIsSelectedIsToldByALineThatIsNoPartOfThePage) {
  const auto lines = [this] {
    hosted.LiveHtml();  // what the program has told has arrived by then
    return Asked("getComputedStyle(t).outlineStyle + getComputedStyle(p).outlineStyle");
  };
  ASSERT_TRUE(
      hosted.Load("<HTML><BODY><TABLE ID=t BORDER=1 WIDTH=200><TR><TD HEIGHT=40></TD></TR></TABLE>"
                  "<FONT ID=p>text</FONT></BODY></HTML>"));
  const QString before = hosted.Body();
  EXPECT_EQ("nonenone", lines());
  ASSERT_TRUE(hosted.DoubleClick(hosted.CenterOf(QStringLiteral("#t"))));
  ASSERT_EQ("TABLE", hosted.jWB().CurrentSelElementTag());
  EXPECT_EQ("solidnone", lines());
  EXPECT_EQ(before, hosted.Body());
  EXPECT_EQ(hosted.ModelHtml(), hosted.LiveHtml());
  ASSERT_TRUE(hosted.KillRenderer());
  EXPECT_EQ("solidnone", lines());
  ASSERT_TRUE(hosted.DoubleClick(hosted.PointIn(QStringLiteral("#p"), 2)));
  EXPECT_EQ("nonenone", lines()) << "the letters' highlight is enough there";
  ASSERT_TRUE(hosted.DoubleClick(hosted.CenterOf(QStringLiteral("#t"))));
  hosted.jWB().Cut();
  EXPECT_FALSE(hosted.Body().contains(QStringLiteral("table")));
  hosted.jWB().Undo();
  EXPECT_EQ("solidnone", lines()) << "it is selected again";
  ASSERT_TRUE(hosted.Click(hosted.PointIn(QStringLiteral("#p"), 2)));
  EXPECT_EQ("nonenone", lines());
}

// What lies in a template has no number of its own; nothing of it may be taken for the table that isn't selected.
TEST_F(HostedHands, ATemplateIsInNobodysWay) {
  ASSERT_TRUE(
      hosted.Load("<HTML><BODY><TABLE ID=t BORDER=1 WIDTH=200><TR><TD HEIGHT=40></TD></TR></TABLE>"
                  "<FONT ID=p>text</FONT></BODY></HTML>"));
  hosted.document().body().insertAdjacentHTML(QStringLiteral("BeforeEnd"),
                                              QStringLiteral("<template>in <b>it</b></template>"));
  ASSERT_TRUE(hosted.DoubleClick(hosted.CenterOf(QStringLiteral("#t"))));
  hosted.jWB().Cut();
  hosted.document().body().insertAdjacentHTML(QStringLiteral("BeforeEnd"), QStringLiteral("<I>more</I>"));
  EXPECT_EQ(hosted.ModelHtml().toStdString(), hosted.LiveHtml().toStdString());
}
