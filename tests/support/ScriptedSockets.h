#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include "Sockets.h"

// A network of one socket that the test plays: it says what comes and what is taken, and sees what is sent. Every call
// is well by default.
class ScriptedSockets : public Sockets {
 public:
  static constexpr int kWouldBlock = 11;
  static constexpr int kBroken = 104;
  static constexpr qsizetype kTakesAll = 1 << 30;

  // Runs while a name is looked up, before the call ends.
  std::function<void()> WhileResolving;

  // How the calls end.
  int StartUpResult = 0;
  bool OpenFails = false;
  bool ResolveFails = false;
  bool ConnectFails = false;
  bool NoticesFail = false;
  int ErrorNumber = 111;
  // The system's last error once a socket has been closed; 0 leaves it as it was.
  int CloseError = 0;
  // What the next calls of Send take, each at most; behind the last one all. -1: would block, -2: another error.
  QList<qsizetype> SendTakes;

  // What was asked.
  QByteArray Sent;
  int SendCalls = 0;
  // Where in memory the first piece of each of these calls began.
  QList<const char*> FirstPieces;
  QByteArray ResolvedName;
  quint16 Port = 0;
  int StartUps = 0, CleanUps = 0;
  int Opened = 0, Closed = 0;
  QStringList Calls;
  bool IsOpen() const { return handle_ > 0; }
  bool IsWatchedForWriting() const { return writable_; }
  // Whom StartTls was asked for; behind it nothing is given or taken before Secure.
  QByteArray TlsHost;

  // What happens on the socket; nothing without one. As long as bytes are left unread it is told again.
  void Bring(const QByteArray& bytes);
  void FailReading(int error);
  void BecomeWritable();
  // How the question of StartTls ends.
  void Secure();
  void RefuseTls(const QString& why);

  int StartUp() override;
  void CleanUp() override;
  Handle Open() override;
  std::optional<quint32> Resolve(const QByteArray& name) override;
  bool Connect(Handle socket, quint32 address, quint16 port) override;
  bool StartNotices(Handle socket, std::function<void(SocketNotice)> notify) override;
  void WatchWritable(Handle socket, bool watched) override;
  void StopNotices(Handle socket) override;
  void StartTls(Handle socket, const QByteArray& host) override;
  QString TlsError(Handle) const override { return tlsError_; }
  qsizetype Send(Handle socket, const QList<QByteArray>& pieces, qsizetype from) override;
  qsizetype Receive(Handle socket, char* data, qsizetype size) override;
  void Close(Handle socket) override;
  int LastError() const override { return error_; }
  bool IsNotReady(int error) const override { return error == kWouldBlock; }

 private:
  void Notify(SocketNotice notice);

  Handle handle_ = 0;
  std::function<void(SocketNotice)> notify_;
  bool writable_ = false;
  int error_ = 0;
  // What Receive gives: bytes, or the error where it is not 0.
  QByteArray incoming_;
  int readError_ = 0;
  QString tlsError_;
};
