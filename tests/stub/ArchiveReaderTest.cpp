#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "PackMaker.h"

namespace {

constexpr size_t stubSize = 0x13000;
constexpr uint16_t encrypted = 1, utf8 = 1 << 11;

std::vector<PackEntry> smallPages() {
  std::vector<PackEntry> entries(4);
  entries[0].name = "wgcard.html";
  entries[0].data = bytesOf("<html><body>Welcome, welcome, welcome</body></html>");
  entries[1].name = "Page2.html";
  entries[1].data = bytesOf("<html>second</html>");
  entries[2].name = "cat.jpg";
  entries[2].data = bytesOf("\xFF\xD8 no picture");
  entries[2].method = 0;
  entries[3].name = "nothing.txt";
  return entries;
}

void expectFiles(const MemoryFolder& folder, const std::vector<PackEntry>& entries) {
  ASSERT_EQ(folder.created.size(), entries.size());
  for (size_t index = 0; index < entries.size(); index++) {
    EXPECT_EQ(folder.created[index], entries[index].name);
    const MemoryFolder::File& file = folder.files.at(entries[index].name);
    EXPECT_TRUE(file.data == entries[index].data) << entries[index].name;
    EXPECT_TRUE(file.closed);
    EXPECT_EQ(file.date, entries[index].date);
    EXPECT_EQ(file.time, entries[index].time);
    EXPECT_EQ(file.utf8, (entries[index].flags & utf8) != 0);
  }
}

size_t placeOf(const Bytes& bytes, const Bytes& mark) {
  return size_t(std::search(bytes.begin(), bytes.end(), mark.begin(), mark.end()) - bytes.begin());
}

// The pack is refused before anything is written.
void expectRefused(const Bytes& pack, const std::string& why) {
  MemoryFolder folder;
  EXPECT_EQ(folder.extract(pack), ArchiveDamaged) << why;
  EXPECT_TRUE(folder.created.empty()) << why;
}

}  // namespace

TEST(ArchiveReader, ExtractsStoredDeflatedAndEmptyFilesInOrder) {
  MemoryFolder folder;
  ASSERT_EQ(folder.extract(makePack(smallPages(), {.prefix = stubSize})), ArchiveComplete);
  expectFiles(folder, smallPages());
}

TEST(ArchiveReader, ArchiveOffsetsAreNotAdjusted) {
  // The same archive, byte for byte, behind prefixes of any length: its offsets count from its own start.
  Bytes alone = makePack(smallPages());
  for (size_t prefix : {size_t(0), size_t(1), stubSize, stubSize + 100001}) {
    Bytes pack(prefix, 'P');
    pack.insert(pack.end(), alone.begin(), alone.end());
    ASSERT_EQ(pack, [&] {
      Bytes made = makePack(smallPages(), {.prefix = prefix});
      std::fill(made.begin(), made.begin() + long(prefix), 'P');
      return made;
    }());
    MemoryFolder folder;
    ASSERT_EQ(folder.extract(pack), ArchiveComplete) << prefix;
    expectFiles(folder, smallPages());
  }
}

TEST(ArchiveReader, FindsTheDirectoryBeforeAComment) {
  for (size_t length : {size_t(1), size_t(21), size_t(22), size_t(ArchiveBufferSize - 22), size_t(ArchiveBufferSize),
                        size_t(ArchiveBufferSize + 7), size_t(65535)}) {
    MemoryFolder folder;
    PackForm form{.prefix = stubSize, .comment = std::string(length, 'c')};
    ASSERT_EQ(folder.extract(makePack(smallPages(), form)), ArchiveComplete) << length;
    expectFiles(folder, smallPages());
  }
}

TEST(ArchiveReader, BytesBehindTheArchiveOfAPackDontMatter) {
  const Bytes sound = makePack(smallPages(), {.prefix = stubSize, .comment = "a comment"});
  for (const size_t count : {size_t(1), size_t(8), size_t(ArchiveBufferSize - 21), size_t(65536), size_t(700000)})
    for (const char byte : {'\0', 'P'}) {
      Bytes pack = sound;
      pack.resize(sound.size() + count, uint8_t(byte));
      MemoryFolder folder;
      ASSERT_EQ(folder.extract(pack), ArchiveComplete) << count;
      expectFiles(folder, smallPages());
    }
}

TEST(ArchiveReader, BytesBehindAnythingElseAreRefused) {
  for (const size_t prefix : {size_t(0), stubSize - 1, stubSize + 1}) {
    Bytes pack = makePack(smallPages(), {.prefix = prefix});
    pack.push_back(0);
    expectRefused(pack, "one byte behind");
  }
  // Nor is an archive within a pack's data taken for its own where the pack is cut off.
  std::vector<PackEntry> entries = smallPages();
  entries[2].data = makePack(smallPages());
  Bytes pack = makePack(entries, {.prefix = stubSize});
  const size_t behind = placeOf(pack, {'P', 'K', 5, 6}) + 22;
  ASSERT_LT(behind, pack.size());
  for (const size_t more : {size_t(0), size_t(1), size_t(60)}) {
    Bytes cut(pack.begin(), pack.begin() + long(behind + more));
    MemoryFolder folder;
    const ArchiveResult result = folder.extract(cut);
    // Where the inner archive ends with the file it is one as good as any.
    EXPECT_EQ(more == 0 ? ArchiveComplete : ArchiveDamaged, result) << more;
  }
}

TEST(ArchiveReader, TellsNamesInUtf8Apart) {
  std::vector<PackEntry> entries = smallPages();
  entries[1].name = "\xD0\xBA\xD0\xBE\xD1\x82 \xF0\x9F\x90\xB1.html";
  entries[1].flags = utf8;
  MemoryFolder folder;
  ASSERT_EQ(folder.extract(makePack(entries)), ArchiveComplete);
  expectFiles(folder, entries);
}

TEST(ArchiveReader, LargeFilesGoThroughInPieces) {
  std::vector<PackEntry> entries(2);
  std::mt19937 random(5);
  for (PackEntry& entry : entries) {
    entry.data.resize(3'000'000);
    for (uint8_t& byte : entry.data) byte = uint8_t(random() % 20);
  }
  entries[0].name = "a";
  entries[1].name = "b";
  entries[1].method = 0;
  MemoryFolder folder;
  ASSERT_EQ(folder.extract(makePack(entries)), ArchiveComplete);
  expectFiles(folder, entries);
  EXPECT_LE(folder.largestRead, uint32_t(ArchiveBufferSize));
}

TEST(ArchiveReader, TakesALocalHeaderThatLeavesItsSizesOut) {
  // An extra field of 20 bytes in front of the data, and sizes that only the directory tells.
  std::vector<PackEntry> entries = smallPages();
  entries[0].localExtra = Bytes(20, 0);
  Bytes pack = makePack(entries);
  for (size_t at = 14; at < 26; at++) pack[at] = 0xFF;
  MemoryFolder folder;
  ASSERT_EQ(folder.extract(pack), ArchiveComplete);
  expectFiles(folder, entries);
}

TEST(ArchiveReader, PassesOverExtraFieldsAndCommentsInTheDirectory) {
  std::vector<PackEntry> entries = smallPages();
  entries[0].extra = Bytes(9, 'e');
  entries[0].comment = "a comment";
  entries[1].comment = std::string(65535, 'c');
  MemoryFolder folder;
  ASSERT_EQ(folder.extract(makePack(entries)), ArchiveComplete);
  expectFiles(folder, entries);
}

TEST(ArchiveReader, WarningsOpenNothing) {
  std::vector<PackEntry> entries = smallPages();
  entries[1].flags = encrypted;
  MemoryFolder folder;
  EXPECT_EQ(folder.extract(makePack(entries)), ArchiveWarnings);
  // The entry with a password is skipped, the others are there.
  entries.erase(entries.begin() + 1);
  expectFiles(folder, entries);

  MemoryFolder none;
  EXPECT_EQ(none.extract(makePack({})), ArchiveWarnings);
}

TEST(ArchiveReader, RefusesNamesThatLeadElsewhereBeforeWritingAnything) {
  static const std::string names[] = {"",     ".",     "..",     "/a",
                                      "a/b",  "a/",    "../a",   "\\a",
                                      "a\\b", "..\\a", "C:\\a",  std::string("a\0b", 3),
                                      "con/", "a:b/c", "*/../b", std::string(1024, 'a')};
  for (const std::string& name : names)
    for (uint16_t flags : {uint16_t(0), utf8}) {
      std::vector<PackEntry> entries = smallPages();
      entries[3].name = name;
      entries[3].flags = flags;
      expectRefused(makePack(entries), name);
    }
}

// One picture whose name Windows can't have keeps nobody from the page.
TEST(ArchiveReader, ChangesNamesThatWindowsCantHave) {
  struct Row {
    std::string name, created;
    bool inUtf8 = true, inOther = true;
  };
  static const Row rows[] = {{"...", ".._"},
                             {" ", "_"},
                             {". .", ". _"},
                             {"a.", "a_"},
                             {"a.gif ", "a.gif_"},
                             {"C:a", "C_a"},
                             {"a:stream", "a_stream"},
                             {"wgcard.html::$DATA", "wgcard.html__$DATA"},
                             {"Shot 12:30.gif", "Shot 12_30.gif"},
                             {"a\n", "a_"},
                             {"\x1F", "_"},
                             {"a*b?c\"d<e>f|g", "a_b_c_d_e_f_g"},
                             {"con", "_con"},
                             {"CON.gif", "_CON.gif"},
                             {"Nul.txt", "_Nul.txt"},
                             {"aux .html", "_aux .html"},
                             {"prn.a.b", "_prn.a.b"},
                             {"con ", "_con_"},
                             {"COM1", "_COM1"},
                             {"lpt9.jpg", "_lpt9.jpg"},
                             {"CONIN$", "_CONIN$"},
                             {"conout$", "_conout$"},
                             {"COM\xB9", "_COM\xB9", false},
                             {"com\xC2\xB2", "_com\xC2\xB2", true, false},
                             {"LPT\xC2\xB3.gif", "_LPT\xC2\xB3.gif", true, false},
                             {"\x80", "_", true, false},
                             {"\xC0\xAF", "__", true, false},
                             {"\xE0\x80\xAF", "___", true, false},
                             {"\xED\xA0\x80", "___", true, false},
                             {"\xF4\x90\x80\x80", "____", true, false},
                             {"a\xC3", "a_", true, false},
                             {"\xFF\xC3\xA4", "_\xC3\xA4", true, false}};
  for (const Row& row : rows)
    for (uint16_t flags : {uint16_t(0), utf8}) {
      if (!(flags ? row.inUtf8 : row.inOther)) continue;
      std::vector<PackEntry> entries = smallPages();
      entries[3].name = row.name;
      entries[3].flags = flags;
      MemoryFolder folder;
      ASSERT_EQ(folder.extract(makePack(entries)), ArchiveComplete) << row.name;
      entries[3].name = row.created;
      expectFiles(folder, entries);
    }
}

TEST(ArchiveReader, TakesNamesThatOnlyLookHostile) {
  static const std::string names[] = {
      "a..b",        ".a",           "console.html",       "COM10",  "com",  "lpt", "nul1",
      "a con",       "com0",         "LPT0.gif",           "clock$", "\x7F", "..a", "a  .gif",
      "com\xC2\xB2", "\xC3\xA4.jpg", std::string(200, 'x')};
  for (const std::string& name : names) {
    std::vector<PackEntry> entries = smallPages();
    entries[3].name = name;
    MemoryFolder folder;
    ASSERT_EQ(folder.extract(makePack(entries)), ArchiveComplete) << name;
    expectFiles(folder, entries);
  }
}

TEST(ArchiveReader, WritesNothingOfAPackCutAnywhere) {
  Bytes whole = makePack(smallPages(), {.prefix = 100, .comment = "comment"});
  for (size_t size = 0; size < whole.size(); size++)
    expectRefused(Bytes(whole.begin(), whole.begin() + long(size)), std::to_string(size));
}

TEST(ArchiveReader, WritesNothingOfAPackWithoutItsFirstBytes) {
  Bytes whole = makePack(smallPages());
  for (size_t gone = 1; gone <= whole.size(); gone++)
    expectRefused(Bytes(whole.begin() + long(gone), whole.end()), std::to_string(gone));
}

TEST(ArchiveReader, RefusesSizesAndOffsetsBeyondTheArchive) {
  struct Row {
    const char* name;
    int64_t PackEntry::* field;
    int64_t value;
  };
  static const Row rows[] = {{"huge compressed size", &PackEntry::compressedSize, 0xFFFFFFFF},
                             {"compressed size into the directory", &PackEntry::compressedSize, 400},
                             {"huge size", &PackEntry::size, 0xFFFFFFFF},
                             {"header far away", &PackEntry::header, 0xFFFFFFFF},
                             {"header in the data", &PackEntry::header, 5}};
  for (const Row& row : rows) {
    std::vector<PackEntry> entries = smallPages();
    entries[0].*row.field = row.value;
    expectRefused(makePack(entries), row.name);
    entries = smallPages();
    entries[2].*row.field = row.value;
    expectRefused(makePack(entries), std::string(row.name) + ", stored");
  }
}

TEST(ArchiveReader, RefusesAnEndRecordThatDoesNotFit) {
  Bytes right = makePack(smallPages(), {.prefix = 300});
  struct Row {
    const char* name;
    PackForm form;
  };
  static const Row rows[] = {{"one entry more", {.prefix = 300, .entries = 5}},
                             {"one entry less", {.prefix = 300, .entries = 3}},
                             {"none", {.prefix = 300, .entries = 0}},
                             {"many", {.prefix = 300, .entries = 65535}},
                             {"directory too long", {.prefix = 300, .directorySize = 300}},
                             {"huge directory", {.prefix = 300, .directorySize = 0xFFFFFFFF}},
                             {"directory too far", {.prefix = 300, .directory = 0xFFFFFFFF}},
                             {"directory one byte off", {.prefix = 300, .directory = 1}}};
  for (const Row& row : rows) expectRefused(makePack(smallPages(), row.form), row.name);
  MemoryFolder folder;
  EXPECT_EQ(folder.extract(right), ArchiveComplete);
}

TEST(ArchiveReader, RefusesAnArchiveThatBeginsInFrontOfTheFile) {
  expectRefused(makePack(smallPages(), {.offsetsFrom = 1}), "one byte in front");
}

TEST(ArchiveReader, RefusesAnArchiveOfSeveralDisks) {
  const Bytes right = makePack(smallPages());
  const size_t end = right.size() - 22, directory = placeOf(right, {'P', 'K', 1, 2});
  struct Row {
    const char* name;
    size_t place;
  };
  const Row rows[] = {{"number of this disk", end + 4},
                      {"disk of the directory", end + 6},
                      {"entries on this disk", end + 8},
                      {"disk of a file", directory + 34}};
  for (const Row& row : rows) {
    Bytes pack = right;
    pack[row.place] ^= 1;
    expectRefused(pack, row.name);
  }
}

TEST(ArchiveReader, RefusesALocalHeaderThatSaysOtherwise) {
  const Bytes right = makePack(smallPages(), {.prefix = 50});
  struct Row {
    const char* name;
    size_t place;
    uint8_t bits;
  };
  for (const Row& row : {Row{"encrypted", 6, 1}, Row{"stored", 8, 8}, Row{"length of the name", 26, 1}}) {
    Bytes pack = right;
    pack[50 + row.place] ^= row.bits;
    expectRefused(pack, row.name);
  }
  // Its other bits don't count.
  Bytes pack = right;
  pack[50 + 7] ^= 8;
  MemoryFolder folder;
  EXPECT_EQ(folder.extract(pack), ArchiveComplete);
}

TEST(ArchiveReader, RefusesEntriesThatOverlapByOneByte) {
  // The first file would end with the first byte of the next one's header.
  std::vector<PackEntry> entries = smallPages();
  entries[0].method = 0;
  entries[0].size = entries[0].compressedSize = int64_t(entries[0].data.size()) + 1;
  expectRefused(makePack(entries), "one byte");
}

TEST(ArchiveReader, RefusesOverlappingEntries) {
  // Two entries of the directory lead to one local header; their order in the directory doesn't matter.
  std::vector<PackEntry> entries = smallPages();
  entries[3] = entries[0];
  entries[3].header = 0;
  expectRefused(makePack(entries), "the first one twice");
  std::swap(entries[0], entries[3]);
  entries[0].header = -1;
  entries[3].header = 0;
  expectRefused(makePack(entries), "the other way round");
}

TEST(ArchiveReader, TakesEntriesInAnotherOrderThanTheDirectorys) {
  std::vector<PackEntry> entries = smallPages();
  for (PackEntry& entry : entries) entry.method = 0;
  size_t first = 30 + entries[0].name.size() + entries[0].data.size();
  std::vector<PackEntry> swapped = {entries[1], entries[0]};
  Bytes pack = makePack({entries[0], entries[1]});
  Bytes directory = makePack(swapped);
  swapped[0].header = int64_t(first);
  swapped[1].header = 0;
  directory = makePack(swapped);
  size_t start = first + 30 + entries[1].name.size() + entries[1].data.size();
  std::copy(directory.begin() + long(start), directory.end(), pack.begin() + long(start));
  MemoryFolder folder;
  ASSERT_EQ(folder.extract(pack), ArchiveComplete);
  expectFiles(folder, swapped);
}

TEST(ArchiveReader, SortsManyEntries) {
  std::vector<PackEntry> entries(3000);
  for (size_t index = 0; index < entries.size(); index++) {
    entries[index].name = "file" + std::to_string(index);
    entries[index].method = 0;
  }
  MemoryFolder folder;
  ASSERT_EQ(folder.extract(makePack(entries)), ArchiveComplete);
  EXPECT_EQ(folder.files.size(), entries.size());
}

TEST(ArchiveReader, RefusesOtherMethodsAndAnotherNameInTheLocalHeader) {
  for (uint16_t method : {1, 6, 9, 12, 14, 99}) {
    std::vector<PackEntry> entries = smallPages();
    entries[3].method = method;
    expectRefused(makePack(entries), "method " + std::to_string(method));
  }
  std::vector<PackEntry> entries = smallPages();
  entries[0].localName = "wgcarb.html";
  expectRefused(makePack(entries), "another name");
  entries[0].localName = "wgcard.htm";
  expectRefused(makePack(entries), "a shorter name");
}

TEST(ArchiveReader, FindsAWrongChecksum) {
  for (size_t wrong : {size_t(0), size_t(2), size_t(3)}) {
    std::vector<PackEntry> entries = smallPages();
    entries[wrong].checksum = 0x12345678;
    MemoryFolder folder;
    EXPECT_EQ(folder.extract(makePack(entries)), ArchiveDamaged) << wrong;
    EXPECT_EQ(folder.created.size(), wrong + 1);
  }
}

TEST(ArchiveReader, FindsASizeThatIsNotTheFiles) {
  for (int64_t size : {1, 18, 20, 500}) {
    std::vector<PackEntry> entries = smallPages();
    entries[1].size = size;
    MemoryFolder folder;
    EXPECT_EQ(folder.extract(makePack(entries)), ArchiveDamaged) << size;
    EXPECT_LE(int64_t(folder.files["Page2.html"].data.size()), std::min<int64_t>(size, 19)) << "no byte more than told";
  }
}

TEST(ArchiveReader, AnyByteOfTheDataMatters) {
  std::vector<PackEntry> entries = {smallPages()[0]};
  Bytes whole = makePack(entries);
  size_t start = 30 + entries[0].name.size();
  size_t end = whole.size() - 22 - 46 - entries[0].name.size();
  for (size_t at = start; at < end; at++)
    for (int bit = 0; bit < 8; bit++) {
      Bytes pack = whole;
      pack[at] ^= uint8_t(1 << bit);
      MemoryFolder folder;
      // A bit behind the last block's end is the one kind that may differ without harm.
      if (folder.extract(pack) == ArchiveComplete) {
        EXPECT_EQ(at, end - 1);
        EXPECT_TRUE(folder.files["wgcard.html"].data == entries[0].data);
      }
    }
}

TEST(ArchiveReader, TellsWhenAFileCannotBeWritten) {
  MemoryFolder locked;
  locked.unwritable = "Page2.html";
  EXPECT_EQ(locked.extract(makePack(smallPages())), ArchiveNotWritten);
  EXPECT_EQ(locked.created, std::vector<std::string>{"wgcard.html"});

  MemoryFolder full;
  full.room = 60;
  EXPECT_EQ(full.extract(makePack(smallPages())), ArchiveNotWritten);

  MemoryFolder lost;
  lost.closeFails = true;
  EXPECT_EQ(lost.extract(makePack(smallPages())), ArchiveNotWritten);
  EXPECT_EQ(lost.created, std::vector<std::string>{"wgcard.html"});
  // What is damaged is told as that, whatever comes of the file.
  std::vector<PackEntry> entries = smallPages();
  entries[0].size = 5;
  EXPECT_EQ(lost.extract(makePack(entries)), ArchiveDamaged);
}
