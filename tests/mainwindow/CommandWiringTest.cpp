// Every entry of the menus, every tool and every button of the Work Window, clicked where it stands, and all that comes
// of it: what is asked and told, which windows come up, and what becomes of page, files and clips.
#include <QClipboard>
#include <QLabel>
#include <QMetaMethod>
#include <QTimer>
#include <QToolButton>
#include <memory>
#include <string>
#include <vector>

#include "FWebTables.h"
#include "FoldersFixture.h"
#include "RealClicks.h"
#include "Serializer.h"
#include "ToolButton.h"
#include "WorkWindow.h"

namespace {

// What the user has done before the click.
enum class With { Nothing, Point, Text, Block, Picture, Table, Change, Undone };

struct Wire {
  const char* name;
  With with;
  const char* outcome;  // see Outcome()
};

// The page's three parts; an outcome tells them as [a], [i] and [t].
const QString blockHtml = QStringLiteral("<font id=\"a\">one</font>");
const QString pictureHtml = QStringLiteral("<img id=\"i\" src=\"far/p.gif\" />");
const QString tableHtml =
    QStringLiteral("<table id=\"t\"><tbody><tr><td><font id=\"f\">x</font></td></tr></tbody></table>");

constexpr Wire kEntries[] = {
    {"mOpenFile", With::Nothing, "asks Select HTML file"},
    {"mSavePageFil", With::Nothing, "asks Save Text to File"},
    {"mSaveOneFile", With::Nothing, "asks Save Project as One HTML File"},
    {"mExit", With::Nothing, "ExitRequested() | says Do you want to save this project before closing?"},
    {"mNewPage", With::Nothing, "page 2 | file card/Page2.html | file card/wgcard.html | shows "},
    {"mSavePage", With::Nothing, "file card/wgcard.html"},
    {"mDelPage", With::Nothing, "shows "},
    {"mNewProject", With::Nothing,
     "says This will discard current work if not already saved as a saved project. Proceed?"},
    {"mOpenProject", With::Nothing, "says There are no saved projects."},
    {"mSaveProject", With::Nothing, "asks Save Project | file saved/"},
    {"mCut", With::Text, "shows <font id=\"a\">e</font>[i][t] | clip on"},
    {"mCopy", With::Text, "clip on"},
    {"mPaste0", With::Point, "shows [a][i][t]o"},
    {"mPaste1", With::Point, "shows [a][i][i][t]"},
    {"mPaste2", With::Point, "shows [a][i][t]sys"},
    {"mMakeTBlock", With::Text, "shows <font id=\"a\"><font color=\"#000000\">on</font>e</font>[i][t]"},
    {"mApplyFont", With::Text,
     "shows <font id=\"a\"><font face=\"Arial, Helvetica\" size=\"3\" color=\"#000000\">on</font>e</font>[i][t]"},
    {"mAlign0", With::Picture, "shows [a]<img id=\"i\" src=\"far/p.gif\" align=\"left\" />[t]"},
    {"mAlign1", With::Picture, "shows [a]<img id=\"i\" src=\"far/p.gif\" align=\"right\" />[t]"},
    {"mAlign2", With::Picture, "shows [a]<img id=\"i\" src=\"far/p.gif\" align=\"center\" />[t]"},
    {"mTableProps1", With::Table, "TablePropsRequested(t) | window FTools"},
    {"mUndo", With::Change, "shows [a][i][t]"},
    {"mRedo", With::Undone, "shows [a][t]"},
    {"mViewSource", With::Nothing, "SourceRequested() | window FTools"},
    {"mRefresh", With::Nothing, "file card/wgcard.html | shows [a]<img id=\"i\" src=\"p.gif\" />[t]"},
    {"mPicEditor", With::Nothing, "PicEditorRequested() | window FPic"},
    {"mOpenIcoEd", With::Nothing, "HideToolsRequested() | IconEditorRequested() | window fIconMaker"},
    {"mMakePack", With::Nothing, "HideToolsRequested() | OpsRequested(0) | window FOps | file card/wgcard.html"},
    {"mEmail", With::Nothing, "OpsRequested(2) | window FOps | file card/wgcard.html"},
    {"mSettings", With::Nothing, "HideToolsRequested() | SettingsRequested() | window FSets"},
    {"mmtheme0", With::Nothing, "PageTextColorChanged(16711680) | file card/rainbow.jpg | back rainbow.jpg #0000FF"},
    {"mmtheme1", With::Nothing,
     "PageTextColorChanged(8388863) | file card/heart.jpg | file card/hearttop.gif | back heart.jpg #FF0080 | shows "
     "[a][i][t]<img src=\"hearttop.gif\" id=\"heartpic\" width=\"400\" height=\"80\" align=\"center\" />"},
    {"mmtheme2", With::Nothing, "PageTextColorChanged(8281942) | file card/silver.jpg | back silver.jpg #565F7E"},
    {"mmtheme3", With::Nothing, "PageTextColorChanged(15660025) | file card/forest.jpg | back forest.jpg #F9F3EE"},
    {"mmtheme4", With::Nothing, "PageTextColorChanged(16777215) | file card/ruby.jpg | back ruby.jpg #FFFFFF"},
    {"mmtheme5", With::Nothing, "PageTextColorChanged(16765094) | file card/deepblue.jpg | back deepblue.jpg #A6D0FF"},
    {"mmtheme6", With::Nothing, "PageTextColorChanged(16777215) | file card/stars.jpg | back stars.jpg #FFFFFF"},
    {"mmthemeS0", With::Nothing,
     "PageTextColorChanged(6554173) | file card/parchment.jpg | back parchment.jpg #3D0264"},
    {"mmthemeS1", With::Nothing, "PageTextColorChanged(8281942) | file card/white.jpg | back white.jpg #565F7E"},
    {"mmthemeS2", With::Nothing, "PageTextColorChanged(8096422) | file card/brocade.jpg | back brocade.jpg #A68A7B"},
    {"mmthemeS3", With::Nothing, "PageTextColorChanged(7733575) | file card/brocblue.jpg | back brocblue.jpg #470176"},
    {"mmthemeS4", With::Nothing, "PageTextColorChanged(4194676) | file card/brocred.jpg | back brocred.jpg #740140"},
    {"mmthemeS5", With::Nothing, "PageTextColorChanged(8096422) | file card/paper.jpg | back paper.jpg #A68A7B"},
    {"mmthemeS6", With::Nothing, "PageTextColorChanged(5898353) | file card/pink.jpg | back pink.jpg #71005A"},
    {"mQuik0", With::Nothing, "TipRequested(0,What can I do with Corvane?) | window FTip"},
    {"mQuik1", With::Nothing, "TipRequested(1,What can I do with webpages?) | window FTip"},
    {"mQuik2", With::Nothing, "TipRequested(2,How do I start?) | window FTip"},
    {"mQuik3", With::Nothing, "TipRequested(3,What is the Work Window?) | window FTip"},
    {"mQuik4", With::Nothing, "TipRequested(4,What are Themes?) | window FTip"},
    {"mQuik5", With::Nothing, "TipRequested(5,How do I change the background?) | window FTip"},
    {"mQuik6", With::Nothing, "TipRequested(6,How do I change text?) | window FTip"},
    {"mQuik7", With::Nothing, "TipRequested(7,How do I add or remove pictures?) | window FTip"},
    {"mQuik8", With::Nothing, "TipRequested(8,What is a table?) | window FTip"},
    {"mQuik9", With::Nothing, "TipRequested(9,How do I control the page layout?) | window FTip"},
    {"mQuik10", With::Nothing, "TipRequested(10,How do I email a page?) | window FTip"},
    {"mQuik11", With::Nothing, "TipRequested(11,How do I make a package?) | window FTip"},
    {"mCVNHelp", With::Nothing, "says The help file is missing. cvn2.hlp should be in the CVN program folder."},
    {"mAboutCVN", With::Nothing, "AboutRequested() | window FSplash"},
    {"mCutPop", With::Text, "shows <font id=\"a\">e</font>[i][t] | clip on"},
    {"mCopyPop", With::Text, "clip on"},
    {"mPasteP0", With::Point, "shows [a][i][t]o"},
    {"mPasteP1", With::Point, "shows [a][i][i][t]"},
    {"mPasteP2", With::Point, "shows [a][i][t]sys"},
    {"mMakeTBlockP", With::Text, "shows <font id=\"a\"><font color=\"#000000\">on</font>e</font>[i][t]"},
    {"mApplyFontP", With::Text,
     "shows <font id=\"a\"><font face=\"Arial, Helvetica\" size=\"3\" color=\"#000000\">on</font>e</font>[i][t]"},
    {"mAlignP0", With::Picture, "shows [a]<img id=\"i\" src=\"far/p.gif\" align=\"left\" />[t]"},
    {"mAlignP1", With::Picture, "shows [a]<img id=\"i\" src=\"far/p.gif\" align=\"right\" />[t]"},
    {"mAlignP2", With::Picture, "shows [a]<img id=\"i\" src=\"far/p.gif\" align=\"center\" />[t]"},
    {"mTableProps", With::Table, "TablePropsRequested(t) | window FTools"},
    {"mPasteP20", With::Point, "shows [a][i][t]o"},
    {"mPasteP21", With::Point, "shows [a][i][i][t]"},
    {"mPasteP22", With::Point, "shows [a][i][t]sys"},
};

// The entry that does the same, by the tool's index.
constexpr const char* kToolEntries[] = {"mNewPage",   "mNewProject", "mOpenProject", "mSavePage", "mDelPage",
                                        "mPicEditor", "mOpenIcoEd",  "mEmail",       "mMakePack"};

constexpr Wire kButtons[] = {
    {"bSel0", With::Text, "shows <font id=\"a\">e</font>[i][t] | clip on"},
    {"bSel1", With::Text, "clip on"},
    {"bSel3", With::Text, "asks Create Link"},
    {"bSel4", With::Nothing, "AddPictureRequested() | asks Select Picture"},
    {"bSel5", With::Nothing, "ToolRequested(3,) | window FTools"},
    {"bSel6", With::Block, "shows [i][a][t]"},
    {"bSel7", With::Block, ""},
    {"bSel8", With::Block, ""},
    {"bSel9", With::Block, "shows &nbsp;[a][i][t]"},
    {"bSel10", With::Block, "shows <br />[a][i][t]"},
    {"bSel11", With::Block, "says No suitable element found (text block or image) to switch with."},
    {"bProps", With::Nothing, "PagePropsRequested() | window FTools"},
};

const char* OutcomeOf(const char* entry) {
  for (const Wire& wire : kEntries)
    if (QLatin1String(wire.name) == QLatin1String(entry)) return wire.outcome;
  return "<unknown>";
}

// One program for one click.
class Command : public FoldersTest {
 public:
  void TestBody() override {}

  // Of the page "o" and the picture have been copied, and "sys" is in the system's clipboard.
  explicit Command(With with) {
    for (const char* name : {"rainbow.jpg", "heart.jpg", "silver.jpg", "forest.jpg", "ruby.jpg", "deepblue.jpg",
                             "stars.jpg", "parchment.jpg", "white.jpg", "brocade.jpg", "brocblue.jpg", "brocred.jpg",
                             "paper.jpg", "pink.jpg", "hearttop.gif"})
      EXPECT_TRUE(PutFile(run_.PathInApp("samples/") + name, name));
    run_.browser->SetHtml(PageAround(blockHtml + pictureHtml + tableHtml));
    QGuiApplication::clipboard()->setText("sys");
    Select("a", 0, 1);
    View().Copy();
    DoubleClick("i");
    View().Copy();
    switch (with) {
      case With::Nothing:
        Fire(EventType::MouseDown, "");
        View().WBDocument()->selection().empty();
        break;
      case With::Point:
        Click("a");
        View().WBDocument()->selection().empty();
        break;
      case With::Text:
        Select("a", 0, 2);
        break;
      case With::Block:
        DoubleClick("a");
        break;
      case With::Picture:
        Click("i");
        break;
      case With::Table:
        Click("t");
        break;
      case With::Change:
        View().DeleteElement(ElementById(*View().WBDocument(), "i"));
        break;
      case With::Undone:
        View().DeleteElement(ElementById(*View().WBDocument(), "i"));
        View().Undo();
        break;
    }
    QCursor::setPos(400, 300);
    run_.Settle();
    Answer({});
    const QMetaObject& meta = FWeb::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
      if (meta.method(i).methodType() == QMetaMethod::Signal)
        signals_.push_back(std::make_unique<QSignalSpy>(&Web(), meta.method(i)));
    before_ = TreeOf();
    body_ = Shown();
    windows_ = Windows();
  }

  void ClickEntryNamed(const char* name) {
    auto* const entry = Web().findChild<QAction*>(name);
    ASSERT_NE(nullptr, entry) << name;
    QList<QMenu*> way;
    for (auto* menu = qobject_cast<QMenu*>(entry->parent()); menu; menu = qobject_cast<QMenu*>(menu->parentWidget()))
      way.prepend(menu);
    ASSERT_FALSE(way.isEmpty()) << name;
    if (way.first() == Web().mPop2) {
      QTimer::singleShot(0, Web().mPop2, [this, entry] { ClickIn(*Web().mPop2, *entry); });
      ClickOn(*Web().FrWork->bSel[2]);
    } else if (way.first() == Web().mPop) {
      Fire(EventType::MouseUp, "a", 2);
      if (way.size() == 1) return ClickIn(*Web().mPop, *entry);
      Web().mPop->close();
      ASSERT_TRUE(way.last()->isEnabled()) << name;
      ClickEntry(*way.last(), *entry);
    } else {
      if (way.size() > 1) {
        way.first()->popup({20, 20});
        way.first()->close();
        ASSERT_TRUE(way.last()->isEnabled()) << name;
      }
      ClickEntry(*way.last(), *entry);
    }
  }

  QWidget* Named(const char* name) { return Web().findChild<QWidget*>(name); }

  // All that has come of it, in a fixed order: signals of the main window, questions and boxes, windows, the number of
  // the page, files, the page and the clips.
  QString Outcome() {
    run_.Settle();
    QStringList told;
    for (const auto& signal : signals_)
      for (const auto& arguments : *signal) told.append(Call(*signal, arguments));
    for (const auto& question : run_.Dialogs().Questions) told.append("asks " + question.title);
    for (const auto& box : run_.Dialogs().Boxes) told.append("says " + box.text);
    for (const QString& window : Windows() - windows_) told.append("window " + window);
    if (run_.program().project.CurPageNo() != 1)
      told.append(QStringLiteral("page %1").arg(run_.program().project.CurPageNo()));
    const Tree changes = Changes(before_, TreeOf());
    for (auto file = changes.begin(); file != changes.end(); ++file) told.append("file " + file.key());
    if (!View().BackPic().isEmpty()) told.append("back " + View().BackPic() + u' ' + View().BodyFontColor());
    if (Shown() != body_) told.append("shows " + Shown());
    for (const auto& [number, before] : {std::pair{WBUC::FromTextClip, "o"}, {WBUC::FromTagClip, "[i]"}})
      if (const QString clip = Clip(number); clip != QLatin1String(before)) told.append("clip " + clip);
    return told.join(QLatin1String(" | "));
  }

 private:
  static void ClickIn(QMenu& menu, QAction& entry) {
    ASSERT_TRUE(menu.isVisible()) << qPrintable(menu.objectName());
    QTest::mouseClick(menu.windowHandle(), Qt::LeftButton, {}, menu.actionGeometry(&entry).center());
    menu.close();
  }
  static QString Call(const QSignalSpy& signal, const QList<QVariant>& arguments) {
    QStringList texts;
    for (const QVariant& argument : arguments) {
      const bool isNumber = argument.metaType().flags().testFlag(QMetaType::IsEnumeration);
      texts += argument.canConvert<HTMLElement>() ? argument.value<HTMLElement>().id()
               : isNumber                         ? QString::number(argument.toInt())
                                                  : argument.toString();
    }
    return QString::fromLatin1(signal.signal()).section(u'(', 0, 0) + u'(' + texts.join(u',') + u')';
  }
  static QSet<QString> Windows() {
    QSet<QString> names;
    for (const QWidget* window : QApplication::topLevelWidgets())
      if (window->isVisible() && !qobject_cast<const QMenu*>(window) && !window->objectName().isEmpty())
        names += window->objectName();
    return names;
  }
  QString Shown() {
    return InnerHtml(View().WBDocument()->tree().bodyNode(), false)
        .replace(blockHtml, "[a]")
        .replace(pictureHtml, "[i]")
        .replace(tableHtml, "[t]");
  }
  // What a clip puts at the end of the page.
  QString Clip(WBUC::Origin origin) {
    Fire(EventType::MouseDown, "");
    const QString before = Shown();
    View().Paste(origin);
    return Shown().mid(before.size());
  }

  std::vector<std::unique_ptr<QSignalSpy>> signals_;
  Tree before_;
  QString body_;
  QSet<QString> windows_;
};

TEST(CommandWiring, EveryEntryOfTheMenusDoesItsOwn) {
  for (const Wire& wire : kEntries) {
    Command command(wire.with);
    command.ClickEntryNamed(wire.name);
    EXPECT_EQ(std::string(wire.outcome), command.Outcome().toStdString()) << wire.name;
  }
}

TEST(CommandWiring, EveryToolDoesItsOwn) {
  for (int tool = 0; tool < kToolCount; ++tool) {
    Command command(With::Nothing);
    ClickOn(*command.Named(qPrintable(QStringLiteral("ImTool%1").arg(tool))));
    EXPECT_EQ(std::string(OutcomeOf(kToolEntries[tool])), command.Outcome().toStdString()) << tool;
  }
}

TEST(CommandWiring, EveryButtonOfTheWorkWindowDoesItsOwn) {
  for (const Wire& wire : kButtons) {
    Command command(wire.with);
    ClickOn(*command.Named(wire.name));
    EXPECT_EQ(std::string(wire.outcome), command.Outcome().toStdString()) << wire.name;
  }
}

TEST(CommandWiring, NoEntryIsLeftOut) {
  QStringList known;
  for (const Wire& wire : kEntries) known.append(wire.name);
  QStringList all;
  for (const MenuRow& row : MenuRows())
    if (row.command || row.indexed) all.append(row.name);
  EXPECT_EQ(all, known);
  EXPECT_EQ(int(ToolRows().size()), int(std::size(kToolEntries)));
  QStringList buttons = {"bSel2"};  // opens a menu, whose entries are told above
  for (const Wire& wire : kButtons) buttons.append(wire.name);
  for (std::size_t i = 0; i < WorkRows().size(); ++i)
    EXPECT_TRUE(buttons.contains(QStringLiteral("bSel%1").arg(i))) << i;
}

}  // namespace
