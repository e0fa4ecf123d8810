// The mail session on the system's sockets, against a server in this process. Whatever the server does, the event loop
// goes on.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QTimer>
#include <csignal>
#include <cstring>
#include <functional>
#include <optional>

#include "HostSockets.h"
#include "MailUC.h"
#include "TestPlatform.h"

namespace {

constexpr int kPatienceMs = 20000;

// A server of one client at a time that answers each line as told.
class Server {
 public:
  using Answer = std::function<QByteArray(const QByteArray& line)>;

  Server() {
    EXPECT_TRUE(server_.listen(QHostAddress::LocalHost));
    QObject::connect(&server_, &QTcpServer::newConnection, &server_, [this] {
      client = server_.nextPendingConnection();
      received.clear();
      inMessage_ = false;
      QObject::connect(client, &QTcpSocket::readyRead, client, [this] { Read(); });
      if (greets) client->write("220 here I am\r\n");
    });
  }

  quint16 Port() const { return server_.serverPort(); }
  void Close() { server_.close(); }

  QTcpSocket* client = nullptr;
  bool greets = true;
  bool reads = true;
  Answer answer = TakesAll;
  QByteArray received;
  QByteArray message;

  static QByteArray TakesAll(const QByteArray& line) {
    if (line.startsWith("DATA")) return "354 go on\r\n";
    if (line.startsWith("QUIT")) return "221 bye\r\n";
    return "250 fine\r\n";
  }

  void Read() {
    if (!reads) return;
    received += client->readAll();
    for (qsizetype end = NextEnd(); end >= 0; end = NextEnd()) {
      const QByteArray line = received.left(end);
      received.remove(0, end);
      if (inMessage_) message = line;
      inMessage_ = line.startsWith("DATA");
      const QByteArray reply = answer(inMessage_ || !line.endsWith("\r\n.\r\n") ? line : QByteArray("."));
      if (!reply.isEmpty() && client) client->write(reply);
    }
  }

 private:
  qsizetype NextEnd() const {
    const QByteArray mark = inMessage_ ? "\r\n.\r\n" : "\r\n";
    const qsizetype at = received.indexOf(mark);
    return at < 0 ? -1 : at + mark.size();
  }

  QTcpServer server_;
  bool inMessage_ = false;
};

class OnSockets : public ::testing::Test {
 protected:
  OnSockets() {
    MUC_.SetServer("127.0.0.1");
    MUC_.SetFromEmail("ann@example.org");
    MUC_.SetToEmail("bob@example.net");
    MUC_.PrepareEmail(page_, "");
    QString error;
    EXPECT_EQ(100, MUC_.StartUp(error));
    heart_.setInterval(5);
    QObject::connect(&heart_, &QTimer::timeout, [this] {
      longestMs_ = std::max(longestMs_, sinceBeat_.restart());
      ++beats_;
    });
    heart_.start();
  }

  int Connect() {
    const int result = MUC_.ConnectAndSend(error_);
    beats_ = 0;
    longestMs_ = 0;
    sinceBeat_.start();
    return result;
  }
  bool WaitForEnd() { return !complete_.isEmpty() || complete_.wait(kPatienceMs); }
  // The event loop has turned so often.
  bool WaitForBeats(int count) {
    const int until = beats_ + count;
    return QTest::qWaitFor([&] { return beats_ >= until; }, kPatienceMs);
  }
  void ExpectSent() {
    ASSERT_TRUE(WaitForEnd());
    EXPECT_TRUE(complete_.first().at(0).toBool()) << complete_.first().at(1).toByteArray().constData();
    EXPECT_TRUE(server_.message.contains(page_));
    EXPECT_LT(longestMs_, 2000);
  }

  Server server_;
  HostSockets sockets_;
  TestProgram test_{nullptr, &sockets_};
  MailUC MUC_{test_.platform.services, server_.Port()};
  QSignalSpy complete_{&MUC_, &MailUC::OnSendComplete};
  QByteArray page_ = "<HTML><BODY>text</BODY></HTML>";
  QString error_;
  QTimer heart_;
  QElapsedTimer sinceBeat_;
  int beats_ = 0;
  qint64 longestMs_ = 0;
};

TEST_F(OnSockets, AMessageArrives) {
  ASSERT_EQ(100, Connect());
  ExpectSent();
  EXPECT_TRUE(QTest::qWaitFor([&] { return server_.client->state() == QAbstractSocket::UnconnectedState; }));
}

TEST_F(OnSockets, MessagesFollowOneAnother) {
  for (int i = 0; i < 20; ++i) {
    complete_.clear();
    server_.message.clear();
    ASSERT_EQ(100, Connect());
    ExpectSent();
  }
}

TEST_F(OnSockets, AHostNameIsLookedUp) {
  MUC_.SetServer("localhost");
  ASSERT_EQ(100, Connect());
  ExpectSent();
}

TEST_F(OnSockets, AMessageOf30MegabytesArrivesWholeWhileTheWindowLives) {
  page_ = QByteArray(30000000, 'x');
  // Lines are broken on the way, so what is compared is the message itself.
  MUC_.PrepareEmail(page_, "");
  page_ = "\r\n\r\n" + QByteArray(70, 'x') + "=\r\n";
  server_.reads = false;
  ASSERT_EQ(100, Connect());
  // It stops somewhere: the greeting has been answered, and nobody reads.
  ASSERT_TRUE(WaitForBeats(20));
  server_.reads = true;
  server_.Read();
  ExpectSent();
  EXPECT_TRUE(server_.message.replace("=\r\n", "").contains("\r\n\r\n" + QByteArray(30000000, 'x') + "\r\n\r\n--"));
}

// More pieces than one call takes, and a reader that falls behind at each.
TEST_F(OnSockets, PicturesArriveWholeAtASlowReader) {
  QStringList paths;
  for (int i = 0; i < 40; ++i) {
    QByteArray bytes(200000 + i, '\0');
    for (qsizetype at = 0; at < bytes.size(); ++at) bytes[at] = char(at * (i + 3) / 7);
    paths += test_.WorkFile(QString("p%1.gif").arg(i));
    ASSERT_TRUE(PutFile(paths.last(), bytes));
  }
  page_ = "<HTML>forty pictures</HTML>";
  MUC_.PrepareEmail(page_, paths.join('*'));
  server_.answer = [this](const QByteArray& line) {
    if (line.startsWith("DATA")) server_.client->setReadBufferSize(30000);
    return Server::TakesAll(line);
  };
  ASSERT_EQ(100, Connect());
  const QByteArray file = MUC_.EmailFileText();
  ExpectSent();
  const auto body = [](const QByteArray& form) { return form.mid(form.indexOf("Content-Type: ")); };
  EXPECT_EQ(40, file.count("Content-Type: image/gif;"));
  EXPECT_EQ(body(file) + "\r\n.\r\n", body(server_.message));
  EXPECT_EQ(file, MUC_.EmailFileText());
}

TEST_F(OnSockets, RepliesInPiecesMoveOnWithEachOneThatBeginsWithDigits) {
  QList<QByteArray> lines;
  server_.answer = [&](const QByteArray& line) {
    lines += line;
    if (!line.startsWith("EHLO")) return Server::TakesAll(line);
    server_.client->write("250-a\r\n");
    server_.client->flush();
    return QByteArray();
  };
  ASSERT_EQ(100, Connect());
  ASSERT_TRUE(QTest::qWaitFor([&] { return lines.size() == 3; }, kPatienceMs));
  // The first line alone is taken for the whole reply.
  EXPECT_EQ("MAIL FROM: <ann@example.org>\r\n", lines.at(1));
  ExpectSent();
}

TEST_F(OnSockets, ASilentServerIsWaitedForWithoutEndAndTheWindowLives) {
  server_.greets = false;
  ASSERT_EQ(100, Connect());
  ASSERT_TRUE(WaitForBeats(100));
  EXPECT_LT(longestMs_, 500);
  EXPECT_TRUE(complete_.isEmpty());
  MUC_.CloseDown();
  EXPECT_TRUE(
      QTest::qWaitFor([&] { return server_.client->state() == QAbstractSocket::UnconnectedState; }, kPatienceMs));
  EXPECT_TRUE(complete_.isEmpty());
}

TEST_F(OnSockets, AServerThatClosesRaisesNothing) {
  for (const char* const at : {"EHLO", "MAIL", "RCPT", "DATA", ".", "QUIT"}) {
    complete_.clear();
    server_.answer = [&](const QByteArray& line) {
      if (!line.startsWith(at)) return Server::TakesAll(line);
      server_.client->disconnectFromHost();
      return QByteArray();
    };
    ASSERT_EQ(100, Connect());
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return server_.client && server_.client->state() == QAbstractSocket::UnconnectedState; }, kPatienceMs))
        << at;
    ASSERT_TRUE(WaitForBeats(5));
    EXPECT_TRUE(complete_.isEmpty()) << at;
    server_.client = nullptr;
  }
}

TEST_F(OnSockets, AServerThatResetsInTheMiddleOfAMessageRaisesNothingAndDoesNotSpin) {
  MUC_.PrepareEmail(QByteArray(30000000, 'x'), "");
  server_.answer = [&](const QByteArray& line) {
    if (line.startsWith("DATA")) {
      server_.reads = false;
      server_.client->setReadBufferSize(1);
    }
    return Server::TakesAll(line);
  };
  ASSERT_EQ(100, Connect());
  ASSERT_TRUE(QTest::qWaitFor([&] { return !server_.reads; }, kPatienceMs));
  ASSERT_TRUE(WaitForBeats(20));
  server_.client->abort();
  const clock_t before = clock();
  ASSERT_TRUE(WaitForBeats(100));
  EXPECT_LT(double(clock() - before) / CLOCKS_PER_SEC, 0.4);
  EXPECT_TRUE(complete_.isEmpty());
}

TEST_F(OnSockets, ALineOf100KilobytesIsReadPieceByPiece) {
  server_.answer = [](const QByteArray&) { return "500 " + QByteArray(100000, 'x') + "\r\n"; };
  ASSERT_EQ(100, Connect());
  ASSERT_TRUE(WaitForEnd());
  EXPECT_FALSE(complete_.first().at(0).toBool());
  const QByteArray text = complete_.first().at(1).toByteArray();
  EXPECT_TRUE(text.startsWith("500 xxx"));
  EXPECT_LE(text.size(), 1024);
}

TEST_F(OnSockets, ALongGoodLineIsAReplyByItsFirstPieceAndTheRestIsNone) {
  QList<QByteArray> lines;
  server_.answer = [&](const QByteArray& line) {
    lines += line.left(4);
    return line.startsWith("EHLO") ? "250 " + QByteArray(100000, 'x') + "\r\n" : QByteArray();
  };
  ASSERT_EQ(100, Connect());
  ASSERT_TRUE(QTest::qWaitFor([&] { return lines.size() == 2; }, kPatienceMs));
  ASSERT_TRUE(WaitForBeats(100));
  EXPECT_EQ(QList<QByteArray>({"EHLO", "MAIL"}), lines);
  EXPECT_LT(longestMs_, 500);
  // What begins with digits moves it on again.
  server_.client->write("250 fine\r\n");
  EXPECT_TRUE(QTest::qWaitFor([&] { return lines.size() == 3; }, kPatienceMs));
}

// What a server says without end is listened to, and not kept.
TEST_F(OnSockets, AServerThatTalksForEverTakesNoMemory) {
  const auto resident = [] {
    QFile statm("/proc/self/statm");
    if (!statm.open(QIODevice::ReadOnly)) return qint64(-1);
    return statm.readAll().split(' ').value(1).toLongLong() * ::sysconf(_SC_PAGESIZE);
  };
  if (resident() < 0) GTEST_SKIP() << "this system doesn't tell how much memory is taken";
#ifdef __SANITIZE_ADDRESS__
  constexpr qint64 most = 35'000'000;  // the sanitizer holds back for a while what was freed
#else
  constexpr qint64 most = 15'000'000;
#endif
  constexpr qint64 flood = 40'000'000;
  for (const char* const at : {"greeting", "EHLO", "MAIL", "QUIT"}) {
    qint64 said = 0;
    const QByteArray talk = "no code " + QByteArray(60'000, 'x') + "\r\n";
    const auto talkOn = [&] {
      while (server_.client && said < flood && server_.client->bytesToWrite() < 200'000) {
        server_.client->write(talk);
        said += talk.size();
      }
    };
    const auto begin = [&] {
      QObject::connect(server_.client, &QTcpSocket::bytesWritten, server_.client, talkOn);
      talkOn();
      return QByteArray();
    };
    server_.greets = qstrcmp(at, "greeting") != 0;
    server_.client = nullptr;
    server_.answer = [&](const QByteArray& line) { return line.startsWith(at) ? begin() : Server::TakesAll(line); };
    ASSERT_EQ(100, Connect());
    ASSERT_TRUE(QTest::qWaitFor([&] { return server_.client != nullptr; }, kPatienceMs));
    if (!server_.greets) begin();
    const qint64 before = resident();
    // Without the pauses of the usual wait, as both ends live in this thread.
    const QDeadlineTimer deadline(3 * kPatienceMs);
    const auto isSaid = [&] { return said >= flood && server_.client->bytesToWrite() == 0; };
    while (!isSaid() && !deadline.hasExpired()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    ASSERT_TRUE(isSaid()) << at;
    EXPECT_LT(resident() - before, most) << at;
    EXPECT_LT(longestMs_, 3000) << at;
    EXPECT_TRUE(complete_.isEmpty()) << at;
    MUC_.CloseDown();
    QString error;
    ASSERT_EQ(100, MUC_.StartUp(error));
    MUC_.PrepareEmail(page_, "");
  }
}

TEST_F(OnSockets, TextOf8BitsIsHandedOnAsItCame) {
  server_.answer = [](const QByteArray&) { return QByteArray("500 \x80\xFF\0\x01 \xE4\r\n", 12); };
  ASSERT_EQ(100, Connect());
  ASSERT_TRUE(WaitForEnd());
  EXPECT_EQ(QByteArray("500 \x80\xFF\0\x01 \xE4\r\n", 12), complete_.first().at(1).toByteArray());
}

TEST_F(OnSockets, ASecondSendClosesTheFirst) {
  server_.greets = false;
  ASSERT_EQ(100, Connect());
  ASSERT_TRUE(QTest::qWaitFor([&] { return server_.client != nullptr; }, kPatienceMs));
  QTcpSocket* const first = server_.client;
  server_.greets = true;
  ASSERT_EQ(100, Connect());
  ExpectSent();
  EXPECT_NE(first, server_.client);
  EXPECT_TRUE(QTest::qWaitFor([&] { return first->state() == QAbstractSocket::UnconnectedState; }, kPatienceMs));
}

TEST_F(OnSockets, AClosedPortIsToldWithTheSystemsNumber) {
  server_.Close();
  EXPECT_EQ(163, Connect());
  EXPECT_EQ(QString("Winsock error - Failed to connect to server. Error number:%1").arg(ECONNREFUSED), error_);
  EXPECT_TRUE(MUC_.EmailAvailable());
  EXPECT_TRUE(complete_.isEmpty());
}

TEST_F(OnSockets, AnUnknownNameIsTold) {
  MUC_.SetServer("no host has this name");
  EXPECT_EQ(162, Connect());
  EXPECT_EQ("Failed to resolve server IP address.", error_);
}

// A program that is started meanwhile would keep the line open.
TEST(HostSockets, AreNotHandedToProgramsThatAreStarted) {
  HostSockets sockets;
  const Sockets::Handle made = sockets.Open();
  ASSERT_GT(made, 0);
  EXPECT_TRUE(::fcntl(int(made), F_GETFD) & FD_CLOEXEC);
  sockets.Close(made);
}

// A socket can nearly always be written to, and would keep the program busy.
TEST(HostSockets, TellOfRoomToWriteOnlyWhenAsked) {
  QTcpServer server;
  ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
  HostSockets sockets;
  const Sockets::Handle made = sockets.Open();
  ASSERT_TRUE(sockets.Connect(made, sockets.Resolve("127.0.0.1").value_or(0), server.serverPort()));
  int writable = 0, readable = 0;
  ASSERT_TRUE(sockets.StartNotices(
      made, [&](SocketNotice notice) { ++(notice == SocketNotice::Writable ? writable : readable); }));
  // What the server says is told behind all that was ready before it.
  ASSERT_TRUE(QTest::qWaitFor([&] { return server.hasPendingConnections(); }, kPatienceMs));
  QTcpSocket* const client = server.nextPendingConnection();
  client->write("x");
  ASSERT_TRUE(QTest::qWaitFor([&] { return readable > 0; }, kPatienceMs));
  EXPECT_EQ(0, writable);
  sockets.WatchWritable(made, true);
  EXPECT_TRUE(QTest::qWaitFor([&] { return writable > 0; }, kPatienceMs));
  sockets.WatchWritable(made, false);
  const int before = writable, seen = readable;
  ASSERT_TRUE(QTest::qWaitFor([&] { return readable > seen; }, kPatienceMs));
  EXPECT_EQ(before, writable);
  sockets.StopNotices(made);
  sockets.Close(made);
}

TEST(HostSockets, TellNothingMoreOnceStopped) {
  int ends[2];
  ASSERT_EQ(0, ::socketpair(AF_UNIX, SOCK_STREAM, 0, ends));
  ASSERT_EQ(1, ::write(ends[1], "x", 1));
  HostSockets sockets;
  int notices = 0;
  // Ready to read and to write in the same round.
  ASSERT_TRUE(sockets.StartNotices(ends[0], [&](SocketNotice) {
    ++notices;
    sockets.StopNotices(ends[0]);
  }));
  sockets.WatchWritable(ends[0], true);
  ASSERT_TRUE(QTest::qWaitFor([&] { return notices > 0; }, kPatienceMs));
  for (int round = 0; round < 10; ++round) QCoreApplication::processEvents();
  EXPECT_EQ(1, notices);
  sockets.Close(ends[0]);
  sockets.Close(ends[1]);
}

// The signal also makes room for the connection that waits, which then comes about by itself.
TEST(HostSockets, ConnectInSpiteOfASignal) {
  static int listener = -1;
  static volatile sig_atomic_t caught = 0;
  listener = ::socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  ASSERT_EQ(0, ::bind(listener, reinterpret_cast<sockaddr*>(&address), size));
  ASSERT_EQ(0, ::listen(listener, 0));
  ASSERT_EQ(0, ::getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size));
  HostSockets sockets;
  const Sockets::Handle first = sockets.Open(), second = sockets.Open();
  ASSERT_TRUE(sockets.Connect(first, address.sin_addr.s_addr, ntohs(address.sin_port)));
  struct sigaction action{}, before{};
  action.sa_handler = [](int) {
    caught = caught + 1;
    ::close(::accept(listener, nullptr, nullptr));
  };
  ASSERT_EQ(0, ::sigaction(SIGALRM, &action, &before));
  const itimerval soon{{}, {0, 50'000}};
  ASSERT_EQ(0, ::setitimer(ITIMER_REAL, &soon, nullptr));
  EXPECT_TRUE(sockets.Connect(second, address.sin_addr.s_addr, ntohs(address.sin_port)));
  EXPECT_EQ(1, caught) << "it came while the connection waited";
  ::sigaction(SIGALRM, &before, nullptr);
  sockets.Close(first);
  sockets.Close(second);
  ::close(listener);
}

// Without a standard stream the system would hand out its number: 0 stands for none, and errors are written to 2.
TEST(HostSockets, NeverHaveTheNumberOfAStandardStream) {
  for (const int stream : {0, 2}) {
    const int kept = ::dup(stream);
    ::close(stream);
    HostSockets sockets;
    const Sockets::Handle made = sockets.Open();
    const bool isFree = ::fcntl(stream, F_GETFD) == -1;
    sockets.Close(made);
    if (kept >= 0) {
      ::dup2(kept, stream);
      ::close(kept);
    }
    EXPECT_GT(made, 2) << stream;
    EXPECT_TRUE(isFree) << stream;
  }
}

TEST(HostSockets, ADottedAddressIsTakenAsItStands) {
  HostSockets sockets;
  const quint32 loop = sockets.Resolve("127.0.0.1").value_or(0);
  EXPECT_EQ(0, std::memcmp("\x7F\0\0\1", &loop, sizeof loop));
  EXPECT_FALSE(sockets.Resolve("255.255.255.255.invalid").has_value());
}

// A dotted address of all ones goes the way of a name, and the name's answer is the mark of failure again.
TEST(HostSockets, AllOnesCountAsANameThatNobodyHas) {
  HostSockets sockets;
  for (const char* const name : {"255.255.255.255", "4294967295", "0xffffffff"})
    EXPECT_EQ(std::nullopt, sockets.Resolve(name)) << name;
  EXPECT_TRUE(sockets.Resolve("255.255.255.254").has_value());
}

TEST_F(OnSockets, TheAddressOfAllOnesIsToldAsUnknown) {
  MUC_.SetServer("255.255.255.255");
  EXPECT_EQ(162, Connect());
  EXPECT_EQ("Failed to resolve server IP address.", error_);
}

}  // namespace
