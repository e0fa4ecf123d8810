#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include "HostSettingsStore.h"
#include "RunningProgram.h"
#include "Settings.h"
#include "SettingsControls.h"

namespace {

// The real store, closed and opened again.

class SettingsOnDisk : public ::testing::Test {
 protected:
  QString File() const { return scratch_.filePath("deep/settings.ini"); }

  // A copy of the file, which nobody has read yet: QSettings remembers in memory what it wrote to a file.
  QString CopyOfFile() {
    const QString copy = scratch_.filePath(QString("copy%1.ini").arg(++copies_));
    EXPECT_TRUE(QFile::copy(File(), copy));
    return copy;
  }

 private:
  QTemporaryDir scratch_;
  int copies_ = 0;
};

constexpr char kTexts[] =
    "| |  both ends  |@|@Invalid()|@Rect(1 2 3 4)|@ByteArray(x)|@Variant(\\0\\0\\0\\x2)|@@|Arial, Helvetica|,|a,b\\,c|"
    "\"quoted\"|'|;comment|#000000|key=value|[section]|C:\\cards\\new\\|\\x41|%41|ann@home.net*bob@home.net|"
    "line\r\nline\nline\rline\ttab|\r\n|Gr\u00FC\u00DFe \u732B \U0001F431 e\u0301";

TEST_F(SettingsOnDisk, TextsOfEveryKindSurviveARestart) {
  QStringList texts = QString::fromUtf8(kTexts).split(u'|');
  texts << "nul" + QString(QChar(u'\0')) + "nul" << QString(70000, u'x');
  QString file = File();
  for (int run = 0; run < 3; ++run) {
    {
      HostSettingsStore store(file);
      for (qsizetype i = 0; i < texts.size(); ++i) {
        const QString key = QString("k%1").arg(i);
        const QString before = run == 0 ? "default" : texts.at(i);
        EXPECT_EQ(before, store.GetSetting("QKCVN2", "settings", key, "default")) << i;
        store.SaveSetting("QKCVN2", "settings", key, texts.at(i));
      }
      EXPECT_EQ("default", store.GetSetting("QKCVN2", "settings", "missing", "default"));
    }
    const QString next = file + "x";
    ASSERT_TRUE(QFile::copy(file, next));
    file = next;
  }
}

TEST_F(SettingsOnDisk, NoTextAtAllIsStoredAsAnEmptyOne) {
  HostSettingsStore(File()).SaveSetting("QKCVN2", "settings", "k", QString());
  EXPECT_EQ("", HostSettingsStore(CopyOfFile()).GetSetting("QKCVN2", "settings", "k", "default"));
}

TEST_F(SettingsOnDisk, TheSectionOfTheColorsIsApartFromTheSettings) {
  {
    HostSettingsStore store(File());
    store.SaveSetting("QKCVN2", "settings\\CustColors", "0", "-5");
    store.SaveSetting("QKCVN2", "settings", "0", "plain");
    store.SaveSetting("QKCVN2", "settings", "CustColors", "a key of that name");
  }
  HostSettingsStore store(CopyOfFile());
  EXPECT_EQ("-5", store.GetSetting("QKCVN2", "settings\\CustColors", "0", "default"));
  EXPECT_EQ("plain", store.GetSetting("QKCVN2", "settings", "0", "default"));
  EXPECT_EQ("a key of that name", store.GetSetting("QKCVN2", "settings", "CustColors", "default"));
  EXPECT_EQ("default", store.GetSetting("QKCVN2", "settings\\CustColors", "1", "default"));
}

TEST_F(SettingsOnDisk, AFileOfRubbishGivesTheDefaults) {
  ASSERT_TRUE(PutFile(File(), QByteArray("\0\xff[[]\n=\n[QKCVN2\\settings\n\\x\n%%%=@Variant(", 42)));
  HostSettingsStore store(File());
  for (const auto& key : {Settings::BCol, Settings::BFace, Settings::BSz, Settings::BFaceDex, Settings::Winset,
                          Settings::LinkText, Settings::GreetName, Settings::CurIcon, Settings::DefPass})
    EXPECT_EQ(QString(key.defaultText), Settings::Get(store, key)) << key.name.data();
  EXPECT_EQ("0", store.GetSetting("QKCVN2", "settings\\CustColors", "3", "0"));
}

TEST_F(SettingsOnDisk, WhatIsWrittenIntoADamagedFileIsReadAgainAndTheRestStays) {
  constexpr char damaged[] =
      "[QKCVN2]\nsettings\\LinkText=Weiter\n\0\xff[[]\n=\n[x\n"
      "settings\\GreetName=\"open\"\n[QKCVN2]\nsettings\\DefName=Ann\n";
  ASSERT_TRUE(PutFile(File(), QByteArray(damaged, sizeof damaged - 1)));
  {
    HostSettingsStore store(File());
    Settings::Save(store, Settings::BSz, "5");
    Settings::Save(store, Settings::CurIcon, "ROSE");
  }
  HostSettingsStore store(CopyOfFile());
  EXPECT_EQ("5", Settings::Get(store, Settings::BSz));
  EXPECT_EQ("ROSE", Settings::Get(store, Settings::CurIcon));
  EXPECT_EQ("Weiter", Settings::Get(store, Settings::LinkText));
  EXPECT_EQ("Ann", Settings::Get(store, Settings::DefName));
  EXPECT_EQ("#000000", Settings::Get(store, Settings::BCol));
}

TEST_F(SettingsOnDisk, ValuesWithCommasThatWereWrittenByHandAreTexts) {
  ASSERT_TRUE(PutFile(File(),
                      "[QKCVN2]\nsettings\\BFace=Verdana, Arial, Helvetica\nsettings\\LinkText=Home, sweet home\n"
                      "settings\\GreetName=,\nsettings\\BSz=5\nsettings\\DefName=\"Doe, Ann\"\n"));
  {
    HostSettingsStore store(File());
    EXPECT_EQ("Verdana, Arial, Helvetica", Settings::Get(store, Settings::BFace));
    EXPECT_EQ("Home, sweet home", Settings::Get(store, Settings::LinkText));
    EXPECT_EQ(", ", Settings::Get(store, Settings::GreetName));
    EXPECT_EQ("Doe, Ann", Settings::Get(store, Settings::DefName));
    Settings::Save(store, Settings::BSz, "4");
  }
  HostSettingsStore store(CopyOfFile());
  EXPECT_EQ("Verdana, Arial, Helvetica", Settings::Get(store, Settings::BFace));
  EXPECT_EQ("4", Settings::Get(store, Settings::BSz));
}

TEST_F(SettingsOnDisk, TheProgramFindsItsSettingsAgain) {
  {
    HostSettingsStore store(File());
    Settings::Save(store, Settings::LinkText, "\u2192 Weiter, \"bitte\"; @n\u00E4chste");
    Settings::Save(store, Settings::CurIcon, "");
    Settings::Save(store, Settings::CurIconNum, "7");
    RunningProgram run(&store);
    ASSERT_TRUE(run.Start());
    run.View().SetBodyFontColor("#112233");
    run.View().SetBodyFontName("Times New Roman, @serif");
    run.View().SetBodyFontSize("6");
    FaceList(run.modMain)->setCurrentIndex(2);
    run.program().CustColors[15] = -7;
    run.Web().showNormal();
    run.Web().resize(641, 483);
    run.Dialogs().Answers = {MessageAnswer::No};
    ASSERT_TRUE(run.Choose("mExit"));
    ASSERT_TRUE(run.ended);
  }
  HostSettingsStore store(CopyOfFile());
  RunningProgram run(&store);
  ASSERT_TRUE(run.Start());
  EXPECT_EQ(QString::fromUtf8("\u2192 Weiter, \"bitte\"; @n\u00E4chste"), run.program().LinkTextValue);
  EXPECT_EQ("", run.program().CurIconName);
  EXPECT_EQ(7, SelectedIcon(run.modMain));
  EXPECT_EQ("#112233", run.View().BodyFontColor());
  EXPECT_EQ("Times New Roman, @serif", run.View().BodyFontName());
  EXPECT_EQ("6", run.View().BodyFontSize());
  EXPECT_EQ(5, run.Web().BoxSize->currentIndex());
  EXPECT_EQ(2, run.Web().BoxFace->currentIndex());
  EXPECT_EQ(2, FaceList(run.modMain)->currentIndex());
  EXPECT_EQ(-7, run.program().CustColors[15]);
  EXPECT_EQ(QSize(641, 483), run.Web().size());
}

}  // namespace
