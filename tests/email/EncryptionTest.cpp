// What is typed as a server, and the talk with one that is to be encrypted: never a word in clear that it doesn't need.
#include "MailServer.h"
#include "SessionFixture.h"

namespace {

TEST(MailServerName, ABareHostIsInClearOnThePortOfMail) {
  for (const char* const host : {"mail.example.org", "10.0.0.5", "localhost", "255.255.255.255", "smtps", "a b", "x/y"})
    EXPECT_EQ(MailServer({host, 25, Encryption::None}), ReadMailServer(host, 25)) << host;
}

TEST(MailServerName, APortIsTakenInClearButThatOfEncryptedMail) {
  EXPECT_EQ(MailServer({"mail.example.org", 587, Encryption::None}), ReadMailServer("mail.example.org:587", 25));
  EXPECT_EQ(MailServer({"10.0.0.5", 65535, Encryption::None}), ReadMailServer("10.0.0.5:65535", 25));
  EXPECT_EQ(MailServer({"h", 1, Encryption::None}), ReadMailServer("h:1", 25));
  EXPECT_EQ(MailServer({"h", 25, Encryption::None}), ReadMailServer("h:25", 2525));
  EXPECT_EQ(MailServer({"h", 465, Encryption::FromTheStart}), ReadMailServer("h:465", 25));
}

TEST(MailServerName, ASchemeAsksForEncryption) {
  EXPECT_EQ(MailServer({"h", 465, Encryption::FromTheStart}), ReadMailServer("smtps://h", 25));
  EXPECT_EQ(MailServer({"h", 587, Encryption::FromTheStart}), ReadMailServer("SMTPS://h:587", 25));
  EXPECT_EQ(MailServer({"h", 587, Encryption::OnRequest}), ReadMailServer("smtp+tls://h", 25));
  EXPECT_EQ(MailServer({"h", 25, Encryption::OnRequest}), ReadMailServer("Smtp+Tls://h:25", 25));
  EXPECT_EQ(MailServer({"h", 465, Encryption::OnRequest}), ReadMailServer("smtp+tls://h:465", 25));
}

TEST(MailServerName, AnythingElseWithAColonIsNone) {
  for (const char* const typed : {"h:",
                                  "h:0",
                                  "h:65536",
                                  "h:99999999999",
                                  "h:x",
                                  "h:25x",
                                  "h:-1",
                                  "h:+5",
                                  "h: 25",
                                  ":25",
                                  ":",
                                  "h:25:26",
                                  "::1",
                                  "[::1]:25",
                                  "smtp://h",
                                  "http://h",
                                  "smtps://",
                                  "smtps://:465",
                                  "smtps://h:",
                                  "smtps://h:x",
                                  "smtps:h",
                                  "smtp+tls://",
                                  "smtps://smtps://h",
                                  "smtps://h:465:1"})
    EXPECT_EQ(std::nullopt, ReadMailServer(typed, 25)) << typed;
}

using Encrypted = Session;

TEST_F(Encrypted, ABareHostIsNeverEncryptedAndTakesThePortOfMail) {
  MUC_.SetPassword("secret");
  Begin(1);
  EXPECT_EQ("AUTH LOGIN\r\n", On("250-STARTTLS\r\n250 AUTH LOGIN\r\n"));
  EXPECT_EQ(25, Net().Port);
  EXPECT_FALSE(Net().Calls.contains("tls"));
}

TEST_F(Encrypted, APortOfOnesOwnIsAskedInClear) {
  MUC_.SetServer("mail.example.org:587");
  Begin();
  EXPECT_EQ("mail.example.org", Net().ResolvedName);
  EXPECT_EQ(587, Net().Port);
  EXPECT_FALSE(Net().Calls.contains("tls"));
  EXPECT_EQ("EHLO ann\r\n", On("220 a"));
}

TEST_F(Encrypted, FromTheStartTheHandshakeComesBeforeAnyWord) {
  for (const char* const server : {"smtps://mail.example.org", "mail.example.org:465"}) {
    MUC_.SetServer(server);
    MUC_.PrepareEmail("x", "");
    Net().Calls.clear();
    Begin();
    EXPECT_EQ("mail.example.org", Net().ResolvedName);
    EXPECT_EQ(465, Net().Port);
    EXPECT_EQ("mail.example.org", Net().TlsHost);
    EXPECT_EQ(QStringList({"resolve", "connect", "notices", "tls"}), Net().Calls.mid(Net().Calls.indexOf("resolve")));
    Net().Secure();
    EXPECT_EQ("", Net().Sent);
    EXPECT_EQ("EHLO ann\r\n", On("220 a"));
    EXPECT_EQ("MAIL FROM: <ann@example.org>\r\n", On("250 b"));
    On("250 c");
    On("250 d");
    // The id names the host, whatever stands around it.
    EXPECT_TRUE(On("354 e").contains("@mail.example.org>\r\nMIME-Version"));
  }
}

TEST_F(Encrypted, AConnectionThatCannotBeIsToldWithItsReasonAndNothingIsSent) {
  MUC_.SetServer("smtps://mail.example.org");
  Begin();
  Net().RefuseTls("the certificate has expired");
  ExpectFailure("The connection can't be encrypted, so nothing was sent: the certificate has expired");
  EXPECT_EQ("", Net().Sent);
  EXPECT_TRUE(MUC_.EmailAvailable()) << "a copy can be saved";
}

TEST_F(Encrypted, ANameThatIsNoneIsToldAsUnknownAndNobodyIsAsked) {
  for (const char* const server : {"smtps://h:x", "h:", "smtp://h"}) {
    MUC_.SetServer(server);
    Net().ResolvedName.clear();
    MUC_.PrepareEmail("x", "");
    EXPECT_EQ(162, Connect()) << server;
    EXPECT_EQ("", Net().ResolvedName);
    EXPECT_EQ("Failed to resolve server IP address.", error_);
  }
}

class OnRequest : public Session {
 protected:
  OnRequest() {
    MUC_.SetServer("smtp+tls://mail.example.org");
    MUC_.SetPassword("secret");
  }
};

TEST_F(OnRequest, TheTalkBeginsAnewBehindTheHandshake) {
  Begin(1);
  EXPECT_EQ(587, Net().Port);
  EXPECT_EQ("STARTTLS\r\n", On("250-a\r\n250-AUTH PLAIN\r\n250 STARTTLS\r\n"));
  EXPECT_EQ("", On("220 go\r\n"));
  EXPECT_EQ("mail.example.org", Net().TlsHost);
  Net().Sent.clear();
  Net().Secure();
  EXPECT_EQ("EHLO ann\r\n", Net().Sent);
  // What was offered in clear counts for nothing.
  EXPECT_EQ("AUTH LOGIN\r\n", On("250-a\r\n250 AUTH LOGIN\r\n"));
  EXPECT_EQ("YW5u\r\n", On("334 VXNlcm5hbWU6"));
  EXPECT_EQ("c2VjcmV0\r\n", On("334 UGFzc3dvcmQ6"));
  EXPECT_EQ("MAIL FROM: <ann@example.org>\r\n", On("235 go"));
}

TEST_F(OnRequest, WhatIsPutInBehindTheAnswerIsThrownAway) {
  Begin(1);
  On("250 STARTTLS\r\n");
  EXPECT_EQ("", On("220 go\r\n250 AUTH LOGIN\r\n334 VXNlcm5hbWU6\r\n"));
  Net().Sent.clear();
  Net().Secure();
  EXPECT_EQ("EHLO ann\r\n", Net().Sent);
  EXPECT_EQ("AUTH PLAIN\r\n", On("250 AUTH PLAIN\r\n"));
}

TEST_F(OnRequest, WithoutTheOfferNothingMoreIsSaid) {
  Begin(1);
  EXPECT_EQ("", On("250-a\r\n250 AUTH LOGIN\r\n"));
  ExpectFailure("The server offers no encryption (STARTTLS), so nothing was sent.");
}

TEST_F(OnRequest, ARefusalEndsItWithTheServersWords) {
  Begin(1);
  On("250 STARTTLS\r\n");
  EXPECT_EQ("", On("454 not now\r\n"));
  ExpectFailure("454 not now\r\n");
  Begin(1);
  complete_.clear();
  EXPECT_EQ("", On("500 no such command\r\n"));
  ExpectFailure("500 no such command\r\n");
}

TEST_F(OnRequest, AHandshakeThatFailsIsNeverFollowedByClearText) {
  Begin(1);
  On("250 STARTTLS\r\n");
  On("220 go\r\n");
  Net().Sent.clear();
  Net().RefuseTls("self-signed");
  ExpectFailure("The connection can't be encrypted, so nothing was sent: self-signed");
  EXPECT_EQ("", Net().Sent);
}

TEST_F(OnRequest, WordsInClearDuringTheHandshakeDoNothing) {
  Begin(1);
  On("250 STARTTLS\r\n");
  On("220 go\r\n");
  for (const char* const reply : {"220 a\r\n", "250 b\r\n", "250 AUTH LOGIN\r\n", "334 VXNlcm5hbWU6\r\n", "354 go\r\n"})
    EXPECT_EQ("", On(reply)) << reply;
  EXPECT_TRUE(complete_.isEmpty());
}

// The offer may stand in a later piece, which would be missed where each piece is a reply.
TEST_F(OnRequest, TheOfferMayComeInPieces) {
  Begin(1);
  for (const char* const piece : {"25", "0-mail.example.org\r\n250-SIZE\r\n", "250-START", "TLS\r\n", "250 HEL"})
    EXPECT_EQ("", On(piece)) << piece;
  EXPECT_EQ("STARTTLS\r\n", On("P\r\n"));
}

TEST_F(OnRequest, EachSendAsksAnew) {
  for (int round = 0; round < 2; ++round) {
    MUC_.PrepareEmail("x", "");
    Begin(1);
    EXPECT_EQ("STARTTLS\r\n", On("250 STARTTLS\r\n"));
  }
  MUC_.SetServer("mail.example.org");
  MUC_.PrepareEmail("x", "");
  Begin(1);
  EXPECT_EQ("MAIL FROM: <ann@example.org>\r\n", On("250 STARTTLS\r\n"));
}

}  // namespace
