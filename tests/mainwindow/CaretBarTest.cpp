// The bar that shows the insertion point.

#include "CaretBar.h"
#include "ControlLook.h"
#include "FTools.h"
#include "MainWindowFixture.h"

namespace {

using CaretBarOnPage = MainWindowTest;

TEST_F(CaretBarOnPage, TheCaretBarShowsWhereAClickPutsTheInsertionPoint) {
  EXPECT_TRUE(Web().FrCaret->isHidden());
  EXPECT_EQ(QSize(1, 17), Web().FrCaret->size());
  for (const char* tag : {"FONT", "A", "B", "BODY", "STRONG"}) {
    Web().FrCaret->hide();
    emit View().Click(tag, 0, 0, 150, 300);
    EXPECT_FALSE(Web().FrCaret->isHidden()) << tag;
    EXPECT_EQ(QPoint(10, 20), CaretInView()) << tag;
  }
  for (const char* tag : {"IMG", "TD", "TR", "TABLE", "", "P"}) {
    Web().FrCaret->show();
    emit View().Click(tag, 0, 0, -1, -1);
    EXPECT_TRUE(Web().FrCaret->isHidden()) << tag;
  }
}

TEST_F(CaretBarOnPage, KeysMoveTheCaretBarWithoutShowingOrHidingIt) {
  Web().FrCaret->hide();
  emit View().KeyPress("x", 450, 600);
  EXPECT_TRUE(Web().FrCaret->isHidden());
  EXPECT_EQ(QPoint(30, 40), CaretInView());
  Web().FrCaret->show();
  emit View().KeyPress("", 0, 0);
  EXPECT_FALSE(Web().FrCaret->isHidden());
  EXPECT_EQ(QPoint(0, 0), CaretInView());
}

TEST_F(CaretBarOnPage, DoubleClickAndRightClickHideTheCaretBar) {
  Web().FrCaret->show();
  emit View().DoubleClick("BODY");
  EXPECT_TRUE(Web().FrCaret->isHidden());
  Web().FrCaret->show();
  emit View().RightClick();
  EXPECT_TRUE(Web().FrCaret->isHidden());
}

TEST_F(CaretBarOnPage, WhileBusyClicksAndRightClicksLeaveTheCaretBarAlone) {
  Web().Busy = true;
  Web().FrCaret->show();
  emit View().RightClick();
  emit View().Click("IMG", 0, 0, -1, -1);
  EXPECT_FALSE(Web().FrCaret->isHidden());
  Web().FrCaret->hide();
  emit View().Click("FONT", 0, 0, 150, 300);
  EXPECT_TRUE(Web().FrCaret->isHidden());
  emit View().KeyPress("", 450, 600);
  EXPECT_EQ(QPoint(30, 40), CaretInView());
  Web().FrCaret->show();
  emit View().DoubleClick("FONT");
  EXPECT_TRUE(Web().FrCaret->isHidden());
}

TEST_F(CaretBarOnPage, TheCaretBarStaysWithinThePageAndBelowTheWorkWindow) {
  const auto shows = [this](QPoint at) {
    Web().FrCaret->show();
    Web().FrCaret->move(View().pos() + at);
    const QRect whole = Web().FrCaret->geometry();
    const QRegion mask = Web().FrCaret->mask();
    return mask.isEmpty() ? whole : mask.boundingRect().translated(whole.topLeft()).intersected(whole);
  };
  EXPECT_EQ(shows({30, 40}), Web().FrCaret->geometry());
  EXPECT_EQ(shows({30, -5}), QRect(View().pos() + QPoint(30, 0), QSize(1, 12)));
  EXPECT_TRUE(shows({30, -40}).isEmpty());
  EXPECT_TRUE(shows({-3, 40}).isEmpty());
  EXPECT_FALSE(Web().FrCaret->isHidden());
  const QObjectList& stack = Web().Client()->children();
  EXPECT_GT(stack.indexOf(Web().FrCaret), stack.indexOf(&View()));
  EXPECT_LT(stack.indexOf(Web().FrCaret), stack.indexOf(Web().FrWork));
}

TEST_F(CaretBarOnPage, ALightEdgeTellsTheCaretBarFromADarkGround) {
  View().setStyleSheet(QStringLiteral("background: #000000"));
  View().setAttribute(Qt::WA_StyledBackground);
  emit View().Click("FONT", 0, 0, 150, 300);
  const auto colors = [this](int y) {
    const QImage picture = Web().Client()->grab().toImage();
    const QPoint bar = Web().FrCaret->pos();
    QList<QRgb> row;
    for (int x = -1; x < 3; ++x) row.append(picture.pixel(bar + QPoint(x, y)) & 0xFFFFFF);
    return row;
  };
  EXPECT_EQ(colors(8), (QList<QRgb>{0, 0x0000FF, 0xFFFFFF, 0}));
  EXPECT_EQ(colors(17), (QList<QRgb>{0, 0, 0, 0}));
  Web().FrCaret->hide();
  EXPECT_EQ(colors(8), (QList<QRgb>{0, 0, 0, 0}));
}

TEST_F(CaretBarOnPage, TheCaretBarFollowsTyping) {
  run_.Type("abc");
  EXPECT_FALSE(Web().FrCaret->isHidden());
  EXPECT_EQ(QPoint(8 + 3 * 8, 8), CaretInView());
}

}  // namespace
