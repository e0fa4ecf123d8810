// How long a typed key takes, on pages of three sizes: ours from the key's release until the page view raises KeyPress,
// when the model and the live page have changed and the insertion point's place is back. The peer is a bare view of the
// same engine with the same page, editable by the engine itself, from the key's press until the program hears of the
// change. A second line for each size lets the peer's page send what it has become, as this program always has it. A
// third one, key_floor, has a bare view change a letter by one script and tell the letter's place: the least that any
// program beside the engine has to wait for. The peer of key_history is ours with nothing kept for Undo.
#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <QWebEngineView>
#include <cstdio>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "Figure.h"
#include "HostedWebBrowser.h"
#include "LetterPage.h"
#include "TestPlatform.h"
#include "TypedKeys.h"
#include "WBUC.h"
#include "Waiting.h"

namespace {

constexpr int kKeys = 200;  // of each
constexpr int kBlock = 20;  // of one side, then as many of the other's: a turn
constexpr int kWarmUp = 10;

class Ours {
 public:
  Ours(TestProgram& test, const QString& file) {
    view_ = new WBUC(test.program, [](QWidget* parent) { return std::make_unique<HostedWebBrowser>(parent); });
    view_->resize(900, 700);
    view_->show();
    Wait ready;
    QObject::connect(view_, &WBUC::DocComplete, view_, [&] {
      if (view_->Location() == file) ready.Done();
    });
    QTimer::singleShot(0, view_, [&] { view_->Navo(file, false); });
    ready.Run("our page");
    view_->disconnect(SIGNAL(DocComplete()));
    typed_.emplace(*view_);
    before_ = view_->Source().size();
  }
  ~Ours() { delete view_; }

  double Key() {
    const double ms = typed_->Key();
    worked_.push_back(typed_->Worked());
    ++count_;
    return ms;
  }

  // From now on what is typed is kept for Undo, or it isn't.
  void KeepHistory(bool on) { view_->History().Watch(on ? &view_->WBDocument()->gateway() : nullptr); }

  const std::vector<double>& Worked() const { return worked_; }

  bool HasThemAll() const { return view_->Source().size() == before_ + count_; }

 private:
  WBUC* view_;
  std::optional<TypedKeys> typed_;
  std::vector<double> worked_;
  qsizetype before_ = 0;
  int count_ = 0;
};

// A message of the console is the shortest way from a page to the program.
class PeerPage : public QWebEnginePage {
 public:
  using QWebEnginePage::QWebEnginePage;
  std::function<void(const QString&)> Said;

 protected:
  void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString& message, int, const QString&) override {
    if (Said) Said(message);
  }
};

class Peer {
 public:
  Peer(const QString& file, bool whole) {
    page_ = new PeerPage(&view_);
    view_.setPage(page_);
    view_.resize(900, 700);
    view_.show();
    Wait ready;
    QObject::connect(page_, &QWebEnginePage::loadFinished, &view_, [&](bool good) {
      if (good) ready.Done();
    });
    page_->load(QUrl::fromLocalFile(file));
    ready.Run("the peer's page");
    keys_ = view_.focusProxy();
    keys_->setFocus();
    const QString script =
        QStringLiteral(
            "document.body.contentEditable = true; document.body.focus();"
            "addEventListener('input', () => console.log(%1));"
            "{ const blocks = document.getElementsByTagName('font');"
            "  const text = blocks[blocks.length >> 1].firstChild;"
            "  getSelection().collapse(text, text.length >> 1);"
            "  text.parentNode.scrollIntoView({block: 'center'}); }")
            .arg(whole ? QStringLiteral("document.documentElement.outerHTML") : QStringLiteral("'changed'"));
    Wait scripted;
    page_->runJavaScript(script, [&](const QVariant&) { scripted.Done(); });
    scripted.Run("the peer's script");
    Pause(500);
  }

  // What the engine alone takes to lay the page out again behind a changed letter: part of every key of both.
  double Layout() {
    Wait measured;
    double ms = 0;
    page_->runJavaScript(
        QStringLiteral(
            "(() => { const at = getSelection().anchorNode, times = [];"
            "for (let i = 0; i < 21; ++i) { const range = document.createRange(); const begin = performance.now();"
            "at.insertData(0, 'e'); range.setStart(at, 1); range.getClientRects();"
            "times.push(performance.now() - begin); }"
            "return times.sort((a, b) => a - b)[10]; })()"),
        [&](const QVariant& result) {
          ms = result.toDouble();
          measured.Done();
        });
    measured.Run("the layout");
    return ms;
  }

  double Key() {
    QElapsedTimer clock;
    double ms = 0;
    Wait said;
    page_->Said = [&](const QString&) {
      ms = double(clock.nsecsElapsed()) / 1e6;
      said.Done();
    };
    clock.start();
    SendKey(keys_, QEvent::KeyPress);
    said.Run("the peer's key");
    SendKey(keys_, QEvent::KeyRelease);
    page_->Said = nullptr;
    return ms;
  }

 private:
  QWebEngineView view_;
  PeerPage* page_;
  QWidget* keys_ = nullptr;
};

class Floor {
 public:
  explicit Floor(const QString& file) {
    view_.resize(900, 700);
    view_.show();
    Wait ready;
    QObject::connect(view_.page(), &QWebEnginePage::loadFinished, &view_, [&](bool good) {
      if (good) ready.Done();
    });
    view_.load(QUrl::fromLocalFile(file));
    ready.Run("the bare page");
    const QString script = QStringLiteral(
        "{ const blocks = document.getElementsByTagName('font');"
        "  window.text = blocks[blocks.length >> 1].firstChild; window.range = document.createRange();"
        "  text.parentNode.scrollIntoView({block: 'center'}); }");
    Run(script);
    Pause(500);
  }

  double Key() {
    Pause(15);
    return Run(
        QStringLiteral("(() => { const at = text.length >> 1; text.insertData(at, 'e'); range.setStart(text, at + 1);"
                       "range.collapse(true); const place = range.getClientRects()[0];"
                       "return [place.left, place.top]; })()"));
  }

 private:
  double Run(const QString& script) {
    QElapsedTimer clock;
    double ms = 0;
    Wait ran;
    clock.start();
    view_.page()->runJavaScript(script, [&](const QVariant&) {
      ms = double(clock.nsecsElapsed()) / 1e6;
      ran.Done();
    });
    ran.Run("the bare script");
    return ms;
  }

  QWebEngineView view_;
};

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  struct Row {
    const char* name;
    int size;
    double bound;
    const char* floor;
    const char* history;
  };
  static const Row rows[] = {{"key_1k", 1200, 0.6, "key_floor", "key_history"},
                             {"key_36k", 36000, 0.3, "key_floor_36k", "key_history_36k"},
                             {"key_359k", 359000, 0.1, "key_floor_359k", "key_history_359k"}};
  constexpr double floorBound = 1.5, historyBound = 1.1;
  bool good = true;
  for (const Row& row : rows) {
    TestProgram test;
    const QString file = test.Path(QStringLiteral("page.html"));
    if (!PutFile(file, MakePage(row.size))) return 1;
    std::vector<double> ours, notice, whole, least, without;
    Figure told(row.name), sent(std::string(row.name) + "_source"), floor(row.floor), history(row.history);
    double layout = 0;
    double model = 0;
    {
      Ours own(test, file);
      Peer tells(file, false);
      Peer sends(file, true);
      Floor bare(file);
      for (int i = 0; i < kWarmUp; ++i) own.Key(), tells.Key(), sends.Key(), bare.Key();
      // The last key of the one before still paints when its turn has ended; that is nobody's time.
      const auto block = [](auto& side, std::vector<double>& times) {
        Pause(150);
        side.Key();
        std::vector<double> turn;
        for (int i = 0; i < kBlock; ++i) Pause(40), turn.push_back(side.Key());
        times.insert(times.end(), turn.begin(), turn.end());
        return Median(turn);
      };
      for (int done = 0; done < kKeys; done += kBlock) {
        const double key = block(own, ours);
        told.Add(key, block(tells, notice));
        sent.Add(key, block(sends, whole));
        floor.Add(key, block(bare, least));
        own.KeepHistory(false);
        history.Add(key, block(own, without));
        own.KeepHistory(true);
      }
      layout = tells.Layout();
      model = Median(own.Worked());
      if (!own.HasThemAll()) {
        std::fprintf(stderr, "%s: keys are missing in our page\n", row.name);
        good = false;
      }
    }
    const auto print = [&](Figure& figure, const std::vector<double>& peer,
                           double bound = std::numeric_limits<double>::infinity()) {
      figure.Note("p99", Quantile(ours, 0.99));
      figure.Note("peerp99", Quantile(peer, 0.99));
      figure.Note("layout", layout);
      figure.Note("model", model);
      if (!figure.Print(bound)) good = false;
    };
    print(told, notice, row.bound);
    print(sent, whole);
    print(floor, least, floorBound);
    print(history, without, historyBound);
  }
  return good ? 0 : 1;
}
