#include "PackPanel.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGroupBox>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>

#include "Settings.h"
#include "StringTable.h"
#include "TestPlatform.h"
#include "Twips.h"

namespace {

class Panel : public ::testing::Test {
 protected:
  Panel() : panel_(test_.program, busy_) {
    EXPECT_TRUE(PutFile(test_.WorkFile("wgcard.html"), "<BODY>text</BODY>"));
    panel_.LoadBoxes();
    panel_.tMakeFileName->setText("pack");
    test_.platform.dialogs.WhileShown = [this] { busyWhileShown_.append(busy_); };
  }
  ~Panel() override {
    EXPECT_EQ(0, test_.platform.dialogs.Unanswered);
    EXPECT_FALSE(busyWhileShown_.contains(false));
  }

  void Click(int index) { panel_.bCreate[index]->click(); }
  QString Target() const { return test_.Path("desktop/pack.exe"); }
  QString Stored(const Settings::Key& key) const { return Settings::Get(test_.platform.settings, key); }
  ScriptedDialogs& Dialogs() { return test_.platform.dialogs; }

  TestProgram test_;
  bool busy_ = false;
  PackPanel panel_;
  QList<bool> busyWhileShown_;
};

TEST_F(Panel, TheBoxesHoldFolderAndLastName) {
  PackPanel fresh(test_.program, busy_);
  EXPECT_EQ("Greeting.exe", fresh.tMakeFileName->text());
  EXPECT_EQ("", fresh.tMakePath->text());
  Settings::Save(test_.platform.settings, Settings::GreetName, "Birthday.exe");
  fresh.LoadBoxes();
  EXPECT_EQ("Birthday.exe", fresh.tMakeFileName->text());
  EXPECT_EQ(test_.program.CardFolder, fresh.tMakePath->text());
}

TEST_F(Panel, ABuildTellsFileAndSize) {
  Dialogs().Answers = {MessageAnswer::No};
  Click(0);
  ASSERT_EQ(1, Dialogs().Boxes.size());
  const ScriptedDialogs::Box& box = Dialogs().Boxes.first();
  const qint64 kilobytes = QFileInfo(Target()).size() / 1024;
  EXPECT_EQ(QString("Web-pack file created:\r\n%1\r\nSize of file is: %2 KB.\r\nDo you want to test this package?")
                .arg(Target())
                .arg(kilobytes),
            box.text);
  EXPECT_EQ(76, kilobytes);
  EXPECT_EQ(MessageIcon::Question, box.icon);
  EXPECT_EQ(MessageButtons::YesNo, box.buttons);
  EXPECT_EQ("Corvane", box.title);
  EXPECT_TRUE(test_.platform.shell.Opened.isEmpty());
  EXPECT_EQ("pack.exe", Stored(Settings::GreetName));
  EXPECT_FALSE(busy_);
}

// Meant in PackPanel::Build: a build doesn't store the folder that it went to.
TEST_F(Panel, ABuildDoesNotStoreItsFolder) {
  panel_.tMakePath->setText(test_.Path("app"));
  Dialogs().Answers = {MessageAnswer::No};
  Click(0);
  EXPECT_TRUE(QFile::exists(test_.Path("app/pack.exe")));
  EXPECT_EQ(test_.program.DesktopPath, test_.program.CardFolder);
  EXPECT_EQ("", Stored(Settings::CardFol));
}

TEST_F(Panel, AFolderThatIsNotThereIsRefused) {
  for (const QString& folder : {test_.Path("none"), QString(), test_.Path("desktop") + " ", QString("/")}) {
    Dialogs().Boxes.clear();
    panel_.tMakePath->setText(folder);
    Click(0);
    EXPECT_EQ(QStringList{"Folder path for web-pack file is not valid."}, Dialogs().Messages());
    EXPECT_EQ(MessageIcon::Information, Dialogs().Boxes.first().icon);
    EXPECT_EQ(MessageButtons::Ok, Dialogs().Boxes.first().buttons);
  }
  EXPECT_EQ("Greeting.exe", Stored(Settings::GreetName));
  EXPECT_FALSE(busy_);
}

TEST_F(Panel, AnExistingFileIsReplacedOnlyOnOk) {
  ASSERT_TRUE(PutFile(Target(), "old"));
  ASSERT_TRUE(PutFile(test_.WorkFile("card.zip"), "from before"));
  ASSERT_TRUE(PutFile(test_.WorkFile("unused.gif"), "x"));
  Dialogs().Answers = {MessageAnswer::Cancel};
  Click(0);
  EXPECT_EQ(QStringList{"File exists. Replace it?"}, Dialogs().Messages());
  EXPECT_EQ(MessageIcon::Question, Dialogs().Boxes.first().icon);
  EXPECT_EQ(MessageButtons::OkCancel, Dialogs().Boxes.first().buttons);
  EXPECT_EQ("old", FileBytes(Target()));
  // The pages weren't touched, but the archive of an earlier build is gone.
  EXPECT_TRUE(QFile::exists(test_.WorkFile("unused.gif")));
  EXPECT_FALSE(QFile::exists(test_.WorkFile("card.zip")));

  Dialogs().Answers = {MessageAnswer::Ok, MessageAnswer::No};
  Click(0);
  EXPECT_GT(QFileInfo(Target()).size(), 77824);
}

TEST_F(Panel, TheNextBuildDeletesTheCardZipOfAFailedOne) {
  test_.program.CurIconName = "NONE";
  Click(0);
  EXPECT_EQ(
      QStringList{"Error. Unable to make executable section of web-pack file. Try re-assigning web-pack file icon "
                  "in Settings."},
      Dialogs().Messages());
  EXPECT_TRUE(QFile::exists(test_.WorkFile("card.zip")));
  EXPECT_EQ("Greeting.exe", Stored(Settings::GreetName));

  test_.program.CurIconName = "WP";
  Dialogs().Answers = {MessageAnswer::No};
  Click(0);
  EXPECT_FALSE(QFile::exists(test_.WorkFile("card.zip")));
  EXPECT_FALSE(FileBytes(Target()).contains("card.zip"));
}

TEST_F(Panel, EachFailureHasItsMessage) {
  test_.program.CurIconName = "Custom";
  Click(0);
  test_.platform.access.RefusedNames = {"wgcard.html"};
  Click(0);
  test_.program.project.SavedAs("none", test_.Path("none"));
  Click(0);
  EXPECT_EQ(QStringList({"Error. Custom icon assignment for web-pack file is not valid.",
                         "Error. Unable to make web-pack due to open file. This may happen if a sound file is playing "
                         "while web-pack file is being made.",
                         "Error. No page files found to make web-pack file."}),
            Dialogs().Messages());
  EXPECT_FALSE(busy_);
}

TEST_F(Panel, AnArchiveThatCantBeMadeIsTold) {
  // A folder stands in its place.
  ASSERT_TRUE(QDir().mkpath(test_.WorkFile("card.zip/inside")));
  ASSERT_TRUE(PutFile(Target(), "old"));
  Dialogs().Answers = {MessageAnswer::Ok};
  Click(0);
  EXPECT_FALSE(QFile::exists(Target())) << "Ok deletes the old file, whatever becomes of the new one";
  Dialogs().Boxes.clear();
  Click(0);
  EXPECT_EQ(QStringList{"Error. Unable to make compressed file section of web-pack file. This may occur if the program "
                        "is not running from C drive."},
            Dialogs().Messages());
  EXPECT_EQ(MessageIcon::Information, Dialogs().Boxes.first().icon);
}

TEST_F(Panel, ATargetThatCantBeWrittenIsTold) {
  ASSERT_TRUE(QDir().mkpath(test_.Path("desktop/pack.exe/inside")));
  Click(0);
  EXPECT_EQ(
      QStringList{"Error. Unable to make executable section of web-pack file. Try re-assigning web-pack file icon "
                  "in Settings."},
      Dialogs().Messages());
}

TEST_F(Panel, AnArchiveThatVanishesBeforeItIsReadIsTold) {
  // Another program makes a file in the target's place while the archive is made, and takes the archive away as soon as
  // that file is deleted.
  QMetaObject::invokeMethod(&panel_, [this] { ASSERT_TRUE(PutFile(Target(), "late")); }, Qt::QueuedConnection);
  test_.platform.attributes.BeforeSet = [this](const QString& path) {
    if (path == Target()) QFile::remove(test_.WorkFile("card.zip"));
  };
  Click(0);
  const QStringList messages = Dialogs().Messages();
  ASSERT_EQ(1, messages.size());
  EXPECT_TRUE(messages.first().startsWith("Error. Unable to assemble web-pack file in destination folder."));
  EXPECT_TRUE(messages.first().endsWith("then move them to C drive and re-insert them."));
}

TEST_F(Panel, AFolderThatVanishesDuringTheBuildIsToldAndTheProjectIsWhole) {
  const QStringList before = QDir(test_.program.project.WorkPath()).entryList(QDir::Files);
  // The archive is made in passes of messages, in one of which somebody takes the folder away.
  QMetaObject::invokeMethod(
      &panel_, [this] { ASSERT_TRUE(QDir(test_.Path("desktop")).removeRecursively()); }, Qt::QueuedConnection);
  Click(0);
  EXPECT_FALSE(QFileInfo::exists(test_.Path("desktop")));
  EXPECT_EQ(
      QStringList{"Error. Unable to make executable section of web-pack file. Try re-assigning web-pack file icon "
                  "in Settings."},
      Dialogs().Messages());
  QStringList behind = QDir(test_.program.project.WorkPath()).entryList(QDir::Files);
  behind.removeOne("card.zip");  // which a build that failed leaves
  EXPECT_EQ(before, behind);
}

TEST_F(Panel, ASizeIsRoundedDown) {
  Dialogs().Answers = {MessageAnswer::No};
  Click(0);
  const qint64 size = QFileInfo(Target()).size();
  ASSERT_NE(0, size % 1024);
  EXPECT_TRUE(Dialogs().Messages().first().contains("Size of file is: " + QString::number(size / 1024) + " KB."));
}

TEST_F(Panel, ANameThatEndsInABlankGetsASecondEndingAndAFolderIsNotTrimmed) {
  panel_.tMakeFileName->setText("a.exe ");
  Dialogs().Answers = {MessageAnswer::No};
  Click(0);
  EXPECT_TRUE(QFile::exists(test_.Path("desktop/a.exe .exe")));
  EXPECT_EQ("a.exe .exe", Stored(Settings::GreetName));
  panel_.tMakePath->setText(" " + test_.Path("desktop"));
  Dialogs().Boxes.clear();
  Click(0);
  EXPECT_EQ(QStringList{"Folder path for web-pack file is not valid."}, Dialogs().Messages());
}

TEST_F(Panel, TheTestRunOpensTheFileInItsFolderForTheWindow) {
  QWidget whole;
  panel_.setParent(&whole);
  Dialogs().Answers = {MessageAnswer::Yes};
  Click(0);
  panel_.setParent(nullptr);
  const RecordingShell& shell = test_.platform.shell;
  ASSERT_EQ(1, shell.Opened.size());
  EXPECT_EQ("pack.exe", shell.Opened.first().file);
  EXPECT_EQ(test_.Path("desktop"), shell.Opened.first().folder);
  EXPECT_EQ(ShowMode::Maximised, shell.Opened.first().mode);
  EXPECT_EQ(&whole, shell.Opened.first().owner);
  EXPECT_TRUE(shell.Started.isEmpty());
  EXPECT_EQ(1, Dialogs().Boxes.size());
  EXPECT_EQ("pack.exe", Stored(Settings::GreetName));
}

// The name is remembered behind the question and the test run, whatever came of them.
TEST_F(Panel, TheNameIsStoredAfterTheTestRun) {
  QStringList seen;
  Dialogs().WhileShown = [&] { seen += Stored(Settings::GreetName); };
  test_.platform.shell.WhileOpening = [&] { seen += Stored(Settings::GreetName); };
  test_.platform.shell.OpenResult = 2;
  test_.platform.shell.StartResult = false;
  Dialogs().Answers = {MessageAnswer::Yes};
  Click(0);
  // The question, both ways of opening, and the box.
  EXPECT_EQ(QStringList({"Greeting.exe", "Greeting.exe", "Greeting.exe", "Greeting.exe"}), seen);
  EXPECT_EQ("pack.exe", Stored(Settings::GreetName));
}

TEST_F(Panel, ATestRunThatIsRefusedStartsTheFileItself) {
  test_.platform.shell.OpenResult = 32;
  Dialogs().Answers = {MessageAnswer::Yes};
  Click(0);
  const RecordingShell& shell = test_.platform.shell;
  ASSERT_EQ(1, shell.Started.size());
  EXPECT_EQ(Target(), shell.Started.first().file);
  EXPECT_EQ(ShowMode::Maximised, shell.Started.first().mode);
  EXPECT_EQ(1, Dialogs().Boxes.size());
}

TEST_F(Panel, ATestRunThatFailsTwiceIsTold) {
  test_.platform.shell.OpenResult = 31;
  test_.platform.shell.StartResult = false;
  Dialogs().Answers = {MessageAnswer::Yes};
  Click(0);
  ASSERT_EQ(2, Dialogs().Boxes.size());
  EXPECT_EQ("Test of file failed. Try testing the file by hand.", Dialogs().Boxes.last().text);
  EXPECT_EQ(MessageIcon::Information, Dialogs().Boxes.last().icon);
  EXPECT_EQ("pack.exe", Stored(Settings::GreetName));
}

// Where Windows programs don't run the pack is read by the stub's own reader first.
TEST_F(Panel, WhereItCantBeStartedThePackIsReadAndWholeIsNoFailure) {
  RecordingShell& shell = test_.platform.shell;
  shell.RunsWindows = false;
  Dialogs().Answers = {MessageAnswer::Yes};
  Click(0);
  EXPECT_EQ(1, shell.Opened.size());
  EXPECT_EQ(1, Dialogs().Boxes.size());
  shell.OpenResult = 2;
  shell.StartResult = false;
  Dialogs().Answers = {MessageAnswer::Ok, MessageAnswer::Yes};
  Dialogs().Boxes.clear();
  Click(0);
  EXPECT_EQ(StringText(FixedText::PackageIsWhole), Dialogs().Messages().last());
}

TEST_F(Panel, WhereItCantBeStartedADifferenceIsToldAndNothingIsOpened) {
  RecordingShell& shell = test_.platform.shell;
  shell.RunsWindows = false;
  Dialogs().Answers = {MessageAnswer::Yes};
  // While the question is up somebody changes the file.
  Dialogs().WhileShown = [this] { ASSERT_TRUE(PutFile(Target(), "no pack")); };
  Click(0);
  EXPECT_EQ("Test of file failed. Try testing the file by hand.\r\npack.exe", Dialogs().Messages().last());
  EXPECT_TRUE(shell.Opened.isEmpty());
}

TEST_F(Panel, BrowseStoresTheFolder) {
  QSignalSpy chosen(&panel_, &PackPanel::CardFolderChosen);
  Dialogs().Texts = {test_.Path("app")};
  Click(1);
  ASSERT_EQ(1, Dialogs().Questions.size());
  EXPECT_EQ("Select folder to make web-pack file.", Dialogs().Questions.first().title);
  EXPECT_EQ(&panel_, Dialogs().Questions.first().owner);
  EXPECT_EQ(test_.Path("app"), panel_.tMakePath->text());
  EXPECT_EQ(test_.Path("app"), test_.program.CardFolder);
  EXPECT_EQ(test_.Path("app"), Stored(Settings::CardFol));
  ASSERT_EQ(1, chosen.size());
  EXPECT_EQ(test_.Path("app"), chosen.first().first().toString());
  EXPECT_TRUE(Dialogs().Boxes.isEmpty());
}

// Meant in PackPanel::Browse: cancelling the folder dialog is told as an error.
TEST_F(Panel, ACancelledBrowseIsTold) {
  QSignalSpy chosen(&panel_, &PackPanel::CardFolderChosen);
  Dialogs().Texts = {"", test_.Path("none")};
  Click(1);
  Click(1);
  EXPECT_EQ(QStringList({"Error. Folder does not exist.", "Error. Folder does not exist."}), Dialogs().Messages());
  EXPECT_EQ(MessageIcon::Information, Dialogs().Boxes.first().icon);
  EXPECT_EQ(test_.program.DesktopPath, panel_.tMakePath->text());
  EXPECT_EQ(test_.program.DesktopPath, test_.program.CardFolder);
  EXPECT_EQ("", Stored(Settings::CardFol));
  EXPECT_EQ(0, chosen.size());
}

TEST_F(Panel, CloseAsksToHideTheWindow) {
  QSignalSpy hide(&panel_, &PackPanel::HideRequested);
  Click(2);
  EXPECT_EQ(1, hide.size());
  EXPECT_FALSE(busy_);
}

TEST_F(Panel, AClickWhileBusyIsIgnored) {
  QSignalSpy hide(&panel_, &PackPanel::HideRequested);
  busy_ = true;
  for (const int index : {0, 1, 2}) Click(index);
  EXPECT_TRUE(busy_);
  EXPECT_EQ(0, hide.size());
  EXPECT_TRUE(Dialogs().Boxes.isEmpty());
  EXPECT_TRUE(Dialogs().Questions.isEmpty());
  EXPECT_FALSE(QFile::exists(Target()));
}

TEST_F(Panel, ASecondClickDuringTheBuildIsIgnored) {
  QSignalSpy hide(&panel_, &PackPanel::HideRequested);
  QMetaObject::invokeMethod(&panel_, [this] { Click(2); }, Qt::QueuedConnection);
  Dialogs().Answers = {MessageAnswer::No};
  Click(0);
  QApplication::processEvents();
  EXPECT_EQ(0, hide.size());
  EXPECT_EQ(1, Dialogs().Boxes.size());
}

TEST_F(Panel, ControlsCarryTheirNamesTextsAndTips) {
  EXPECT_EQ("FrOps0", panel_.objectName());
  EXPECT_EQ("  Create Web-Pack File  ", panel_.findChild<QGroupBox*>()->title());
  const char* rows[3][3] = {
      {"bCreate0", "OK", "Make package file now - in folder and with name as entered here."},
      {"bCreate1", "Browse", "Browse to choose location for making package file."},
      {"bCreate2", "Close", "Close window."},
  };
  for (const auto& row : rows) {
    auto* button = panel_.findChild<QPushButton*>(row[0]);
    ASSERT_TRUE(button) << row[0];
    EXPECT_EQ(row[1], button->text());
    EXPECT_EQ(row[2], button->toolTip());
    EXPECT_EQ(row[1], button->accessibleName());
  }
  EXPECT_EQ("Create web-pack file", panel_.findChild<QLabel*>("Label4")->text());
  EXPECT_EQ("Make web-pack file in", panel_.findChild<QLineEdit*>("tMakePath")->accessibleName());
  EXPECT_EQ("File name", panel_.findChild<QLineEdit*>("tMakeFileName")->accessibleName());
  QStringList labels;
  for (const QLabel* label : panel_.findChildren<QLabel*>()) labels.append(label->text());
  EXPECT_EQ(QStringList({"Create web-pack file", "Make web-pack file in:", "File name:"}), labels);
}

TEST_F(Panel, NothingIsCutOffFrom8To14Points) {
  const QFont before = QApplication::font();
  for (int points = 8; points <= 14; ++points) {
    QFont font = before;
    font.setPointSize(points);
    QApplication::setFont(font);
    PackPanel panel(test_.program, busy_);
    panel.resize(TwipsToPixels(6780), TwipsToPixels(4140));
    panel.show();
    EXPECT_LE(panel.minimumSizeHint().width(), panel.width()) << points;
    EXPECT_LE(panel.minimumSizeHint().height(), panel.height()) << points;
    QList<QRect> places;
    for (QWidget* control : panel.findChildren<QWidget*>()) {
      const bool text = qobject_cast<QLabel*>(control) || qobject_cast<QPushButton*>(control);
      if (!text && !qobject_cast<QLineEdit*>(control)) continue;
      const QRect place(control->mapTo(&panel, QPoint(0, 0)), control->size());
      EXPECT_TRUE(panel.rect().contains(place)) << points << qPrintable(control->objectName());
      EXPECT_GE(control->height(), control->sizeHint().height()) << points << qPrintable(control->objectName());
      if (text) {
        EXPECT_GE(control->width(), control->sizeHint().width()) << points << qPrintable(control->objectName());
      }
      for (const QRect& other : places) EXPECT_FALSE(place.intersects(other)) << points;
      places.append(place);
    }
    EXPECT_EQ(8, places.size());
    const QString folder = qEnvironmentVariable("CORVANE_PICTURES");
    if (!folder.isEmpty()) panel.grab().save(QString("%1/pack-panel-%2.png").arg(folder).arg(points));
  }
  QApplication::setFont(before);
}

}  // namespace
