#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>

#include "HtmlParser.h"
#include "RandomSeed.h"
#include "Serializer.h"
#include "TestPage.h"
#include "TreeBuilder.h"

// Random edits of random pages against what always holds of a document, under the sanitizers:
// FuzzHtml [ITERATIONS [SEED]]. Without a number of iterations it runs for about eight seconds.
//
// Pages are of two sorts. Wild ones are made of anything, half of it broken. Tidy ones hold only what HTML can write
// down and read back: no P, LI, A, FORM, NOBR, BUTTON or heading that could come to stand inside its like, nothing but
// rows and cells where a table wants them. Their text, and their file, must parse into the same tree at all times.
namespace {

constexpr auto kDuration = std::chrono::seconds(8);

class Maker {
 public:
  Maker(std::mt19937& random, bool tidy) : random_(random), tidy_(tidy) {}

  QString Html(int size) {
    if (tidy_) return Tidy(size);
    QString html = Below(2) ? Tidy(size) : Wild(size);
    for (int count = Below(4); count > 0 && !html.isEmpty(); --count) Mutate(html);
    return html;
  }

  QString Text() {
    static const char* const texts[] = {
        "a",     "b c", " ",    "  ", "\n",           " \n ", "\xC2\xA0", "\xF0\x9F\x98\x80",
        "<&>\"", "xyz", "\n\n", "\r", "\xC3\xA9.\n.", "\x01"};
    return QString::fromUtf8(texts[Below(std::size(texts))]);
  }

  int Below(std::size_t bound) { return int(random_() % bound); }

 private:
  QString Tidy(int size) {
    static const char* const leaves[] = {"<br>",
                                         "<img src=a.png style='x:y' alt='&quot;'>",
                                         "<hr>",
                                         "<!--c-->",
                                         "<script>1<2</script>",
                                         "<style>a>b</style>",
                                         "<input value='a&amp;b'>",
                                         "<textarea>\n\n&lt;i></textarea>",
                                         "<pre>\n\n</pre>"};
    static const char* const tags[] = {"b", "i", "font", "span", "div", "center", "u", "template", "pre", "listing"};
    QString html;
    for (; size > 0; --size) {
      switch (Below(5)) {
        case 0:
        case 1:
          html += Text().toHtmlEscaped();
          break;
        case 2:
          html += leaves[Below(std::size(leaves))];
          break;
        case 3: {
          const QString tag = tags[Below(std::size(tags))];
          html += '<' + tag + (Below(2) ? " id='a&lt;b' " : "") + '>' + Tidy(size / 2) + "</" + tag + '>';
          break;
        }
        default:
          if (Below(3)) break;
          html += "<table>\n<tbody><tr><td>" + Tidy(size / 3) + "</td><td></td></tr>\n<tr><th>" + Tidy(size / 3) +
                  "</th></tr></tbody></table>";
      }
    }
    return html;
  }

  QString Wild(int size) {
    static const char* const pieces[] = {"<p>",        "</p>",
                                         "<a href=x>", "</a>",
                                         "<table>",    "</table>",
                                         "<tr>",       "<td>",
                                         "</td>",      "<caption>",
                                         "<col>",      "<b>",
                                         "</b>",       "<font size=2>",
                                         "</font>",    "<select>",
                                         "<option>",   "<button>",
                                         "<svg>",      "<g>",
                                         "</svg>",     "<math><mi>",
                                         "<template>", "</template>",
                                         "<textarea>", "</textarea>",
                                         "<pre>\n",    "<body id=x>",
                                         "<html>",     "<head>",
                                         "<title>",    "<frameset>",
                                         "<frame>",    "<plaintext>",
                                         "<noscript>", "</noscript>",
                                         "<xmp>",      "<li>",
                                         "<ul>",       "<h1>",
                                         "<form>",     "<img",
                                         "<iframe>",   "</iframe>",
                                         "<object>",   "<!--",
                                         "-->",        "<!doctype html>",
                                         "<br/>",      "</br>",
                                         "&nbsp;",     "&#0;",
                                         "&#xfeff;",   "&#xd800;",
                                         "text",       " ",
                                         "\n",         "\r\n",
                                         "'",          "\"",
                                         ">",          "<"};
    QString html;
    for (; size > 0; --size) html += pieces[Below(std::size(pieces))];
    return html;
  }

  void Mutate(QString& html) {
    const int at = Below(std::size_t(html.size()));
    switch (Below(3)) {
      case 0:
        html.remove(at, 1 + Below(5));
        break;
      case 1:
        html.insert(at, QChar(char16_t(Below(6) ? 32 + Below(96) : Below(0xFFFF))));
        break;
      default:
        html.insert(at, html.mid(Below(std::size_t(html.size())), 1 + Below(12)));
    }
  }

  std::mt19937& random_;
  bool tidy_;
};

class Playground {
 public:
  Playground(std::mt19937& random, bool tidy) : make_(random, tidy), tidy_(tidy), page_(make_.Html(12).remove(u'^')) {
    if (const Node* body = page_.document.tree().bodyNode()) {
      for (int count = 0; count < 4; ++count)
        ranges_.push_back(std::make_shared<HTMLTxtRange>(
            page_.document, LiveRange{BoundaryPoint::AtStart(body), BoundaryPoint::AtStart(body)}));
    }
  }

  bool HasBody() const { return page_.document.tree().bodyNode() != nullptr; }

  void Step() {
    HTMLTxtRange& range = *ranges_[std::size_t(make_.Below(ranges_.size()))];
    switch (make_.Below(13)) {
      case 0:
        range.move("character", make_.Below(21) - 10);
        break;
      case 1:
        range.moveEnd("character", make_.Below(21) - 10);
        break;
      case 2:
        range.move("textedit", make_.Below(2) ? 1 : -1);
        break;
      case 3:
        range.moveToElementText(AnyElement());
        break;
      case 4:
        range.pasteHTML("");
        break;
      case 5:
      case 6:
        if (MayPaste(range)) range.pasteHTML(make_.Html(1 + make_.Below(4)));
        break;
      case 7:
        if (MayPaste(range)) range.setText(make_.Text());
        break;
      case 8: {
        const HTMLTxtRange& other = *ranges_[std::size_t(make_.Below(ranges_.size()))];
        const QString html = other.htmlText();
        if (MayPaste(range) && !html.startsWith(QLatin1String("<t")) && (!tidy_ || IsTidyAlone(html)))
          range.pasteHTML(html);
        break;
      }
      case 9: {
        static const char* const places[] = {"BeforeBegin", "AfterBegin", "BeforeEnd", "AfterEnd"};
        const int place = make_.Below(4);
        HTMLElement element = AnyElement();
        const Node* const parent = place == 0 || place == 3 ? element.node()->parent() : element.node();
        if (!tidy_ || HoldsAnything(parent)) element.insertAdjacentHTML(places[place], make_.Html(2));
        break;
      }
      case 10: {
        HTMLElement element = AnyElement();
        if (element.node()->tag() == Known().body || element.node()->tag() == Known().html) break;
        if (!tidy_ || HoldsAnything(element.node()->parent()))
          element.setOuterHTML(make_.Below(2) ? "" : make_.Html(2));
        break;
      }
      case 11:
        AnyElement().setAttribute(make_.Below(2) ? "style" : "Title", make_.Text());
        break;
      default:
        range.select();
        range.text();
    }
    Check();
  }

  // Grown too large to be quick.
  bool IsLarge() const { return page_.document.tree().order().ElementCount() > 150; }

 private:
  HTMLElement AnyElement() {
    return page_.document.all().item(make_.Below(std::size_t(page_.document.all().length())));
  }

  static bool HoldsAnything(const Node* node) {
    return node && node->IsElement() && !node->tag()->isTablePart && !node->tag()->isVoid && !node->tag()->isHidden &&
           node->tag() != Known().html && node->tag() != Known().textarea && node->tag()->localName != u"colgroup";
  }
  bool MayPaste(const HTMLTxtRange& range) const {
    if (!tidy_) return true;
    const Node* const container = range.range().start.container;
    return HoldsAnything(container->IsText() ? container->parent() : container);
  }

  static bool IsTidyAlone(const QString& html) {
    return !html.contains(QLatin1String("<td")) && !html.contains(QLatin1String("<th")) &&
           !html.contains(QLatin1String("<head"));
  }

  [[noreturn]] void Fail(const QString& what) {
    std::fprintf(stderr, "%s\n%s\n", qPrintable(what), qPrintable(page_.Body()));
    std::abort();
  }

  void Check() {
    const QStringList problems = page_.Problems();
    if (!problems.isEmpty()) Fail(problems.join(u'\n'));
    for (const auto& range : ranges_) {
      if (ComparePoints(page_.document.tree().order(), range->range().start, range->range().end) > 0)
        Fail("a reversed range");
      range->htmlText();
      range->text();
    }
    const QString html = page_.Body();
    if (html.contains(QChar(0))) Fail("a NUL");
    Node* const body = TreeBuilder::Element(Known().body);
    for (Node* node : ParseFragment(html, Known().body)) TreeBuilder::Insert(body, node);
    const QString again = InnerHtml(body, false);
    DestroyTree(body);
    if (tidy_ && again != html) Fail("doesn't come back:\n" + again);
    // Edits outside of BODY may leave more than one of it.
    const Node* const head = page_.document.tree().headNode();
    const bool isWhole = head && head == page_.document.tree().htmlNode()->firstChild() &&
                         head->next() == page_.document.tree().bodyNode() && !page_.document.tree().bodyNode()->next();
    const QString difference = tidy_ && isWhole ? DifferenceAfterSaving(page_.document) : QString();
    if (!difference.isEmpty()) Fail("isn't the same after saving: " + difference);
  }

  Maker make_;
  bool tidy_;
  TestPage page_;
  std::vector<std::shared_ptr<HTMLTxtRange>> ranges_;
};

}  // namespace

int main(int argc, char** argv) {
  const long iterations = argc > 1 ? std::atol(argv[1]) : 0;
  const unsigned seed = argc > 2 ? unsigned(std::atol(argv[2])) : RandomSeed("fuzz_html");
  const auto end = std::chrono::steady_clock::now() + kDuration;
  long done = 0;
  for (; iterations > 0 ? done < iterations : std::chrono::steady_clock::now() < end; ++done) {
    std::mt19937 random(seed * 1000003u + unsigned(done));
    if (argc > 3) std::fprintf(stderr, "iteration %ld\n", done);
    Playground playground(random, done % 2 == 0);
    for (int step = 0; step < 60 && playground.HasBody() && !playground.IsLarge(); ++step) playground.Step();
  }
  std::printf("%ld pages\n", done);
  return 0;
}
