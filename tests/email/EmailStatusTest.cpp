// What the panel tells of a talk beside the status line's own text, and how it waits.
#include <sys/resource.h>
#include <unistd.h>

#include <QFile>
#include <QTextDocument>

#include "PanelFixture.h"

namespace {

class Status : public PanelTest {
 protected:
  // The tool tip as it is read.
  QStringList Tip() const {
    QTextDocument text;
    text.setHtml(panel_.TStat->toolTip());
    QStringList lines = text.toPlainText().split(QChar(10));
    lines.removeAll(QString());
    return lines;
  }
};

TEST_F(Status, ABareCodeIsExplainedByTheServersWordsInTheTip) {
  Send();
  for (const char* const reply : {"220 a", "250 b", "250 c"}) Net().Bring(reply);
  Net().Bring("550 5.1.1 No such user <bob>\r\n");
  EXPECT_EQ(" 550", PanelTest::Status());
  EXPECT_EQ(QStringList({"550", "The server said: 550 5.1.1 No such user <bob>"}), Tip());
}

TEST_F(Status, AConnectionThatTheServerClosesStandsInTheTipWithItsTime) {
  Send();
  Net().Bring("421 See http://mail.example.org/barelf.html\r\n");
  Send();
  Net().Bring("220 a\r\n");
  Net().Bring("250 b\r\n");
  Net().Bring("");
  EXPECT_EQ(" Sending email...", PanelTest::Status());
  const QString time = test_.platform.stamps.Now().toLocalTime().toString("HH:mm:ss");
  EXPECT_EQ(
      QStringList({"Sending email...", "The server said: 250 b", "The server closed the connection at " + time + "."}),
      Tip());
}

// The label says that the email was sent; what the server said to it is the tip's.
TEST_F(Status, TheAnswerToTheMessageStaysInTheTipBehindTheGoodbye) {
  Send();
  for (const char* const reply : {"220 a", "250 b", "250 c", "250 d", "354 e"}) Net().Bring(reply);
  Net().Bring("554 it is spam\r\n");
  Net().Bring("221 bye\r\n");
  EXPECT_EQ(" Email sent.", PanelTest::Status());
  EXPECT_EQ(QStringList({"Email sent.", "The server said: 554 it is spam"}), Tip());
}

TEST_F(Status, EachSendAndEachOpeningForgetsTheTalkBefore) {
  Send();
  Net().Bring("554 busy\r\n");
  ASSERT_EQ(2, Tip().size());
  Send();
  EXPECT_EQ(QStringList{"Sending email..."}, Tip());
  Net().Bring("554 busy\r\n");
  Open();
  EXPECT_EQ("", panel_.TStat->toolTip());
}

TEST_F(Status, WordsOfManyLinesAreAllInTheTip) {
  Send();
  Net().Bring("220 a");
  Net().Bring("500-first\r\n500 second & third\r\n");
  EXPECT_TRUE(panel_.TStat->toolTip().contains("500-first"));
  EXPECT_TRUE(Tip().contains("500 second & third"));
}

TEST_F(Status, AWaitCursorShowsWhileTheServerIsLookedFor) {
  bool wasWaiting = false;
  Net().WhileResolving = [&] {
    wasWaiting = QApplication::overrideCursor() && QApplication::overrideCursor()->shape() == Qt::WaitCursor;
  };
  Send();
  EXPECT_TRUE(wasWaiting);
  EXPECT_FALSE(QApplication::overrideCursor());
  wasWaiting = false;
  Net().ResolveFails = true;
  Send();
  EXPECT_TRUE(wasWaiting);
  EXPECT_FALSE(QApplication::overrideCursor());
}

TEST_F(Status, AnEncryptedConnectionThatCannotBeStandsThereWithItsReason) {
  Fill();
  panel_.TMail[2]->setText("smtps://mail.example.org");
  Click(0);
  EXPECT_EQ(" Sending email...", PanelTest::Status());
  Net().RefuseTls("The certificate has expired");
  EXPECT_EQ(" The connection can't be encrypted, so nothing was sent: The certificate has expired",
            PanelTest::Status());
  EXPECT_TRUE(panel_.bEmail[2]->isEnabled());
}

TEST_F(Status, WhatIsTypedAsServerIsRememberedAsItStands) {
  Fill();
  panel_.TMail[2]->setText("smtps://mail.example.org:465");
  Click(0);
  Net().Secure();
  Accept();
  EXPECT_EQ(" Email sent.", PanelTest::Status());
  EXPECT_EQ("smtps://mail.example.org:465", Stored(Settings::DefServ));
}

TEST_F(Status, TheTipOfTheServerFieldTellsWhatToTypeForAnOrdinaryMailbox) {
  EXPECT_EQ(
      "For an ordinary mailbox type smtps:// and the name of the provider's outgoing server, like "
      "smtps://mail.example.org.",
      panel_.TMail[2]->toolTip());
}

// A file that is nothing but a length, as large as a disk.
TEST_F(Status, APictureLargerThanAnyMailIsLeftOutLikeOneThatIsMissing) {
  QFile sparse(test_.WorkFile("huge.gif"));
  ASSERT_TRUE(sparse.open(QIODevice::WriteOnly));
  for (const qint64 size : {qint64(500'000'001), qint64(1) << 36, qint64(1) << 42}) {
    if (!sparse.resize(size)) continue;  // some disks don't take such a length
    ASSERT_TRUE(PutFile(test_.program.project.CurPageFile(), "<BODY><IMG SRC=\"huge.gif\" ></BODY>"));
    Send();
    Accept();
    EXPECT_EQ(" Email sent.", PanelTest::Status());
    EXPECT_TRUE(Net().Sent.contains("cid:huge.gif"));
    EXPECT_FALSE(Net().Sent.contains("image/"));
    Net().Sent.clear();
  }
}

#if !defined(__SANITIZE_ADDRESS__)  // the sanitizers need all addresses that there are
// Lets the process have that much more memory and no more, for as long as it lives.
class LittleMemory {
 public:
  explicit LittleMemory(rlim_t bytes) {
    EXPECT_EQ(0, getrlimit(RLIMIT_AS, &before_));
    const rlim_t pages = FileBytes("/proc/self/statm").split(' ').first().toULongLong();
    const rlimit little{pages * rlim_t(sysconf(_SC_PAGESIZE)) + bytes, before_.rlim_max};
    EXPECT_EQ(0, setrlimit(RLIMIT_AS, &little));
  }
  ~LittleMemory() { setrlimit(RLIMIT_AS, &before_); }

 private:
  rlimit before_{};
};

TEST_F(Status, APictureThatTheMemoryDoesNotHoldIsLeftOutToo) {
  QFile large(test_.WorkFile("large.gif"));
  ASSERT_TRUE(large.open(QIODevice::WriteOnly) && large.resize(400'000'000));
  ASSERT_TRUE(PutFile(test_.program.project.CurPageFile(), "<BODY><IMG SRC=\"large.gif\" ></BODY>"));
  {
    const LittleMemory little(128 << 20);
    Send();
    Accept();
  }
  EXPECT_EQ(" Email sent.", PanelTest::Status());
  EXPECT_FALSE(Net().Sent.contains("image/"));
}
#endif

TEST_F(Status, APageBringsNothingAlongThatLiesElsewhere) {
  ASSERT_TRUE(PutFile(test_.Path("app/secret.gif"), "secret"));
  // Where "\\" is a letter like others this is a file of the project, and all the same none to send.
  ASSERT_TRUE(PutFile(test_.WorkFile("..\\secret.gif"), "secret"));
  for (const char* const name : {"..", ".", "..\\secret.gif", "../secret.gif", "x/../../secret.gif"}) {
    ASSERT_TRUE(PutFile(test_.program.project.CurPageFile(), QByteArray("<BODY><IMG SRC=\"") + name + "\" ></BODY>"));
    Send();
    Accept();
    EXPECT_FALSE(Net().Sent.contains("image/")) << name;
    Net().Sent.clear();
  }
}

}  // namespace
