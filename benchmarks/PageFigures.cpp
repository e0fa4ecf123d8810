// Work on a whole page in view, ours against the engine's own: format_10k, one colour command over 10,000 runs of text
// until the page shows it, against the command on a page that the engine edits; undo, taking that back, against doing
// it; rescue, what writing a page of 5 MB to its rescue file costs the window's thread, against 20 ms; source, the HTML
// of a page of 5 MB, against asking the engine for it.
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QThread>
#include <QTimer>
#include <QWebEnginePage>
#include <QWebEngineView>
#include <algorithm>

#include "Figure.h"
#include "HostedWebBrowser.h"
#include "RescueFile.h"
#include "TestPlatform.h"
#include "WBUC.h"
#include "Waiting.h"
#include "WholePage.h"

namespace {

QByteArray Around(const QByteArray& body) {
  return "<html><head><title>t</title></head><body>" + body + "</body></html>";
}

class Ours {
 public:
  Ours(TestProgram& test, const QString& file)
      : view_(test.program, [](QWidget* parent) { return std::make_unique<HostedWebBrowser>(parent); }) {
    view_.resize(900, 700);
    view_.show();
    Wait ready;
    QObject::connect(&view_, &WBUC::DocComplete, &view_, [&] {
      if (view_.Location() == file) ready.Done();
    });
    QTimer::singleShot(0, &view_, [&] { view_.Navo(file, false); });
    ready.Run("our page");
    view_.disconnect(SIGNAL(DocComplete()));
    Pause(300);
  }

  WBUC& view() { return view_; }

  // The longest time that the event loop stood still from an edit to the file.
  double Rescue(TestProgram& test) {
    RescueFile rescue(test.program, view_, 50);
    const QString folder = test.program.AppPath + QStringLiteral("/rescue");
    QDir(folder).removeRecursively();
    emit view_.Edited();
    double longest = 0;
    QElapsedTimer whole, turn;
    for (whole.start(); QDir(folder).isEmpty() && whole.elapsed() < 30000; QThread::usleep(100)) {
      turn.start();
      QCoreApplication::processEvents();
      longest = std::max(longest, double(turn.nsecsElapsed()) / 1e6);
    }
    return longest;
  }

  double Source(qsizetype& size) {
    QElapsedTimer clock;
    clock.start();
    size = view_.Source().size();
    return double(clock.nsecsElapsed()) / 1e6;
  }

 private:
  WBUC view_;
};

class Peer {
 public:
  explicit Peer(const QString& file) {
    view_.resize(900, 700);
    view_.show();
    Wait ready;
    QObject::connect(view_.page(), &QWebEnginePage::loadFinished, &view_, [&](bool good) {
      if (good) ready.Done();
    });
    view_.load(QUrl::fromLocalFile(file));
    ready.Run("the peer's page");
    Pause(300);
  }

  QVariant Run(const QString& script, double* ms = nullptr) {
    QElapsedTimer clock;
    QVariant result;
    Wait ran;
    clock.start();
    view_.page()->runJavaScript(script, [&](const QVariant& value) {
      if (ms) *ms = double(clock.nsecsElapsed()) / 1e6;
      result = value;
      ran.Done();
    });
    ran.Run("the peer's script");
    return result;
  }

 private:
  QWebEngineView view_;
};

bool Format() {
  constexpr int runs = 10000;
  QByteArray body;
  for (int i = 0; i < runs; ++i) body += "<p>run " + QByteArray::number(i) + " of the text</p>";
  TestProgram test;
  const QString file = test.Path(QStringLiteral("page.html"));
  if (!PutFile(file, Around(body))) return false;
  Figure undo("undo"), format("format_10k");
  std::vector<double> own;
  for (int turn = 0; turn < 5; ++turn) {
    // A fresh page each time, as a second command finds the work of the first.
    Ours ours(test, file);
    own.push_back(ColorWhole(ours.view(), QStringLiteral("#FF0000")));
    if (ours.view().Source().count(QStringLiteral("<font color=\"#FF0000\">")) != runs) return false;
    undo.Add(UndoWhole(ours.view()), own.back());
    if (ours.view().Source().contains(QStringLiteral("<font"))) return false;
  }
  const bool good = undo.Print(1.0);
  // Once: it takes the engine minutes.
  Peer engine(file);
  engine.Run(
      QStringLiteral("document.body.contentEditable = true; document.body.focus();"
                     "getSelection().selectAllChildren(document.body); 0"));
  double ms = 0;
  engine.Run(QStringLiteral("document.execCommand('styleWithCSS', false, false);"
                            "document.execCommand('foreColor', false, '#ff0000');"
                            "document.body.getBoundingClientRect().height"),
             &ms);
  if (engine.Run(QStringLiteral("document.querySelectorAll('font[color=\"#ff0000\"]').length")).toInt() != runs)
    return false;
  format.Add(Median(own), ms);
  return format.Print(1.0) && good;
}

bool Source() {
  QByteArray body;
  while (body.size() < 5000000)
    body +=
        "<FONT FACE=\"Arial\" SIZE=3 COLOR=\"#003366\">Dear friends &amp; all, this is a <B>letter</B>,&nbsp;and "
        "more.</FONT><BR><IMG SRC=\"a.gif\" WIDTH=3>";
  TestProgram test;
  const QString file = test.Path(QStringLiteral("page.html"));
  if (!PutFile(file, Around(body))) return false;
  Ours ours(test, file);
  Peer engine(file);
  constexpr double rescueMs = 20;
  Figure source("source"), rescue("rescue");
  for (int turn = 0; turn < 7; ++turn) {
    qsizetype size = 0;
    rescue.Add(ours.Rescue(test), rescueMs);
    const double own = ours.Source(size);
    double ms = 0;
    const qsizetype other = engine.Run(QStringLiteral("document.documentElement.outerHTML"), &ms).toString().size();
    source.Add(own, ms);
    if (size < 5000000 || other < 5000000) return false;
  }
  const bool good = rescue.Print(1.0);
  return source.Print(1.0) && good;
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  const bool format = Format();
  const bool source = Source();
  return format && source ? 0 : 1;
}
