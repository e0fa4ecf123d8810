#include "Program.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <tuple>

#include "BusyGuard.h"
#include "MessagePass.h"
#include "ModBrowse.h"
#include "OpenHelp.h"
#include "Settings.h"
#include "SpecialFolder.h"
#include "TestPlatform.h"

namespace {

TEST(Program, BeginsWithTheUnsavedProject) {
  TestPlatform platform;
  const Program program(platform.services);
  EXPECT_EQ("Project1", program.project.ProjectName());
  EXPECT_EQ(1, program.project.CurPageNo());
  EXPECT_FALSE(program.AppStarted);
  EXPECT_EQ("<BR CLEAR=\"all\">", program.BrClear);
  EXPECT_EQ(16U, program.CustColors.size());
  EXPECT_EQ(0, program.CustColors[15]);
}

TEST(OpenHelp, ShowsTheHelpAsItIsNow) {
  TestProgram test;
  for (const char* const help : {"<p>help</p>", "<p>newer help</p>"}) {
    ASSERT_TRUE(PutFile(test.program.AppPath + "/cvn2.hlp", help));
    OpenHelp(test.program, nullptr);
    ASSERT_FALSE(test.platform.shell.Opened.isEmpty());
    EXPECT_TRUE(test.platform.shell.Opened.last().file.endsWith("/corvane-help.html"));
    EXPECT_EQ(help, FileBytes(test.platform.shell.Opened.last().file));
  }
}

TEST(Settings, HaveTheirAddressAndDefault) {
  MemorySettings store;
  EXPECT_EQ("Arial, Helvetica", Settings::Get(store, Settings::BFace));
  EXPECT_EQ("Next Page", Settings::Get(store, Settings::LinkText));
  Settings::Save(store, Settings::LinkText, "Go on");
  EXPECT_EQ("Go on", Settings::Get(store, Settings::LinkText));
  EXPECT_EQ("Go on", store.Values().value("QKCVN2|settings|LinkText"));
}

TEST(Settings, EveryKeyHasItsNameAndDefault) {
  const std::tuple<Settings::Key, const char*, const char*> rows[] = {
      {Settings::BCol, "BCol", "#000000"},
      {Settings::BFace, "BFace", "Arial, Helvetica"},
      {Settings::BSz, "BSz", "3"},
      {Settings::BFaceDex, "BFaceDex", "0"},
      {Settings::Winset, "Winset", "2"},
      {Settings::W1, "W1", "9600"},
      {Settings::H1, "H1", "7000"},
      {Settings::Compat4, "Compat4", "no"},
      {Settings::CardFol, "CardFol", ""},
      {Settings::LinkText, "LinkText", "Next Page"},
      {Settings::GreetName, "GreetName", "Greeting.exe"},
      {Settings::CurIcon, "CurIcon", "WP"},
      {Settings::CurIconNum, "CurIconNum", "0"},
      {Settings::CustomIcon, "CustomIcon", ""},
      {Settings::DefEmail, "DefEmail", ""},
      {Settings::DefName, "DefName", ""},
      {Settings::DefServ, "DefServ", ""},
      {Settings::DefUser, "DefUser", ""},
      {Settings::DefPass, "DefPass", ""},
      {Settings::To10, "To10", ""},
      {Settings::From10, "From10", ""},
  };
  for (const auto& [key, name, text] : rows) {
    EXPECT_EQ(name, QString(key.name));
    EXPECT_EQ(text, QString(key.defaultText));
  }
}

TEST(GetSpecialFolder, KnowsTheDesktopOnly) {
  TestProgram test;
  EXPECT_EQ(test.program.DesktopPath, GetSpecialFolder(test.platform.services, 0));
  EXPECT_EQ("", GetSpecialFolder(test.platform.services, 5));
}

TEST(BusyGuard, LetsOnlyOneIn) {
  bool busy = false;
  {
    const BusyGuard first(busy);
    EXPECT_TRUE(first);
    EXPECT_TRUE(busy);
    {
      const BusyGuard second(busy);
      EXPECT_FALSE(second);
    }
    EXPECT_TRUE(busy);
  }
  EXPECT_FALSE(busy);
}

TEST(MessagePass, RunsWhatIsPending) {
  bool ran = false;
  QMetaObject::invokeMethod(qApp, [&] { ran = true; }, Qt::QueuedConnection);
  RunMessagePass();
  EXPECT_TRUE(ran);
}

// Meant in kLongestOpenPath: paths that come out of a file dialog are cut off at 253 characters, or 254 for saving.
TEST(ModBrowse, CutsLongPaths) {
  TestProgram test;
  const QString path = QString(300, 'x');
  test.platform.dialogs.Texts = {path, path, path, QString(253, 'y')};
  EXPECT_EQ(path.left(253), ShowOpenDialog(test.program, nullptr, "t", "d", "*.x"));
  EXPECT_EQ(path.left(254), ShowSaveDialog(test.program, nullptr, "t", "d", "*.x", "x"));
  EXPECT_EQ(path.left(254), ShowSaveEmailDialog(test.program, nullptr, "t"));
  EXPECT_EQ(QString(253, 'y'), ShowOpenDialog(test.program, nullptr, "t", "d", "*.x"));
  EXPECT_EQ(0, test.platform.dialogs.Unanswered);
}

TEST(ModBrowse, ACutPathHasNoHalfOfACharacter) {
  TestProgram test;
  const QString whole = QString(253, 'x');
  const QString path = whole + QString::fromUtf8("\U0001F389.jpg");
  test.platform.dialogs.Texts = {path, path};
  EXPECT_EQ(whole, ShowSaveDialog(test.program, nullptr, "t", "d", "*.x", "x"));
  EXPECT_EQ(whole, ShowSaveEmailDialog(test.program, nullptr, "t"));
}

TEST(ModBrowse, LeavesOutAStartFolderThatIsNotThere) {
  TestProgram test;
  test.platform.dialogs.Texts = {"/a", "/b", "/c"};
  EXPECT_EQ("/a", ShowOpenDialog(test.program, nullptr, "t", "d", "*.x", test.program.AppPath));
  EXPECT_EQ("/b", ShowOpenDialog(test.program, nullptr, "t", "d", "*.x", test.Path("none")));
  EXPECT_EQ("/c", ShowOpenDialog(test.program, nullptr, "t", "d", "*.x"));
  const auto& questions = test.platform.dialogs.Questions;
  ASSERT_EQ(3, questions.size());
  EXPECT_EQ(test.program.AppPath, questions[0].given);
  EXPECT_EQ("", questions[1].given);
  EXPECT_EQ("", questions[2].given);
  EXPECT_EQ((QList<FileFilter>{{"d", "*.x"}}), questions[0].filters);
}

TEST(ModBrowse, CancelGivesNothing) {
  TestProgram test;
  test.platform.dialogs.Texts = {"", "", "", ""};
  EXPECT_EQ("", BrowseForFolder(test.program, nullptr, "t"));
  EXPECT_EQ("", ShowOpenDialog(test.program, nullptr, "t", "d", "*.x"));
  EXPECT_EQ("", ShowSaveDialog(test.program, nullptr, "t", "d", "*.x", "x"));
  EXPECT_EQ("", ShowSaveEmailDialog(test.program, nullptr, "t"));
  EXPECT_EQ(4, test.platform.dialogs.Questions.size());
}

TEST(ModBrowse, TheEmailDialogHasThreeTypes) {
  TestProgram test;
  test.platform.dialogs.Texts = {"/m.eml"};
  EXPECT_EQ("/m.eml", ShowSaveEmailDialog(test.program, nullptr, "Save Email"));
  const auto& question = test.platform.dialogs.Questions.first();
  EXPECT_EQ("eml", question.given);
  EXPECT_EQ(
      (QList<FileFilter>{{"Email files(*.eml)", "*.eml"}, {"Text files(*.txt)", "*.txt"}, {"All files(*.*)", "*.*"}}),
      question.filters);
}

}  // namespace
