#include "WindowsNames.h"

#include <gtest/gtest.h>

#include <QDir>

#include "CopyBesidePages.h"
#include "TestPlatform.h"

namespace {

class WindowsNames : public ::testing::Test {
 protected:
  QString Path(const QString& name) const { return test_.Path(name); }

  TestProgram test_;
  ModFileOps& files_ = test_.program.Files;
};

TEST(PictureFileName, IsOneThatWindowsCanHave) {
  EXPECT_EQ("Shot_12_30.gif", PictureFileName("/x/Shot 12:30.gif"));
  EXPECT_EQ("_con.gif", PictureFileName("/x/con.gif"));
}

TEST(WhyNoFolderName, TellsWhatNeitherSystemTakes) {
  for (const char16_t* const name :
       {u"", u"a", u"My site 2024", u".hidden", u" a", u"a.b", u"...a", u"Gr\u00FC\u00DFe \u732B", u"com", u"com10",
        u"console", u"a'b", u"[x]", u"50 %", u"#1; x=2, y~"})
    EXPECT_EQ("", WhyNoFolderName(QString::fromUtf16(name)));
  struct Row {
    const char16_t* name;
    const char* why;
  };
  const Row rows[] = {{u"Holiday 2024/25", "/ can't be part of a name."},
                      {u"a\\b", "\\ can't be part of a name."},
                      {u"C:", ": can't be part of a name."},
                      {u"what?", "? can't be part of a name."},
                      {u"*", "* can't be part of a name."},
                      {u"\"a\"", "\" can't be part of a name."},
                      {u"<a", "< can't be part of a name."},
                      {u"a>", "> can't be part of a name."},
                      {u"a|b", "| can't be part of a name."},
                      {u"../x", "/ can't be part of a name."},
                      {u"a\nb", "A name can't hold a line end, tab or other control character."},
                      {u"\x7f", "A name can't hold a line end, tab or other control character."},
                      {u"a\u0085", "A name can't hold a line end, tab or other control character."},
                      {u".", "\".\" and \"..\" can't be names."},
                      {u"..", "\".\" and \"..\" can't be names."},
                      {u"...", "A name can't end with a dot or a blank."},
                      {u"a.", "A name can't end with a dot or a blank."},
                      {u"a ", "A name can't end with a dot or a blank."},
                      {u" ", "A name can't end with a dot or a blank."},
                      {u"nul", "Windows keeps this name for a device."},
                      {u"Com1.site", "Windows keeps this name for a device."}};
  for (const Row& row : rows) EXPECT_EQ(row.why, WhyNoFolderName(QString::fromUtf16(row.name)));
  EXPECT_EQ("", WhyNoFolderName(QString(255, u'a')));
  EXPECT_EQ("This name is too long.", WhyNoFolderName(QString(256, u'a')));
  EXPECT_EQ("This name is too long.", WhyNoFolderName(QString(128, u'\u00E9'))) << "256 bytes";
}

// What the folder is really made with.
TEST_F(WindowsNames, EveryNameThatIsTakenCanBeAFolder) {
  for (const QString& name : {QString(255, u'a'), QString(85, u'\u732B'), QString(".hidden"), QString(" a")}) {
    ASSERT_EQ("", WhyNoFolderName(name));
    EXPECT_TRUE(QDir().mkdir(Path(name)));
  }
  EXPECT_FALSE(QDir().mkdir(Path(QString(86, u'\u732B'))));
  EXPECT_NE("", WhyNoFolderName(QString(86, u'\u732B')));
}

TEST(WindowsFileName, ChangesOnlyWhatWindowsCantHave) {
  struct Row {
    const char16_t *name, *made;
  };
  const Row rows[] = {{u"", u""},
                      {u"a b-c.gif", u"a b-c.gif"},
                      {u"a:b*c?d\"e<f>g|h/i\\j", u"a_b_c_d_e_f_g_h_i_j"},
                      {u"\u0001a\n.gif", u"_a_.gif"},
                      {u"a.", u"a_"},
                      {u"a ", u"a_"},
                      {u"..", u"._"},
                      {u".a", u".a"},
                      {u"CON", u"_CON"},
                      {u"prn.tar.gz", u"_prn.tar.gz"},
                      {u"nul .gif", u"_nul .gif"},
                      {u"Com1.gif", u"_Com1.gif"},
                      {u"lpt\u00B9", u"_lpt\u00B9"},
                      {u"conin$.x", u"_conin$.x"},
                      {u"COM0.gif", u"COM0.gif"},
                      {u"com10", u"com10"},
                      {u"console.gif", u"console.gif"},
                      {u"\u732B \u00E4.gif", u"\u732B \u00E4.gif"}};
  for (const Row& row : rows) EXPECT_EQ(QString::fromUtf16(row.made), WindowsFileName(QString::fromUtf16(row.name)));
}

TEST_F(WindowsNames, ATwinIsAFileWhoseNameDiffersOnlyInCase) {
  ASSERT_TRUE(PutFile(Path("Cat.gif"), "x"));
  ASSERT_TRUE(PutFile(Path(QString::fromUtf8("B\u00C4R.gif")), "x"));
  EXPECT_EQ("Cat.gif", NameOfTwinIn(Path(""), "cat.GIF"));
  EXPECT_EQ("Cat.gif", NameOfTwinIn(Path(""), "Cat.gif"));
  EXPECT_EQ("dog.gif", NameOfTwinIn(Path(""), "dog.gif"));
  EXPECT_EQ(QString::fromUtf8("B\u00C4R.gif"), NameOfTwinIn(Path(""), QString::fromUtf8("b\u00E4r.gif")));
  // Where both are there, each is itself.
  ASSERT_TRUE(PutFile(Path("cat.gif"), "x"));
  EXPECT_EQ("cat.gif", NameOfTwinIn(Path(""), "cat.gif"));
  EXPECT_EQ("a.gif", NameOfTwinIn(Path("none"), "a.gif"));
}

TEST_F(WindowsNames, ReplacingATextNeedsNothingButTheRoomForItAndLeavesNothingElse) {
  ASSERT_TRUE(PutFile(Path("page.html"), "old"));
  ASSERT_TRUE(files_.Attributes().Set(Path("page.html"), AttributeReadOnly));
  EXPECT_TRUE(files_.ReplaceTextFile(Path("page.html"), "new"));
  EXPECT_EQ("new", FileBytes(Path("page.html")));
  EXPECT_TRUE(files_.ReplaceTextFile(Path("other.html"), "other"));
  EXPECT_EQ("other", FileBytes(Path("other.html")));
  EXPECT_FALSE(files_.ReplaceTextFile(Path("none/page.html"), "x"));
  EXPECT_FALSE(QDir(Path("none")).exists());
  EXPECT_EQ(QStringList({"other.html", "page.html"}), QDir(Path("")).entryList(QDir::Files | QDir::Hidden));
}

TEST_F(WindowsNames, APictureReplacesItsTwinBesideThePages) {
  ASSERT_TRUE(PutFile(test_.WorkFile("Cat.gif"), "first"));
  ASSERT_TRUE(PutFile(Path("pictures/cat.gif"), "second"));
  EXPECT_EQ("Cat.gif", CopyBesidePages(test_.program, Path("pictures/cat.gif")));
  EXPECT_EQ("second", FileBytes(test_.WorkFile("Cat.gif")));
  EXPECT_EQ(QStringList{"Cat.gif"}, QDir(test_.program.project.WorkPath()).entryList(QDir::Files));
}

}  // namespace
