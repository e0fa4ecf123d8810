#include "ModFileOps.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <csignal>

#include "PathRules.h"
#include "TestPlatform.h"

namespace {

class FileOps : public ::testing::Test {
 protected:
  QString Path(const QString& name) const { return test_.Path(name); }
  void Put(const QString& name, const QByteArray& bytes = "x") { ASSERT_TRUE(PutFile(Path(name), bytes)); }
  int Attributes(const QString& name) { return test_.platform.attributes.Get(Path(name)).value_or(-1); }
  void Mark(const QString& name, int attributes) { ASSERT_TRUE(test_.platform.attributes.Set(Path(name), attributes)); }
  // A name under which the same file can be seen later.
  void Link(const QString& name, const QString& second) {
    ASSERT_EQ(0, ::link(qPrintable(Path(name)), qPrintable(Path(second))));
  }
  ino_t Node(const QString& name) const {
    struct stat status{};
    EXPECT_EQ(0, ::stat(qPrintable(Path(name)), &status));
    return status.st_ino;
  }
  // A file that is there and that nobody can open.
  void PutSocket(const QString& name) {
    const int handle = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, qPrintable(Path(name)), sizeof(address.sun_path));
    ASSERT_EQ(0, ::bind(handle, reinterpret_cast<sockaddr*>(&address), sizeof(address)));
    ::close(handle);
  }
  QStringList Names(const QString& folder) const {
    return QDir(Path(folder)).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
  }

  TestProgram test_;
  ModFileOps& files_ = test_.program.Files;
};

constexpr int kMarked = AttributeReadOnly | AttributeHidden;

TEST_F(FileOps, FileExistsForFilesOnly) {
  Put("a.txt");
  EXPECT_TRUE(files_.FileExists(Path("a.txt")));
  EXPECT_FALSE(files_.FileExists(Path("desktop")));
  EXPECT_FALSE(files_.FileExists(Path("none.txt")));
  EXPECT_FALSE(files_.FileExists(QString()));
}

TEST_F(FileOps, FolderExistsForFoldersOnly) {
  Put("a.txt");
  EXPECT_TRUE(files_.FolderExists(Path("desktop")));
  EXPECT_TRUE(files_.FolderExists(Path("desktop/")));
  EXPECT_FALSE(files_.FolderExists(Path("a.txt")));
  EXPECT_FALSE(files_.FolderExists(Path("none")));
  EXPECT_FALSE(files_.FolderExists(QString()));
}

// Meant in ModFileOps::FileSize: asking for a file's size leaves its attributes cleared.
TEST_F(FileOps, FileSizeLeavesTheAttributesCleared) {
  Put("a.txt", "12345");
  Mark("a.txt", kMarked);
  ASSERT_EQ(kMarked, Attributes("a.txt"));
  EXPECT_EQ(5, files_.FileSize(Path("a.txt")));
  EXPECT_EQ(AttributeNormal, Attributes("a.txt"));
}

TEST_F(FileOps, FileSizeOfAnythingElseIsNothing) {
  EXPECT_EQ(0, files_.FileSize(Path("none.txt")));
  EXPECT_EQ(0, files_.FileSize(Path("desktop")));
}

TEST_F(FileOps, FileSizeBeyond32BitsIsNothing) {
  Put("big.bin");
  ASSERT_TRUE(QFile::resize(Path("big.bin"), 0x7FFFFFFF));
  EXPECT_EQ(0x7FFFFFFF, files_.FileSize(Path("big.bin")));
  ASSERT_TRUE(QFile::resize(Path("big.bin"), 0x80000000LL));
  EXPECT_EQ(0, files_.FileSize(Path("big.bin")));
}

// Meant in FileNameOf: a path without a separator gives "", not the path.
TEST(FileNameOf, APathWithoutSeparatorGivesNothing) {
  EXPECT_EQ("", FileNameOf("name.txt"));
  EXPECT_EQ("", FileNameOf(""));
}

TEST(FileNameOf, TakesBothSeparators) {
  EXPECT_EQ("c.gif", FileNameOf("/a/b/c.gif"));
  EXPECT_EQ("c.gif", FileNameOf("C:\\a\\c.gif"));
  EXPECT_EQ("c.gif", FileNameOf("C:/a\\c.gif"));
  EXPECT_EQ("c.gif", FileNameOf("C:\\a/c.gif"));
  EXPECT_EQ("", FileNameOf("/a/b/"));
}

TEST(PictureFileName, AnAccentIsOneCharacterWithItsLetter) {
  EXPECT_EQ(QString::fromUtf8("caf\u00E9.gif"), PictureFileName(QString::fromUtf8("/x/cafe\u0301.gif")));
}

TEST(PictureFileName, BlanksBecomeUnderscores) {
  EXPECT_EQ("my__dog.gif", PictureFileName("/my pictures/my  dog.gif"));
  EXPECT_EQ("", PictureFileName("my dog.gif"));
}

TEST(CutAtNul, TakesTheTextBeforeTheFirstNul) {
  EXPECT_EQ("ab", CutAtNul(QString(QStringLiteral("ab") + QChar(0) + 'c' + QChar(0))));
  EXPECT_EQ("abc", CutAtNul("abc"));
  EXPECT_EQ("", CutAtNul(QString(QChar(0))));
}

TEST_F(FileOps, EnsureFolderMakesOneLevelOnly) {
  files_.EnsureFolder(Path("one"));
  EXPECT_TRUE(QDir(Path("one")).exists());
  files_.EnsureFolder(Path("two/three"));
  EXPECT_FALSE(QDir(Path("two")).exists());
  Put("one/a.txt");
  files_.EnsureFolder(Path("one"));
  EXPECT_EQ("x", FileBytes(Path("one/a.txt")));
}

TEST_F(FileOps, DeleteFileIfAnyTakesMarkedFilesAndLeavesFolders) {
  Put("a.txt");
  Mark("a.txt", kMarked);
  files_.DeleteFileIfAny(Path("a.txt"));
  EXPECT_FALSE(QFile::exists(Path("a.txt")));
  EXPECT_FALSE(QFile::exists(Path(".hidden")));
  files_.DeleteFileIfAny(Path("desktop"));
  EXPECT_TRUE(QDir(Path("desktop")).exists());
  files_.DeleteFileIfAny(Path("none.txt"));
}

TEST_F(FileOps, WriteTextFileDeletesTheOldFileBeforeItOpensTheNewOne) {
  Put("page.html", "old page");
  Link("page.html", "second name");
  files_.WriteTextFile(Path("page.html"), "new");
  EXPECT_EQ("new", FileBytes(Path("page.html")));
  EXPECT_EQ("old page", FileBytes(Path("second name")));
}

// Meant in ModFileOps::WriteTextFile: the old file goes before the new one is opened, so a write that fails loses the
// page.
TEST_F(FileOps, AFailingWriteLosesThePage) {
  Put("page.html", "old page");
  rlimit before{};
  ASSERT_EQ(0, ::getrlimit(RLIMIT_FSIZE, &before));
  const auto handlerBefore = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit nothing{0, before.rlim_max};
  ASSERT_EQ(0, ::setrlimit(RLIMIT_FSIZE, &nothing));
  files_.WriteTextFile(Path("page.html"), QByteArray(100000, 'n'));
  ASSERT_EQ(0, ::setrlimit(RLIMIT_FSIZE, &before));
  std::signal(SIGXFSZ, handlerBefore);
  EXPECT_EQ(0, QFileInfo(Path("page.html")).size());
}

TEST_F(FileOps, WriteTextFileIntoAMissingFolderDoesNothing) {
  files_.WriteTextFile(Path("none/page.html"), "new");
  EXPECT_FALSE(QFileInfo::exists(Path("none")));
}

TEST_F(FileOps, WriteTextFileReplacesAMarkedFile) {
  Put("page.html", "old");
  Mark("page.html", kMarked);
  files_.WriteTextFile(Path("page.html"), "new");
  EXPECT_EQ("new", FileBytes(Path("page.html")));
  EXPECT_EQ(AttributeNormal, Attributes("page.html"));
}

TEST_F(FileOps, TextIsCarriedByteForByte) {
  QByteArray all;
  for (int byte = 0; byte < 256; ++byte) all.append(char(byte));
  all += "\r\n\n\r";
  files_.WriteTextFile(Path("page.html"), all);
  int code = -1;
  EXPECT_EQ(all, files_.ReadTextFile(Path("page.html"), code));
  EXPECT_EQ(0, code);
  EXPECT_EQ(all, FileBytes(Path("page.html")));
}

TEST_F(FileOps, ReadTextFilePutsTheAttributesBack) {
  Put("page.html", "text");
  for (const int marks : {0, int{AttributeReadOnly}, int{AttributeHidden}, kMarked}) {
    Mark("page.html", marks);
    int code = -1;
    EXPECT_EQ("text", files_.ReadTextFile(Path("page.html"), code));
    EXPECT_EQ(0, code);
    EXPECT_EQ(marks, Attributes("page.html"));
  }
}

// Meant in ModFileOps::ReadTextFile: there is no code 2.
TEST_F(FileOps, ReadTextFileHasCodesZeroOneAndThree) {
  int code = -1;
  EXPECT_EQ("", files_.ReadTextFile(Path("none.html"), code));
  EXPECT_EQ(1, code);
  EXPECT_EQ("", files_.ReadTextFile(Path("desktop"), code));
  EXPECT_EQ(1, code);
  PutSocket("closed");  // nor is that a file: a reader could wait in its like for ever
  EXPECT_EQ("", files_.ReadTextFile(Path("closed"), code));
  EXPECT_EQ(1, code);
  Put("empty.html", "");
  EXPECT_EQ("", files_.ReadTextFile(Path("empty.html"), code));
  EXPECT_EQ(0, code);
  // It can be opened, and its first byte can't be read.
  const QString file = "/proc/self/mem";
  if (!QFile::exists(file)) GTEST_SKIP() << "no file here that opens and can't be read";
  EXPECT_EQ("", files_.ReadTextFile(file, code));
  EXPECT_EQ(3, code);
}

// Meant in ModFileOps::CopyFileOver: the source's attributes stay cleared behind a copy.
TEST_F(FileOps, CopyFileOverLeavesTheSourceCleared) {
  Put("a.gif", "picture");
  Put("b.gif", "a longer old one");
  Mark("a.gif", kMarked);
  Mark("b.gif", kMarked);
  files_.CopyFileOver(Path("a.gif"), Path("b.gif"));
  EXPECT_EQ("picture", FileBytes(Path("a.gif")));
  EXPECT_EQ("picture", FileBytes(Path("b.gif")));
  EXPECT_EQ(AttributeNormal, Attributes("a.gif"));
  EXPECT_EQ(AttributeNormal, Attributes("b.gif"));
}

TEST_F(FileOps, CopyFileOverOfAMissingSourceLeavesTheTarget) {
  Put("b.gif", "old");
  files_.CopyFileOver(Path("none.gif"), Path("b.gif"));
  EXPECT_EQ("old", FileBytes(Path("b.gif")));
  files_.CopyFileOver(Path("desktop"), Path("b.gif"));
  EXPECT_EQ("old", FileBytes(Path("b.gif")));
}

// Meant in ModFileOps::CopyFileOver: the target goes first, so a file that is copied over itself is lost.
TEST_F(FileOps, CopyFileOverItselfLosesTheFile) {
  Put("a.gif", "picture");
  files_.CopyFileOver(Path("a.gif"), Path("a.gif"));
  EXPECT_FALSE(QFile::exists(Path("a.gif")));
}

TEST_F(FileOps, CopyFileOverCarriesEveryByte) {
  QByteArray large;
  for (int at = 0; at < 300000; ++at) large.append(char((at * 2654435761U) >> 24));
  Put("a.jpg", large);
  files_.CopyFileOver(Path("a.jpg"), Path("b.jpg"));
  EXPECT_EQ(large, FileBytes(Path("b.jpg")));
}

TEST_F(FileOps, MoveFileOverIsACopyAndADeleteAndNoRename) {
  Put("a.gif", "picture");
  Put("b.gif", "old");
  Link("a.gif", "second name");
  files_.MoveFileOver(Path("a.gif"), Path("b.gif"));
  EXPECT_FALSE(QFile::exists(Path("a.gif")));
  EXPECT_EQ("picture", FileBytes(Path("b.gif")));
  EXPECT_NE(Node("second name"), Node("b.gif"));
}

// Meant in ModFileOps::MoveFileOver: a move is a copy and a delete, never a rename, and the source goes even when the
// copy failed.
TEST_F(FileOps, MoveFileOverLosesTheFileWhenTheCopyFails) {
  Put("a.gif", "picture");
  files_.MoveFileOver(Path("a.gif"), Path("none/b.gif"));
  EXPECT_FALSE(QFile::exists(Path("a.gif")));
}

// Meant in ModFileOps::CopyFolderFiles: a folder is copied without its subfolders.
TEST_F(FileOps, CopyFolderFilesTakesNoSubfolders) {
  Put("from/wgcard.html", "page");
  Put("from/.dot", "dot");
  Put("from/cat.gif", "cat");
  Put("from/sub/dog.gif", "dog");
  EXPECT_EQ(0, files_.CopyFolderFiles(Path("from"), Path("to")));
  EXPECT_EQ(QStringList({".dot", "cat.gif", "wgcard.html"}), Names("to"));
  EXPECT_EQ("cat", FileBytes(Path("to/cat.gif")));
}

// Meant in ModFileOps::CopyFolderFiles: a target folder that is there already is left alone.
TEST_F(FileOps, CopyFolderFilesDoesNothingWhenTheTargetIsThere) {
  Put("from/a.gif");
  Put("to/b.gif");
  EXPECT_EQ(1, files_.CopyFolderFiles(Path("from"), Path("to")));
  EXPECT_EQ(QStringList({"b.gif"}), Names("to"));
  // The target is looked at before the source.
  EXPECT_EQ(1, files_.CopyFolderFiles(Path("none"), Path("to")));
}

TEST_F(FileOps, CopyFolderFilesHasCodesZeroToThree) {
  Put("from/a.gif");
  EXPECT_EQ(2, files_.CopyFolderFiles(Path("none"), Path("to")));
  EXPECT_FALSE(QDir(Path("to")).exists());
  EXPECT_EQ(2, files_.CopyFolderFiles(Path("from/a.gif"), Path("to")));
  EXPECT_EQ(3, files_.CopyFolderFiles(Path("from"), Path("none/to")));
  EXPECT_EQ(0, files_.CopyFolderFiles(Path("from"), Path("to")));
  ASSERT_TRUE(QDir().mkdir(Path("empty")));
  EXPECT_EQ(0, files_.CopyFolderFiles(Path("empty"), Path("to empty")));
  EXPECT_TRUE(QDir(Path("to empty")).exists());
}

TEST_F(FileOps, RemoveTreeEmptiesMarkedAndNestedFolders) {
  Put("tree/a/b/c/d/deep.txt");
  Put("tree/a/read-only.txt");
  Put("tree/hidden.txt");
  Put("tree/.dot/x.txt");
  Mark("tree/a/read-only.txt", AttributeReadOnly);
  Mark("tree/hidden.txt", AttributeHidden);
  ASSERT_EQ(0, ::chmod(qPrintable(Path("tree/a/b")), 0));
  PutSocket("tree/closed");
  ASSERT_TRUE(QFile::link(Path("none"), Path("tree/loose link")));
  files_.RemoveTree(Path("tree"));
  EXPECT_FALSE(QFileInfo::exists(Path("tree")));
}

TEST_F(FileOps, RemoveTreeTakesATrailingSeparator) {
  Put("one/a.txt");
  files_.RemoveTree(Path("one/"));
  EXPECT_FALSE(QFileInfo::exists(Path("one")));
  Put("two/a.txt");
  files_.RemoveTree(Path("two\\"));
  EXPECT_FALSE(QFileInfo::exists(Path("two")));
}

TEST_F(FileOps, RemoveTreeOfAFileDoesNothing) {
  Put("a.txt");
  files_.RemoveTree(Path("a.txt"));
  EXPECT_EQ("x", FileBytes(Path("a.txt")));
  files_.RemoveTree(Path("none"));
}

TEST_F(FileOps, RemoveTreeMakesAppPathTheCurrentFolder) {
  Put("tree/a.txt");
  const QString before = QDir::currentPath();
  ASSERT_TRUE(QDir::setCurrent(Path("tree")));
  files_.RemoveTree(Path("tree"));
  const QString after = QDir::currentPath();
  QDir::setCurrent(before);
  EXPECT_FALSE(QFileInfo::exists(Path("tree")));
  EXPECT_EQ(QFileInfo(test_.program.AppPath).canonicalFilePath(), after);
}

TEST_F(FileOps, RemoveTreeRemovesALinkAndNotWhatItLeadsTo) {
  Put("outside/keep.txt");
  Mark("outside/keep.txt", kMarked);
  Put("tree/a.txt");
  ASSERT_TRUE(QFile::link(Path("outside"), Path("tree/folder link")));
  ASSERT_TRUE(QFile::link(Path("outside/keep.txt"), Path("tree/file link")));
  files_.RemoveTree(Path("tree"));
  EXPECT_FALSE(QFileInfo::exists(Path("tree")));
  EXPECT_EQ("x", FileBytes(Path("outside/keep.txt")));
  EXPECT_EQ(kMarked, Attributes("outside/keep.txt"));

  ASSERT_TRUE(QFile::link(Path("outside"), Path("top link")));
  files_.RemoveTree(Path("top link"));
  EXPECT_FALSE(QFileInfo(Path("top link")).isSymLink());
  EXPECT_EQ("x", FileBytes(Path("outside/keep.txt")));
}

TEST_F(FileOps, RemoveTreeRefusesAppPathAndTheFoldersAbove) {
  Put("app/blank.html");
  for (const QString& path : {Path("app"), Path("app/"), Path("app/card/.."), Path("app/card/../..")}) {
    files_.RemoveTree(path);
    EXPECT_EQ("x", FileBytes(Path("app/blank.html"))) << qPrintable(path);
  }
  files_.RemoveTree(Path("app/card"));
  EXPECT_FALSE(QFileInfo::exists(Path("app/card")));
  // A folder whose name only begins like AppPath is not above it.
  Put("ap/a.txt");
  files_.RemoveTree(Path("ap"));
  EXPECT_FALSE(QFileInfo::exists(Path("ap")));
}

// Meant in ModFileOps::RemoveTree: the first file that can't be deleted ends the removal without a word.
TEST_F(FileOps, RemoveTreeEndsAtAFileThatCannotBeDeleted) {
  const QString folder = "/proc/self/fdinfo";
  if (!QDir(folder).exists()) GTEST_SKIP() << "no folder here whose files nobody can delete";
  files_.RemoveTree(folder);
  EXPECT_TRUE(QDir(folder).exists());
}

TEST_F(FileOps, ListFilesTakesHiddenFilesAndNoFolders) {
  Put("f/b.txt");
  Put("f/.dot");
  Put("f/A.html");
  Put("f/none");
  Put("f/sub/c.txt");
  Put("f/a*b.txt");
  QString list = "old";
  EXPECT_EQ(4, files_.ListFiles(Path("f"), "", list));
  EXPECT_EQ(".dot*A.html*b.txt*none", list);
}

TEST_F(FileOps, ListFilesTakesTheExtensionInAnyCase) {
  Put("f/X.HTML");
  Put("f/a.html");
  Put("f/b.htm");
  Put("f/html");
  Put("f/c.html.txt");
  QString list;
  EXPECT_EQ(2, files_.ListFiles(Path("f"), "html", list));
  EXPECT_EQ("a.html*X.HTML", list);
}

TEST_F(FileOps, ListFilesSortsByCapitals) {
  for (const char* name : {"wgcard.html", "Page2.html", "Page10.html", "page3.html", "_x.html"}) {
    Put(QString("f/") + name);
  }
  QString list;
  EXPECT_EQ(5, files_.ListFiles(Path("f"), "", list));
  EXPECT_EQ("Page10.html*Page2.html*page3.html*wgcard.html*_x.html", list);
}

TEST_F(FileOps, OfNamesThatDifferInCaseAloneTheCapitalsComeFirst) {
  for (const char* name : {"ab.html", "AB.html", "aB.html", "Ab.html", "aa.html", "b.html"}) Put(QString("f/") + name);
  QString list;
  EXPECT_EQ(6, files_.ListFiles(Path("f"), "", list));
  EXPECT_EQ("aa.html*AB.html*Ab.html*aB.html*ab.html*b.html", list);
}

TEST_F(FileOps, ListFilesOfNothing) {
  ASSERT_TRUE(QDir().mkdir(Path("empty")));
  for (const QString& folder : {Path("empty"), Path("none"), QString()}) {
    QString list = "old";
    EXPECT_EQ(0, files_.ListFiles(folder, "", list));
    EXPECT_EQ("", list);
  }
}

// Meant in ModFileOps::ListFolders: the folder that is handed in comes back changed.
TEST_F(FileOps, ListFoldersChangesItsFolder) {
  Put("f/b/x.txt");
  Put("f/A/x.txt");
  Put("f/file.txt");
  QString folder = Path("f");
  int count = -1;
  EXPECT_EQ(QStringList({"A", "b"}), files_.ListFolders(folder, count));
  EXPECT_EQ(2, count);
  EXPECT_EQ(PathRules::Join(Path("f"), "*.*"), folder);

  folder = Path("f/");
  EXPECT_EQ(QStringList({"A", "b"}), files_.ListFolders(folder, count));
  EXPECT_EQ(Path("f/") + "*.*", folder);
}

// Meant in ModFileOps::ListFolders: folders whose name begins with a dot are passed over.
TEST_F(FileOps, ListFoldersPassesOverNamesThatBeginWithADot) {
  Put("f/.git/x.txt");
  Put("f/plain/x.txt");
  QString folder = Path("f");
  int count = -1;
  EXPECT_EQ(QStringList({"plain"}), files_.ListFolders(folder, count));
  EXPECT_EQ(1, count);
}

TEST_F(FileOps, ListFoldersOfNoFolderLeavesItsArgument) {
  QString folder = Path("none");
  int count = -1;
  EXPECT_EQ(QStringList(), files_.ListFolders(folder, count));
  EXPECT_EQ(0, count);
  EXPECT_EQ(Path("none"), folder);
}

TEST(PathRules, BothSeparatorsCount) {
  EXPECT_EQ(4, PathRules::LastSeparator("C:/a\\b"));
  EXPECT_EQ(-1, PathRules::LastSeparator("name"));
  EXPECT_EQ("C:", PathRules::DropTrailingSeparator("C:\\"));
  EXPECT_EQ("a/", PathRules::DropTrailingSeparator("a//"));
  EXPECT_EQ("", PathRules::DropTrailingSeparator(""));
  EXPECT_EQ(QString("a") + QDir::separator() + "b", PathRules::Join("a", "b"));
}

}  // namespace
