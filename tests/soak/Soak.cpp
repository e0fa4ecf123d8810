// The whole program on the real engine, worked at random for a long time: typing, pages, projects, web-packs, mails,
// themes, tables, the source, and a renderer that is killed now and then. At the end nothing has crashed, model and
// live page are equal, and the memory of the program hasn't grown by more than a tenth since it was warm.
//
// Usage: soak [--minutes N]; 30 minutes if not told. Prints its seed, a line each minute and the verdict at the end.
#include <QApplication>
#include <QComboBox>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QWebEnginePage>
#include <algorithm>
#include <csignal>
#include <cstdio>
#include <random>

#include "EmailPanel.h"
#include "FOps.h"
#include "FWeb.h"
#include "HostedPage.h"
#include "ModMain.h"
#include "OpenProjectPanel.h"
#include "PackPanel.h"
#include "PackedFiles.h"
#include "RandomSeed.h"
#include "StringTable.h"

namespace {

// The address sanitizer keeps what is freed from being used again, so that its program grows by all that it does.
#ifdef __SANITIZE_ADDRESS__
constexpr bool kKeepsFreedMemory = true;
#else
constexpr bool kKeepsFreedMemory = false;
#endif

// Resident memory in MB of a process; 0 where it can't be told.
double ResidentMegabytes(qint64 process) {
  QFile file(QStringLiteral("/proc/%1/statm").arg(process));
  if (!file.open(QIODevice::ReadOnly)) return 0;
  const auto fields = file.readAll().split(' ');
  return fields.size() < 2 ? 0 : fields[1].toDouble() * 4096 / 1e6;
}

class Soak {
 public:
  explicit Soak(unsigned seed) : random_(seed) {}

  // False, with the reason on the error output, when something isn't as it should be.
  bool Run(double minutes) {
    // A small life has its measures in the same proportions.
    const double whole = minutes * 60;
    const double warm = std::min(300.0, whole / 2);  // everything has been done more than once by then
    const double killEvery = std::min(60.0, whole / 4);
    if (!modMain_.Main() || !Settled()) return Fail("the program doesn't start");
    for (const char* name : {"heart.jpg", "hearttop.gif", "paper.jpg", "stars.jpg"})
      PutFile(test_.program.AppPath + QStringLiteral("/samples/") + QLatin1String(name), QByteArray(20000, 'p'));
    QElapsedTimer clock;
    clock.start();
    double nextKill = killEvery, nextWord = 60, warmMegabytes = 0, most = 0;
    while (double(clock.elapsed()) / 1000 < whole) {
      const double now = double(clock.elapsed()) / 1000;
      if (!Step()) return false;
      if (warmMegabytes == 0 && now > warm) warmMegabytes = Renew();
      if (now > nextKill) {
        if (!KillRenderer()) return Fail("the page doesn't come back");
        nextKill = now + killEvery;
      }
      if (now > nextWord) {
        const double megabytes = Renew();
        most = std::max(most, megabytes);
        std::printf("%4.0f s  %d steps  %d renderers killed  %d packs  %d mails  %.1f MB\n", now, steps_, kills_,
                    packs_, mails_, megabytes);
        std::fflush(stdout);
        nextWord = now + 60;
      }
    }
    if (!Agrees()) return Fail("model and live page differ");
    const double end = Renew();
    std::printf("%d steps, %d renderers killed, %d packs, %d mails; %.1f MB when warm, %.1f MB at the end\n", steps_,
                kills_, packs_, mails_, warmMegabytes, end);
    if (steps_ == 0 || kills_ == 0) return Fail("too short to tell anything");
    if (!kKeepsFreedMemory && end > warmMegabytes * 1.1) return Fail("the memory has grown by more than a tenth");
    return true;
  }

 private:
  FWeb& Web() { return *modMain_.Web(); }
  WBUC& View() { return *Web().jWB; }
  ScriptedDialogs& Dialogs() { return test_.platform.dialogs; }
  int Below(int bound) { return int(random_() % unsigned(bound)); }

  bool Fail(const char* what) {
    std::fprintf(stderr, "soak: %s\n  the last steps: %s\n", what, qPrintable(last_.join(QStringLiteral(", "))));
    return false;
  }

  static bool Wait(const std::function<bool()>& done) { return HostedPage::WaitFor(done, 30000); }
  // The page in view has its document.
  bool Settled() {
    return Wait([this] { return View().DocReady() && !View().Source().isEmpty(); });
  }

  void Answer(const QList<MessageAnswer>& answers, const QStringList& texts = {}) {
    Dialogs().Answers = answers;
    Dialogs().Texts = texts;
    Dialogs().Boxes.clear();
    Dialogs().Questions.clear();
  }
  void Choose(const char* name) { Web().findChild<QAction*>(QLatin1String(name))->trigger(); }

  // Lets a page of known size be in view, so that memory can be compared: a new project.
  double Renew() {
    Web().Busy = false;
    Answer({MessageAnswer::Ok});
    Choose("mNewProject");
    Settled();
    QTest::qWait(300);
    return ResidentMegabytes(QCoreApplication::applicationPid());
  }

  QWidget* Input() {
    QWidget* const view = browser_->Widget();
    return view->focusProxy() ? view->focusProxy() : view;
  }

  // Letters in the page's text.
  int Letters() {
    const QString text = View().WBDocument()->body().createTextRange()->text();
    return int(std::count_if(text.begin(), text.end(), [](QChar one) { return one >= u'a' && one <= u'z'; }));
  }

  // Types some keys; gives the number of letters among them.
  int TypeKeys(int count) {
    int letters = 0;
    for (; count > 0; --count) {
      const bool isLetter = Below(8) != 0;
      const int key = isLetter ? Qt::Key_A + Below(26) : int(Qt::Key_Return);
      const QString text = isLetter ? QString(QChar(key).toLower()) : QString();
      QWidget* const keys = Web().focusWidget() ? Input() : static_cast<QWidget*>(&Web());
      for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, key, {}, text);
        QCoreApplication::sendEvent(keys, &event);
      }
      letters += isLetter;
    }
    return letters;
  }

  bool Type() {
    QTest::mouseClick(Input(), Qt::LeftButton, {}, QPoint(40 + Below(300), 20 + Below(200)));
    QTest::qWait(30);
    if (!Wait([this] { return browser_->IsQuiet(); })) return Fail("a click isn't answered");
    const bool takesKeys = View().HasCurrentTextRange();
    const int before = Letters();
    const int typed = TypeKeys(2 + Below(6));
    if (Letters() != before + (takesKeys ? typed : 0)) return Fail("letters were lost");
    QTest::qWait(30);
    return true;
  }

  void SaveProject() {
    Answer({MessageAnswer::Ok}, {QStringLiteral("soak%1").arg(Below(3))});
    Choose("mSaveProject");
  }

  void OpenOrDeleteProject() {
    Answer({MessageAnswer::Ok});
    Choose("mOpenProject");
    OpenProjectPanel& panel = *modMain_.Ops()->FrOps1;
    if (!panel.isVisible() || panel.BoxProj->count() == 0) return;
    panel.BoxProj->setCurrentRow(Below(panel.BoxProj->count()));
    panel.bOpenProj[Below(4) == 0 ? 2 : 0]->click();
    modMain_.Ops()->hide();
  }

  bool Pack() {
    Choose("mMakePack");
    PackPanel& panel = *modMain_.Ops()->FrOps0;
    panel.tMakePath->setText(test_.Path(QStringLiteral("desktop")));
    panel.tMakeFileName->setText(QStringLiteral("soak.exe"));
    const QString pack = test_.Path(QStringLiteral("desktop/soak.exe"));
    QFile::remove(pack);
    Answer({MessageAnswer::No});
    panel.bCreate[0]->click();
    modMain_.Ops()->hide();
    if (!QFile::exists(pack)) return Dialogs().Messages().contains(StringText(132)) || Fail("a pack isn't made");
    ++packs_;
    return !FilesInPack(pack).isEmpty() || Fail("a pack can't be read");
  }

  bool Mail() {
    Choose("mEmail");
    EmailPanel& panel = *modMain_.Ops()->FrOps2;
    panel.ComboMail[0]->setEditText(QStringLiteral("bob%1@example.net").arg(Below(20)));
    panel.ComboMail[1]->setEditText(QStringLiteral("ann@example.org"));
    panel.TMail[2]->setText(QStringLiteral("mail.example.org"));
    ScriptedSockets& net = test_.platform.sockets;
    net.Sent.clear();
    net.Calls.clear();
    Answer({});
    panel.bEmail[0]->click();
    const bool cut = Below(5) == 0;
    int replies = 0;
    for (const char* reply : {"220 a", "250 b", "250 c", "250 d", "354 e", "250 f", "221 g"})
      if (!cut || replies++ < 3) net.Bring(reply);
    if (cut) modMain_.Ops()->MUC.ResetEmail();
    const bool sent = panel.TStat->text() == QStringLiteral(" Email sent.");
    const bool hadPage = !Dialogs().Messages().isEmpty() || panel.TStat->text().contains(QStringLiteral("Error"));
    modMain_.Ops()->hide();
    mails_ += sent;
    return cut || sent || hadPage || Fail("a mail isn't sent");
  }

  bool Step() {
    ++steps_;
    // Some deletions leave the program busy for ever; a real user would start it anew.
    Web().Busy = false;
    const int kind = Below(22);
    last_.append(QString::number(kind));
    if (last_.size() > 20) last_.removeFirst();
    switch (kind) {
      case 0:
        Choose("mNewPage");
        break;
      case 1:
        Choose("mSavePage");
        break;
      case 2:
        Choose("mRefresh");
        break;
      case 3:
        Choose("mDelPage");
        break;
      case 4:
      case 5:
        Web().BoxPage->setCurrentIndex(Below(4));
        break;
      case 6:
        SaveProject();
        break;
      case 7:
        OpenOrDeleteProject();
        break;
      case 8:
        if (!Pack()) return false;
        break;
      case 9:
        if (!Mail()) return false;
        break;
      case 10:
        Choose(Below(2) == 0 ? "mmtheme1" : "mmthemeS5");
        break;
      case 11:
        Answer({MessageAnswer::Ok});
        Choose("mNewProject");
        break;
      case 12:
        View().AddNewElement(QStringLiteral("<TABLE BORDER=1><TR><TD><FONT>cell</FONT></TD></TR></TABLE>"));
        break;
      case 13: {
        QTest::mouseDClick(Input(), Qt::LeftButton, {}, QPoint(20 + Below(200), 15 + Below(100)));
        QTest::qWait(30);
        Choose(Below(2) == 0 ? "mCut" : "mCopy");
        break;
      }
      case 14:
        Choose("mPaste0");
        break;
      default:
        if (!Type()) return false;
        break;
    }
    if (!Settled()) return Fail("the page has no document");
    // A page that grows for ever tells nothing about the program.
    if (View().Source().size() > 60000) {
      Answer({MessageAnswer::Ok});
      Choose("mNewProject");
      if (!Settled()) return Fail("a new project has no document");
    }
    return true;
  }

  bool KillRenderer() {
    bool back = false;
    const auto connection =
        QObject::connect(browser_, &HostedWebBrowser::Recovered, browser_, [&back] { back = true; });
    Web().jWB->Browser().FocusPage();
    if (!Wait([this] { return browser_->IsQuiet(); })) return Fail("a click isn't answered");
    const bool takesKeys = View().HasCurrentTextRange();
    const int before = Letters();
    int typed = TypeKeys(3);  // on their way to a renderer that won't report them
    ::kill(pid_t(browser_->enginePage()->renderProcessPid()), SIGKILL);
    for (int turns = 0; turns < 5 && !back; ++turns) {
      typed += TypeKeys(1);
      QTest::qWait(5);
    }
    if (Letters() != before + (takesKeys ? typed : 0)) return Fail("letters were lost in a death");
    const bool came = Wait([&back] { return back; });
    QObject::disconnect(connection);
    ++kills_;
    return came && Agrees();
  }

  bool Agrees() {
    const QString live = LiveHtmlOf(*browser_);
    return live == View().WBDocument()->documentElement().outerHTML();
  }

  std::minstd_rand random_;
  TestProgram test_;
  HostedWebBrowser* browser_ = nullptr;
  ModMain modMain_{test_.program, [this](QWidget* parent) {
                     auto browser = std::make_unique<HostedWebBrowser>(parent);
                     browser_ = browser.get();
                     return browser;
                   }};
  QStringList last_;
  int steps_ = 0, kills_ = 0, packs_ = 0, mails_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  QCommandLineParser parser;
  parser.addHelpOption();
  const QCommandLineOption minutes(QStringLiteral("minutes"), QStringLiteral("How long."), QStringLiteral("N"),
                                   QStringLiteral("30"));
  parser.addOption(minutes);
  parser.process(application);
  const bool good = Soak(RandomSeed("Soak")).Run(parser.value(minutes).toDouble());
  std::printf("%d passed, %d failed\n", int(good), int(!good));
  return good ? 0 : 1;
}
