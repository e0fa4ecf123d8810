#include <gtest/gtest.h>
#include <zip.h>

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <functional>

#include "ModZip.h"
#include "TestPlatform.h"

namespace {

struct Entry {
  QByteArray name;
  QByteArray bytes;
  bool operator==(const Entry&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Entry& entry) {
  return out << entry.name.constData();
}

// All entries in their order; nothing for a file that is no archive.
QList<Entry> EntriesOf(const QString& path) {
  QList<Entry> entries;
  zip_t* archive = zip_open(path.toUtf8().constData(), ZIP_RDONLY | ZIP_CHECKCONS, nullptr);
  if (!archive) return entries;
  for (zip_int64_t index = 0; index < zip_get_num_entries(archive, 0); ++index) {
    zip_stat_t status;
    EXPECT_EQ(0, zip_stat_index(archive, index, 0, &status));
    EXPECT_EQ(ZIP_CM_DEFLATE, status.comp_method);
    QByteArray bytes(qsizetype(status.size), '\0');
    zip_file_t* file = zip_fopen_index(archive, index, 0);
    EXPECT_EQ(bytes.size(), zip_fread(file, bytes.data(), bytes.size()));
    zip_fclose(file);
    entries.append({QByteArray(status.name), bytes});
  }
  zip_discard(archive);
  return entries;
}

class Zip : public ::testing::Test {
 protected:
  void Put(const QString& name, const QByteArray& bytes = "x") { ASSERT_TRUE(PutFile(test_.WorkFile(name), bytes)); }
  int32_t ZipNamed(const QStringList& names) {
    return ZipWorkFiles(test_.program, names, static_cast<int32_t>(names.size()));
  }
  // How many times the window's messages run in the work.
  static int Passes(const std::function<void()>& work) {
    const QSignalSpy passes(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake);
    work();
    return int(passes.size());
  }
  QList<Entry> Entries() const { return EntriesOf(test_.WorkFile("card.zip")); }

  TestProgram test_;
};

TEST_F(Zip, EntriesAreBareNamesInListOrder) {
  Put("b.gif", "bee");
  Put("a.html", "page");
  Put("c.wav", QByteArray(100000, 'c'));
  EXPECT_EQ(0, ZipNamed({"b.gif", "a.html", "c.wav"}));
  EXPECT_EQ((QList<Entry>{{"b.gif", "bee"}, {"a.html", "page"}, {"c.wav", QByteArray(100000, 'c')}}), Entries());
}

TEST_F(Zip, TheArchiveLandsInWorkPathAndTheCurrentFolderStays) {
  Put("a.html");
  const QString before = QDir::currentPath();
  EXPECT_EQ(0, ZipNamed({"a.html"}));
  EXPECT_EQ(before, QDir::currentPath());
  EXPECT_TRUE(QFile::exists(test_.WorkFile("card.zip")));
  EXPECT_FALSE(QFile::exists(before + "/card.zip"));
}

// Meant in WorkZipOptions: the level of compression is the character "9" and not the number.
TEST_F(Zip, TheLevelIsTheCharacterNineAndHiddenFilesAreTaken) {
  const ZipOptions options = WorkZipOptions(test_.program);
  EXPECT_EQ(57, options.fLevel);
  EXPECT_EQ(1, options.fSystem);
  EXPECT_EQ(0, options.fRecurse);
  EXPECT_EQ(QFile::encodeName(test_.program.project.WorkPath() + QDir::separator()), options.szRootDir);
  EXPECT_EQ("", options.Date);
  Put("seen.gif", "1");
  Put("hidden.gif", "2");
  ASSERT_TRUE(test_.platform.attributes.Set(test_.WorkFile("hidden.gif"), AttributeHidden));
  EXPECT_EQ(0, ZipNamed({"hidden.gif", "seen.gif"}));
  EXPECT_EQ((QList<Entry>{{"hidden.gif", "2"}, {"seen.gif", "1"}}), Entries());
}

TEST_F(Zip, WithoutTheSystemOptionHiddenFilesAreLeftOut) {
  Put("seen.gif", "1");
  Put("hidden.gif", "2");
  ASSERT_TRUE(test_.platform.attributes.Set(test_.WorkFile("hidden.gif"), AttributeHidden));
  ZipOptions options = WorkZipOptions(test_.program);
  options.fSystem = 0;
  ZipArchiver archiver(test_.platform.access, test_.platform.attributes);
  archiver.ZpSetOptions(options);
  EXPECT_EQ(0, archiver.ZpArchive(2, "card.zip", {"hidden.gif", "seen.gif"}));
  EXPECT_EQ((QList<Entry>{{"seen.gif", "1"}}), Entries());
}

TEST_F(Zip, TheLevelDecidesTheSize) {
  QByteArray text;
  for (int at = 0; at < 20000; ++at) text += QByteArray::number(at % 977) + ' ';
  Put("a.txt", text);
  ZipArchiver archiver(test_.platform.access, test_.platform.attributes);
  qint64 sizes[2];
  for (const int at : {0, 1}) {
    ZipOptions options = WorkZipOptions(test_.program);
    options.fLevel = at == 0 ? '1' : '9';
    archiver.ZpSetOptions(options);
    ASSERT_EQ(0, archiver.ZpArchive(1, "card.zip", {"a.txt"}));
    sizes[at] = QFileInfo(test_.WorkFile("card.zip")).size();
  }
  EXPECT_LT(sizes[1], sizes[0]);
}

TEST_F(Zip, TheEndMarkAndTheCountEndTheList) {
  for (const char* name : {"a", "b", "c"}) Put(name);
  ZipArchiver archiver(test_.platform.access, test_.platform.attributes);
  archiver.ZpSetOptions(WorkZipOptions(test_.program));
  EXPECT_EQ(0, archiver.ZpArchive(9, "card.zip", {"a", "b", QByteArray(1, '\0'), "c"}));
  EXPECT_EQ((QList<Entry>{{"a", "x"}, {"b", "x"}}), Entries());
  EXPECT_EQ(0, archiver.ZpArchive(1, "card.zip", {"a", "b"}));
  EXPECT_EQ((QList<Entry>{{"a", "x"}}), Entries());
}

TEST_F(Zip, MoreThanAHundredFilesFit) {
  for (const int count : {1, 99, 100, 101, 250}) {
    QStringList names;
    for (int at = 0; at < count; ++at) {
      names.append(QString("file%1.txt").arg(at));
      Put(names.last(), names.last().toUtf8());
    }
    ASSERT_EQ(0, ZipNamed(names));
    const QList<Entry> entries = Entries();
    ASSERT_EQ(count, entries.size());
    EXPECT_EQ((Entry{names.last().toUtf8(), names.last().toUtf8()}), entries.last());
  }
}

TEST_F(Zip, AFileThatCannotBeOpenedGives18BeforeAnythingIsWritten) {
  Put("a.gif");
  Put("playing.wav");
  Put("card.zip", "from before");
  test_.platform.access.RefusedNames = {"playing.wav"};
  EXPECT_EQ(18, ZipNamed({"a.gif", "playing.wav"}));
  EXPECT_EQ("from before", FileBytes(test_.WorkFile("card.zip")));
  EXPECT_EQ(18, ZipNamed({"none.gif"}));
  EXPECT_EQ("from before", FileBytes(test_.WorkFile("card.zip")));
}

TEST_F(Zip, AFileThatGoesBeforeItsTurnGives18AndNoArchive) {
  Put("a.gif");
  Put("b.gif");
  Put("card.zip", "from before");
  ZipCallbacks callbacks;
  callbacks.ZipPrint = [this](const QByteArray& text) {
    if (text.contains("b.gif")) QFile::remove(test_.WorkFile("b.gif"));
    return 0;
  };
  ZipArchiver archiver(test_.platform.access, test_.platform.attributes);
  archiver.ZpInit(callbacks);
  archiver.ZpSetOptions(WorkZipOptions(test_.program));
  EXPECT_EQ(18, archiver.ZpArchive(2, "card.zip", {"a.gif", "b.gif"}));
  EXPECT_EQ("from before", FileBytes(test_.WorkFile("card.zip")));
  EXPECT_EQ(QStringList({"a.gif", "card.zip"}),
            QDir(test_.program.project.WorkPath()).entryList(QDir::Files | QDir::Hidden));
}

TEST_F(Zip, NothingButTheArchiveIsEverWrittenIntoTheWorkFolder) {
  for (const char* name : {"a.gif", "b.gif", "c.gif"}) Put(name, QByteArray(300000, *name));
  ZipCallbacks callbacks;
  int looks = 0;
  callbacks.ZipPrint = [&](const QByteArray&) {
    ++looks;
    EXPECT_EQ(QStringList({"a.gif", "b.gif", "c.gif"}),
              QDir(test_.program.project.WorkPath()).entryList(QDir::Files | QDir::Hidden));
    return 0;
  };
  ZipArchiver archiver(test_.platform.access, test_.platform.attributes, test_.program.AppPath);
  archiver.ZpInit(callbacks);
  archiver.ZpSetOptions(WorkZipOptions(test_.program));
  EXPECT_EQ(0, archiver.ZpArchive(3, "card.zip", {"a.gif", "b.gif", "c.gif"}));
  EXPECT_EQ(3, looks);
  EXPECT_EQ(QStringList({"a.gif", "b.gif", "c.gif", "card.zip"}),
            QDir(test_.program.project.WorkPath()).entryList(QDir::Files | QDir::Hidden));
  // Nor does anything stay where what is unfinished lies.
  EXPECT_EQ(QStringList(), QDir(test_.program.AppPath).entryList(QDir::Files | QDir::Hidden));
}

TEST_F(Zip, AFileThatIsChangedBeforeItsTurnIsPackedAsItIsThen) {
  Put("a.gif", "a");
  Put("b.gif", "first");
  ZipCallbacks callbacks;
  callbacks.ZipPrint = [this](const QByteArray& text) {
    if (text.contains("b.gif")) Put("b.gif", "second");
    return 0;
  };
  ZipArchiver archiver(test_.platform.access, test_.platform.attributes);
  archiver.ZpInit(callbacks);
  archiver.ZpSetOptions(WorkZipOptions(test_.program));
  EXPECT_EQ(0, archiver.ZpArchive(2, "card.zip", {"a.gif", "b.gif"}));
  EXPECT_EQ((QList<Entry>{{"a.gif", "a"}, {"b.gif", "second"}}), Entries());
}

// Compressed piece by piece, and not as a whole in memory.
TEST_F(Zip, AHugeFileIsCarriedToo) {
  QFile huge(test_.WorkFile("huge.bin"));
  ASSERT_TRUE(huge.open(QIODevice::WriteOnly) && huge.resize((256 << 20) + 1));
  huge.close();
  Put("small.txt", "small");
  ASSERT_EQ(0, ZipNamed({"huge.bin", "small.txt"}));
  zip_t* archive = zip_open(test_.WorkFile("card.zip").toUtf8().constData(), ZIP_RDONLY | ZIP_CHECKCONS, nullptr);
  ASSERT_TRUE(archive);
  zip_stat_t status;
  ASSERT_EQ(0, zip_stat_index(archive, 0, 0, &status));
  EXPECT_EQ((256u << 20) + 1, status.size);
  EXPECT_EQ(ZIP_CM_DEFLATE, status.comp_method);
  EXPECT_LT(status.comp_size, 1u << 20);
  EXPECT_EQ(2, zip_get_num_entries(archive, 0));
  zip_discard(archive);
}

TEST_F(Zip, ManyFilesComeOutAsTheyWentIn) {
  QStringList names;
  QList<Entry> expected;
  for (int at = 0; at < 300; ++at) {
    QByteArray bytes;
    for (int i = 0; i < at * 37 % 5000; ++i) bytes.append(char(i * at % 251));
    names += QString("f%1.bin").arg(at);
    Put(names.last(), bytes);
    expected.append({names.last().toUtf8(), bytes});
  }
  ASSERT_EQ(0, ZipNamed(names));
  EXPECT_EQ(expected, Entries());
}

TEST_F(Zip, AnyOtherFailureGives100) {
  Put("a.gif");
  ASSERT_TRUE(QDir().mkdir(test_.WorkFile("card.zip")));
  EXPECT_EQ(100, ZipNamed({"a.gif"}));
}

TEST_F(Zip, EmptyFilesAndNamesOfAnyScriptAreCarried) {
  const QString name = QString::fromUtf8("\u732B \u00E9.gif");
  Put(name, "");
  EXPECT_EQ(0, ZipNamed({name}));
  EXPECT_EQ((QList<Entry>{{name.toUtf8(), ""}}), Entries());
}

TEST_F(Zip, AnEntryHasTheTimeOfItsFile) {
  Put("a.gif");
  const QDateTime then(QDate(2001, 2, 3), QTime(4, 5, 6));
  QFile file(test_.WorkFile("a.gif"));
  ASSERT_TRUE(file.open(QIODevice::ReadWrite) && file.setFileTime(then, QFileDevice::FileModificationTime));
  file.close();
  ASSERT_EQ(0, ZipNamed({"a.gif"}));
  // In the order of a local header: seconds in pairs, minutes, hours; day, month, years since 1980.
  const int time = 3 | 5 << 5 | 4 << 11, day = 3 | 2 << 5 | 21 << 9;
  const char expected[] = {char(time & 255), char(time >> 8), char(day & 255), char(day >> 8)};
  EXPECT_EQ(QByteArray(expected, 4), FileBytes(test_.WorkFile("card.zip")).mid(10, 4));
}

TEST_F(Zip, NamesBeyondAsciiAreMarkedAsUtf8) {
  const auto flags = [this] { return quint8(FileBytes(test_.WorkFile("card.zip")).at(7)) << 8; };
  Put("a.gif");
  ASSERT_EQ(0, ZipNamed({"a.gif"}));
  EXPECT_EQ(0, flags() & 0x0800);
  const QString name = QString::fromUtf8("\u00E9.gif");
  Put(name);
  ASSERT_EQ(0, ZipNamed({name}));
  EXPECT_EQ(0x0800, flags() & 0x0800);
}

TEST_F(Zip, AWorkFolderOfAnyScriptIsReached) {
  test_.program.project.SavedAs("cat", test_.Path(QString::fromUtf8("\u732B saved")));
  Put("a.gif", "cat");
  EXPECT_EQ(0, ZipNamed({"a.gif"}));
  EXPECT_EQ((QList<Entry>{{"a.gif", "cat"}}), Entries());
}

TEST_F(Zip, ReportsOnceForEachFile) {
  Put("a.gif");
  Put("b.gif");
  QByteArrayList printed;
  QList<qint64> sizes;
  ZipCallbacks callbacks;
  callbacks.ZipPrint = [&](const QByteArray& text) {
    printed.append(text);
    return 0;
  };
  callbacks.ZipService = [&](const QByteArray&, int64_t size) {
    sizes.append(size);
    return 0;
  };
  ZipArchiver archiver(test_.platform.access, test_.platform.attributes);
  archiver.ZpInit(callbacks);
  archiver.ZpSetOptions(WorkZipOptions(test_.program));
  EXPECT_EQ(0, archiver.ZpArchive(2, "card.zip", {"a.gif", "b.gif"}));
  ASSERT_EQ(2, printed.size());
  EXPECT_TRUE(printed[0].contains("a.gif"));
  EXPECT_TRUE(printed[1].contains("b.gif"));
  EXPECT_EQ((QList<qint64>{1, 1}), sizes);
}

TEST_F(Zip, TheServiceCanEndTheWork) {
  Put("a.gif");
  ZipCallbacks callbacks;
  callbacks.ZipService = [](const QByteArray&, int64_t) { return 1; };
  ZipArchiver archiver(test_.platform.access, test_.platform.attributes);
  archiver.ZpInit(callbacks);
  archiver.ZpSetOptions(WorkZipOptions(test_.program));
  EXPECT_EQ(100, archiver.ZpArchive(1, "card.zip", {"a.gif"}));
}

TEST_F(Zip, WindowMessagesRunOnceForEachFile) {
  for (const int files : {1, 2, 7}) {
    QStringList names;
    for (int at = 0; at < files; ++at) {
      names += QString("f%1.gif").arg(at);
      Put(names.last());
    }
    bool ran = false;
    QMetaObject::invokeMethod(qApp, [&ran] { ran = true; }, Qt::QueuedConnection);
    EXPECT_EQ(files, Passes([&] { EXPECT_EQ(0, ZipNamed(names)); }));
    EXPECT_TRUE(ran);
  }
}

TEST_F(Zip, OptionsComeBackAsTheyWereSet) {
  ZipArchiver archiver(test_.platform.access, test_.platform.attributes);
  ZipOptions options;
  options.szRootDir = "root/";
  options.fLevel = '3';
  archiver.ZpSetOptions(options);
  EXPECT_EQ("root/", archiver.ZpGetOptions().szRootDir);
  EXPECT_EQ('3', archiver.ZpGetOptions().fLevel);
}

}  // namespace
