// Model and live page say the same after any series of edits, changes by the page's scripts and deaths of the renderer.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QWebEnginePage>
#include <csignal>
#include <cstdio>
#include <limits>
#include <random>

#include "HTMLTxtRange.h"
#include "HostedView.h"
#include "RandomSeed.h"
#include "WorkOps.h"

namespace {

const char page[] =
    "<HTML><HEAD><TITLE>t</TITLE></HEAD><BODY BGCOLOR=\"#FFFFFF\"><FONT SIZE=3 COLOR=\"#000000\">one two</FONT><BR>"
    "<TABLE BORDER=1><TR><TD><FONT>cell</FONT></TD><TD><B>bold</B></TD></TR></TABLE><P>par</P>"
    "<IMG SRC=\"x.gif\" ALT=\"&quot;a&quot;\"><A HREF=\"y.html\">link</A> tail &amp; end</BODY></HTML>";

class RandomEditor {
 public:
  RandomEditor(HostedView& hosted, unsigned seed, bool runsScripts = true)
      : hosted_(hosted), runsScripts_(runsScripts), random_(seed) {}

  void One() {
    KeepSmall();
    const int kind = Below(100);
    if (kind < 20) {
      Paste(Text());
    } else if (kind < 30) {
      Paste(Markup());
    } else if (kind < 40) {
      Delete();
    } else if (kind < 45) {
      RemoveElement();
    } else if (kind < 50) {
      SetAttribute();
    } else if (kind < 53) {
      if (HTMLElement element = AnyElement()) element.insertAdjacentHTML(QStringLiteral("AfterEnd"), Markup());
    } else if (kind < 65) {
      Format();
    } else if (kind < 77) {
      Operate();
    } else if (kind < 83) {
      TypeKey();
    } else if (kind < 85) {
      UndoAndRedo();
    } else if (runsScripts_) {
      PageScript();
    }
  }

  int Below(int bound) { return int(random_() % unsigned(bound)); }

 private:
  QString Text() {
    static const QStringList texts = {QStringLiteral("a"), QStringLiteral("&nbsp;"), QStringLiteral("x &amp; y"),
                                      QStringLiteral("\u00e4\u4e2d\U0001F600"), QStringLiteral(" ")};
    return texts[Below(int(texts.size()))];
  }
  QString Markup() {
    static const QStringList pieces = {QStringLiteral("<BR>"),
                                       QStringLiteral("<FONT COLOR=\"#FF0000\">red</FONT>"),
                                       QStringLiteral("<TABLE><TR><TD>n</TD></TR></TABLE>"),
                                       QStringLiteral("t<B>b</B>u"),
                                       QStringLiteral("<IMG SRC=\"p.png\">"),
                                       QStringLiteral("<P>p<I>i</I></P>"),
                                       QStringLiteral("<SCRIPT>document.title='ran'</SCRIPT>"),
                                       QStringLiteral("<svg><path d=\"M0 0\"/></svg>"),
                                       QStringLiteral("<!--c-->"),
                                       QStringLiteral("<template><b>in</b></template>"),
                                       QStringLiteral("<DIV STYLE=\"color:red\" title='a\"b'>d</DIV>")};
    return pieces[Below(int(pieces.size()))];
  }

  HTMLElement AnyElement() {
    const HTMLElementCollection all = hosted_.document().body().all();
    const int length = all.length();
    return length == 0 ? HTMLElement() : all.item(Below(length));
  }

  std::shared_ptr<HTMLTxtRange> AnyRange(int steps) {
    auto range = hosted_.document().body().createTextRange();
    if (const HTMLElement element = AnyElement()) range->moveToElementText(element);
    range->move(QStringLiteral("character"), Below(9) - 4);
    range->moveEnd(QStringLiteral("character"), Below(steps));
    return range;
  }

  // What is copied and pasted again would soon be more than a page.
  void KeepSmall() {
    const Node* const body = hosted_.document().tree().bodyNode();
    while (hosted_.document().all().length() > 400 || hosted_.ModelHtml().size() > 100000) {
      HTMLElement first = hosted_.document().body().children().item(0);
      if (first) {
        first.setOuterHTML(QString());
      } else {
        const auto range = hosted_.document().body().createTextRange();
        range->pasteHTML(QString());
        if (body->firstChild()) break;
      }
    }
  }

  void Raise(EventType type) {
    HTMLEventObj event(type);
    const HTMLElement target = Below(4) ? AnyElement() : HTMLElement(hosted_.document().tree().bodyNode());
    event.On(target).Button(1).Caret(AnyRange(1)->range().start, QPoint(1, 1));
    hosted_.document().Dispatch(std::move(event));
  }

  // As with the mouse: a drag over text.
  void SelectText() {
    Raise(EventType::MouseDown);
    AnyRange(20)->select();
  }

  void Format() {
    if (Below(3)) SelectText();
    WBUC& view = hosted_.jWB();
    static const QStringList colors = {QStringLiteral("#FF0000"), QStringLiteral("#00FF00"), QStringLiteral("none")};
    const QString color = colors[Below(int(colors.size()))];
    switch (Below(7)) {
      case 0:
        return view.SetSelColor(color);
      case 1:
        return view.SetSelBackColor(color);
      case 2:
        return view.SetSelFontFace(Below(2) ? QStringLiteral("Arial") : QStringLiteral("A \"B\""));
      case 3:
        return view.SetSelFontSize(QString::number(1 + Below(7)));
      case 4:
        return view.CreateLinkSel(QStringLiteral("http://x/") + QString::number(Below(3)));
      case 5:
        return view.SetSelText(Markup());
      default:
        return view.ToggleBold();
    }
  }

  void Operate() {
    WBUC& view = hosted_.jWB();
    if (Below(2)) Raise(EventType::MouseDown);
    if (Below(2)) Raise(EventType::Click);
    if (Below(2)) Raise(EventType::DoubleClick);
    if (Below(6) == 0) SelectText();
    const QString number = QString::number(Below(100));
    switch (Below(10)) {
      case 0:
        return view.Cut();
      case 1:
        return view.Copy();
      case 2:
      case 3:
        return view.Paste(Below(2));
      case 4:
        return Below(2) ? view.DeleteElement(AnyElement()) : view.ReplaceElemHTML(AnyElement(), Markup());
      case 5:
        view.MoveElementOneElement(Below(2) ? 1 : -1);
        return;
      case 6:
      case 7:
        return view.MoveElementOneSpace(Below(4));
      case 8:
        return InsertPageHTML(view, Markup());
      default:
        view.AddTable(number, number, QStringLiteral("1"), QStringLiteral("#FFFFFF"), QStringLiteral("Left"),
                      QStringLiteral("Center"), QStringLiteral("Top"), QStringLiteral("5"));
    }
  }

  void TypeKey() {
    if (Below(3) == 0) Raise(EventType::Click);
    static const int keys[] = {'A', 'Z', ' ', 8, 46, 13, '1', 188};
    hosted_.document().Dispatch(HTMLEventObj(EventType::KeyUp).Key(keys[Below(8)], Below(2)));
  }

  void UndoAndRedo() {
    if (runsScripts_) return;
    for (int steps = Below(6); steps > 0; --steps) hosted_.jWB().Undo();
    for (int steps = Below(4); steps > 0; --steps) hosted_.jWB().Redo();
  }

  void Paste(const QString& html) { AnyRange(3)->pasteHTML(html); }
  void Delete() { AnyRange(12)->pasteHTML(QString()); }
  void RemoveElement() {
    if (hosted_.document().body().all().length() < 30) return;
    if (HTMLElement element = AnyElement()) element.setOuterHTML(QString());
  }
  void SetAttribute() {
    if (HTMLElement element = AnyElement()) {
      if (Below(3) == 0) {
        element.removeAttribute(QStringLiteral("title"));
      } else {
        element.setAttribute(QStringLiteral("title"), Text() + QString::number(Below(100)));
      }
    }
  }

  // Not waited for: it meets the program's own batches on the way.
  void PageScript() {
    static const QStringList scripts = {
        QStringLiteral("el.appendChild(document.createTextNode('js' + n))"),
        QStringLiteral("el.remove()"),
        QStringLiteral("el.setAttribute('data-n', n)"),
        QStringLiteral("if (text) text.data = text.data.slice(0, n % 5) + 'T' + text.data.slice(n % 5)"),
        QStringLiteral("if (text) text.data = ''"),
        QStringLiteral("if (!el.contains(other)) other.appendChild(el)"),
        QStringLiteral("if (other !== el && !other.contains(el)) el.insertBefore(other, el.firstChild)"),
        QStringLiteral("const w = document.createElement('i'); el.replaceWith(w); w.appendChild(el)"),
        QStringLiteral("el.innerHTML = '<u>new</u> ' + n"),
        QStringLiteral("el.normalize()"),
        QStringLiteral("el.append('x', document.createElement('hr'), 'y')")};
    hosted_.browser().RunPageScript(
        QStringLiteral("(() => { const all = [...document.body.querySelectorAll('*')]; if (!all.length) return;"
                       "const n = %1, el = all[n % all.length], other = all[(n * 7 + 3) % all.length];"
                       "const walker = document.createTreeWalker(el, NodeFilter.SHOW_TEXT), text = walker.nextNode();"
                       "if (all.length > 400) { el.remove(); return; } try { %2 } catch (e) {} })()")
            .arg(Below(100000))
            .arg(scripts[Below(int(scripts.size()))]));
  }

  HostedView& hosted_;
  const bool runsScripts_;
  std::mt19937 random_;
};

// Where the two part, with what stands around the place; empty when they are the same.
QString Difference(const QString& model, const QString& live) {
  if (model == live) return {};
  qsizetype at = 0;
  while (at < model.size() && at < live.size() && model[at] == live[at]) ++at;
  const qsizetype from = std::max<qsizetype>(0, at - 200);
  return QStringLiteral("model: ") + model.mid(from, 400) + QStringLiteral("\nlive:  ") + live.mid(from, 400);
}

// The live page follows what is undone in one turn of the event loop as one batch; nobody clicks that fast.
constexpr int kStepsAtOnce = 500;

// Undoes what there is to undo, at most so many steps, and redoes as much; tells what isn't as it was, "" for nothing.
// `start` is the page of before all that, where it is known.
QString UndoneAndRedone(HostedView& hosted, const QString& start, int atMost = std::numeric_limits<int>::max()) {
  WBUC& view = hosted.jWB();
  hosted.LiveHtml();  // what its scripts have done is heard of by then
  const QString end = hosted.ModelHtml();
  int steps = 0;
  for (; steps < atMost && view.History().CanUndo(); ++steps) {
    view.Undo();
    if (steps % kStepsAtOnce == 0) hosted.LiveHtml();
  }
  if (const QString begin = hosted.ModelHtml(); !view.History().CanUndo() && begin != start)
    return QStringLiteral("undone: ") + begin + QStringLiteral("\nbefore: ") + start;
  if (const QString live = hosted.LiveHtml(); live != hosted.ModelHtml())
    return QStringLiteral("after undo, ") + Difference(hosted.ModelHtml(), live);
  for (; steps > 0; --steps) {
    view.Redo();
    if (steps % kStepsAtOnce == 0) hosted.LiveHtml();
  }
  if (hosted.ModelHtml() != end)
    return QStringLiteral("redone: ") + hosted.ModelHtml() + QStringLiteral("\nbefore: ") + end;
  return {};
}

// Kills the renderer and waits until the page is back. Tells how long the program let pass before it began with that,
// in ms; starting a renderer takes as long as it takes.
qint64 KillAndTimeTheRest(HostedPage& hosted) {
  QElapsedTimer rest;
  qint64 took = -1;
  bool back = false;
  const QWebEnginePage* const dead = hosted.browser().enginePage();
  const auto died = QObject::connect(dead, &QWebEnginePage::renderProcessTerminated, [&] { rest.start(); });
  const auto recovered = QObject::connect(&hosted.browser(), &HostedWebBrowser::Recovered, [&] { back = true; });
  ::kill(pid_t(dead->renderProcessPid()), SIGKILL);
  HostedPage::WaitFor([&] {
    if (took < 0 && hosted.browser().enginePage() != dead) took = rest.elapsed();
    return back;
  });
  QObject::disconnect(died);
  QObject::disconnect(recovered);
  return back ? took : -1;
}

int Operations() {
  const int wanted = qEnvironmentVariableIntValue("CORVANE_RANDOM_OPERATIONS");
  return wanted > 0 ? wanted : 2000;
}

}  // namespace

TEST(Agreement, RandomEditsPageScriptsAndKilledRenderers) {
  HostedView hosted;
  ASSERT_TRUE(hosted.LoadHtml(page));
  RandomEditor editor(hosted, RandomSeed("Random edits"));
  const int operations = Operations();
  const int killEvery = std::max(700, operations / 20);
  for (int i = 1; i <= operations; ++i) {
    editor.One();
    if (i % 7 == 0) QCoreApplication::processEvents();
    if (i % 50 == 0) {
      const QString live = hosted.LiveHtml();
      ASSERT_EQ(Difference(hosted.ModelHtml(), live).toStdString(), "") << "after operation " << i;
    }
    if (i % killEvery == 0) {
      const QString before = hosted.ModelHtml();
      ASSERT_TRUE(hosted.KillRenderer()) << "after operation " << i;
      EXPECT_EQ(hosted.LiveHtml().toStdString(), before.toStdString()) << "after operation " << i;
    }
  }
  EXPECT_FALSE(hosted.document().title().contains(QStringLiteral("ran")));
}

TEST(Agreement, RandomEditsAreUndoneAtRandomMoments) {
  HostedView hosted;
  ASSERT_TRUE(hosted.LoadHtml(page));
  const QString start = hosted.ModelHtml();
  RandomEditor editor(hosted, RandomSeed("Random undo"), false);
  hosted.jWB().History().SetLimit(qint64(1) << 40);
  const int operations = Operations();
  // A dozen times back to the start, since that takes twice as many steps of the live page as there were edits.
  const int wholeEvery = std::max(150, operations / 12);
  int whole = 0;
  for (int i = 1; i <= operations; ++i) {
    editor.One();
    if (i % 7 == 0) QCoreApplication::processEvents();
    if (editor.Below(150) == 0) {
      ASSERT_EQ(UndoneAndRedone(hosted, start, editor.Below(300)).toStdString(), "") << "after operation " << i;
    }
    if (editor.Below(wholeEvery) == 0) {
      ASSERT_EQ(UndoneAndRedone(hosted, start).toStdString(), "") << "after operation " << i;
      ++whole;
    }
    if (i % 5000 == 0) {
      std::printf("%d edits, %d times back to the start\n", i, whole);
      std::fflush(stdout);
    }
    if (i % 700 == 0) {
      ASSERT_TRUE(hosted.KillRenderer()) << "after operation " << i;
    }
  }
  EXPECT_TRUE(hosted.jWB().History().IsWhole());
  EXPECT_EQ(UndoneAndRedone(hosted, start).toStdString(), "");
}

// Whatever the page's scripts do, model and live page stay the same, and once the page is quiet, redo brings back what
// undo took.
TEST(Agreement, RandomEditsBesideThePagesScriptsCanBeUndone) {
  HostedView hosted;
  ASSERT_TRUE(hosted.LoadHtml(page));
  RandomEditor editor(hosted, RandomSeed("Random undo beside scripts"));
  EditHistory& history = hosted.jWB().History();
  const int operations = Operations();
  int undone = 0;
  for (int i = 1; i <= operations; ++i) {
    editor.One();
    if (i % 7 == 0) QCoreApplication::processEvents();
    if (editor.Below(60) == 0) {
      const bool isQuiet = editor.Below(2) == 0;
      if (isQuiet) hosted.LiveHtml();
      const QString end = hosted.ModelHtml();
      int steps = 0;
      for (; history.CanUndo(); ++steps) hosted.jWB().Undo();
      const QString live = hosted.LiveHtml();
      ASSERT_EQ(Difference(hosted.ModelHtml(), live).toStdString(), "") << "undone after operation " << i;
      for (int step = 0; step < steps && history.CanRedo(); ++step) hosted.jWB().Redo();
      if (isQuiet) {
        ASSERT_EQ(Difference(end, hosted.ModelHtml()).toStdString(), "") << "redone after operation " << i;
      }
      undone += steps;
    }
    if (i % 700 == 0) {
      ASSERT_TRUE(hosted.KillRenderer()) << "after operation " << i;
    }
  }
  EXPECT_GT(undone, 0);
}

TEST(Agreement, LoadedPageEqualsTheLiveOne) {
  HostedPage hosted;
  ASSERT_TRUE(hosted.LoadHtml(page));
  const QString live = hosted.LiveHtml();
  EXPECT_FALSE(live.isEmpty());
  EXPECT_EQ(hosted.ModelHtml().toStdString(), live.toStdString());
}

TEST(Agreement, HandlesStayValidWhenTheRendererDies) {
  HostedPage hosted;
  ASSERT_TRUE(hosted.LoadHtml(page));
  HTMLElement font = hosted.document().body().children().item(0);
  ASSERT_EQ(font.tagName(), QStringLiteral("FONT"));
  auto range = hosted.document().body().createTextRange();
  range->moveToElementText(font);
  ASSERT_TRUE(hosted.KillRenderer());
  font.setAttribute(QStringLiteral("color"), QStringLiteral("#00FF00"));
  range->move(QStringLiteral("character"), 1);
  range->pasteHTML(QStringLiteral("kept"));
  const QString live = hosted.LiveHtml();
  EXPECT_TRUE(live.contains(QStringLiteral("#00FF00")));
  EXPECT_EQ(hosted.ModelHtml().toStdString(), live.toStdString());
}

TEST(Agreement, APageThatNeverAnswersIsBroughtBackAtLeisure) {
  HostedPage hosted;
  ASSERT_TRUE(hosted.LoadHtml(page));
  for (int death = 1; death <= 5; ++death) {
    const qint64 rest = KillAndTimeTheRest(hosted);
    EXPECT_GE(rest, 0) << death;
    EXPECT_LT(rest, 4500) << death;
  }
  EXPECT_GE(KillAndTimeTheRest(hosted), 4500);
  const QString live = hosted.LiveHtml();
  EXPECT_EQ(hosted.ModelHtml().toStdString(), live.toStdString());
  // That was an answer.
  const qint64 rest = KillAndTimeTheRest(hosted);
  EXPECT_GE(rest, 0);
  EXPECT_LT(rest, 4500);
}

TEST(Agreement, AnotherPageOpensWhileADeadOneWaitsForItsReturn) {
  HostedPage hosted;
  ASSERT_TRUE(hosted.LoadHtml(page));
  for (int death = 1; death <= 5; ++death) ASSERT_TRUE(hosted.KillRenderer()) << death;
  for (const bool good : {true, false}) {
    bool died = false;
    QObject::connect(hosted.browser().enginePage(), &QWebEnginePage::renderProcessTerminated, [&died] { died = true; });
    ::kill(pid_t(hosted.browser().enginePage()->renderProcessPid()), SIGKILL);
    ASSERT_TRUE(HostedPage::WaitFor([&] { return died; }));
    // A fresh one is there at once, not when that one's time has come.
    const QWebEnginePage* const dead = hosted.browser().enginePage();
    bool complete = false;
    const auto connection =
        QObject::connect(&hosted.browser(), &WebBrowser::DocumentComplete, [&complete] { complete = true; });
    hosted.browser().Navigate(good ? hosted.File(QStringLiteral("b.html"), "<BODY>other</BODY>") : hosted.Folder(), 14);
    EXPECT_NE(hosted.browser().enginePage(), dead);
    ASSERT_TRUE(HostedPage::WaitFor([&] { return complete; }));
    QObject::disconnect(connection);
    EXPECT_EQ(hosted.browser().Document() != nullptr, good);
  }
  ASSERT_TRUE(hosted.LoadHtml("<BODY>last</BODY>"));
  EXPECT_TRUE(hosted.LiveHtml().contains(QStringLiteral("last")));
  EXPECT_EQ(hosted.ModelHtml(), hosted.LiveHtml());
}

TEST(Agreement, APageThatAnswersIsBroughtBackAtOnceHoweverOftenItDies) {
  HostedPage hosted;
  ASSERT_TRUE(hosted.LoadHtml(page));
  for (int death = 1; death <= 8; ++death) {
    const qint64 rest = KillAndTimeTheRest(hosted);
    ASSERT_GE(rest, 0) << death;
    EXPECT_LT(rest, 4500) << death;
    EXPECT_EQ(hosted.ModelHtml(), hosted.LiveHtml());
  }
}

TEST(Agreement, EditsMadeWhileThereIsNoRendererArrive) {
  HostedPage hosted;
  ASSERT_TRUE(hosted.LoadHtml(page));
  bool back = false;
  QObject::connect(&hosted.browser(), &HostedWebBrowser::Recovered, [&back] { back = true; });
  bool died = false;
  QObject::connect(hosted.browser().enginePage(), &QWebEnginePage::renderProcessTerminated, [&died] { died = true; });
  ::kill(pid_t(hosted.browser().enginePage()->renderProcessPid()), SIGKILL);
  ASSERT_TRUE(HostedPage::WaitFor([&] { return died; }));
  hosted.document().body().insertAdjacentHTML(QStringLiteral("BeforeEnd"), QStringLiteral("<B>late</B>"));
  ASSERT_TRUE(HostedPage::WaitFor([&] { return back; }));
  const QString live = hosted.LiveHtml();
  EXPECT_TRUE(live.contains(QStringLiteral("<b>late</b>")));
  EXPECT_EQ(hosted.ModelHtml().toStdString(), live.toStdString());
}

TEST(Agreement, PastedScriptsDontRun) {
  HostedPage hosted;
  ASSERT_TRUE(hosted.LoadHtml(page));
  const QString script = QStringLiteral("<SCRIPT>document.body.setAttribute('ran', '1')</SCRIPT>");
  for (const QString& html : {script, QStringLiteral("<svg>") + script + QStringLiteral("</svg>"),
                              QStringLiteral("<math>") + script + QStringLiteral("</math>"),
                              QStringLiteral("<template>") + script + QStringLiteral("</template>")}) {
    hosted.document().body().insertAdjacentHTML(QStringLiteral("BeforeEnd"), html);
    EXPECT_EQ(hosted.ModelHtml(), hosted.LiveHtml());
  }
  // Nor do they when the page's own scripts move them.
  hosted.Script(
      QStringLiteral("for (const script of document.querySelectorAll('script')) document.body.append(script)"));
  EXPECT_EQ(hosted.ScriptText(QStringLiteral("String(document.body.hasAttribute('ran'))")), QStringLiteral("false"));
}
