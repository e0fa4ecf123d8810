// The editing commands of the menus, by what there is to edit.
#include <QApplication>
#include <QClipboard>
#include <QTimer>

#include "CaretBar.h"
#include "EditingFixture.h"
#include "TreeBuilder.h"

namespace {

using EditingMenus = EditingCommands;

// --- menus by what there is

TEST_F(EditingMenus, NothingSelectedDisablesWhatNeedsASelection) {
  Page("<p id='p'>x</p>");
  QGuiApplication::clipboard()->clear();
  emit View().RightClick();
  for (const char* entry :
       {"mCutPop", "mCopyPop", "mSelTextP", "mAlignPic", "mTableProps", "mPasteP0", "mPasteP1", "mPasteP2"})
    EXPECT_FALSE(IsOn(entry)) << entry;
  OpenEdit();
  for (const char* entry : {"mCut", "mCopy", "mSelText", "mAlignPic1", "mTableProps1", "mPaste0", "mPaste1", "mPaste2"})
    EXPECT_FALSE(IsOn(entry)) << entry;
}

TEST_F(EditingMenus, EntriesGoByWhatIsSelectedAndCopied) {
  Page(two);
  QGuiApplication::clipboard()->setText("x");
  Select("a", 0, 2);
  OpenEdit();
  EXPECT_TRUE(IsOn("mCut") && IsOn("mCopy") && IsOn("mSelText") && IsOn("mPaste2"));
  EXPECT_FALSE(IsOn("mPaste0") || IsOn("mPaste1"));
  ASSERT_TRUE(run_.Choose("mCopy"));
  OpenEdit();
  EXPECT_TRUE(IsOn("mPaste0"));
  DoubleClick("a");
  ASSERT_TRUE(run_.Choose("mCopyPop"));
  emit View().RightClick();
  EXPECT_TRUE(IsOn("mCutPop") && IsOn("mPasteP1"));
  EXPECT_FALSE(IsOn("mSelTextP")) << "an element isn't text";
  EXPECT_FALSE(IsOn("mPasteP0")) << "there is no insertion point";
}

TEST_F(EditingMenus, AlignAndTablePropertiesGoByTheTagOfTheLastClick) {
  Page("<img id='i'><table id='t'><tr id='r'><td id='c'>x</td></tr></table>");
  struct Row {
    const char* id;
    bool align, table;
  };
  for (const Row& row : {Row{"i", true, false}, Row{"c", false, true}, Row{"t", false, true}, Row{"r", false, false},
                         Row{"", false, false}}) {
    Click(row.id);
    emit View().RightClick();
    EXPECT_EQ(IsOn("mAlignPic"), row.align) << row.id;
    EXPECT_EQ(IsOn("mTableProps"), row.table) << row.id;
  }
}

TEST_F(EditingMenus, ThePasteMenuNeedsAClipAndAnInsertionPointForTextAndAClipForAnElement) {
  Page(two);
  QGuiApplication::clipboard()->clear();
  const auto open = [&] {
    bool shown = false;
    QTimer::singleShot(0, Web().mPop2, [&] {
      shown = Web().mPop2->isVisible();
      EXPECT_TRUE(Web().Busy) << "as long as the menu is open";
      Web().mPop2->close();
    });
    Press(2);
    EXPECT_TRUE(shown);
  };
  open();
  EXPECT_FALSE(IsOn("mPasteP20") || IsOn("mPasteP21") || IsOn("mPasteP22"));
  Select("a", 0, 3);
  View().Copy();
  open();
  EXPECT_TRUE(IsOn("mPasteP20"));
  View().SetCurrentTextRange(nullptr);
  open();
  EXPECT_FALSE(IsOn("mPasteP20"));
  DoubleClick("a");
  View().Copy();
  Click("b");
  View().SetCurrentTextRange(nullptr);
  open();
  EXPECT_TRUE(IsOn("mPasteP21"));
  EXPECT_FALSE(Web().Busy);
}

TEST_F(EditingMenus, BothPopupsComeUpCentredOnTheMouse) {
  Page(two);
  Web().showNormal();
  for (const QPoint mouse : {QPoint(400, 300), QPoint(333, 201)}) {
    QCursor::setPos(mouse);
    Fire(EventType::MouseDown, "a", 2);
    Fire(EventType::MouseUp, "a", 2);
    EXPECT_TRUE(Web().mPop->isVisible());
    EXPECT_NEAR(mouse.x(), Web().mPop->x() + Web().mPop->width() / 2.0, 1);
    EXPECT_EQ(mouse.y(), Web().mPop->y());
    EXPECT_GT(Web().mPop->width(), 60);
    EXPECT_FALSE(Web().mPop2->isVisible());
    Web().mPop->close();
    QRect place;
    QTimer::singleShot(0, Web().mPop2, [&] {
      if (Web().mPop2->isVisible()) place = Web().mPop2->geometry();
      EXPECT_FALSE(Web().mPop->isVisible());
      Web().mPop2->close();
    });
    Press(2);
    EXPECT_NEAR(mouse.x(), place.x() + place.width() / 2.0, 1);
    EXPECT_EQ(mouse.y(), place.y());
    EXPECT_GT(place.width(), 60);
  }
}

TEST_F(EditingMenus, WhileBusyARightClickBringsNoPopup) {
  Page(two);
  Web().Busy = true;
  Fire(EventType::MouseUp, "a", 2);
  EXPECT_FALSE(Web().mPop->isVisible());
  Web().Busy = false;
  Fire(EventType::MouseUp, "a", 1);
  EXPECT_FALSE(Web().mPop->isVisible()) << "the other button";
  Fire(EventType::MouseUp, "a", 2);
  EXPECT_TRUE(Web().mPop->isVisible());
  Web().mPop->close();
}

TEST_F(EditingMenus, TheMenuOfARightClickLeavesTheProgramFree) {
  Page(two);
  Fire(EventType::MouseUp, "a", 2);
  ASSERT_TRUE(Web().mPop->isVisible());
  EXPECT_FALSE(Web().Busy);
  Web().mPop->close();
}

TEST_F(EditingMenus, TheRightClickHidesTheBarAndTypingGoesOn) {
  Page(two);
  Click("a");
  emit View().RightClick();
  EXPECT_TRUE(Web().FrCaret->isHidden());
  run_.browser->KeyUp('X');
  EXPECT_TRUE(Body().contains("x"));
}

TEST_F(EditingMenus, AlignSetsTheAttributeOfAPicture) {
  Page("<img id='i'>" + two);
  const char* const values[] = {"left", "right", "center"};
  for (int i = 0; i < 3; ++i) {
    Click("i");
    ASSERT_TRUE(run_.Choose(QString("mAlign%1").arg(i)));
    EXPECT_EQ(Named("i").getAttribute("align"), values[i]);
  }
  Click("a");
  ASSERT_TRUE(run_.Choose("mAlignP0"));
  EXPECT_EQ(Named("a").getAttribute("align"), "");
}

TEST_F(EditingMenus, TablePropertiesFindTheTableOfACellAndNothingForAPageOfNone) {
  Page("<table id='t'><tr id='r'><td id='c'><font id='f'>x</font></td></tr></table>");
  QSignalSpy asked(&Web(), &FWeb::TablePropsRequested);
  // A click beside the text of a cell that has a FONT makes the FONT current, so the cell is set by hand.
  for (const char* id : {"t", "r", "c"}) {
    View().SetCurrentElement(Named(id));
    // The entry is off for a row, the command itself isn't.
    EXPECT_EQ(*id != 'r', run_.Choose("mTableProps1"));
    if (*id == 'r') Web().mTableProps();
    ASSERT_EQ(asked.count(), 1) << id;
    EXPECT_EQ(asked.takeFirst().at(0).value<HTMLElement>().id(), "t");
  }
  View().SetCurrentElement(Named("f"));
  ASSERT_TRUE(run_.Choose("mTableProps"));
  EXPECT_EQ(asked.count(), 0);
}

TEST_F(EditingMenus, ACellMoreThanThreeStepsBelowItsTableHasNoTableProperties) {
  Page("<table id='t'><tr id='r'><td id='c'>x</td></tr></table>");
  // No parser makes such a tree, so it is built by hand.
  HTMLDocument& document = *View().WBDocument();
  const Node* const row = Named("r").node();
  const Node* const body = row->parent();
  Node* const between = TreeBuilder::Element(Tag::Of("div"));
  document.gateway().Insert(body, nullptr, between);
  document.gateway().Insert(between, nullptr, document.gateway().Take(row));
  QSignalSpy asked(&Web(), &FWeb::TablePropsRequested);
  View().SetCurrentElement(Named("c"));
  ASSERT_TRUE(run_.Choose("mTableProps"));
  EXPECT_EQ(asked.count(), 0);
  // A row is one step nearer and still finds it.
  View().SetCurrentElement(Named("r"));
  ASSERT_TRUE(run_.Choose("mTableProps"));
  EXPECT_EQ(asked.count(), 1);
}

// Meant in FWeb::mTableProps: the table's properties can be asked for where nothing is current, and nothing happens.
TEST_F(EditingMenus, TablePropertiesAreOnForACellWithoutACurrentElementAndDoNothing) {
  Page("<table id='t'><tr><td id='c'>x</td></tr></table>");
  QSignalSpy asked(&Web(), &FWeb::TablePropsRequested);
  Click("c");
  emit View().RightClick();
  EXPECT_TRUE(IsOn("mTableProps"));
  ASSERT_TRUE(run_.Choose("mTableProps"));
  EXPECT_EQ(asked.count(), 0);
}

TEST_F(EditingMenus, PasteEntriesPasteByTheirPlace) {
  Page(two);
  QGuiApplication::clipboard()->setText("sys");
  Select("a", 0, 1);
  View().Copy();
  DoubleClick("b");
  View().Copy();
  Click("");
  ASSERT_TRUE(run_.Choose("mPasteP22"));
  EXPECT_TRUE(Body().endsWith("sys")) << qPrintable(Body());
  ASSERT_TRUE(run_.Choose("mPaste0"));
  EXPECT_TRUE(Body().endsWith("syso")) << qPrintable(Body());
  Click("a");
  ASSERT_TRUE(run_.Choose("mPasteP1"));
  EXPECT_TRUE(Body().startsWith("<font id=\"a\">one</font><font id=\"b\">two</font><font id=\"b\">"));
}

// --- other windows

TEST_F(EditingMenus, HelpIsHandedToTheDesktopOrMissed) {
  ASSERT_TRUE(run_.Choose("mCVNHelp"));
  EXPECT_EQ(LastBox().text, StringText(145));
  EXPECT_EQ(LastBox().icon, MessageIcon::Information);
}

TEST_F(EditingMenus, TheDesktopGetsACopyOfTheHelpFileAsItIsNow) {
  RecordingShell& shell = run_.test.platform.shell;
  for (const char* help : {"old help", "new help"}) {
    ASSERT_TRUE(PutFile(run_.PathInApp("cvn2.hlp"), help));
    shell.Opened.clear();
    ASSERT_TRUE(run_.Choose("mCVNHelp"));
    ASSERT_EQ(shell.Opened.size(), 1);
    EXPECT_EQ(FileBytes(shell.Opened[0].file), help);
    EXPECT_EQ(shell.Opened[0].file, run_.PathInApp("corvane-help.html"));  // where nobody else has one
  }
  EXPECT_EQ(run_.Dialogs().Boxes.size(), 0);
  for (const auto& [result, boxes] : {std::pair{33, 0}, {32, 0}, {31, 1}}) {
    run_.Dialogs().Boxes.clear();
    shell.OpenResult = result;
    ASSERT_TRUE(run_.Choose("mCVNHelp"));
    ASSERT_EQ(run_.Dialogs().Boxes.size(), boxes) << result;
  }
  EXPECT_EQ(LastBox().text, "Error opening the help file. Try to open cvn2.hlp directly from the program folder.");
  EXPECT_EQ(LastBox().icon, MessageIcon::Information);
}

TEST_F(EditingMenus, EntriesForOtherWindowsShowThem) {
  for (const auto& [entry, window] : {std::pair{"mSettings", "FSets"},
                                      {"mAboutCVN", "FSplash"},
                                      {"mQuik3", "FTip"},
                                      {"mPicEditor", "FPic"},
                                      {"mOpenIcoEd", "fIconMaker"}}) {
    ASSERT_TRUE(run_.Choose(entry));
    bool shown = false;
    for (const QWidget* widget : QApplication::topLevelWidgets())
      shown = shown || (widget->objectName() == window && widget->isVisible());
    EXPECT_TRUE(shown) << window;
  }
}

}  // namespace
