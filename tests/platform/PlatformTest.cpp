#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QSysInfo>
#include <QTemporaryDir>
#include <QTest>

#include "GraphicsCard.h"
#include "HostFileAttributes.h"
#include "HostSettingsStore.h"
#include "HostShell.h"
#include "MemorySettings.h"
#include "RealPlatform.h"
#include "SingleInstance.h"
#include "StandardFolders.h"
#include "TestPlatform.h"

namespace {

class Scratch : public ::testing::Test {
 protected:
  QString Path(const QString& name) const { return scratch_.filePath(name); }
  void Put(const QString& name, const QByteArray& bytes = "x") { ASSERT_TRUE(PutFile(Path(name), bytes)); }

 private:
  QTemporaryDir scratch_;
};

class GraphicsCard : public Scratch {
 protected:
  void SetUp() override {
    if (QSysInfo::kernelType() != u"linux") GTEST_SKIP() << "this system doesn't tell of its cards";
  }
};

TEST_F(GraphicsCard, IsThereByItsRenderNodeOrItsControlDevice) {
  EXPECT_FALSE(HasGraphicsCard(Path("")));
  ASSERT_TRUE(QDir(Path("")).mkpath("dri"));
  EXPECT_FALSE(HasGraphicsCard(Path("")));
  Put("dri/card0");  // shows, but doesn't draw
  EXPECT_FALSE(HasGraphicsCard(Path("")));
  Put("dri/renderD128");
  EXPECT_TRUE(HasGraphicsCard(Path("")));
}

TEST_F(GraphicsCard, OfNvidiaMayHaveNoRenderNode) {
  Put("nvidiactl");
  EXPECT_TRUE(HasGraphicsCard(Path("")));
}

class Attributes : public Scratch {
 protected:
  HostFileAttributes attributes_;
};

TEST_F(Attributes, OfFilesAndFolders) {
  Put("a.txt");
  EXPECT_EQ(AttributeNormal, attributes_.Get(Path("a.txt")));
  EXPECT_EQ(AttributeDirectory, attributes_.Get(Path("")));
  EXPECT_EQ(std::nullopt, attributes_.Get(Path("none")));
  EXPECT_EQ(std::nullopt, attributes_.Get(QString()));
  EXPECT_EQ(std::nullopt, attributes_.Get(Path("a.txt/x")));
}

TEST_F(Attributes, SetAndClear) {
  Put("a.txt");
  for (const int marks : {int{AttributeReadOnly}, int{AttributeHidden}, AttributeReadOnly | AttributeHidden, 0}) {
    EXPECT_TRUE(attributes_.Set(Path("a.txt"), marks));
    EXPECT_EQ(marks, attributes_.Get(Path("a.txt")));
  }
  EXPECT_TRUE(attributes_.Set(Path("a.txt"), AttributeReadOnly | AttributeHidden));
  EXPECT_TRUE(attributes_.Clear(Path("a.txt")));
  EXPECT_EQ(AttributeNormal, attributes_.Get(Path("a.txt")));
  EXPECT_FALSE(attributes_.Set(Path("none"), AttributeHidden));
  EXPECT_FALSE(QFile::exists(Path(".hidden")));
}

TEST_F(Attributes, ReadOnlyIsTheOwnersWriteBit) {
  Put("a.txt");
  ASSERT_EQ(0, ::chmod(qPrintable(Path("a.txt")), 0464));
  EXPECT_EQ(AttributeReadOnly, attributes_.Get(Path("a.txt")));
  EXPECT_TRUE(attributes_.Clear(Path("a.txt")));
  struct stat status{};
  ASSERT_EQ(0, ::stat(qPrintable(Path("a.txt")), &status));
  EXPECT_EQ(0664U, status.st_mode & 07777);
}

TEST_F(Attributes, ClearedFoldersCanBeListedAndEntered) {
  ASSERT_TRUE(QDir().mkdir(Path("f")));
  ASSERT_EQ(0, ::chmod(qPrintable(Path("f")), 0050));
  EXPECT_TRUE(attributes_.Clear(Path("f")));
  struct stat status{};
  ASSERT_EQ(0, ::stat(qPrintable(Path("f")), &status));
  EXPECT_EQ(0750U, status.st_mode & 07777);
}

TEST_F(Attributes, HiddenIsALineInTheFoldersList) {
  Put("card/wgcard.html");
  Put(".hidden", "other\nname");
  EXPECT_TRUE(attributes_.Set(Path("card"), AttributeHidden));
  EXPECT_EQ("other\nname\ncard\n", FileBytes(Path(".hidden")));
  EXPECT_EQ(AttributeHidden | AttributeDirectory, attributes_.Get(Path("card")));
  EXPECT_EQ(AttributeHidden | AttributeDirectory, attributes_.Get(Path("card/")));
  EXPECT_TRUE(attributes_.Set(Path("card"), AttributeHidden));
  EXPECT_EQ("other\nname\ncard\n", FileBytes(Path(".hidden")));
  EXPECT_TRUE(attributes_.Clear(Path("card")));
  EXPECT_EQ("other\nname\n", FileBytes(Path(".hidden")));
}

TEST_F(Attributes, TheListGoesWithItsLastLine) {
  Put("card/wgcard.html");
  EXPECT_TRUE(attributes_.Set(Path("card"), AttributeHidden));
  EXPECT_TRUE(QFile::exists(Path(".hidden")));
  EXPECT_TRUE(attributes_.Clear(Path("card")));
  EXPECT_FALSE(QFile::exists(Path(".hidden")));
}

TEST_F(Scratch, FileAccessTellsWhetherAFileCanBeRead) {
  Put("a.txt");
  ASSERT_EQ(0, ::mkfifo(qPrintable(Path("pipe")), 0600));
  const HostFileAccess access;
  EXPECT_TRUE(access.CanBeRead(Path("a.txt")));
  EXPECT_FALSE(access.CanBeRead(Path("none")));
  EXPECT_FALSE(access.CanBeRead(Path("")));
  EXPECT_FALSE(access.CanBeRead(Path("pipe")));
}

TEST_F(Scratch, SettingsComeBackAsTheStringsTheyWere) {
  const QStringList values = {"Arial, Helvetica", "",           " x ",  "@Rect(1 2 3 4)",
                              "C:\\pics\\x",      "a;b=c\"d\"", "true", QString::fromUtf8("\u00E9\u732B"),
                              "line\r\nline",     "%20",        "[g]"};
  {
    HostSettingsStore store(Path("settings.ini"));
    for (qsizetype at = 0; at < values.size(); ++at) {
      store.SaveSetting("QKCVN2", "settings", QString("k%1").arg(at), values.at(at));
    }
    store.SaveSetting("QKCVN2", "settings\\CustColors", "15", "-5");
    EXPECT_EQ("-5", store.GetSetting("QKCVN2", "settings\\CustColors", "15", "0"));
  }
  const HostSettingsStore store(Path("settings.ini"));
  for (qsizetype at = 0; at < values.size(); ++at) {
    EXPECT_EQ(values.at(at), store.GetSetting("QKCVN2", "settings", QString("k%1").arg(at), "default"));
  }
  EXPECT_EQ("-5", store.GetSetting("QKCVN2", "settings\\CustColors", "15", "0"));
}

template <typename Store>
void ExpectDefaultsForMissingKeysOnly(Store& store) {
  EXPECT_EQ("default", store.GetSetting("QKCVN2", "settings", "key", "default"));
  store.SaveSetting("QKCVN2", "settings", "key", QString());
  EXPECT_EQ("", store.GetSetting("QKCVN2", "settings", "key", "default"));
  store.SaveSetting("QKCVN2", "settings", "key", "value");
  EXPECT_EQ("value", store.GetSetting("QKCVN2", "settings", "key", "default"));
  EXPECT_EQ("default", store.GetSetting("OTHER", "settings", "key", "default"));
  EXPECT_EQ("default", store.GetSetting("QKCVN2", "settings\\CustColors", "key", "default"));
}

TEST_F(Scratch, OnlyAMissingKeyGivesTheDefault) {
  HostSettingsStore store(Path("settings.ini"));
  ExpectDefaultsForMissingKeysOnly(store);
  MemorySettings memory;
  ExpectDefaultsForMissingKeysOnly(memory);
}

// A password stands among the settings.
class SettingsRights : public Scratch {
 protected:
  SettingsRights() : before_(::umask(022)) { qputenv("XDG_CONFIG_HOME", Path("config").toUtf8()); }
  ~SettingsRights() override {
    ::umask(before_);
    if (home_.isNull()) {
      qunsetenv("XDG_CONFIG_HOME");
    } else {
      qputenv("XDG_CONFIG_HOME", home_);
    }
  }
  unsigned RightsOf(const QString& name) const {
    struct stat status{};
    return ::stat(qPrintable(Path(name)), &status) == 0 ? status.st_mode & 07777 : 0;
  }

 private:
  const QByteArray home_ = qgetenv("XDG_CONFIG_HOME");
  const mode_t before_;
};

TEST_F(SettingsRights, NewOnesAreTheUsersAlone) {
  HostSettingsStore().SaveSetting("QKCVN2", "settings", "DefPass", "65.98");
  EXPECT_EQ(0600U, RightsOf("config/corvane/settings.ini"));
  EXPECT_EQ(0700U, RightsOf("config/corvane"));
  EXPECT_EQ(0755U, RightsOf("config")) << "which is the desktop's";
  EXPECT_EQ("65.98", HostSettingsStore().GetSetting("QKCVN2", "settings", "DefPass", ""));
  EXPECT_TRUE(FileBytes(Path("config/corvane/settings.ini")).contains("65.98"));
}

TEST_F(SettingsRights, OldOnesAreMendedAndStaySo) {
  Put("config/corvane/settings.ini", "[QKCVN2]\nsettings\\DefPass=65\n");
  ASSERT_EQ(0, ::chmod(qPrintable(Path("config/corvane/settings.ini")), 0664));
  ASSERT_EQ(0, ::chmod(qPrintable(Path("config/corvane")), 0755));
  HostSettingsStore store;
  EXPECT_EQ(0600U, RightsOf("config/corvane/settings.ini"));
  EXPECT_EQ(0700U, RightsOf("config/corvane"));
  EXPECT_EQ("65", store.GetSetting("QKCVN2", "settings", "DefPass", ""));
  {
    HostSettingsStore().SaveSetting("QKCVN2", "settings", "DefPass", "66");
  }
  EXPECT_EQ(0600U, RightsOf("config/corvane/settings.ini"));
  EXPECT_TRUE(FileBytes(Path("config/corvane/settings.ini")).contains("66"));
}

TEST_F(SettingsRights, TheOwnersOwnStayAsTheyAre) {
  Put("config/corvane/settings.ini");
  ASSERT_EQ(0, ::chmod(qPrintable(Path("config/corvane/settings.ini")), 0444));
  HostSettingsStore store;
  EXPECT_EQ(0400U, RightsOf("config/corvane/settings.ini"));
}

TEST_F(SettingsRights, AFileOfTheCallersChoiceLeavesItsFolderAsItIs) {
  ASSERT_TRUE(QDir().mkdir(Path("shared")));
  ASSERT_EQ(0, ::chmod(qPrintable(Path("shared")), 0755));
  HostSettingsStore(Path("shared/a.ini")).SaveSetting("QKCVN2", "settings", "DefPass", "65");
  EXPECT_EQ(0600U, RightsOf("shared/a.ini"));
  EXPECT_EQ(0755U, RightsOf("shared"));
}

TEST_F(Scratch, ASecondInstanceIsToldApart) {
  HostSingleInstance second(Path("lock"));
  {
    HostSingleInstance first(Path("lock"));
    EXPECT_TRUE(first.Acquire());
    EXPECT_FALSE(second.Acquire());
  }
  EXPECT_TRUE(second.Acquire());
}

// The temporary folder may be another one for each start.
TEST(SingleInstance, LocksInTheUsersRuntimeFolder) {
  const QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
  ASSERT_FALSE(runtime.isEmpty());
  HostSingleInstance instance;
  EXPECT_TRUE(instance.Acquire());
  EXPECT_TRUE(QFile::exists(runtime + "/corvane.lock"));
}

TEST_F(Scratch, ALockOfADeadProcessDoesNotCount) {
  Put("lock", "4194305\nother\n" + QSysInfo::machineHostName().toUtf8() + "\n");
  HostSingleInstance instance(Path("lock"));
  EXPECT_TRUE(instance.Acquire());
}

TEST_F(Scratch, ALockThatNobodyStandsInDoesNotCount) {
  Put("lock", "");
  HostSingleInstance instance(Path("lock"));
  EXPECT_TRUE(instance.Acquire());
  HostSingleInstance second(Path("lock"));
  EXPECT_FALSE(second.Acquire());
}

TEST_F(Scratch, ALockThatCantBeMadeHoldsNobody) {
  HostSingleInstance instance(Path("no such folder/lock"));
  EXPECT_TRUE(instance.Acquire());
  EXPECT_TRUE(instance.AcquireFolder(Path("no such folder")));
}

// It may have come with a folder that was copied from there; whether its program lives can't be asked.
TEST_F(Scratch, ALockOfAnotherMachineCountsForMinutes) {
  Put("lock", "1\nother\nanother machine\n");
  const auto setAge = [this](int seconds) {
    QFile lock(Path("lock"));
    return lock.open(QIODevice::ReadWrite) &&
           lock.setFileTime(QDateTime::currentDateTime().addSecs(-seconds), QFileDevice::FileModificationTime);
  };
  HostSingleInstance instance(Path("lock"));
  EXPECT_FALSE(instance.Acquire());
  ASSERT_TRUE(setAge(240));
  EXPECT_FALSE(instance.Acquire());
  ASSERT_TRUE(setAge(360));
  EXPECT_TRUE(instance.Acquire());
  HostSingleInstance second(Path("lock"));
  EXPECT_FALSE(second.Acquire());
}

TEST_F(Scratch, AProgramThatLivesKeepsTheTimeOfItsLocks) {
  HostSingleInstance instance(Path("lock"), std::chrono::milliseconds(10));
  ASSERT_TRUE(instance.Acquire() && instance.AcquireFolder(Path("")));
  const QDateTime before = QDateTime::currentDateTime().addSecs(-1000);
  for (const QString& name : {Path("lock"), Path(".lock")}) {
    QFile lock(name);
    ASSERT_TRUE(lock.open(QIODevice::ReadWrite) && lock.setFileTime(before, QFileDevice::FileModificationTime));
    lock.close();
    EXPECT_TRUE(QTest::qWaitFor([&] { return QFileInfo(name).lastModified() > before.addSecs(900); }))
        << name.toStdString();
  }
}

// Two users, or one with two runtime folders, and one folder of the program.
TEST_F(Scratch, NoTwoProgramsShareAFolder) {
  HostSingleInstance first(Path("lock of one"));
  HostSingleInstance second(Path("lock of another"));
  EXPECT_TRUE(first.Acquire() && second.Acquire());
  EXPECT_TRUE(first.AcquireFolder(Path("")));
  EXPECT_FALSE(second.AcquireFolder(Path("")));
}

TEST_F(Scratch, TheProgramLivesWhereItsExecutableIsWhenThatCanBeWritten) {
  HostStandardFolders folders(Path(""), Path("user"));
  EXPECT_EQ(Path(""), folders.AppPath());
  EXPECT_FALSE(QFileInfo::exists(Path("user")));
}

TEST_F(Scratch, TheProgramLivesInTheUsersFolderOtherwise) {
  HostStandardFolders folders(Path("none"), Path("data/user"));
  EXPECT_EQ(Path("data/user"), folders.AppPath());
  EXPECT_TRUE(QDir(Path("data/user")).exists());
}

TEST_F(Scratch, NothingIsWrittenIntoABundleAndItsResourcesFillTheUsersFolder) {
  Put("Corvane.app/Contents/MacOS/corvane", "program");
  Put("Corvane.app/Contents/Resources/samples/bars.jpg", "picture");
  Put("Corvane.app/Contents/Resources/cvn2.hlp", "help");
  HostStandardFolders folders(Path("Corvane.app/Contents/MacOS"), Path("user"));
  EXPECT_EQ(Path("user"), folders.AppPath());
  EXPECT_EQ("picture", FileBytes(Path("user/samples/bars.jpg")));
  EXPECT_EQ("help", FileBytes(Path("user/cvn2.hlp")));
  EXPECT_EQ(QStringList{"corvane"},
            QDir(Path("Corvane.app/Contents/MacOS")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden));
}

TEST_F(Scratch, WhatWasInstalledLiesBesideTheProgramElsewhere) {
  EXPECT_EQ(Path("lib/corvane"), InstalledFolder(Path("lib/corvane")));
}

TEST_F(Scratch, TheUsersFolderFollowsTheInstalledOne) {
  Put("from/samples/bars.jpg", "picture");
  Put("from/icons/a.ico", "icon");
  Put("from/cvn2.hlp", "help");
  Put("from/corvane", "program");
  Put("to/icons/mine.ico", "mine");
  FillAppFolder(Path("from"), Path("to"));
  EXPECT_EQ("picture", FileBytes(Path("to/samples/bars.jpg")));
  EXPECT_EQ("help", FileBytes(Path("to/cvn2.hlp")));
  EXPECT_FALSE(QFile::exists(Path("to/corvane")));
  EXPECT_EQ("icon", FileBytes(Path("to/icons/a.ico")));
  // A newer version, after a start that was cut short.
  Put("from/cvn2.hlp", "new help");
  Put("to/samples/bars.jpg", "");
  Put("to/icons/a.ico", "the user's");
  FillAppFolder(Path("from"), Path("to"));
  EXPECT_EQ("new help", FileBytes(Path("to/cvn2.hlp")));
  EXPECT_EQ("picture", FileBytes(Path("to/samples/bars.jpg")));
  EXPECT_EQ("the user's", FileBytes(Path("to/icons/a.ico")));
  EXPECT_EQ("mine", FileBytes(Path("to/icons/mine.ico")));
  EXPECT_EQ(QStringList{"bars.jpg"}, QDir(Path("to/samples")).entryList(QDir::Files | QDir::Hidden));
}

TEST(StandardFolders, TheDesktopHasNoSeparatorAtItsEnd) {
  const HostStandardFolders folders;
  EXPECT_FALSE(folders.Desktop().isEmpty());
  EXPECT_FALSE(folders.Desktop().endsWith(QDir::separator()));
}

// Runs with an opener command of the test's own in front of all others.
class HostShellTest : public Scratch {
 protected:
  void SetUp() override {
    path_ = qgetenv("PATH");
    ASSERT_TRUE(QDir().mkdir(Path("bin")));
  }
  void TearDown() override { qputenv("PATH", path_); }

  void PutProgram(const QString& name, const QByteArray& script) {
    Put(name, "#!/bin/sh\n" + script);
    ASSERT_TRUE(QFile::setPermissions(Path(name), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
  }
  // An opener that writes down its working folder and arguments, and ends with `code`.
  void PutOpener(int code) {
    PutProgram("bin/xdg-open", "printf '%s|%s|%s' \"$PWD\" \"$#\" \"$1\" > " + Path("seen").toLocal8Bit() + "\nexit " +
                                   QByteArray::number(code) + "\n");
    qputenv("PATH", Path("bin").toLocal8Bit() + ":" + path_);
  }

  HostShell shell_;

 private:
  QByteArray path_;
};

TEST_F(HostShellTest, OpensAFileInItsFolder) {
  const QString name = "my $(touch no) 'pack'.exe";
  Put("out/" + name);
  PutOpener(0);
  EXPECT_GE(shell_.OpenFile(nullptr, name, Path("out"), ShowMode::Maximised), Shell::kFirstSuccess);
  const QString folder = QFileInfo(Path("out")).canonicalFilePath();
  EXPECT_EQ(folder + "|1|" + Path("out/") + name, QString::fromLocal8Bit(FileBytes(Path("seen"))));
  EXPECT_FALSE(QFile::exists(Path("out/no")));
}

TEST_F(HostShellTest, OpensAnAddressOfTheWebAsItStands) {
  PutOpener(0);
  EXPECT_GE(shell_.OpenFile(nullptr, "https://host.example/?a=b&c", QString(), ShowMode::Normal), Shell::kFirstSuccess);
  EXPECT_EQ(QDir::currentPath() + "|1|https://host.example/?a=b&c", QString::fromLocal8Bit(FileBytes(Path("seen"))));
}

TEST_F(HostShellTest, AnOpenerThatRefusesIsAFailure) {
  Put("out/a.exe");
  PutOpener(3);
  EXPECT_LT(shell_.OpenFile(nullptr, "a.exe", Path("out"), ShowMode::Normal), Shell::kFirstSuccess);
  EXPECT_TRUE(QFile::exists(Path("seen")));
}

TEST_F(HostShellTest, AnOpenerThatReadsFindsNothing) {
  Put("out/a.exe");
  PutProgram("bin/xdg-open", "wc -c > " + Path("seen").toLocal8Bit() + "\n");
  qputenv("PATH", Path("bin").toLocal8Bit() + ":" + qgetenv("PATH"));
  EXPECT_GE(shell_.OpenFile(nullptr, "a.exe", Path("out"), ShowMode::Normal), Shell::kFirstSuccess);
  EXPECT_EQ("0", FileBytes(Path("seen")).trimmed());
}

TEST_F(HostShellTest, AMissingFileOrOpenerIsAFailure) {
  PutOpener(0);
  EXPECT_LT(shell_.OpenFile(nullptr, "none.exe", Path("bin"), ShowMode::Normal), Shell::kFirstSuccess);
  EXPECT_FALSE(QFile::exists(Path("seen")));
  Put("out/a.exe");
  qputenv("PATH", Path("out").toLocal8Bit());
  EXPECT_LT(shell_.OpenFile(nullptr, "a.exe", Path("out"), ShowMode::Normal), Shell::kFirstSuccess);
}

TEST_F(HostShellTest, AnOpenerThatIsStillAtWorkIsASuccessAndWorksOn) {
  Put("out/a.exe");
  PutProgram("bin/xdg-open", "sleep 0.2\necho done > " + Path("seen").toLocal8Bit() + "\n");
  qputenv("PATH", Path("bin").toLocal8Bit() + ":" + qgetenv("PATH"));
  {
    HostShell hasty(10);
    EXPECT_GE(hasty.OpenFile(nullptr, "a.exe", Path("out"), ShowMode::Maximised), Shell::kFirstSuccess);
  }
  EXPECT_FALSE(QFile::exists(Path("seen")));
  EXPECT_TRUE(QTest::qWaitFor([this] { return FileBytes(Path("seen")) == "done\n"; }));
}

TEST_F(HostShellTest, StartsAProgramAndDoesNotWait) {
  PutProgram("tool", "echo started > " + Path("seen").toLocal8Bit() + "\n");
  EXPECT_TRUE(shell_.StartProgram(Path("tool"), ShowMode::Normal));
  EXPECT_TRUE(QTest::qWaitFor([this] { return FileBytes(Path("seen")) == "started\n"; }));
}

TEST_F(HostShellTest, WhatIsNoProgramIsNotStarted) {
  Put("data.exe", "not a program");
  EXPECT_FALSE(shell_.StartProgram(Path("data.exe"), ShowMode::Maximised));
  EXPECT_FALSE(shell_.StartProgram(Path("none.exe"), ShowMode::Maximised));
  EXPECT_FALSE(shell_.StartProgram(Path("bin"), ShowMode::Maximised));
}

TEST(RealPlatform, HandsOutItsOwnServices) {
  RealPlatform real;
  EXPECT_EQ(AttributeDirectory, real.Services().fileAttributes.Get(QDir::tempPath()).value_or(0) & AttributeDirectory);
  EXPECT_EQ("3", real.Services().settings.GetSetting("QKCVN2", "settings", "BSz", "3"));
  EXPECT_FALSE(real.Services().folders.AppPath().isEmpty());
}

TEST(HostShell, WhatIsThrownAwayLiesInTheTrashWhole) {
  const QDir home = QDir::home();
  ASSERT_TRUE(PutFile(home.filePath("project/page.html"), "mine"));
  HostShell shell;
  EXPECT_FALSE(shell.MoveToTrash(home.filePath("nothing")));
  ASSERT_TRUE(shell.MoveToTrash(home.filePath("project")));
  EXPECT_FALSE(home.exists("project"));
  EXPECT_EQ("mine", FileBytes(home.filePath(".local/share/Trash/files/project/page.html")));
}

}  // namespace
