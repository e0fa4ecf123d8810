#include "EmailPanel.h"

#include <QApplication>
#include <QClipboard>
#include <QGroupBox>
#include <QImage>
#include <QRegularExpression>
#include <QSignalSpy>

#include "FewLinesLabel.h"
#include "PanelFixture.h"
#include "Twips.h"

namespace {

using Panel = PanelTest;

TEST_F(Panel, ControlsCarryTheirNamesTextsAndTips) {
  EXPECT_EQ("FrOps2", panel_.objectName());
  EXPECT_EQ("  Send Page as HTML Email  ", panel_.findChild<QGroupBox*>()->title());
  EXPECT_EQ(
      "Fill in relevant fields and click \"Send\". Note that large pictures are not suitable for email. See Help for "
      "more info.",
      panel_.findChild<QLabel*>("Label6")->text());
  const char* buttons[3][3] = {{"bEmail0", "Send", "Send current page as email."},
                               {"bEmail1", "Close", "Close window."},
                               {"bEmail2", "Save Copy", "Save a copy of this email as a file."}};
  for (const auto& row : buttons) {
    auto* button = panel_.findChild<QPushButton*>(row[0]);
    ASSERT_TRUE(button) << row[0];
    EXPECT_EQ(row[1], button->text());
    EXPECT_EQ(row[2], button->toolTip());
    EXPECT_EQ(row[1], button->accessibleName());
  }
  const char* boxes[][2] = {{"ComboMail0", "To:"},
                            {"TMail0", "Optional \"To\" name:"},
                            {"ComboMail1", "From:"},
                            {"TMail1", "Optional \"From\" name:"},
                            {"TMail2", "Server:"},
                            {"TMail3", "Subject:"},
                            {"TMail4", "Username if not same as \"From\" email name:"},
                            {"TMail5", "Password if necessary:"}};
  QStringList labels;
  for (const QLabel* label : panel_.findChildren<FewLinesLabel*>())
    if (label != panel_.Label6) labels += label->text() + '|' + label->buddy()->objectName();
  for (const auto& row : boxes) {
    EXPECT_TRUE(labels.contains(QString("%1|%2").arg(row[1], row[0]))) << row[0];
    EXPECT_EQ(QString(row[1]).chopped(1), panel_.findChild<QWidget*>(row[0])->accessibleName());
  }
  EXPECT_EQ(8, labels.size());
  EXPECT_EQ("Status", panel_.TStat->accessibleName());
  EXPECT_TRUE(panel_.TStat->isReadOnly());
}

TEST_F(Panel, ThePasswordShowsAStarForEachCharacter) {
  panel_.TMail[5]->setText("secret");
  EXPECT_EQ("******", panel_.TMail[5]->displayText());
}

TEST_F(Panel, SaveCopyIsDisabledAtTheStart) {
  EXPECT_TRUE(panel_.bEmail[0]->isEnabled());
  EXPECT_FALSE(panel_.bEmail[2]->isEnabled());
}

TEST_F(Panel, TheKeyboardGoesThroughTheBoxesInTheirOrder) {
  panel_.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&panel_));
  panel_.bEmail[2]->setEnabled(true);
  panel_.ComboMail[0]->setFocus();
  QStringList order;
  for (int i = 0; i < 11; ++i) {
    order += QApplication::focusWidget()->objectName();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  }
  EXPECT_EQ(QStringList({"ComboMail0", "TMail0", "ComboMail1", "TMail1", "TMail2", "TMail3", "TMail4", "TMail5",
                         "bEmail0", "bEmail1", "bEmail2"}),
            order);
}

// Opening.

TEST_F(Panel, OpeningClearsTheStatusAlsoWhileAMessageIsOnItsWay) {
  Send();
  EXPECT_EQ(" Sending email...", Status());
  Open();
  EXPECT_EQ("", Status());
  EXPECT_TRUE(Net().IsOpen());
  EXPECT_EQ(1, Net().StartUps);
}

TEST_F(Panel, OpeningBeginsInTheFirstBoxWithNothingToldOfTheLastTalk) {
  Send();
  Net().Bring("554 busy");
  ASSERT_TRUE(panel_.TStat->toolTip().contains("554"));
  panel_.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&panel_));
  panel_.TMail[2]->setFocus();
  Open();
  EXPECT_EQ("", panel_.TStat->toolTip());
  EXPECT_EQ(panel_.ComboMail[0], QApplication::focusWidget());
}

TEST_F(Panel, ANetworkLibraryThatFailsIsToldBehindABlank) {
  Click(1);
  Net().StartUpResult = 10091;
  Open();
  EXPECT_EQ(" System not ready for network communication.", Status());
  Send();
  EXPECT_EQ(" System not ready for network communication.", Status());
}

// Meant in EmailPanel::Send: a failure that has no text is shown as one blank.
TEST_F(Panel, AFailureWithoutATextShowsOneBlank) {
  Click(1);
  Net().StartUpResult = 1;
  Open();
  EXPECT_EQ(" ", Status());
  Send();
  EXPECT_EQ(" ", Status());
}

// Send.

TEST_F(Panel, AMessageIsSentAndTold) {
  Send();
  EXPECT_EQ(" Sending email...", Status());
  EXPECT_TRUE(Dialogs().Boxes.isEmpty());
  Accept();
  EXPECT_EQ(" Email sent.", Status());
  EXPECT_TRUE(panel_.bEmail[2]->isEnabled());
  EXPECT_TRUE(Net().Sent.contains("MAIL FROM: <ann@example.org>\r\n"));
  EXPECT_TRUE(Net().Sent.contains("RCPT TO: <bob@example.net>\r\n"));
  EXPECT_EQ("mail.example.org", Net().ResolvedName);
  EXPECT_EQ(25, Net().Port);
  EXPECT_EQ("bob@example.net", Stored(Settings::To10));
  EXPECT_EQ("ann@example.org", Stored(Settings::From10));
  EXPECT_EQ("mail.example.org", Stored(Settings::DefServ));
}

TEST_F(Panel, TheStatusTellsEachStepInItsOrder) {
  QStringList told;
  QObject::connect(panel_.TStat, &QLineEdit::textChanged, [&](const QString& text) { told += text; });
  Send();
  Accept();
  EXPECT_EQ(QStringList({" Preparing to send email...", " Sending email...", " Email sent."}), told);
  told.clear();
  ASSERT_TRUE(QFile::remove(test_.program.project.CurPageFile()));
  Send();
  EXPECT_EQ(QStringList({" Preparing to send email...", " Error. Current page file not found."}), told);
  EXPECT_EQ(0, panel_.TStat->cursorPosition()) << "of a long line the beginning shows";
}

TEST_F(Panel, AllEightBoxesReachTheMessage) {
  Fill();
  panel_.TMail[0]->setText("Bob B.");
  panel_.TMail[1]->setText("Ann L.");
  panel_.TMail[3]->setText("Summer");
  panel_.TMail[4]->setText("ann9");
  panel_.TMail[5]->setText("secret");
  Click(0);
  for (const char* reply : {"220 a", "250 AUTH LOGIN", "334 VXNlcm5hbWU6", "334 UGFzc3dvcmQ6", "235 go"})
    Net().Bring(reply);
  for (const char* reply : {"250 c", "250 d", "354 e", "250 f", "221 g"}) Net().Bring(reply);
  EXPECT_EQ(" Email sent.", Status());
  EXPECT_TRUE(Net().Sent.startsWith("EHLO ann9\r\nAUTH LOGIN\r\nYW5uOQ==\r\nc2VjcmV0\r\nMAIL FROM:"));
  EXPECT_TRUE(Net().Sent.contains(
      "From: Ann L. <ann@example.org>\r\nTo: Bob B. <bob@example.net>\r\nSubject: Summer\r\nDate: "));
  EXPECT_EQ("Ann L.", Stored(Settings::DefName));
  EXPECT_EQ("ann9", Stored(Settings::DefUser));
  EXPECT_EQ("115.101.99.114.101.116", Stored(Settings::DefPass));
}

// Once for each time that the page shows it, and all references lead to the first.
TEST_F(Panel, APictureThatThePageShowsTwiceIsAttachedTwice) {
  ASSERT_TRUE(PutFile(test_.WorkFile("a.gif"), "picture a"));
  ASSERT_TRUE(PutFile(test_.WorkFile("b.gif"), "picture b"));
  ASSERT_TRUE(PutFile(test_.program.project.CurPageFile(),
                      "<HTML><BODY BACKGROUND=\"b.gif\" ><IMG SRC=\"a.gif\" ><IMG SRC=\"x/a.gif\" >"
                      "<IMG SRC=\"b.gif\" ><IMG SRC=\"gone.gif\" ></BODY></HTML>"));
  Send();
  Accept();
  QStringList parts;
  const QRegularExpression part("\tName=\"(.*)\"\r\n.*\r\nContent-ID: <.*\\.0*(\\d+)>\r\n\r\n(.*)\r\n");
  for (auto found = part.globalMatch(QString::fromLatin1(Net().Sent)); found.hasNext();) {
    const auto one = found.next();
    parts += one.captured(1) + ' ' + one.captured(2) + ' ' + QByteArray::fromBase64(one.captured(3).toLatin1());
  }
  EXPECT_EQ(QStringList({"b.gif 1 picture b", "a.gif 2 picture a", "a.gif 3 picture a", "b.gif 4 picture b"}), parts);
  const QByteArray whole = Net().Sent;
  EXPECT_EQ(2, whole.count("cid:00000000.0000.0000.0000.000000000001"));
  EXPECT_EQ(2, whole.count("cid:00000000.0000.0000.0000.000000000002"));
  EXPECT_EQ(5, whole.count("cid:"));
}

TEST_F(Panel, APictureNamedInAnyScriptIsFoundByThePagesBytes) {
  ASSERT_TRUE(PutFile(test_.WorkFile(QString::fromUtf8("\u732B.gif")), "cat"));
  ASSERT_TRUE(PutFile(test_.WorkFile(QString::fromUtf8("\u00E9\u20AC.gif")), "western"));
  ASSERT_TRUE(PutFile(test_.program.project.CurPageFile(),
                      "<BODY><IMG SRC=\"\xE7\x8C\xAB.gif\" ><IMG SRC=\"\xE9\x80.gif\" ></BODY>"));
  Send();
  Accept();
  EXPECT_TRUE(Net().Sent.contains("\r\n\r\n" + QByteArray("cat").toBase64() + "\r\n\r\n"));
  EXPECT_TRUE(Net().Sent.contains("\r\n\r\n" + QByteArray("western").toBase64() + "\r\n\r\n"));
  EXPECT_EQ(1, Net().Sent.count("\"cid:00000000.0000.0000.0000.000000000001\""));
  EXPECT_EQ(1, Net().Sent.count("\"cid:00000000.0000.0000.0000.000000000002\""));
}

TEST_F(Panel, WithoutANetworkABoxTellsItFirst) {
  test_.platform.network.Online = false;
  Click(0);
  EXPECT_EQ(QStringList{"No Internet connection active. You must be online to send email."}, Dialogs().Messages());
  EXPECT_EQ(MessageIcon::Information, Dialogs().Boxes.first().icon);
  EXPECT_EQ(0, Net().Opened);
}

TEST_F(Panel, BehindAProxyTheStatusTellsIt) {
  test_.platform.network.Proxy = true;
  Send();
  EXPECT_EQ(" Internet connection is via proxy server. Unable to send email via proxy.", Status());
  EXPECT_EQ(0, Net().Opened);
}

TEST_F(Panel, AnyBadAddressIsRefusedBeforeTheNetwork) {
  struct Row {
    const char *to, *from, *server;
  };
  const Row rows[] = {{"", "ann@example.org", "s"},      {"bob@example.net", "", "s"},
                      {"bob@example.net", "a@b.cc", ""}, {"bob", "ann@example.org", "s"},
                      {"bob@example.net", "x@y.c", "s"}, {" ", "a@b.cc", "s"}};
  for (const Row& row : rows) {
    Dialogs().Boxes.clear();
    panel_.ComboMail[0]->setEditText(row.to);
    panel_.ComboMail[1]->setEditText(row.from);
    panel_.TMail[2]->setText(row.server);
    Click(0);
    ASSERT_EQ(1, Dialogs().Boxes.size()) << row.to << '|' << row.from << '|' << row.server;
    EXPECT_TRUE(Dialogs().Boxes.first().text.startsWith("The From email address, "));
  }
  EXPECT_EQ(0, Net().Opened);
}

TEST_F(Panel, BlanksAroundTheAddressesGoBeforeTheTest) {
  panel_.ComboMail[0]->setEditText(" bob@example.net ");
  panel_.ComboMail[1]->setEditText("ann@example.org ");
  panel_.TMail[2]->setText(" mail.example.org ");
  Click(0);
  Accept();
  EXPECT_TRUE(Net().Sent.contains("RCPT TO: <bob@example.net>\r\n"));
  EXPECT_EQ("mail.example.org", Net().ResolvedName);
}

TEST_F(Panel, AServerOfBlanksPassesTheTestAndFailsInTheStatus) {
  Fill();
  panel_.TMail[2]->setText("  ");
  Click(0);
  EXPECT_TRUE(Dialogs().Boxes.isEmpty());
  EXPECT_EQ(" Server address string missing.", Status());
}

TEST_F(Panel, AfterAFailedCheckSaveCopyStaysDisabled) {
  Send();
  Accept();
  ASSERT_TRUE(panel_.bEmail[2]->isEnabled());
  panel_.ComboMail[0]->setEditText("bob");
  Click(0);
  EXPECT_FALSE(panel_.bEmail[2]->isEnabled());
  // Although there is still a message that could be saved.
  EXPECT_TRUE(MUC_.EmailAvailable());
}

TEST_F(Panel, WithoutANetworkSaveCopyStaysAsItIs) {
  Send();
  Accept();
  test_.platform.network.Online = false;
  Click(0);
  EXPECT_TRUE(panel_.bEmail[2]->isEnabled());
}

// Meant in EmailPanel::Send: a box that has been emptied leaves the earlier value in force.
TEST_F(Panel, AnEmptiedBoxLeavesTheOldValueInForce) {
  Fill();
  panel_.TMail[3]->setText("The old subject");
  panel_.TMail[0]->setText("The old name");
  panel_.TMail[4]->setText("olduser");
  Click(0);
  Accept();
  Net().Sent.clear();
  for (const int index : {0, 3, 4}) panel_.TMail[index]->clear();
  Click(0);
  Accept();
  EXPECT_TRUE(Net().Sent.contains("EHLO olduser\r\n"));
  EXPECT_TRUE(Net().Sent.contains("\r\nTo: The old name <bob@example.net>\r\n"));
  EXPECT_TRUE(Net().Sent.contains("\r\nSubject: The old subject\r\n"));
}

// The sender too: an emptied box is told of, and the address in force changes with the next one.
// Meant in MailUC::SetFromEmail: the user name that was made of the first sender stays when the sender changes.
TEST_F(Panel, AnEmptiedSenderIsToldAndTheNextOneCounts) {
  Send();
  Accept();
  Net().Sent.clear();
  panel_.ComboMail[1]->setEditText("");
  Click(0);
  EXPECT_EQ(1, Dialogs().Boxes.size());
  EXPECT_EQ("", Net().Sent);
  panel_.ComboMail[1]->setEditText("eve@example.org");
  Click(0);
  Accept();
  EXPECT_TRUE(Net().Sent.contains("MAIL FROM: <eve@example.org>\r\n"));
  // The user name was made of the first sender, and that is meant.
  EXPECT_TRUE(Net().Sent.startsWith("EHLO ann\r\n"));
}

TEST_F(Panel, APageThatIsGoneIsTold) {
  QFile::remove(test_.program.project.CurPageFile());
  Send();
  EXPECT_EQ(" Error. Current page file not found.", Status());
  EXPECT_EQ(0, Net().Opened);
}

TEST_F(Panel, APageThatIsEmptyIsTold) {
  PutFile(test_.program.project.CurPageFile(), "");
  Send();
  EXPECT_EQ(" Error. Unable to read current page file.", Status());
}

TEST_F(Panel, AConnectionThatFailsIsToldAndTheCopyCannotBeSavedYet) {
  Net().ConnectFails = true;
  Send();
  EXPECT_EQ(" Winsock error - Failed to connect to server. Error number:111", Status());
  EXPECT_TRUE(MUC_.EmailAvailable());
  EXPECT_FALSE(panel_.bEmail[2]->isEnabled());
}

TEST_F(Panel, TheServersWordsAreShownInTheCodePage) {
  Send();
  Net().Bring("220 a");
  Net().Bring("500 nein \x80 \xE4\r\n");
  EXPECT_EQ(QString::fromUtf8(" 500 nein \u20AC \u00E4\r\n"), Status());
  EXPECT_TRUE(panel_.bEmail[2]->isEnabled());
}

TEST_F(Panel, TheServersWordsAreNoMarkup) {
  Send();
  Net().Bring("220 a");
  Net().Bring("500 <img src=\"x\"> & <b>bold</b>");
  EXPECT_FALSE(panel_.TStat->toolTip().contains("<b>"));
  EXPECT_FALSE(panel_.TStat->toolTip().contains("<img"));
  EXPECT_TRUE(panel_.TStat->toolTip().contains("&lt;b&gt;"));
}

// Meant in MailUC: there are no time-outs: a server that falls silent leaves the status at "Sending email...".
TEST_F(Panel, AServerThatFallsSilentLeavesTheStatusAtSending) {
  Send();
  Net().Bring("220 a");
  Net().Bring("");
  EXPECT_FALSE(Net().IsOpen());
  EXPECT_EQ(" Sending email...", Status());
  EXPECT_FALSE(panel_.bEmail[2]->isEnabled());
}

TEST_F(Panel, ASecondSendEndsTheFirstOne) {
  Send();
  Click(0);
  EXPECT_EQ(2, Net().Opened);
  EXPECT_EQ(1, Net().Closed);
  Accept();
  EXPECT_EQ(" Email sent.", Status());
}

TEST_F(Panel, AClickWhileBusyIsIgnored) {
  QSignalSpy hide(&panel_, &EmailPanel::HideRequested);
  Fill();
  panel_.bEmail[2]->setEnabled(true);
  busy_ = true;
  for (const int index : {0, 1, 2}) Click(index);
  EXPECT_TRUE(busy_);
  EXPECT_EQ(0, hide.size());
  EXPECT_TRUE(Dialogs().Boxes.isEmpty());
  EXPECT_EQ(0, Net().Opened);
}

// Whatever is chosen or typed stays what it is.
TEST_F(Panel, TypingIsNeverCompletedFromTheList) {
  Store(Settings::To10, "bob@example.network");
  Open();
  panel_.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&panel_));
  panel_.ComboMail[0]->setFocus();
  QTest::keyClicks(panel_.ComboMail[0], "bob@example.net");
  QTest::keyClick(panel_.ComboMail[0], Qt::Key_Return);
  EXPECT_EQ("bob@example.net", panel_.ComboMail[0]->currentText());
  EXPECT_EQ(QStringList{"bob@example.network"}, ItemsOf(panel_.ComboMail[0]));
}

TEST_F(Panel, WhatIsPastedIsCutAtItsFirstLineBreak) {
  for (QLineEdit* const box : {panel_.ComboMail[0]->lineEdit(), panel_.ComboMail[1]->lineEdit(), panel_.TMail[0],
                               panel_.TMail[1], panel_.TMail[2], panel_.TMail[3], panel_.TMail[4], panel_.TMail[5]}) {
    for (const char* const end : {"\n", "\r", "\r\n"}) {
      QApplication::clipboard()->setText(QString("first%1Bcc: x@y.zz").arg(end));
      box->clear();
      box->paste();
      EXPECT_EQ("first", box->text());
    }
  }
}

// Looks.

class FontOfTheDesktop {
 public:
  explicit FontOfTheDesktop(int points) : before_(QApplication::font()) {
    QFont font = before_;
    font.setPointSize(points);
    QApplication::setFont(font);
  }
  ~FontOfTheDesktop() { QApplication::setFont(before_); }

 private:
  QFont before_;
};

TEST_F(Panel, NothingIsCutOffFrom8To14Points) {
  for (int points = 8; points <= 14; ++points) {
    const FontOfTheDesktop font(points);
    EmailPanel panel(test_.program, MUC_, busy_, nullptr);
    panel.resize(TwipsToPixels(6780), TwipsToPixels(5940));
    panel.ComboMail[0]->setEditText("bob@example.net");
    panel.TMail[5]->setText("secret");
    panel.TStat->setText(" Sending email...");
    panel.show();
    EXPECT_LE(panel.minimumSizeHint().width(), panel.width()) << points;
    QList<QRect> places;
    for (QWidget* control : panel.findChildren<QWidget*>()) {
      auto* const label = qobject_cast<FewLinesLabel*>(control);
      auto* const button = qobject_cast<QPushButton*>(control);
      auto* const box = qobject_cast<QLineEdit*>(control);
      if (!label && !button && !box) continue;
      const QRect place(control->mapTo(&panel, QPoint(0, 0)), control->size());
      EXPECT_TRUE(panel.rect().contains(place)) << points << qPrintable(control->objectName());
      for (const QRect& other : places) EXPECT_FALSE(place.intersects(other)) << points;
      places.append(place);
      const QString what = control->objectName() + (label ? label->text() : QString());
      EXPECT_GE(control->height(), control->fontMetrics().height()) << points << ' ' << qPrintable(what);
      if (label) {
        EXPECT_GE(label->height(), label->heightForWidth(label->width())) << points << ' ' << qPrintable(what);
        // What isn't seen in full is in the tool tip.
        EXPECT_EQ(label->ShowsAll() ? QString() : label->text(), label->toolTip()) << points;
        EXPECT_TRUE(label->ShowsAll() || points > 11) << points << ' ' << qPrintable(what);
      }
      if (button) {
        EXPECT_GE(button->width(), button->sizeHint().width()) << points;
      }
    }
    EXPECT_EQ(9 + 3 + 9, places.size());
    const QString folder = qEnvironmentVariable("CORVANE_PICTURES");
    if (folder.isEmpty()) continue;
    panel.grab().save(QString("%1/email-panel-%2.png").arg(folder).arg(points));
    QImage twice(panel.size() * 2, QImage::Format_ARGB32);
    twice.setDevicePixelRatio(2);
    panel.render(&twice);
    twice.save(QString("%1/email-panel-%2-twice.png").arg(folder).arg(points));
  }
}

}  // namespace
