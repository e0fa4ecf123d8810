// What the system refuses: files and folders that can't be read or written, and a settings file that is damaged.
#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utime.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSysInfo>
#include <QTemporaryDir>
#include <QTest>

#include "FileAccess.h"
#include "HostFileAttributes.h"
#include "HostSettingsStore.h"
#include "HostShell.h"
#include "ModFileOps.h"
#include "OrdinaryUser.h"
#include "SingleInstance.h"
#include "StandardFolders.h"
#include "TestPlatform.h"

namespace {

class Permissions : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!user_.IsBound()) GTEST_SKIP() << "root can't become anybody else here";
  }
  QString Path(const QString& name) const { return scratch_.filePath(name); }
  void Put(const QString& name, const QByteArray& bytes = "x") { ASSERT_TRUE(PutFile(Path(name), bytes)); }
  void Mode(const QString& name, mode_t mode) { ASSERT_EQ(0, ::chmod(qPrintable(Path(name)), mode)); }

 private:
  OrdinaryUser user_;
  QTemporaryDir scratch_;  // the user's own
};

TEST_F(Permissions, AFileThatMayNotBeReadCannotBe) {
  Put("a.txt");
  const HostFileAccess access;
  EXPECT_TRUE(access.CanBeRead(Path("a.txt")));
  Mode("a.txt", 0200);
  EXPECT_FALSE(access.CanBeRead(Path("a.txt")));
  Put("closed/b.txt");
  Mode("closed", 0);
  EXPECT_FALSE(access.CanBeRead(Path("closed/b.txt")));
  Mode("closed", 0700);
}

TEST_F(Permissions, WhatIsMarkedIsMadeReadableBeforeItIsReadAndAFolderBeforeItIsEmptied) {
  TestProgram test;
  ModFileOps& files = test.program.Files;
  Put("a.txt", "text");
  Mode("a.txt", 0400);
  files.CopyFileOver(Path("a.txt"), Path("b.txt"));
  EXPECT_EQ("text", FileBytes(Path("b.txt")));
  Mode("b.txt", 0400);
  files.DeleteFileIfAny(Path("b.txt"));
  EXPECT_FALSE(QFileInfo::exists(Path("b.txt")));
  Put("tree/a/b/c/deep.txt");
  Put("tree/a/read-only.txt");
  Mode("tree/a/read-only.txt", 0400);
  Mode("tree/a/b/c", 0);
  Mode("tree/a/b", 0500);
  Mode("tree/a", 0);
  files.RemoveTree(Path("tree"));
  EXPECT_FALSE(QFileInfo::exists(Path("tree")));
}

TEST_F(Permissions, TheProgramLivesInTheUsersFolderWhereItsOwnCannotBeWritten) {
  Put("program/cvn2.hlp", "help");
  Put("program/samples/bars.jpg", "picture");
  Mode("program", 0500);
  HostStandardFolders folders(Path("program"), Path("user"));
  EXPECT_EQ(Path("user"), folders.AppPath());
  EXPECT_EQ("help", FileBytes(Path("user/cvn2.hlp")));
  EXPECT_EQ("picture", FileBytes(Path("user/samples/bars.jpg")));
  EXPECT_EQ(QStringList({"cvn2.hlp", "samples"}),
            QDir(Path("program")).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
  Mode("program", 0700);
}

TEST_F(Permissions, SettingsThatCannotBeWrittenHoldAsLongAsTheProgramRuns) {
  ASSERT_TRUE(QDir().mkdir(Path("sealed")));
  Mode("sealed", 0500);
  {
    HostSettingsStore store(Path("sealed/settings.ini"));
    store.SaveSetting("QKCVN2", "settings", "BSz", "5");
    EXPECT_EQ("5", store.GetSetting("QKCVN2", "settings", "BSz", "3"));
  }
  EXPECT_EQ("3", HostSettingsStore(Path("sealed/settings.ini")).GetSetting("QKCVN2", "settings", "BSz", "3"));
  EXPECT_TRUE(QDir(Path("sealed")).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
}

// The age of a lock says nothing: the program may run for days. The lock is that of a process that lives.
TEST_F(Permissions, AnOldLockOfALivingProcessCounts) {
  HostSingleInstance first(Path("lock"));
  ASSERT_TRUE(first.Acquire());
  const utimbuf longAgo{1000000, 1000000};
  ASSERT_EQ(0, ::utime(qPrintable(Path("lock")), &longAgo));
  HostSingleInstance second(Path("lock"));
  EXPECT_FALSE(second.Acquire());
}

// Also where the folder that it lies in can't be written, so that it can't be put away.
TEST_F(Permissions, ALockThatCannotBeReadHoldsNobody) {
  Put("lock", "1\nother\n" + QSysInfo::machineHostName().toUtf8() + "\n");
  Mode("lock", 0);
  EXPECT_TRUE(HostSingleInstance(Path("lock")).Acquire());
  Put("shared/.lock", "1\nother\n" + QSysInfo::machineHostName().toUtf8() + "\n");
  Mode("shared/.lock", 0);
  Mode("shared", 0500);
  HostSingleInstance instance(Path("own lock"));
  EXPECT_TRUE(instance.AcquireFolder(Path("shared")));
  Mode("shared", 0700);
}

// Two users on one folder: who couldn't read that somebody stands in the lock would put it away.
TEST_F(Permissions, TheLockOfAFolderTellsEverybodyWhoStandsInIt) {
  HostSingleInstance instance(Path("own lock"));
  const mode_t before = ::umask(077);
  EXPECT_TRUE(instance.AcquireFolder(Path("")));
  ::umask(before);
  EXPECT_TRUE(QFile::permissions(Path(".lock")) & QFile::ReadOther);
}

TEST_F(Permissions, AStartedProgramWorksInItsOwnFolder) {
  Put("tools/tool", "#!/bin/sh\npwd > seen.part\nmv seen.part seen\n");
  Mode("tools/tool", 0700);
  EXPECT_TRUE(HostShell().StartProgram(Path("tools/tool"), ShowMode::Normal));
  EXPECT_TRUE(QTest::qWaitFor([this] { return QFile::exists(Path("tools/seen")); }, 20000));
  EXPECT_EQ(QFileInfo(Path("tools")).canonicalFilePath().toLocal8Bit() + "\n", FileBytes(Path("tools/seen")));
}

TEST_F(Permissions, AnOpenerThatCannotBeStartedIsAFailure) {
  Put("bin/xdg-open", "#!/nowhere/at/all\n");
  Mode("bin/xdg-open", 0700);
  Put("a.exe");
  const QByteArray path = qgetenv("PATH");
  qputenv("PATH", Path("bin").toLocal8Bit());
  EXPECT_LT(HostShell().OpenFile(nullptr, "a.exe", Path(""), ShowMode::Normal), Shell::kFirstSuccess);
  qputenv("PATH", path);
}

TEST_F(Permissions, HiddenSamplesGoAlong) {
  Put("from/samples/.hidden", "list");
  Put("from/samples/bars.jpg", "picture");
  FillAppFolder(Path("from"), Path("to"));
  EXPECT_EQ("list", FileBytes(Path("to/samples/.hidden")));
}

// A link of the user's own leads to a file that isn't.
TEST_F(Permissions, SomeoneElsesFileNeedsNoChangeWhenItIsAsWantedAndIsHiddenWhenItsModeStays) {
  ASSERT_EQ(0, ::symlink("/etc/passwd", qPrintable(Path("link"))));
  HostFileAttributes attributes;
  ASSERT_EQ(AttributeNormal, attributes.Get(Path("link")));
  EXPECT_TRUE(attributes.Clear(Path("link")));
  EXPECT_FALSE(attributes.Set(Path("link"), AttributeReadOnly | AttributeHidden));
  EXPECT_EQ(AttributeHidden, attributes.Get(Path("link")));
}

TEST_F(Permissions, APipeIsNoFileInWhichAReaderWouldWaitForEver) {
  ASSERT_EQ(0, ::mkfifo(qPrintable(Path("Page2.html")), 0600));
  HostFileAttributes attributes;
  EXPECT_EQ(std::nullopt, attributes.Get(Path("Page2.html")));
  ModFileOps files(attributes, Path(""));
  EXPECT_FALSE(files.FileExists(Path("Page2.html")));
  int error = 0;
  EXPECT_EQ("", files.ReadTextFile(Path("Page2.html"), error));
  EXPECT_EQ(std::nullopt, attributes.Get("/dev/null"));
}

// What a program that is killed leaves of a copy mustn't pass for the whole.
TEST_F(Permissions, ACopyGetsItsNameWhenItIsWhole) {
  TestProgram test;
  Put("a.gif", QByteArray(300000, 'g'));
  ASSERT_TRUE(QDir().mkdir(Path("to")));
  const int watch = ::inotify_init1(IN_NONBLOCK);
  ASSERT_GE(::inotify_add_watch(watch, qPrintable(Path("to")), IN_CREATE | IN_MOVED_TO | IN_OPEN), 0);
  test.program.Files.CopyFileOver(Path("a.gif"), Path("to/b.gif"));
  alignas(inotify_event) char told[4096];
  const ssize_t length = ::read(watch, told, sizeof told);
  ::close(watch);
  QList<uint32_t> ways;
  for (ssize_t at = 0; at < length;) {
    const auto& event = *reinterpret_cast<const inotify_event*>(told + at);
    if (event.len > 0 && QByteArray(event.name) == "b.gif") ways += event.mask;
    at += ssize_t(sizeof event + event.len);
  }
  EXPECT_EQ(QList<uint32_t>{IN_MOVED_TO}, ways);
  EXPECT_EQ(QByteArray(300000, 'g'), FileBytes(Path("to/b.gif")));
  EXPECT_EQ(QStringList{"b.gif"}, QDir(Path("to")).entryList(QDir::Files | QDir::Hidden));
}

class DamagedSettings : public Permissions {};

TEST_F(DamagedSettings, WhatIsWrittenIntoARubbishFileComesBackAndSoDoesTheRest) {
  const QByteArray rubbish("\0\xff[[]\n=\n[QKCVN2\\settings\n\\x\n%%%=@Variant(", 42);
  const QByteArray good = "\n[QKCVN2]\nsettings\\BSz=6\nsettings\\LinkText=Next\n";
  for (const QByteArray& bytes :
       {good + rubbish, rubbish + good, good + QByteArray(3000, '\0'), good + "settings\\B"}) {
    Put("settings.ini", bytes);
    HostSettingsStore(Path("settings.ini")).SaveSetting("QKCVN2", "settings", "CurIcon", "SUN");
    const HostSettingsStore store(Path("settings.ini"));
    EXPECT_EQ("SUN", store.GetSetting("QKCVN2", "settings", "CurIcon", "WP"));
    EXPECT_EQ("6", store.GetSetting("QKCVN2", "settings", "BSz", "3"));
    EXPECT_EQ("Next", store.GetSetting("QKCVN2", "settings", "LinkText", "none"));
    EXPECT_EQ("none", store.GetSetting("QKCVN2", "settings", "DefServ", "none"));
  }
}

}  // namespace
