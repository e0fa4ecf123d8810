// What the email panel remembers between two runs, and what it knows at its first one.
#include "PanelFixture.h"

namespace {

using Memory = PanelTest;

TEST_F(Memory, WithNothingKnownTheBoxesAreEmptyAndSendAsksForTheAddresses) {
  EXPECT_EQ("", panel_.ComboMail[1]->currentText());
  EXPECT_EQ("", panel_.TMail[1]->text());
  EXPECT_EQ("", panel_.TMail[2]->text());
  Click(0);
  EXPECT_EQ(QStringList{"The From email address, To email address and server address are all required to send an "
                        "email. See help for details."},
            Dialogs().Messages());
  EXPECT_EQ(MessageIcon::Information, Dialogs().Boxes.first().icon);
  EXPECT_EQ("", Status());
}

TEST_F(Memory, WhatIsRememberedComesBack) {
  Store(Settings::DefName, "Ann Lee");
  Store(Settings::DefServ, "mail.example.org");
  Store(Settings::DefUser, "ann9");
  Store(Settings::DefPass, "65.98.49");
  Store(Settings::To10, "b@c.dd*e@f.gg");
  Store(Settings::From10, "x@y.zz*u@v.ww");
  panel_.ComboMail[0]->setEditText("typed@before.org");
  panel_.TMail[0]->setText("Bob");
  panel_.TMail[3]->setText("Hello");
  Open();
  EXPECT_EQ(QStringList({"b@c.dd", "e@f.gg"}), ItemsOf(panel_.ComboMail[0]));
  EXPECT_EQ("typed@before.org", panel_.ComboMail[0]->currentText());
  EXPECT_EQ(QStringList({"x@y.zz", "u@v.ww"}), ItemsOf(panel_.ComboMail[1]));
  EXPECT_EQ("x@y.zz", panel_.ComboMail[1]->currentText());
  EXPECT_EQ("Bob", panel_.TMail[0]->text());
  EXPECT_EQ("Ann Lee", panel_.TMail[1]->text());
  EXPECT_EQ("mail.example.org", panel_.TMail[2]->text());
  EXPECT_EQ("Hello", panel_.TMail[3]->text());
  EXPECT_EQ("ann9", panel_.TMail[4]->text());
  EXPECT_EQ("Ab1", panel_.TMail[5]->text());
}

TEST_F(Memory, ListsAreLoadedAnew) {
  Store(Settings::To10, "b@c.dd*e@f.gg");
  Open();
  Store(Settings::To10, "new@c.dd");
  Open();
  EXPECT_EQ(QStringList{"new@c.dd"}, ItemsOf(panel_.ComboMail[0]));
  EXPECT_EQ("", panel_.ComboMail[0]->currentText());
}

// Meant in EmailPanel::LoadEmailDefaults: the stored address of the sender is read and never written.
TEST_F(Memory, TheStoredSenderAddressIsReadAndNeverWritten) {
  Store(Settings::DefEmail, "def@example.org");
  Open();
  EXPECT_EQ("def@example.org", panel_.ComboMail[1]->currentText());
  Send();
  Accept();
  EXPECT_EQ(" Email sent.", Status());
  EXPECT_EQ("def@example.org", Stored(Settings::DefEmail));
}

TEST(MemoryOfTheSystem, TheMailAccountFillsInWhatIsNotRemembered) {
  TestProgram test;
  const QString manager = "Software\\Microsoft\\Internet Account Manager";
  test.platform.mailAccount.Values = {{manager + "|Default Mail Account", "00000002"},
                                      {manager + "\\Accounts\\00000002|SMTP Server", "smtp.example.org"},
                                      {manager + "\\Accounts\\00000002|SMTP Display Name", "Ann of the account"},
                                      {manager + "\\Accounts\\00000002|SMTP Email Address", "account@example.org"}};
  MailUC MUC(test.platform.services);
  bool busy = false;
  EmailPanel panel(test.program, MUC, busy, nullptr);
  panel.LoadEmailDefaults();
  EXPECT_EQ("account@example.org", panel.ComboMail[1]->currentText());
  EXPECT_EQ("Ann of the account", panel.TMail[1]->text());
  EXPECT_EQ("smtp.example.org", panel.TMail[2]->text());
  Settings::Save(test.platform.settings, Settings::DefServ, "own.example.org");
  panel.LoadEmailDefaults();
  EXPECT_EQ("own.example.org", panel.TMail[2]->text());
}

// Meant in EmailPanel::LoadEmailDefaults: without a stored password the box keeps what it held.
TEST_F(Memory, AnEmptyStoredPasswordLeavesWhatTheBoxHeld) {
  panel_.TMail[5]->setText("typed");
  Store(Settings::DefPass, "");
  Open();
  EXPECT_EQ("typed", panel_.TMail[5]->text());
}

TEST_F(Memory, NothingIsStoredBeforeTheMessageIsSent) {
  Send();
  Net().Bring("220 a");
  Net().Bring("500 no");
  EXPECT_TRUE(test_.platform.settings.Values().isEmpty());
}

// Meant in EmailPanel::OnSendComplete: addresses aren't remembered when the window was closed before the message was
// sent.
TEST_F(Memory, NothingIsStoredWhenTheWindowHasBeenHidden) {
  Send();
  panel_.hide();
  Accept();
  EXPECT_EQ(" Email sent.", Status());
  EXPECT_TRUE(panel_.bEmail[2]->isEnabled());
  EXPECT_TRUE(test_.platform.settings.Values().isEmpty());
}

TEST_F(Memory, EmptyBoxesLeaveWhatIsRememberedButThePassword) {
  Store(Settings::DefName, "Ann");
  Store(Settings::DefUser, "ann9");
  Store(Settings::DefPass, "65");
  Send();
  Accept();
  EXPECT_EQ("Ann", Stored(Settings::DefName));
  EXPECT_EQ("ann9", Stored(Settings::DefUser));
  EXPECT_EQ("", Stored(Settings::DefPass));
  EXPECT_TRUE(test_.platform.settings.Values().contains("QKCVN2|settings|DefPass"));
}

TEST_F(Memory, ANewRecipientComesInFrontAndTheListInTheBoxWaits) {
  Store(Settings::To10, "one@a.bb*two@a.bb");
  Store(Settings::From10, "x@y.zz*ann@example.org");
  Open();
  Send();
  Accept();
  EXPECT_EQ("bob@example.net*one@a.bb*two@a.bb", Stored(Settings::To10));
  EXPECT_EQ("ann@example.org*x@y.zz", Stored(Settings::From10));
  EXPECT_EQ(2, panel_.ComboMail[0]->count());
  Open();
  EXPECT_EQ(3, panel_.ComboMail[0]->count());
}

// The message goes to the one without.
TEST_F(Memory, ABlankBehindAnAddressIsRemembered) {
  Fill();
  panel_.ComboMail[0]->setEditText("bob@example.net ");
  panel_.ComboMail[1]->setEditText(" ann@example.org");
  Click(0);
  Accept();
  EXPECT_TRUE(Net().Sent.contains("RCPT TO: <bob@example.net>\r\n"));
  EXPECT_TRUE(Net().Sent.contains("MAIL FROM: <ann@example.org>\r\n"));
  EXPECT_EQ("bob@example.net ", Stored(Settings::To10));
  EXPECT_EQ(" ann@example.org", Stored(Settings::From10));
}

TEST_F(Memory, UpToElevenRecipientsAreStored) {
  QStringList ten;
  for (int i = 0; i < 10; ++i) ten += QString("r%1@a.bb").arg(i);
  Store(Settings::To10, ten.join('*'));
  Open();
  Send();
  Accept();
  EXPECT_EQ(11, Stored(Settings::To10).split('*').size());
  Open();
  panel_.ComboMail[0]->setEditText("more@a.bb");
  Click(0);
  Accept();
  EXPECT_EQ("more@a.bb*bob@example.net*" + ten.first(9).join('*'), Stored(Settings::To10));
}

TEST_F(Memory, TheArrowDownComesToTheFirstOfTheList) {
  Store(Settings::To10, "one@a.bb*two@a.bb");
  Open();
  QTest::keyClick(panel_.ComboMail[0], Qt::Key_Down);
  EXPECT_EQ("one@a.bb", panel_.ComboMail[0]->currentText());
  QTest::keyClick(panel_.ComboMail[0], Qt::Key_Down);
  EXPECT_EQ("two@a.bb", panel_.ComboMail[0]->currentText());
}

}  // namespace
