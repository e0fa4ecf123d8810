// A mail session with all that it needs to be told, on a network that the test plays.
#pragma once

#include <gtest/gtest.h>

#include <QSignalSpy>

#include "MailUC.h"
#include "TestPlatform.h"

class Session : public ::testing::Test {
 protected:
  Session() {
    MUC_.SetServer("mail.example.org");
    MUC_.SetFromEmail("ann@example.org");
    MUC_.SetToEmail("bob@example.net");
    MUC_.PrepareEmail("<HTML><BODY>text</BODY></HTML>", "");
    QString error;
    MUC_.StartUp(error);
  }

  int Connect() {
    const int result = MUC_.ConnectAndSend(error_);
    Net().Sent.clear();
    return result;
  }
  // Brings the session to what is sent behind so many good replies.
  void Begin(int replies = 0) {
    EXPECT_EQ(100, Connect());
    const char* const good[] = {"220 a", "250 b", "250 c", "250 d", "354 e", "250 f"};
    for (int i = 0; i < replies; ++i) Net().Bring(good[i]);
    Net().Sent.clear();
  }
  void BeginAuth(const char* kinds) {
    MUC_.SetPassword("secret");
    Begin(1);
    Net().Bring(QByteArray("250 AUTH ") + kinds);
    Net().Sent.clear();
  }
  // What is sent on a reply.
  QByteArray On(const QByteArray& reply) {
    Net().Sent.clear();
    Net().Bring(reply);
    return Net().Sent;
  }
  void ExpectFailure(const QByteArray& text) {
    ASSERT_EQ(1, complete_.size());
    EXPECT_FALSE(complete_.first().at(0).toBool());
    EXPECT_EQ(text, complete_.first().at(1).toByteArray());
    EXPECT_FALSE(Net().IsOpen());
  }
  ScriptedSockets& Net() { return test_.platform.sockets; }

  TestProgram test_;
  MailUC MUC_{test_.platform.services};
  QSignalSpy complete_{&MUC_, &MailUC::OnSendComplete};
  QString error_;
};
