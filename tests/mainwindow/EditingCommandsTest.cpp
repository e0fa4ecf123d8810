// The main window's editing commands: font controls, Work Window, menus.
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QTimer>
#include <QToolButton>

#include "CaretBar.h"
#include "FTools.h"
#include "ProgramFixture.h"
#include "RealClicks.h"
#include "Serializer.h"
#include "Swatch.h"
#include "TreeBuilder.h"
#include "WorkWindow.h"

namespace {

class EditingCommands : public ProgramTest {
 protected:
  EditingCommands() { EXPECT_TRUE(run_.Start()); }

  void Page(const QString& body) { run_.browser->SetHtml(PageAround(body)); }
  HTMLElement Named(const QString& id) {
    return id.isEmpty() ? HTMLElement(View().WBDocument()->tree().bodyNode()) : ElementById(*View().WBDocument(), id);
  }
  QString Body() { return InnerHtml(View().WBDocument()->tree().bodyNode(), false); }

  void Fire(EventType type, const QString& id, int button = 1) {
    const BoundaryPoint end = BoundaryPoint::AtEnd(View().WBDocument()->tree().bodyNode());
    View().WBDocument()->Dispatch(HTMLEventObj(type).On(Named(id)).Button(button).Caret(end, QPoint(3, 4)));
  }
  void Click(const QString& id) {
    Fire(EventType::MouseDown, id);
    Fire(EventType::MouseUp, id);
    Fire(EventType::Click, id);
  }
  void DoubleClick(const QString& id) {
    Click(id);
    Fire(EventType::DoubleClick, id);
  }
  // As a drag over text in one element.
  void Select(const QString& id, int from, int to) {
    Fire(EventType::MouseDown, id);
    const Node* const text = TextOf(Named(id));
    ASSERT_TRUE(text);
    View().WBDocument()->selection().Mirror({BoundaryPoint::InText(text, from), BoundaryPoint::InText(text, to)});
    Fire(EventType::Click, id);
  }
  // The insertion point of the page itself, as a click leaves it.
  void PlaceCaret(const QString& id, int at) {
    const BoundaryPoint point = BoundaryPoint::InText(TextOf(Named(id)), at);
    View().WBDocument()->selection().Mirror({point, point});
  }

  void Press(int button) { Web().FrWork->bSel[std::size_t(button)]->click(); }
  bool IsOn(const char* entry) { return Web().findChild<QAction*>(entry)->isEnabled(); }
  void OpenEdit() { emit Web().findChild<QAction*>("mEdit")->menu()->aboutToShow(); }
  const ScriptedDialogs::Box& LastBox() { return run_.Dialogs().Boxes.last(); }
};

const QString two = "<font id=\"a\">one</font><font id=\"b\">two</font>";

// --- what a click shows

TEST_F(EditingCommands, AClickBringsTheFontControlsUpToDate) {
  Page("<font id='a' color='#010203' face='Courier New' size='5' style='background-color: #0A0B0C'>one</font>");
  PlaceCaret("a", 1);
  Click("a");
  EXPECT_EQ(Web().BoxColor[0]->Color(), 0x030201);
  EXPECT_EQ(Web().BoxColor[1]->Color(), 0x0C0B0A);
  EXPECT_EQ(Web().BoxFace->currentIndex(), 4);
  EXPECT_EQ(Web().BoxSize->currentIndex(), 4);
}

TEST_F(EditingCommands, FacesAreFoundByTheirFirstNameOrTheWholeList) {
  const std::pair<const char*, int> faces[] = {
      {"Arial", 0},  {"Arial, Helvetica", 0},         {"Verdana", 1}, {"Times New Roman", 2}, {"Comic Sans MS", 3},
      {"Tahoma", 5}, {"Verdana, Arial, Helvetica", 1}};
  for (const auto& [face, index] : faces) {
    Page(QString("<font id='a' face='%1'>one</font>").arg(face));
    PlaceCaret("a", 1);
    Click("a");
    EXPECT_EQ(Web().BoxFace->currentIndex(), index) << face;
  }
}

TEST_F(EditingCommands, AnUnknownFontOrSizeLeavesTheControlAsItIs) {
  Page("<font id='a' face='Courier New' size='5'>one</font><font id='b' face='Arial, Times' size='7'>two</font>");
  PlaceCaret("a", 1);
  Click("a");
  PlaceCaret("b", 1);
  Click("b");
  EXPECT_EQ(Web().BoxFace->currentIndex(), 4);
  EXPECT_EQ(Web().BoxSize->currentIndex(), 4);
}

// Meant in FWeb::OnClick: a click on a link leaves the font controls as they are.
TEST_F(EditingCommands, AClickOnALinkShowsTheBarButLeavesTheFontControls) {
  Page("<font color='#010203' size='6'><a id='l' href='x'>one</a></font>");
  PlaceCaret("l", 1);
  Click("l");
  EXPECT_FALSE(Web().FrCaret->isHidden());
  EXPECT_EQ(Web().BoxColor[0]->Color(), 0);
  EXPECT_EQ(Web().BoxSize->currentIndex(), 2);
}

TEST_F(EditingCommands, ASelectionLeavesTheFontControls) {
  Page("<font id='a' size='6'>one</font>");
  Select("a", 0, 2);
  EXPECT_EQ(Web().BoxSize->currentIndex(), 2);
}

// Meant in FWeb::MoveCaret: the caret bar stays where it is when the window or the page changes.
TEST_F(EditingCommands, TheBarStaysWhereItIsWhenTheWindowOrThePageChanges) {
  Page(two);
  Click("a");
  const QPoint place = Web().FrCaret->pos();
  ASSERT_FALSE(Web().FrCaret->isHidden());
  Web().showNormal();
  Web().resize(700, 500);
  run_.Settle();
  ASSERT_TRUE(run_.Choose("mNewPage"));
  EXPECT_EQ(Web().FrCaret->pos(), place);
  EXPECT_FALSE(Web().FrCaret->isHidden());
}

// --- the font controls

TEST_F(EditingCommands, FontControlsFormatTheSelectedText) {
  Page(two);
  Select("a", 0, 2);
  PickEntry(*Web().BoxFace, 3);
  PickEntry(*Web().BoxSize, 5);
  ClickOn(*Web().bBold);
  run_.Dialogs().Colors = {0x0000FF};
  Web().BoxColor[0]->click();
  run_.Dialogs().Colors = {0x00FF00};
  Web().BoxColor[1]->click();
  EXPECT_EQ(Body(),
            "<font id=\"a\"><font face=\"Comic Sans MS\" size=\"6\" color=\"#FF0000\" style=\"background-color: "
            "#00FF00;\"><b>on</b></font>e</font><font id=\"b\">two</font>");
  EXPECT_EQ(Web().BoxColor[0]->Color(), 0x0000FF);
  EXPECT_EQ(Web().BoxColor[1]->Color(), 0x00FF00);
}

TEST_F(EditingCommands, ACancelledColourChangesNothingButBlackDoes) {
  Page(two);
  Select("a", 0, 3);
  Web().BoxColor[1]->click();
  EXPECT_EQ(Body(), two);
  EXPECT_EQ(Web().BoxColor[1]->Color(), 0xFFFFFF);
  run_.Dialogs().Colors = {0};
  Web().BoxColor[1]->click();
  EXPECT_TRUE(Body().contains("background-color: #000000"));
}

TEST_F(EditingCommands, TheToolWindowOwnsTheColourDialogWhileItIsInView) {
  FTools& tools = *run_.modMain.Tools();
  for (const bool shown : {false, true, false}) {
    tools.setVisible(shown);
    run_.Dialogs().ColorQuestions.clear();
    Web().BoxColor[0]->click();
    ASSERT_EQ(run_.Dialogs().ColorQuestions.size(), 1);
    EXPECT_EQ(run_.Dialogs().ColorQuestions[0].owner,
              shown ? static_cast<QWidget*>(&tools) : static_cast<QWidget*>(&Web()));
  }
}

TEST_F(EditingCommands, ListsSetByCodeFormatNothing) {
  Page(two);
  Select("a", 0, 3);
  Web().BoxFace->setCurrentIndex(4);
  Web().BoxSize->setCurrentIndex(0);
  EXPECT_EQ(Body(), two);
}

// Meant in FWeb::mMakeTBlock: a text block is made by giving the text the colour that it has already.
TEST_F(EditingCommands, ATextBlockIsMadeByTheColourThatTheTextHasAlready) {
  Page("<font id='a'>one</font>");
  View().SetBodyFontColor("#112233");
  Select("a", 0, 2);
  ASSERT_TRUE(run_.Choose("mMakeTBlock"));
  EXPECT_EQ(Body(), "<font id=\"a\"><font color=\"#112233\">on</font>e</font>");
}

TEST_F(EditingCommands, ApplyFontTakesFaceSizeAndColourOfTheControls) {
  Page("<font id='a'>one</font>");
  Web().BoxFace->setCurrentIndex(5);
  Web().BoxSize->setCurrentIndex(1);
  Web().BoxColor[0]->SetColor(0x332211);
  Select("a", 0, 2);
  ASSERT_TRUE(run_.Choose("mApplyFontP"));
  EXPECT_EQ(Body(), "<font id=\"a\"><font face=\"Tahoma\" size=\"2\" color=\"#112233\">on</font>e</font>");
}

// --- the Work Window

// Meant in FWeb::OnDoubleClick: only a double click switches the buttons that move an element.
TEST_F(EditingCommands, TheMovingButtonsAreSwitchedByADoubleClickAlone) {
  Page(two + "<img id='i'><table><tr><td id='c'><font>x</font></td></tr></table>");
  const auto on = [&] { return Web().FrWork->FrSel->isEnabled() && Web().FrWork->LabSel->isEnabled(); };
  EXPECT_FALSE(on());
  EXPECT_FALSE(Web().FrWork->bSel[9]->isEnabled());
  DoubleClick("a");
  EXPECT_TRUE(on());
  Click("b");
  EXPECT_TRUE(on()) << "a plain click leaves them";
  DoubleClick("c");
  EXPECT_FALSE(on()) << "a table can't be moved from here";
  DoubleClick("i");
  EXPECT_TRUE(on());
  DoubleClick("");
  EXPECT_FALSE(on());
}

TEST_F(EditingCommands, ButtonsCutCopyAndMove) {
  Page(two);
  DoubleClick("a");
  Press(6);
  EXPECT_EQ(Body(), "<font id=\"b\">two</font><font id=\"a\">one</font>");
  DoubleClick("a");
  Press(11);
  EXPECT_EQ(Body(), two);
  DoubleClick("b");
  Press(9);
  EXPECT_EQ(Body(), "<font id=\"a\">one</font>&nbsp;<font id=\"b\">two</font>");
  Press(7);
  EXPECT_EQ(Body(), two);
  Press(10);
  EXPECT_EQ(Body(), "<font id=\"a\">one</font><br /><font id=\"b\">two</font>");
  Press(8);
  EXPECT_EQ(Body(), two);
  Press(1);
  Press(0);
  EXPECT_EQ(Body(), "<font id=\"a\">one</font>");
  EXPECT_TRUE(View().HasTagClip());
  EXPECT_EQ(run_.Dialogs().Boxes.size(), 0);
}

TEST_F(EditingCommands, MovesThatCantBeMadeTellWhy) {
  Page(two);
  DoubleClick("a");
  Press(11);
  EXPECT_EQ(LastBox().text, StringText(111));
  EXPECT_EQ(LastBox().icon, MessageIcon::None);
  Page("<font id='a'>one</font><table id='t'><tr><td id='c'><font>x</font></td></tr></table>");
  DoubleClick("a");
  DoubleClick("c");
  Web().FrWork->FrSel->setEnabled(true);
  Press(6);
  EXPECT_EQ(LastBox().text, StringText(110));
}

// Meant in FWeb::bSel: moving back with nothing current is told with another icon than moving forward.
TEST_F(EditingCommands, BackNeedsACurrentElementAndTellsOtherwiseThanForward) {
  Page("<p id='p'>x</p><font id='a'>one</font>");
  DoubleClick("a");
  Click("p");
  Press(7);
  EXPECT_EQ(LastBox().text, StringText(108));
  EXPECT_EQ(LastBox().icon, MessageIcon::Information);
  Press(6);
  EXPECT_EQ(LastBox().text, StringText(108));
  EXPECT_EQ(LastBox().icon, MessageIcon::None);
  Press(11);
  EXPECT_EQ(LastBox().icon, MessageIcon::Information);
}

TEST_F(EditingCommands, ADoubleClickThenAClickThenForwardTellsThatNothingIsSelected) {
  Page(two);
  DoubleClick("a");
  Click("b");
  Press(6);
  EXPECT_EQ(LastBox().text, StringText(108));
  EXPECT_EQ(Body(), two);
}

TEST_F(EditingCommands, ALinkNeedsSelectedText) {
  Page(two);
  Click("a");
  Press(3);
  EXPECT_EQ(LastBox().text, StringText(113));
  EXPECT_EQ(LastBox().icon, MessageIcon::Information);
  EXPECT_TRUE(run_.Dialogs().Questions.isEmpty());
}

// Meant in FWeb::AddLink: the address that the question about a link offers is taken as an answer.
TEST_F(EditingCommands, TheOfferedAddressIsAValidAnswer) {
  Page(two);
  Select("a", 0, 3);
  Answer({}, {"http://"});
  Press(3);
  const ScriptedDialogs::Question& asked = run_.Dialogs().Questions.last();
  EXPECT_EQ(asked.prompt, "Enter URL for link.");
  EXPECT_EQ(asked.title, "Create Link");
  EXPECT_EQ(asked.given, "http://");
  EXPECT_EQ(Body(), "<font id=\"a\"><a href=\"http://\">one</a></font><font id=\"b\">two</font>");
}

TEST_F(EditingCommands, AnAddressIsTakenAsItWasTyped) {
  Page(two);
  Select("a", 0, 3);
  Answer({}, {"  My Page.html "});
  Press(3);
  EXPECT_EQ(Body(), "<font id=\"a\"><a href=\"  My Page.html \">one</a></font><font id=\"b\">two</font>");
}

TEST_F(EditingCommands, ACancelledLinkChangesNothing) {
  Page(two);
  Select("a", 0, 3);
  Answer({}, {""});
  Press(3);
  EXPECT_EQ(Body(), two);
}

TEST_F(EditingCommands, WhileBusyTheButtonsDoNothing) {
  Page(two);
  DoubleClick("a");
  Web().Busy = true;
  for (int button = 0; button < 12; ++button) Press(button);
  Web().BoxColor[0]->click();
  EXPECT_EQ(Body(), two);
  EXPECT_TRUE(run_.Dialogs().Boxes.isEmpty());
}

// --- menus by what there is

TEST_F(EditingCommands, NothingSelectedDisablesWhatNeedsASelection) {
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

TEST_F(EditingCommands, EntriesGoByWhatIsSelectedAndCopied) {
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

TEST_F(EditingCommands, AlignAndTablePropertiesGoByTheTagOfTheLastClick) {
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

TEST_F(EditingCommands, ThePasteMenuNeedsAClipAndAnInsertionPointForTextAndAClipForAnElement) {
  Page(two);
  QGuiApplication::clipboard()->clear();
  const auto open = [&] {
    bool shown = false;
    QTimer::singleShot(0, Web().mPop2, [&] {
      shown = Web().mPop2->isVisible();
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

TEST_F(EditingCommands, BothPopupsComeUpCentredOnTheMouse) {
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

TEST_F(EditingCommands, WhileBusyARightClickBringsNoPopup) {
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

TEST_F(EditingCommands, TheRightClickHidesTheBarAndTypingGoesOn) {
  Page(two);
  Click("a");
  emit View().RightClick();
  EXPECT_TRUE(Web().FrCaret->isHidden());
  run_.browser->KeyUp('X');
  EXPECT_TRUE(Body().contains("x"));
}

TEST_F(EditingCommands, AlignSetsTheAttributeOfAPicture) {
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

TEST_F(EditingCommands, TablePropertiesFindTheTableOfACellAndNothingForAPageOfNone) {
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

TEST_F(EditingCommands, ACellMoreThanThreeStepsBelowItsTableHasNoTableProperties) {
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
TEST_F(EditingCommands, TablePropertiesAreOnForACellWithoutACurrentElementAndDoNothing) {
  Page("<table id='t'><tr><td id='c'>x</td></tr></table>");
  QSignalSpy asked(&Web(), &FWeb::TablePropsRequested);
  Click("c");
  emit View().RightClick();
  EXPECT_TRUE(IsOn("mTableProps"));
  ASSERT_TRUE(run_.Choose("mTableProps"));
  EXPECT_EQ(asked.count(), 0);
}

TEST_F(EditingCommands, PasteEntriesPasteByTheirPlace) {
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

TEST_F(EditingCommands, HelpIsHandedToTheDesktopOrMissed) {
  ASSERT_TRUE(run_.Choose("mCVNHelp"));
  EXPECT_EQ(LastBox().text, StringText(145));
  EXPECT_EQ(LastBox().icon, MessageIcon::Information);
}

TEST_F(EditingCommands, TheDesktopGetsACopyOfTheHelpFileAsItIsNow) {
  const QByteArray was = qgetenv("TMPDIR");
  ASSERT_TRUE(QDir().mkpath(run_.test.Path("temp")));
  qputenv("TMPDIR", QFile::encodeName(run_.test.Path("temp")));
  RecordingShell& shell = run_.test.platform.shell;
  for (const char* help : {"old help", "new help"}) {
    ASSERT_TRUE(PutFile(run_.PathInApp("cvn2.hlp"), help));
    shell.Opened.clear();
    ASSERT_TRUE(run_.Choose("mCVNHelp"));
    ASSERT_EQ(shell.Opened.size(), 1);
    EXPECT_EQ(FileBytes(shell.Opened[0].file), help);
    EXPECT_TRUE(shell.Opened[0].file.endsWith(".html"));
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
  if (was.isNull())
    qunsetenv("TMPDIR");
  else
    qputenv("TMPDIR", was);
}

TEST_F(EditingCommands, EntriesForOtherWindowsShowThem) {
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
