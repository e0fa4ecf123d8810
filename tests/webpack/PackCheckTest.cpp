#include "PackCheck.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include "ModPackage.h"
#include "TestPlatform.h"

namespace {

class PackCheck : public ::testing::Test {
 protected:
  PackCheck() {
    Put("wgcard.html", "<html><body>one<img src=\"cat.gif\" ></body></html>");
    Put("Page2.html", "<html><body>two</body></html>");
    Put("cat.gif", QByteArray(100000, 'c'));
    Put("notes.txt", "");
  }
  void Put(const QString& name, const QByteArray& bytes) { EXPECT_TRUE(PutFile(test_.WorkFile(name), bytes)); }
  QString Pack() const { return test_.Path("desktop/pack.exe"); }
  void Build() {
    qint32 size = 0;
    ASSERT_EQ(PackResult::Made, CreateWebPack(test_.program, test_.Path("desktop"), "pack.exe", size));
  }
  std::string Check() const { return CheckPack(Pack(), test_.program.project.WorkPath()).toStdString(); }

  TestProgram test_;
};

TEST_F(PackCheck, AGoodPackHasNothingToTell) {
  Put("a:b*c.txt", "changed on the way");
  Put(QString::fromUtf8("\xC3\xA4 \xE7\x8C\xAB.txt"), "x");
  Build();
  EXPECT_EQ("", Check());
}

TEST_F(PackCheck, APackBesideItsPagesIsNotMissingInItself) {
  qint32 size = 0;
  const QString work = test_.program.project.WorkPath();
  ASSERT_EQ(PackResult::Made, CreateWebPack(test_.program, work, "pack.exe", size));
  EXPECT_EQ("", CheckPack(test_.WorkFile("pack.exe"), work).toStdString());
}

// Where the pack is opened names that differ only in case are one.
TEST_F(PackCheck, ALinkInAnotherCaseLeadsToItsPage) {
  Put("Page2.html", "<html><body><a href=\"PAGE3.html\">three</a></body></html>");
  Put("Page3.html", "<html><body><a href=\"page1.html\">none</a></body></html>");
  Put("wgcard.html", "<html><body><a href=\"page2.HTML\">two</a></body></html>");
  Build();
  EXPECT_EQ("page1.html", Check());
}

TEST_F(PackCheck, AFileThatIsOtherThanHereIsTold) {
  Build();
  Put("cat.gif", QByteArray(100000, 'd'));
  EXPECT_EQ("cat.gif", Check());
  Put("cat.gif", QByteArray(100001, 'c'));
  EXPECT_EQ("cat.gif", Check());
  Put("cat.gif", QByteArray(100000, 'c'));
  EXPECT_EQ("", Check());
  Put("new.txt", "x");
  EXPECT_EQ("new.txt", Check());
  ASSERT_TRUE(QFile::remove(test_.WorkFile("new.txt")));
  ASSERT_TRUE(QFile::remove(test_.WorkFile("notes.txt")));
  EXPECT_EQ("notes.txt", Check());
}

TEST_F(PackCheck, APackThatOpensNothingIsTold) {
  Build();
  QByteArray bytes = FileBytes(Pack());
  for (const qsizetype at : {qsizetype(0x13000 + 60), bytes.size() - 10}) {
    QByteArray damaged = bytes;
    damaged[at] = char(damaged[at] ^ 0x55);
    ASSERT_TRUE(PutFile(Pack(), damaged));
    EXPECT_NE("", Check()) << at;
  }
  ASSERT_TRUE(PutFile(Pack(), bytes.left(bytes.size() - 1)));
  EXPECT_EQ("pack.exe", Check());
  ASSERT_TRUE(QFile::remove(Pack()));
  EXPECT_EQ("pack.exe", Check());
}

TEST_F(PackCheck, TwinsInCaseAreOneFileThere) {
  Put("Cat.txt", "one");
  Put("cat.txt", "two");
  Build();
  EXPECT_EQ("cat.txt", Check());
}

// Page 10 gets a link to a page that nobody has, which is how packs are made.
TEST_F(PackCheck, ThePackOfAProjectOfTenPagesIsWhole) {
  for (int page = 2; page <= 10; ++page) Put(Project::PageName(page), "<html><body>p</body></html>");
  Build();
  EXPECT_TRUE(FileBytes(test_.WorkFile("Page10.html")).contains("Page1.html"));
  EXPECT_EQ("", Check());
}

TEST_F(PackCheck, ALinkToAPageThatIsntThereIsTold) {
  Put("Page2.html", "<html><body><a class=x href=\"Page7.html\">on</a></body></html>");
  Build();
  EXPECT_EQ("Page7.html", Check());
}

TEST_F(PackCheck, AProjectWithoutPageOneIsTold) {
  ASSERT_TRUE(QFile::remove(test_.WorkFile("wgcard.html")));
  Build();
  EXPECT_EQ("wgcard.html", Check());
}

}  // namespace
