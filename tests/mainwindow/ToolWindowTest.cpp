#include <QPlainTextEdit>

#include "SourceText.h"
#include "ToolsFixture.h"

namespace {

class ToolWindow : public ToolsTest {
 protected:
  int Shown() {
    int shown = -1;
    for (int index = 0; index < 4; ++index) {
      if (Tools().FrTool[std::size_t(index)]->isHidden()) continue;
      EXPECT_EQ(-1, shown) << "more than one panel shows";
      shown = index;
    }
    return shown;
  }
};

// Tells nothing else than whether the window was hidden in between.
class HideWatch : public QObject {
 public:
  explicit HideWatch(QWidget& window) { window.installEventFilter(this); }
  int Hidden = 0;
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Hide) ++Hidden;
    return QObject::eventFilter(watched, event);
  }
};

TEST_F(ToolWindow, IsHiddenAtTheStart) {
  EXPECT_FALSE(Tools().isVisible());
  EXPECT_EQ("FTools", Tools().objectName());
}

TEST_F(ToolWindow, EachToolHasItsCaptionSizeAndPanel) {
  struct Row {
    int tool;
    const char* caption;
    QSize size;
    int panel;
    const char* panelCaption;
  };
  const Row rows[] = {
      {0, "View Image", {357, 189}, 0, "  Add this picture to page?  "},
      {1, "Page Source", {622, 471}, 1, "  Page Source Code  "},
      {2, "Page Properties", {435, 323}, 2, "  Page Properties  "},
      {3, "Tables", {435, 323}, 3, "  Create new table  "},
      {4, "Tables", {435, 323}, 3, "  Edit table properties  "},
      {3, "Tables", {435, 323}, 3, "  Create new table  "},
  };
  EXPECT_EQ("  Create new table   ", Tools().FrTool[3]->Caption());
  for (const Row& row : rows) {
    Tools().ShowTool(ToolTask(row.tool), "x");
    EXPECT_TRUE(Tools().isVisible());
    EXPECT_FALSE(Tools().isModal());
    EXPECT_TRUE(IsOnTop());
    EXPECT_EQ(row.caption, Tools().windowTitle());
    EXPECT_EQ(row.size, Tools().size()) << row.tool;
    EXPECT_EQ(row.panel, Shown());
    const ToolPanel& panel = *Tools().FrTool[std::size_t(row.panel)];
    EXPECT_EQ(QString("FrTool%1").arg(row.panel), panel.objectName());
    EXPECT_EQ(QRect(QPoint(0, 0), row.size), panel.geometry());
    EXPECT_EQ(row.panelCaption, panel.Caption());
  }
}

TEST_F(ToolWindow, StandsAtTheMiddleOfTheMainWindowsLowerEdge) {
  Web().showNormal();
  for (const QRect place : {QRect(50, 40, 700, 600), QRect(10, 90, 501, 407)}) {
    Web().setGeometry(place);
    run_.Settle();
    for (const int tool : {0, 2}) {
      Tools().ShowTool(ToolTask(tool), QString());
      run_.Settle();
      const QRect own = Tools().frameGeometry();
      const QRect main = Web().frameGeometry();
      EXPECT_NEAR(main.x() + main.width() / 2.0, own.x() + own.width() / 2.0, 0.5);
      EXPECT_EQ(main.bottom() - 4, own.bottom());
    }
  }
}

TEST_F(ToolWindow, AnotherNumberHidesPlacesAndShowsTheWindowAsItIs) {
  Tools().ShowTool(ToolTask::PageProperties, QString());
  Tools().TTable[0]->clearFocus();
  for (const int tool : {-1, 5, 99}) {
    Tools().move(3, 3);
    HideWatch watch(Tools());
    Tools().ShowTool(ToolTask(tool), "ignored");
    EXPECT_EQ(1, watch.Hidden);
    EXPECT_TRUE(Tools().isVisible());
    EXPECT_TRUE(IsOnTop());
    EXPECT_NE(QPoint(3, 3), Tools().pos());
    EXPECT_EQ("Page Properties", Tools().windowTitle());
    EXPECT_EQ(2, Shown());
    EXPECT_EQ("", Tools().TPicPath->text());
  }
}

// Meant in FTools::ShowTool: every panel's number above two gives the table's width the focus.
TEST_F(ToolWindow, EveryNumberAboveTwoGivesTheTableWidthTheFocus) {
  for (const auto& [tool, gives] :
       {std::pair(0, false), {1, false}, {2, false}, {3, true}, {4, true}, {7, true}, {-7, false}}) {
    Tools().ShowTool(ToolTask::NewTable, QString());
    Tools().bOKTable[1]->setFocus();
    Tools().ShowTool(ToolTask(tool), QString());
    EXPECT_EQ(gives, Tools().focusWidget() == Tools().TTable[0]) << tool;
  }
}

TEST_F(ToolWindow, TheTitleBarClosesItAndTakesItOutOfTheTopLayer) {
  Tools().ShowTool(ToolTask::PageProperties, QString());
  ASSERT_TRUE(IsOnTop());
  Tools().close();
  EXPECT_FALSE(Tools().isVisible());
  EXPECT_FALSE(IsOnTop());
  // It is still there.
  Tools().ShowTool(ToolTask::PageSource, QString());
  EXPECT_TRUE(Tools().isVisible());
}

TEST_F(ToolWindow, HidesWhenTheWebPackPanelOpens) {
  Tools().ShowTool(ToolTask::PageProperties, QString());
  run_.Choose("mMakePack");
  EXPECT_FALSE(Tools().isVisible());
  EXPECT_FALSE(IsOnTop());
}

TEST_F(ToolWindow, TheTextsStandAsTheyAreFaultsIncluded) {
  struct Row {
    const QWidget* control;
    const char* name;
    const char* toolTip;
  };
  const FTools& tools = Tools();
  const Row rows[] = {
      {tools.bOKPic[0], "bOKPic0", "Add this picture to page."},
      {tools.bOKPic[1], "bOKPic1", "Close without adding picture to page."},
      {tools.bCloseText[0], "bCloseText0", "Close text window."},
      {tools.bCloseText[1], "bCloseText1", "Save changes to current page."},
      {tools.bTitle, "bTitle", "Use this page title."},
      {tools.BoxColor[0], "BoxColor0", "Select color for links."},
      {tools.BoxColor[1], "BoxColor1", "Select page background color."},
      {tools.BoxColor[2], "BoxColor2", "Select default body text color."},
      {tools.BoxColor[3], "BoxColor3", "Select body text color."},
      {tools.bBackPic[0], "bBackPic0", "Select background picture."},
      {tools.bBackPic[1], "bBackPic1", "Remove background picture."},
      {tools.BoxFace, "BoxFace", "Select body font face."},
      {tools.BoxSize, "BoxSize", "Select body font size."},
      {tools.bOKProps, "bOKProps", "Close."},
      {tools.bOKTable[0], "bOKTable0", "Apply table choices and close."},
      {tools.bOKTable[1], "bOKTable1", "Close without applting changes."},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(row.name, row.control->objectName());
    EXPECT_EQ(row.toolTip, row.control->toolTip());
  }
  const std::pair<const QPushButton*, const char*> captions[] = {
      {tools.bOKPic[0], "OK"},       {tools.bOKPic[1], "Cancel"},
      {tools.bCloseText[0], "OK"},   {tools.bCloseText[1], "Save Changes"},
      {tools.bTitle, "OK"},          {tools.bBackPic[0], "Browse"},
      {tools.bBackPic[1], "Remove"}, {tools.bOKProps, "OK"},
      {tools.bOKTable[0], "OK"},     {tools.bOKTable[1], "Cancel"},
  };
  for (const auto& [button, caption] : captions) EXPECT_EQ(caption, button->text()) << qPrintable(button->objectName());
}

TEST_F(ToolWindow, EveryLabelBelongsToItsControl) {
  const std::pair<const char*, const QWidget*> rows[] = {
      {" W:", Tools().TSpec[0]},
      {" H:", Tools().TSpec[1]},
      {"Size (KB):", Tools().TSpec[2]},
      {"Page title:", Tools().TTitle},
      {"Select link color:", Tools().BoxColor[0]},
      {"Select back color:", Tools().BoxColor[1]},
      {"Select back picture:", Tools().bBackPic[0]},
      {"Remove back picture:", Tools().bBackPic[1]},
      {"Body text color:", Tools().BoxColor[2]},
      {"Body font face:", Tools().BoxFace},
      {"Body font size:", Tools().BoxSize},
      {" Width (pixels):", Tools().TTable[0]},
      {"Height (pixels):", Tools().TTable[1]},
      {"Background color:", Tools().BoxColor[3]},
      {"Border width (pixels):", Tools().BoxBorder},
      {"Inside margin (pixels):", Tools().BoxPadding},
  };
  QMap<QString, const QLabel*> labels;
  for (const QLabel* label : Tools().findChildren<QLabel*>()) labels[label->text()] = label;
  for (const auto& [text, control] : rows) {
    ASSERT_TRUE(labels.contains(text)) << text;
    EXPECT_EQ(control, labels[text]->buddy()) << text;
    const bool isPicture = control == Tools().bBackPic[0] || control == Tools().bBackPic[1];
    EXPECT_EQ(isPicture ? "Browse for background image (JPG, GIF)" : "", labels[text]->toolTip()) << text;
  }
  EXPECT_EQ(std::size(rows) + 1, std::size_t(labels.size()));  // and LabNewTable
}

TEST_F(ToolWindow, FramesAndOptionsHaveTheirCaptions) {
  QStringList frames;
  for (const QGroupBox* frame : Tools().findChildren<QGroupBox*>()) frames.append(frame->title());
  for (const char* caption :
       {"Add picture to page:", "  General page properties  ", "  Default font properties  ",
        " General Page Alignment ", " Page Alignment ", " Internal Horiz. Alignment ", " Internal Vert. Alignment "})
    EXPECT_EQ(1, frames.count(caption)) << caption;
  EXPECT_EQ("Add picture to page:", Tools().Frame1->title());
  struct Row {
    const ThreeOptions& options;
    const char* name;
    std::array<const char*, 3> captions;
    const char* frame;
  };
  const Row rows[] = {{Tools().OpBod, "OpBod", {"Left", "Center", "Right"}, " General Page Alignment "},
                      {Tools().OpH, "OpH", {"Left", "Center", "Right"}, " Page Alignment "},
                      {Tools().OpHTD, "OpHTD", {"Left", "Center", "Right"}, " Internal Horiz. Alignment "},
                      {Tools().OpVTD, "OpVTD", {"Top", "Center", "Bottom"}, " Internal Vert. Alignment "}};
  for (const Row& row : rows) {
    for (std::size_t i = 0; i < 3; ++i) {
      EXPECT_EQ(row.captions[i], row.options[i]->text());
      EXPECT_EQ(QString(row.name) + QString::number(i), row.options[i]->objectName());
      EXPECT_EQ(row.frame, qobject_cast<QGroupBox*>(row.options[i]->parentWidget())->title());
    }
  }
}

// Text that a control has no room for would be cut.
void ExpectRoomFor(const QWidget& control) {
  const auto* label = qobject_cast<const QLabel*>(&control);
  const QSize wanted =
      label && label->wordWrap() ? QSize(0, label->heightForWidth(label->width())) : control.minimumSizeHint();
  EXPECT_GE(control.width(), wanted.width()) << qPrintable(control.objectName()) << control.metaObject()->className();
  EXPECT_GE(control.height(), wanted.height()) << qPrintable(control.objectName()) << control.metaObject()->className();
}

TEST_F(ToolWindow, NothingIsCutOffWithAnyUsualFont) {
  const QFont before = QApplication::font();
  for (int points = 8; points <= 14; ++points) {
    QFont font = before;
    font.setPointSize(points);
    QApplication::setFont(font);
    for (int tool = 0; tool <= 4; ++tool) {
      SCOPED_TRACE(testing::Message() << "tool " << tool << ", " << points << " points");
      Tools().ShowTool(ToolTask(tool), "a.gif");
      run_.Settle();
      int seen = 0;
      for (const QWidget* control : Tools().FrTool[std::size_t(std::min(tool, 3))]->findChildren<QWidget*>()) {
        if (!control->isVisible() || qobject_cast<const SourceText*>(control->parentWidget())) continue;
        const bool hasText = qobject_cast<const QLabel*>(control) || qobject_cast<const QAbstractButton*>(control) ||
                             qobject_cast<const QComboBox*>(control) || qobject_cast<const QLineEdit*>(control) ||
                             qobject_cast<const QGroupBox*>(control);
        if (!hasText) continue;
        ++seen;
        ExpectRoomFor(*control);
        const QRect inWindow(control->mapTo(&Tools(), QPoint(0, 0)), control->size());
        EXPECT_TRUE(Tools().rect().contains(inWindow)) << qPrintable(control->objectName());
      }
      EXPECT_GE(seen, tool == 1 ? 3 : 10);
      // What is typed or chosen has room too, and no list stays as high as a larger font made it.
      for (const auto* numbers : {&Tools().TSpec[0], &Tools().TSpec[2], &Tools().TTable[0], &Tools().TTable[1]}) {
        const QLineEdit& box = **numbers;
        if (!box.isVisible()) continue;
        EXPECT_GE(box.width() - 8, box.fontMetrics().horizontalAdvance("12800"));
      }
      for (const QComboBox* list : Tools().findChildren<QComboBox*>())
        EXPECT_TRUE(!list->isVisible() || list->sizeHint().height() == list->height())
            << qPrintable(list->objectName());
    }
  }
  QApplication::setFont(before);
}

}  // namespace
