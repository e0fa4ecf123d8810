// Starts on disks that are full or can't be written: the program comes up without a word, nothing that was there is
// lost or torn, and once the trouble is over all goes on.
#include "HostSettingsStore.h"
#include "OnSmallDisk.h"
#include "ProgramFixture.h"
#include "Settings.h"
#include "StandardFolders.h"

namespace {

class Start : public OnSmallDisk<ProgramTest> {
 protected:
  void ExpectSilentStart() {
    EXPECT_TRUE(run_.Start());
    EXPECT_TRUE(Web().isVisible());
    EXPECT_TRUE(run_.program().AppStarted);
    EXPECT_TRUE(run_.Dialogs().Boxes.isEmpty()) << qPrintable(run_.Dialogs().Messages().join(" | "));
    EXPECT_FALSE(Web().Busy);
  }
  void PutWork() {
    ASSERT_TRUE(PutFile(run_.PathInApp("card/wgcard.html"), Work()));
    ASSERT_TRUE(PutFile(run_.PathInApp("card/p.gif"), QByteArray(20000, 'p')));
  }
  void PutRescueFile() { ASSERT_TRUE(PutFile(run_.PathInApp("rescue/" + RescueName()), Unsaved())); }
  // Folder of what an earlier run left, relative to the program's own; it may be `rescued` itself.
  QString Rescued() const {
    const QStringList names = Names("rescued");
    const bool isOne = names.size() == 1 && QFileInfo(run_.PathInApp("rescued/" + names.first())).isDir();
    return isOne ? "rescued/" + names.first() : "rescued";
  }
  void ExpectWorkIn(const QString& folder) {
    EXPECT_EQ(Work(), FileIn(folder + "/wgcard.html"));
    EXPECT_EQ(QByteArray(20000, 'p'), FileIn(folder + "/p.gif"));
  }
  void ExpectEditingWorks() {
    ASSERT_TRUE(run_.Choose("mNewPage"));
    run_.Type("two");
    ASSERT_TRUE(run_.Choose("mSavePage"));
    EXPECT_EQ(View().SourceForFile(), FileBytes(run_.program().project.CurPageFile()));
    EXPECT_TRUE(FileBytes(run_.program().project.CurPageFile()).contains("two"));
    EXPECT_EQ(StringText(TextNumber::BlankPage).toUtf8(), FileIn("blank.html"));
  }
  static QByteArray Work() { return "<html><body>" + QByteArray(9000, 'w') + "</body></html>"; }
  static QByteArray Unsaved() { return "<html><body>" + QByteArray(30000, 'u') + "</body></html>"; }
  static QString RescueName() { return "Site - Page2 (not saved).html"; }
};

class StartOnFullDisk : public Start {};
class StartOnDiskThatCantBeWritten : public Start {};
class StartOnDiskWithoutRoomForAFolder : public Start {};

TEST_F(StartOnFullDisk, AFirstOneLeavesNothingTornAndAllGoesOnOnceThereIsRoom) {
  Fill();
  ExpectSilentStart();
  for (const char* const file : {"blank.html", "card/wgcard.html"}) EXPECT_EQ("<missing>", FileIn(file)) << file;
  Free();
  ExpectEditingWorks();
}

TEST_F(StartOnFullDisk, WhatAnEarlierRunLeftIsKeptWhole) {
  PutWork();
  PutRescueFile();
  Fill();
  ExpectSilentStart();
  ExpectWorkIn(Rescued());
  EXPECT_EQ(Unsaved(), FileIn(Rescued() + u'/' + RescueName()));
  EXPECT_FALSE(QDir(run_.PathInApp("rescue")).exists());
}

TEST_F(StartOnDiskWithoutRoomForAFolder, WhatAnEarlierRunLeftIsKeptWhole) {
  PutWork();
  PutRescueFile();
  RefuseNewNames();
  ASSERT_FALSE(QDir().mkdir(run_.PathInApp("one more")));
  ExpectSilentStart();
  ExpectWorkIn(Rescued());
  EXPECT_EQ(Unsaved(), FileIn(Rescued() + u'/' + RescueName()));
}

TEST_F(StartOnDiskWithoutRoomForAFolder, ARescueFileAloneIsKeptWhole) {
  PutRescueFile();
  RefuseNewNames();
  ExpectSilentStart();
  EXPECT_EQ(Unsaved(), FileIn(Rescued() + u'/' + RescueName()));
}

TEST_F(StartOnDiskThatCantBeWritten, NothingChangesAndTheExitGoesOn) {
  PutWork();
  PutRescueFile();
  const QStringList before = Names("");
  MakeWritable(false);
  ExpectSilentStart();
  Exit({MessageAnswer::No});
  EXPECT_TRUE(run_.ended);
  EXPECT_EQ(before, Names(""));
  ExpectWorkIn("card");
  EXPECT_EQ(Unsaved(), FileIn("rescue/" + RescueName()));
}

TEST_F(StartOnDiskThatCantBeWritten, AllGoesOnOnceItCan) {
  MakeWritable(false);
  ExpectSilentStart();
  MakeWritable(true);
  ExpectEditingWorks();
}

// Help and samples in the user's own folder, at the first start and at the one after an update.
TEST_F(StartOnFullDisk, HelpAndSamplesAreWholeOrOfTheVersionBeforeAndCompletedLater) {
  const auto path = [this](const char* name) { return run_.test.Path(name); };
  const QByteArray help(200000, 'h'), sample(150000, 's'), icon(766, 'i'), old(90000, 'o');
  ASSERT_TRUE(PutFile(path("installed/cvn2.hlp"), help));
  ASSERT_TRUE(PutFile(path("installed/samples/bars.jpg"), sample));
  ASSERT_TRUE(PutFile(path("installed/icons/a.ico"), icon));
  ASSERT_TRUE(PutFile(path("user/cvn2.hlp"), old));
  Fill();
  {
    QFile filler(Filler());
    ASSERT_TRUE(filler.resize(filler.size() - (64 << 10)));  // room for a part of each
  }
  FillAppFolder(path("installed"), path("user"));
  EXPECT_EQ(old, FileBytes(path("user/cvn2.hlp")));
  EXPECT_EQ("<missing>", FileBytes(path("user/samples/bars.jpg")));
  EXPECT_EQ(icon, FileBytes(path("user/icons/a.ico")));
  EXPECT_EQ(QStringList{"cvn2.hlp"}, QDir(path("user")).entryList(QDir::Files | QDir::Hidden));
  EXPECT_EQ(QStringList(), QDir(path("user/samples")).entryList(QDir::Files | QDir::Hidden));
  Free();
  FillAppFolder(path("installed"), path("user"));
  EXPECT_EQ(help, FileBytes(path("user/cvn2.hlp")));
  EXPECT_EQ(sample, FileBytes(path("user/samples/bars.jpg")));
}

// The store at the end of a run.
class SettingsOnBadDisk : public OnSmallDisk<::testing::Test> {
 protected:
  SettingsOnBadDisk() {
    HostSettingsStore store(file_);
    Settings::Save(store, Settings::LinkText, "Weiter");
    Settings::Save(store, Settings::DefServ, QString(3000, u's'));
  }
  void Save(const QString& size) {
    HostSettingsStore store(file_);
    Settings::Save(store, Settings::BSz, size);
    Settings::Save(store, Settings::DefName, QString(9000, u'n'));
    EXPECT_EQ(size, Settings::Get(store, Settings::BSz)) << "as long as the program runs";
  }

  QTemporaryDir scratch_;
  QString file_ = scratch_.filePath("settings.ini");
};

TEST_F(SettingsOnBadDisk, ThoseOfTheLastRunStayWholeAndNewOnesGoInOnceTheyCan) {
  const QByteArray before = FileBytes(file_);
  ASSERT_TRUE(before.contains("Weiter"));
  Fill();
  Save("5");
  EXPECT_EQ(before, FileBytes(file_));
  Free();
  MakeWritable(false);
  Save("6");
  EXPECT_EQ(before, FileBytes(file_));
  MakeWritable(true);
  EXPECT_EQ(QStringList{"settings.ini"}, QDir(scratch_.path()).entryList(QDir::Files | QDir::Hidden));
  Save("4");
  EXPECT_TRUE(FileBytes(file_).contains("Weiter"));
  EXPECT_TRUE(FileBytes(file_).contains("BSz=4"));
}

}  // namespace
