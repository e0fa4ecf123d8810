#include "EmailDefaults.h"

#include <gtest/gtest.h>

namespace {

TEST(Address, TheFirstDotBehindTheAtSignCounts) {
  EXPECT_TRUE(IsValidAddress("a.b@cc.dd"));
  EXPECT_FALSE(IsValidAddress("a.b@ccdd"));
  // A later dot would leave enough behind it, or too little.
  EXPECT_TRUE(IsValidAddress("a@b.c.d"));
  EXPECT_FALSE(IsValidAddress("a@.b.cc"));
  EXPECT_FALSE(IsValidAddress("x@y.c"));
  EXPECT_TRUE(IsValidAddress("x@y.co"));
  EXPECT_FALSE(IsValidAddress("@y.co"));
  EXPECT_FALSE(IsValidAddress(""));
}

TEST(Address, LettersThatCannotBeSentMakeItInvalid) {
  for (const char* const bad : {"\u043F\u043E\u0447\u0442\u0430@example.net", "a@\u0436.cc", "a@b.\u4E2D\u4E2D",
                                "\U0001F600@example.net", "a\u0080@b.cc", "a@b.c\u2028"})
    EXPECT_FALSE(IsValidAddress(QString::fromUtf8(bad))) << bad;
  EXPECT_TRUE(IsValidAddress(QString::fromUtf8("m\u00FCller@stra\u00DFe.\u20ACu")));
}

// Meant in RecentRecipients: a recipient who is a part of a longer one counts as known.
TEST(Recents, APartOfALongerRecipientCountsAsKnown) {
  EXPECT_EQ("bob@example.net", RecentRecipients({"bob@example.net"}, "ob@example.net"));
  EXPECT_EQ("bob@example.net", RecentRecipients({"bob@example.net"}, "BOB@example.net"));
  EXPECT_EQ("ann@b.cc*bob@example.net", RecentRecipients({"bob@example.net"}, "ann@b.cc"));
}

// Meant in RecentSenders: the new sender's text goes out of the list wherever it stands, also at the end of a longer
// address.
TEST(Recents, ASenderAtTheEndOfALongerOneDamagesIt) {
  EXPECT_EQ("nn@example.org*ax@y.zz", RecentSenders({"ann@example.org", "x@y.zz"}, "nn@example.org"));
  EXPECT_EQ("x@y.zz*a@b.cc", RecentSenders({"a@b.cc", "X@Y.ZZ"}, "x@y.zz"));
  EXPECT_EQ("x@y.zz*a@b.cc", RecentSenders({"x@y.zz", "a@b.cc", "X@Y.ZZ"}, "x@y.zz"));
}

TEST(Recents, WithNothingKnownTheOneInUseIsTheList) {
  EXPECT_EQ("a@b.cc", RecentRecipients({}, "a@b.cc"));
  EXPECT_EQ("a@b.cc", RecentSenders({}, "a@b.cc"));
  EXPECT_EQ("", RecentRecipients({}, ""));
  EXPECT_EQ("", RecentSenders({}, ""));
}

// An emptied box takes a "*" of the list with it, and never a letter.
TEST(Recents, WithNobodyInTheBoxNoLetterIsLost) {
  EXPECT_EQ("a@b.ccx@y.zz", RecentSenders({"a@b.cc", "x@y.zz"}, ""));
  EXPECT_EQ("a@b.cc*x@y.zz", RecentRecipients({"a@b.cc", "x@y.zz"}, ""));
  EXPECT_EQ("a@b.cc", RecentRecipients({"a@b.cc"}, ""));
  EXPECT_EQ("", RecentSenders({""}, ""));
}

// Meant in RecentRecipients: the new recipient comes before the first ten, so up to eleven are stored.
TEST(Recents, UpToElevenAreStored) {
  const QStringList ten = {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"};
  EXPECT_EQ("new*0*1*2*3*4*5*6*7*8*9", RecentRecipients(ten, "new"));
  EXPECT_EQ("new*0*1*2*3*4*5*6*7*8*9", RecentSenders(ten, "new"));
  const QStringList eleven = ten + QStringList{"ten"};
  EXPECT_EQ("new*0*1*2*3*4*5*6*7*8*9", RecentRecipients(eleven, "new"));
  EXPECT_EQ("new*0*1*2*3*4*5*6*7*8*9", RecentSenders(eleven, "new"));
  // The eleventh has gone before it is looked for.
  EXPECT_EQ("ten*0*1*2*3*4*5*6*7*8*9", RecentRecipients(eleven, "ten"));
  EXPECT_EQ("9*0*1*2*3*4*5*6*7*8", RecentSenders(ten, "9"));
}

TEST(Password, IsStoredAsTheCodesOfItsCharacters) {
  EXPECT_EQ("65.98.49", StoredPassword("Ab1"));
  EXPECT_EQ("Ab1", PasswordOf("65.98.49"));
  EXPECT_EQ("AB", PasswordOf("65.x.66"));
  EXPECT_EQ("A", PasswordOf("65.256.-1.99999"));
}

TEST(Password, EveryCharacterOfTheCodePageComesBack) {
  QString all;
  for (int code = 1; code < 256; ++code) all += PasswordOf(QString::number(code));
  EXPECT_EQ(255, all.size());
  EXPECT_EQ(all, PasswordOf(StoredPassword(all)));
}

}  // namespace
