#include "Settings.h"

#include <QScreen>
#include <limits>

#include "Colors.h"
#include "ProgramFixture.h"
#include "SettingsControls.h"
#include "Swatch.h"

namespace {

// Runs of the program one after the other on the same store. Each has folders of its own.
class SettingsOfTheProgram : public ::testing::Test {
 protected:
  // Makes a new run in place of the last one, and starts it.
  void Start() {
    Make();
    ASSERT_TRUE(run_->Start());
  }
  void Make() {
    run_.reset();
    run_ = std::make_unique<RunningProgram>(&store_);
    QObject::connect(&run_->modMain, &ModMain::WindowMade, &run_->modMain, [this](const QString& window) {
      if (window == u"FWeb") designSize_ = run_->Web().size();
    });
  }
  void Exit() {
    run_->Dialogs().Answers = {MessageAnswer::No};
    ASSERT_TRUE(run_->Choose("mExit"));
    ASSERT_TRUE(run_->ended);
  }

  void Store(const Settings::Key& key, const QString& value) { Settings::Save(store_, key, value); }
  // What the store holds; "<none>" when it has no such key.
  QString Stored(const Settings::Key& key) const { return StoredIn("settings", key.name); }
  QString StoredIn(const QString& section, const QString& key) const {
    return store_.GetSetting("QKCVN2", section, key, "<none>");
  }
  bool IsAsDesigned() { return run_->Web().isMaximized() && run_->Web().normalGeometry().size() == designSize_; }
  // Opens a page that wears these values.
  void OpenPage(const QString& color, const QString& face, const QString& size) {
    const QString file = run_->test.Path("elsewhere/dressed.html");
    ASSERT_TRUE(
        PutFile(file, QString("<HTML><BODY TEXT=\"%1\" STYLE=\"font-family: %2; font-size: %3\">x</BODY></HTML>")
                          .arg(color, face, size)
                          .toUtf8()));
    run_->Dialogs().Texts = {file};
    ASSERT_TRUE(run_->Choose("mOpenFile"));
    ASSERT_EQ("x", ShownLetters(*run_->View().WBDocument()));
  }

  MemorySettings store_;
  std::unique_ptr<RunningProgram> run_;
  QSize designSize_;
};

// Texts that are no number, or none that a setting can have.
QStringList Nonsense() {
  const char* const plain =
      "|| |abc|NaN|inf|0x2|1,5|3;|--1|1e999|-1e999|99999|-99999|32768|-32769|99999999999|-99999999999|2147483648|&H3|"
      "\u0663|\u00E9|@|3\n4|1e-400 1e-400|\t3|3 000 000";
  return QString::fromUtf8(plain).split(u'|') << QString(QChar(u'\0')) << QString(100000, u'9');
}

TEST_F(SettingsOfTheProgram, AnEmptyStoreGivesTheDefaults) {
  Start();
  EXPECT_TRUE(IsAsDesigned());
  EXPECT_EQ(2, run_->Web().BoxSize->currentIndex());
  EXPECT_EQ(0, run_->Web().BoxColor[0]->Color());
  EXPECT_EQ(0, run_->Web().BoxFace->currentIndex());
  EXPECT_EQ(0, FaceList(run_->modMain)->currentIndex());
  EXPECT_EQ("Arial, Helvetica", run_->View().BodyFontName());
  EXPECT_EQ(run_->program().DesktopPath, run_->program().CardFolder);
  EXPECT_FALSE(run_->program().CardFolder.isEmpty());
  EXPECT_EQ("Next Page", run_->program().LinkTextValue);
  EXPECT_EQ("WP", run_->program().CurIconName);
  EXPECT_EQ(0, SelectedIcon(run_->modMain));
  EXPECT_FALSE(run_->program().Compat4On);
}

TEST_F(SettingsOfTheProgram, CompatibilityIsOnForYesAlone) {
  for (const char* value : {"yes", "no", "", "Yes", "yes ", "-1"}) {
    Store(Settings::Compat4, value);
    Start();
    EXPECT_EQ(QString(value) == "yes", run_->program().Compat4On) << value;
    EXPECT_EQ(QString(value) == "yes", SetsControl<QCheckBox>(run_->modMain, "Ck4")->isChecked()) << value;
  }
}

// New pages.

TEST_F(SettingsOfTheProgram, ThePageInViewAtExitDressesTheNewPagesOfTheNextRun) {
  Start();
  run_->View().SetBodyFontColor("#111111");
  run_->Choose("mSavePage");
  OpenPage("#aa5500", "Tahoma", "large");
  ASSERT_EQ(2, run_->program().project.CurPageNo());
  Exit();
  EXPECT_EQ("#AA5500", Stored(Settings::BCol).toUpper());
  EXPECT_EQ("Tahoma", Stored(Settings::BFace));
  EXPECT_EQ("5", Stored(Settings::BSz));
  Start();
  EXPECT_EQ(HtmlToColor("#AA5500"), run_->Web().BoxColor[0]->Color());
  EXPECT_EQ(4, run_->Web().BoxSize->currentIndex());
  for (int page = 1; page <= 2; ++page) {
    EXPECT_EQ("#AA5500", run_->View().BodyFontColor().toUpper());
    EXPECT_EQ("Tahoma", run_->View().BodyFontName());
    EXPECT_EQ("5", run_->View().BodyFontSize());
    const HTMLBodyElement body = run_->View().WBDocument()->body();
    EXPECT_EQ("#aa5500", body.getAttribute("text", 0).toLower());
    EXPECT_EQ("Tahoma", body.style().fontFamily());
    EXPECT_EQ("large", body.style().fontSize());
    run_->Choose("mNewPage");
  }
}

TEST_F(SettingsOfTheProgram, APageThatWasLeftBeforeTheExitDoesNotCount) {
  Start();
  run_->Choose("mSavePage");
  OpenPage("#aa5500", "Tahoma", "large");
  run_->Choose("mSavePage");
  run_->Web().BoxPage->setCurrentIndex(0);
  run_->Settle();
  ASSERT_EQ(1, run_->program().project.CurPageNo());
  Exit();
  EXPECT_EQ("#000000", Stored(Settings::BCol));
  EXPECT_EQ("3", Stored(Settings::BSz));
}

TEST_F(SettingsOfTheProgram, APageWithoutADocumentStoresEmptyValuesThatCountAsNoneAtTheNextStart) {
  Store(Settings::BCol, "#123456");
  Store(Settings::BFace, "Tahoma");
  Store(Settings::BSz, "5");
  Make();
  ASSERT_TRUE(QDir(run_->program().project.CardPath()).removeRecursively());
  ASSERT_TRUE(PutFile(run_->program().project.CardPath(), "a file where the workspace should be"));
  ASSERT_TRUE(run_->Start());
  ASSERT_EQ(nullptr, run_->View().WBDocument());
  ASSERT_EQ("Tahoma", run_->View().StoredValues().BodyFontName);
  Exit();
  for (const auto& key : {Settings::BCol, Settings::BFace, Settings::BSz})
    EXPECT_EQ("", Stored(key)) << key.name.data();
  Start();
  EXPECT_EQ(2, run_->Web().BoxSize->currentIndex());
  EXPECT_EQ(0, run_->Web().BoxColor[0]->Color());
  EXPECT_EQ("Arial, Helvetica", run_->View().StoredValues().BodyFontName);
  EXPECT_EQ("#000000", run_->View().StoredValues().BodyFontColor);
  EXPECT_EQ("3", run_->View().StoredValues().BodyFontSize);
  // And the page wears them, and hands them on.
  const HTMLBodyElement body = run_->View().WBDocument()->body();
  EXPECT_EQ("#000000", body.text());
  EXPECT_EQ("Arial, Helvetica", body.style().fontFamily());
  EXPECT_EQ("small", body.style().fontSize());
  Exit();
  EXPECT_EQ("3", Stored(Settings::BSz));
}

// Faces.

TEST_F(SettingsOfTheProgram, TheFaceIndexThatIsStoredIsTheToolWindows) {
  Start();
  run_->Web().BoxFace->setCurrentIndex(3);
  FaceList(run_->modMain)->setCurrentIndex(2);
  Exit();
  EXPECT_EQ("2", Stored(Settings::BFaceDex));
  Start();
  EXPECT_EQ(2, run_->Web().BoxFace->currentIndex());
  EXPECT_EQ(2, FaceList(run_->modMain)->currentIndex());
}

TEST_F(SettingsOfTheProgram, NoFaceInTheToolWindowLeavesTheStoredIndex) {
  Store(Settings::BFaceDex, "4");
  Start();
  ASSERT_EQ(4, FaceList(run_->modMain)->currentIndex());
  FaceList(run_->modMain)->setCurrentIndex(-1);
  Exit();
  EXPECT_EQ("4", Stored(Settings::BFaceDex));
}

TEST_F(SettingsOfTheProgram, NoFaceInTheToolWindowStoresNoIndex) {
  Start();
  FaceList(run_->modMain)->setCurrentIndex(-1);
  Exit();
  EXPECT_EQ("<none>", Stored(Settings::BFaceDex));
}

TEST_F(SettingsOfTheProgram, TheStoredFaceMovesNoList) {
  Store(Settings::BFace, "Courier New");
  Store(Settings::BFaceDex, "1");
  Start();
  EXPECT_EQ(1, run_->Web().BoxFace->currentIndex());
  EXPECT_EQ(1, FaceList(run_->modMain)->currentIndex());
  EXPECT_EQ("Courier New", run_->View().BodyFontName());
}

TEST_F(SettingsOfTheProgram, ANegativeFaceIndexCountsAsTheFirst) {
  for (const char* index : {"-1", "-3", "-32768"}) {
    Store(Settings::BFaceDex, index);
    Start();
    EXPECT_EQ(0, FaceList(run_->modMain)->currentIndex()) << index;
  }
}

TEST_F(SettingsOfTheProgram, LoadingTheFaceDoesNotDressThePage) {
  Store(Settings::BFaceDex, "5");
  Start();
  EXPECT_EQ("Arial, Helvetica", run_->View().BodyFontName());
  EXPECT_EQ("Arial, Helvetica", run_->View().WBDocument()->body().style().fontFamily());
}

// The main window.

TEST_F(SettingsOfTheProgram, AnyStateButNoughtLeavesTheSizeUnread) {
  for (const char* state : {"2", "1", "", "yes", "00", "0 ", " 0", "0.0", "-0"}) {
    Store(Settings::Winset, state);
    Store(Settings::W1, "6000");
    Store(Settings::H1, "4500");
    Start();
    EXPECT_TRUE(IsAsDesigned()) << state;
  }
}

TEST_F(SettingsOfTheProgram, NoughtAloneTakesTheDefaultSize) {
  Store(Settings::Winset, "0");
  Start();
  EXPECT_FALSE(run_->Web().isMaximized());
  EXPECT_EQ(QSize(640, 467), run_->Web().size());
}

TEST_F(SettingsOfTheProgram, ASizeOfNothingLeavesTheWindowAsDesigned) {
  for (const auto& [width, height] : {std::pair("0", "4500"), std::pair("6000", "0"), std::pair("-6000", "4500"),
                                      std::pair("6000", "tall"), std::pair("99999999999", "4500")}) {
    Store(Settings::Winset, "0");
    Store(Settings::W1, width);
    Store(Settings::H1, height);
    Start();
    EXPECT_TRUE(IsAsDesigned()) << width << " " << height;
  }
}

TEST_F(SettingsOfTheProgram, ASizeBeyondSixteenBitsIsTaken) {
  Store(Settings::Winset, "0");
  Store(Settings::W1, "45000");
  Store(Settings::H1, "34500");
  Start();
  EXPECT_EQ(QSize(3000, 2300), run_->Web().size());
}

TEST_F(SettingsOfTheProgram, ASizeThatNoDesktopHasIsBounded) {
  Store(Settings::Winset, "0");
  Store(Settings::W1, "2147483647");
  Store(Settings::H1, "4500");
  Start();
  const int bound = std::max(8192, run_->Web().screen()->virtualSize().width());
  EXPECT_EQ(QSize(bound, 300), run_->Web().size());
}

TEST_F(SettingsOfTheProgram, AMinimisedWindowLeavesWhatWasStored) {
  for (const Qt::WindowStates before : {Qt::WindowNoState, Qt::WindowMaximized}) {
    Store(Settings::Winset, before == Qt::WindowNoState ? "0" : "2");
    Store(Settings::W1, "6000");
    Store(Settings::H1, "4500");
    Start();
    Store(Settings::Winset, "unchanged");
    run_->Web().setWindowState(before | Qt::WindowMinimized);
    run_->Settle();
    Exit();
    EXPECT_EQ("unchanged", Stored(Settings::Winset));
    EXPECT_EQ("6000", Stored(Settings::W1));
    EXPECT_EQ("4500", Stored(Settings::H1));
  }
}

// Meant in SaveWinSettings: a maximised window leaves the stored size as it was.
TEST_F(SettingsOfTheProgram, AMaximisedWindowLeavesTheStoredSize) {
  Store(Settings::Winset, "0");
  Store(Settings::W1, "6000");
  Store(Settings::H1, "4500");
  Start();
  run_->Web().showMaximized();
  run_->Settle();
  Exit();
  EXPECT_EQ("2", Stored(Settings::Winset));
  EXPECT_EQ("6000", Stored(Settings::W1));
  EXPECT_EQ("4500", Stored(Settings::H1));
}

// Web-packs.

TEST_F(SettingsOfTheProgram, TheCustomIconNeedsItsFile) {
  for (const bool isThere : {true, false}) {
    Store(Settings::CurIcon, "Custom");
    Store(Settings::CurIconNum, "10");
    Store(Settings::CustomIcon, "dog.ico");
    Make();
    if (isThere) {
      ASSERT_TRUE(PutFile(run_->PathInApp("icons/dog.ico"), IconFile()));
    }
    ASSERT_TRUE(run_->Start());
    EXPECT_EQ(isThere ? "Custom" : "WP", run_->program().CurIconName);
    EXPECT_EQ(isThere ? 10 : 0, SelectedIcon(run_->modMain));
    EXPECT_EQ(isThere ? QSize(32, 32) : QSize(),
              isThere ? SetsControl<QLabel>(run_->modMain, "ImCustom")->pixmap(Qt::ReturnByValue).size() : QSize());
    Exit();
    EXPECT_EQ("Custom", Stored(Settings::CurIcon));
    EXPECT_EQ("10", Stored(Settings::CurIconNum));
    EXPECT_EQ("dog.ico", Stored(Settings::CustomIcon));
  }
}

TEST_F(SettingsOfTheProgram, ACustomIconWithoutANameOrThatIsAFolderIsNone) {
  for (const char* name : {"", ".", "pups.ico"}) {
    Store(Settings::CurIcon, "Custom");
    Store(Settings::CurIconNum, "10");
    Store(Settings::CustomIcon, name);
    Make();
    ASSERT_TRUE(QDir().mkpath(run_->PathInApp("icons/pups.ico")));
    ASSERT_TRUE(run_->Start());
    EXPECT_EQ("WP", run_->program().CurIconName) << name;
    EXPECT_EQ(0, SelectedIcon(run_->modMain)) << name;
  }
}

TEST_F(SettingsOfTheProgram, AnIconFileThatCannotBeReadIsStillTheIcon) {
  Store(Settings::CurIcon, "Custom");
  Store(Settings::CurIconNum, "10");
  Store(Settings::CustomIcon, "dog.ico");
  Make();
  ASSERT_TRUE(PutFile(run_->PathInApp("icons/dog.ico"), "no icon"));
  ASSERT_TRUE(run_->Start());
  EXPECT_EQ("Custom", run_->program().CurIconName);
  EXPECT_EQ(10, SelectedIcon(run_->modMain));
}

// Meant in LoadPackSettings: name and number of the stored icon needn't belong together.
TEST_F(SettingsOfTheProgram, NameAndNumberOfTheIconNeedNotBelongTogether) {
  struct Row {
    const char* name;
    const char* number;
    int selected;
  };
  for (const Row& row :
       {Row{"ROSE", "2", 2}, Row{"WP", "5", 5}, Row{"Custom", "3", 3}, Row{"HEART", "11", 0}, Row{"HEART", "-1", 0},
        Row{"nothing", "9", 9}, Row{"", "4", 4}, Row{"HEART", "many", 0}, Row{"HEART", "99999", 0}}) {
    Store(Settings::CurIcon, row.name);
    Store(Settings::CurIconNum, row.number);
    Start();
    EXPECT_EQ(row.name, run_->program().CurIconName) << row.number;
    EXPECT_EQ(row.selected, SelectedIcon(run_->modMain)) << row.number;
    Exit();
    EXPECT_EQ(row.name, Stored(Settings::CurIcon));
    EXPECT_EQ(row.number, Stored(Settings::CurIconNum));
  }
}

TEST_F(SettingsOfTheProgram, TheCustomNumberKeepsABuiltInNameWhileTheFileIsThere) {
  Store(Settings::CurIcon, "ROSE");
  Store(Settings::CurIconNum, "10");
  Store(Settings::CustomIcon, "dog.ico");
  Make();
  ASSERT_TRUE(PutFile(run_->PathInApp("icons/dog.ico"), IconFile()));
  ASSERT_TRUE(run_->Start());
  EXPECT_EQ("ROSE", run_->program().CurIconName);
  EXPECT_EQ(10, SelectedIcon(run_->modMain));
}

// Meant in LoadPackSettings: a folder for web-packs that is gone is the desktop for this run, and stays stored.
TEST_F(SettingsOfTheProgram, AFolderThatIsGoneIsTheDesktopForThisRunOnly) {
  QTemporaryDir cards;
  const QString folder = cards.filePath("cards");
  Store(Settings::CardFol, folder);
  Start();
  EXPECT_EQ(run_->program().DesktopPath, run_->program().CardFolder);
  EXPECT_EQ(run_->program().DesktopPath, SetsControl<QLineEdit>(run_->modMain, "tPath")->text());
  Exit();
  EXPECT_EQ(folder, Stored(Settings::CardFol));
  ASSERT_TRUE(QDir().mkpath(folder));
  Start();
  EXPECT_EQ(folder, run_->program().CardFolder);
  EXPECT_EQ(folder, SetsControl<QLineEdit>(run_->modMain, "tPath")->text());
}

TEST_F(SettingsOfTheProgram, AFileIsNoFolderForWebPacks) {
  QTemporaryDir cards;
  Store(Settings::CardFol, cards.filePath("cards"));
  ASSERT_TRUE(PutFile(cards.filePath("cards"), "x"));
  Start();
  EXPECT_EQ(run_->program().DesktopPath, run_->program().CardFolder);
}

TEST_F(SettingsOfTheProgram, WithoutFolderAndDesktopThereIsNone) {
  Make();
  run_->test.platform.folders.DesktopPath = run_->test.Path("no-desktop");
  ASSERT_TRUE(run_->Start());
  EXPECT_EQ("", run_->program().CardFolder);
}

TEST_F(SettingsOfTheProgram, EmptyTextsAreNotTheDefaults) {
  Store(Settings::LinkText, "");
  Store(Settings::CurIcon, "");
  Start();
  EXPECT_EQ("", run_->program().LinkTextValue);
  EXPECT_EQ("", SetsControl<QLineEdit>(run_->modMain, "tLink")->text());
  EXPECT_EQ("", run_->program().CurIconName);
}

// Nonsense.

TEST_F(SettingsOfTheProgram, NonsenseIsPassedOver) {
  for (const QString& value : Nonsense()) {
    SCOPED_TRACE(value.left(20).toStdString());
    for (const auto& key : {Settings::BCol, Settings::BFace, Settings::BSz, Settings::BFaceDex, Settings::W1,
                            Settings::CardFol, Settings::CurIconNum, Settings::CustomIcon})
      Store(key, value);
    Store(Settings::Winset, "0");
    Store(Settings::H1, value.size() > 100 ? value : "0");
    for (int i = 0; i < 16; ++i) store_.SaveSetting("QKCVN2", "settings\\CustColors", QString::number(i), value);
    Start();
    EXPECT_EQ(2, run_->Web().BoxSize->currentIndex());
    EXPECT_EQ(0, run_->Web().BoxFace->currentIndex());
    EXPECT_EQ(-1, FaceList(run_->modMain)->currentIndex());
    EXPECT_TRUE(IsAsDesigned());
    EXPECT_EQ(run_->program().DesktopPath, run_->program().CardFolder);
    EXPECT_EQ(0, SelectedIcon(run_->modMain));
    EXPECT_TRUE(run_->View().DocReady());
    Exit();
  }
}

TEST_F(SettingsOfTheProgram, SizesAndFacesBeyondTheListsArePassedOver) {
  for (const char* value : {"0", "-1", "7", "32767", "-32768"}) {
    Store(Settings::BSz, value);
    Start();
    EXPECT_EQ(2, run_->Web().BoxSize->currentIndex()) << value;
  }
  for (const char* value : {"6", "7", "32767"}) {
    Store(Settings::BFaceDex, value);
    Start();
    EXPECT_EQ(0, run_->Web().BoxFace->currentIndex()) << value;
    EXPECT_EQ(-1, FaceList(run_->modMain)->currentIndex()) << value;
    Exit();
    EXPECT_EQ(value, Stored(Settings::BFaceDex));
  }
}

// One is taken away before the number is rounded: halves go to the even place, not to the even size.
TEST_F(SettingsOfTheProgram, ASizeWithAHalfTakesTheEvenPlace) {
  for (const auto& [size, index] : {std::pair("3.5", 2), std::pair("4.5", 4), std::pair("1.4", 0), std::pair("5", 4)}) {
    Store(Settings::BSz, size);
    Start();
    EXPECT_EQ(index, run_->Web().BoxSize->currentIndex()) << size;
  }
}

TEST_F(SettingsOfTheProgram, AFaceBeyondTheListLeavesTheToolWindowAsItWas) {
  for (const char* value : {"6", "99999", "none"}) {
    Store(Settings::BFaceDex, value);
    Make();
    QObject::connect(&run_->modMain, &ModMain::WindowMade, &run_->modMain, [this](const QString& window) {
      if (window == u"FTools") FaceList(run_->modMain)->setCurrentIndex(3);
    });
    ASSERT_TRUE(run_->Start());
    EXPECT_EQ(3, FaceList(run_->modMain)->currentIndex()) << value;
  }
}

// The colour dialog's colours.

TEST_F(SettingsOfTheProgram, CustomColorsAreWholeNumbersOf32Bits) {
  const auto stored = [this](int i) { return StoredIn("settings\\CustColors", QString::number(i)); };
  store_.SaveSetting("QKCVN2", "settings\\CustColors", "0", "-2147483648");
  store_.SaveSetting("QKCVN2", "settings\\CustColors", "1", "2147483647");
  store_.SaveSetting("QKCVN2", "settings\\CustColors", "2", "2147483648");
  store_.SaveSetting("QKCVN2", "settings\\CustColors", "3", "red");
  store_.SaveSetting("QKCVN2", "settings\\CustColors", "15", " 16777215 ");
  store_.SaveSetting("QKCVN2", "settings\\CustColors", "16", "7");
  Start();
  const auto& colors = run_->program().CustColors;
  EXPECT_EQ(std::numeric_limits<qint32>::min(), colors[0]);
  EXPECT_EQ(std::numeric_limits<qint32>::max(), colors[1]);
  EXPECT_EQ(0, colors[2]);
  EXPECT_EQ(0, colors[3]);
  EXPECT_EQ(16777215, colors[15]);
  Exit();
  EXPECT_EQ("-2147483648", stored(0));
  EXPECT_EQ("2147483647", stored(1));
  EXPECT_EQ("0", stored(2));
  EXPECT_EQ("0", stored(3));
  EXPECT_EQ("0", stored(14));
  EXPECT_EQ("16777215", stored(15));
  EXPECT_EQ("7", stored(16));
}

}  // namespace
