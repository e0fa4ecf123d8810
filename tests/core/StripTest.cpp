#include <gtest/gtest.h>

#include "StripPicturePaths.h"
#include "TestPlatform.h"

namespace {

struct Stripped {
  QByteArray text;
  QByteArray pictures;
  bool operator==(const Stripped&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Stripped& stripped) {
  return out << stripped.text.constData() << " | " << stripped.pictures.constData();
}

Stripped Strip(const QByteArray& html) {
  Stripped stripped{QByteArray(), "untouched"};
  stripped.text = StripPicturePaths(html, stripped.pictures);
  return stripped;
}

Stripped Unchanged(const QByteArray& html) {
  return {html, ""};
}

TEST(StripPicturePaths, CutsPathsOfPicturesAndOfTheBackground) {
  EXPECT_EQ((Stripped{"<img src=\"a.gif\" /><BODY x BACKGROUND=\"b.jpg\" >", "a.gif*b.jpg"}),
            Strip("<img src=\"file:///C:/p/a.gif\" /><BODY x BACKGROUND=q/b.jpg >"));
}

TEST(StripPicturePaths, TextWithoutATagStaysAsItIs) {
  EXPECT_EQ(Unchanged("no tag"), Strip("no tag"));
  EXPECT_EQ(Unchanged("IMG SRC=\"p/a.gif\" >"), Strip("IMG SRC=\"p/a.gif\" >"));
  EXPECT_EQ(Unchanged(""), Strip(""));
}

// What stands there counts as the inside of a tag, as behind every other sign.
TEST(StripPicturePaths, TextInFrontOfTheFirstTagIsLookedAtAsOne) {
  EXPECT_EQ((Stripped{"IMG SRC=\"a.gif\" ><p>", "a.gif"}), Strip("IMG SRC=\"p/a.gif\" ><p>"));
}

// Meant in StripPiece: a picture whose name has no blank behind its value keeps its path and isn't listed.
TEST(StripPicturePaths, APieceWithoutABlankBehindTheValueStaysAndIsNotListed) {
  EXPECT_EQ(Unchanged("<IMG SRC=\"p/a.gif\"><B>x y</B>"), Strip("<IMG SRC=\"p/a.gif\"><B>x y</B>"));
  EXPECT_EQ((Stripped{"<IMG SRC=\"a.gif\"> x", "a.gif"}), Strip("<IMG SRC=\"p/a.gif\"> x"));
}

// Meant in StripPicturePaths: a "<" in an attribute before SRC hides the picture.
TEST(StripPicturePaths, ASignInAnAttributeBeforeSrcHidesThePicture) {
  EXPECT_EQ(Unchanged("<IMG ALT=\"a<b\" SRC=\"p/a.gif\" >"), Strip("<IMG ALT=\"a<b\" SRC=\"p/a.gif\" >"));
}

TEST(StripPicturePaths, BackgroundCountsInBodyOnly) {
  EXPECT_EQ(Unchanged("<TABLE BACKGROUND=\"p/a.gif\" >"), Strip("<TABLE BACKGROUND=\"p/a.gif\" >"));
  EXPECT_EQ(Unchanged("<BODY SRC=\"p/a.gif\" >"), Strip("<BODY SRC=\"p/a.gif\" >"));
}

// Meant in StripPicturePaths: a picture that a page shows twice stands twice in the list.
TEST(StripPicturePaths, TheSameNameStandsTwiceInTheList) {
  EXPECT_EQ("a.gif*a.gif", Strip("<IMG SRC=p/a.gif ><IMG SRC=q/a.gif >").pictures);
}

// Meant in StripPicturePaths: a list of one empty name keeps its "*".
TEST(StripPicturePaths, AListOfOneEmptyNameIsAStar) {
  EXPECT_EQ((Stripped{"<IMG SRC=\"\" >", "*"}), Strip("<IMG SRC=\"p/\" >"));
  EXPECT_EQ("*", Strip("<IMG SRC=\"p/\" ><IMG SRC= >").pictures);
}

TEST(StripPicturePaths, TheCutIsAtTheSlashOnly) {
  EXPECT_EQ("C:\\p\\a.gif", Strip("<IMG SRC=\"C:\\p\\a.gif\" >").pictures);
}

TEST(StripPicturePaths, BytesBeyondAsciiPass) {
  EXPECT_EQ((Stripped{QByteArray("\xE9<IMG SRC=\"\xE9\0.gif\" >", 20), QByteArray("\xE9\0.gif", 6)}),
            Strip(QByteArray("\xE9<IMG SRC=\"p/\xE9\0.gif\" >", 22)));
}

TEST(StripPicturePaths, OfAFileIsTheSame) {
  TestProgram test;
  ASSERT_TRUE(PutFile(test.WorkFile("wgcard.html"), "<IMG SRC=\"p/a.gif\" >"));
  QByteArray pictures;
  EXPECT_EQ("<IMG SRC=\"a.gif\" >",
            StripPicturePathsOfFile(test.program.Files, test.WorkFile("wgcard.html"), pictures));
  EXPECT_EQ("a.gif", pictures);
  // The file itself isn't changed.
  EXPECT_EQ("<IMG SRC=\"p/a.gif\" >", FileBytes(test.WorkFile("wgcard.html")));
}

TEST(StripPicturePaths, OfAMissingFileIsEmptyAndLeavesTheList) {
  TestProgram test;
  QByteArray pictures = "old";
  EXPECT_EQ("", StripPicturePathsOfFile(test.program.Files, test.WorkFile("none.html"), pictures));
  EXPECT_EQ("old", pictures);
  EXPECT_EQ("", StripPicturePathsOfFile(test.program.Files, test.program.project.WorkPath(), pictures));
  EXPECT_EQ("old", pictures);
}

}  // namespace
