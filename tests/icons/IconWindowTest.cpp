#include <qtestspontaneevent.h>
#include <QAction>
#include <QCloseEvent>
#include <QFile>
#include <QGroupBox>
#include <QHelpEvent>
#include <QLabel>
#include <QMenuBar>
#include <QProxyStyle>
#include <QTest>
#include <QToolTip>

#include "IconWindowFixture.h"
#include "LineBar.h"
#include "StringTable.h"

namespace {

using IconWindow = IconWindowTest;

// --- how it looks

TEST_F(IconWindow, ControlsHaveTheirCaptionsAndTips) {
  EXPECT_EQ("TOOLS", editor_.FrTools->title());
  EXPECT_EQ("Shapes", editor_.Frame6->title());
  EXPECT_EQ("Move image", editor_.Frame3->title());
  EXPECT_EQ("Line width", editor_.Frame1->title());
  EXPECT_EQ("Color Menu", editor_.Frame2->title());
  const QStringList tips = {"line or dot.", "outline rectangle.", "solid rectangle.", "outline ellipse.",
                            "solid ellipse."};
  for (int tool = 0; tool < 5; ++tool) EXPECT_EQ(tips[tool], editor_.bOps[std::size_t(tool)]->toolTip());
  EXPECT_EQ("Clear", editor_.bclear->text());
  EXPECT_EQ("Clear editor image.", editor_.bclear->toolTip());
  EXPECT_EQ("T", editor_.bTrans->text());
  EXPECT_EQ("Use transparent color.", editor_.bTrans->toolTip());
  EXPECT_EQ("Current color", editor_.PicColor->toolTip());
  EXPECT_EQ("Undo", editor_.bUndo->text());
  EXPECT_EQ("Undo last drawing action.", editor_.bUndo->toolTip());
  EXPECT_FALSE(UndoEnabled());
  EXPECT_TRUE(editor_.OpW[0]->isChecked());
  EXPECT_EQ("Icon Editor", Title());
}

TEST_F(IconWindow, ColorsAndArrowsTellTheirNames) {
  const QStringList arrows = {"right", "down", "left", "up"};
  for (int index = 0; index < 4; ++index) EXPECT_EQ(arrows[index], editor_.bMoveIm[std::size_t(index)]->toolTip());
  EXPECT_EQ("Black", editor_.PCols[Black]->toolTip());
  EXPECT_EQ("Dark red", editor_.PCols[DarkRed]->toolTip());
  EXPECT_EQ("Yellow", editor_.PCols[Yellow]->toolTip());
  QSet<QString> names;
  for (const Swatch* box : editor_.PCols) names << box->toolTip();
  EXPECT_EQ(16, names.size());
}

TEST_F(IconWindow, TheWorkAreaTellsWhichCellThePointerIsOn) {
  const auto tip = [this](QPoint at) {
    QHelpEvent event(QEvent::ToolTip, at, planes_.PicBig->mapToGlobal(at));
    QApplication::sendEvent(planes_.PicBig, &event);
    return QToolTip::text();
  };
  EXPECT_EQ("column 1, row 1", tip({0, 0}));
  EXPECT_EQ("column 32, row 32", tip({223, 223}));
  EXPECT_EQ("column 6, row 13", tip(InCell({5, 12})));
  // The cell that a click there would draw in.
  UseColor(Red);
  for (int y = 0; y < 224; y += 5) {
    const QPoint at(3 * y % 224, y);
    editor_.ClearImage();
    Press(at);
    Release(at);
    ASSERT_EQ(1, Opaque().size());
    const QPoint cell = Opaque()[0] + QPoint(1, 1);
    EXPECT_EQ(QStringLiteral("column %1, row %2").arg(cell.x()).arg(cell.y()), tip(at));
  }
  QToolTip::hideText();
}

TEST_F(IconWindow, AnArrowThatIsHeldDownGoesOnMoving) {
  UseColor(Red);
  Drag({0, 0}, {0, 0});
  QTest::mousePress(editor_.bMoveIm[0], Qt::LeftButton);
  EXPECT_TRUE(QTest::qWaitFor([this] { return OpaqueRect().x() >= 3; }));
  QTest::mouseRelease(editor_.bMoveIm[0], Qt::LeftButton);
  const QRect before = OpaqueRect();
  QTest::mouseClick(editor_.bMoveIm[2], Qt::LeftButton);
  EXPECT_EQ(before.translated(-1, 0), OpaqueRect());
}

TEST_F(IconWindow, TheTitleShowsAPathAsItIs) {
  const QString path = IconPath("odd [*].ico");
  Open(path);
  EXPECT_EQ("Icon Editor - " + path, editor_.windowHandle()->title());
  SaveAs(test_.Path("new [*].ico"));
  EXPECT_EQ("Icon Editor - " + test_.Path("new [*].ico"), editor_.windowHandle()->title());
}

TEST_F(IconWindow, MenusHaveTheirEntries) {
  QStringList shown;
  for (const QAction* menu : editor_.menuBar()->actions()) {
    shown << menu->text();
    for (const QAction* entry : menu->menu()->actions())
      shown << "  " + entry->objectName() + ' ' + (entry->isSeparator() ? "-" : entry->text());
  }
  EXPECT_EQ(QStringList({"&File", "  mOpen &Open", "  micol5 -", "  mSavePlain &Save", "  mSaveIco Save &As",
                         "  mlineico6 -", "  mExit E&xit Icon Editor", "&Edit", "  mPaste &Paste Image from Clipboard",
                         "&Help", "  mIcoHelp Corvane &Help"}),
            shown);
}

TEST_F(IconWindow, ControlsAreFoundByTheirNames) {
  for (const char* name :
       {"FrTools", "Frame6",     "Frame3",   "Frame1",  "Frame2",  "bOps4",   "bMoveIm3", "OpW3",      "LabLine3",
        "bclear",  "bTrans",     "PicColor", "PCols15", "bUndo",   "Pic1",    "PicBig",   "Pic1Black", "Pic2",
        "Pic1A",   "Pic1BlackA", "Pic2A",    "PicBig2", "PicAuto", "PicSize", "Label1",   "Label20",   "Label231"})
    EXPECT_EQ(1, editor_.findChildren<QWidget*>(name).size()) << name;
}

TEST_F(IconWindow, OnlyTheIconAndTheWorkAreaAreShown) {
  for (const Surface* surface : editor_.findChildren<Surface*>())
    EXPECT_EQ(surface == planes_.Pic1 || surface == planes_.PicBig, surface->isVisible())
        << qPrintable(surface->objectName());
  EXPECT_EQ(QSize(32, 32), planes_.Pic1->size());
  EXPECT_EQ(QSize(224, 224), planes_.PicBig->size());
}

TEST_F(IconWindow, TheRulersMarkEveryOtherCell) {
  EXPECT_EQ(QSize(240, 240), editor_.Label1->size());
  EXPECT_EQ(QPoint(8, 8), planes_.PicBig->pos());
  EXPECT_EQ(editor_.Label1, planes_.PicBig->parentWidget());
  for (int i = 0; i < 16; ++i) {
    EXPECT_EQ(QRect(8 + 14 * i, 0, 7, 240), editor_.Label2[std::size_t(i)]->geometry());
    EXPECT_EQ(QRect(0, 8 + 14 * i, 240, 7), editor_.Label2[std::size_t(16 + i)]->geometry());
  }
  const QImage seen = editor_.Label1->grab().toImage();
  EXPECT_EQ(qRgb(0xD0, 0xD0, 0xD0), seen.pixel(2, 2));
  EXPECT_EQ(qRgb(0xD8, 0xD8, 0xD8), seen.pixel(8, 2));
  EXPECT_EQ(qRgb(0xD8, 0xD8, 0xD8), seen.pixel(14, 2));
  EXPECT_EQ(qRgb(0xD0, 0xD0, 0xD0), seen.pixel(15, 2));
  EXPECT_EQ(qRgb(0xD8, 0xD8, 0xD8), seen.pixel(237, 22));
}

TEST_F(IconWindow, TheColorRowHasAnotherOrderThanTheFile) {
  QList<QRgb> row;
  for (const Swatch* box : editor_.PCols) row << PixelOf(box->Color());
  EXPECT_EQ(qRgb(0, 0, 0x80), row[1]);
  EXPECT_EQ(qRgb(0x80, 0, 0), row[4]);
  EXPECT_EQ(qRgb(0, 0, 0xFF), row[9]);
  EXPECT_EQ(qRgb(0xFF, 0, 0), row[12]);
  QList<QRgb> table(IconColors().begin(), IconColors().end());
  EXPECT_NE(table, row);
  std::sort(table.begin(), table.end());
  std::sort(row.begin(), row.end());
  EXPECT_EQ(table, row);
}

TEST_F(IconWindow, EveryControlHasANameForReadersOfTheScreen) {
  for (const QWidget* widget : editor_.findChildren<QWidget*>()) {
    if (!widget->isVisible() || widget->focusPolicy() == Qt::NoFocus || widget->inherits("QMenuBar")) continue;
    const auto* const button = qobject_cast<const QAbstractButton*>(widget);
    EXPECT_FALSE(widget->accessibleName().isEmpty() && !(button && button->text().size() > 1))
        << qPrintable(widget->objectName());
  }
}

TEST_F(IconWindow, TheTabulatorGoesThroughAllControlsInTheirOrder) {
  UseColor(Red);
  Drag({1, 1}, {3, 3});  // Undo can be reached now
  ASSERT_TRUE(QTest::qWaitForWindowActive(&editor_));
  editor_.bOps[0]->setFocus();
  QStringList order;
  for (int step = 0; step < 40; ++step) {
    order << QApplication::focusWidget()->objectName();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    if (QApplication::focusWidget() == editor_.bOps[0]) break;
  }
  QStringList wanted = {"bOps0",    "bOps1",    "bOps2", "bOps3",  "bOps4", "bMoveIm0", "bMoveIm1",
                        "bMoveIm2", "bMoveIm3", "OpW0",  "PicBig", "bUndo", "bclear",   "bTrans"};
  for (int box = 0; box < 16; ++box) wanted << QStringLiteral("PCols%1").arg(box);
  EXPECT_EQ(wanted, order);
}

TEST_F(IconWindow, OnADarkDesktopTextAndBarsAreLight) {
  const QPalette before = QApplication::palette();
  QPalette dark;
  const QColor ground(0x2b, 0x2b, 0x2b), text(0xf0, 0xf0, 0xf0);
  for (const QPalette::ColorRole role : {QPalette::Window, QPalette::Base, QPalette::Button})
    dark.setColor(role, ground);
  for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
    dark.setColor(role, text);
  QApplication::setPalette(dark);
  {
    fIconMaker editor(test_.program);
    editor.show();
    editor.bOps[3]->click();
    const QImage bar = editor.LabLine[3]->grab().toImage();
    EXPECT_EQ(text.rgb(), bar.pixel(bar.width() / 2, bar.height() / 2));
    EXPECT_EQ(ground.rgb(), editor.grab().toImage().pixel(3, editor.height() / 2));
    EXPECT_EQ(ground.rgb(), editor.bOps[0]->palette().color(QPalette::Button).rgb());
    EXPECT_EQ(PixelOf(ToolHighlight), editor.bOps[3]->palette().color(QPalette::Button).rgb());
  }
  QApplication::setPalette(before);
}

// As on desktops that draw raised buttons in their own colour.
class NoRaisedButtons : public QProxyStyle {
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override {
    if (element != CE_PushButtonBevel) QProxyStyle::drawControl(element, option, painter, widget);
  }
};

TEST_F(IconWindow, TheToolInHandIsSeenWhateverTheDesktopsButtonsLookLike) {
  NoRaisedButtons style;
  for (QPushButton* const button : editor_.bOps) button->setStyle(&style);
  editor_.bOps[3]->click();
  for (QPushButton* const button : editor_.bOps) {
    const QImage seen = button->grab().toImage();
    EXPECT_EQ(button == editor_.bOps[3], seen.pixelColor(4, seen.height() / 2) == QColor(PixelOf(ToolHighlight)));
    button->setStyle(nullptr);
  }
}

// macOS puts what sounds like it into the program's own menu, where "Exit" means the program.
TEST_F(IconWindow, TheCommandsStayInTheMenusOfTheWindow) {
  int commands = 0;
  for (const QAction* const menu : editor_.menuBar()->actions())
    for (const QAction* const action : menu->menu()->actions()) {
      EXPECT_EQ(QAction::NoRole, action->menuRole()) << action->text().toStdString();
      ++commands;
    }
  EXPECT_EQ(8, commands);
}

TEST_F(IconWindow, NothingIsCutOffAtAnyUsualFont) {
  const QFont before = QApplication::font();
  for (int points = 8; points <= 14; ++points) {
    QFont font = before;
    font.setPointSize(points);
    QApplication::setFont(font);
    fIconMaker editor(test_.program);
    editor.show();
    for (const QWidget* widget : editor.findChildren<QWidget*>()) {
      if (!widget->isVisible()) continue;
      EXPECT_TRUE(editor.rect().contains(QRect(widget->mapTo(&editor, QPoint(0, 0)), widget->size())))
          << qPrintable(widget->objectName()) << points;
      if (!widget->inherits("QPushButton") && !widget->inherits("QGroupBox")) continue;
      EXPECT_LE(widget->minimumSizeHint().height(), widget->height()) << qPrintable(widget->objectName()) << points;
      const QString text = widget->property("title").toString() + widget->property("text").toString();
      EXPECT_LE(widget->fontMetrics().horizontalAdvance(text) + 8, widget->width()) << qPrintable(text) << points;
    }
  }
  QApplication::setFont(before);
}

// --- choosing

TEST_F(IconWindow, AToolsButtonIsHighlightedAndSetsTheCursor) {
  EXPECT_TRUE(IsHighlighted(0));
  QList<qint64> cursors;
  for (int tool = 0; tool < 5; ++tool) {
    MouseOn(editor_.bOps[std::size_t(tool)], Qt::LeftButton);
    EXPECT_EQ(tool, int(editor_.Drawing.CurTool));
    for (int other = 0; other < 5; ++other) EXPECT_EQ(other == tool, IsHighlighted(other));
    const QPixmap picture = planes_.PicBig->cursor().pixmap();
    EXPECT_FALSE(picture.isNull());
    EXPECT_EQ(QPoint(0, 0), planes_.PicBig->cursor().hotSpot());
    const QImage image = picture.toImage().convertToFormat(QImage::Format_ARGB32);
    cursors << qint64(qHashBits(image.constBits(), std::size_t(image.sizeInBytes())));
    EXPECT_EQ(planes_.PicBig, editor_.focusWidget());
  }
  EXPECT_EQ(5, QSet<qint64>(cursors.begin(), cursors.end()).size());
}

TEST_F(IconWindow, AnUnknownToolHasTheCursorOfTheLine) {
  const auto picture = [this] {
    editor_.SetToolCursor();
    return planes_.PicBig->cursor().pixmap().toImage();
  };
  const QImage line = picture();
  for (const int tool : {5, -1, 1000}) {
    editor_.Drawing.CurTool = Tool(tool);
    EXPECT_EQ(line, picture());
  }
}

TEST_F(IconWindow, ALineWidthIsChosenByItsOptionOrItsBar) {
  for (int width = 4; width >= 1; --width) {
    MouseOn(editor_.OpW[std::size_t(width - 1)], Qt::LeftButton);
    EXPECT_EQ(width, editor_.Drawing.PenWidth);
    EXPECT_EQ(planes_.PicBig, editor_.focusWidget());
  }
  for (int width = 1; width <= 4; ++width) {
    MouseOn(editor_.LabLine[std::size_t(width - 1)], Qt::LeftButton);
    EXPECT_EQ(width, editor_.Drawing.PenWidth);
    EXPECT_TRUE(editor_.OpW[std::size_t(width - 1)]->isChecked());
    EXPECT_EQ(planes_.PicBig, editor_.focusWidget());
  }
}

TEST_F(IconWindow, OnlyTheLeftButtonChoosesAColorAndAlreadyGoingDown) {
  EXPECT_EQ(TransparentColor, editor_.Drawing.CurColor);
  EXPECT_EQ(TransparentColor, editor_.PicColor->Color());
  MouseOn(editor_.PCols[12], Qt::RightButton);
  MouseOn(editor_.PCols[12], Qt::MiddleButton);
  EXPECT_EQ(TransparentColor, editor_.Drawing.CurColor);
  for (std::size_t box = 0; box < 16; ++box) {
    QTest::mousePress(editor_.PCols[box], Qt::LeftButton);
    EXPECT_EQ(kColorRow[box], editor_.Drawing.CurColor);
    EXPECT_EQ(kColorRow[box], editor_.PicColor->Color());
    QTest::mouseRelease(editor_.PCols[box], Qt::LeftButton);
  }
  MouseOn(editor_.bTrans, Qt::LeftButton);
  EXPECT_EQ(TransparentColor, editor_.Drawing.CurColor);
  EXPECT_EQ(TransparentColor, editor_.PicColor->Color());
  EXPECT_EQ(planes_.PicBig, editor_.focusWidget());
  MouseOn(editor_.PCols[3], Qt::RightButton);
  EXPECT_EQ(TransparentColor, editor_.Drawing.CurColor);
}

TEST_F(IconWindow, AColorLeavesTheFocusWhereItIsOrTakesItAndNeverGivesItToTheWorkArea) {
  editor_.OpW[0]->setFocus();
  MouseOn(editor_.PCols[12], Qt::LeftButton);
  EXPECT_EQ(kColorRow[12], editor_.Drawing.CurColor);
  EXPECT_NE(planes_.PicBig, editor_.focusWidget());
}

// --- without a guard

TEST_F(IconWindow, APasteGoesThroughWhileTheWindowIsBusy) {
  Open(IconPath("a.ico"));
  QGuiApplication::clipboard()->setImage(OneColor(qRgb(255, 0, 0)));
  editor_.Busy = true;
  editor_.mPaste();
  EXPECT_EQ(OneColor(qRgb(255, 0, 0)), Plane(planes_.Pic1));
  EXPECT_EQ("", editor_.IconFileName);
  EXPECT_TRUE(editor_.Busy);
}

TEST_F(IconWindow, UndoAndClearGoThroughWhileTheWindowIsBusy) {
  UseColor(Red);
  Drag({2, 2}, {20, 2});
  Drag({2, 9}, {20, 9});
  editor_.Busy = true;
  editor_.bUndo->click();
  EXPECT_EQ(QRect(2, 2, 19, 1), OpaqueRect());
  editor_.bclear->click();
  EXPECT_TRUE(IsBlank());
  EXPECT_TRUE(editor_.Busy);
}

TEST_F(IconWindow, APressWhileTheWindowIsBusyBeginsALineThatAReleaseLaterDraws) {
  UseColor(Red);
  editor_.Busy = true;
  Press(InCell({5, 5}));
  editor_.Busy = false;
  Release(InCell({9, 5}));
  EXPECT_EQ(QRect(5, 5, 5, 1), OpaqueRect());
}

// --- opening and clearing

TEST_F(IconWindow, ResetLeavesTheColorTheMarkedWidthAndTheHighlightOfAnotherTool) {
  UseColor(Blue);
  UseWidth(3);
  Use(Tool::Ellipse);
  Drag({2, 2}, {20, 20});
  editor_.Busy = true;
  editor_.ResetEditor();
  EXPECT_EQ(0xFF0000, editor_.Drawing.CurColor);
  EXPECT_EQ(0xFF0000, editor_.PicColor->Color());
  EXPECT_TRUE(editor_.OpW[2]->isChecked());
  EXPECT_FALSE(editor_.OpW[0]->isChecked());
  EXPECT_TRUE(IsHighlighted(3));
  EXPECT_TRUE(IsHighlighted(0));
  // While in force is this:
  EXPECT_EQ(1, editor_.Drawing.PenWidth);
  EXPECT_EQ(Tool::Line, editor_.Drawing.CurTool);
  EXPECT_FALSE(editor_.Busy);
  EXPECT_TRUE(IsBlank());
  EXPECT_FALSE(UndoEnabled());
  Drag({2, 2}, {20, 2});
  EXPECT_EQ(QRect(2, 2, 19, 1), OpaqueRect());
}

TEST_F(IconWindow, ClearForgetsTheFileName) {
  Open(IconPath("a.ico"));
  EXPECT_EQ("Icon Editor - " + test_.Path("a.ico"), Title());
  editor_.bclear->click();
  EXPECT_EQ("Icon Editor", Title());
  EXPECT_EQ("", editor_.IconFileName);
  EXPECT_TRUE(IsBlank());
  EXPECT_FALSE(UndoEnabled());
  EXPECT_EQ(planes_.PicBig, editor_.focusWidget());
  EXPECT_TRUE(QFile::exists(test_.Path("a.ico")));
}

// Meant in fIconMaker::mPaste: Paste forgets the file's name even without a bitmap on the clipboard.
TEST_F(IconWindow, PasteForgetsTheFileNameEvenWithoutABitmap) {
  Open(IconPath("a.ico"));
  QGuiApplication::clipboard()->clear();
  editor_.mPaste();
  EXPECT_EQ("Icon Editor", Title());
  EXPECT_EQ("", editor_.IconFileName);
  EXPECT_EQ(512, Opaque().size());
}

TEST_F(IconWindow, HelpIsTheProgramsHelp) {
  editor_.mIcoHelp();
  EXPECT_EQ(QStringList{StringText(145)}, Messages());
  EXPECT_EQ(&editor_, Dialogs().Boxes.last().owner);
}

// --- hiding

TEST_F(IconWindow, ExitHidesAndKeepsThePicture) {
  UseColor(Red);
  Drag({2, 2}, {20, 2});
  editor_.findChild<QAction*>("mExit")->trigger();
  EXPECT_FALSE(editor_.isVisible());
  editor_.show();
  EXPECT_EQ(19, Opaque().size());
}

TEST_F(IconWindow, TheCloseBoxOnlyHidesAndAnyOtherCloseGoesThrough) {
  QCloseEvent event;
  QSpontaneKeyEvent::setSpontaneous(&event);
  qApp->notify(&editor_, &event);
  EXPECT_FALSE(event.isAccepted());
  EXPECT_FALSE(editor_.isVisible());
  editor_.show();
  EXPECT_TRUE(editor_.close());
}

}  // namespace
