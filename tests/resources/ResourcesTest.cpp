#include <gtest/gtest.h>

#include <QByteArrayList>

#include "Resource.h"
#include "StringTable.h"

namespace {

TEST(StringTable, EveryNumberButThreeHasAText) {
  for (int number = 101; number <= 188; ++number) {
    const bool none = number == 112 || number == 139 || number == 155;
    EXPECT_EQ(none, StringText(number).isEmpty()) << number;
  }
  EXPECT_EQ("", StringText(100));
  EXPECT_EQ("", StringText(189));
  EXPECT_EQ("", StringText(0));
}

TEST(StringTable, TextsStandAsTheyAreUsed) {
  EXPECT_EQ("Must be a number greater than 10 and not 100.", StringText(101));
  EXPECT_EQ("<HTML><HEAD><TITLE></TITLE></HEAD><BODY BGCOLOR=\"#FFFFFF\" TEXT=\"#000000\"></BODY></HTML>",
            StringText(107));
  EXPECT_EQ("Selected item must be a text block or image. It cannot be a partial text selection", StringText(110));
  EXPECT_EQ("<DIV ALIGN=\"center\"><FONT FACE=\"arial,helvetica\" SIZE=3><A HREF=\"", StringText(135));
  EXPECT_EQ("A file for this theme was not found. ", StringText(141));
  EXPECT_EQ(" should be in the program samples subfolder.", StringText(142));
  EXPECT_EQ("<IMG SRC=\"hearttop.gif\" ID=\"heartpic\" WIDTH=400 HEIGHT=80 ALIGN=\"center\">", StringText(143));
  EXPECT_EQ("Winsock err - Failure with WSAAsyncSelect. Error number:", StringText(164));
  EXPECT_TRUE(StringText(170).endsWith("simple. "));
  EXPECT_TRUE(StringText(179).endsWith("click \"Cut\"."));
}

TEST(StringTable, NamedTexts) {
  EXPECT_EQ("Save changes to this page?", StringText(FixedText::SaveChangesToPage));
  EXPECT_EQ(" Email sent.", StringText(FixedText::EmailSent));
  EXPECT_EQ(" is already a saved project. The current page has been updated.", StringText(FixedText::AlreadySaved));
}

TEST(Resource, StubPiecesHaveTheirPlaces) {
  EXPECT_EQ(0x9240, Resource("STUB1").size());
  EXPECT_EQ(0x9270, Resource("STUB2").size());
  EXPECT_EQ(16, Resource("STUB4").size());
  EXPECT_EQ(0x858, Resource("STUB5").size());
}

TEST(Resource, IconImagesHave744Bytes) {
  for (const char* name : {"WP", "MAIL", "HEART", "ROCKET", "LTNING", "ROSE", "HAND", "CARD", "TRAY", "FOLDER"}) {
    EXPECT_EQ(744, Resource(name).size()) << name;
  }
}

QByteArray GroupsOfFour(const QByteArray& bytes) {
  QByteArrayList groups;
  for (qsizetype at = 0; at < bytes.size(); at += 4) groups << bytes.mid(at, 4).toHex();
  return groups.join(' ');
}

TEST(Resource, TheColorTableOfIconsHasItsOrder) {
  EXPECT_EQ(
      "00000000 00008000 00800000 00808000 80000000 80008000 80800000 c0c0c000 "
      "80808000 0000ff00 00ff0000 00ffff00 ff000000 ff00ff00 ffff0000 ffffff00",
      GroupsOfFour(Resource("ICO4TABLE")));
}

TEST(Resource, AnythingElseIsNull) {
  for (const char* name : {"", "Custom", "STUB3", "wp", "WP.img", ".", "..", "../custom/WP", "/custom/WP", "./WP"}) {
    EXPECT_TRUE(Resource(name).isNull()) << name;
  }
}

}  // namespace
