// Where the mouse hits the page, there the insertion point, the caret bar and the selection are: on pages of many kinds
// all of them are held against the engine's own word on the same spot. The engine is asked by the page's own script,
// with paths through its tree, so that nothing of the bridge takes part in the answer.
#include <gtest/gtest.h>

#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cmath>
#include <random>

#include "HTMLSelectionObject.h"
#include "HTMLTxtRange.h"
#include "HostedView.h"
#include "RandomSeed.h"
#include "Twips.h"

namespace {

constexpr int pointsPerPage = 100;
constexpr int dragsPerPage = 20;
constexpr int placesPerLetter = 10;
constexpr int viewWidth = 800;
constexpr int viewHeight = 600;

// What the page tells of a point, of a place given by its path, and of its selection.
const char asking[] = R"(
window.geometry = (() => {
  const pathOf = (container, offset) => {
    const steps = [];
    for (let node = container; node.parentNode; node = node.parentNode)
      steps.unshift([...node.parentNode.childNodes].indexOf(node));
    return steps.join('/') + ':' + offset;
  };
  const nodeAt = steps => steps.reduce((node, step) => node.childNodes[step], document);
  const boxOf = node => {
    const whole = document.createRange();
    whole.selectNode(node);
    const owner = node.nodeType === 1 ? node : whole;
    return owner.getClientRects().length ? owner.getBoundingClientRect() : null;
  };
  const corner = (container, offset) => {
    const place = document.createRange();
    place.setStart(container, offset);
    place.collapse(true);
    const own = place.getClientRects();
    if (own.length && own[0].height) return [own[0].left, own[0].top];
    const isText = container.nodeType === 3;
    for (let n = isText ? container.nextSibling : container.childNodes[offset]; n; n = n.nextSibling) {
      const box = boxOf(n);
      if (box) return [box.left, box.top];
    }
    for (let n = isText ? container.previousSibling : container.childNodes[offset - 1]; n; n = n.previousSibling) {
      const box = boxOf(n);
      const isAtRight = n.nodeType === 1 && getComputedStyle(n).float === 'right';
      if (box && isAtRight) {
        const around = n.parentNode.getBoundingClientRect();
        return [around.left + parseFloat(getComputedStyle(n.parentNode).paddingLeft), box.top];
      }
      if (box) return [box.right, box.top];
    }
    const box = boxOf(isText ? container.parentNode : container);
    return box ? [box.left, box.top] : [NaN, NaN];
  };
  const describe = (container, offset) => {
    const isText = container.nodeType === 3;
    const data = isText ? container.data : '';
    const nameOf = node => node ? node.nodeName.toUpperCase() : '';
    const lead = document.createRange();
    lead.setStart(document.body, 0);
    if (document.body.contains(container)) lead.setEnd(container, offset);
    return {path: pathOf(container, offset), corner: corner(container, offset), lead: lead.toString().length,
            before: isText ? data.slice(offset - 1, offset) || '' : nameOf(container.childNodes[offset - 1]),
            behind: isText ? data.slice(offset, offset + 1) : nameOf(container.childNodes[offset])};
  };
  const at = (x, y) => {
    let hit = document.elementFromPoint(x, y);
    if (hit === document.documentElement) hit = document.body;
    const caret = document.caretRangeFromPoint(x, y);
    let container = caret.startContainer;
    let offset = caret.startOffset;
    let table = null;
    if (hit === document.body)
      for (let n = container; n !== document.body && n.parentNode; n = n.parentNode) if (n.nodeName === 'TABLE') table = n;
    if (table) {
      const box = table.getBoundingClientRect();
      const isBefore = y < box.top || (y < box.bottom && x < box.left);
      container = table.parentNode;
      offset = [...container.childNodes].indexOf(table) + (isBefore ? 0 : 1);
    }
    // Below the last line what stands there without being on a line is followed too.
    if (hit === document.body) {
      const nodes = [...document.body.childNodes];
      const top = nodes.findIndex(n => n.contains(container));
      const later = nodes.slice(container === document.body ? offset : top + 1);
      const line = document.createRange();
      line.setStart(container, offset);
      line.collapse(true);
      const own = line.getClientRects()[0];
      const isPassed = n => {
        const box = n.nodeType === 8 ? null : boxOf(n);
        return !box || box.bottom <= y || (n.nodeType === 1 && getComputedStyle(n).float !== 'none');
      };
      if (later.some(n => n.nodeType === 1) && (!own || y >= own.bottom) && later.every(isPassed)) {
        container = document.body;
        offset = nodes.length;
      }
    }
    const font = [...hit.children].some(child => child.nodeName === 'FONT');
    const takes = ['FONT', 'B', 'A', 'STRONG', 'BODY'].includes(hit.nodeName) || (hit.nodeName === 'TD' && font);
    return JSON.stringify({hit: hit.nodeName, takes, place: describe(container, offset), atTable: !!table,
                           text: document.body.textContent, scroll: [scrollX, scrollY]});
  };
  const place = (steps, offset) =>
    JSON.stringify({place: describe(nodeAt(steps), offset), text: document.body.textContent});
  return {at, place, selected: () => String(getSelection())};
})();
)";

struct TestPage {
  const char* name;
  QByteArray (*html)();
  int scrollX = 0;
  int scrollY = 0;
  void (*prepare)(HostedView& page) = nullptr;
};

void PrintTo(const TestPage& page, std::ostream* out) {
  *out << page.name;
}

QByteArray Words(int count, int seed) {
  static const char* const words[] = {"stone",   "a", "window",  "it", "river&nbsp;bank", "light",   "to",
                                      "evening", "W", "illness", "of", "pages",           "quarter", "&amp;"};
  std::mt19937 random{unsigned(seed)};
  QByteArray text;
  for (int i = 0; i < count; ++i) {
    if (i > 0) text += i % 12 == 0 ? "\n  " : " ";
    text += words[random() % std::size(words)];
  }
  return text;
}

QByteArray Body(const QByteArray& content) {
  return "<HTML><HEAD><TITLE>t</TITLE></HEAD><BODY BGCOLOR=\"#FFFFFF\">" + content + "</BODY></HTML>";
}

QByteArray NestedTables() {
  QByteArray html = "<FONT SIZE=4>" + Words(9, 1) + "</FONT><BR>";
  html += "<TABLE BORDER=2 CELLPADDING=6 WIDTH=640><TR><TD><FONT SIZE=3>" + Words(30, 2) + "</FONT></TD>\n<TD>" +
          "<FONT>" + Words(4, 3) + "</FONT><TABLE BORDER=1 CELLSPACING=4><TR><TD><FONT>" + Words(6, 4) +
          "</FONT></TD><TD>" + Words(5, 5) + "</TD></TR>\n<TR><TD COLSPAN=2 HEIGHT=60 VALIGN=bottom><FONT SIZE=2>" +
          Words(12, 6) + "</FONT></TD></TR></TABLE></TD></TR>\n<TR><TD HEIGHT=70><FONT></FONT></TD><TD ALIGN=right>" +
          "<FONT COLOR=\"#800000\"><B>" + Words(3, 7) + "</B> " + Words(8, 8) + "</FONT></TD></TR></TABLE>\n";
  html += Words(40, 9) + "<CENTER><TABLE BORDER=1><TR><TD><FONT SIZE=5>" + Words(10, 37) +
          "</FONT></TD><TD><TABLE BORDER=3><TR><TD><FONT>" + Words(4, 38) +
          "</FONT></TD></TR></TABLE></TD></TR></TABLE></CENTER><FONT SIZE=5>" + Words(60, 39) + "</FONT>";
  html += "<TABLE BORDER=1 ALIGN=center WIDTH=300><TR><TD><FONT>" + Words(7, 10) + "</FONT></TD></TR></TABLE>";
  return Body(html);
}

QByteArray Floats() {
  return Body("<TABLE ALIGN=left BORDER=1 WIDTH=180><TR><TD><FONT>" + Words(14, 11) + "</FONT></TD></TR></TABLE>" +
              Words(70, 12) + "<BR><FONT STYLE=\"float:right;width:150px;background:#EEEEEE\">" + Words(20, 13) +
              "</FONT><FONT SIZE=4>" + Words(60, 14) + "</FONT><BR CLEAR=all><IMG ALIGN=left WIDTH=90 HEIGHT=70>" +
              "<IMG ALIGN=right WIDTH=60 HEIGHT=110><B>" + Words(70, 15) +
              "</B><BR><TABLE ALIGN=right BORDER=1><TR><TD><FONT>" + Words(6, 140) +
              "</FONT></TD></TR></TABLE><FONT SIZE=5>" + Words(110, 141) + "</FONT>");
}

QByteArray LongParagraphs() {
  return Body("<P><FONT>" + Words(150, 16) + "</FONT></P>\n<P ALIGN=justify>" + Words(90, 17) +
              "</P>\n<P ALIGN=center><STRONG>" + Words(60, 18) + "</STRONG> <I>" + Words(12, 19) +
              "</I></P><FONT SIZE=5>" + Words(120, 20) + "</FONT><P>" + Words(300, 142) + "<P><B>" + Words(200, 143) +
              "</B>");
}

QByteArray Images() {
  const char dot[] = "data:image/gif;base64,R0lGODlhAQABAIAAAP8AAP///yH5BAAAAAAALAAAAAABAAEAAAICRAEAOw==";
  return Body("<FONT>" + Words(20, 21) + "<IMG SRC=\"picture.png\">" + Words(20, 22) + "<IMG SRC=\"" + dot +
              "\" WIDTH=70 HEIGHT=40 ALIGN=middle>" + Words(30, 23) + "</FONT><BR><IMG SRC=\"" + dot +
              "\" WIDTH=300 HEIGHT=80><IMG SRC=\"" + dot + "\" WIDTH=40 HEIGHT=20><BR>" + Words(20, 24) +
              "<IMG SRC=\"picture.png\" ALIGN=texttop> <A HREF=\"other.html\"><IMG SRC=\"picture.png\" BORDER=2>" +
              Words(10, 25) + "</A><BR><IMG SRC=\"missing.png\" ALT=\"none\"><BR>" + Words(40, 26) +
              "<BR><FONT SIZE=6>" + Words(30, 144) + "<IMG SRC=\"picture.png\">" + Words(30, 145) + "</FONT>");
}

QByteArray RightToLeft() {
  const QByteArray hebrew = "שלום עולם זהו משפט ארוך למדי ";
  const QByteArray arabic = "هذا نص طويل من اليمين إلى اليسار ";
  return "<HTML><HEAD><META CHARSET=utf-8></HEAD><BODY DIR=rtl><FONT SIZE=4>" + hebrew.repeated(6) + "</FONT><BR>" +
         arabic.repeated(7) + " <B>left to right</B> " + hebrew.repeated(3) + "<BR><FONT DIR=ltr SIZE=5>begin " +
         hebrew.repeated(3) + " end 12345</FONT><TABLE BORDER=1 WIDTH=500><TR><TD><FONT>" + hebrew.repeated(4) +
         "</FONT></TD><TD DIR=ltr><FONT>" + Words(15, 27) + "</FONT></TD></TR></TABLE>" + arabic.repeated(4) +
         "<P><FONT SIZE=5>" + hebrew.repeated(4) + "123 " + arabic.repeated(4) + "</FONT><P DIR=ltr><B>" +
         arabic.repeated(9) + Words(20, 146) + "</B></BODY></HTML>";
}

QByteArray Standards() {
  return "<!DOCTYPE html>\n<!-- a note -->\n<html>\n<head><title>t</title></head>\n<body>\n<font size=\"5\">" +
         Words(10, 28) + "</font>\n<h2>" + Words(6, 29) + "</h2>\n<div style=\"width:60%;padding:10px\">" +
         Words(30, 30) + " <a href=\"x.html\">" + Words(12, 31) + "</a></div>\n<ul>\n<li>" + Words(5, 32) +
         "</li>\n<li><b>" + Words(20, 33) + "</b></li>\n</ul>\n<table border=\"1\">\n<tr>\n<td><font>" + Words(9, 34) +
         "</font></td>\n<td>" + Words(3, 35) + "</td>\n</tr>\n</table>\n<pre>one\n  two\tthree\n</pre>\n" +
         Words(60, 36) + "\n<font size=\"6\">" + Words(40, 147) + "</font>\n</body>\n</html>\n";
}

QByteArray Scrolled() {
  QByteArray html;
  for (int i = 0; i < 40; ++i) {
    html += "<FONT SIZE=" + QByteArray::number(i % 6 + 1) + ">" + Words(20 + i, 40 + i) + "</FONT><BR>\n";
    if (i % 5 == 2)
      html += "<TABLE BORDER=1 WIDTH=1300><TR><TD><FONT>" + Words(40, 90 + i) + "</FONT></TD></TR></TABLE>";
  }
  return Body(html);
}

// What shows and where lines end is told by tags here, as the model knows no styles.
QByteArray Mixed() {
  return "<HTML><HEAD><META CHARSET=utf-8></HEAD>"
         "<BODY><!-- note --><FONT SIZE=5>caf\u00e9 e\u0301te\u0301 \U0001F600\U0001F680 \u4e2d\u6587\u5b57 " +
         Words(9, 50) + "</FONT><SPAN>plain</SPAN> &nbsp; &nbsp; tail<BR><BR>" + Words(6, 51) +
         "<SCRIPT>var unseen = 1;</SCRIPT><FONT><SPAN>" + Words(6, 52) + "</SPAN> after</FONT><HR>" +
         "<B></B><A NAME=x></A><B>" + Words(20, 53) + "</B><PRE>one\n  two\tthree\n</PRE><OL><LI><FONT>" +
         Words(9, 54) + "</FONT><LI>" + Words(4, 55) + "</OL><INPUT TYPE=checkbox> <INPUT TYPE=button VALUE=press> " +
         Words(12, 56) + "<!-- more --> " + Words(12, 57) + "<DIV ALIGN=right><STRONG>" + Words(40, 58) +
         "</STRONG></DIV><FONT SIZE=6>fi ffl AVA " + Words(30, 59) +
         "</FONT>\n\n<BR>\n<TABLE WIDTH=\"100%\" BORDER=1>\n<TR>" + "\n<TD>\n<FONT>\n" + Words(30, 60) +
         "\n</FONT>\n</TD>\n<TD><IMG WIDTH=30 HEIGHT=20><FONT>" + Words(5, 61) + "</FONT></TD></TR>\n</TABLE>\n" +
         Words(50, 62) + "</BODY></HTML>";
}

// The engine has its caret in such a table where the page beside or below it is hit.
QByteArray LooseTables() {
  const QByteArray table = "<TABLE STYLE=\"display:block;width:250px\" BORDER=1><TR><TD><FONT>";
  const QByteArray end = "</FONT></TD></TR></TABLE>";
  const QByteArray nested = table + Words(12, 161) + "</FONT>" + table + Words(4, 162) + end + "</TD></TR></TABLE>";
  return Body("<FONT SIZE=5>" + Words(40, 160) + "</FONT>" + nested + Words(20, 163) + table + Words(30, 164) + end +
              Words(9, 165) + nested);
}

QByteArray Empty() {
  return Body({});
}

// As the program's own commands build a page up: blocks, a table, and fonts given to what was dragged over.
void BuildUp(HostedView& page) {
  WBUC& view = page.jWB();
  const char* const faces[] = {"Arial", "Times New Roman", "Courier New"};
  for (int size = 1; size <= 6; ++size)
    view.AddNewElement(QStringLiteral("<FONT FACE=\"%1\" SIZE=%2 COLOR=\"#000080\">%3</FONT><BR>")
                           .arg(QLatin1String(faces[size % 3]))
                           .arg(size)
                           .arg(QString::fromLatin1(Words(12 * (7 - size), size))));
  view.AddTable(QStringLiteral("400"), QStringLiteral("90"), QStringLiteral("2"), QStringLiteral("#FFFFCC"),
                QStringLiteral("center"), QStringLiteral("left"), QStringLiteral("middle"), QStringLiteral("4"));
  for (int block = 0; block < 6; ++block)
    view.AddNewElement(
        QStringLiteral("<FONT FACE=\"Arial\" SIZE=5>%1</FONT><BR>").arg(QString::fromLatin1(Words(25, 150 + block))));
  page.LiveHtml();
  const auto word = [&page](int block) {
    const QString font = QStringLiteral("body > font:nth-of-type(%1)").arg(block);
    return page.Drag(page.PointIn(font, 3), page.PointIn(font, 20));
  };
  ASSERT_TRUE(word(2));
  view.SetSelFontSize(QStringLiteral("6"));
  ASSERT_TRUE(word(4));
  view.ToggleBold();
  ASSERT_TRUE(word(5));
  view.SetSelFontFace(QStringLiteral("Courier New"));
  view.SetSelColor(QStringLiteral("#FF0000"));
  page.LiveHtml();
}

const TestPage pages[] = {
    {"NestedTables", NestedTables},     {"Floats", Floats},
    {"LongParagraphs", LongParagraphs}, {"Images", Images},
    {"RightToLeft", RightToLeft},       {"Standards", Standards},
    {"Scrolled", Scrolled, 150, 700},   {"Mixed", Mixed},
    {"LooseTables", LooseTables},       {"FontBlocks", Empty, 0, 0, BuildUp},
};

// A place in the words of the page's script.
struct Place {
  QString path, before, behind;
  bool operator==(const Place&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Place& place) {
  return out << place.path.toStdString() << " between '" << place.before.toStdString() << "' and '"
             << place.behind.toStdString() << "'";
}

Place PlaceOf(const QJsonObject& told) {
  return {told[QLatin1String("path")].toString(), told[QLatin1String("before")].toString(),
          told[QLatin1String("behind")].toString()};
}

Place PlaceOf(const BoundaryPoint& point) {
  QStringList steps;
  for (const Node* node = point.container; node->parent(); node = node->parent()) {
    int index = 0;
    for (const Node* before = node->previous(); before; before = before->previous()) ++index;
    steps.prepend(QString::number(index));
  }
  Place place{steps.join(u'/') + u':' + QString::number(point.DomOffset()), {}, {}};
  const auto nameOf = [](const Node* node) {
    if (!node) return QString();
    if (node->IsElement()) return HTMLElement(const_cast<Node*>(node)).tagName().toUpper();
    return node->IsText() ? QStringLiteral("#TEXT") : QStringLiteral("#COMMENT");
  };
  if (point.IsInText()) {
    place.before = point.container->data().mid(point.offset - 1, point.offset > 0 ? 1 : 0);
    place.behind = point.container->data().mid(point.offset, 1);
  } else {
    place.before = nameOf(point.before ? point.before->previous() : point.container->lastChild());
    place.behind = nameOf(point.before);
  }
  return place;
}

// Steps as a JavaScript array and the offset, for the page's script.
QString Arguments(const QString& path) {
  const QString steps = path.section(u':', 0, 0).replace(u'/', u',');
  return QStringLiteral("[%1],%2").arg(steps, path.section(u':', 1));
}

class Geometry : public testing::TestWithParam<TestPage> {
 protected:
  void SetUp() override {
    const TestPage& param = GetParam();
    QImage picture(50, 35, QImage::Format_RGB32);
    picture.fill(Qt::darkGreen);
    ASSERT_TRUE(picture.save(page.Folder() + QStringLiteral("/picture.png")));
    ASSERT_TRUE(page.Load(param.html(), param.prepare != nullptr));
    if (param.prepare) param.prepare(page);
    ASSERT_FALSE(HasFatalFailure());
    page.Script(QString::fromLatin1(asking));
    page.Script(QStringLiteral("scrollTo(%1, %2)").arg(param.scrollX).arg(param.scrollY));
    ASSERT_EQ(page.ScriptText(QStringLiteral("[scrollX, scrollY].join()")).toStdString(),
              QStringLiteral("%1,%2").arg(param.scrollX).arg(param.scrollY).toStdString());
  }
  void TearDown() override {
    const QString live = page.LiveHtml();
    EXPECT_EQ(page.ModelHtml().toStdString(), live.toStdString());
  }

  WBUC& view() { return page.jWB(); }

  QJsonObject Ask(const QString& expression) {
    return QJsonDocument::fromJson(page.ScriptText(QStringLiteral("geometry.") + expression).toUtf8()).object();
  }
  QJsonObject AskAt(QPoint point) { return Ask(QStringLiteral("at(%1,%2)").arg(point.x()).arg(point.y())); }

  // The next of the points that are spread over the view: one in each field of a grid, somewhere in the field.
  QPoint PointNumber(int number, int columns, int rows) {
    const int width = (viewWidth - 16) / columns;  // without the scroll bars
    const int height = (viewHeight - 16) / rows;
    return {number % columns * width + int(random() % unsigned(width)),
            number / columns % rows * height + int(random() % unsigned(height))};
  }

  void ExpectCorner(const QJsonObject& place, const QVariant& xTwips, const QVariant& yTwips) {
    const QJsonArray corner = place[QLatin1String("corner")].toArray();
    ASSERT_EQ(corner.size(), 2);
    ASSERT_TRUE(corner.at(0).isDouble() && corner.at(1).isDouble()) << "the engine has no rectangle";
    EXPECT_NEAR(xTwips.toInt() / 15.0, corner.at(0).toDouble(), 1.0);
    EXPECT_NEAR(yTwips.toInt() / 15.0, corner.at(1).toDouble(), 1.0);
  }

  // One letter at the insertion point; `told` is what the page said of the place before.
  void TypeLetter(const QJsonObject& told) {
    QSignalSpy keys(&view(), &WBUC::KeyPress);
    ASSERT_TRUE(page.Key(Qt::Key_Q, QStringLiteral("q")));
    ASSERT_TRUE(view().HasCurrentTextRange());
    const Place behind = PlaceOf(view().CurrentTextRange()->range().start);
    const QJsonObject now = Ask(QStringLiteral("place(%1)").arg(Arguments(behind.path)));
    const QJsonObject place = now[QLatin1String("place")].toObject();
    EXPECT_EQ(PlaceOf(place), behind);
    const int lead = told[QLatin1String("place")].toObject()[QLatin1String("lead")].toInt();
    const QString text = told[QLatin1String("text")].toString();
    EXPECT_EQ(now[QLatin1String("text")].toString(), text.left(lead) + u'q' + text.mid(lead));
    EXPECT_EQ(place[QLatin1String("lead")].toInt(), lead + 1);
    EXPECT_EQ(keys[0][0].toString(), QStringLiteral("q"));
    ExpectCorner(place, keys[0][1], keys[0][2]);
  }

  HostedView page;
  std::mt19937 random{RandomSeed("Points")};
};

TEST_P(Geometry, TheInsertionPointStandsWhereTheEngineHasItsCaret) {
  int places = 0;
  int letters = 0;
  int besideTables = 0;
  for (int number = 0; number < pointsPerPage; ++number) {
    const QPoint point = PointNumber(number, 10, 10);
    SCOPED_TRACE(testing::Message() << "click " << number << " at " << point.x() << ", " << point.y());
    // What is typed is brought into view.
    page.Script(QStringLiteral("scrollTo(%1, %2)").arg(GetParam().scrollX).arg(GetParam().scrollY));
    QSignalSpy clicks(&view(), &WBUC::Click);
    ASSERT_TRUE(page.Click(point));
    const QJsonObject told = AskAt(point);
    const QJsonObject place = told[QLatin1String("place")].toObject();
    const QList<QVariant> click = clicks[0];
    EXPECT_EQ(told[QLatin1String("scroll")].toArray(), QJsonArray({GetParam().scrollX, GetParam().scrollY}));
    EXPECT_EQ(click[1].toInt(), PixelsToTwips(point.x()));
    EXPECT_EQ(click[2].toInt(), PixelsToTwips(point.y()));
    const bool takes = told[QLatin1String("takes")].toBool();
    ASSERT_EQ(view().HasCurrentTextRange(), takes) << told[QLatin1String("hit")].toString().toStdString();
    if (!takes) {
      EXPECT_EQ(click[3].toInt(), -1);
      EXPECT_EQ(click[4].toInt(), -1);
      continue;
    }
    const LiveRange& range = view().CurrentTextRange()->range();
    EXPECT_TRUE(range.IsCollapsed());
    EXPECT_EQ(PlaceOf(range.start), PlaceOf(place));
    ExpectCorner(place, click[3], click[4]);
    if (told[QLatin1String("atTable")].toBool()) ++besideTables;
    if (++places % placesPerLetter == 0) {
      ASSERT_NO_FATAL_FAILURE(TypeLetter(told));
      ++letters;
    }
    if (HasFailure()) break;
  }
  EXPECT_GE(places, pointsPerPage / 4);
  if (GetParam().html == LooseTables) {
    EXPECT_GT(besideTables, 0);
  }
  EXPECT_GE(letters, pointsPerPage / 4 / placesPerLetter);
}

TEST_P(Geometry, ADragSelectsWhatTheEngineHighlights) {
  int selections = 0;
  for (int number = 0; number < dragsPerPage; ++number) {
    const QPoint from = PointNumber(number * 7, 5, 4);
    const QPoint to = PointNumber(number * 3 + 5, 5, 4);
    SCOPED_TRACE(testing::Message() << "drag " << number << " from " << from.x() << ", " << from.y() << " to " << to.x()
                                    << ", " << to.y());
    ASSERT_TRUE(page.Drag(from, to));
    const QString highlighted = page.ScriptText(QStringLiteral("geometry.selected()"));
    const auto range = page.document().selection().createRange();
    ASSERT_TRUE(range);
    EXPECT_EQ(range->text().simplified().toStdString(), highlighted.simplified().toStdString());
    if (!highlighted.simplified().isEmpty()) ++selections;
  }
  EXPECT_GE(selections, dragsPerPage / 2);
}

INSTANTIATE_TEST_SUITE_P(OnPages, Geometry, testing::ValuesIn(pages),
                         [](const auto& tested) { return std::string(tested.param.name); });

}  // namespace
