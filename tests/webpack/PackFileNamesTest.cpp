#include <gtest/gtest.h>

#include "ModPackage.h"

namespace {

TEST(ReadyPackFileNames, AddTheEndingWhereItIsMissing) {
  EXPECT_EQ("Greeting.exe", ReadyPackFileNames("", "Greeting").MakeName);
  EXPECT_EQ("card.EXE", ReadyPackFileNames("", "card.EXE").MakeName);
  EXPECT_EQ("Greeting.exe", ReadyPackFileNames("", "").MakeName);
  EXPECT_EQ("exe.exe", ReadyPackFileNames("", "exe").MakeName);
}

// Meant in ReadyPackFileNames: a blank behind ".exe" makes it another ending, and a second ".exe" is added.
TEST(ReadyPackFileNames, ABlankAtTheEndMakesItAnotherEnding) {
  EXPECT_EQ("a.exe .exe", ReadyPackFileNames("", "a.exe ").MakeName);
  EXPECT_EQ(" .exe", ReadyPackFileNames("", " ").MakeName);
}

TEST(ReadyPackFileNames, OneSeparatorAtTheEndGoes) {
  EXPECT_EQ("C:", ReadyPackFileNames("C:\\", "a").MakePath);
  EXPECT_EQ("/out", ReadyPackFileNames("/out/", "a").MakePath);
  EXPECT_EQ("/out/", ReadyPackFileNames("/out//", "a").MakePath);
  EXPECT_EQ(" /out ", ReadyPackFileNames(" /out ", "a").MakePath);
}

}  // namespace
