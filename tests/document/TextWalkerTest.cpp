#include "TextWalker.h"

#include <gtest/gtest.h>

#include <random>

#include "QtPrinters.h"
#include "RandomSeed.h"
#include "TestPage.h"

namespace {

// All places from the start of the page on, one step each, shown by "^" in one text.
QString AllSteps(const TestPage& page) {
  const Node* const body = page.document.tree().bodyNode();
  std::vector<BoundaryPoint> points{BoundaryPoint::AtStart(page.document.tree().bodyNode())};
  while (const auto next = StepForward(points.back(), body)) {
    points.push_back(*next);
    if (points.size() > 1000) return "no end";
  }
  // Marks are put in from the last place to the first, so that earlier marks don't move later ones.
  QStringList shown;
  for (const BoundaryPoint& point : points) shown += page.Show(point);
  return shown.join(u' ');
}

int CountSteps(const QString& html) {
  const TestPage page(html);
  int count = 0;
  BoundaryPoint at = BoundaryPoint::AtStart(page.document.tree().bodyNode());
  while (const auto next = StepForward(at, page.document.tree().bodyNode())) {
    at = *next;
    ++count;
  }
  return count;
}

TEST(TextWalker, EveryPlaceOfALine) {
  EXPECT_EQ(AllSteps(TestPage("ab")), "^ab a^b ab^");
}

struct Count {
  const char* html;
  int characters;
};

class CountCharacters : public testing::TestWithParam<Count> {};

TEST_P(CountCharacters, Forward) {
  EXPECT_EQ(CountSteps(QString::fromUtf8(GetParam().html)), GetParam().characters);
}

INSTANTIATE_TEST_SUITE_P(Cases, CountCharacters,
                         testing::Values(Count{"", 0}, Count{"abc", 3}, Count{"\xF0\x9F\x98\x80", 1},
                                         Count{"a\xF0\x9F\x98\x80"
                                               "b",
                                               3},
                                         Count{"a&nbsp;b", 3}, Count{"a  b", 4}, Count{"a  ", 3}, Count{"  a", 3},
                                         Count{"a<br>b", 3}, Count{"a<br><br>b", 4}, Count{"a<img>b", 3},
                                         Count{"a<hr>b", 3}, Count{"a<input>b", 3}, Count{"<iframe>xyz</iframe>", 1},
                                         Count{"<object>xyz</object>", 1}, Count{"<select><option>x</select>", 1},
                                         Count{"a<b>b</b><i>c</i>", 3}, Count{"a\nb", 3}, Count{"a \n  b", 3},
                                         Count{"a\r\n\tb", 3}, Count{"a<b>\n</b>b", 3}, Count{"\na", 1},
                                         Count{"a\n", 1}, Count{"a \n", 2}, Count{"a  \n  ", 3}, Count{"a \n<br>b", 4},
                                         Count{"<b>a</b> \n", 2}, Count{"\n a", 1}, Count{"a\n<br>\nb", 3},
                                         Count{"a<!--xyz-->b", 2}, Count{"a<script>xyz</script>b", 2},
                                         Count{"a<style>xyz</style>b", 2},
                                         Count{"<pre>a\n\nb</pre>", 6}));  // the edges of PRE are two of them

TEST(TextWalker, EdgesOfBlocksAndCells) {
  EXPECT_EQ(AllSteps(TestPage("a<p>b</p>c")),
            "^a<p>b</p>c a^<p>b</p>c a<p>^b</p>c a<p>b^</p>c a<p>b</p>^c a<p>b</p>c^");
  // Between two paragraphs is one step, with the line ends of the source too.
  EXPECT_EQ(CountSteps("a<p>b</p><p>c</p>d"), CountSteps("a<p>b</p>\n\n<p>c</p>\nd"));
  const QString cells = AllSteps(TestPage("<table><tr><td>a</td><td></td><td>b</td></tr></table>"));
  EXPECT_TRUE(cells.contains("<td>a^</td>"));
  EXPECT_TRUE(cells.contains("<td>^</td>")) << "an empty cell is a place";
  EXPECT_TRUE(cells.contains("<td>^b</td>"));
  EXPECT_FALSE(cells.contains("<tr>^"));
  EXPECT_EQ(CountSteps("<table><tr><td>a</td><td>b</td></tr></table>"),
            CountSteps("<table>\n <tr>\n  <td>a</td>\n  <td>b</td>\n </tr>\n</table>"));
}

TEST(TextWalker, AnEmptyBlockIsAPlace) {
  EXPECT_TRUE(AllSteps(TestPage("a<p></p>b")).contains("<p>^</p>"));
  EXPECT_TRUE(AllSteps(TestPage("<ul><li></li><li>x</li></ul>")).contains("<li>^</li>"));
}

TEST(TextWalker, BackwardFromTheMiddleOfASurrogatePair) {
  TestPage page(
      QString::fromUtf8("a\xF0\x9F\x98\x80"
                        "b"));
  const Node* const text = page.Text("a");
  EXPECT_TRUE(*StepBackward(BoundaryPoint::InText(text, 3), page.document.tree().bodyNode()) ==
              BoundaryPoint::InText(text, 1));
  EXPECT_TRUE(*StepForward(BoundaryPoint::InText(text, 1), page.document.tree().bodyNode()) ==
              BoundaryPoint::InText(text, 3));
}

QString RandomHtml(std::mt19937& random) {
  static const char* const pieces[] = {"a",
                                       "b",
                                       " ",
                                       "  ",
                                       "\n",
                                       "\n  ",
                                       "&nbsp;",
                                       "<br>",
                                       "<img>",
                                       "<b>",
                                       "</b>",
                                       "<p>",
                                       "</p>",
                                       "<font>",
                                       "</font>",
                                       "<div>",
                                       "</div>",
                                       "<table><tr><td>",
                                       "</td><td>",
                                       "</td></tr></table>",
                                       "<ul><li>",
                                       "</ul>",
                                       "<!--c-->",
                                       "<script>s</script>",
                                       "<hr>",
                                       "<pre>",
                                       "</pre>",
                                       "<li>",
                                       "\xF0\x9F\x98\x80"};
  QString html;
  for (int count = int(random() % 25); count > 0; --count)
    html += QString::fromUtf8(pieces[random() % std::size(pieces)]);
  return html;
}

// Nothing that a reader sees lies between the two points.
bool AreEquivalent(const BoundaryPoint& a, const BoundaryPoint& b, const TreeOrder& order) {
  if (a == b) return true;
  const bool inOrder = ComparePoints(order, a, b) < 0;
  const LiveRange between = inOrder ? LiveRange{a, b} : LiveRange{b, a};
  return TextBetween(between).isEmpty();
}

TEST(TextWalker, ForwardAndBackwardAgreeOnRandomPages) {
  std::mt19937 random(RandomSeed("ForwardAndBackwardAgreeOnRandomPages"));
  for (int round = 0; round < 3000; ++round) {
    const QString html = RandomHtml(random);
    const TestPage page(html);
    const Node* const body = page.document.tree().bodyNode();
    BoundaryPoint at = BoundaryPoint::AtStart(body);
    int forward = 0;
    while (const auto next = StepForward(at, body)) {
      ASSERT_LT(ComparePoints(page.document.tree().order(), at, *next), 0) << html.toStdString();
      const auto back = StepBackward(*next, body);
      ASSERT_TRUE(back) << html.toStdString() << "\n" << page.Show(*next).toStdString();
      ASSERT_TRUE(AreEquivalent(at, *back, page.document.tree().order()))
          << html.toStdString() << "\nfrom " << page.Show(at).toStdString() << "\nto   "
          << page.Show(*next).toStdString() << "\nback " << page.Show(*back).toStdString();
      const auto again = StepForward(*back, body);
      ASSERT_TRUE(again && AreEquivalent(*next, *again, page.document.tree().order()))
          << html.toStdString() << "\nto    " << page.Show(*next).toStdString() << "\nback  "
          << page.Show(*back).toStdString() << "\nagain " << (again ? page.Show(*again).toStdString() : "none");
      at = *next;
      ASSERT_LT(++forward, 1000) << html.toStdString();
    }
    int backward = 0;
    at = BoundaryPoint::AtEnd(body);
    while (const auto next = StepBackward(at, body)) {
      ASSERT_GT(ComparePoints(page.document.tree().order(), at, *next), 0) << html.toStdString();
      at = *next;
      ASSERT_LT(++backward, 1000) << html.toStdString();
    }
    ASSERT_EQ(forward, backward) << html.toStdString();
  }
}

}  // namespace
