// Return and Escape in the panels for web-packs and email and in the settings window, by keys alone.
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

#include "EmailPanel.h"
#include "FSets.h"
#include "PackPanel.h"
#include "ProgramFixture.h"
#include "Settings.h"

namespace {

class PanelKeys : public ProgramTest {
 protected:
  PanelKeys() { EXPECT_TRUE(run_.Start()); }

  FOps& Ops() { return *run_.modMain.Ops(); }
  FSets& Sets() { return *run_.modMain.Sets(); }
  PackPanel& Pack() { return *Ops().FrOps0; }
  EmailPanel& Email() { return *Ops().FrOps2; }
  QString Stored(const Settings::Key& key) { return Settings::Get(run_.test.platform.settings, key); }

  void Open(QWidget& window, const char* command) {
    ASSERT_TRUE(run_.Choose(command));
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  }
  static void Press(QWidget& control, Qt::Key key) {
    control.setFocus();
    QTest::keyClick(&control, key, key == Qt::Key_Enter ? Qt::KeypadModifier : Qt::NoModifier);
  }
  template <typename Control>
  static QList<Control*> InView(QWidget& window) {
    QList<Control*> found;
    for (Control* const control : window.findChildren<Control*>())
      if (control->isVisible() && control->isEnabled()) found += control;
    return found;
  }
  // Names of the buttons that a key presses on a control. What they do stays undone: the window is busy.
  QStringList Pressed(QWidget& window, bool& busy, QWidget& control, Qt::Key key) {
    QStringList names;
    QObject watch;
    for (QPushButton* const button : window.findChildren<QPushButton*>())
      QObject::connect(button, &QPushButton::clicked, &watch, [&names, button] { names += button->objectName(); });
    busy = true;
    Press(control, key);
    busy = false;
    return names;
  }
  // Each button in view is pressed by Return, and no other one with it.
  void ExpectReturnPressesTheFocusedOne(QWidget& window, bool& busy, int count) {
    const auto buttons = InView<QPushButton>(window);
    EXPECT_EQ(count, buttons.size());
    for (QPushButton* const button : buttons)
      for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter})
        EXPECT_EQ(QStringList{button->objectName()}, Pressed(window, busy, *button, key)) << key;
    EXPECT_TRUE(window.isVisible());
  }
};

// The panel for web-packs.

TEST_F(PanelKeys, ReturnInABoxOfTheWebPackPanelBuilds) {
  Open(Ops(), "mMakePack");
  for (QLineEdit* const box : {Pack().tMakePath, Pack().tMakeFileName}) {
    Pack().tMakePath->setText(run_.test.Path("desktop"));
    Pack().tMakeFileName->setText(box->objectName());
    Answer({MessageAnswer::No});
    Press(*box, Qt::Key_Return);
    EXPECT_EQ(1, run_.Dialogs().Boxes.size());
    EXPECT_TRUE(QFile::exists(run_.test.Path("desktop/" + box->objectName() + ".exe")));
  }
  EXPECT_TRUE(Ops().isVisible());
}

TEST_F(PanelKeys, ReturnOnAButtonOfTheWebPackPanelPressesThatOne) {
  Open(Ops(), "mMakePack");
  ExpectReturnPressesTheFocusedOne(Ops(), Ops().Busy, 3);
  Press(*Pack().bCreate[2], Qt::Key_Return);
  EXPECT_FALSE(Ops().isVisible());
  EXPECT_TRUE(run_.Dialogs().Boxes.isEmpty());
  EXPECT_EQ(QStringList(), QDir(run_.test.Path("desktop")).entryList(QDir::Files));
}

TEST_F(PanelKeys, EscapeAnywhereInTheWebPackPanelClosesIt) {
  for (const int at : {0, 1, 2, 3, 4}) {
    Open(Ops(), "mMakePack");
    QWidget* const controls[] = {Pack().tMakePath, Pack().tMakeFileName, Pack().bCreate[0], Pack().bCreate[1],
                                 Pack().bCreate[2]};
    Press(*controls[at], Qt::Key_Escape);
    EXPECT_FALSE(Ops().isVisible()) << at;
  }
  EXPECT_TRUE(run_.Dialogs().Boxes.isEmpty());
  EXPECT_EQ(QStringList(), QDir(run_.test.Path("desktop")).entryList(QDir::Files));
}

// The email panel. A message that has gone can't be called back, so no Return in a box sends one.

TEST_F(PanelKeys, ReturnInABoxOfTheEmailPanelPressesNothing) {
  Open(Ops(), "mEmail");
  const auto boxes = InView<QLineEdit>(Ops());
  EXPECT_EQ(9, boxes.size()) << "two lists, six boxes and the status";
  for (QLineEdit* const box : boxes)
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter})
      EXPECT_EQ(QStringList(), Pressed(Ops(), Ops().Busy, *box, key)) << qPrintable(box->objectName());
  EXPECT_TRUE(Ops().isVisible());
}

TEST_F(PanelKeys, ReturnOnAButtonOfTheEmailPanelPressesThatOne) {
  Open(Ops(), "mEmail");
  Email().bEmail[2]->setEnabled(true);
  ExpectReturnPressesTheFocusedOne(Ops(), Ops().Busy, 3);
  Press(*Email().bEmail[1], Qt::Key_Return);
  EXPECT_FALSE(Ops().isVisible());
}

TEST_F(PanelKeys, EscapeAnywhereInTheEmailPanelClosesItWhileNothingIsUnderWay) {
  for (const int at : {0, 1, 2, 3}) {
    Open(Ops(), "mEmail");
    QWidget* const controls[] = {Email().ComboMail[0], Email().TMail[5], Email().bEmail[0], Email().bEmail[1]};
    Press(*controls[at], Qt::Key_Escape);
    EXPECT_FALSE(Ops().isVisible()) << at;
  }
}

// The settings window.

TEST_F(PanelKeys, ReturnInABoxOfTheSettingsAppliesIt) {
  Open(Sets(), "mSettings");
  Sets().tPath->setText(run_.test.Path("app"));
  Sets().tLink->setText("More");
  Press(*Sets().tPath, Qt::Key_Return);
  EXPECT_EQ(run_.test.Path("app"), Stored(Settings::CardFol));
  EXPECT_EQ("Next Page", Stored(Settings::LinkText)) << "the other box isn't asked";
  Press(*Sets().tLink, Qt::Key_Return);
  EXPECT_EQ("More", Stored(Settings::LinkText));
  EXPECT_TRUE(Sets().isVisible());
}

TEST_F(PanelKeys, ReturnInTheCustomIconsAddsAndUses) {
  Open(Sets(), "mSettings");
  Sets().bSetWins[1]->click();
  Sets().bIcoSets[1]->click();
  Sets().bCustomIco[1]->setEnabled(true);
  EXPECT_EQ(QStringList{"bCustomIco1"}, Pressed(Sets(), Sets().Busy, *Sets().tIcoPath, Qt::Key_Return));
  Sets().BoxIcons->addItem("a.ico");
  Sets().BoxIcons->setCurrentRow(0);
  EXPECT_EQ(QStringList{"bCustomIco2"}, Pressed(Sets(), Sets().Busy, *Sets().BoxIcons, Qt::Key_Return));
}

TEST_F(PanelKeys, ReturnOnAButtonOfTheSettingsPressesThatOne) {
  Open(Sets(), "mSettings");
  // Of the two on top one leads away from the panel, and the other is asleep.
  const auto press = [this](int count, QPushButton* leads) {
    for (QPushButton* const button : InView<QPushButton>(Sets())) {
      if (button == leads) continue;
      --count;
      EXPECT_EQ(QStringList{button->objectName()}, Pressed(Sets(), Sets().Busy, *button, Qt::Key_Return));
    }
    EXPECT_EQ(0, count);
  };
  press(3, Sets().bSetWins[1]);
  EXPECT_EQ(QStringList{"bSetWins1"}, Pressed(Sets(), Sets().Busy, *Sets().bSetWins[1], Qt::Key_Return));
  EXPECT_TRUE(Sets().FrSets[1]->isVisible());
  press(2, Sets().bSetWins[0]);
  Press(*Sets().bIcoSets[1], Qt::Key_Return);
  EXPECT_TRUE(Sets().FrSets[2]->isVisible());
  Sets().bCustomIco[1]->setEnabled(true);
  Sets().bCustomIco[2]->setEnabled(true);
  press(4, Sets().bSetWins[0]);
  EXPECT_TRUE(Sets().isVisible());
}

TEST_F(PanelKeys, ReturnOnATickOrAnIconOfTheSettingsChangesNothing) {
  Open(Sets(), "mSettings");
  EXPECT_EQ(QStringList(), Pressed(Sets(), Sets().Busy, *Sets().Ck4, Qt::Key_Return));
  EXPECT_FALSE(Sets().Ck4->isChecked());
  Sets().bSetWins[1]->click();
  EXPECT_EQ(QStringList(), Pressed(Sets(), Sets().Busy, *Sets().OpIco[3], Qt::Key_Return));
  EXPECT_FALSE(Sets().OpIco[3]->isChecked());
}

TEST_F(PanelKeys, EscapeInEachPanelOfTheSettingsClosesThemAndStoresNothing) {
  for (const int panel : {0, 1, 2}) {
    Open(Sets(), "mSettings");
    if (panel > 0) Sets().bSetWins[1]->click();
    if (panel > 1) Sets().bIcoSets[1]->click();
    QWidget* const controls[] = {Sets().tLink, Sets().bIcoSets[0], Sets().BoxIcons};
    Press(*controls[panel], Qt::Key_Escape);
    EXPECT_FALSE(Sets().isVisible()) << panel;
    Sets().bSetWins[0]->click();
  }
  EXPECT_TRUE(run_.test.platform.settings.Values().isEmpty());
}

}  // namespace
