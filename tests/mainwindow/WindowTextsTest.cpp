// The main window's menus, tool strip and Work Window as they stand: names, texts, tips and places.
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QToolButton>

#include "FTools.h"
#include "ProgramFixture.h"
#include "Swatch.h"
#include "ToolButton.h"
#include "WorkWindow.h"

namespace {

class WindowTexts : public ProgramTest {
 protected:
  WindowTexts() { EXPECT_TRUE(run_.Start()); }
};

// Each entry as its name and its text, indented by two blanks a level.
void List(const QList<QAction*>& actions, int depth, QStringList& lines) {
  for (const QAction* action : actions) {
    const QString text = action->isSeparator() ? QStringLiteral("-") : action->text();
    lines.append(QString(2 * depth, u' ') + action->objectName() + QStringLiteral(": ") + text);
    if (action->menu()) List(action->menu()->actions(), depth + 1, lines);
  }
}

TEST_F(WindowTexts, TheMenusStandAsTheyAre) {
  static const char* const expected[] = {
      "mFile: &File",
      "  mOpenFile: &Open HTML File",
      "  mLineF2: -",
      "  mSavePageFil: &Save Current Page as HTML File",
      "  mSaveOneFile: Save Project as One &HTML File",
      "  mline2: -",
      "  mExit: E&xit",
      "mPage: &Page",
      "  mNewPage: &New",
      "  mSavePage: &Save Current",
      "  mDelPage: &Delete Current",
      "mProject: P&roject",
      "  mNewProject: &New",
      "  mOpenProject: &Open Saved Project",
      "  mSaveProject: &Save Current Project",
      "mEdit: &Edit",
      "  mCut: Cu&t",
      "  mCopy: &Copy",
      "  mPasteMain: &Paste...",
      "    mPaste0: &Cut/Copied Text",
      "    mPaste1: Cut/Copied &Element",
      "    mPaste2: Text From Clip&Board",
      "  mline11: -",
      "  mSelText: &With Selected Text...",
      "    mMakeTBlock: Make &Text Block",
      "    mApplyFont: Apply &Current Size, Face, Color",
      "  mAlignPic1: Align &Image",
      "    mAlign0: &Left",
      "    mAlign1: &Right",
      "    mAlign2: &Center",
      "  mTableProps1: Ta&ble Properties",
      "  mline12: -",
      "  mUndo: &Undo",
      "  mRedo: &Redo",
      "mView: &View",
      "  mViewSource: Page &Source",
      "  mline5: -",
      "  mRefresh: &Refresh",
      "mTools: &Tools",
      "  mPicEditor: Picture &Editor",
      "  mOpenIcoEd: &Icon Editor",
      "  mline6: -",
      "  mMakePack: &Create Web-Pack File",
      "  mEmail: E-&mail Current Page",
      "  mline1: -",
      "  mSettings: &Settings",
      "mThemesMain: T&hemes",
      "  mmtheme0: Rainbow",
      "  mmtheme1: Hearts",
      "  mmtheme2: Metallic",
      "  mmtheme3: Forest Green",
      "  mmtheme4: Ruby",
      "  mmtheme5: Deep Blue",
      "  mmtheme6: Outer Space",
      "  mTheme2: Stationery",
      "    mmthemeS0: Parchment",
      "    mmthemeS1: White Marble",
      "    mmthemeS2: Elegant - Linen",
      "    mmthemeS3: Elegant - Lilac",
      "    mmthemeS4: Elegant - Peach",
      "    mmthemeS5: Paper",
      "    mmthemeS6: Pink Pinstripe",
      "mHelpGen: &Help",
      "  mCVNHelp: &Corvane Help",
      "  mhline1: -",
      "  mAboutCVN: &About Corvane",
      "mPop: pop",
      "  mCutPop: Cu&t",
      "  mCopyPop: &Copy",
      "  mPasteP0: &Paste Cut/Copied Text",
      "  mPasteP1: Paste Cut/Copied &Element",
      "  mPasteP2: Paste Text From Clip&Board",
      "  mLine10: -",
      "  mSelTextP: &With Selected Text...",
      "    mMakeTBlockP: Make &Text Block",
      "    mApplyFontP: Apply &Current Size, Face, Color",
      "  mline6p: -",
      "  mAlignPic: Align &Image",
      "    mAlignP0: &Left",
      "    mAlignP1: &Right",
      "    mAlignP2: &Center",
      "  mTableProps: Ta&ble Properties",
      "mPop2: pop2",
      "  mPasteP20: &Paste Cut/Copied Text",
      "  mPasteP21: Paste Cut/Copied  &Element",
      "  mPasteP22: Paste Text From Clip&Board",
  };
  QStringList wanted;
  for (const char* line : expected) wanted.append(QString::fromLatin1(line));
  QList<QAction*> bar = Web().menuBar()->actions();
  // The quick tips have a test of their own.
  const auto tips =
      std::find_if(bar.begin(), bar.end(), [](QAction* menu) { return menu->objectName() == "mQuikTip"; });
  ASSERT_NE(tips, bar.end());
  EXPECT_EQ(bar.indexOf(*tips), 7);
  bar.erase(tips);
  QStringList found;
  List(bar, 0, found);
  EXPECT_EQ(wanted, found);
}

TEST_F(WindowTexts, TheMenuBarHasItsNineMenusAndHidesThePopups) {
  QStringList shown, hidden;
  for (const QAction* action : Web().menuBar()->actions()) (action->isVisible() ? shown : hidden) += action->text();
  EXPECT_EQ(shown,
            (QStringList{"&File", "&Page", "P&roject", "&Edit", "&View", "&Tools", "T&hemes", "&Quick Tips", "&Help"}));
  EXPECT_EQ(hidden, (QStringList{"pop", "pop2"}));
}

TEST_F(WindowTexts, StationeryIsAnEntryOfThemesAndNotOfTheBar) {
  QMenu* const themes = Web().findChild<QAction*>("mThemesMain")->menu();
  EXPECT_EQ(themes->actions().size(), 8);
  EXPECT_EQ(themes->actions().at(7)->text(), "Stationery");
  EXPECT_EQ(themes->actions().at(7)->menu()->actions().size(), 7);
}

TEST_F(WindowTexts, PasteElementHasTwoBlanksInTheMenuOfTheButtonAlone) {
  EXPECT_EQ(Web().findChild<QAction*>("mPasteP21")->text(), "Paste Cut/Copied  &Element");
  EXPECT_EQ(Web().findChild<QAction*>("mPasteP1")->text(), "Paste Cut/Copied &Element");
  EXPECT_EQ(Web().findChild<QAction*>("mPaste1")->text(), "Cut/Copied &Element");
}

TEST_F(WindowTexts, ToolsStandInTheirOrderWithTheirTips) {
  struct Row {
    std::size_t index;
    int left, top;  // pixels, of the place that the picture has; the button is 2 wider on each side
    const char* toolTip;
  };
  const Row rows[] = {
      {1, 4, 7, "New project."},       {2, 28, 7, "Open saved project"},       {0, 64, 7, "New page."},
      {3, 88, 7, "Save current page"}, {4, 112, 7, "Delete current page"},     {5, 149, 7, "Open Picture Editor"},
      {6, 173, 7, "Open Icon Editor"}, {7, 197, 7, "Send this page as email"}, {8, 221, 7, "Create web-pack file"}};
  for (const Row& row : rows) {
    const ToolButton& tool = *Web().ImTool[row.index];
    EXPECT_EQ(tool.toolTip(), row.toolTip);
    EXPECT_EQ(tool.objectName(), QString("ImTool%1").arg(row.index));
    EXPECT_EQ(tool.geometry(), QRect(row.left, row.top, 16, 16).adjusted(-2, -2, 2, 2)) << row.index;
    EXPECT_FALSE(tool.icon().isNull());
  }
}

TEST_F(WindowTexts, TheFontControlsStandInTheirPlaces) {
  struct Row {
    const char* name;
    int left, top, width, height;  // twips
    const char* text;
    const char* toolTip;
  };
  const Row rows[] = {
      {"Label1_3", 120, 120, 915, 195, "Cur. page", ""},
      {"BoxPage", 180, 360, 795, 315, "", "Current Page control."},
      {"Label1_0", 1320, 120, 2055, 195, "Font", ""},
      {"BoxFace", 1320, 360, 2175, 330, "", "Font face for selected text."},
      {"Label1_2", 3600, 120, 735, 195, "Size", ""},
      {"BoxSize", 3660, 360, 615, 330, "", "Font size for selected text."},
      {"Label1_4", 4440, 120, 615, 195, "Color", ""},
      {"BoxColor0", 4560, 360, 405, 315, "", "Text color for selected text."},
      {"Label1_1", 5160, 120, 735, 195, "Back col.", ""},
      {"BoxColor1", 5280, 360, 405, 315, "", "Background color for selected text."},
      {"bBold", 6000, 360, 315, 315, "B", "Selected text - toggle bold."},
  };
  for (const Row& row : rows) {
    const auto* control = Web().FrFont->findChild<QWidget*>(row.name);
    ASSERT_NE(nullptr, control) << row.name;
    EXPECT_EQ(control->geometry(), QRect(row.left / 15, row.top / 15, row.width / 15, row.height / 15)) << row.name;
    if (*row.text) {
      EXPECT_EQ(control->property("text").toString(), row.text);
    }
    if (*row.toolTip) {
      EXPECT_EQ(control->toolTip(), row.toolTip);
    }
  }
  const auto entries = [](const QComboBox& box) {
    QStringList texts;
    for (int i = 0; i < box.count(); ++i) texts.append(box.itemText(i));
    return texts;
  };
  QStringList pages;
  for (int page = 1; page <= 30; ++page) pages.append(QString::number(page));
  EXPECT_EQ(entries(*Web().BoxPage), pages);
  EXPECT_EQ(entries(*Web().BoxSize), pages.mid(0, 6));
  EXPECT_EQ(entries(*Web().BoxFace), (QStringList{"Arial, Helvetica", "Verdana, Arial, Helvetica", "Times New Roman",
                                                  "Comic Sans MS", "Courier New", "Tahoma"}));
  EXPECT_EQ(Web().BoxColor[1]->Color(), 0xFFFFFF);
}

TEST_F(WindowTexts, EveryButtonOfTheWorkWindowHasItsTipAndName) {
  const char* const tips[] = {"Cut selected text or element.",
                              "Copy selected text or element",
                              "Paste text or element from cut/copy operation",
                              "Add link.",
                              "Add picture to page.",
                              "Add table (rectangular area) to page.",
                              "Move selected item forward.",
                              "Move selected element to left.",
                              "Move selected element up.",
                              "Move selected element to right.",
                              "Move selected element down.",
                              "Move selected item back."};
  for (std::size_t i = 0; i < std::size(tips); ++i) {
    const QToolButton* const button = Web().FrWork->bSel[i];
    EXPECT_EQ(button->toolTip(), tips[i]);
    EXPECT_EQ(button->objectName(), QString("bSel%1").arg(i));
    EXPECT_FALSE(button->accessibleName().isEmpty());
    EXPECT_TRUE(button->parentWidget()->rect().contains(button->geometry()));
  }
}

TEST_F(WindowTexts, LabelsOfTheWorkWindowStandAsTheyAreAndApart) {
  const WorkWindow& work = *Web().FrWork;
  EXPECT_EQ(work.Frame1->title(), "Editing options:");
  EXPECT_EQ(work.FrSel->title(), " Move selected element: ");
  EXPECT_EQ(work.LabSel->text(), "Sel. switch places:");
  EXPECT_EQ(work.bProps->text(), "Page Properties");
  EXPECT_EQ(work.bProps->toolTip(), "Set page properties: Background, title, etc.");
  if (const QString folder = qEnvironmentVariable("CORVANE_PICTURES"); !folder.isEmpty())
    Web().FrWork->grab().save(folder + "/work-window.png");
  const std::pair<int, const char*> labels[] = {
      {1, "Copy"}, {2, "Paste"}, {3, "make link"}, {4, "add picture"}, {5, "table"}};
  for (const auto& [index, text] : labels) {
    const auto* label = work.findChild<QLabel*>(QString("Label2_%1").arg(index));
    ASSERT_NE(nullptr, label);
    EXPECT_EQ(label->text(), text);
    EXPECT_GE(label->width(), label->fontMetrics().horizontalAdvance(text))
        << text << QFontInfo(label->font()).pixelSize();
    const auto* before = work.findChild<QLabel*>(QString("Label2_%1").arg(index - 1));
    EXPECT_FALSE(label->geometry().intersects(before->geometry())) << text;
    EXPECT_TRUE(label->parentWidget()->rect().contains(label->geometry())) << text;
  }
}

TEST_F(WindowTexts, TheSettingsTakeTheToolWindowAway) {
  FTools& tools = *run_.modMain.Tools();
  tools.ShowTool(ToolTask::PageProperties, QString());
  ASSERT_TRUE(run_.Choose("mSettings"));
  EXPECT_FALSE(tools.isVisible());
  EXPECT_FALSE(tools.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
}

}  // namespace
