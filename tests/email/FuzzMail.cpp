#include <QCoreApplication>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>

#include "Base64.h"
#include "HtmlBody.h"
#include "MailUC.h"
#include "RandomSeed.h"
#include "TestPlatform.h"

// A server that answers anything, and broken base64, under the sanitizers: FuzzMail [ITERATIONS [SEED]]. Without a
// number of iterations it runs for about eight seconds, without a seed it takes a fresh one. Whatever comes, a session
// ends at most once, nothing of the server's own words is sent back, and what is sent keeps its order. Where encryption
// is asked for nothing else is said before it stands.
namespace {

constexpr auto kDuration = std::chrono::seconds(8);

class Chance {
 public:
  explicit Chance(unsigned seed) : random_(seed) {}

  int Below(std::size_t bound) { return int(random_() % bound); }
  bool OneIn(std::size_t bound) { return Below(bound) == 0; }

  QByteArray Bytes(int longest) {
    QByteArray bytes(Below(std::size_t(longest) + 1), '\0');
    for (char& c : bytes) c = char(Below(256));
    return bytes;
  }

  QByteArray Words(int most) {
    static const char* const words[] = {
        "220 ",   "250 ", "250-",         "334 ",         "354 ",     "235 ", "500 ", "AUTH ", "LOGIN",
        " PLAIN", "auth", "VXNlcm5hbWU6", "UGFzc3dvcmQ6", "\r\n",     "\n",   "99",   "=",     "==",
        "VVNFUg", " ",    "EVIL",         "QUIT",         "\x80\xFF", "+2 ",  "-1",   "025"};
    QByteArray text;
    for (int count = Below(std::size_t(most)); count >= 0; --count) {
      if (OneIn(12)) {
        text += Bytes(20);
      } else {
        text += words[Below(std::size(words))];
      }
    }
    return OneIn(200) ? text + QByteArray(Below(5000), 'x') : text;
  }

 private:
  std::mt19937 random_;
};

const char* WrongBase64(Chance& chance) {
  const QByteArray bytes = chance.Bytes(300);
  QByteArray text = EncodeBase64(bytes, LineBreaks::None);
  if (DecodeBase64(text) != bytes) return "base64 doesn't come back";
  for (int count = chance.Below(4); count > 0 && !text.isEmpty(); --count) {
    const int at = chance.Below(std::size_t(text.size()));
    if (chance.OneIn(2)) {
      text[at] = char(chance.Below(256));
    } else {
      text.remove(at, 1 + chance.Below(5));
    }
  }
  const qsizetype size = DecodeBase64(text).size();
  const qsizetype groups = text.size() / 4 * 3;
  if (size > groups || size < std::max<qsizetype>(0, groups - 2)) return "broken base64 has another size";
  return nullptr;
}

const char* WrongPage(Chance& chance) {
  const QByteArray text = chance.OneIn(2) ? chance.Bytes(400) : chance.Words(60);
  QByteArray wrapped = WrapQuotedLines(text);
  for (const QByteArray& line : wrapped.split('\n')) {
    if (!text.contains('\n') && line.size() > 76) return "a line is too long";
  }
  if (!text.contains('\n') && !text.contains('\r') &&
      wrapped.replace("=\r\n", "").replace("\r\n", "") != QByteArray(text).replace("=\r\n", "").replace("\r\n", ""))
    return "the text isn't what it was";
  return nullptr;
}

// The whole of a talk, as far as it may go.
const QRegularExpression& Talk() {
  static const QRegularExpression talk(
      "^(EHLO ann\r\n(STARTTLS\r\n(EHLO ann\r\n)?)?((AUTH "
      "(LOGIN|PLAIN)\r\n)((YW5u|c2VjcmV0|YW5uAGFubgBzZWNyZXQ=)\r\n)*)?"
      "(MAIL FROM: <ann@example.org>\r\n(RCPT TO: <bob@example.net>\r\n(DATA\r\n(From: .*\r\n\\.\r\n(QUIT\r\n)?)?)?)?)?"
      ")?$",
      QRegularExpression::DotMatchesEverythingOption);
  return talk;
}

const char* WrongTalk(Chance& chance, const QString& pictures, int& sent) {
  TestPlatform platform;
  ScriptedSockets& net = platform.sockets;
  MailUC MUC(platform.services);
  int ends = 0;
  bool success = false;
  QObject::connect(&MUC, &MailUC::OnSendComplete, [&](bool good, const QByteArray&) {
    ++ends;
    success = good;
  });
  QString error;
  MUC.StartUp(error);
  const bool asksForTls = chance.OneIn(3);
  MUC.SetServer(asksForTls ? "smtp+tls://s" : "s");
  bool isSecure = !asksForTls;
  MUC.SetFromEmail("ann@example.org");
  MUC.SetToEmail("bob@example.net");
  MUC.SetUserName("ann");
  if (!chance.OneIn(3)) MUC.SetPassword("secret");
  MUC.PrepareEmail("<HTML>page</HTML>", chance.OneIn(2) ? pictures : QString());
  if (MUC.ConnectAndSend(error) != MailUC::kGood) return "there is no connection";
  const char* const good[] = {
      "220 ", "250 AUTH LOGIN\r\n", "250 STARTTLS\r\n", "250 ", "334 VXNlcm5hbWU6\r\n", "354 ", "235 ", "250-"};
  for (int step = 0; step < 30 && net.IsOpen(); ++step) {
    while (chance.OneIn(4)) net.SendTakes += chance.Below(40) - 2;
    const QByteArray clear = "EHLO ann\r\nSTARTTLS\r\n";
    if (!clear.startsWith(net.Sent) && !isSecure) return "a word too much in clear";
    if (!net.TlsHost.isEmpty() && !isSecure && chance.OneIn(2)) {
      if (chance.OneIn(4)) {
        net.RefuseTls("EVIL");
      } else {
        isSecure = true;
        // A server may say yes before it has heard the whole of the question; the rest of that is dropped.
        net.Sent = clear;
        net.Secure();
      }
    }
    switch (chance.Below(10)) {
      case 0:
        net.BecomeWritable();
        break;
      case 1:
        net.FailReading(chance.OneIn(8) ? ScriptedSockets::kBroken : ScriptedSockets::kWouldBlock);
        break;
      case 2:
      case 3:
      case 4:
        net.Bring(chance.Words(12));
        break;
      default:
        net.Bring(good[step == 0 ? 0 : chance.Below(std::size(good))] + (chance.OneIn(3) ? chance.Words(5) : ""));
    }
    if (ends > 1) return "it ended more than once";
    if (ends == 1 && net.IsOpen()) return "it ended and left the socket open";
  }
  net.SendTakes.clear();
  net.BecomeWritable();
  const QByteArray file = MUC.EmailFileText();
  if (net.Sent.contains("EVIL") || net.Sent.contains("\r\n250")) return "the server's words went back";
  // What the socket hadn't taken when it was closed, or when the server said yes to encryption too early, is missing at
  // the end.
  const bool isAgreeing = !net.TlsHost.isEmpty() && !isSecure;
  QByteArray whole = net.Sent;
  if (!net.IsOpen() || isAgreeing)
    whole = whole.contains("\r\n") ? whole.left(whole.lastIndexOf("\r\n") + 2) : QByteArray();
  const bool inMessage = whole.contains("DATA\r\nFrom: ") && !whole.contains("\r\n.\r\n");
  if (inMessage) whole = whole.left(whole.indexOf("From: "));
  if (!Talk().match(QString::fromLatin1(whole)).hasMatch()) {
    std::fprintf(stderr, "%s\n", whole.constData());
    return "what was sent is out of order";
  }
  // A message that has gone out whole is the one that can be saved.
  const QByteArray content = file.mid(file.indexOf("Content-Type: "));
  const qsizetype start = whole.indexOf("Content-Type: ");
  if (start >= 0 && !whole.mid(start).startsWith(content)) return "what was sent isn't what is saved";
  if (success) ++sent;
  return nullptr;
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  const long iterations = argc > 1 ? std::atol(argv[1]) : 0;
  const unsigned seed = argc > 2 ? unsigned(std::atol(argv[2])) : RandomSeed("talks");
  const auto end = std::chrono::steady_clock::now() + kDuration;
  const QTemporaryDir folder;
  QStringList paths;
  for (const int size : {0, 30, 90, 228}) {
    paths += folder.filePath(QStringLiteral("p%1.gif").arg(size));
    if (!PutFile(paths.last(), QByteArray(size, 'p'))) return 1;
  }
  const QString pictures = paths.join(u'*');
  long done = 0;
  int sent = 0;
  for (; iterations > 0 ? done < iterations : std::chrono::steady_clock::now() < end; ++done) {
    Chance chance(seed * 1000003u + unsigned(done));
    const char* wrong = WrongTalk(chance, pictures, sent);
    if (!wrong) wrong = WrongBase64(chance);
    if (!wrong) wrong = WrongPage(chance);
    if (!wrong) continue;
    std::fprintf(stderr, "seed %u, iteration %ld: %s\n", seed, done, wrong);
    return 1;
  }
  std::printf("%ld talks, %d of them to a good end\n", done, sent);
  // Some come to an end, or the server is too odd to tell anything.
  return done > 0 && sent > 0 && sent < done ? 0 : 1;
}
