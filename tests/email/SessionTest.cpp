// The mail session's talk with a server: each state, each code, each text.
#include <functional>
#include <random>
#include <utility>

#include "RandomSeed.h"
#include "SessionFixture.h"

namespace {

// Meant in MailUC::ProcessReply: EHLO is said with the user's name in the place of the host's.
TEST_F(Session, TheGreetingBringsEhloWithTheUserNameAndNoHostName) {
  MUC_.SetUserName("ann9");
  Begin();
  EXPECT_EQ("EHLO ann9\r\n", On("220 mail.example.org ready\r\n"));
}

TEST_F(Session, WithoutAUserNameTheNamePartOfTheSenderIsIt) {
  MUC_.SetPassword("secret");
  Begin();
  EXPECT_EQ("EHLO ann\r\n", On("220 a"));
  EXPECT_EQ("AUTH LOGIN\r\n", On("250 AUTH LOGIN"));
  EXPECT_EQ("YW5u\r\n", On("334 VXNlcm5hbWU6"));
}

TEST_F(Session, AnotherGreetingEndsItWithTheBareCode) {
  Begin();
  Net().Bring("554 busy\r\n");
  ExpectFailure("554");
  EXPECT_EQ("", Net().Sent);
}

// Meant in MailUC::ProcessReply: a refused EHLO isn't followed by HELO.
TEST_F(Session, ARefusedEhloEndsItWithTheWholeTextAndNoHelo) {
  Begin(1);
  EXPECT_EQ("", On("500 unknown\r\n500 really\r\n"));
  ExpectFailure("500 unknown\r\n500 really\r\n");
}

TEST_F(Session, WithoutAuthTheSenderFollowsAtOnce) {
  Begin(1);
  EXPECT_EQ("MAIL FROM: <ann@example.org>\r\n", On("250-a\r\n250 HELP\r\n"));
}

// Meant in MailUC::AfterEhlo: a server that is named by its host alone is talked to in clear, whatever it offers.
TEST_F(Session, StartTlsIsNeverTaken) {
  Begin(1);
  EXPECT_EQ("MAIL FROM: <ann@example.org>\r\n", On("250-a\r\n250-STARTTLS\r\n250 HELP\r\n"));
}

TEST_F(Session, OfferedAuthWithoutAPasswordEndsIt) {
  Begin(1);
  EXPECT_EQ("", On("250-a\r\n250-AUTH LOGIN PLAIN\r\n250 HELP\r\n"));
  ExpectFailure("Password required.");
}

TEST_F(Session, LoginGoesBeforePlain) {
  MUC_.SetPassword("secret");
  Begin(1);
  EXPECT_EQ("AUTH LOGIN\r\n", On("250-a\r\n250-auth plain Login\r\n250 HELP\r\n"));
}

// Meant in MailUC::AfterEhlo: where a server offers AUTH without LOGIN, PLAIN is tried, whatever the offer says.
TEST_F(Session, WhateverElseIsOfferedPlainIsTaken) {
  MUC_.SetPassword("secret");
  Begin(1);
  EXPECT_EQ("AUTH PLAIN\r\n", On("250 AUTH CRAM-MD5\r\n"));
}

TEST_F(Session, LoginAnswersWhatItIsAskedFor) {
  BeginAuth("LOGIN");
  EXPECT_EQ("YW5u\r\n", On("334 VXNlcm5hbWU6\r\n"));
  EXPECT_EQ("c2VjcmV0\r\n", On("334 UGFzc3dvcmQ6\r\n"));
  EXPECT_EQ("YW5u\r\n", On("334 VXNlcm5hbWU6 and more\r\n"));
  EXPECT_EQ("", On("334 \r\n"));
  EXPECT_EQ("", On("334 not base64\r\n"));
  EXPECT_EQ("MAIL FROM: <ann@example.org>\r\n", On("235 go\r\n"));
}

TEST_F(Session, ARefusedLoginEndsItWithTheWholeText) {
  BeginAuth("LOGIN");
  EXPECT_EQ("", On("535 bad credentials\r\n"));
  ExpectFailure("535 bad credentials\r\n");
}

TEST_F(Session, PlainSendsAllInOneAndARefusalEndsItWithTheWholeText) {
  BeginAuth("PLAIN");
  EXPECT_EQ("YW5uAGFubgBzZWNyZXQ=\r\n", On("334 go\r\n"));
  EXPECT_EQ("", On("535 5.7.8 bad\r\n"));
  ExpectFailure("535 5.7.8 bad\r\n");
}

// Meant in MailUC::BuildPlainB64: a later user or password doesn't reach AUTH PLAIN before the next start.
TEST_F(Session, ThePlainTextIsBuiltOnceAndNeverAgain) {
  BeginAuth("PLAIN");
  EXPECT_EQ("YW5uAGFubgBzZWNyZXQ=\r\n", On("334 go\r\n"));
  MUC_.SetPassword("another");
  MUC_.SetUserName("eve");
  Begin();
  EXPECT_EQ("EHLO eve\r\n", On("220 a"));
  EXPECT_EQ("AUTH PLAIN\r\n", On("250 AUTH PLAIN"));
  EXPECT_EQ("YW5uAGFubgBzZWNyZXQ=\r\n", On("334 go\r\n"));
  // AUTH LOGIN has the new ones.
  Begin(1);
  EXPECT_EQ("AUTH LOGIN\r\n", On("250 AUTH LOGIN"));
  EXPECT_EQ("ZXZl\r\n", On("334 VXNlcm5hbWU6"));
  EXPECT_EQ("YW5vdGhlcg==\r\n", On("334 UGFzc3dvcmQ6"));
}

TEST_F(Session, RefusalsOfSenderRecipientAndDataAreTheBareCode) {
  for (int replies : {2, 3, 4}) {
    complete_.clear();
    MUC_.PrepareEmail("x", "");
    Begin(replies);
    EXPECT_EQ("", On("550 no such thing\r\n"));
    ExpectFailure("550");
  }
}

TEST_F(Session, BothGoodCodesCountInTheMiddle) {
  Begin(1);
  EXPECT_EQ("MAIL FROM: <ann@example.org>\r\n", On("250 b"));
  EXPECT_EQ("RCPT TO: <bob@example.net>\r\n", On("354 c"));
  EXPECT_EQ("DATA\r\n", On("354 d"));
  EXPECT_TRUE(On("250 e").endsWith("--CVN2_A_3435FE2_6617A_AA--\r\n.\r\n"));
  EXPECT_EQ("QUIT\r\n", On("250 f"));
  EXPECT_EQ("", On("221 g"));
  ASSERT_EQ(1, complete_.size());
  EXPECT_TRUE(complete_.first().at(0).toBool());
  EXPECT_EQ("", complete_.first().at(1).toByteArray());
  EXPECT_FALSE(Net().IsOpen());
}

// Meant in MailUC::ProcessReply: a message that the server refuses at its very end counts as sent.
TEST_F(Session, AMessageThatIsRefusedCountsAsSent) {
  Begin(5);
  EXPECT_EQ("QUIT\r\n", On("554 it is spam\r\n"));
  EXPECT_EQ("", On("500 what\r\n"));
  ASSERT_EQ(1, complete_.size());
  EXPECT_TRUE(complete_.first().at(0).toBool());
}

// Meant in MailUC::FinishSession: a talk that fails is closed without QUIT.
TEST_F(Session, AFailureClosesWithoutQuit) {
  Begin(3);
  EXPECT_EQ("", On("550 no"));
  ExpectFailure("550");
  EXPECT_EQ(QStringList({"open", "resolve", "connect", "notices", "stop", "close"}), Net().Calls);
}

// The end is told while the socket is still there, and only then is it closed.
TEST_F(Session, TheEndIsToldBeforeTheSocketIsClosed) {
  QList<bool> open;
  QObject::connect(&MUC_, &MailUC::OnSendComplete, [&] { open += Net().IsOpen(); });
  Begin(1);
  Net().Bring("500 no");
  EXPECT_FALSE(Net().IsOpen());
  MUC_.PrepareEmail("x", "");
  Begin(6);
  Net().Bring("221 g");
  EXPECT_FALSE(Net().IsOpen());
  EXPECT_EQ(QList<bool>({true, true}), open);
}

// Pieces.

// Meant in MailUC::ReadReply: a second piece of the same reply that begins with three digits moves the talk on by a
// step.
TEST_F(Session, ASecondPieceOfAReplyMovesOnByAStep) {
  Begin(1);
  EXPECT_EQ("MAIL FROM: <ann@example.org>\r\n", On("250-mail.example.org\r\n"));
  EXPECT_EQ("RCPT TO: <bob@example.net>\r\n", On("250-AUTH LOGIN\r\n250 OK\r\n"));
}

// Meant in MailUC::ReadReply: replies that come in one piece count as one.
TEST_F(Session, RepliesThatComeTogetherAreOne) {
  Begin();
  EXPECT_EQ("EHLO ann\r\n", On("220 a\r\n250 b\r\n250 c\r\n"));
  EXPECT_EQ("MAIL FROM: <ann@example.org>\r\n", On("250 b\r\n500 c\r\n"));
}

TEST_F(Session, WhatDoesNotBeginWithThreeDigitsIsNoReplyButIsKept) {
  MUC_.SetPassword("secret");
  Begin(1);
  for (const char* const piece : {"2", "25", "2 5", "x250 a", "-250", "AUTH LOGIN", "\xB2\xB3\xB9"})
    EXPECT_EQ("", On(piece)) << piece;
  EXPECT_EQ("AUTH LOGIN\r\n", On("250"));
}

TEST_F(Session, OfAnEndlessAnswerToEhloOnlyTheBeginningIsLookedThrough) {
  for (const bool comesEarly : {true, false}) {
    MUC_.PrepareEmail("x", "");
    Begin(1);
    if (comesEarly) Net().Bring("AUTH LOGIN");
    for (int i = 0; i < 30; ++i) Net().Bring(QByteArray(100'000, 'x'));
    if (!comesEarly) Net().Bring("AUTH LOGIN");
    EXPECT_EQ(comesEarly ? "" : "MAIL FROM: <ann@example.org>\r\n", On("250 ok"));
    EXPECT_EQ(comesEarly ? 1 : 0, complete_.size()) << "a password is asked for";
    complete_.clear();
  }
}

TEST_F(Session, TheGreetingIsForgottenBeforeAuthIsLookedFor) {
  Begin();
  EXPECT_EQ("EHLO ann\r\n", On("220 AUTH LOGIN"));
  EXPECT_EQ("MAIL FROM: <ann@example.org>\r\n", On("250 ok"));
}

TEST_F(Session, OneReadTakes1024Bytes) {
  Begin(1);
  EXPECT_EQ("", On("500 " + QByteArray(2000, 'x')));
  ExpectFailure("500 " + QByteArray(1020, 'x'));
}

TEST_F(Session, TextOf8BitsComesBackAsItCame) {
  Begin(1);
  On("500 \x80\xFF\x01 \0 x\r\n");
  ExpectFailure("500 \x80\xFF\x01 \0 x\r\n");
}

// Meant in MailUC::OnNotice: a server that closes the connection raises no event.
TEST_F(Session, APeerThatClosesOrFailsRaisesNothing) {
  for (const bool isClosed : {true, false}) {
    Begin(2);
    // The number of an earlier call says nothing about one that went well.
    Net().FailReading(ScriptedSockets::kWouldBlock);
    if (isClosed) {
      Net().Bring("");
    } else {
      Net().FailReading(ScriptedSockets::kBroken);
    }
    EXPECT_FALSE(Net().IsOpen());
    EXPECT_EQ(0, complete_.size());
  }
}

TEST_F(Session, NothingToReadAfterAllChangesNothing) {
  Begin(2);
  Net().FailReading(ScriptedSockets::kWouldBlock);
  EXPECT_TRUE(Net().IsOpen());
  EXPECT_EQ("RCPT TO: <bob@example.net>\r\n", On("250 c"));
}

// Sending.

TEST_F(Session, WhatTheSocketRefusesWaitsInItsOrder) {
  Begin();
  Net().SendTakes = {3};
  EXPECT_EQ("EHL", On("220 a"));
  EXPECT_TRUE(Net().IsWatchedForWriting());
  Net().SendTakes = {-1};
  EXPECT_EQ("", On("250 b"));
  Net().Sent.clear();
  Net().BecomeWritable();
  EXPECT_EQ("O ann\r\nMAIL FROM: <ann@example.org>\r\n", Net().Sent);
  EXPECT_FALSE(Net().IsWatchedForWriting());
}

TEST_F(Session, ReadyToWriteWithNothingToSendDoesNothing) {
  Begin(1);
  const int calls = Net().SendCalls;
  Net().BecomeWritable();
  EXPECT_EQ(calls, Net().SendCalls);
}

TEST_F(Session, AnErrorOfSendKeepsTheTextAndIsNotWaitedOn) {
  Begin(1);
  Net().SendTakes = {-2};
  EXPECT_EQ("", On("250 b"));
  EXPECT_FALSE(Net().IsWatchedForWriting());
  EXPECT_TRUE(Net().IsOpen());
  EXPECT_EQ("MAIL FROM: <ann@example.org>\r\nRCPT TO: <bob@example.net>\r\n", On("250 c"));
}

TEST_F(Session, ALargeMessageGoesInManyPiecesWhole) {
  const QByteArray page = "<BODY>" + QByteArray(300000, 'x') + "</BODY>";
  const auto sent = [&](const QList<qsizetype>& takes) {
    test_.platform.stamps.Given = 0;
    MUC_.PrepareEmail(page, "");
    Begin(4);
    Net().SendTakes = takes;
    Net().Bring("354 e");
    int rounds = 0;
    for (; Net().IsWatchedForWriting(); ++rounds) Net().BecomeWritable();
    EXPECT_EQ(takes.isEmpty(), rounds == 0);
    return Net().Sent;
  };
  const QByteArray whole = sent({});
  EXPECT_GT(whole.size(), 300000);
  EXPECT_EQ(whole, sent({1, -1, 100, 65536, -1, 7, 100000, -1, 3}));
}

// Pictures wait as pieces of their own that the message shares with its saved form.
TEST_F(Session, PicturesGoInPiecesWholeAndTheSavedFormStaysWhole) {
  QStringList paths;
  for (int i = 0; i < 20; ++i) {
    paths += test_.WorkFile(QString("p%1.gif").arg(i));
    ASSERT_TRUE(PutFile(paths.last(), QByteArray(1 + i * 997, char('a' + i))));
  }
  const auto sent = [&](const std::function<qsizetype()>& take) {
    test_.platform.stamps.Given = 0;
    MUC_.PrepareEmail("<BODY>" + QByteArray(3000, 'x') + "</BODY>", paths.join('*'));
    Begin(4);
    const QByteArray file = MUC_.EmailFileText();
    Net().SendTakes = {take()};
    Net().Bring("354 e");
    EXPECT_EQ(file, MUC_.EmailFileText());
    while (Net().IsWatchedForWriting()) {
      Net().SendTakes = {take()};
      Net().BecomeWritable();
      if (file != MUC_.EmailFileText()) ADD_FAILURE() << "the saved form changed";
    }
    const QByteArray message = Net().Sent;
    // The saved form has a head and an end of its own.
    const auto body = [](const QByteArray& form) { return form.mid(form.indexOf("Content-Type: ")); };
    EXPECT_EQ(body(message), body(file) + "\r\n.\r\n");
    return message;
  };
  const QByteArray whole = sent([] { return ScriptedSockets::kTakesAll; });
  ASSERT_EQ(20, whole.count("Content-Type: image/gif;"));
  // At each piece's end, one in front of it and one behind it.
  QList<qsizetype> ends;
  for (qsizetype at = whole.indexOf("--CVN2_A"); at >= 0; at = whole.indexOf("\r\n--CVN2_A", at + 1)) ends += at + 2;
  for (const int aside : {-1, 0, 1}) {
    qsizetype done = 0;
    auto end = ends.cbegin();
    EXPECT_EQ(whole, sent([&]() -> qsizetype {
                while (end != ends.cend() && *end + aside <= done) ++end;
                if (end == ends.cend()) return ScriptedSockets::kTakesAll;
                return *end + aside - std::exchange(done, *end + aside);
              }))
        << aside;
  }
  // Anything at all, nothing among it.
  std::mt19937 random(RandomSeed("PicturesGoInPieces"));
  EXPECT_EQ(whole, sent([&]() -> qsizetype { return random() % 7 == 0 ? -1 : qsizetype(random() % 9000); }));
}

// A slow line takes of it what it takes, and the rest stays where it is.
TEST_F(Session, APictureIsNotCopiedWhileItIsSent) {
  const QString path = test_.WorkFile("a.gif");
  ASSERT_TRUE(PutFile(path, QByteArray(100'000, 'p')));
  MUC_.PrepareEmail("x", path);
  Begin(4);
  Net().SendTakes = {-1, -1, -1};
  Net().Bring("354 e");
  // All in front of the picture, and a little of it.
  const QByteArray file = MUC_.EmailFileText();
  Net().SendTakes = {file.indexOf("Content-Type: image") + 2000};
  Net().BecomeWritable();
  Net().FirstPieces.clear();
  for (int call = 0; call < 10; ++call) {
    Net().SendTakes = {1000};
    Net().BecomeWritable();
  }
  ASSERT_EQ(10, Net().FirstPieces.size());
  EXPECT_EQ(QList<const char*>(10, Net().FirstPieces.first()), Net().FirstPieces);
}

TEST_F(Session, ANewSendDropsWhatTheOldOneCouldNotSend) {
  Begin();
  Net().SendTakes = {-1};
  On("220 a");
  MUC_.PrepareEmail("x", "");
  Begin();
  EXPECT_EQ("EHLO ann\r\n", On("220 a"));
  EXPECT_EQ(1, Net().Closed);
}

TEST_F(Session, AMailUnderWayEndsWithAPageThatCantBeSent) {
  MUC_.PrepareEmail("x", "");
  Begin(4);
  EXPECT_FALSE(MUC_.PrepareEmail("a\r\n.\r\nb", ""));
  EXPECT_EQ(1, Net().Closed);
  EXPECT_EQ("", On("354 e"));
}

// Bad input.

TEST_F(Session, LineBreaksInFieldsBringNoLineOfTheirOwnOntoTheWire) {
  for (const char* const end : {"\r\n", "\n", "\r"}) {
    const QString bad = QString("%1Bcc: evil@x.yz%1RCPT TO: <evil@x.yz>").arg(end);
    MUC_.SetFromEmail("ann@example.org" + bad);
    MUC_.SetToEmail(" bob@example.net " + bad);
    MUC_.SetFromName("Ann" + bad);
    MUC_.SetToName("Bob" + bad);
    MUC_.SetSubject("Hello" + bad);
    MUC_.SetServer("mail.example.org" + bad);
    MUC_.SetUserName("ann" + bad);
    MUC_.SetPassword("secret" + bad);
    MUC_.PrepareEmail("x", "");
    EXPECT_EQ(100, MUC_.ConnectAndSend(error_));
    EXPECT_EQ("mail.example.org", Net().ResolvedName);
    Net().Sent.clear();
    for (const char* const reply : {"220 a", "250 AUTH PLAIN", "334 ", "235 b", "250 c", "250 d", "354 e", "250 f"})
      Net().Bring(reply);
    EXPECT_FALSE(Net().Sent.contains("evil"));
    EXPECT_TRUE(
        Net().Sent.startsWith("EHLO ann\r\nAUTH PLAIN\r\nYW5uAGFubgBzZWNyZXQ=\r\nMAIL FROM: <ann@example.org>"
                              "\r\nRCPT TO: <bob@example.net>\r\nDATA\r\nFrom: Ann <ann@example.org>\r\n"
                              "To: Bob <bob@example.net>\r\nSubject: Hello\r\nDate: "));
    EXPECT_FALSE(MUC_.EmailFileText().contains("evil"));
  }
}

}  // namespace
