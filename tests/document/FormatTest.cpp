#include <gtest/gtest.h>

#include "HTMLTxtRange.h"
#include "QtPrinters.h"
#include "TestPage.h"

namespace {

struct Command {
  const char* before;
  const char* name;
  const char* value;
  const char* after;
};

class FormatCommand : public testing::TestWithParam<Command> {};

TEST_P(FormatCommand, LeavesThisPageAndKeepsItsText) {
  TestPage page(QString::fromUtf8(GetParam().before));
  const auto range = page.Range();
  const QString text = range->text();
  const bool changes = range->execCommand(GetParam().name, false, QString::fromUtf8(GetParam().value));
  EXPECT_EQ(page.After(range->range()), QString::fromUtf8(GetParam().after));
  EXPECT_EQ(range->text(), text);
  EXPECT_EQ(changes, page.page->selectionShown);
}

INSTANTIATE_TEST_SUITE_P(
    Colors, FormatCommand,
    testing::Values(Command{"a^b^c", "ForeColor", "#ff0000", "a<font color='#FF0000'>^b^</font>c"},
                    Command{"<font size=3>^ab^</font>", "forecolor", "red",
                            "<font size='3' color='#FF0000'>^ab^</font>"},
                    // A piece of a FONT becomes a FONT in it.
                    Command{"<font size=3>a^b^c</font>", "ForeColor", "red",
                            "<font size='3'>a<font color='#FF0000'>^b^</font>c</font>"},
                    // FONTs inside lose the value but stay.
                    Command{"<font face=f>^a<font color=blue size=2>b</font>^</font>", "ForeColor", "red",
                            "<font face='f' color='#FF0000'>^a<font size='2'>b</font>^</font>"},
                    // Across blocks each gets its own; cells and blocks are never wrapped.
                    Command{"<p>a^b</p> <p>c^d</p>", "ForeColor", "red",
                            "<p>a<font color='#FF0000'>^b</font></p> <p><font color='#FF0000'>c^</font>d</p>"},
                    Command{"<table><tbody><tr><td>a^b</td> <td>c^</td></tr></tbody></table>", "ForeColor", "red",
                            "<table><tbody><tr><td>a<font color='#FF0000'>^b</font></td> <td><font "
                            "color='#FF0000'>c^</font></td></tr></tbody></table>"},
                    // Line breaks and pictures go with the text around them, but not alone.
                    Command{"a^b<br>c^", "ForeColor", "red", "a<font color='#FF0000'>^b<br>c^</font>"},
                    Command{"a^<br>^b", "ForeColor", "red", "a^<br>^b"},
                    Command{"^a<i>b</i>c^", "ForeColor", "red", "<font color='#FF0000'>^a<i>b</i>c^</font>"},
                    // A link has a colour of its own, so the colour goes inside as well.
                    Command{"^a<a href='x'>b</a>^", "ForeColor", "red",
                            "<font color='#FF0000'>^a<a href='x'><font color='#FF0000'>b</font></a></font>^"},
                    Command{"^a<span style='color: blue; font-size: 9px;'>b</span>^", "ForeColor", "red",
                            "<font color='#FF0000'>^a<span style='font-size: 9px;'>b</span></font>^"},
                    Command{"a^b^c", "ForeColor", "no colour", "a^b^c"},
                    Command{"a^b^c", "ForeColor", "", "a<font color='#000000'>^b^</font>c"},
                    Command{"a^b^c", "ForeColor", "rgba(1,2,3,0.5)", "a^b^c"},
                    Command{"a^b^c", "ForeColor", "rgb(1, 2, 3)", "a<font color='#010203'>^b^</font>c"},
                    Command{"a^bc", "ForeColor", "red", "a^bc"},
                    Command{"a^b^c", "BackColor", "#00ff00", "a<font style='background-color: #00FF00;'>^b^</font>c"},
                    Command{"<font size=3 style='color: red'>^ab^</font>", "BackColor", "lime",
                            "<font size='3' style='color: red; background-color: #00FF00;'>^ab^</font>"},
                    Command{"<font>^<p>a</p>^</font>", "BackColor", "lime",
                            "<font>^<p><font style='background-color: #00FF00;'>a</font></p>^</font>"},
                    // Nothing goes into a list of choices, where a parser would leave it out.
                    Command{"^a<select><option>b</option></select>c^", "ForeColor", "red",
                            "<font color='#FF0000'>^a<select><option>b</option></select>c^</font>"},
                    Command{"a^b^c", "NoCommand", "x", "a^b^c"}));

INSTANTIATE_TEST_SUITE_P(
    Fonts, FormatCommand,
    testing::Values(
        Command{"a^b^c", "FontName", "Comic Sans", "a<font face='Comic Sans'>^b^</font>c"},
        Command{"a^b^c", "FontSize", "5", "a<font size='5'>^b^</font>c"},
        Command{"a^b^c", "FontSize", "+2", "a<font size='5'>^b^</font>c"},
        Command{"a^b^c", "FontSize", "-9", "a<font size='1'>^b^</font>c"},
        Command{"a^b^c", "FontSize", "1e999", "a<font size='7'>^b^</font>c"},
        Command{"a^b^c", "FontSize", "4.9", "a<font size='4'>^b^</font>c"},
        Command{"a^b^c", "FontSize", "4px", "a^b^c"},
        Command{"^a<big>b</big>^", "FontSize", "5", "<font size='5'>^a<big><font size='5'>b</font></big></font>^"},
        // In a page without a document type a table takes no size from around.
        Command{"<font face=f>^a<table><tbody><tr><td>b</td></tr></tbody></table>c^</font>", "FontSize", "5",
                "<font face='f' size='5'>^a<table><tbody><tr><td><font "
                "size='5'>b</font></td></tr></tbody></table>c^</font>"},
        Command{"<pre>^a^</pre>", "FontName", "f", "<pre><font face='f'>^a^</font></pre>"},
        Command{"^a<tt>b</tt>^", "FontName", "f", "<font face='f'>^a<tt><font face='f'>b</font></tt></font>^"}));

INSTANTIATE_TEST_SUITE_P(
    Bold, FormatCommand,
    testing::Values(Command{"a^b^c", "Bold", "", "a<b>^b^</b>c"}, Command{"a<b>^b^</b>c", "Bold", "", "a^b^c"},
                    Command{"<b>a^b^c</b>", "Bold", "", "<b>a</b>^b^<b>c</b>"},
                    Command{"<strong>^a^</strong>", "Bold", "", "^a^"},
                    // The B goes inside the FONT, so that a double click on it finds the FONT above.
                    Command{"<font size=3>^ab^</font>", "Bold", "", "<font size='3'><b>^ab^</b></font>"},
                    Command{"<font>^a</font>b<font>c^</font>", "Bold", "",
                            "<font><b>^a</b></font><b>b</b><font><b>c^</b></font>"},
                    Command{"<b>a</b>^b<b>c</b>^", "Bold", "", "<b>a</b><b>^b</b><b>c</b>^"},
                    Command{"<b>a<strong>b^c^d</strong>e</b>", "Bold", "", "<b>ab</b>^c^<b>de</b>"},
                    Command{"<b id='x'>^a^</b>", "Bold", "", "<span id='x'>^a^</span>"},
                    Command{"<h1>a^b^</h1>", "Bold", "", "<h1>a<span style='font-weight: normal;'>^b^</span></h1>"},
                    Command{"<i style='font-weight: 700'>^a^</i>", "Bold", "", "<i>^a^</i>"},
                    Command{"<b>^a</b><i>b^</i>", "Bold", "", "<b>^a</b><b><i>b^</i></b>"},
                    Command{"<p>^a</p><p>b^</p>", "Bold", "", "<p><b>^a</b></p><p><b>b^</b></p>"}));

INSTANTIATE_TEST_SUITE_P(
    Links, FormatCommand,
    testing::Values(Command{"a^b^c", "CreateLink", "u", "a<a href='u'>^b^</a>c"},
                    Command{"<font><b>^a^</b></font>", "CreateLink", "u", "<font><b><a href='u'>^a^</a></b></font>"},
                    Command{"<a href='x'>^a^</a>", "CreateLink", "u", "<a href='u'>^a^</a>"},
                    Command{"<a href='x'>a^b^c</a>", "CreateLink", "u",
                            "<a href='x'>a</a><a href='u'>^b^</a><a href='x'>c</a>"},
                    Command{"<a name='n'>a^b</a>c^", "CreateLink", "u", "<a name='n'>a</a><a href='u'>^bc^</a>"},
                    Command{"<a name='n'></a>^b^", "CreateLink", "u", "<a name='n'></a><a href='u'>^b^</a>"},
                    Command{"<a href='x'>a^</a>b^", "CreateLink", "u", "<a href='x'>a^</a><a href='u'>b^</a>"},
                    Command{"^a<select><option>b</option></select>c^", "CreateLink", "u",
                            "<a href='u'>^a<select><option>b</option></select>c^</a>"},
                    Command{"a^<img>^c", "CreateLink", "u", "a^<a href='u'><img></a>^c"},
                    Command{"a^b^c", "CreateLink", "", "a^b^c"}));

TEST(Format, OfTheWholeDocumentOnlyWhatBodyHoldsIsFormatted) {
  const std::pair<const char*, const char*> rows[] = {{"ForeColor", "<font color=\"#FF0000\">a<i>b</i></font>"},
                                                      {"Bold", "<b>a<i>b</i></b>"},
                                                      {"CreateLink", "<a href=\"red\">a<i>b</i></a>"}};
  for (const auto& [command, body] : rows) {
    TestPage page("a<i>b</i>");
    const auto range = page.document.body().createTextRange();
    ASSERT_TRUE(range->moveToElementText(page.document.documentElement()));
    EXPECT_TRUE(range->execCommand(command, false, "red"));
    EXPECT_EQ(page.Body(), body);
    EXPECT_EQ(page.Problems(), QStringList());
  }
}

TEST(Format, FaceSizeAndColorOneAfterTheOtherMakeOneFont) {
  TestPage page("a^b^c");
  const auto range = page.Range();
  range->execCommand("FontName", false, "f");
  range->execCommand("FontSize", false, "4");
  range->execCommand("ForeColor", false, "#112233");
  EXPECT_EQ(page.After(range->range()), "a<font face='f' size='4' color='#112233'>^b^</font>c");
}

// Meant in ExecCommand: FONT elements that commands have left behind are never taken away or merged.
TEST(Format, FontsLeftByCommandsAreNeverTakenAwayOrMerged) {
  TestPage page("<font color=red>a</font><font color=red>^b^</font>");
  const auto range = page.Range();
  range->execCommand("ForeColor", false, "red");
  EXPECT_EQ(page.After(range->range()), "<font color='red'>a</font><font color='#FF0000'>^b^</font>");
  range->execCommand("FontSize", false, "3");
  range->execCommand("Bold", false, "");
  range->execCommand("Bold", false, "");
  EXPECT_EQ(page.After(range->range()), "<font color='red'>a</font><font color='#FF0000' size='3'>^b^</font>");
}

struct Query {
  const char* page;
  const char* color;
  const char* face;
  const char* size;
  const char* back;
};

TEST(Format, FontAtAPlaceIsToldInThisOrder) {
  const Query queries[] = {
      {"a^", "#000000", "Times New Roman", "3", "#FFFFFF"},
      {"<font color=red face=\"'A b'\" size=5 style='background-color: blue'>a^</font>", "#FF0000", "A b", "5",
       "#0000FF"},
      {"<font color=red size=+1><font size=x face=g>a^</font></font>", "#FF0000", "g", "4", "#FFFFFF"},
      {"<table bgcolor=lime><tr><td bgcolor=''>a^</td></tr></table>", "#000000", "Times New Roman", "3", "#00FF00"},
      {"<font color=red><a href=x>a^</a></font>", "#FF0000", "Times New Roman", "3", "#FFFFFF"},
  };
  for (const Query& query : queries) {
    TestPage page(query.page);
    const auto range = page.Range();
    EXPECT_EQ(range->queryCommandValue("ForeColor"), query.color) << query.page;
    EXPECT_EQ(range->queryCommandValue("fontname"), query.face) << query.page;
    EXPECT_EQ(range->queryCommandValue("Fontsize"), query.size) << query.page;
    EXPECT_EQ(range->queryCommandValue("BACKCOLOR"), query.back) << query.page;
    EXPECT_EQ(range->queryCommandValue("Bold"), "");
  }
}

TEST(Format, BodyTellsTheFontWhereNoFontElementDoes) {
  TestPage page("<a>a^</a>");
  HTMLBodyElement body = page.document.body();
  body.setText("#010203");
  EXPECT_EQ(page.Range()->queryCommandValue("ForeColor"), "#010203");
  body.setLink("#040506");
  EXPECT_EQ(page.Range()->queryCommandValue("ForeColor"), "#040506");
  body.style().setFontFamily("Arial");
  body.style().setFontSize("x-large");
  page.document.setBgColor("#070809");
  EXPECT_EQ(page.Range()->queryCommandValue("FontName"), "Arial");
  EXPECT_EQ(page.Range()->queryCommandValue("FontSize"), "6");
  EXPECT_EQ(page.Range()->queryCommandValue("BackColor"), "#070809");
}

}  // namespace
