#pragma once

#include <QList>
#include <QSslSocket>
#include <functional>
#include <optional>

#include "Sockets.h"

// One connection that has been made and is encrypted from here on, by TLS 1.2 or later. The peer has to prove that it
// is the host that was asked for, by a certificate that the system trusts; nothing is read or sent before. It tells
// what Sockets::StartTls tells.
class TlsConnection : public QObject {
  Q_OBJECT

 public:
  using Notify = std::function<void(SocketNotice)>;

  // Takes the socket over and closes it in the end. `authorities`, if there are any, are trusted in place of the
  // system's.
  TlsConnection(qintptr socket, const QByteArray& host, const QList<QSslCertificate>& authorities, Notify notify);

  // Behind NotSecured: why.
  QString Error() const { return error_; }

  void WatchWritable(bool watched);

  // Like those of Sockets, with nothing where it isn't ready. 0 bytes received: the peer has closed, or it broke.
  std::optional<qsizetype> Send(const QList<QByteArray>& pieces, qsizetype from);
  std::optional<qsizetype> Receive(char* data, qsizetype size);

  // From here on nothing is told.
  void StopNotices() { isQuiet_ = true; }

  // Tells nothing more and goes with the event loop's next turn.
  void Close();

 private:
  void TellSoon(SocketNotice notice);
  void Tell(SocketNotice notice);
  void OnReadable();
  void OnTaken();
  void OnEnd();
  void Refuse(const QString& why);
  qsizetype Room() const;

  QSslSocket socket_;
  Notify notify_;
  QString error_;
  bool isSecure_ = false;
  bool hasEnded_ = false;
  bool isWatchedForWriting_ = false;
  bool tellsReadable_ = false, tellsWritable_ = false;
  bool isQuiet_ = false;
};
