// The mail control on a command line, for readers, servers and figures:
//   mail_tool compose FOLDER...              leaves FOLDER.wire and FOLDER.eml, the two forms of the message
//   mail_tool send SERVER AUTHORITIES FROM TO USER PASSWORD FOLDER...
//                                            sends to SERVER, as a user types it, and leaves FOLDER.eml; prints a line
//                                            of JSON for each: what ConnectAndSend gave, how it ended, and the text.
//                                            AUTHORITIES, a file, are trusted, or for "" the system's
//                                            a page that is refused counts as a failure with code 0
//   mail_tool time SERVER AUTHORITIES FOLDER prints the milliseconds from the first call to the end of the talk
//   mail_tool save FOLDER...                 writes each page anew, as the program saves a page that it shows
//   mail_tool measure FOLDER                 prints milliseconds from the files to the wire form, its bytes, and the
//                                            bytes by which the memory grew at most, until a slow line had taken it all
//   mail_tool online                         tells whether the computer is on a network, and behind a proxy
// A folder holds the page wgcard.html and its pictures.
#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTimer>
#include <cstdio>

#include "HostSockets.h"
#include "MailUC.h"
#include "MessageComposer.h"
#include "ModEmail.h"
#include "PageOnView.h"
#include "TestPlatform.h"

namespace {

constexpr int kUsage = 2;
constexpr int kPatienceMs = 60000;

class Tool {
 public:
  explicit Tool(Sockets* sockets = nullptr) : platform_(nullptr, sockets) {
    MUC_.SetServer("127.0.0.1");
    MUC_.SetFromName("Ann Lee");
    MUC_.SetToName("Bob");
    MUC_.SetSubject("A page");
    QString error;
    MUC_.StartUp(error);
  }

  void Address(const QString& from, const QString& to, const QString& user, const QString& password) {
    MUC_.SetFromEmail(from);
    MUC_.SetToEmail(to);
    if (!user.isEmpty()) MUC_.SetUserName(user);
    if (!password.isEmpty()) MUC_.SetPassword(password);
  }

  // "", or why there is no message.
  QString Prepare(const QString& folder) {
    program_.project.SavedAs(QStringLiteral("mail"), folder);
    program_.project.TurnTo(1);
    return PrepareCurrentEmail(program_, MUC_);
  }

  MailUC& MUC() { return MUC_; }
  ScriptedSockets& Played() { return platform_.sockets; }

 private:
  HostStamps stamps_;
  TestPlatform platform_;
  Platform services_{platform_.attributes,
                     platform_.access,
                     platform_.settings,
                     platform_.dialogs,
                     platform_.shell,
                     platform_.instance,
                     platform_.folders,
                     platform_.services.sockets,
                     platform_.network,
                     platform_.mailAccount,
                     stamps_};
  Program program_{services_};
  MailUC MUC_{services_};
};

int Compose(const QStringList& folders) {
  Tool tool;
  ScriptedSockets& net = tool.Played();
  tool.Address("ann@example.org", "bob@example.net", {}, {});
  for (const QString& folder : folders) {
    QString error;
    if (!tool.Prepare(folder).isEmpty() || tool.MUC().ConnectAndSend(error) != MailUC::kGood) return 1;
    for (const char* const reply : {"220 a", "250 b", "250 c", "250 d"}) net.Bring(reply);
    net.Sent.clear();
    net.Bring("354 e");
    if (!PutFile(folder + ".wire", net.Sent) || !PutFile(folder + ".eml", tool.MUC().EmailFileText())) return 1;
  }
  return 0;
}

// Sends what is prepared; how it ended.
QJsonObject SendOne(MailUC& MUC, QString error) {
  QJsonObject outcome;
  QEventLoop loop;
  QObject::connect(&MUC, &MailUC::OnSendComplete, &loop, [&](bool success, const QByteArray& text) {
    outcome["success"] = success;
    outcome["text"] = QString::fromLatin1(text);
    loop.quit();
  });
  QTimer::singleShot(kPatienceMs, &loop, &QEventLoop::quit);
  const int code = error.isEmpty() ? MUC.ConnectAndSend(error) : 0;
  outcome["code"] = code;
  outcome["text"] = error;
  if (code == MailUC::kGood) loop.exec();
  return outcome;
}

int SendAll(const QStringList& arguments) {
  HostSockets sockets(QSslCertificate::fromPath(arguments.at(1)));
  Tool tool(&sockets);
  tool.MUC().SetServer(arguments.at(0));
  tool.Address(arguments.at(2), arguments.at(3), arguments.at(4), arguments.at(5));
  for (const QString& folder : arguments.mid(6)) {
    const QJsonObject outcome = SendOne(tool.MUC(), tool.Prepare(folder));
    PutFile(folder + ".eml", tool.MUC().EmailFileText());
    std::printf("%s\n", QJsonDocument(outcome).toJson(QJsonDocument::Compact).constData());
    std::fflush(stdout);
  }
  return 0;
}

int TimeOne(const QStringList& arguments) {
  HostSockets sockets(QSslCertificate::fromPath(arguments.at(1)));
  Tool tool(&sockets);
  tool.MUC().SetServer(arguments.at(0));
  tool.Address("ann@example.org", "bob@example.net", {}, {});
  const QString error = tool.Prepare(arguments.at(2));
  QElapsedTimer clock;
  clock.start();
  const QJsonObject outcome = SendOne(tool.MUC(), error);
  std::printf("%.3f\n", double(clock.nsecsElapsed()) / 1e6);
  return outcome["success"].toBool() ? 0 : 1;
}

int Save(const QStringList& folders) {
  PageOnView page;
  for (const QString& folder : folders) {
    const QString path = folder + QStringLiteral("/wgcard.html");
    page.view.Navo(path, false);
    page.browser->Finish();
    const QByteArray source = page.view.SourceForFile();
    if (source.isEmpty() || !PutFile(path, source)) return 1;
  }
  return 0;
}

// The most memory that this process has held since the last reset, in bytes.
qint64 PeakBytes() {
  QFile status("/proc/self/status");
  if (!status.open(QIODevice::ReadOnly)) return 0;
  for (const QByteArray& line : status.readAll().split('\n')) {
    if (line.startsWith("VmHWM:")) return line.mid(6).trimmed().chopped(3).toLongLong() * 1024;
  }
  return 0;
}

bool ResetPeak() {
  QFile clear("/proc/self/clear_refs");
  return clear.open(QIODevice::WriteOnly) && clear.write("5") == 1;
}

// A line that takes a little at a time, once it takes anything, and keeps nothing of it.
class SlowLine : public ScriptedSockets {
 public:
  bool Takes = false;
  qint64 Taken = 0;
  QByteArray End;

  qsizetype Send(Handle socket, const QList<QByteArray>& pieces, qsizetype from) override {
    constexpr qsizetype most = 100'000;
    SendTakes = {Takes ? most : -1};
    Sent.clear();
    const qsizetype taken = ScriptedSockets::Send(socket, pieces, from);
    if (taken > 0) {
      Taken += taken;
      End = (End + Sent).right(5);
    }
    return taken;
  }
};

int Measure(const QString& folder) {
  SlowLine net;
  Tool tool(&net);
  tool.MUC().SetServer(QStringLiteral("mail.example.org"));
  tool.Address("ann@example.org", "bob@example.net", {}, {});
  const auto compose = [&] {
    QString error;
    if (!tool.Prepare(folder).isEmpty() || tool.MUC().ConnectAndSend(error) != MailUC::kGood) return;
    net.Takes = true;
    for (const char* const reply : {"220 a", "250 b", "250 c", "250 d"}) net.Bring(reply);
    net.Takes = false;
    net.Taken = 0;
    net.Bring("354 e");
  };
  if (!ResetPeak()) return 1;
  const qint64 before = PeakBytes();
  QElapsedTimer clock;
  clock.start();
  compose();
  const double milliseconds = double(clock.nsecsElapsed()) / 1e6;
  net.Takes = true;
  while (net.IsWatchedForWriting()) net.BecomeWritable();
  const qint64 grown = PeakBytes() - before;
  std::printf("%.3f %lld %lld\n", milliseconds, static_cast<long long>(net.Taken), static_cast<long long>(grown));
  return net.End == "\r\n.\r\n" ? 0 : 1;
}

int TellNetwork() {
  const HostNetworkState network;
  std::printf("%s, %s\n", network.IsOnline() ? "online" : "offline",
              network.IsConnectionProxy() ? "proxy" : "no proxy");
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  const QStringList arguments = QApplication::arguments().mid(2);
  const QString task = QApplication::arguments().value(1);
  if (task == u"compose" && !arguments.isEmpty()) return Compose(arguments);
  if (task == u"save" && !arguments.isEmpty()) return Save(arguments);
  if (task == u"send" && arguments.size() > 6) return SendAll(arguments);
  if (task == u"time" && arguments.size() == 3) return TimeOne(arguments);
  if (task == u"measure" && arguments.size() == 1) return Measure(arguments.first());
  if (task == u"online" && arguments.isEmpty()) return TellNetwork();
  return kUsage;
}
