#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QTest>
#include <QToolButton>
#include <QWheelEvent>

#include "CaretBar.h"
#include "ControlLook.h"
#include "FTools.h"
#include "FittedText.h"
#include "MainWindowFixture.h"
#include "RealClicks.h"
#include "Settings.h"
#include "SettingsControls.h"
#include "Swatch.h"
#include "ToolButton.h"
#include "WorkWindow.h"

namespace {

void Mouse(QWidget& widget, QEvent::Type type, Qt::MouseButton button = Qt::NoButton, QPointF at = {5, 5}) {
  const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::MouseButtons(button);
  QMouseEvent event(type, at, widget.mapToGlobal(at), button, held, Qt::NoModifier);
  QApplication::sendEvent(&widget, &event);
}

using MainWindow = MainWindowTest;

TEST_F(MainWindow, EverythingStandsByTheResizeRules) {
  for (const QSize size : {QSize(1001, 701), QSize(801, 601), QSize(481, 361), QSize(241, 301)}) {
    Resize(size.width(), size.height());
    const int width = Web().Client()->width();
    const int height = Web().Client()->height();
    EXPECT_EQ(size.width(), width);
    EXPECT_EQ(QPoint(0, 1), Web().FrTool->pos());
    EXPECT_EQ(QRect(0, 0, width, 51), Web().FrTool2->geometry());
    EXPECT_EQ(width, Web().LnTool2->width());
    EXPECT_EQ(QPoint(width - 453, 1), Web().FrFont->pos());
    EXPECT_EQ(453, Web().FrFont->width());
    EXPECT_EQ(QRect(0, 51, width, height - 51), View().geometry());
    EXPECT_EQ(QRect((width - 357) / 2, height - 189, 357, 189), Web().FrWork->geometry());
  }
}

TEST_F(MainWindow, FromItsSmallestUsefulWidthOnNothingOfTheStripCoversAnother) {
  for (const int width : {720, 801, 1001}) {
    Resize(width, 601);
    QList<const QWidget*> shown = {Web().BoxPage,     Web().BoxFace,     Web().BoxSize,
                                   Web().BoxColor[0], Web().BoxColor[1], Web().bBold};
    for (const ToolButton* const tool : Web().ImTool) shown.append(tool);
    for (const QLabel* const label : Web().FrFont->findChildren<QLabel*>()) shown.append(label);
    for (const QWidget* const one : shown) {
      const QRect place(one->mapTo(Web().Client(), QPoint(0, 0)), one->size());
      EXPECT_TRUE(Web().FrTool2->rect().contains(place)) << qPrintable(one->objectName()) << " at " << width;
      for (const QPoint corner : {place.topLeft(), place.topRight(), place.bottomLeft(), place.bottomRight()})
        EXPECT_EQ(one, Web().Client()->childAt(corner)) << qPrintable(one->objectName()) << " at " << width;
      for (const QWidget* const other : shown) {
        if (other == one) continue;
        EXPECT_FALSE(place.intersects(QRect(other->mapTo(Web().Client(), QPoint(0, 0)), other->size())))
            << qPrintable(one->objectName()) << " and " << qPrintable(other->objectName());
      }
    }
  }
}

TEST_F(MainWindow, TheWorkWindowGoesDownAndUp) {
  Resize(801, 601);
  const int height = Web().Client()->height();
  ClickHead();
  EXPECT_EQ(QPoint(222, height - 24), Web().FrWork->pos());
  EXPECT_EQ("5", Web().FrWork->UpCaption());
  ClickHead();
  EXPECT_EQ(QPoint(222, height - 189), Web().FrWork->pos());
  EXPECT_EQ("6", Web().FrWork->UpCaption());
}

// Meant in FWeb::LowerWorkWindow: after a resize the first click on the Work Window's head only flips its symbol.
TEST_F(MainWindow, AfterAResizeTheFirstClickOnlyFlipsTheCaption) {
  Resize(801, 601);
  ClickHead();
  Resize(901, 601);
  const int up = Web().Client()->height() - 189;
  EXPECT_EQ(up, Web().FrWork->y());
  EXPECT_EQ("5", Web().FrWork->UpCaption());
  ClickHead();
  EXPECT_EQ(up, Web().FrWork->y());
  EXPECT_EQ("6", Web().FrWork->UpCaption());
  ClickHead();
  EXPECT_EQ(up + 189 - 24, Web().FrWork->y());
  EXPECT_EQ("5", Web().FrWork->UpCaption());
}

TEST_F(MainWindow, RestoringFromMinimisedBringsTheWorkWindowUp) {
  Resize(801, 601);
  ClickHead();
  Web().showMinimized();
  run_.Settle();
  const QPoint lowered = Web().FrWork->pos();
  Web().RaiseWorkWindow();
  EXPECT_EQ(lowered, Web().FrWork->pos());
  Web().showNormal();
  run_.Settle();
  EXPECT_EQ(Web().Client()->height() - 189, Web().FrWork->y());
  EXPECT_EQ("5", Web().FrWork->UpCaption());
}

TEST_F(MainWindow, AClickBesideTheHeadMovesNothing) {
  Resize(801, 601);
  WorkWindow& work = *Web().FrWork;
  const QPoint before = work.pos();
  // Below it, on a group's caption, on the label at the bottom; then on the head with other buttons.
  for (const QPoint place : {QPoint(60, work.LabUp->height() + 1), QPoint(100, 94), QPoint(60, work.height() - 10)}) {
    ClickAt(work, place);
    EXPECT_EQ(before, work.pos()) << place.y();
  }
  for (const Qt::MouseButton other : {Qt::RightButton, Qt::MiddleButton}) ClickAt(work, {60, 6}, other);
  EXPECT_EQ(before, work.pos());
  // Gone down on the head and up beside it is no click.
  QTest::mousePress(Web().windowHandle(), Qt::LeftButton, {}, work.mapTo(&Web(), QPoint(60, 6)));
  QTest::mouseRelease(Web().windowHandle(), Qt::LeftButton, {}, work.mapTo(&Web(), QPoint(60, 60)));
  EXPECT_EQ(before, work.pos());
  EXPECT_EQ("6", work.UpCaption());
  // Its last row and column still belong to the head.
  ClickAt(work, {work.width() - 1, work.LabUp->height() - 1});
  EXPECT_NE(before, work.pos());
  EXPECT_EQ("5", work.UpCaption());
}

TEST_F(MainWindow, AToolLightsUpUnderTheMouseAndTheOneBeforeGoesPlain) {
  using enum ToolButton::Look;
  EXPECT_EQ(-1, Web().HoverTool);
  Mouse(*Web().ImTool[3], QEvent::MouseMove);
  EXPECT_EQ(Framed, LookOf(3));
  EXPECT_EQ(3, Web().HoverTool);
  Mouse(*Web().ImTool[5], QEvent::MouseMove);
  EXPECT_EQ(Plain, LookOf(3));
  EXPECT_EQ(Framed, LookOf(5));
  EXPECT_EQ(5, Web().HoverTool);
  // Off the edge of the picture the strip has the mouse.
  Mouse(*Web().FrTool, QEvent::MouseMove, Qt::NoButton, {2, 2});
  EXPECT_EQ(Plain, LookOf(5));
}

TEST_F(MainWindow, TheStripAndTheWindowPutOutTheLight) {
  for (QWidget* around : {static_cast<QWidget*>(Web().FrTool), static_cast<QWidget*>(Web().FrTool2), Web().Client()}) {
    Mouse(*Web().ImTool[3], QEvent::MouseMove);
    ASSERT_EQ(ToolButton::Look::Framed, LookOf(3));
    Mouse(*around, QEvent::MouseMove);
    EXPECT_EQ(ToolButton::Look::Plain, LookOf(3));
    EXPECT_EQ(-1, Web().HoverTool);
  }
}

TEST_F(MainWindow, AMouseThatLeavesTheStripOrTheWindowPutsOutTheLight) {
  for (QWidget* around : {static_cast<QWidget*>(Web().FrTool), static_cast<QWidget*>(Web().FrTool2), Web().Client()}) {
    Mouse(*Web().ImTool[3], QEvent::MouseMove);
    ASSERT_EQ(3, Web().HoverTool);
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(around, &leave);
    EXPECT_EQ(ToolButton::Look::Plain, LookOf(3));
    EXPECT_EQ(-1, Web().HoverTool);
  }
}

TEST_F(MainWindow, TheCaretBarLetsTheMouseThroughToThePage) {
  run_.Type("abc");
  ASSERT_FALSE(Web().FrCaret->isHidden());
  EXPECT_EQ(&View(), Web().Client()->childAt(Web().FrCaret->geometry().center()));
}

// Pixels of the ink in the upper and the lower half of the symbol at the right end of the Work Window's head.
std::pair<int, int> InkOfSymbol(const QImage& head) {
  const QRgb ground = head.pixel(head.width() - 30, 2);
  int upper = 0, lower = 0;
  for (int y = 0; y < head.height(); ++y)
    for (int x = head.width() - 20; x < head.width() - 4; ++x)
      if (head.pixel(x, y) != ground) (2 * y < head.height() ? upper : lower) += 1;
  return {upper, lower};
}

TEST_F(MainWindow, TheHeadsSymbolPointsToWhereAClickSendsTheWorkWindow) {
  View().setFocus();
  QWidget& head = *Web().FrWork->LabUp;
  const auto [upperOfDown, lowerOfDown] = InkOfSymbol(head.grab().toImage());
  EXPECT_GT(upperOfDown, lowerOfDown) << "the tip is below";
  ClickHead();
  const auto [upperOfUp, lowerOfUp] = InkOfSymbol(head.grab().toImage());
  EXPECT_LT(upperOfUp, lowerOfUp) << "the tip is above";
}

TEST_F(MainWindow, AboutToolsAndTheWorkWindowAreFramed) {
  EXPECT_EQ(257, ControlLookBits(Web().FrWork));
  EXPECT_EQ(257, ControlLookBits(run_.modMain.Tools()));
  int framed = 0;
  for (const QWidget* const window : QApplication::topLevelWidgets())
    if (window->objectName() == QLatin1String("FSplash") && ControlLookBits(window) == 257) ++framed;
  EXPECT_EQ(1, framed);
}

TEST_F(MainWindow, AToolIsRaisedWhilePressedAndPlainAfterIt) {
  Mouse(*Web().ImTool[3], QEvent::MouseMove);
  Mouse(*Web().ImTool[3], QEvent::MouseButtonPress, Qt::LeftButton);
  EXPECT_EQ(ToolButton::Look::Raised, LookOf(3));
  Mouse(*Web().ImTool[3], QEvent::MouseButtonRelease, Qt::LeftButton);
  EXPECT_EQ(ToolButton::Look::Plain, LookOf(3));
}

TEST_F(MainWindow, AMoveOverAPressedToolMakesItFlatAgain) {
  Mouse(*Web().ImTool[3], QEvent::MouseButtonPress, Qt::LeftButton);
  ASSERT_EQ(ToolButton::Look::Raised, LookOf(3));
  Mouse(*Web().ImTool[3], QEvent::MouseMove);
  EXPECT_EQ(ToolButton::Look::Framed, LookOf(3));
  EXPECT_EQ(3, Web().HoverTool);
}

// Pixels of `a` that differ from those of `b`.
int Different(const QImage& a, const QImage& b) {
  int count = 0;
  for (int y = 0; y < a.height(); ++y)
    for (int x = 0; x < a.width(); ++x) count += a.pixel(x, y) != b.pixel(x, y);
  return count;
}

TEST_F(MainWindow, TheThreeLooksOfAToolAreSeen) {
  View().setFocus();  // a tool with the focus has a frame as well
  for (int index = 0; index < kToolCount; ++index) {
    ToolButton& tool = *Web().ImTool[std::size_t(index)];
    const auto seen = [&tool] { return tool.grab().toImage().convertToFormat(QImage::Format_RGB32); };
    const QImage plain = seen();
    MoveOver(tool, tool.rect().center());
    const QImage framed = seen();
    QTest::mousePress(Web().windowHandle(), Qt::LeftButton, {}, tool.mapTo(&Web(), tool.rect().center()));
    const QImage raised = seen();
    // All that a light changes is the frame round the picture, closed on its four sides.
    const QRect inside = plain.rect().adjusted(1, 1, -1, -1);
    EXPECT_EQ(plain.copy(inside), framed.copy(inside)) << index;
    for (int at = 0; at < plain.width(); ++at)
      for (const QPoint edge :
           {QPoint(at, 0), QPoint(at, plain.height() - 1), QPoint(0, at), QPoint(plain.width() - 1, at)})
        EXPECT_NE(plain.pixel(edge), framed.pixel(edge)) << index << ": " << edge.x() << ", " << edge.y();
    // A pressed tool is told from a lit one by more than the frame.
    EXPECT_GT(Different(framed.copy(inside), raised.copy(inside)), 40) << index;
    EXPECT_GT(Different(plain, raised), 40) << index;
    // Released beside it nothing is run, and the look is plain again.
    QTest::mouseRelease(Web().windowHandle(), Qt::LeftButton, {}, Web().FrTool2->mapTo(&Web(), QPoint(260, 4)));
    MoveOver(*Web().FrTool2, {260, 4});
    EXPECT_EQ(plain, seen()) << index;
  }
}

TEST_F(MainWindow, NoTwoToolsLookTheSame) {
  QList<QImage> pictures;
  for (ToolButton* const tool : Web().ImTool) pictures.append(tool->grab().toImage());
  for (QToolButton* const button : Web().FrWork->bSel) pictures.append(button->icon().pixmap(16, 16).toImage());
  for (qsizetype a = 0; a < pictures.size(); ++a)
    for (qsizetype b = 0; b < a; ++b)
      EXPECT_TRUE(pictures[a].size() != pictures[b].size() || Different(pictures[a], pictures[b]) > 20)
          << a << " and " << b;
}

TEST_F(MainWindow, TheThreeLooksOfAToolAreToldApart) {
  for (ToolButton* const tool : Web().ImTool) {
    QImage looks[3];
    int at = 0;
    for (const auto look : {ToolButton::Look::Plain, ToolButton::Look::Framed, ToolButton::Look::Raised}) {
      tool->SetLook(look);
      looks[at++] = tool->grab().toImage();
    }
    tool->SetLook(ToolButton::Look::Plain);
    EXPECT_GT(Different(looks[0], looks[1]), 40) << qPrintable(tool->objectName());
    EXPECT_GT(Different(looks[1], looks[2]), 40) << qPrintable(tool->objectName());
    // The picture has its own size, with room for the frame all round.
    for (int x = 0; x < looks[0].width(); ++x)
      for (const int y : {0, 1, looks[0].height() - 1})
        EXPECT_EQ(looks[0].pixel(x, y), looks[0].pixel(0, 0)) << qPrintable(tool->objectName()) << x << "," << y;
  }
}

TEST_F(MainWindow, TheKeysAreThePagesAtStartAndBehindEachControl) {
  EXPECT_EQ(Web().focusWidget(), &View());
  EXPECT_EQ(Web().HoverTool, -1);
  for (QAbstractButton* const button :
       {static_cast<QAbstractButton*>(Web().bBold), static_cast<QAbstractButton*>(Web().FrWork->bSel[1]),
        static_cast<QAbstractButton*>(Web().BoxColor[0])}) {
    button->setFocus();
    button->click();
    EXPECT_EQ(Web().focusWidget(), &View()) << qPrintable(button->objectName());
  }
  for (QComboBox* const box : {Web().BoxFace, Web().BoxSize}) {
    box->setFocus();
    emit box->activated(1);
    EXPECT_EQ(Web().focusWidget(), &View()) << qPrintable(box->objectName());
  }
}

TEST_F(MainWindow, AWheelThatPassesOverTheListsMakesNoPages) {
  for (QComboBox* const box : {Web().BoxPage, Web().BoxFace, Web().BoxSize}) {
    const int before = box->currentIndex();
    const QPointF at(box->rect().center());
    QWheelEvent wheel(at, box->mapToGlobal(at), {}, {0, -120}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(box, &wheel);
    EXPECT_EQ(box->currentIndex(), before) << qPrintable(box->objectName());
  }
  EXPECT_FALSE(QFile::exists(run_.test.WorkFile(QStringLiteral("Page2.html"))));
}

TEST_F(MainWindow, TheHoverLabelNamesWhatTheMouseIsOn) {
  const std::pair<const char*, const char*> rows[] = {
      {"FONT", "Text Block"}, {"B", "Text Block"}, {"STRONG", "Text Block"}, {"font", "Text Block"},
      {"IMG", "Picture"},     {"TD", "Table"},     {"TR", "Table"},          {"TABLE", "Table"},
      {"BODY", "Page"},       {"P", ""},           {"FONT B", ""},           {"", ""},
  };
  for (const auto& [tag, caption] : rows) {
    Web().FrWork->LabHover->setText("before");
    emit View().ElementHover(tag);
    EXPECT_EQ(caption, Web().FrWork->LabHover->text()) << tag;
  }
}

// Meant in FWeb::OnElementHover: over a link the label tells the address of the current element, not of that link.
TEST_F(MainWindow, OverALinkTheHoverLabelTellsTheAddressOfTheCurrentElement) {
  run_.browser->SetHtml(PageAround("<A id='one' href='one.html'>one</A><A id='two' href='two.html'>two</A>"));
  emit View().ElementHover("A");
  EXPECT_EQ("", Web().FrWork->LabHover->text());
  View().SetCurrentElement(ElementById(*View().WBDocument(), "one"));
  run_.browser->MouseOver(QPoint(8 + 4 * 8, 12));
  EXPECT_EQ("one.html", Web().FrWork->LabHover->text());
}

TEST_F(MainWindow, TheListsStartAtTheirDesignValues) {
  EXPECT_EQ(0, Web().BoxFace->currentIndex());
  EXPECT_EQ(2, Web().BoxSize->currentIndex());
  EXPECT_EQ(0, Web().BoxPage->currentIndex());
  EXPECT_EQ(30, Web().BoxPage->count());
  EXPECT_EQ(0, Web().BoxColor[0]->Color());
}

TEST_F(MainWindow, SavingAndRefreshingDontAskWhetherTheProgramIsBusy) {
  run_.Type("early");
  Web().Busy = true;
  ASSERT_TRUE(run_.Choose("mSavePage"));
  EXPECT_TRUE(FileIn("card/wgcard.html").contains("early"));
  run_.Type("late");
  Web().ImTool[3]->click();
  EXPECT_TRUE(FileIn("card/wgcard.html").contains("earlylate"));
  run_.Type("again");
  ASSERT_TRUE(run_.Choose("mRefresh"));
  EXPECT_TRUE(FileIn("card/wgcard.html").contains("earlylateagain"));
  EXPECT_TRUE(View().Source().contains("earlylateagain"));
}

// The headless component with a window that can be hooked.
class WindowedBrowser : public HeadlessWebBrowser {
 public:
  QWidget* Widget() override { return &window_; }

 private:
  QWidget window_;
};

TEST(Compatibility, SwitchedOffItTakesTheHookFromThePageInViewAtOnce) {
  TestProgram test;
  Settings::Save(test.platform.settings, Settings::Compat4, "yes");
  ModMain modMain(test.program, [](QWidget*) { return std::make_unique<WindowedBrowser>(); });
  ASSERT_TRUE(modMain.Main());
  QSignalSpy complete(modMain.Web()->jWB, &WBUC::DocComplete);
  ASSERT_TRUE(complete.wait(3000));
  ASSERT_TRUE(modMain.Web()->jWB->IsHooked());
  SetsControl<QCheckBox>(modMain, "Ck4")->click();
  EXPECT_FALSE(test.program.Compat4On);
  EXPECT_FALSE(modMain.Web()->jWB->IsHooked());
}

TEST_F(MainWindow, TwoKeysRunWhatTheirEntriesSayAndNoLetterDoes) {
  QMap<QString, QString> keys;
  for (const QAction* const action : Web().findChildren<QAction*>())
    if (!action->shortcut().isEmpty()) keys[action->objectName()] = action->shortcut().toString();
  EXPECT_EQ((QMap<QString, QString>{{"mCVNHelp", "F1"}, {"mRefresh", "F5"}}), keys);
  ASSERT_TRUE(PutFile(run_.PathInApp("cvn2.hlp"), "help"));
  Web().activateWindow();
  QTest::keyClick(Web().jWB, Qt::Key_F1);
  EXPECT_EQ(1, run_.test.platform.shell.Opened.size());
  run_.Type("one");
  QTest::keyClick(Web().jWB, Qt::Key_F5);
  run_.Settle();
  EXPECT_TRUE(FileBytes(run_.PathInApp("card/wgcard.html")).contains("one"));
}

TEST_F(MainWindow, InANarrowWindowNothingPrintsOverAnotherAndNoListIsCovered) {
  for (const int width : {420, 560, 640, 690, 700, 1000}) {
    Resize(width, 400);
    const int end = Web().FrTool->x() + Web().ImTool[8]->geometry().right();
    for (const QLabel* const caption : Web().FrFont->findChildren<QLabel*>())
      EXPECT_EQ(Web().FrFont->x() + caption->x() > end, caption->isVisible()) << width << caption->text().toStdString();
    const QRegion mask = Web().FrTool->mask();
    const QRect covered = (mask.isEmpty() ? Web().FrTool->rect() : mask.boundingRect()).translated(Web().FrTool->pos());
    for (const QComboBox* const list : {Web().BoxPage, Web().BoxFace, Web().BoxSize})
      EXPECT_FALSE(covered.intersects(list->geometry().translated(Web().FrFont->pos()))) << width;
  }
}

TEST_F(MainWindow, ALongFaceEndsInAnEllipsisAndItsListIsWideEnough) {
  auto& faces = static_cast<FittedList&>(*Web().BoxFace);
  QFont large = faces.font();
  large.setPixelSize(15);
  faces.setFont(large);
  faces.setCurrentIndex(1);
  EXPECT_TRUE(faces.ShownText().endsWith(u'\u2026')) << faces.ShownText().toStdString();
  EXPECT_TRUE(QString("Verdana, Arial, Helvetica").startsWith(faces.ShownText().chopped(1)));
  faces.setCurrentIndex(5);
  EXPECT_EQ("Tahoma", faces.ShownText());
  faces.showPopup();
  EXPECT_GE(faces.view()->width(), faces.view()->sizeHintForColumn(0));
  faces.hidePopup();
}

TEST_F(MainWindow, ASwatchHasAnEdgeOnEveryGround) {
  for (const auto& [ground, ink] : {std::pair(Qt::black, Qt::white), std::pair(Qt::white, Qt::black)}) {
    QPalette palette;
    palette.setColor(QPalette::Window, ground);
    palette.setColor(QPalette::WindowText, ink);
    Swatch swatch;
    swatch.setPalette(palette);
    swatch.resize(20, 16);
    for (const qint32 color : {0, 0xffffff}) {
      swatch.SetColor(color);
      const QImage picture = swatch.grab().toImage();
      const int edge = qGray(picture.pixel(5, 0));
      EXPECT_GT(std::abs(edge - qGray(QColor(ground).rgb())), 60);
      EXPECT_GT(std::abs(edge - qGray(picture.pixel(5, 5))), 60);
    }
  }
}

}  // namespace
