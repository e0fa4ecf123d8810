// The mail session before the server's first word: checks, readying the library, what it was told.
#include <functional>

#include "SessionFixture.h"

namespace {

TEST_F(Session, TheChecksComeInTheirOrderEachWithItsText) {
  MailUC fresh(test_.platform.services);
  const auto expect = [&](int number, const char* text) {
    QString error = "untouched";
    EXPECT_EQ(number, fresh.ConnectAndSend(error));
    EXPECT_EQ(QString(text), error);
    EXPECT_FALSE(fresh.EmailAvailable());
  };
  expect(0, "");
  QString none;
  EXPECT_EQ(100, fresh.StartUp(none));
  test_.platform.network.Online = false;
  test_.platform.network.Proxy = true;
  expect(152, "No Internet connection active. You must be online to send email.");
  test_.platform.network.Online = true;
  expect(153, "Internet connection is via proxy server. Unable to send email via proxy.");
  test_.platform.network.Proxy = false;
  expect(154, "Server address string missing.");
  fresh.SetServer("s");
  expect(156, "From email address missing.");
  fresh.SetFromEmail("ann");
  expect(157, "Invalid From email address.");
  fresh.SetFromEmail("ann@a.bb");
  expect(158, "To email address missing.");
  fresh.SetToEmail("bob");
  expect(159, "Invalid To email address.");
  fresh.SetToEmail("bob@b.cc");
  expect(160, "Text of email is missing.");
  EXPECT_EQ(0, Net().Opened);
}

TEST_F(Session, FailuresOfTheSystemCarryItsNumberWithoutABlank) {
  Net().OpenFails = true;
  EXPECT_EQ(161, MUC_.ConnectAndSend(error_));
  EXPECT_EQ("Winsock error - Failed to create socket. Error number:111", error_);
  Net().OpenFails = false;
  Net().ConnectFails = true;
  EXPECT_EQ(163, MUC_.ConnectAndSend(error_));
  EXPECT_EQ("Winsock error - Failed to connect to server. Error number:111", error_);
  EXPECT_EQ(QStringList({"open", "open", "resolve", "connect", "close"}), Net().Calls);
  Net().ConnectFails = false;
  Net().NoticesFail = true;
  EXPECT_EQ(164, MUC_.ConnectAndSend(error_));
  EXPECT_EQ("Winsock err - Failure with WSAAsyncSelect. Error number:111", error_);
  EXPECT_FALSE(Net().IsOpen());
  EXPECT_EQ(0, complete_.size());
}

// The number is asked for when the socket has been closed.
TEST_F(Session, TheNumberIsTheSystemsLastErrorAfterTheSocketWasClosed) {
  Net().ConnectFails = true;
  Net().CloseError = 5;
  EXPECT_EQ(163, MUC_.ConnectAndSend(error_));
  EXPECT_EQ("Winsock error - Failed to connect to server. Error number:5", error_);
  Net().ConnectFails = false;
  Net().NoticesFail = true;
  EXPECT_EQ(164, MUC_.ConnectAndSend(error_));
  EXPECT_EQ("Winsock err - Failure with WSAAsyncSelect. Error number:5", error_);
  // There is no socket to close.
  Net().OpenFails = true;
  EXPECT_EQ(161, MUC_.ConnectAndSend(error_));
  EXPECT_EQ("Winsock error - Failed to create socket. Error number:111", error_);
}

TEST_F(Session, AFailedCheckEndsTheTalkThatIsUnderWay) {
  struct Check {
    int number;
    std::function<void()> fail;
  };
  const Check checks[] = {
      {152, [this] { test_.platform.network.Online = false; }},
      {153, [this] { test_.platform.network.Proxy = true; }},
      {154, [this] { MUC_.SetServer(""); }},
      {156, [this] { MUC_.SetFromEmail(""); }},
      {157, [this] { MUC_.SetFromEmail("ann"); }},
      {158, [this] { MUC_.SetToEmail(""); }},
      {159, [this] { MUC_.SetToEmail("bob"); }},
      {160, [this] { MUC_.PrepareEmail("", ""); }},
  };
  for (const Check& check : checks) {
    test_.platform.network.Online = true;
    test_.platform.network.Proxy = false;
    MUC_.SetServer("mail.example.org");
    MUC_.SetFromEmail("ann@example.org");
    MUC_.SetToEmail("bob@example.net");
    MUC_.PrepareEmail("x", "");
    Begin(2);
    ASSERT_TRUE(Net().IsOpen());
    check.fail();
    EXPECT_EQ(check.number, MUC_.ConnectAndSend(error_));
    EXPECT_FALSE(Net().IsOpen()) << check.number;
    EXPECT_EQ(QStringList({"stop", "close"}), Net().Calls.last(2)) << check.number;
  }
  EXPECT_EQ(0, complete_.size());
}

TEST_F(Session, WithTheLibraryUnreadyNothingIsTouched) {
  Begin(2);
  MailUC other(test_.platform.services);
  const QStringList before = Net().Calls;
  EXPECT_EQ(0, other.ConnectAndSend(error_));
  EXPECT_EQ(before, Net().Calls);
  EXPECT_TRUE(Net().IsOpen());
}

TEST_F(Session, AServerThatIsNotFoundIsToldWithoutANumber) {
  Net().ResolveFails = true;
  EXPECT_EQ(162, MUC_.ConnectAndSend(error_));
  EXPECT_EQ("Failed to resolve server IP address.", error_);
  EXPECT_FALSE(Net().IsOpen());
}

TEST_F(Session, TheMessageIsAvailableBeforeThereIsASocket) {
  EXPECT_FALSE(MUC_.EmailAvailable());
  EXPECT_EQ("", MUC_.EmailFileText());
  Net().OpenFails = true;
  MUC_.ConnectAndSend(error_);
  EXPECT_TRUE(MUC_.EmailAvailable());
  EXPECT_TRUE(MUC_.EmailFileText().startsWith("FROM: <ann@example.org>\r\n"));
  MUC_.PrepareEmail("another", "");
  EXPECT_FALSE(MUC_.EmailAvailable());
  EXPECT_EQ("", MUC_.EmailFileText());
}

TEST(SessionStart, EveryFailureOfTheLibraryHasItsCodeAndText) {
  struct Row {
    int winsock, code;
    const char* text;
  };
  const Row rows[] = {{0, 100, "untouched"},
                      {10091, 1, "System not ready for network communication."},
                      {10092, 2, "Winsock version 1.1 not supported."},
                      {10036, 3, "A blocking winsock is already in use."},
                      {10067, 4, "The limit on number of winsock tasks has been reached."},
                      {10014, 5, "Error with parameter of WSAStartup call."},
                      {10093, 0, "untouched"}};
  for (const Row& row : rows) {
    TestProgram test;
    test.platform.sockets.StartUpResult = row.winsock;
    MailUC MUC(test.platform.services);
    QString error = "untouched";
    EXPECT_EQ(row.code, MUC.StartUp(error)) << row.winsock;
    EXPECT_EQ(QString(row.text), error) << row.winsock;
    QString again = "untouched";
    const int result = MUC.ConnectAndSend(again);
    if (row.code == 100) continue;
    EXPECT_EQ(row.code == 0 ? 0 : 146 + row.code, result);
    EXPECT_EQ(row.code == 0 ? QString() : QString(row.text), again);
  }
}

TEST_F(Session, TheLibraryIsReadiedOnceAndLetGoOnce) {
  QString error;
  EXPECT_EQ(100, MUC_.StartUp(error));
  EXPECT_EQ(1, Net().StartUps);
  MUC_.CloseDown();
  MUC_.CloseDown();
  EXPECT_EQ(1, Net().CleanUps);
  EXPECT_EQ(0, MUC_.ConnectAndSend(error));
  EXPECT_EQ(100, MUC_.StartUp(error));
  EXPECT_EQ(2, Net().StartUps);
}

TEST_F(Session, TheControlEndsWhatIsUnderWayWhenItGoes) {
  {
    MailUC other(test_.platform.services);
    QString error;
    other.StartUp(error);
    other.SetServer("s");
    other.SetFromEmail("a@b.cc");
    other.SetToEmail("a@b.cc");
    other.PrepareEmail("x", "");
    ASSERT_EQ(100, other.ConnectAndSend(error));
  }
  EXPECT_FALSE(Net().IsOpen());
  EXPECT_EQ(1, Net().CleanUps);
}

TEST_F(Session, ThePortIs25) {
  Connect();
  EXPECT_EQ(25, Net().Port);
  EXPECT_EQ("mail.example.org", Net().ResolvedName);
}

TEST_F(Session, BlanksAroundWhatIsToldAreTrimmed) {
  MUC_.SetServer(" mail.example.org  ");
  MUC_.SetFromEmail(" ann@example.org ");
  MUC_.SetToEmail("  bob@example.net ");
  MUC_.SetFromName(" Ann L. ");
  MUC_.SetToName(" Bob ");
  MUC_.SetSubject("  Hello  you ");
  MUC_.SetUserName(" ann9 ");
  MUC_.SetPassword(" secret ");
  Begin();
  EXPECT_EQ("mail.example.org", Net().ResolvedName);
  EXPECT_EQ("EHLO ann9\r\n", On("220 a"));
  EXPECT_EQ("AUTH PLAIN\r\n", On("250 AUTH PLAIN"));
  EXPECT_EQ("YW5uOQBhbm45AHNlY3JldA==\r\n", On("334 "));
  EXPECT_EQ("MAIL FROM: <ann@example.org>\r\n", On("235 b"));
  EXPECT_EQ("RCPT TO: <bob@example.net>\r\n", On("250 c"));
  On("250 d");
  EXPECT_TRUE(On("354 e").startsWith(
      "From: Ann L. <ann@example.org>\r\nTo: Bob <bob@example.net>\r\nSubject: Hello  you\r\nDate: "));
}

TEST_F(Session, AGoodConnectIsToldOnce) {
  QSignalSpy connected(&MUC_, &MailUC::OnConnect);
  Connect();
  EXPECT_EQ(1, connected.size());
  EXPECT_EQ("", Net().Sent);
}

TEST_F(Session, CloseDownKeepsUserAndPasswordAndNoMessage) {
  MUC_.SetUserName("ann9");
  MUC_.SetPassword("secret");
  Begin(1);
  MUC_.CloseDown();
  EXPECT_FALSE(Net().IsOpen());
  EXPECT_FALSE(MUC_.EmailAvailable());
  QString error;
  MUC_.StartUp(error);
  EXPECT_EQ(160, MUC_.ConnectAndSend(error));
  MUC_.PrepareEmail("x", "");
  Begin();
  EXPECT_EQ("EHLO ann9\r\n", On("220 a"));
  EXPECT_EQ("AUTH PLAIN\r\n", On("250 AUTH PLAIN"));
  EXPECT_EQ("YW5uOQBhbm45AHNlY3JldA==\r\n", On("334 "));
}

}  // namespace
