// The email panel in its window, and how the menu opens it.
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "EmailPanel.h"
#include "ProgramFixture.h"
#include "Settings.h"

namespace {

class EmailWindow : public ProgramTest {
 protected:
  EmailWindow() { EXPECT_TRUE(run_.Start()); }

  FOps& Ops() { return *run_.modMain.Ops(); }
  EmailPanel& Panel() { return *Ops().FrOps2; }
  ScriptedSockets& Net() { return run_.test.platform.sockets; }
  void Open() { ASSERT_TRUE(run_.Choose("mEmail")); }
  void Send() {
    Panel().ComboMail[0]->setEditText("bob@example.net");
    Panel().ComboMail[1]->setEditText("ann@example.org");
    Panel().TMail[2]->setText("mail.example.org");
    Panel().bEmail[0]->click();
  }
  void Accept() {
    for (const char* reply : {"220 a", "250 b", "250 c", "250 d", "354 e", "250 f", "221 g"}) Net().Bring(reply);
  }
  void CloseBox() {
    QCloseEvent close;
    QApplication::sendEvent(&Ops(), &close);
    EXPECT_FALSE(close.isAccepted());
  }
};

TEST_F(EmailWindow, TheMenuOpensItWithItsCaptionAndSize) {
  Open();
  EXPECT_TRUE(Ops().isVisible());
  EXPECT_FALSE(Ops().isModal());
  EXPECT_EQ("Email Current Page", Ops().windowTitle());
  EXPECT_EQ(QSize(452, 396), Ops().size());
  EXPECT_TRUE(Panel().isVisible());
  EXPECT_EQ(QPoint(0, 0), Panel().pos());
  EXPECT_EQ("  Send Page as HTML Email  ", Panel().findChild<QGroupBox*>()->title());
  EXPECT_EQ("", Panel().TStat->text());
  EXPECT_EQ(1, Net().StartUps);
}

TEST_F(EmailWindow, OpeningClearsTheStatusAndReadiesTheNetworkOnce) {
  Open();
  Send();
  ASSERT_EQ(" Sending email...", Panel().TStat->text());
  Open();
  EXPECT_EQ("", Panel().TStat->text());
  EXPECT_EQ(1, Net().StartUps);
}

TEST_F(EmailWindow, ItOpensAllTheSameWhenTheNetworkCannotBeReadied) {
  Net().StartUpResult = 10091;
  Open();
  EXPECT_TRUE(Ops().isVisible());
  EXPECT_EQ(" System not ready for network communication.", Panel().TStat->text());
}

TEST_F(EmailWindow, OtherPanelsLeaveTheMailAlone) {
  run_.Choose("mMakePack");
  EXPECT_EQ(0, Net().StartUps);
}

TEST_F(EmailWindow, EachTaskGivesTheWindowItsCaptionAndSize) {
  const struct {
    const char *command, *caption, *panel;
    int height;
  } tasks[] = {{"mMakePack", "Make Web-Pack File", "  Create Web-Pack File  ", 276},
               {"mEmail", "Email Current Page", "  Send Page as HTML Email  ", 396},
               {"mOpenProject", "Open Saved Project", "  Open Existing Project  ", 276}};
  ASSERT_TRUE(QDir().mkpath(run_.PathInApp("saved/ann")));
  for (const auto& task : tasks) {
    ASSERT_TRUE(run_.Choose(task.command));
    EXPECT_EQ(task.caption, Ops().windowTitle());
    EXPECT_EQ(QSize(452, task.height), Ops().size());
    QStringList shown;
    for (const QGroupBox* const frame : Ops().findChildren<QGroupBox*>())
      if (frame->isVisible()) shown << frame->title();
    EXPECT_EQ(QStringList{task.panel}, shown);
  }
}

TEST_F(EmailWindow, TheMenuSavesThePageFirst) {
  run_.Type("typed");
  Open();
  EXPECT_TRUE(FileIn("card/wgcard.html").contains("typed"));
  Send();
  Accept();
  EXPECT_EQ(" Email sent.", Panel().TStat->text());
  EXPECT_TRUE(Net().Sent.contains("typed"));
}

TEST_F(EmailWindow, TheCloseBoxEndsWhatIsUnderWayAndHides) {
  Open();
  Send();
  ASSERT_TRUE(Net().IsOpen());
  CloseBox();
  EXPECT_FALSE(Ops().isVisible());
  EXPECT_FALSE(Net().IsOpen());
  EXPECT_EQ(1, Net().CleanUps);
  EXPECT_FALSE(Ops().MUC.EmailAvailable());
}

TEST_F(EmailWindow, TheExitEndsWhatIsUnderWayBeforeTheWindowsGo) {
  Open();
  Send();
  ASSERT_TRUE(Net().IsOpen());
  run_.Dialogs().Answers = {MessageAnswer::No};
  run_.modMain.ExitProgram();
  EXPECT_NE(nullptr, run_.modMain.Ops());
  EXPECT_FALSE(Net().IsOpen());
  EXPECT_EQ(1, Net().CleanUps);
}

TEST_F(EmailWindow, TheEscapeKeyEndsNoMessageAndLosesNone) {
  Open();
  Send();
  ASSERT_TRUE(Net().IsOpen());
  QTest::keyClick(Panel().TMail[3], Qt::Key_Escape);
  EXPECT_TRUE(Ops().isVisible());
  EXPECT_TRUE(Net().IsOpen());
  Accept();
  EXPECT_EQ(" Email sent.", Panel().TStat->text());
  QTest::keyClick(Panel().TMail[3], Qt::Key_Escape);
  EXPECT_TRUE(Ops().isVisible());
  EXPECT_TRUE(Ops().MUC.EmailAvailable());
}

TEST_F(EmailWindow, WithNothingToLoseTheEscapeKeyHidesAsTheCloseBoxDoes) {
  Open();
  QTest::keyClick(Panel().TMail[3], Qt::Key_Escape);
  EXPECT_FALSE(Ops().isVisible());
  EXPECT_EQ(1, Net().CleanUps);
}

TEST_F(EmailWindow, OpeningItBringsItBackFromMinimised) {
  Open();
  Ops().showMinimized();
  ASSERT_TRUE(Ops().isMinimized());
  Open();
  EXPECT_FALSE(Ops().isMinimized());
  EXPECT_EQ(QSize(452, 396), Ops().size());
}

TEST_F(EmailWindow, TheCloseBoxLeavesSaveCopyEnabledWithNothingToSave) {
  Open();
  Send();
  Accept();
  CloseBox();
  Open();
  ASSERT_TRUE(Panel().bEmail[2]->isEnabled());
  Answer({});
  Panel().bEmail[2]->click();
  EXPECT_EQ(QStringList{"There is not currently a fully finished email to save."}, run_.Dialogs().Messages());
}

TEST_F(EmailWindow, TheCloseButtonHidesTheWindow) {
  Open();
  Panel().bEmail[1]->click();
  EXPECT_FALSE(Ops().isVisible());
}

TEST_F(EmailWindow, WhatWasSentWithTheWindowHiddenIsNotRemembered) {
  Open();
  Send();
  Ops().hide();
  Accept();
  EXPECT_EQ("", Settings::Get(run_.test.platform.settings, Settings::To10));
  Open();
  Send();
  Accept();
  EXPECT_EQ("bob@example.net", Settings::Get(run_.test.platform.settings, Settings::To10));
}

TEST_F(EmailWindow, WhatWasSentBehindAnotherPanelIsRemembered) {
  Open();
  Send();
  ASSERT_TRUE(run_.Choose("mMakePack"));
  ASSERT_FALSE(Panel().isVisible());
  Accept();
  EXPECT_EQ("bob@example.net", Settings::Get(run_.test.platform.settings, Settings::To10));
}

TEST_F(EmailWindow, SubjectAndNamesOutliveTheCloseButtonAndEmptyBoxes) {
  Open();
  Panel().TMail[0]->setText("Bob");
  Panel().TMail[3]->setText("The old subject");
  Send();
  Accept();
  Panel().bEmail[1]->click();
  Open();
  for (const int index : {0, 3}) Panel().TMail[index]->clear();
  Net().Sent.clear();
  Send();
  Accept();
  EXPECT_TRUE(Net().Sent.contains("\r\nTo: Bob <bob@example.net>\r\n"));
  EXPECT_TRUE(Net().Sent.contains("\r\nSubject: The old subject\r\n"));
}

TEST_F(EmailWindow, TheExitCutsOffWhatIsUnderWay) {
  Open();
  Send();
  Exit({MessageAnswer::No});
  EXPECT_TRUE(run_.ended);
  EXPECT_FALSE(Net().IsOpen());
  EXPECT_EQ(1, Net().CleanUps);
}

TEST_F(EmailWindow, ACopyIsSavedWithTheMainWindowAsOwner) {
  Open();
  Send();
  Accept();
  Answer({}, {run_.test.Path("copy.eml")});
  Panel().bEmail[2]->click();
  ASSERT_EQ(1, run_.Dialogs().Questions.size());
  EXPECT_EQ(&Web(), run_.Dialogs().Questions.first().owner);
  EXPECT_TRUE(FileBytes(run_.test.Path("copy.eml")).startsWith("FROM: "));
}

TEST_F(EmailWindow, PicturesOfThePageGoWithItAndTheirFoldersAreCut) {
  ASSERT_TRUE(PutFile(run_.PathInApp("card/a.gif"), "picture a"));
  ASSERT_TRUE(PutFile(run_.PathInApp("card/b.gif"), "picture b"));
  Open();
  ASSERT_TRUE(PutFile(run_.PathInApp("card/wgcard.html"),
                      "<HTML><BODY BACKGROUND=\"x/b.gif\" ><IMG SRC=\"file:///C:/y/a.gif\" ></BODY></HTML>"));
  Send();
  Accept();
  EXPECT_TRUE(Net().Sent.contains("BACKGROUND=3D\"cid:00000000.0000.0000.0000.000000000001\""));
  EXPECT_TRUE(Net().Sent.contains("SRC=3D\"cid:00000000.0000.0000.0000.000000000002\""));
  EXPECT_TRUE(Net().Sent.contains("Name=\"b.gif\""));
  EXPECT_TRUE(Net().Sent.contains(QByteArray("picture a").toBase64()));
}

}  // namespace
