#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSignalSpy>

#include "CheckIconFile.h"
#include "ModPackage.h"
#include "OrdinaryUser.h"
#include "PackedFiles.h"
#include "Resource.h"
#include "Settings.h"
#include "TestPlatform.h"

namespace {

const char kPage[] = "<HTML><BODY>text</BODY></HTML>";

QByteArray Link(int page, const QByteArray& text = "Next Page") {
  return "<BR CLEAR=\"all\"><BR><DIV ALIGN=\"center\"><FONT FACE=\"arial,helvetica\" SIZE=3><A HREF=\"Page" +
         QByteArray::number(page) + ".html\">" + text + "</A></FONT></DIV><BR><BR>";
}

QByteArray LinkedPage(int page) {
  return "<HTML><BODY>text" + Link(page) + "</BODY></HTML>";
}

QByteArray GoodIcon() {
  QByteArray icon = QByteArray::fromHex("0000010001002020100001000400e802000016000000");
  for (int at = 0; at < 744; ++at) icon.append(char(at * 7));
  return icon;
}

QStringList ArchiveNames(const QString& pack) {
  QStringList names;
  for (const PackedFile& file : FilesInPack(pack)) names.append(file.name);
  return names;
}

class Package : public ::testing::Test {
 protected:
  void Put(const QString& name, const QByteArray& bytes = "x") { ASSERT_TRUE(PutFile(test_.WorkFile(name), bytes)); }
  QByteArray Page(const QString& name) const { return FileBytes(test_.WorkFile(name)); }
  bool IsThere(const QString& name) const { return QFile::exists(test_.WorkFile(name)); }
  int Create(const QString& name = "pack.exe") {
    size_ = -1;
    return int(CreateWebPack(test_.program, test_.Path("desktop"), name, size_));
  }
  QString Target() const { return test_.Path("desktop/pack.exe"); }
  void AssignIcon(const QByteArray& bytes) {
    test_.program.CurIconName = "Custom";
    Settings::Save(test_.platform.settings, Settings::CustomIcon, "mine.ico");
    ASSERT_TRUE(PutFile(test_.Path("app/icons/mine.ico"), bytes));
  }

  TestProgram test_;
  qint32 size_ = -1;
};

TEST_F(Package, NextPageLinkStandsBeforeTheFirstBodyEnd) {
  EXPECT_EQ("<body>a" + Link(3) + "</body>b</BODY>",
            AddNextPageLink(test_.program, "card/Page2.html", "<body>a</body>b</BODY>", 3));
}

TEST_F(Package, TheLastPageGetsNoLink) {
  EXPECT_EQ(kPage, AddNextPageLink(test_.program, "card/wgcard.html", kPage, 1));
  EXPECT_EQ(kPage, AddNextPageLink(test_.program, "card/Page2.html", kPage, 2));
}

// Meant in PageNumberOf: a page's number is the one character before ".html", so page 12 counts as 2 and links to page
// 3.
TEST_F(Package, Page12LinksToPage3) {
  EXPECT_EQ(LinkedPage(3), AddNextPageLink(test_.program, "card/Page12.html", kPage, 12));
  EXPECT_EQ(LinkedPage(1), AddNextPageLink(test_.program, "card/Page10.html", kPage, 12));
}

// Meant in PageNumberOf: any name that ends in "d.html" counts as page 1.
TEST_F(Package, AnyNameThatEndsInDHtmlCountsAsPage1) {
  EXPECT_EQ(LinkedPage(2), AddNextPageLink(test_.program, "card/old.html", kPage, 2));
  EXPECT_EQ(LinkedPage(2), AddNextPageLink(test_.program, "d.html", kPage, 2));
  EXPECT_EQ(kPage, AddNextPageLink(test_.program, "card/WGCARD.HTML", kPage, 2));
  EXPECT_EQ(kPage, AddNextPageLink(test_.program, "card/notes.html", kPage, 2));
  EXPECT_EQ(kPage, AddNextPageLink(test_.program, "html", kPage, 2));
}

TEST_F(Package, ALinkWithThisTextIsNotAddedAgain) {
  const QByteArray linked = LinkedPage(2);
  EXPECT_EQ(linked, AddNextPageLink(test_.program, "card/wgcard.html", linked, 3));
  test_.program.LinkTextValue = "next PAGE";
  EXPECT_EQ(linked, AddNextPageLink(test_.program, "card/wgcard.html", linked, 3));
  test_.program.LinkTextValue = "Go on";
  EXPECT_EQ("<HTML><BODY>text" + Link(2) + Link(2, "Go on") + "</BODY></HTML>",
            AddNextPageLink(test_.program, "card/wgcard.html", linked, 3));
}

TEST_F(Package, ALinkTextBeyondAsciiIsWrittenAndFoundAsReferences) {
  test_.program.LinkTextValue = QString::fromUtf8("P\u00E1gina \u732B");
  const QByteArray linked = AddNextPageLink(test_.program, "card/wgcard.html", kPage, 2);
  EXPECT_EQ("<HTML><BODY>text" + Link(2, "P&#225;gina &#29483;") + "</BODY></HTML>", linked);
  EXPECT_EQ(linked, AddNextPageLink(test_.program, "card/wgcard.html", linked, 2));
  // However the page writes it.
  const QByteArray typed = QString::fromUtf8("<BODY><A>P\u00E1gina &#x732B;</A></BODY>").toUtf8();
  EXPECT_EQ(typed, AddNextPageLink(test_.program, "card/wgcard.html", typed, 2));
}

TEST_F(Package, ALinkTextWithReferencesIsFoundAgain) {
  for (const char* text : {"Next&nbsp;Page", "Next &#187;", "Next &#xBB;", "more &amp; more", "a &lt; b"}) {
    test_.program.LinkTextValue = text;
    const QByteArray linked = AddNextPageLink(test_.program, "card/wgcard.html", kPage, 2);
    EXPECT_NE(kPage, linked) << text;
    EXPECT_EQ(linked, AddNextPageLink(test_.program, "card/wgcard.html", linked, 2)) << text;
  }
}

TEST_F(Package, OnePageGetsNoLinkAnywhere) {
  Put("wgcard.html", kPage);
  PreparePackPages(test_.program);
  EXPECT_EQ(kPage, Page("wgcard.html"));
}

TEST_F(Package, OfTwoPagesTheFirstGetsALink) {
  Put("wgcard.html", kPage);
  Put("Page2.html", kPage);
  PreparePackPages(test_.program);
  EXPECT_EQ(LinkedPage(2), Page("wgcard.html"));
  EXPECT_EQ(kPage, Page("Page2.html"));
}

TEST_F(Package, ASecondBuildChangesNothingInThePages) {
  Put("wgcard.html", "<BODY><IMG SRC=\"p/a.gif\" ></BODY>");
  Put("Page2.html", kPage);
  Put("a.gif");
  PreparePackPages(test_.program);
  const QByteArray first = Page("wgcard.html");
  EXPECT_EQ("<BODY><IMG SRC=\"a.gif\" >" + Link(2) + "</BODY>", first);
  PreparePackPages(test_.program);
  EXPECT_EQ(first, Page("wgcard.html"));
  EXPECT_EQ(kPage, Page("Page2.html"));
}

// Meant in PreparePackPages: making a web-pack takes the unused pictures out of the project, for good where there is no
// trash.
TEST_F(Package, UnusedPicturesAreDeletedAndOtherFilesStay) {
  Put("wgcard.html", "<BODY><IMG SRC=\"x/used.gif\" ></BODY>");
  const QStringList unused = {"a.gif", "b.JPG", "c.png", "d.jpeg", "jpeg"};
  const QStringList kept = {"used.gif", "tune.wav", "e.bmp", "old.htm", "f.gif.txt", ".gi"};
  for (const QString& name : unused + kept) Put(name);
  PreparePackPages(test_.program);
  for (const QString& name : unused) EXPECT_FALSE(IsThere(name)) << qPrintable(name);
  for (const QString& name : kept) EXPECT_TRUE(IsThere(name)) << qPrintable(name);
}

TEST_F(Package, UnusedPicturesGoToTheTrashWhereThereIsOne) {
  test_.platform.shell.HasTrash = true;
  Put("wgcard.html", "<BODY><IMG SRC=\"x/used.gif\" ></BODY>");
  for (const char* const name : {"used.gif", "a.gif", "tune.wav"}) Put(name);
  PreparePackPages(test_.program);
  EXPECT_EQ(QStringList{test_.WorkFile("a.gif")}, test_.platform.shell.Trashed);
}

// Meant in PreparePage: a picture whose name differs from the page's in case alone is unused, and is deleted.
TEST_F(Package, APictureThatDiffersOnlyInCaseFromItsReferenceIsDeleted) {
  Put("wgcard.html", "<BODY><IMG SRC=\"a.gif\" ></BODY>");
  Put("A.GIF");
  PreparePackPages(test_.program);
  EXPECT_FALSE(IsThere("A.GIF"));
}

// Meant in PreparePage: a picture with "&" in its name is unused, and is deleted.
TEST_F(Package, APictureWithAnAmpersandNeverMatchesItsReference) {
  Put("wgcard.html", "<body><img src=\"a&amp;b.gif\" /></body>");
  Put("a&b.gif");
  PreparePackPages(test_.program);
  EXPECT_FALSE(IsThere("a&b.gif"));
  EXPECT_EQ("<body><img src=\"a&amp;b.gif\" /></body>", Page("wgcard.html"));
}

TEST_F(Package, APictureNamedInAnyScriptIsFound) {
  const QString utf8Name = QString::fromUtf8("\u732B.gif");
  const QString westernName = QString::fromUtf8("\u00E9\u20AC.gif");
  Put("wgcard.html", "<BODY><IMG SRC=\"\xE7\x8C\xAB.gif\" ><IMG SRC=\"\xE9\x80.gif\" ></BODY>");
  Put(utf8Name);
  Put(westernName);
  PreparePackPages(test_.program);
  EXPECT_TRUE(IsThere(utf8Name));
  EXPECT_TRUE(IsThere(westernName));
}

TEST_F(Package, WithoutAPagePicturesAreLeftAlone) {
  Put("a.gif");
  Put("index.htm", kPage);
  PreparePackPages(test_.program);
  EXPECT_TRUE(IsThere("a.gif"));
  EXPECT_EQ(kPage, Page("index.htm"));
}

TEST_F(Package, APageWithoutABodyEndIsStrippedAndGetsNoLink) {
  Put("wgcard.html", "<BODY><IMG SRC=\"file:///x/a.gif\" >");
  Put("Page2.html", kPage);
  Put("a.gif");
  PreparePackPages(test_.program);
  EXPECT_EQ("<BODY><IMG SRC=\"a.gif\" >", Page("wgcard.html"));
  EXPECT_TRUE(IsThere("a.gif"));
}

TEST_F(Package, AnEmptyPageIsSkippedButCounts) {
  Put("wgcard.html", kPage);
  Put("Page2.html", "");
  PreparePackPages(test_.program);
  EXPECT_EQ(LinkedPage(2), Page("wgcard.html"));
  EXPECT_EQ("", Page("Page2.html"));
}

// A file of someone else's that lies in the project gives the last page a link to a page that isn't there.
TEST_F(Package, AStrayHtmlFileCountsAsAPage) {
  Put("wgcard.html", kPage);
  Put("notes.html", kPage);
  PreparePackPages(test_.program);
  EXPECT_EQ(LinkedPage(2), Page("wgcard.html"));
  EXPECT_EQ(kPage, Page("notes.html"));
}

TEST_F(Package, AFileWhoseNameEndsInHtmlWithoutADotIsAPage) {
  Put("wgcard.html", kPage);
  Put("xhtml", "<BODY><IMG SRC=\"far/a.gif\" ></BODY>");
  Put("a.gif");
  PreparePackPages(test_.program);
  EXPECT_EQ(LinkedPage(2), Page("wgcard.html"));
  EXPECT_EQ("<BODY><IMG SRC=\"a.gif\" ></BODY>", Page("xhtml"));
  EXPECT_TRUE(IsThere("a.gif"));
  // One that ends in three letters is none, and its pictures go.
  Put("notes.htm", "<BODY><IMG SRC=\"b.gif\"></BODY>");
  Put("b.gif");
  PreparePackPages(test_.program);
  EXPECT_FALSE(IsThere("b.gif"));
}

TEST_F(Package, AReadOnlyPageIsRewritten) {
  Put("wgcard.html", kPage);
  Put("Page2.html", kPage);
  ASSERT_TRUE(test_.platform.attributes.Set(test_.WorkFile("wgcard.html"), AttributeReadOnly));
  PreparePackPages(test_.program);
  EXPECT_EQ(LinkedPage(2), Page("wgcard.html"));
}

TEST_F(Package, ForeignBytesOfAPageAreRewrittenAsTheyAre) {
  static const char kBytes[] = "<BODY>\xE9\x80\0\r\n\x01\xC3\xA9</BODY>\r";
  const QByteArray page(kBytes, sizeof(kBytes) - 1);
  Put("wgcard.html", page);
  PreparePackPages(test_.program);
  EXPECT_EQ(page, Page("wgcard.html"));
}

TEST_F(Package, AWebPackIsTheFivePiecesAndTheArchive) {
  Put("wgcard.html", kPage);
  Put("tune.wav", "tune");
  ASSERT_EQ(0, Create());
  const QByteArray pack = FileBytes(Target());
  EXPECT_EQ(size_, pack.size());
  EXPECT_EQ(Resource("STUB1") + Resource("STUB2") + Resource("WP") + Resource("STUB4") + Resource("STUB5"),
            pack.left(0x13000));
  EXPECT_EQ("PK\x03\x04", pack.mid(0x13000, 4));
  EXPECT_EQ(QStringList({"tune.wav", "wgcard.html"}), ArchiveNames(Target()));
  EXPECT_FALSE(IsThere("card.zip"));
}

TEST_F(Package, DeletedPicturesAreNotInTheArchive) {
  Put("wgcard.html", kPage);
  Put("unused.jpeg");
  Put("unused.bmp");
  ASSERT_EQ(0, Create());
  EXPECT_EQ(QStringList({"unused.bmp", "wgcard.html"}), ArchiveNames(Target()));
}

TEST_F(Package, WindowMessagesRunOnceForEachFileAndOnceBeforeThePiecesAreJoined) {
  Put("wgcard.html", kPage);
  Put("a.wav");
  const QSignalSpy passes(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake);
  QList<int> atTarget;
  test_.platform.attributes.BeforeSet = [&](const QString& path) {
    if (path == test_.WorkFile("card.zip")) atTarget += int(passes.size());
  };
  ASSERT_EQ(0, Create());
  EXPECT_EQ(3, passes.size());
  // The archive is looked at behind the last one.
  ASSERT_FALSE(atTarget.isEmpty());
  EXPECT_EQ(3, atTarget.first());
}

TEST_F(Package, TheFolderMayEndInASeparator) {
  Put("wgcard.html", kPage);
  for (const char* folder : {"desktop", "desktop/"}) {
    qint32 size = 0;
    EXPECT_EQ(PackResult::Made, CreateWebPack(test_.program, test_.Path(folder), "pack.exe", size));
    EXPECT_TRUE(QFile::remove(Target()));
  }
}

TEST_F(Package, AnOldTargetIsReplacedAlsoWhenItIsReadOnly) {
  Put("wgcard.html", kPage);
  ASSERT_TRUE(PutFile(Target(), QByteArray(500000, 'o')));
  ASSERT_TRUE(test_.platform.attributes.Set(Target(), AttributeReadOnly));
  ASSERT_EQ(0, Create());
  EXPECT_EQ(size_, QFileInfo(Target()).size());
}

TEST_F(Package, AnEmptyFolderGives5) {
  EXPECT_EQ(5, Create());
  EXPECT_FALSE(QFile::exists(Target()));
  test_.program.project.SavedAs("none", test_.Path("none"));
  EXPECT_EQ(5, Create());
}

TEST_F(Package, AnOpenFileGives7) {
  Put("wgcard.html", kPage);
  Put("playing.wav");
  test_.platform.access.RefusedNames = {"playing.wav"};
  EXPECT_EQ(7, Create());
  EXPECT_FALSE(QFile::exists(Target()));
}

TEST(PackageOfAnOrdinaryUser, AFileThatMayNotBeReadGives7) {
  const OrdinaryUser user;
  if (!user.IsBound()) GTEST_SKIP() << "root can't become anybody else here";
  TestProgram test;
  ASSERT_TRUE(PutFile(test.WorkFile("wgcard.html"), kPage));
  ASSERT_TRUE(PutFile(test.WorkFile("playing.wav"), "x"));
  ASSERT_EQ(0, ::chmod(qPrintable(test.WorkFile("playing.wav")), 0));
  qint32 size = -1;
  EXPECT_EQ(PackResult::FileInUse, CreateWebPack(test.program, test.Path("desktop"), "pack.exe", size));
  EXPECT_FALSE(QFile::exists(test.Path("desktop/pack.exe")));
  ASSERT_EQ(0, ::chmod(qPrintable(test.WorkFile("playing.wav")), 0600));
  EXPECT_EQ(PackResult::Made, CreateWebPack(test.program, test.Path("desktop"), "pack.exe", size));
}

// Found in time by the check of all files, but for this one the answer changes in between.
TEST_F(Package, AFileThatGoesWhileTheOthersArePackedGives7) {
  Put("wgcard.html", kPage);
  Put("a.wav", QByteArray(100000, 'a'));
  Put("z.wav");
  // The message pass of the first file lets others work.
  QMetaObject::invokeMethod(
      qApp, [this] { EXPECT_TRUE(QFile::remove(test_.WorkFile("z.wav"))); }, Qt::QueuedConnection);
  EXPECT_EQ(7, Create());
  EXPECT_FALSE(IsThere("z.wav"));
  EXPECT_FALSE(IsThere("card.zip"));
  EXPECT_FALSE(QFile::exists(Target()));
}

TEST_F(Package, AnArchiveThatCannotBeMadeGives2) {
  Put("wgcard.html", kPage);
  ASSERT_TRUE(QDir().mkdir(test_.WorkFile("card.zip")));
  EXPECT_EQ(2, Create());
}

TEST_F(Package, AnUnknownIconGives3) {
  Put("wgcard.html", kPage);
  for (const char* name : {"", "CUSTOM", "custom", "NONE", "STUB9"}) {
    test_.program.CurIconName = name;
    EXPECT_EQ(3, Create()) << name;
    EXPECT_EQ(0, size_);
    EXPECT_FALSE(QFile::exists(Target())) << name;
  }
}

TEST_F(Package, ATargetThatCannotBeWrittenGives3) {
  Put("wgcard.html", kPage);
  EXPECT_EQ(3, Create("none/pack.exe"));
  EXPECT_EQ(0, size_);
}

TEST_F(Package, ACustomIconThatCannotBeUsedGives6) {
  Put("wgcard.html", kPage);
  test_.program.CurIconName = "Custom";
  EXPECT_EQ(6, Create());
  AssignIcon(GoodIcon().chopped(1));
  EXPECT_EQ(6, Create());
  AssignIcon(GoodIcon());
  EXPECT_EQ(0, Create());
}

TEST_F(Package, ACustomIconDiffersOnlyInItsPlace) {
  Put("wgcard.html", kPage);
  AssignIcon(GoodIcon());
  ASSERT_EQ(0, Create());
  const QByteArray pack = FileBytes(Target());
  EXPECT_EQ(Resource("STUB1") + Resource("STUB2"), pack.left(0x124B0));
  EXPECT_EQ(GoodIcon().mid(22), pack.mid(0x124B0, 744));
  EXPECT_EQ(Resource("STUB4") + Resource("STUB5"), pack.mid(0x12798, 0x868));
}

TEST_F(Package, AssembleWithoutAnArchiveGives1) {
  qint32 size = -1;
  ASSERT_TRUE(PutFile(Target(), "old"));
  EXPECT_EQ(AssemblyResult::NoArchive, AssembleWebPack(test_.program, Target(), size));
  EXPECT_EQ("old", FileBytes(Target()));
}

TEST_F(Package, AnArchiveBeyondTheLargestSizeGives3AndNoFile) {
  QFile archive(test_.WorkFile("card.zip"));
  ASSERT_TRUE(archive.open(QIODevice::WriteOnly) && archive.resize((qint64(1) << 31) - 77824));
  EXPECT_EQ(AssemblyResult::Failed, AssembleWebPack(test_.program, Target(), size_));
  EXPECT_EQ(0, size_);
  EXPECT_FALSE(QFile::exists(Target()));
}

TEST_F(Package, TheArchivesAttributesAreClearedBeforeItIsRead) {
  Put("card.zip", "archive");
  ASSERT_TRUE(test_.platform.attributes.Set(test_.WorkFile("card.zip"), AttributeReadOnly | AttributeHidden));
  qint32 size = -1;
  ASSERT_EQ(AssemblyResult::Good, AssembleWebPack(test_.program, Target(), size));
  EXPECT_EQ(0x13000 + 7, size);
  EXPECT_EQ(AttributeNormal, test_.platform.attributes.Get(test_.WorkFile("card.zip")));
}

// Meant in CreateWebPack: the archive stays behind when the build fails, and the next build deletes it.
TEST_F(Package, CardZipStaysAfterEveryFailedBuild) {
  Put("wgcard.html", kPage);
  Put("playing.wav");
  const auto isArchiveOfThisBuild = [this] {
    const QByteArray archive = Page("card.zip");
    return archive.startsWith("PK") && archive.contains("wgcard.html");
  };
  test_.program.CurIconName = "NONE";
  ASSERT_EQ(3, Create());
  EXPECT_TRUE(isArchiveOfThisBuild());
  ASSERT_TRUE(QFile::remove(test_.WorkFile("card.zip")));
  test_.program.CurIconName = "WP";
  ASSERT_EQ(3, Create("none/pack.exe"));
  EXPECT_TRUE(isArchiveOfThisBuild());
  ASSERT_TRUE(QFile::remove(test_.WorkFile("card.zip")));
  test_.program.CurIconName = "Custom";
  ASSERT_EQ(6, Create());
  EXPECT_TRUE(isArchiveOfThisBuild());
  // The one of an earlier build stays too where no new one is made.
  test_.program.CurIconName = "WP";
  Put("card.zip", "from before");
  test_.platform.access.RefusedNames = {"playing.wav"};
  ASSERT_EQ(7, Create());
  EXPECT_EQ("from before", Page("card.zip"));
  test_.platform.access.RefusedNames.clear();
  ASSERT_TRUE(QFile::remove(test_.WorkFile("card.zip")));
  ASSERT_TRUE(PutFile(test_.WorkFile("card.zip/inside"), "x"));
  ASSERT_EQ(2, Create());
  EXPECT_EQ("x", Page("card.zip/inside"));
}

// Meant in CreateWebPack: the pages stay rewritten when the build fails.
TEST_F(Package, ThePagesStayRewrittenAfterAFailedBuild) {
  Put("wgcard.html", kPage);
  Put("Page2.html", kPage);
  Put("unused.gif");
  test_.program.CurIconName = "NONE";
  ASSERT_EQ(3, Create());
  EXPECT_EQ(LinkedPage(2), Page("wgcard.html"));
  EXPECT_FALSE(IsThere("unused.gif"));
}

TEST_F(Package, TheCustomIconImageIsWhatStandsBehindTheHead) {
  QByteArray image;
  EXPECT_FALSE(ReadCustomIconImage(test_.program, image));
  Settings::Save(test_.platform.settings, Settings::CustomIcon, "mine.ico");
  EXPECT_FALSE(ReadCustomIconImage(test_.program, image));
  AssignIcon(GoodIcon());
  ASSERT_TRUE(test_.platform.attributes.Set(test_.Path("app/icons/mine.ico"), AttributeReadOnly));
  EXPECT_TRUE(ReadCustomIconImage(test_.program, image));
  EXPECT_EQ(GoodIcon().mid(22), image);
  EXPECT_EQ(AttributeNormal, test_.platform.attributes.Get(test_.Path("app/icons/mine.ico")));
  AssignIcon(GoodIcon() + "x");
  EXPECT_FALSE(ReadCustomIconImage(test_.program, image));
}

TEST_F(Package, CheckIconFileTellsAFileThatCannotBeRead) {
  const QString path = test_.Path("a.ico");
  ASSERT_TRUE(QFile::link("/proc/self/mem", path));  // its beginning is nobody's memory
  QString message;
  EXPECT_EQ(7, CheckIconFile(test_.program.Files, path, message));
  EXPECT_EQ("Error confirming icon suitability.", message);
}

// Meant in CheckIconFile: an icon file that was looked at has its attributes cleared.
TEST_F(Package, CheckIconFileClearsTheAttributes) {
  const QString path = test_.Path("a.ico");
  ASSERT_TRUE(PutFile(path, GoodIcon()));
  ASSERT_TRUE(test_.platform.attributes.Set(path, AttributeReadOnly));
  QString message = "old";
  EXPECT_EQ(0, CheckIconFile(test_.program.Files, path, message));
  EXPECT_EQ("", message);
  EXPECT_EQ(AttributeNormal, test_.platform.attributes.Get(path));
}

TEST_F(Package, CheckIconFileTestsInItsOrder) {
  struct Row {
    int place;
    char byte;
    int code;
  };
  // Each row spoils one byte more, from the last test to the first.
  QByteArray icon = GoodIcon() + "x";
  const Row rows[] = {{14, '\0', 6}, {12, '\0', 5}, {7, 31, 4}, {6, 31, 4}, {4, 2, 3}};
  QString message;
  ASSERT_TRUE(PutFile(test_.Path("a.ico"), icon));
  EXPECT_EQ(6, CheckIconFile(test_.program.Files, test_.Path("a.ico"), message));
  EXPECT_EQ("File is the wrong size. It should be 766 bytes.", message);
  for (const Row& row : rows) {
    icon[row.place] = row.byte;
    ASSERT_TRUE(PutFile(test_.Path("a.ico"), icon));
    EXPECT_EQ(row.code, CheckIconFile(test_.program.Files, test_.Path("a.ico"), message));
  }
  ASSERT_TRUE(PutFile(test_.Path("a.png"), icon));
  EXPECT_EQ(2, CheckIconFile(test_.program.Files, test_.Path("a.png"), message));
  EXPECT_EQ("File is not an icon file:\r\n" + test_.Path("a.png"), message);
  EXPECT_EQ(1, CheckIconFile(test_.program.Files, test_.Path("b.png"), message));
  EXPECT_EQ("File does not exist:\r\n" + test_.Path("b.png"), message);
}

}  // namespace
