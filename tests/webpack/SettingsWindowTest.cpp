#include <gtest/gtest.h>
#include <unistd.h>

#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QDir>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPixmap>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>

#include "FSets.h"
#include "IconImage.h"
#include "Resource.h"
#include "Settings.h"
#include "StringTable.h"
#include "TestPlatform.h"

namespace {

class SettingsWindow : public ::testing::Test {
 protected:
  SettingsWindow() { sets_.show(); }
  ~SettingsWindow() override { EXPECT_EQ(0, Dialogs().Unanswered); }

  ScriptedDialogs& Dialogs() { return test_.platform.dialogs; }
  QStringList Messages() {
    for (const auto& box : Dialogs().Boxes) {
      EXPECT_EQ(MessageIcon::Information, box.icon);
      EXPECT_EQ(MessageButtons::Ok, box.buttons);
      EXPECT_EQ(&sets_, box.owner);
    }
    const QStringList texts = Dialogs().Messages();
    Dialogs().Boxes.clear();
    return texts;
  }
  QString Stored(const Settings::Key& key) {
    return test_.platform.settings.GetSetting(Settings::AppKey, Settings::Section, key.name, "<none>");
  }
  QString Icons(const QString& name = QString()) { return test_.program.AppPath + "/icons/" + name; }
  QString Icon(const QString& path, const QByteArray& bytes = IconFileOf(Resource("HEART"))) {
    EXPECT_TRUE(PutFile(path, bytes));
    return path;
  }
  QStringList Rows() {
    QStringList rows;
    for (int i = 0; i < sets_.BoxIcons->count(); ++i) rows.append(sets_.BoxIcons->item(i)->text());
    return rows;
  }
  int Panel() {
    int shown = -1;
    for (int i = 0; i < 3; ++i)
      if (sets_.FrSets[std::size_t(i)]->isVisible()) shown = shown == -1 ? i : 100;
    return shown;
  }
  // What the mouse does to the two buttons along the window and on the way to the custom icons.
  void OpenCustomIcons() {
    sets_.bSetWins[1]->click();
    sets_.bIcoSets[1]->click();
    ASSERT_EQ(2, Panel());
  }

  TestProgram test_;
  FSets sets_{test_.program};
};

TEST_F(SettingsWindow, TwoButtonsBringThePanelsToTheFront) {
  EXPECT_EQ("Settings", sets_.windowTitle());
  EXPECT_EQ(0, Panel());
  EXPECT_FALSE(sets_.bSetWins[0]->isEnabled());
  EXPECT_TRUE(sets_.bSetWins[1]->isEnabled());
  sets_.bSetWins[1]->click();
  EXPECT_EQ(1, Panel());
  EXPECT_TRUE(sets_.bSetWins[0]->isEnabled());
  EXPECT_FALSE(sets_.bSetWins[1]->isEnabled());
  sets_.bSetWins[0]->click();
  EXPECT_EQ(0, Panel());
}

TEST_F(SettingsWindow, ControlsCarryTheirNamesTextsAndTips) {
  struct Row {
    const char* name;
    const char* text;
    const char* tip;
  };
  constexpr Row rows[] = {
      {"bSetWins0", "General Settings", ""},
      {"bSetWins1", "Package Icon Settings", ""},
      {"bSets0", "Browse", "Browse to select folder."},
      {"bSets1", "Apply", "Apply folder path selection."},
      {"bSets2", "Apply", "Set default next-page link text."},
      {"Ck4", "Check this box if using Internet Explorer 4", ""},
      {"bIcoSets0", "Apply", "Assign selected icon as web-pack file icon."},
      {"bIcoSets1", "Custom Icon Options", "Open options to use custom icon for web-pack files."},
      {"bCustomIco0", "Browse", "Browse for icon file."},
      {"bCustomIco1", "Add To Custom Icons List", "Add icon file to list of icons that may be selected for web-packs."},
      {"bCustomIco2", "Use Selected Icon", "Assign selected icon as the custom icon."},
      {"bCustomIco3", "OK", "Close custom icon options window."},
  };
  for (const Row& row : rows) {
    const auto* button = sets_.findChild<QAbstractButton*>(row.name);
    ASSERT_TRUE(button) << row.name;
    EXPECT_EQ(row.text, button->text());
    EXPECT_EQ(row.tip, button->toolTip());
  }
  const char* icons[] = {"WP", "MAIL", "HEART", "ROCKET", "LTNING", "ROSE", "HAND", "CARD", "TRAY", "FOLDER", "Custom"};
  for (std::size_t i = 0; i < 11; ++i) EXPECT_EQ(icons[i], sets_.OpIco[i]->text());
  QStringList texts;
  for (const QLabel* label : sets_.findChildren<QLabel*>())
    if (!label->text().isEmpty()) texts.append(label->text());
  EXPECT_EQ(
      QStringList(
          {"Default folder where finished web-pack files will be created:",
           "Text of link to next page in multi-page web-pack files:",
           "Corvane may not work properly with Internet Explorer 4 installed, particularly in Windows 95. If you have "
           "IE4 installed, check the box below to optimize compatibility.",
           "Custom icons may be used for web-pack files. Find or make an icon(s) 32 x 32 pixels in size, in 16-color "
           "format (4-bit). Any number of icons may be added to the Custom Icons List and any icon from the list can "
           "be assigned as the icon to be used when the Custom option is selected.",
           "Browse for icon (ICO) file:", "Custom Icons List:",
           "To assign a custom icon select one from list and click \"Use Selected Icon\"."}),
      texts);
  QStringList frames;
  for (const QGroupBox* frame : sets_.findChildren<QGroupBox*>()) frames.append(frame->title());
  frames.sort();
  EXPECT_EQ(QStringList({"  Custom Icons  ", "  General Settings  ",
                         "  Page element defaults:  ", "Select icon for web-pack files:"}),
            frames);
}

TEST_F(SettingsWindow, EachBuiltInIconShowsItsPicture) {
  QSet<QByteArray> seen;
  for (std::size_t i = 0; i < 10; ++i) {
    const QImage picture = sets_.ImIco[i]->pixmap().toImage();
    ASSERT_EQ(QSize(32, 32), picture.size()) << i;
    seen.insert(QByteArray(reinterpret_cast<const char*>(picture.constBits()), picture.sizeInBytes()));
  }
  EXPECT_EQ(10, seen.size());
}

TEST_F(SettingsWindow, BrowsingForTheFolderStoresNothing) {
  Dialogs().Texts = {test_.Path("desktop"), "", test_.Path("none")};
  test_.program.CardFolder = "before";
  sets_.bSets[0]->click();
  EXPECT_EQ(test_.Path("desktop"), sets_.tPath->text());
  EXPECT_EQ("before", test_.program.CardFolder);
  EXPECT_EQ(QStringList(), Messages());
  EXPECT_EQ("Select folder to make web-pack file.", Dialogs().Questions[0].title);
  for (int i = 0; i < 2; ++i) {
    sets_.bSets[0]->click();
    EXPECT_EQ(QStringList{"Error. Folder does not exist."}, Messages());
    EXPECT_EQ(test_.Path("desktop"), sets_.tPath->text());
  }
  EXPECT_EQ("<none>", Stored(Settings::CardFol));
}

TEST_F(SettingsWindow, ApplyStoresAFolderThatIsThere) {
  const QString before = test_.program.CardFolder;
  sets_.tPath->setText(test_.Path("none"));
  sets_.bSets[1]->click();
  EXPECT_EQ(QStringList{"Error. Folder does not exist."}, Messages());
  EXPECT_EQ(before, test_.program.CardFolder);
  EXPECT_EQ("<none>", Stored(Settings::CardFol));
  sets_.tPath->setText(test_.Path("desktop"));
  sets_.bSets[1]->click();
  EXPECT_EQ(QStringList(), Messages());
  EXPECT_EQ(test_.Path("desktop"), test_.program.CardFolder);
  EXPECT_EQ(test_.Path("desktop"), Stored(Settings::CardFol));
}

// Meant in FSets::ApplyLink: a link text of blanks is ignored without a word.
TEST_F(SettingsWindow, ALinkTextOfBlanksIsIgnoredWithoutAWord) {
  test_.program.LinkTextValue = "Next Page";
  for (const char* text : {"", "   "}) {
    sets_.tLink->setText(text);
    sets_.bSets[2]->click();
    EXPECT_EQ("Next Page", test_.program.LinkTextValue);
    EXPECT_EQ("<none>", Stored(Settings::LinkText));
  }
  sets_.tLink->setText("  More <b>here</b>  ");
  sets_.bSets[2]->click();
  EXPECT_EQ("More <b>here</b>", test_.program.LinkTextValue) << "HTML as it stands";
  EXPECT_EQ("More <b>here</b>", Stored(Settings::LinkText));
  EXPECT_EQ(QStringList(), Messages());
}

TEST_F(SettingsWindow, TheBoxForOldViewersWorksOffAtOnceAndOnLater) {
  QSignalSpy unhooked(&sets_, &FSets::UnHookRequested);
  sets_.Ck4->click();
  EXPECT_TRUE(test_.program.Compat4On);
  EXPECT_EQ("yes", Stored(Settings::Compat4));
  EXPECT_EQ(0, unhooked.size());
  sets_.Ck4->click();
  EXPECT_FALSE(test_.program.Compat4On);
  EXPECT_EQ("no", Stored(Settings::Compat4));
  EXPECT_EQ(1, unhooked.size());
  // A tick that code sets is no click.
  sets_.Ck4->setChecked(true);
  EXPECT_FALSE(test_.program.Compat4On);
}

TEST_F(SettingsWindow, AnIconIsAppliedUnderItsName) {
  for (std::size_t i = 0; i < 10; ++i) {
    sets_.OpIco[i]->click();
    sets_.bIcoSets[0]->click();
    EXPECT_EQ(sets_.OpIco[i]->text(), test_.program.CurIconName);
    EXPECT_EQ(sets_.OpIco[i]->text(), Stored(Settings::CurIcon));
    EXPECT_EQ(QString::number(i), Stored(Settings::CurIconNum));
  }
  EXPECT_EQ(QStringList(), Messages());
}

TEST_F(SettingsWindow, ChoosingWithoutApplyingChangesNothing) {
  test_.program.CurIconName = "WP";
  sets_.OpIco[3]->click();
  EXPECT_EQ("WP", test_.program.CurIconName);
  EXPECT_EQ("<none>", Stored(Settings::CurIcon));
}

// Meant in FSets::ApplyIcon: choosing an icon of one's own without having one is stored, and only then complained
// about.
TEST_F(SettingsWindow, ApplyingCustomWithoutAnAssignmentStoresTheChoiceAndOnlyThenComplains) {
  sets_.OpIco[10]->click();
  QStringList storedAtBox;
  Dialogs().WhileShown = [&] { storedAtBox.append(Stored(Settings::CurIcon) + Stored(Settings::CurIconNum)); };
  sets_.bIcoSets[0]->click();
  EXPECT_EQ(QStringList{"No custom icon has been assigned or the assignment is invalid. To use this option click the "
                        "Custom button and assign an icon."},
            Messages());
  EXPECT_EQ(QStringList{"Custom10"}, storedAtBox);
  EXPECT_EQ("Custom", test_.program.CurIconName);
  // With a name whose file isn't there, too.
  Settings::Save(test_.platform.settings, Settings::CustomIcon, "mine.ico");
  sets_.bIcoSets[0]->click();
  EXPECT_EQ(1, Messages().size());
  // Any file of that name will do here.
  Icon(Icons("mine.ico"), "no icon at all");
  sets_.bIcoSets[0]->click();
  EXPECT_EQ(QStringList(), Messages());
}

TEST_F(SettingsWindow, TheListOfCustomIconsIsTheirFolder) {
  ASSERT_FALSE(QDir(Icons()).exists());
  OpenCustomIcons();
  EXPECT_TRUE(QDir(Icons()).exists());
  EXPECT_EQ(QStringList(), Rows());
  for (const char* name : {"b.ico", "A.ICO", "note.txt", "xico", "bad.ico"}) Icon(Icons(name), "x");
  sets_.tIcoPath->setText("left over");
  sets_.bIcoSets[1]->click();
  EXPECT_EQ(QStringList({"A.ICO", "b.ico", "bad.ico", "xico"}), Rows()) << "by the last three letters alone";
  EXPECT_EQ("", sets_.tIcoPath->text());
}

TEST_F(SettingsWindow, AnIconIsBrowsedForAndAdded) {
  const QString file = Icon(test_.Path("mine/new.ico"));
  OpenCustomIcons();
  EXPECT_FALSE(sets_.bCustomIco[1]->isEnabled());
  Dialogs().Texts = {"", test_.Path("none.ico"), file};
  sets_.bCustomIco[0]->click();
  sets_.bCustomIco[0]->click();
  EXPECT_FALSE(sets_.bCustomIco[1]->isEnabled());
  EXPECT_EQ("", sets_.tIcoPath->text());
  sets_.bCustomIco[0]->click();
  EXPECT_EQ(file, sets_.tIcoPath->text());
  EXPECT_TRUE(sets_.bCustomIco[1]->isEnabled());
  const auto& question = Dialogs().Questions.last();
  EXPECT_EQ("Select Icon File", question.title);
  EXPECT_EQ(QList<FileFilter>({{"Icon Files(*.ico)", "*.ico"}}), question.filters);
  EXPECT_EQ(QDir(Icons()).path(), QDir(question.given).path());
  EXPECT_EQ(&sets_, question.owner);
  // A file of that name is replaced without a question.
  Icon(Icons("new.ico"), "old");
  sets_.bCustomIco[1]->click();
  EXPECT_EQ(FileBytes(file), FileBytes(Icons("new.ico")));
  EXPECT_EQ(QStringList{"new.ico"}, Rows());
  EXPECT_FALSE(sets_.bCustomIco[1]->isEnabled());
  EXPECT_EQ(QStringList(), Messages());
}

TEST_F(SettingsWindow, AnIconAddedOutOfTheIconFolderItselfStaysThere) {
  const QString file = Icon(Icons("mine.ico"));
  OpenCustomIcons();
  ASSERT_EQ(QStringList{"mine.ico"}, Rows());
  Dialogs().Texts = {file};
  sets_.bCustomIco[0]->click();
  sets_.bCustomIco[1]->click();
  EXPECT_TRUE(QFile::exists(file));
  EXPECT_EQ(QStringList{"mine.ico"}, Rows());
  EXPECT_FALSE(sets_.bCustomIco[1]->isEnabled());
  EXPECT_EQ(QStringList(), Messages());
}

TEST_F(SettingsWindow, BlanksAroundTheLinkTextAndTheIconsPathGo) {
  sets_.tLink->setText("  Go on ");
  sets_.bSets[2]->click();
  EXPECT_EQ("Go on", Stored(Settings::LinkText));
  EXPECT_EQ("Go on", test_.program.LinkTextValue);
  OpenCustomIcons();
  sets_.bCustomIco[1]->setEnabled(true);
  sets_.tIcoPath->setText("  " + Icon(test_.Path("new.ico")) + " ");
  // The folder may have gone meanwhile.
  ASSERT_TRUE(QDir(Icons()).removeRecursively());
  sets_.bCustomIco[1]->click();
  EXPECT_EQ(QStringList(), Messages());
  EXPECT_EQ(QStringList{"new.ico"}, Rows());
  // The box is empty when the panel is opened again.
  ASSERT_NE("", sets_.tIcoPath->text());
  OpenCustomIcons();
  EXPECT_EQ("", sets_.tIcoPath->text());
}

// A second name of the old file keeps what stood in it.
TEST_F(SettingsWindow, AnIconOfTheSameNameIsDeletedBeforeTheNewOneIsCopied) {
  const QString old = Icon(Icons("mine.ico"), "old"), second = test_.Path("second");
  ASSERT_EQ(0, ::link(qPrintable(old), qPrintable(second)));
  OpenCustomIcons();
  Dialogs().Texts = {Icon(test_.Path("mine.ico"))};
  sets_.bCustomIco[0]->click();
  sets_.bCustomIco[1]->click();
  EXPECT_EQ(IconFileOf(Resource("HEART")), FileBytes(old));
  EXPECT_EQ("old", FileBytes(second));
}

TEST_F(SettingsWindow, AFileThatCantBeUsedIsRefusedWithItsReason) {
  const QByteArray good = IconFileOf(Resource("HEART"));
  const auto with = [&good](int at, char value) {
    QByteArray changed = good;
    changed[at] = value;
    return changed;
  };
  struct Row {
    const char* name;
    QByteArray bytes;
    const char* message;
    bool tellsPath;
  };
  const Row rows[] = {
      {"a.bmp", good, "File is not an icon file:\r\n", true},
      {"b.ico", with(4, 2), "File is not usable. It contains more than 1 icon.", false},
      {"c.ico", with(6, 16), "File is not usable. The dimensions are not 32 x 32.", false},
      {"d.ico", with(7, 48), "File is not usable. The dimensions are not 32 x 32.", false},
      // The count of bits in the directory decides, whatever the picture itself says.
      {"e.ico", with(12, 0), "File is not usable. It is not 4 Bits per Pixel [16-color].", false},
      {"f.ico", with(14, 0), "File is the wrong size. It should be 766 bytes.", false},
      {"f2.ico", with(15, 3), "File is the wrong size. It should be 766 bytes.", false},
      {"g.ico", good + "x", "File is the wrong size. It should be 766 bytes.", false},
      {"h.ico", good.left(765), "File is the wrong size. It should be 766 bytes.", false},
      {"i.ico", "", "File is not usable. It contains more than 1 icon.", false},
  };
  OpenCustomIcons();
  for (const Row& row : rows) {
    const QString file = Icon(test_.Path(QString("mine/") + row.name), row.bytes);
    Dialogs().Texts = {file};
    sets_.bCustomIco[0]->click();
    sets_.bCustomIco[1]->click();
    EXPECT_EQ(QStringList{row.message + (row.tellsPath ? file : QString())}, Messages()) << row.name;
    EXPECT_TRUE(sets_.bCustomIco[1]->isEnabled());
  }
  EXPECT_EQ(QStringList(), Rows());
  // The picture's own header plays no part.
  const QString odd = Icon(test_.Path("mine/odd.ico"), with(22 + 14, 8));
  Dialogs().Texts = {odd};
  sets_.bCustomIco[0]->click();
  sets_.bCustomIco[1]->click();
  EXPECT_EQ(QStringList(), Messages());
  // A file that has gone meanwhile, and blanks around the path.
  Dialogs().Texts = {odd};
  sets_.bCustomIco[0]->click();
  ASSERT_TRUE(QFile::remove(odd));
  sets_.tIcoPath->setText("  " + odd + " ");
  sets_.bCustomIco[1]->click();
  EXPECT_EQ(QStringList{"File not found.:\r\n" + odd}, Messages());
}

TEST_F(SettingsWindow, AnIconOfTheListIsAssigned) {
  Icon(Icons("a.ico"));
  Icon(Icons("bad.ico"), "x");
  OpenCustomIcons();
  EXPECT_FALSE(sets_.bCustomIco[2]->isEnabled());
  sets_.BoxIcons->setCurrentRow(1);
  EXPECT_TRUE(sets_.bCustomIco[2]->isEnabled());
  sets_.bCustomIco[2]->click();
  EXPECT_EQ(QStringList{"File is not usable. It contains more than 1 icon."}, Messages());
  EXPECT_EQ("<none>", Stored(Settings::CustomIcon));
  EXPECT_TRUE(sets_.ImCustom->pixmap().isNull());
  sets_.BoxIcons->setCurrentRow(0);
  sets_.bCustomIco[2]->click();
  EXPECT_EQ(QStringList{"This icon will be used when you select the Custom option for default web-pack file icon."},
            Messages());
  EXPECT_EQ("a.ico", Stored(Settings::CustomIcon));
  EXPECT_EQ(QSize(32, 32), sets_.ImCustom->pixmap().size());
  sets_.BoxIcons->clearSelection();
  sets_.bCustomIco[2]->click();
  EXPECT_EQ(QStringList{"No icon selected."}, Messages());
  sets_.bCustomIco[3]->click();
  EXPECT_EQ(1, Panel());
  EXPECT_FALSE(sets_.bCustomIco[2]->isEnabled());
  // A choice of before doesn't count when the list is shown anew.
  OpenCustomIcons();
  sets_.BoxIcons->setCurrentRow(0);
  sets_.bCustomIco[3]->click();
  OpenCustomIcons();
  EXPECT_FALSE(sets_.bCustomIco[2]->isEnabled());
}

TEST_F(SettingsWindow, WhileBusyItsButtonsDoNothing) {
  sets_.Busy = true;
  Icon(Icons("a.ico"));
  sets_.tPath->setText(test_.Path("desktop"));
  for (QPushButton* const button : {sets_.bSets[0], sets_.bSets[1], sets_.bSets[2], sets_.bIcoSets[0],
                                    sets_.bIcoSets[1], sets_.bCustomIco[0], sets_.bCustomIco[3]})
    button->click();
  EXPECT_TRUE(Dialogs().Boxes.isEmpty());
  EXPECT_TRUE(Dialogs().Questions.isEmpty());
  EXPECT_EQ(0, Panel());
  EXPECT_TRUE(test_.platform.settings.Values().isEmpty());
}

TEST_F(SettingsWindow, ClosingOnlyHides) {
  QCloseEvent close;
  QApplication::sendEvent(&sets_, &close);
  EXPECT_FALSE(close.isAccepted());
  EXPECT_FALSE(sets_.isVisible());
  sets_.show();
  QTest::keyClick(sets_.tPath, Qt::Key_Escape);
  EXPECT_FALSE(sets_.isVisible());
}

TEST_F(SettingsWindow, NothingIsCutOffFrom8To14Points) {
  const QFont before = QApplication::font();
  for (int points = 8; points <= 14; ++points) {
    QFont font = before;
    font.setPointSize(points);
    QApplication::setFont(font);
    FSets sets(test_.program);
    sets.show();
    for (int panel = 0; panel < 3; ++panel) {
      if (panel < 2) sets.bSetWins[std::size_t(panel)]->click();
      if (panel == 2) sets.bIcoSets[1]->click();
      QList<QRect> places;
      for (QWidget* const control : sets.findChildren<QWidget*>()) {
        if (!control->isVisible()) continue;
        const auto* label = qobject_cast<QLabel*>(control);
        if (!label && !qobject_cast<QAbstractButton*>(control) && !qobject_cast<QLineEdit*>(control) &&
            !qobject_cast<QListWidget*>(control))
          continue;
        const QRect place(control->mapTo(&sets, QPoint(0, 0)), control->size());
        for (const QRect& other : places)
          EXPECT_FALSE(place.intersects(other)) << points << qPrintable(control->objectName());
        places.append(place);
        EXPECT_TRUE(sets.rect().contains(place)) << points << qPrintable(control->objectName());
        if (label && label->wordWrap()) {
          EXPECT_GE(label->height(), label->heightForWidth(label->width())) << points;
        } else if (label || qobject_cast<QAbstractButton*>(control)) {
          EXPECT_GE(control->width(), control->minimumSizeHint().width())
              << points << qPrintable(control->objectName());
        }
      }
      const QString folder = qEnvironmentVariable("CORVANE_PICTURES");
      if (!folder.isEmpty()) sets.grab().save(QString("%1/settings-%2-%3.png").arg(folder).arg(panel).arg(points));
    }
  }
  QApplication::setFont(before);
}

}  // namespace
