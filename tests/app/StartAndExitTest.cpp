#include <QApplication>
#include <QCloseEvent>
#include <QRegularExpression>
#include <QTest>
#include <functional>

#include "ProgramFixture.h"
#include "Settings.h"

namespace {

class StartAndExit : public ProgramTest {
 protected:
  QString Stored(const Settings::Key& key) { return Settings::Get(run_.test.platform.settings, key); }
  // The small letters a to z between the tags of a page file's body.
  QString LettersOf(const QString& file) {
    QString text = QString::fromUtf8(FileIn(file));
    text = text.mid(text.indexOf("<body", 0, Qt::CaseInsensitive));
    return text.remove(QRegularExpression("<[^>]*>")).remove(QRegularExpression("&\\w+;|[^a-z]"));
  }
  bool IsStored(const Settings::Key& key) {
    return run_.test.platform.settings.Values().contains(QString("QKCVN2|settings|") + key.name);
  }
};

QStringList NamesIn(const QSignalSpy& spy) {
  QStringList names;
  for (const auto& arguments : spy) names.append(arguments[0].toString());
  return names;
}

// Settings with a look at what else there is when they are written.
class WatchedSettings : public MemorySettings {
 public:
  std::function<void()> BeforeSave;
  void SaveSetting(const QString& appKey, const QString& section, const QString& key, const QString& value) override {
    if (BeforeSave) BeforeSave();
    MemorySettings::SaveSetting(appKey, section, key, value);
  }
};

TEST(ExitInOrder, TheWorkspaceGoesThenTheSettingsAreWrittenThenTheMailEnds) {
  WatchedSettings store;
  RunningProgram run(&store);
  ASSERT_TRUE(run.Start());
  ASSERT_TRUE(run.Choose("mEmail"));
  const ScriptedSockets& net = run.test.platform.sockets;
  int saves = 0;
  store.BeforeSave = [&] {
    ++saves;
    EXPECT_FALSE(QDir(run.program().project.CardPath()).exists());
    EXPECT_EQ(0, net.CleanUps);
    EXPECT_TRUE(run.Web().isVisible());
  };
  run.Dialogs().Answers = {MessageAnswer::No};
  run.modMain.ExitProgram();
  EXPECT_TRUE(run.ended);
  EXPECT_GT(saves, 0);
  EXPECT_EQ(1, net.CleanUps);
}

TEST_F(StartAndExit, WindowsAreMadeAndReleasedInTheirOrder) {
  QSignalSpy made(&run_.modMain, &ModMain::WindowMade);
  QSignalSpy released(&run_.modMain, &ModMain::WindowReleased);
  ASSERT_TRUE(run_.Start());
  EXPECT_EQ(QStringList({"FSplash", "FSets", "FWeb", "FPic", "FTools", "fBitmap", "fIconMaker", "FOps", "FTip"}),
            NamesIn(made));
  EXPECT_EQ(0, released.size());
  Exit({MessageAnswer::No});
  EXPECT_TRUE(run_.ended);
  EXPECT_EQ(QStringList({"FTip", "FOps", "FSplash", "FPic", "FWeb", "FTools", "fBitmap", "fIconMaker", "FSets"}),
            NamesIn(released));
}

TEST_F(StartAndExit, TheStartShowsTheMainWindowWithABlankPage) {
  EXPECT_FALSE(run_.program().AppStarted);
  ASSERT_TRUE(run_.Start());
  EXPECT_TRUE(run_.program().AppStarted);
  EXPECT_TRUE(Web().isVisible());
  EXPECT_FALSE(run_.modMain.Ops()->isVisible());
  EXPECT_EQ("Corvane - Project1", Web().windowTitle());
  EXPECT_EQ(run_.PathInApp("card"), run_.program().project.WorkPath());
  EXPECT_EQ(run_.PathInApp("card/wgcard.html"), run_.program().project.CurPageFile());
  EXPECT_EQ(1, run_.program().project.CurPageNo());
  EXPECT_TRUE(View().DocReady());
  EXPECT_EQ(run_.program().project.CurPageFile(), View().Location());
  EXPECT_TRUE(run_.Dialogs().Boxes.isEmpty());
}

// Meant in ModMain::Main: what an earlier run left in the workspace is gone at the start.
TEST_F(StartAndExit, ALeftOverWorkspaceIsGoneWithoutAWord) {
  const QString card = run_.program().project.CardPath();
  auto& attributes = run_.test.platform.attributes;
  for (const QString& name : {QString("old.html"), QString("sub/old.gif")}) {
    ASSERT_TRUE(PutFile(card + '/' + name, "old"));
    ASSERT_TRUE(attributes.Set(card + '/' + name, AttributeReadOnly | AttributeHidden));
  }
  ASSERT_TRUE(attributes.Set(card, AttributeReadOnly | AttributeHidden));
  ASSERT_TRUE(run_.Start());
  EXPECT_EQ(QStringList{"wgcard.html"}, Names("card"));
  EXPECT_TRUE(attributes.Get(card).value_or(0) & AttributeHidden);
  EXPECT_FALSE(attributes.Get(card).value_or(AttributeReadOnly) & AttributeReadOnly);
  EXPECT_TRUE(run_.Dialogs().Boxes.isEmpty());
}

TEST_F(StartAndExit, AMissingBlankPageIsWritten) {
  ASSERT_FALSE(QFile::exists(run_.PathInApp("blank.html")));
  ASSERT_TRUE(run_.Start());
  const QByteArray blank =
      "<HTML><HEAD><TITLE></TITLE></HEAD><BODY BGCOLOR=\"#FFFFFF\" TEXT=\"#000000\"></BODY></HTML>";
  EXPECT_EQ(blank, FileIn("blank.html"));
  EXPECT_EQ(blank, FileIn("card/wgcard.html"));
}

TEST_F(StartAndExit, AnEmptyBlankPageOfTheUsersOwnIsTakenAsItIs) {
  ASSERT_TRUE(PutFile(run_.PathInApp("blank.html"), ""));
  ASSERT_TRUE(run_.Start());
  EXPECT_EQ("", FileIn("blank.html"));
  EXPECT_EQ("", FileIn("card/wgcard.html"));
}

TEST_F(StartAndExit, ABlankPageOfTheUsersOwnIsTakenAsItIs) {
  ASSERT_TRUE(PutFile(run_.PathInApp("blank.html"), "<HTML><BODY>own</BODY></HTML>"));
  ASSERT_TRUE(run_.Start());
  EXPECT_EQ("<HTML><BODY>own</BODY></HTML>", FileIn("card/wgcard.html"));
  EXPECT_EQ("own", ShownLetters(*View().WBDocument()));
}

TEST_F(StartAndExit, ASecondStartLeavesNoTraceAndShowsNothing) {
  ASSERT_TRUE(PutFile(run_.program().project.CardPath() + "/of-the-first.html", "x"));
  QSignalSpy made(&run_.modMain, &ModMain::WindowMade);
  run_.test.platform.instance.IsFolderFree = false;  // one of another user, in the same folder
  EXPECT_FALSE(run_.Start());
  run_.test.platform.instance.First = false;
  EXPECT_FALSE(run_.Start());
  EXPECT_EQ(0, made.size());
  EXPECT_EQ(nullptr, run_.modMain.Web());
  EXPECT_EQ(QStringList{"of-the-first.html"}, Names("card"));
  EXPECT_EQ(QStringList{"card"}, Names(""));
  EXPECT_TRUE(run_.Dialogs().Boxes.isEmpty());
  EXPECT_TRUE(run_.test.platform.settings.Values().isEmpty());
}

TEST_F(StartAndExit, AMissingDesktopIsNone) {
  run_.test.platform.folders.DesktopPath = run_.test.Path("no-desktop");
  ASSERT_TRUE(run_.Start());
  EXPECT_EQ("", run_.program().DesktopPath);
}

TEST_F(StartAndExit, TheQuestionComesWithNothingChangedAndCancelKeepsAll) {
  ASSERT_TRUE(run_.Start());
  QSignalSpy released(&run_.modMain, &ModMain::WindowReleased);
  Exit({MessageAnswer::Cancel});
  ASSERT_EQ(1, run_.Dialogs().Boxes.size());
  EXPECT_EQ(StringText(187), run_.Dialogs().Boxes[0].text);
  EXPECT_EQ("Do you want to save this project before closing?", run_.Dialogs().Boxes[0].text);
  EXPECT_EQ(MessageButtons::YesNoCancel, run_.Dialogs().Boxes[0].buttons);
  EXPECT_EQ("Corvane", run_.Dialogs().Boxes[0].title);
  EXPECT_FALSE(run_.ended);
  EXPECT_EQ(0, released.size());
  EXPECT_TRUE(Web().isVisible());
  EXPECT_EQ(QStringList{"wgcard.html"}, Names("card"));
  EXPECT_TRUE(run_.test.platform.settings.Values().isEmpty());
  Exit({MessageAnswer::Cancel});
  EXPECT_EQ(1, run_.Dialogs().Boxes.size());
}

TEST_F(StartAndExit, NeitherQuestionShowsAnIcon) {
  ASSERT_TRUE(run_.Start());
  for (const char* name : {"Project1", "ann"}) {
    run_.program().project.SavedAs(name, run_.program().project.WorkPath());
    Exit({MessageAnswer::Cancel});
    ASSERT_EQ(1, run_.Dialogs().Boxes.size()) << name;
    EXPECT_EQ(MessageIcon::None, run_.Dialogs().Boxes[0].icon) << name;
  }
}

// Meant in ModMain::AskAboutSaving: only the project's name decides which question the exit asks, not its folder.
TEST_F(StartAndExit, OnlyTheNamePicksTheQuestion) {
  ASSERT_TRUE(run_.Start());
  for (const char* name : {"ann", "project1", "Project1 "}) {
    run_.program().project.SavedAs(name, run_.program().project.WorkPath());
    Exit({MessageAnswer::Cancel});
    EXPECT_EQ(QStringList{"Save changes to this page?"}, run_.Dialogs().Messages()) << name;
  }
  run_.program().project.SavedAs("Project1", run_.PathInApp("saved/ann"));
  Exit({MessageAnswer::Cancel});
  EXPECT_EQ(QStringList{StringText(187)}, run_.Dialogs().Messages());
}

// Meant in ModMain::ExitProgram: saving the unsaved project at the exit loses the edits of the page in view.
TEST_F(StartAndExit, SavingTheUnsavedProjectAtExitLosesTheEditsOfTheOpenPage) {
  ASSERT_TRUE(run_.Start());
  run_.Type("kept");
  run_.Choose("mSavePage");
  run_.Type("lost");
  ASSERT_EQ("keptlost", ShownLetters(*View().WBDocument()));
  Exit({MessageAnswer::Yes}, {"ann"});
  EXPECT_TRUE(run_.ended);
  const QByteArray page = FileIn("saved/ann/wgcard.html");
  EXPECT_TRUE(page.contains("kept"));
  EXPECT_FALSE(page.contains("lost"));
  EXPECT_FALSE(CardExists());
}

// Meant in ModMain::ExitProgram: giving no name at the exit still exits, and the workspace goes.
TEST_F(StartAndExit, GivingUpTheNameStillExitsAndDeletesTheWorkspace) {
  ASSERT_TRUE(run_.Start());
  run_.Type("lost");
  run_.Choose("mSavePage");
  Exit({MessageAnswer::Yes}, {""});
  EXPECT_EQ(1, run_.Dialogs().Questions.size());
  EXPECT_TRUE(run_.ended);
  EXPECT_FALSE(CardExists());
  EXPECT_EQ(QStringList{}, Names("saved"));
}

// Meant in ModMain::ExitProgram: while the program is busy Yes saves nothing, and the workspace goes.
TEST_F(StartAndExit, WhileBusyYesSavesNothingAndTheWorkspaceGoes) {
  ASSERT_TRUE(run_.Start());
  Web().Busy = true;
  Exit({MessageAnswer::Yes}, {"ann"});
  EXPECT_TRUE(run_.Dialogs().Questions.isEmpty());
  EXPECT_TRUE(run_.ended);
  EXPECT_FALSE(CardExists());
  EXPECT_FALSE(QDir(run_.PathInApp("saved")).exists());
}

TEST_F(StartAndExit, NoOnANamedProjectWritesNothing) {
  ASSERT_TRUE(run_.Start());
  SaveProjectAs("ann");
  const QByteArray before = FileIn("saved/ann/wgcard.html");
  run_.Type("lost");
  Exit({MessageAnswer::No});
  EXPECT_TRUE(run_.ended);
  EXPECT_EQ(before, FileIn("saved/ann/wgcard.html"));
  EXPECT_EQ(QStringList{"wgcard.html"}, Names("saved/ann"));
  EXPECT_FALSE(CardExists());
}

TEST_F(StartAndExit, YesOnANamedProjectWritesTheOpenPageOnly) {
  ASSERT_TRUE(run_.Start());
  SaveProjectAs("ann");
  run_.Type("kept");
  Exit({MessageAnswer::Yes});
  EXPECT_TRUE(run_.ended);
  EXPECT_TRUE(FileIn("saved/ann/wgcard.html").contains("kept"));
  EXPECT_EQ(1, run_.Dialogs().Boxes.size());
  EXPECT_FALSE(CardExists());
}

// Meant in FWeb::closeEvent: the close box is refused, and the program ends itself once the question has been answered.
TEST_F(StartAndExit, TheCloseBoxIsRefusedWhileTheMenuExitsStraight) {
  ASSERT_TRUE(run_.Start());
  Answer({MessageAnswer::Cancel});
  QCloseEvent close;
  QApplication::sendEvent(&Web(), &close);
  EXPECT_FALSE(close.isAccepted());
  EXPECT_EQ(1, run_.Dialogs().Boxes.size());
  EXPECT_TRUE(Web().isVisible());
  Answer({MessageAnswer::No});
  QCloseEvent again;
  QApplication::sendEvent(&Web(), &again);
  EXPECT_FALSE(again.isAccepted());
  run_.Settle();
  EXPECT_TRUE(run_.ended);
  // The question came once, although the window was closed on the way out.
  EXPECT_EQ(1, run_.Dialogs().Boxes.size());
}

TEST_F(StartAndExit, ASecondRequestWhileTheProgramEndsAsksNothing) {
  ASSERT_TRUE(run_.Start());
  Answer({MessageAnswer::No});
  run_.modMain.ExitProgram();
  run_.modMain.ExitProgram();
  run_.Settle();
  EXPECT_EQ(1, run_.Dialogs().Boxes.size());
  EXPECT_TRUE(run_.ended);
}

// The end that comes from outside.

TEST_F(StartAndExit, AnEndThatNobodyCanBeAskedAboutLeavesTheWorkspaceAndKeepsTheSettings) {
  ASSERT_TRUE(run_.Start());
  run_.Type("kept");
  run_.Choose("mSavePage");
  View().SetBodyFontSize("5");
  run_.modMain.EndUnasked();
  run_.modMain.EndUnasked();
  run_.modMain.ExitProgram();
  EXPECT_TRUE(run_.ended);
  EXPECT_TRUE(run_.Dialogs().Boxes.isEmpty());
  EXPECT_FALSE(Web().isVisible());
  run_.Release();
  EXPECT_EQ("kept", LettersOf("card/wgcard.html"));
  EXPECT_EQ("5", Stored(Settings::BSz));
}

TEST_F(StartAndExit, ASavedProjectIsLeftAsAfterNoWhenNobodyCanBeAsked) {
  ASSERT_TRUE(run_.Start());
  SaveProjectAs("ann");
  const QByteArray before = FileIn("saved/ann/wgcard.html");
  run_.Type("lost");
  run_.modMain.EndUnasked();
  EXPECT_TRUE(run_.ended);
  EXPECT_EQ(before, FileIn("saved/ann/wgcard.html"));
}

TEST_F(StartAndExit, TheEndOfTheSessionAsksWhatTheExitAsks) {
  ASSERT_TRUE(run_.Start());
  run_.Type("kept");
  run_.Choose("mSavePage");
  Answer({MessageAnswer::Cancel});
  EXPECT_FALSE(run_.modMain.CommitSession(true));
  EXPECT_EQ(QStringList{StringText(187)}, run_.Dialogs().Messages());
  Answer({MessageAnswer::Yes}, {"ann"});
  EXPECT_TRUE(run_.modMain.CommitSession(true));
  EXPECT_EQ("kept", LettersOf("saved/ann/wgcard.html"));
  EXPECT_FALSE(run_.ended) << "the end can still be called off";
  EXPECT_TRUE(Web().isVisible() && CardExists());
  QEvent quit(QEvent::Quit);
  QApplication::sendEvent(qApp, &quit);
  EXPECT_TRUE(run_.ended);
  EXPECT_EQ(1, run_.Dialogs().Boxes.size());
  EXPECT_FALSE(CardExists()) << "the user has been asked";
}

TEST_F(StartAndExit, TheEndOfTheSessionWithoutAQuestionLeavesTheWorkspace) {
  ASSERT_TRUE(run_.Start());
  EXPECT_TRUE(run_.modMain.CommitSession(false));
  EXPECT_FALSE(run_.ended);
  QEvent quit(QEvent::Quit);
  QApplication::sendEvent(qApp, &quit);
  EXPECT_TRUE(run_.ended);
  EXPECT_TRUE(run_.Dialogs().Boxes.isEmpty());
  EXPECT_TRUE(CardExists());
}

TEST_F(StartAndExit, ASessionThatGoesOnForgetsWhatWasAnswered) {
  ASSERT_TRUE(run_.Start());
  Answer({MessageAnswer::No});
  EXPECT_TRUE(run_.modMain.CommitSession(true));
  QTest::keyClick(&Web(), Qt::Key_Shift);
  run_.modMain.EndUnasked();
  EXPECT_TRUE(run_.ended);
  EXPECT_TRUE(CardExists());
}

TEST_F(StartAndExit, TheValuesOfThePageInViewBecomeTheDefaults) {
  ASSERT_TRUE(run_.Start());
  View().SetBodyFontColor("#112233");
  View().SetBodyFontName("Tahoma");
  View().SetBodyFontSize("5");
  run_.program().CustColors[3] = 255;
  Exit({MessageAnswer::No});
  EXPECT_EQ("#112233", Stored(Settings::BCol));
  EXPECT_EQ("Tahoma", Stored(Settings::BFace));
  EXPECT_EQ("5", Stored(Settings::BSz));
  EXPECT_EQ("255", run_.test.platform.settings.Values().value("QKCVN2|settings\\CustColors|3"));
}

TEST_F(StartAndExit, AWindowOfNormalSizeIsRemembered) {
  ASSERT_TRUE(run_.Start());
  EXPECT_TRUE(Web().isMaximized());
  Web().showNormal();
  Web().resize(641, 483);
  Exit({MessageAnswer::No});
  EXPECT_EQ("0", Stored(Settings::Winset));
  EXPECT_EQ("9615", Stored(Settings::W1));
  EXPECT_EQ("7245", Stored(Settings::H1));
}

TEST_F(StartAndExit, ARememberedSizeComesBack) {
  Settings::Save(run_.test.platform.settings, Settings::Winset, "0");
  Settings::Save(run_.test.platform.settings, Settings::W1, "9615");
  Settings::Save(run_.test.platform.settings, Settings::H1, "7245");
  ASSERT_TRUE(run_.Start());
  EXPECT_FALSE(Web().isMaximized());
  EXPECT_EQ(QSize(641, 483), Web().size());
}

TEST_F(StartAndExit, ASizeThatIsNoNumberLeavesTheWindowMaximised) {
  Settings::Save(run_.test.platform.settings, Settings::Winset, "0");
  Settings::Save(run_.test.platform.settings, Settings::W1, "wide");
  ASSERT_TRUE(run_.Start());
  EXPECT_TRUE(Web().isMaximized());
}

TEST_F(StartAndExit, AMaximisedWindowStoresNoSize) {
  ASSERT_TRUE(run_.Start());
  ASSERT_TRUE(Web().isMaximized());
  Exit({MessageAnswer::No});
  EXPECT_EQ("2", Stored(Settings::Winset));
  EXPECT_TRUE(IsStored(Settings::Winset));
  EXPECT_FALSE(IsStored(Settings::W1));
  EXPECT_FALSE(IsStored(Settings::H1));
}

TEST_F(StartAndExit, AMinimisedWindowStoresNothingOfItself) {
  ASSERT_TRUE(run_.Start());
  Web().showMinimized();
  Exit({MessageAnswer::No});
  EXPECT_TRUE(IsStored(Settings::BCol));
  EXPECT_FALSE(IsStored(Settings::Winset));
  EXPECT_FALSE(IsStored(Settings::W1));
  EXPECT_FALSE(IsStored(Settings::H1));
}

}  // namespace
