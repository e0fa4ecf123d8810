#include "MailUC.h"

#include <algorithm>

#include "AsciiText.h"
#include "Base64.h"
#include "CodePage.h"
#include "OneLine.h"
#include "Platform.h"
#include "StringTable.h"

namespace {

constexpr qsizetype kReadSize = 1024;
constexpr char kEnd[] = "\r\n";
// Many times the longest answer to EHLO; whoever talks on is listened to, and not kept.
constexpr qsizetype kMostReply = 1 << 20;

QByteArray Cleaned(const QString& typed) {
  return ToCodePage(TrimBlanks(OneLine(typed)));
}

bool HasNoCase(const QByteArray& text, const QByteArray& what) {
  return FindNoCase(text, what) >= 0;
}

bool IsNumericCode(const QByteArray& code) {
  return std::all_of(code.begin(), code.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// The last line of a reply has no "-" behind its code (RFC 5321, 4.2.1).
bool IsWholeReply(const QByteArray& text) {
  if (!text.endsWith('\n')) return false;
  const QByteArray line = text.mid(text.lastIndexOf('\n', -2) + 1);
  return line.size() > 3 && IsNumericCode(line.left(3)) && line[3] != '-';
}

}  // namespace

MailUC::MailUC(Platform& platform, quint16 port) : platform_(platform), port_(port), message_(platform.stamps) {
  ReadAccountDefaults();
}

MailUC::~MailUC() {
  DisConnect();
  if (startCode_ == kGood) platform_.sockets.CleanUp();
}

void MailUC::ReadAccountDefaults() {
  const QString manager = QStringLiteral("Software\\Microsoft\\Internet Account Manager");
  const MailAccount& system = platform_.mailAccount;
  const auto account = system.ReadRegString(manager, QStringLiteral("Default Mail Account"));
  if (!account) return;
  const QString key = manager + QStringLiteral("\\Accounts\\") + *account;
  defServer_ = system.ReadRegString(key, QStringLiteral("SMTP Server")).value_or(QString());
  defFrom_ = system.ReadRegString(key, QStringLiteral("SMTP Display Name")).value_or(QString());
  defEmail_ = system.ReadRegString(key, QStringLiteral("SMTP Email Address")).value_or(QString());
}

QByteArray MailUC::EmailFileText() const {
  return emailAvailable_ ? message_.BuildMessageFile(fields_) : QByteArray();
}

void MailUC::SetFromName(const QString& name) {
  fields_.FromName = Cleaned(name);
}
void MailUC::SetFromEmail(const QString& address) {
  fields_.FromEmail = Cleaned(address);
}
void MailUC::SetToName(const QString& name) {
  fields_.ToName = Cleaned(name);
}
void MailUC::SetToEmail(const QString& address) {
  fields_.ToEmail = Cleaned(address);
}
void MailUC::SetSubject(const QString& subject) {
  fields_.Subject = Cleaned(subject);
}
void MailUC::SetServer(const QString& server) {
  const QByteArray typed = Cleaned(server);
  server_ = ReadMailServer(typed, port_);
  fields_.Server = server_ ? server_->host : typed;
}

void MailUC::SetUserName(const QString& name) {
  userName_ = Cleaned(name);
  userB64_ = EncodeBase64(userName_, LineBreaks::None);
  BuildPlainB64();
}

void MailUC::SetPassword(const QString& password) {
  password_ = Cleaned(password);
  passB64_ = EncodeBase64(password_, LineBreaks::None);
  BuildPlainB64();
}

// Once in a run of the program: a later user or password doesn't reach AUTH PLAIN, and that is meant.
void MailUC::BuildPlainB64() {
  if (userName_.isEmpty() || password_.isEmpty() || !plainB64_.isEmpty()) return;
  plainB64_ = EncodeBase64(userName_ + '\0' + userName_ + '\0' + password_, LineBreaks::None);
}

bool MailUC::IsOnline() const {
  return platform_.network.IsOnline();
}

bool MailUC::IsConnectionProxy() const {
  return platform_.network.IsConnectionProxy();
}

int MailUC::StartUp(QString& sErr) {
  errId_ = 0;
  startCode_ = OpenWinsock();
  if (errId_ != 0) sErr = StringText(errId_);
  return startCode_;
}

int MailUC::OpenWinsock() {
  if (startCode_ == kGood) return kGood;
  struct Failure {
    int winsockError, stringNumber, code;
  };
  constexpr Failure failures[] = {{10091, TextNumber::NetworkNotReady, 1},
                                  {10092, TextNumber::NoSuchWinsock, 2},
                                  {10036, TextNumber::WinsockBlocked, 3},
                                  {10067, TextNumber::TooManyWinsockTasks, 4},
                                  {10014, TextNumber::BadWinsockParameter, 5}};
  const int error = platform_.sockets.StartUp();
  if (error == 0) return kGood;
  for (const Failure& failure : failures) {
    if (failure.winsockError != error) continue;
    errId_ = failure.stringNumber;
    return failure.code;
  }
  return 0;
}

void MailUC::CloseDown() {
  DisConnect();
  if (startCode_ == kGood) {
    platform_.sockets.CleanUp();
    startCode_ = 0;
  }
  ClearBuffers();
  message_.Clear();
  emailAvailable_ = false;
  errId_ = 0;
}

bool MailUC::PrepareEmail(const QByteArray& sHTML, const QString& sFils) {
  emailAvailable_ = false;
  if (message_.PrepareEmail(sHTML, sFils)) return true;
  // A session under way has lost its message, and would send an empty one.
  ResetEmail();
  return false;
}

void MailUC::ClearBuffers() {
  sendBuffer_.clear();
  sentOfFirst_ = 0;
  replyBuffer_.clear();
}

void MailUC::ResetEmail() {
  ClearBuffers();
  errId_ = 0;
  DisConnect();
}

void MailUC::DisConnect() {
  if (sockHandle_ <= 0) return;
  if (asyncOn_) platform_.sockets.StopNotices(sockHandle_);
  asyncOn_ = false;
  platform_.sockets.Close(sockHandle_);
  sockHandle_ = 0;
}

// String number of what is wrong with what was told so far; 0 for nothing.
int MailUC::FirstFailedCheck() const {
  if (!IsOnline()) return TextNumber::NotOnline;
  if (IsConnectionProxy()) return TextNumber::OnlineByProxy;
  if (fields_.Server.isEmpty()) return TextNumber::NoServer;
  if (fields_.FromEmail.isEmpty()) return TextNumber::NoSender;
  if (!fields_.FromEmail.contains('@')) return TextNumber::BadSender;
  if (fields_.ToEmail.isEmpty()) return TextNumber::NoRecipient;
  if (!fields_.ToEmail.contains('@')) return TextNumber::BadRecipient;
  if (message_.IsEmpty()) return TextNumber::NoEmailText;
  return 0;
}

int MailUC::CloseAndFail(int stringNumber, QString& sErr) {
  Sockets& sockets = platform_.sockets;
  if (sockHandle_ > 0) sockets.Close(sockHandle_);
  // Asked for at once, as anything may change it.
  const int error = sockets.LastError();
  sockHandle_ = 0;
  sErr = StringText(stringNumber);
  // It follows the text without a blank.
  if (stringNumber != TextNumber::ServerNotFound) sErr += QString::number(error);
  return errId_ = stringNumber;
}

int MailUC::ConnectAndSend(QString& sErr) {
  sErr.clear();
  if (startCode_ != kGood) {
    sErr = StringText(errId_);
    return errId_;
  }
  ResetEmail();
  if (const int failed = FirstFailedCheck()) {
    sErr = StringText(failed);
    return errId_ = failed;
  }
  if (userName_.isEmpty()) {
    userName_ = fields_.FromEmail.left(fields_.FromEmail.indexOf('@'));
    userB64_ = EncodeBase64(userName_, LineBreaks::None);
    BuildPlainB64();
  }
  // From here on the message can be saved, whatever the network does.
  emailAvailable_ = true;

  Sockets& sockets = platform_.sockets;
  sockHandle_ = sockets.Open();
  if (sockHandle_ == -1) return CloseAndFail(TextNumber::NoSocket, sErr);
  const auto address = server_ ? sockets.Resolve(server_->host) : std::nullopt;
  if (!address) return CloseAndFail(TextNumber::ServerNotFound, sErr);
  if (!sockets.Connect(sockHandle_, *address, server_->port)) return CloseAndFail(TextNumber::NotConnected, sErr);
  smtpState_ = State::WaitsForGreeting;
  asksForEncryption_ = server_->encryption == Encryption::OnRequest;
  if (!sockets.StartNotices(sockHandle_, [this](SocketNotice notice) { OnNotice(notice); }))
    return CloseAndFail(TextNumber::NoSocketNotices, sErr);
  asyncOn_ = true;
  errId_ = 0;
  if (server_->encryption == Encryption::FromTheStart) sockets.StartTls(sockHandle_, server_->host);
  emit OnConnect();
  return kGood;
}

void MailUC::OnNotice(SocketNotice notice) {
  switch (notice) {
    case SocketNotice::Readable:
      return ReadReply();
    case SocketNotice::Writable:
      if (!sendBuffer_.isEmpty()) SendData(QByteArray());
      return;
    case SocketNotice::Secured:
      // Where it was asked for, all that was said before counts for nothing (RFC 3207, 4.2).
      if (smtpState_ == State::Encrypting) SendLine("EHLO " + userName_, State::SentEhlo);
      return;
    case SocketNotice::NotSecured:
      return FinishSession(ToCodePage(StringText(FixedText::NotEncrypted) + platform_.sockets.TlsError(sockHandle_)));
  }
}

// There is no parser of lines: what comes in one piece and begins with three digits is one reply, whatever else it
// holds, and a further piece of the same reply that does so too moves the talk on by a step. That is meant.
void MailUC::ReadReply() {
  QByteArray text(kReadSize, Qt::Uninitialized);
  const qsizetype size = platform_.sockets.Receive(sockHandle_, text.data(), text.size());
  if (size < 0 && platform_.sockets.IsNotReady(platform_.sockets.LastError())) return;
  if (size < 1) {
    DisConnect();
    emit ServerClosed();
    return;
  }
  text.truncate(size);
  if (smtpState_ == State::SentEhlo && replyBuffer_.size() < kMostReply) replyBuffer_ += text;
  if (smtpState_ != State::SentQuit) emit ServerSaid(text);
  if (smtpState_ == State::SentEhlo && asksForEncryption_) return AskForEncryption();
  const QByteArray code = text.left(3);
  if (code.size() == 3 && IsNumericCode(code)) ProcessReply(code, text);
}

int MailUC::SendData(const QByteArray& text) {
  Sockets& sockets = platform_.sockets;
  if (!text.isEmpty()) sendBuffer_ += text;
  if (sendBuffer_.isEmpty()) return 0;
  const qsizetype taken = sockets.Send(sockHandle_, sendBuffer_, sentOfFirst_);
  if (taken < 0) {
    const bool waits = sockets.IsNotReady(sockets.LastError());
    // A socket that is broken would be ready to write for ever.
    sockets.WatchWritable(sockHandle_, waits);
    return waits ? 0 : -1;
  }
  DropSent(taken);
  sockets.WatchWritable(sockHandle_, !sendBuffer_.isEmpty());
  return 0;
}

// Nothing is cut off a piece, which would copy it.
void MailUC::DropSent(qsizetype taken) {
  sentOfFirst_ += taken;
  while (!sendBuffer_.isEmpty() && sentOfFirst_ >= sendBuffer_.first().size())
    sentOfFirst_ -= sendBuffer_.takeFirst().size();
}

void MailUC::SendLine(const QByteArray& line, State next) {
  SendData(line + kEnd);
  smtpState_ = next;
}

void MailUC::SendMailFrom() {
  SendLine("MAIL FROM: <" + fields_.FromEmail + ">", State::SentMailFrom);
}

void MailUC::SendMessage() {
  for (const QByteArray& piece : message_.WirePieces(fields_)) SendData(piece);
  smtpState_ = State::SentMessage;
}

void MailUC::ProcessReply(const QByteArray& code, const QByteArray& text) {
  const bool goesOn = code == "250" || code == "354";
  switch (smtpState_) {
    case State::WaitsForGreeting:
      if (code != "220") return FinishSession(code);
      replyBuffer_.clear();
      return SendLine("EHLO " + userName_, State::SentEhlo);
    case State::SentEhlo:
      return AfterEhlo(code, text);
    case State::SentStartTls:
      if (code != "220") return FinishSession(text);
      smtpState_ = State::Encrypting;
      ClearBuffers();
      asksForEncryption_ = false;
      return platform_.sockets.StartTls(sockHandle_, server_->host);
    case State::Encrypting:
      return;
    case State::SentAuthLogin:
    case State::SentAuthPlain:
      if (code == "235") return SendMailFrom();
      if (code != "334") return FinishSession(text);
      if (smtpState_ == State::SentAuthPlain) return SendLine(plainB64_, State::SentAuthPlain);
      return AnswerPrompt(text);
    case State::SentMailFrom:
      if (!goesOn) return FinishSession(code);
      return SendLine("RCPT TO: <" + fields_.ToEmail + ">", State::SentRcptTo);
    case State::SentRcptTo:
      if (!goesOn) return FinishSession(code);
      return SendLine("DATA", State::SentData);
    case State::SentData:
      if (!goesOn) return FinishSession(code);
      return SendMessage();
    // From here on no code counts: a message that the server refuses has been sent all the same, and that is meant.
    case State::SentMessage:
      return SendLine("QUIT", State::SentQuit);
    case State::SentQuit:
      return FinishSession(QByteArray());
  }
}

// What offers encryption is read as a whole, as its lines may come one by one. Without it nothing more is said.
void MailUC::AskForEncryption() {
  if (!IsWholeReply(replyBuffer_)) return;
  if (!replyBuffer_.startsWith("250")) return FinishSession(replyBuffer_.left(kReadSize));
  if (!HasNoCase(replyBuffer_, "STARTTLS"))
    return FinishSession(ToCodePage(StringText(FixedText::EncryptionNotOffered)));
  SendLine("STARTTLS", State::SentStartTls);
}

void MailUC::AfterEhlo(const QByteArray& code, const QByteArray& text) {
  if (code != "250") return FinishSession(text);
  if (!HasNoCase(replyBuffer_, "AUTH")) return SendMailFrom();
  // Also where the server would take the message without.
  if (password_.isEmpty()) return FinishSession(StringText(FixedText::PasswordRequired).toLatin1());
  if (HasNoCase(replyBuffer_, "LOGIN")) return SendLine("AUTH LOGIN", State::SentAuthLogin);
  SendLine("AUTH PLAIN", State::SentAuthPlain);
}

void MailUC::AnswerPrompt(const QByteArray& text) {
  const qsizetype blank = text.indexOf(' ');
  const QByteArray prompt = blank < 0 ? QByteArray() : DecodeBase64(text.mid(blank + 1));
  if (HasNoCase(prompt, "user")) return SendLine(userB64_, State::SentAuthLogin);
  if (HasNoCase(prompt, "pass")) return SendLine(passB64_, State::SentAuthLogin);
}

// A failure closes the socket without a word to the server.
void MailUC::FinishSession(const QByteArray& text) {
  if (smtpState_ == State::SentQuit) {
    emit OnSendComplete(true, QByteArray());
  } else {
    emit OnSendComplete(false, text);
  }
  DisConnect();
}
