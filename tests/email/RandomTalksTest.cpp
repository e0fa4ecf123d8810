// Ten thousand talks with servers that do anything at every state of it, in clear and encrypted: they stall, hang up,
// reset, talk on, answer byte by byte or all at once. Whatever they do, the window lives and a talk ends once at most.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QPointer>
#include <QProcess>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslSocket>
#include <QTcpServer>
#include <QTimer>
#include <random>

#include "HostSockets.h"
#include "MailUC.h"
#include "RandomSeed.h"
#include "TestPlatform.h"

namespace {

constexpr int kTalkMs = 20000;
constexpr int kBeatMs = 1;

struct Counts {
  int sent = 0, failed = 0, closed = 0, stalled = 0;
};

class Chance {
 public:
  explicit Chance(unsigned seed) : random_(seed) {}
  int Below(int bound) { return int(random_() % unsigned(bound)); }
  bool OneIn(int bound) { return Below(bound) == 0; }
  QByteArray Bytes(int most) {
    QByteArray bytes(Below(most) + 1, '\0');
    for (char& c : bytes) c = char(Below(256));
    return bytes;
  }

 private:
  std::mt19937 random_;
};

// The certificate of a host of the test's own, which vouches for itself and is trusted all the same.
struct Identity {
  QSslCertificate certificate;
  QSslKey key;

  static const Identity& Own() {
    static const Identity own = [] {
      const QTemporaryDir folder;
      const QString path = folder.filePath("own.crt"), key = folder.filePath("own.key");
      QProcess maker;
      maker.start("openssl", {"req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2", "-subj", "/CN=own",
                              "-addext", "subjectAltName=DNS:localhost", "-keyout", key, "-out", path});
      maker.waitForFinished();
      return Identity{QSslCertificate::fromPath(path).value(0), QSslKey(FileBytes(key), QSsl::Rsa)};
    }();
    return own;
  }
};

// A server of one client at a time that goes by chance. `isOver` tells that nothing more will come from it.
class OddServer : public QTcpServer {
 public:
  OddServer(Chance& chance, bool isEncrypted) : chance_(chance), isEncrypted_(isEncrypted) {
    EXPECT_TRUE(listen(QHostAddress::LocalHost));
  }

  void Begin(bool isGood) {
    isOver = false;
    isGood_ = isGood;
    inMessage_ = false;
    received_.clear();
    if (client_) client_->deleteLater();
    client_ = nullptr;
  }
  bool isOver = false;

 protected:
  void incomingConnection(qintptr handle) override {
    client_ = new QSslSocket(this);
    client_->setSocketDescriptor(handle);
    connect(client_, &QTcpSocket::readyRead, this, [this] { Read(); });
    if (!isEncrypted_) return Answer("220 here\r\n");
    connect(client_, &QSslSocket::encrypted, this, [this] { Answer("220 here\r\n"); });
    if (!isGood_ && chance_.OneIn(8)) return Answer("220 in clear\r\n");
    QSslConfiguration configuration = client_->sslConfiguration();
    configuration.setLocalCertificate(Identity::Own().certificate);
    configuration.setPrivateKey(Identity::Own().key);
    client_->setSslConfiguration(configuration);
    client_->startServerEncryption();
  }

 private:
  void Read() {
    received_ += client_->readAll();
    while (client_ && !isOver) {
      const QByteArray mark = inMessage_ ? "\r\n.\r\n" : "\r\n";
      const qsizetype end = received_.indexOf(mark);
      if (end < 0) return;
      const QByteArray line = received_.left(end);
      received_.remove(0, end + mark.size());
      const bool wasMessage = inMessage_;
      inMessage_ = !inMessage_ && line == "DATA";
      if (inMessage_) {
        Answer("354 go on\r\n");
      } else if (!wasMessage && line.startsWith("EHLO")) {
        Answer(chance_.OneIn(2) ? "250-here\r\n250 AUTH LOGIN\r\n" : "250 here\r\n");
      } else if (!wasMessage && line == "AUTH LOGIN") {
        Answer("334 VXNlcm5hbWU6\r\n");
      } else if (!wasMessage && line == "YW5u") {
        Answer("334 UGFzc3dvcmQ6\r\n");
      } else if (!wasMessage && line == "c2VjcmV0") {
        Answer("235 go\r\n");
      } else {
        Answer(line == "QUIT" ? "221 bye\r\n" : "250 fine\r\n");
      }
    }
  }

  void Answer(const QByteArray& good) {
    if (!client_) return;
    switch (isGood_ ? 99 : chance_.Below(24)) {
      case 0:
        isOver = true;  // stalls
        return;
      case 1:
        client_->disconnectFromHost();
        isOver = true;
        return;
      case 2:
        client_->abort();
        isOver = true;
        return;
      case 3:
        for (const char c : good) {
          client_->write(&c, 1);
          client_->flush();
        }
        isOver = true;  // as a rule nothing comes of it
        return;
      case 4:
        client_->write(chance_.Bytes(5000));
        isOver = true;
        return;
      case 5:
        client_->write(good + "250 AUTH LOGIN\r\n354 go\r\n235 go\r\n221 bye\r\n");
        return;
      case 6:
        client_->write(QByteArray::number(chance_.Below(1000)).rightJustified(3, '0') + " what\r\n");
        isOver = true;  // nobody knows
        return;
      case 7:
        client_->write(chance_.Bytes(30) + good);
        isOver = true;
        return;
      case 8:
        client_->write(good);
        client_->disconnectFromHost();
        isOver = true;
        return;
      default:
        client_->write(good);
    }
  }

  Chance& chance_;
  const bool isEncrypted_;
  bool isGood_ = false, inMessage_ = false;
  QPointer<QSslSocket> client_;
  QByteArray received_;
};

class RandomTalks : public ::testing::TestWithParam<bool> {
 protected:
  // Plays so many talks and tells what became of them.
  Counts Play(int talks, Chance& chance) {
    const bool isEncrypted = GetParam();
    OddServer server(chance, isEncrypted);
    HostSockets sockets(isEncrypted ? QList<QSslCertificate>{Identity::Own().certificate} : QList<QSslCertificate>());
    TestProgram test(nullptr, &sockets);
    MailUC MUC(test.platform.services);
    MUC.SetServer(QString("%1localhost:%2").arg(isEncrypted ? "smtps://" : "").arg(server.serverPort()));
    MUC.SetFromEmail("ann@example.org");
    MUC.SetToEmail("bob@example.net");
    MUC.SetPassword("secret");
    int ends = 0;
    bool isGood = false, isClosed = false;
    QObject::connect(&MUC, &MailUC::OnSendComplete, [&](bool success, const QByteArray&) {
      ++ends;
      isGood = success;
    });
    QObject::connect(&MUC, &MailUC::ServerClosed, [&] { isClosed = true; });
    int beats = 0;
    qint64 longestMs = 0;
    QElapsedTimer sinceBeat;
    QTimer heart;
    QObject::connect(&heart, &QTimer::timeout, [&] {
      ++beats;
      longestMs = std::max(longestMs, sinceBeat.restart());
    });
    heart.start(kBeatMs);
    sinceBeat.start();
    Counts counts;
    QString error;
    EXPECT_EQ(100, MUC.StartUp(error));
    for (int talk = 0; talk < talks; ++talk) {
      ends = 0;
      isGood = isClosed = false;
      server.Begin(chance.OneIn(20));
      MUC.PrepareEmail(QByteArray(chance.OneIn(50) ? 200'000 : 100, 'x'), "");
      if (MUC.ConnectAndSend(error) != MailUC::kGood) {
        ADD_FAILURE() << error.toStdString();
        return counts;
      }
      const QDeadlineTimer deadline(kTalkMs);
      int quietSince = -1;
      while (ends == 0 && !isClosed && !deadline.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        // A server that has done its last is waited for two beats longer.
        if (server.isOver && quietSince < 0) quietSince = beats;
        if (server.isOver && beats > quietSince + 1) break;
      }
      EXPECT_FALSE(deadline.hasExpired()) << "talk " << talk;
      EXPECT_LE(ends, 1);
      ++(ends == 1 ? isGood ? counts.sent : counts.failed : isClosed ? counts.closed : counts.stalled);
      if (chance.OneIn(10)) {
        MUC.CloseDown();
        MUC.StartUp(error);
      }
      if (::testing::Test::HasFailure()) return counts;
    }
    EXPECT_LT(longestMs, 5000) << "the window stood still";
    EXPECT_GT(beats, 0);
    return counts;
  }
};

TEST_P(RandomTalks, TheWindowLivesAndEachEndsOnceAtMost) {
  const int talks = GetParam() ? 1000 : 9000;
  Chance chance(RandomSeed(GetParam() ? "encrypted talks" : "talks in clear"));
  const Counts counts = Play(talks, chance);
  EXPECT_EQ(talks, counts.sent + counts.failed + counts.closed + counts.stalled);
  // Each of them comes about, or the servers aren't odd enough.
  for (const int count : {counts.sent, counts.failed, counts.closed, counts.stalled}) EXPECT_GT(count, talks / 100);
  std::printf("%d sent, %d failed, %d closed, %d stalled\n", counts.sent, counts.failed, counts.closed, counts.stalled);
}

INSTANTIATE_TEST_SUITE_P(All, RandomTalks, ::testing::Bool(),
                         [](const auto& one) { return one.param ? "Encrypted" : "InClear"; });

}  // namespace
