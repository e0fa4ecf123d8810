// Work with projects, ours against the plain road: switch_page, from one page of 359 kB to another until it can be
// edited, the page before written and the pages counted, against the bare engine loading the same files; export_100, a
// page with 100 pictures sent out into a folder, against `cp` of the same files.
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QWebEnginePage>
#include <QWebEngineView>

#include "Figure.h"
#include "LetterPage.h"
#include "ProjectWindow.h"

namespace {

QByteArray Around(const QByteArray& body) {
  return "<html><head><title></title></head><body bgcolor=\"#FFFFFF\" text=\"#000000\">" + body + "</body></html>";
}

class Peer {
 public:
  Peer() {
    view_.resize(kWindow);
    view_.show();
  }

  double Load(const QString& file) {
    QElapsedTimer clock;
    Wait ready;
    const auto connection =
        QObject::connect(view_.page(), &QWebEnginePage::loadFinished, &view_, [&ready] { ready.Done(); });
    clock.start();
    view_.load(QUrl::fromLocalFile(file));
    ready.Run("the peer's page");
    const double ms = double(clock.nsecsElapsed()) / 1e6;
    QObject::disconnect(connection);
    Pause(200);
    return ms;
  }

 private:
  QWebEngineView view_;
};

bool SwitchPage() {
  TestProgram test;
  ProjectWindow ours(test);
  if (!PutFile(test.WorkFile(QStringLiteral("Page2.html")), MakePage(359000)) ||
      !PutFile(test.WorkFile(QStringLiteral("Page3.html")), MakePage(359000)))
    return false;
  Peer engine;
  Figure figure("switch_page");
  // The first switches warm up: away from the blank page, and the engine's own start.
  for (int turn = -2; turn < 12; ++turn) {
    const int page = turn % 2 == 0 ? 2 : 3;
    const double ms = ours.SwitchTo(page);
    if (test.program.project.CurPageNo() != page || ours.view().Source().size() < 350000) return false;
    const double other = engine.Load(test.WorkFile(QStringLiteral("Page%1.html").arg(page)));
    if (turn >= 0) figure.Add(ms, other);
  }
  return figure.Print(1.1);
}

bool Export() {
  constexpr int pictures = 100;
  constexpr int pictureBytes = 200000;
  TestProgram test;
  QByteArray body;
  QStringList names;
  for (int i = 0; i < pictures; ++i) {
    names.append(QStringLiteral("picture%1.jpg").arg(i));
    body += "<img src=\"" + names.last().toUtf8() + "\" width=\"40\" />";
  }
  const QByteArray page = Around(body);
  names.append(QStringLiteral("Page2.html"));
  // The window's load steps make the folder, so it comes first.
  ProjectWindow ours(test);
  for (int i = 0; i < pictures; ++i)
    if (!PutFile(test.WorkFile(names[i]), QByteArray(pictureBytes, char('a' + i % 26)))) return false;
  if (!PutFile(test.WorkFile(names.last()), page)) return false;
  ours.SwitchTo(2);
  QStringList paths;
  for (const QString& name : names) paths.append(test.WorkFile(name));
  Figure figure("export_100");
  for (int turn = -1; turn < 9; ++turn) {
    QElapsedTimer clock;
    test.platform.dialogs.Texts = {test.Path(QStringLiteral("mine.html"))};
    clock.start();
    ours.web().mSavePageFil();
    const double ms = double(clock.nsecsElapsed()) / 1e6;
    QDir made(test.Path(QStringLiteral("mine Files1")));
    if (int(made.count()) - 2 != pictures + 1) return false;
    made.removeRecursively();
    const QString folder = test.Path(QStringLiteral("copied"));
    QDir().mkdir(folder);
    clock.start();
    if (QProcess::execute(QStringLiteral("cp"), paths + QStringList(folder)) != 0) return false;
    const double other = double(clock.nsecsElapsed()) / 1e6;
    QDir(folder).removeRecursively();
    if (turn >= 0) figure.Add(ms, other);
  }
  return figure.Print(2.0);
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  const bool switches = SwitchPage();
  const bool exports = Export();
  return switches && exports ? 0 : 1;
}
