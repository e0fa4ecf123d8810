// How long a typed key takes, on pages of three sizes: ours from the key's release until the page view raises KeyPress,
// when the model and the live page have changed and the insertion point's place is back. The peer is a bare view of the
// same engine with the same page, editable by the engine itself, from the key's press until the program hears of the
// change. A second line for each size lets the peer's page send what it has become, as this program always has it. A
// third one, key_floor, has a bare view change a letter by one script and tell the letter's place: the least that any
// program beside the engine has to wait for.
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTemporaryDir>
#include <QTimer>
#include <QWebEngineView>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "HostedWebBrowser.h"
#include "LetterPage.h"
#include "TestPlatform.h"
#include "WBUC.h"
#include "Waiting.h"

namespace {

constexpr int kKeys = 200;  // of each
constexpr int kBlock = 20;  // ours and the peer's by turns
constexpr int kWarmUp = 10;

void Click(QWidget* widget, QPointF at) {
  const QPointF global = widget->mapToGlobal(at);
  QMouseEvent press(QEvent::MouseButtonPress, at, global, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
  QMouseEvent release(QEvent::MouseButtonRelease, at, global, Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
  QApplication::sendEvent(widget, &press);
  QApplication::sendEvent(widget, &release);
}

void SendKey(QWidget* widget, QEvent::Type type) {
  QKeyEvent event(type, Qt::Key_E, Qt::NoModifier, 26, 0x65, 0, QStringLiteral("e"));
  QApplication::sendEvent(widget, &event);
}

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
    auto& browser = static_cast<HostedWebBrowser&>(view_->Browser());
    browser.RunPageScript(QStringLiteral("scrollTo(0, document.body.scrollHeight / 2)"));
    Pause(500);
    keys_ = browser.Widget()->focusProxy();
    keys_->setFocus();
    for (int y = 350; !view_->HasCurrentTextRange() && y < 600; y += 7) {
      Click(keys_, {200, double(y)});
      Pause(600);
    }
    if (!view_->HasCurrentTextRange()) {
      std::fprintf(stderr, "our page takes no click\n");
      std::exit(1);
    }
    before_ = view_->Source().size();
  }
  ~Ours() { delete view_; }

  double Key() {
    double ms = 0;
    Wait raised;
    const auto connection = QObject::connect(view_, &WBUC::KeyPress, view_, [&] {
      ms = double(clock_.nsecsElapsed()) / 1e6;
      raised.Done();
    });
    SendKey(keys_, QEvent::KeyPress);
    Pause(15);
    clock_.start();
    SendKey(keys_, QEvent::KeyRelease);
    worked_.push_back(double(clock_.nsecsElapsed()) / 1e6);
    raised.Run("our key");
    QObject::disconnect(connection);
    ++count_;
    return ms;
  }

  // The part of each key until the model has changed and the page is told; the rest is the live page's change and the
  // place in it.
  const std::vector<double>& Worked() const { return worked_; }

  bool HasThemAll() const { return view_->Source().size() == before_ + count_; }

 private:
  WBUC* view_;
  QWidget* keys_ = nullptr;
  QElapsedTimer clock_;
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
  };
  static const Row rows[] = {{"key_1k", 1200, 0.6, "key_floor"},
                             {"key_36k", 36000, 0.3, "key_floor_36k"},
                             {"key_359k", 359000, 0.1, "key_floor_359k"}};
  constexpr double floorBound = 1.5;
  bool good = true;
  for (const Row& row : rows) {
    TestProgram test;
    const QString file = test.Path(QStringLiteral("page.html"));
    if (!PutFile(file, MakePage(row.size))) return 1;
    std::vector<double> ours, notice, whole, least;
    double layout = 0;
    double model = 0;
    {
      Ours own(test, file);
      Peer told(file, false);
      Peer sent(file, true);
      Floor floor(file);
      for (int i = 0; i < kWarmUp; ++i) own.Key(), told.Key(), sent.Key(), floor.Key();
      // The last key of the one before still paints when its turn has ended; that is nobody's time.
      const auto block = [](auto& side, std::vector<double>& times) {
        Pause(150);
        side.Key();
        for (int i = 0; i < kBlock; ++i) Pause(40), times.push_back(side.Key());
      };
      for (int done = 0; done < kKeys; done += kBlock) {
        block(own, ours);
        block(told, notice);
        block(sent, whole);
        block(floor, least);
      }
      layout = told.Layout();
      model = Quantile(own.Worked(), 0.5);
      if (!own.HasThemAll()) {
        std::fprintf(stderr, "%s: keys are missing in our page\n", row.name);
        good = false;
      }
    }
    const auto print = [&](const std::string& name, const std::vector<double>& peer) {
      const double own = Quantile(ours, 0.5);
      const double other = Quantile(peer, 0.5);
      std::printf("BENCH name=%s ours=%.3f peer=%.3f ratio=%.3f unit=ms p99=%.3f peerp99=%.3f layout=%.3f model=%.3f\n",
                  name.c_str(), own, other, own / other, Quantile(ours, 0.99), Quantile(peer, 0.99), layout, model);
      std::fflush(stdout);
      return own / other;
    };
    if (print(row.name, notice) > row.bound) good = false;
    print(std::string(row.name) + "_source", whole);
    if (print(row.floor, least) > floorBound) good = false;
  }
  return good ? 0 : 1;
}
