// The mail control: composes one message and carries it to a mail server, one recipient a session, in clear text unless
// the server's name asks for encryption. Only finding the server and connecting block; the talk runs by the socket's
// notices and never times out. A server that closes or falls silent ends it without a word of the outcome, and that is
// meant.
#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <optional>

#include "MailServer.h"
#include "MessageComposer.h"
#include "Sockets.h"

struct Platform;

class MailUC : public QObject {
  Q_OBJECT

 public:
  // Result of StartUp and ConnectAndSend when all is well.
  static constexpr int kGood = 100;
  static constexpr quint16 kSmtpPort = 25;

  // Reads the account's defaults. `platform` must outlive the control; only tests name another port.
  explicit MailUC(Platform& platform, quint16 port = kSmtpPort);
  ~MailUC() override;

  // ConnectAndSend has passed its checks for the prepared message, whatever became of it.
  bool EmailAvailable() const { return emailAvailable_; }
  // The message in the form that is saved, or "" while EmailAvailable is false.
  QByteArray EmailFileText() const;
  // Of the mail account that is set up in the system; "" for what it hasn't.
  QString DefEmail() const { return defEmail_; }
  QString DefServer() const { return defServer_; }
  QString DefFrom() const { return defFrom_; }

  // Each is cut at its first line break and trimmed.
  void SetFromName(const QString& name);
  void SetFromEmail(const QString& address);
  void SetToName(const QString& name);
  void SetToEmail(const QString& address);
  void SetSubject(const QString& subject);
  void SetUserName(const QString& name);
  void SetPassword(const QString& password);
  // A host name or a dotted address, or what else ReadMailServer takes.
  void SetServer(const QString& server);

  bool IsOnline() const;
  bool IsConnectionProxy() const;

  // Readies the network library: kGood, or another number and mostly a message in sErr.
  int StartUp(QString& sErr);
  // Ends what is under way and empties buffers and message. Names, addresses, subject and server stay.
  void CloseDown();

  // The page's text, picture paths cut already, and the paths of its pictures with "*" between them. False for a page
  // that a server could take for more than one message: nothing is prepared then, and what is under way has ended.
  bool PrepareEmail(const QByteArray& sHTML, const QString& sFils);
  // Ends what is under way; the prepared message stays.
  void ResetEmail();
  // kGood: the connection stands, and OnSendComplete may follow. Otherwise the string number of the failure, with its
  // text in sErr; 0 with "" where StartUp gave no reason.
  int ConnectAndSend(QString& sErr);
  void DisConnect();

 signals:
  void OnConnect();
  // sErr: the server's words or number as they came, or a text of this program; "" on success.
  void OnSendComplete(bool Success, const QByteArray& sErr);
  // Never raised.
  void OnDisConnect();
  // Each piece of the server's words but its goodbye, before anything comes of it.
  void ServerSaid(const QByteArray& text);
  // The server has closed the connection, or it broke; the outcome stays untold.
  void ServerClosed();

 private:
  // What the next reply answers.
  enum class State {
    WaitsForGreeting,
    SentEhlo,
    SentStartTls,
    Encrypting,
    SentAuthLogin,
    SentAuthPlain,
    SentMailFrom,
    SentRcptTo,
    SentData,
    SentMessage,
    SentQuit,
  };

  int OpenWinsock();
  void ReadAccountDefaults();
  void BuildPlainB64();
  int FirstFailedCheck() const;
  int CloseAndFail(int stringNumber, QString& sErr);

  void OnNotice(SocketNotice notice);
  void ReadReply();
  void ClearBuffers();
  int SendData(const QByteArray& text);
  void DropSent(qsizetype taken);
  void SendLine(const QByteArray& line, State next);
  void SendMailFrom();
  void SendMessage();
  void ProcessReply(const QByteArray& code, const QByteArray& text);
  void AskForEncryption();
  void AfterEhlo(const QByteArray& code, const QByteArray& text);
  void AnswerPrompt(const QByteArray& text);
  void FinishSession(const QByteArray& text);

  Platform& platform_;
  const quint16 port_;
  std::optional<MailServer> server_;
  MessageComposer message_;
  MessageFields fields_;
  bool emailAvailable_ = false;
  QString defEmail_, defServer_, defFrom_;

  int startCode_ = 0;
  int errId_ = 0;
  Sockets::Handle sockHandle_ = 0;
  bool asyncOn_ = false;
  State smtpState_ = State::WaitsForGreeting;
  // The next EHLO is there to ask for encryption, and nothing else is said before it stands.
  bool asksForEncryption_ = false;
  QByteArray userName_, password_;
  QByteArray userB64_, passB64_, plainB64_;
  // What the socket hasn't taken yet, no piece of it empty, and how much of the first one it has. The pieces are those
  // of the message, so that no picture is held twice.
  QList<QByteArray> sendBuffer_;
  qsizetype sentOfFirst_ = 0;
  // What has come behind the greeting, as long as it is looked through.
  QByteArray replyBuffer_;
};
