// The email panel on a network that the test plays, with a page that can be sent.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "EmailPanel.h"
#include "MailUC.h"
#include "Settings.h"
#include "TestPlatform.h"

class PanelTest : public ::testing::Test {
 protected:
  PanelTest() : panel_(test_.program, MUC_, busy_, &main_) {
    test_.program.project.TurnTo(1);
    EXPECT_TRUE(PutFile(test_.program.project.CurPageFile(), "<HTML><BODY>text</BODY></HTML>"));
    test_.platform.dialogs.WhileShown = [this] { busyWhileShown_.append(busy_); };
    panel_.show();
    Open();
  }
  ~PanelTest() override {
    EXPECT_EQ(0, test_.platform.dialogs.Unanswered);
    EXPECT_FALSE(busyWhileShown_.contains(false));
  }

  void Open() {
    panel_.LoadEmailDefaults();
    panel_.StartUp();
  }
  void Fill() {
    panel_.ComboMail[0]->setEditText("bob@example.net");
    panel_.ComboMail[1]->setEditText("ann@example.org");
    panel_.TMail[2]->setText("mail.example.org");
  }
  void Click(int index) { panel_.bEmail[index]->click(); }
  void Send() {
    Fill();
    Click(0);
  }
  // The server takes the message that is under way.
  void Accept() {
    for (const char* reply : {"220 a", "250 b", "250 c", "250 d", "354 e", "250 f", "221 g"}) Net().Bring(reply);
  }
  ScriptedSockets& Net() { return test_.platform.sockets; }
  ScriptedDialogs& Dialogs() { return test_.platform.dialogs; }
  QString Stored(const Settings::Key& key) const { return Settings::Get(test_.platform.settings, key); }
  void Store(const Settings::Key& key, const QString& value) { Settings::Save(test_.platform.settings, key, value); }
  QString Status() const { return panel_.TStat->text(); }
  static QStringList ItemsOf(const QComboBox* box) {
    QStringList items;
    for (int i = 0; i < box->count(); ++i) items += box->itemText(i);
    return items;
  }

  TestProgram test_;
  MailUC MUC_{test_.platform.services};
  bool busy_ = false;
  QWidget main_;
  EmailPanel panel_;
  QList<bool> busyWhileShown_;
};
