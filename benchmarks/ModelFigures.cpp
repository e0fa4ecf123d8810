// What the document model takes for itself, without a display: scale_edit, an edit of each kind on a page of 100,000
// nodes against the same on one of 1,000; fragment, pasting a megabyte of HTML against the parser library reading it.
#include <gumbo.h>

#include <QApplication>
#include <QElapsedTimer>
#include <functional>

#include "Figure.h"
#include "HeadlessWebBrowser.h"
#include "PageOnView.h"
#include "WBUC.h"
#include "WorkOps.h"

namespace {

// A page as this editor makes them, with about that many nodes.
QString PageOf(int nodes) {
  QString page;
  for (int block = 0, count = 0; count < nodes; ++block) {
    page += QStringLiteral(
                "<FONT FACE=\"Arial\" SIZE=3 COLOR=\"#003366\">Dear friends, this is part %1 of a <B>letter</B>, "
                "&nbsp;and more.</FONT><BR>&nbsp;")
                .arg(block);
    count += 7;
    if (block % 10 == 9) {
      page += QStringLiteral("<TABLE BORDER=1><TR><TD><FONT>Monday</FONT></TD><TD>Rain</TD></TR></TABLE>");
      count += 8;
    }
  }
  return page;
}

class Page {
 public:
  explicit Page(int nodes) {
    page_.ShowBody(PageOf(nodes));
    page_.Document().tree().SetPage(nullptr);  // the layout that stands in for a display isn't what is measured
    count_ = page_.Document().all().length();
  }

  WBUC& view() { return page_.view; }

  // The text block nearest to a part of the page.
  HTMLElement Font(double part) {
    for (int index = int(part * count_);; ++index) {
      const HTMLElement element = page_.Document().all().item(index);
      if (element && element.tagName() == u"FONT" && TextOf(element)) return element;
      if (!element) return {};
    }
  }

  std::shared_ptr<HTMLTxtRange> PointIn(const HTMLElement& font, int from, int to) {
    const Node* const text = TextOf(font);
    const auto at = [&](int place) { return BoundaryPoint::InText(text, std::min(place, text->Length())); };
    return std::make_shared<HTMLTxtRange>(page_.Document(), LiveRange{at(from), at(to)});
  }

  // As a double click does.
  void Select(const HTMLElement& element) {
    page_.Document().Dispatch(HTMLEventObj(EventType::MouseDown).Button(1).On(element));
    page_.Document().Dispatch(HTMLEventObj(EventType::DoubleClick).Button(1).On(element));
  }
  void SelectText(const HTMLElement& font) {
    page_.Document().Dispatch(HTMLEventObj(EventType::MouseDown).Button(1).On(font));
    PointIn(font, 2, 6)->select();
  }
  void Key(int code, bool shift = false) { page_.Document().Dispatch(HTMLEventObj(EventType::KeyUp).Key(code, shift)); }

 private:
  PageOnView page_;
  int count_ = 0;
};

struct Kind {
  const char* name;
  std::function<void(Page&, const HTMLElement&)> prepare;
  std::function<void(Page&, const HTMLElement&)> edit;
};

std::vector<Kind> Kinds() {
  using Font = const HTMLElement&;
  const auto point = [](Page& page, Font font) { page.view().SetCurrentTextRange(page.PointIn(font, 3, 3)); };
  const auto text = [](Page& page, Font font) { page.SelectText(font); };
  const auto element = [](Page& page, Font font) { page.Select(font); };
  const auto copied = [=](Page& page, Font font) {
    text(page, font);
    page.view().Copy();
    point(page, font);
  };
  const auto copiedElement = [=](Page& page, Font font) {
    element(page, font);
    page.view().Copy();
  };
  const auto key = [](int code) { return [code](Page& page, Font) { page.Key(code); }; };
  const auto space = [](int direction) {
    return [direction](Page& page, Font) { page.view().MoveElementOneSpace(direction); };
  };
  return {
      {"letter", point, key('A')},
      {"space", point, key(' ')},
      {"backspace", point, key(8)},
      {"delete", point, key(46)},
      {"return", point, key(13)},
      {"cut text", text, [](Page& page, Font) { page.view().Cut(); }},
      {"cut element", element, [](Page& page, Font) { page.view().Cut(); }},
      {"copy", text, [](Page& page, Font) { page.view().Copy(); }},
      {"paste text", copied, [](Page& page, Font) { page.view().Paste(WBUC::FromTextClip); }},
      {"paste element", copiedElement, [](Page& page, Font) { page.view().Paste(WBUC::FromTagClip); }},
      {"delete element", element, [](Page& page, Font font) { page.view().DeleteElement(font); }},
      {"replace", element,
       [](Page& page, Font font) { page.view().ReplaceElemHTML(font, QStringLiteral("<I>x</I>")); }},
      {"move element", element, [](Page& page, Font) { page.view().MoveElementOneElement(1); }},
      {"left", element, space(0)},
      {"up", element, space(1)},
      {"right", element, space(2)},
      {"down", element, space(3)},
      {"insert", element, [](Page& page, Font) { InsertPageHTML(page.view(), QStringLiteral("<IMG SRC=\"a.gif\">")); }},
      {"table", element,
       [](Page& page, Font) {
         page.view().AddTable(QStringLiteral("100"), QStringLiteral("100"), QStringLiteral("1"),
                              QStringLiteral("#FFFFFF"), QStringLiteral("Left"), QStringLiteral("Left"),
                              QStringLiteral("Top"), QStringLiteral("5"));
       }},
      {"link", text, [](Page& page, Font) { page.view().CreateLinkSel(QStringLiteral("http://x/")); }},
      {"color", text, [](Page& page, Font) { page.view().SetSelColor(QStringLiteral("#FF0000")); }},
      {"background", text, [](Page& page, Font) { page.view().SetSelBackColor(QStringLiteral("#FF0000")); }},
      {"face", text, [](Page& page, Font) { page.view().SetSelFontFace(QStringLiteral("Arial")); }},
      {"size", text, [](Page& page, Font) { page.view().SetSelFontSize(QStringLiteral("5")); }},
      {"bold", text, [](Page& page, Font) { page.view().ToggleBold(); }},
      {"replace text", text, [](Page& page, Font) { page.view().SetSelText(QStringLiteral("x<B>y</B>")); }},
      {"attribute", element,
       [](Page&, Font font) { HTMLElement(font).setAttribute(QStringLiteral("size"), QStringLiteral("4")); }},
  };
}

// What an edit of that kind takes, in microseconds: the median of edits all over a fresh page.
double TimeOf(const Kind& kind, int nodes) {
  Page page(nodes);
  constexpr int edits = 41;
  std::vector<double> times;
  for (int i = 0; i < edits; ++i) {
    const HTMLElement font = page.Font((i * 17 % edits) / double(edits));
    if (!font) continue;
    kind.prepare(page, font);
    QElapsedTimer clock;
    clock.start();
    kind.edit(page, font);
    times.push_back(double(clock.nsecsElapsed()) / 1e3);
  }
  return Median(times);
}

bool ScaleEdit() {
  constexpr std::size_t turns = 5;
  const std::vector<Kind> kinds = Kinds();
  // By turns and kinds.
  std::vector<std::vector<double>> large(turns), small(turns);
  Figure figure("scale_edit", "us");
  for (std::size_t turn = 0; turn < turns; ++turn) {
    for (const Kind& kind : kinds) {
      small[turn].push_back(TimeOf(kind, 1000));
      large[turn].push_back(TimeOf(kind, 100000));
    }
    figure.Add(Median(large[turn]), Median(small[turn]));
  }
  double worst = 0;
  const char* slowest = "";
  for (std::size_t kind = 0; kind < kinds.size(); ++kind) {
    double big = 1e9, little = 1e9;
    for (std::size_t turn = 0; turn < turns; ++turn) {
      big = std::min(big, large[turn][kind]);
      little = std::min(little, small[turn][kind]);
    }
    std::fprintf(stderr, "%-15s %8.1f us against %8.1f us: %.2f\n", kinds[kind].name, big, little, big / little);
    if (big / little <= worst) continue;
    worst = big / little;
    slowest = kinds[kind].name;
  }
  figure.Note("kinds", std::to_string(kinds.size()));
  figure.Note("worst", worst);
  figure.Note("slowest", QByteArray(slowest).replace(' ', '_').toStdString());
  return figure.Print(2);
}

bool Fragment() {
  QString html;
  while (html.size() < 1000000) html += PageOf(1000);
  html.truncate(1000000);
  const QByteArray bytes = html.toUtf8();
  Figure figure("fragment");
  for (int turn = 0; turn < 11; ++turn) {
    QElapsedTimer clock;
    PageOnView page;
    page.ShowBody(QStringLiteral("<FONT>ab</FONT>"));
    const Node* const text = page.Document().tree().bodyNode()->firstChild()->firstChild();
    const BoundaryPoint at = BoundaryPoint::InText(text, 1);
    const auto range = std::make_shared<HTMLTxtRange>(page.Document(), LiveRange{at, at});
    clock.start();
    range->pasteHTML(html);
    const double own = double(clock.nsecsElapsed()) / 1e6;

    GumboOptions options = kGumboDefaultOptions;
    options.fragment_context = GUMBO_TAG_FONT;
    clock.start();
    GumboOutput* const output = gumbo_parse_with_options(&options, bytes.constData(), std::size_t(bytes.size()));
    figure.Add(own, double(clock.nsecsElapsed()) / 1e6);
    gumbo_destroy_output(&options, output);
  }
  return figure.Print(1.5);
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  const bool scale = ScaleEdit();
  const bool fragment = Fragment();
  return scale && fragment ? 0 : 1;
}
