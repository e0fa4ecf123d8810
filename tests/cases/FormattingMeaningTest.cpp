// What the cases of formatting are judged by: the reading of a page's text, and the marks of a selection.
#include <gtest/gtest.h>

#include <ostream>

#include "HTMLDocument.h"
#include "HtmlParser.h"
#include "MarkedPage.h"
#include "Serializer.h"
#include "TextMeaning.h"
#include "TreeBuilder.h"

inline void PrintTo(const QString& text, std::ostream* out) {
  *out << '"' << text.toStdString() << '"';
}

namespace {

QStringList Differences(const QString& got, const QString& wanted, const QString& type = {}) {
  HTMLDocument ours;
  HTMLDocument theirs;
  ParseDocument(type + "<HTML><HEAD></HEAD><BODY>" + got + "</BODY></HTML>", ours.tree());
  ParseDocument(type + "<HTML><HEAD></HEAD><BODY>" + wanted + "</BODY></HTML>", theirs.tree());
  return MeaningDifferences(ours, theirs);
}

struct Pair {
  const char* one;
  const char* other;
};
void PrintTo(const Pair& pair, std::ostream* out) {
  *out << pair.one << "  and  " << pair.other;
}

class SameMeaning : public ::testing::TestWithParam<Pair> {};
class OtherMeaning : public ::testing::TestWithParam<Pair> {};

TEST_P(SameMeaning, IsSeenBothWays) {
  EXPECT_EQ(Differences(GetParam().one, GetParam().other).join("; "), "");
  EXPECT_EQ(Differences(GetParam().other, GetParam().one).join("; "), "");
}

TEST_P(OtherMeaning, IsSeenBothWays) {
  EXPECT_FALSE(Differences(GetParam().one, GetParam().other).isEmpty());
  EXPECT_FALSE(Differences(GetParam().other, GetParam().one).isEmpty());
}

const Pair sameBold[] = {
    {"foo<b>bar</b>baz", "foo<strong>bar</strong>baz"},
    {"<b>foo</b><b>bar</b>", "<b>foobar</b>"},
    {"<b><i>foo</i></b>", "<i><b>foo</b></i>"},
    {"<b><b>foo</b></b>", "<b>foo</b>"},
    {"<b>foo</b>", "<span style='font-weight: bold'>foo</span>"},
    {"<b>foo</b>", "<span style='FONT-WEIGHT:600'>foo</span>"},
    {"foo", "<span style='font-weight: 500'>foo</span>"},
    {"foo", "<b style='font-weight: normal'>foo</b>"},
    {"foo", "<b><span style='font-weight: lighter'>foo</span></b>"},
    {"<b>foo</b>", "<span style='font-weight: bolder'>foo</span>"},
    {"foo", "<span style='font-weight: 100'><span style='font-weight: bolder'>foo</span></span>"},
    {"<b>foo</b>", "<span style='font-weight: 100'><b>foo</b></span>"},
    {"<b>foo</b>", "<b style='font-weight: nonsense'>foo</b>"},
    {"foo", "<b style='font-weight: normal !important; font-weight: bold'>foo</b>"},
    {"<table><tr><th>foo</table>", "<table><tr><td><b>foo</b></table>"},
    {"<h4>foo</h4>", "<p><b>foo</b></p>"},
    {"<b><table><tr><td>foo</table></b>", "<table><tr><td>foo</table>"},
    {"<b>foo<br></b>", "<b>foo</b><br>"},
};

const Pair sameFace[] = {
    {"<font face=monospace>foo</font>", "<tt>foo</tt>"},
    {"<code>foo</code>", "<kbd>foo</kbd>"},
    {"<samp>foo</samp>", "<span style='font-family: monospace'>foo</span>"},
    {"<font face='Times New Roman'>foo</font>", "<span style='font-family: \"times new roman\"'>foo</span>"},
    {"<font face='Arial,Helvetica'>foo</font>", "<font face=' arial ,  HELVETICA'>foo</font>"},
    {"<font face=x><font face=y>foo</font></font>", "<font face=y>foo</font>"},
    {"<font face=x style='font-family: y'>foo</font>", "<font face=y>foo</font>"},
    {"<font face=x style='font-family: 3, y'>foo</font>", "<font face=x>foo</font>"},
    {"<font face='x y' size=3><b>foo</b></font>", "<span style='font: italic bold 16px/2 x y'>foo</span>"},
    {"<font face=x><table><tr><td>foo</table></font>", "<table><tr><td><font face=x>foo</font></table>"},
};

const Pair sameSize[] = {
    {"<font size=4>foo</font>", "<font size='+1'>foo</font>"},
    {"<font size=2>foo</font>", "<font size='-1'>foo</font>"},
    {"<font size=7>foo</font>", "<font size='+9'>foo</font>"},
    {"<font size=3>foo</font>", "foo"},
    {"<font size=x>foo</font>", "foo"},
    {"<font size=5><font size='+1'>foo</font></font>", "<font size=4>foo</font>"},
    {"<font size=5>foo</font>", "<span style='font-size: x-large'>foo</span>"},
    {"<font size=6>foo</font>", "<span style='font-size: 32px'>foo</span>"},
    {"<font size=6>foo</font>", "<span style='font-size: 24pt'>foo</span>"},
    {"<font size=6>foo</font>", "<span style='font-size: 200%'>foo</span>"},
    {"<font size=7>foo</font>", "<font size=5><span style='font-size: 2em'>foo</span></font>"},
    {"<font size=6>foo</font>", "<font size=5><span style='font-size: 2rem'>foo</span></font>"},
    {"<font size=6>foo</font>", "<span style='font-size: 32'>foo</span>"},
    {"<span style='font-size: larger'>foo</span>", "<big>foo</big>"},
    {"<small>foo</small>", "<sub>foo</sub>"},
    {"<h1><font size=3>foo</font></h1>", "<b>foo</b>"},
    {"<h1>foo</h1>", "<b><font size=6>foo</font></b>"},
    {"<font size=6><table><tr><td>foo</table></font>", "<table><tr><td>foo</table>"},
};

const Pair sameColor[] = {
    {"<font color=blue>foo</font>", "<font color='#0000FF'>foo</font>"},
    {"<font color=blue>foo</font>", "<span style='color: rgb(0, 0, 255)'>foo</span>"},
    {"<font color=blue>foo</font>", "<span style='color: rgb(0% 0% 100% / 1)'>foo</span>"},
    {"<font color=blue>foo</font>", "<span style='color: #00f'>foo</span>"},
    {"<font color='#0f00ff'>foo</font>", "<span style='color: rgb(15, -10, 375)'>foo</span>"},
    {"<font color=brown>foo</font>", "<span style='color: Brown'>foo</span>"},
    {"<font color=black>foo</font>", "foo"},
    {"<font color=blue><mark>foo</mark></font>", "foo"},
    {"<span style='color: rgba(1, 2, 3, 0)'>foo</span>", "<span style='color: transparent'>foo</span>"},
    {"<font color=red style='color: potato'>foo</font>", "<font color=red>foo</font>"},
    {"<font color=chucknorris>foo</font>", "<font color='#c00000'>foo</font>"},
    {"<span style='color: 0000ff'>foo</span>", "<font color=blue>foo</font>"},
    {"<font color=red><span style='font-size: 16px; color: inherit'>foo</span></font>", "<font color=red>foo</font>"},
    {"<font color=red><table><tr><td>foo</table></font>", "<table><tr><td>foo</table>"},
};

const Pair sameLink[] = {
    {"<a href=x>foo</a>", "<a href='x'><font color=blue>foo</font></a>"},
    {"<font color=red><a href=x>foo</a></font>", "<a href=x>foo</a>"},
    {"<a href=x>foo</a><a href=x>bar</a>", "<a href=x>foobar</a>"},
    {"<a name=x>foo</a>", "foo"},
    {"<a href=x><b>foo</b></a>", "<b><a href=x>foo</a></b>"},
    {"<a href=x><img src=y>foo</a>", "<img src=y><a href=x>foo</a>"},
};

const Pair sameBlanks[] = {
    {"<p>foo</p> <p>bar</p>", "<p>foo</p><p>bar</p>"},
    {"<p>foo</p><b> </b><p>bar</p>", "<p>foo</p><p>bar</p>"},
    {"<table> <tr> <td>foo</td> </tr> </table>", "<table><tr><td>foo</td></tr></table>"},
    {"<p> <b>foo</b> </p>", "<p><b> foo </b></p>"},
    {"foo <b> bar</b>", "foo <b></b> <b>bar</b>"},
    {"foo<br> bar", "foo<br><b> </b>bar"},
    {"foo<b> </b><br>bar", "foo <br>bar"},
    {"<div style='font-weight: bold'> <p>foo</p></div>", "<p><b>foo</b></p>"},
    {"foo<!-- bar -->", "foo"},
};

INSTANTIATE_TEST_SUITE_P(Bold, SameMeaning, ::testing::ValuesIn(sameBold));
INSTANTIATE_TEST_SUITE_P(Face, SameMeaning, ::testing::ValuesIn(sameFace));
INSTANTIATE_TEST_SUITE_P(Size, SameMeaning, ::testing::ValuesIn(sameSize));
INSTANTIATE_TEST_SUITE_P(Color, SameMeaning, ::testing::ValuesIn(sameColor));
INSTANTIATE_TEST_SUITE_P(Link, SameMeaning, ::testing::ValuesIn(sameLink));
INSTANTIATE_TEST_SUITE_P(Blanks, SameMeaning, ::testing::ValuesIn(sameBlanks));

const Pair otherMeanings[] = {
    // bold
    {"foo<b>bar</b>baz", "foobarbaz"},
    {"foo<b>bar</b>baz", "foo<b>ba</b>rbaz"},
    {"<b>foo</b>", "<i>foo</i>"},
    {"<h3>foo</h3>", "<h3><span style='font-weight: normal'>foo</span></h3>"},
    {"<b>foo</b>", "<span style='font-weight: 599'>foo</span>"},
    {"<b>foo</b>", "<b><span style='font-weight: lighter'>foo</span></b>"},
    {"<b><table><tr><td>foo</table></b>", "<table><tr><td><b>foo</b></table>"},
    // face
    {"<font face=x>foo</font>", "foo"},
    {"<font face=x>foo</font>", "<font face='x, y'>foo</font>"},
    {"<font face='x, y'>foo</font>", "<font face='y, x'>foo</font>"},
    {"<pre>foo</pre>", "<p>foo</p>"},
    {"<font face=x><tt>foo</tt></font>", "<font face=x>foo</font>"},
    // size
    {"<font size=4>foo</font>", "foo"},
    {"<font size=4>foo</font>", "<span style='font-size: 17px'>foo</span>"},
    {"<font size=4>foo</font>", "<font size=4><big>foo</big></font>"},
    {"<h2>foo</h2>", "<h4>foo</h4>"},
    {"<span style='font-size: 2em'>foo</span>", "<span style='font-size: 2em'><font size=3>foo</font></span>"},
    {"<small>foo</small>", "<small><font size=3>foo</font></small>"},
    // colour
    {"<font color=blue>foo</font>", "foo"},
    {"<font color=blue>foo</font>", "<font color='#0000FE'>foo</font>"},
    {"<span style='color: rgba(0, 0, 255, 0.5)'>foo</span>", "<font color=blue>foo</font>"},
    {"<span style='color: rgba(0, 0, 255, 0)'>foo</span>", "<font color=blue>foo</font>"},
    {"<a href=x>foo</a>", "<a href=x><font color=black>foo</font></a>"},
    {"<font color=red>foo</font>", "<font color=red><mark>foo</mark></font>"},
    // link
    {"<a href=x>foo</a>", "<font color=blue>foo</font>"},
    {"<a href=x>foo</a>", "<a href=y>foo</a>"},
    {"<a href=x>foo</a>", "<a name=x>foo</a>"},
    {"<a href=x>foo</a>bar", "<a href=x>foobar</a>"},
    // characters
    {"foo", "fo"},
    {"foo", "ofo"},
    {"foo", "Foo"},
    {"foo bar", "foobar"},
    {"foo bar", "foo&nbsp;bar"},
    {"foo bar", "foo  bar"},
    {"foo<br>bar", "foobar"},
    {"foo<br>bar", "foo&lt;BR&gt;bar"},
    {"foo<img src=x>", "foo"},
    {"foo<br>", "foo<img src=x>"},
    {"<p>foo</p>", ""},
    {"&#128512;", "&#128513;"},
    // blanks that show
    {"foo<b> </b>bar", "foo bar"},
    {"foo<font size=7> </font>bar", "foo bar"},
    {"<p>foo<b> </b></p>bar", "<p>foo bar</p>"},  // shows in one of them
    {"foo<a href=x> </a>bar", "foo<font color=blue> </font>bar"},
    {"<img src=x><b> </b>foo", "<img src=x> foo"},
    {"<pre><b> </b>foo</pre>", "<pre> foo</pre>"},
    {"<p><b>&nbsp;</b></p>", "<p>&nbsp;</p>"},
    {"<div style='white-space: pre'><b> </b>foo</div>", "<div style='white-space: pre'> foo</div>"},
};

INSTANTIATE_TEST_SUITE_P(All, OtherMeaning, ::testing::ValuesIn(otherMeanings));

TEST(Meaning, DifferencesAreTold) {
  EXPECT_EQ(Differences("foo<b>bar</b>baz", "fo<b>ob</b>arbaz"),
            QStringList(
                {"bold of \"o\" at 2: wanted \"yes\", got \"no\"", "bold of \"ar\" at 4: wanted \"no\", got \"yes\""}));
  EXPECT_EQ(Differences("foo<br>", "foo"), QStringList({"characters: wanted \"foo\", got \"foo<BR>\""}));
  EXPECT_EQ(Differences("<font size=4 color=red face=X>foo</font>", "<a href=y>foo</a>"),
            QStringList({"face of \"foo\" at 0: wanted \"\", got \"x\"",
                         "size of \"foo\" at 0: wanted \"16px\", got \"18px\"",
                         "colour of \"foo\" at 0: wanted \"#0000ff\", got \"#ff0000\"",
                         "link of \"foo\" at 0: wanted \"y\", got \"\""}));
}

TEST(Meaning, ATableGoesBackOnlyInAPageWithoutType) {
  const QString around = "<font size=6 color=red><b><table><tr><td>foo</table></b></font>";
  const QString inside = "<table><tr><td><font size=6 color=red><b>foo</b></font></table>";
  EXPECT_EQ(Differences(around, inside).size(), 3);
  EXPECT_EQ(Differences(around, inside, "<!DOCTYPE html>"), QStringList());
}

TEST(Meaning, BodyIsHeard) {
  HTMLDocument red;
  HTMLDocument font;
  ParseDocument("<BODY TEXT=red LINK=lime STYLE='font-size: x-small'>a<A HREF=x>b</A><TABLE><TR><TD>c</TABLE>",
                red.tree());
  ParseDocument(
      "<FONT SIZE=1 COLOR=red>a<A HREF=x><FONT COLOR='#00FF00'>b</FONT></A></FONT><TABLE><TR><TD>"
      "<FONT COLOR=red>c</FONT></TABLE>",
      font.tree());
  EXPECT_EQ(MeaningDifferences(red, font), QStringList());
}

// The place as "[" or "{" and "]" or "}", as the cases mark it.
QString Shown(HTMLDocument& document, const LiveRange& range) {
  const auto put = [&](const BoundaryPoint& point, const char* inText, const char* between) {
    if (point.IsInText()) {
      document.gateway().ReplaceData(point.container, point.offset, 0, inText);
    } else {
      document.gateway().Insert(point.container, point.before, TreeBuilder::Text(between));
    }
  };
  LiveRange places = range;
  document.tree().AddRange(&places);
  put(places.end, "]", "}");
  put(places.start, "[", "{");
  document.tree().RemoveRange(&places);
  return InnerHtml(document.tree().bodyNode(), false);
}

TEST(MarkedPage, RangesStandAtTheMarks) {
  const std::pair<const char*, const char*> rows[] = {
      {"foo[bar]baz", "foo[bar]baz"},
      {"foo[]bar", "foo[]bar"},
      {"foo{bar}baz", "foo[bar]baz"},  // only the marks cut the text
      {"foo[<b>bar</b>]baz", "foo[<b>bar</b>]baz"},
      {"foo{<b>bar</b>}baz", "foo{<b>bar</b>}baz"},
      {"[<b>bar</b>]", "{<b>bar</b>}"},  // no text is left
      {"{<p><p> <p>foo</p>}", "{<p></p><p> </p><p>foo</p>}"},
      {"<p>{}<br></p>", "<p>{}<br /></p>"},
      {"<a href='[x]' title={y}>[foo}</a>", "<a href=\"[x]\" title=\"{y}\">[foo}</a>"},
      {"{<table><tr><td>foo<td>bar</table>}", "{<table><tbody><tr><td>foo</td><td>bar</td></tr></tbody></table>}"},
      {"<table><tbody>{<tr><td>foo</tr>}<tr><td>bar</table>",
       "<table><tbody>{<tr><td>foo</td></tr>}<tr><td>bar</td></tr></tbody></table>"},
      {"<table><tr>{<td>foo</td>}<td>bar</table>", "<table><tbody><tr>{<td>foo</td>}<td>bar</td></tr></tbody></table>"},
  };
  for (const auto& [html, shown] : rows) {
    HTMLDocument document;
    LiveRange range;
    ASSERT_TRUE(MakeMarkedPage(html, document, range)) << html;
    EXPECT_EQ(Shown(document, range), QString(shown)) << html;
  }
}

TEST(MarkedPage, TwoMarksMakeARange) {
  for (const char* html : {"foo", "[foo", "[f]o]o"}) {
    HTMLDocument document;
    LiveRange range;
    EXPECT_FALSE(MakeMarkedPage(html, document, range)) << html;
  }
}

}  // namespace
