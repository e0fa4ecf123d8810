#include "EndRequests.h"

#include <gtest/gtest.h>

#include <csignal>

#include <QSignalSpy>

namespace {

TEST(EndRequests, TellsOfASignalInTheLoop) {
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
    const EndRequests requests;
    QSignalSpy asked(&requests, &EndRequests::Asked);
    ::raise(number);
    EXPECT_EQ(0, asked.size()) << "not in the handler";
    EXPECT_TRUE(asked.wait(5000)) << number;
    EXPECT_EQ(1, asked.size());
  }
}

TEST(EndRequests, SignalsOfSeveralKindsCanBeOneRequest) {
  const EndRequests requests;
  QSignalSpy asked(&requests, &EndRequests::Asked);
  ::raise(SIGHUP);
  ::raise(SIGTERM);
  EXPECT_TRUE(asked.wait(5000));
  EXPECT_FALSE(asked.wait(50));
  EXPECT_EQ(1, asked.size());
}

TEST(EndRequests, TheSecondOfAKindEndsTheProcess) {
  EXPECT_EXIT(
      {
        const EndRequests requests;
        ::raise(SIGTERM);
        ::raise(SIGTERM);
      },
      ::testing::KilledBySignal(SIGTERM), "");
}

TEST(EndRequests, WhatIsSwitchedOffStaysSo) {
  void (*const before)(int) = std::signal(SIGHUP, SIG_IGN);
  {
    const EndRequests requests;
    QSignalSpy asked(&requests, &EndRequests::Asked);
    ::raise(SIGHUP);
    EXPECT_FALSE(asked.wait(50));
  }
  EXPECT_EQ(SIG_IGN, std::signal(SIGHUP, before));
}

TEST(EndRequests, AfterItsEndSignalsAreAsTheyWere) {
  {
    const EndRequests requests;
  }
  EXPECT_EXIT(::raise(SIGINT), ::testing::KilledBySignal(SIGINT), "");
}

}  // namespace
