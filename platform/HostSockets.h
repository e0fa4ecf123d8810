#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <QSslCertificate>
#include <map>

#include "Sockets.h"

class TlsConnection;

// The sockets of the system: POSIX calls, or Winsock on Windows, and Qt's TLS on top. Notices come through Qt's event
// loop.
class HostSockets : public Sockets {
 public:
  // Who vouches for a host's certificate in place of those whom the system trusts; only tests name any.
  explicit HostSockets(QList<QSslCertificate> authorities = {});
  ~HostSockets() override;

  int StartUp() override;
  void CleanUp() override;
  Handle Open() override;
  std::optional<quint32> Resolve(const QByteArray& name) override;
  bool Connect(Handle socket, quint32 address, quint16 port) override;
  bool StartNotices(Handle socket, std::function<void(SocketNotice)> notify) override;
  void WatchWritable(Handle socket, bool watched) override;
  void StopNotices(Handle socket) override;
  void StartTls(Handle socket, const QByteArray& host) override;
  QString TlsError(Handle socket) const override;
  qsizetype Send(Handle socket, const QList<QByteArray>& pieces, qsizetype from) override;
  qsizetype Receive(Handle socket, char* data, qsizetype size) override;
  void Close(Handle socket) override;
  int LastError() const override;
  bool IsNotReady(int error) const override;

 private:
  struct Watch {
    QSocketNotifier* readable;
    QSocketNotifier* writable;
    std::function<void(SocketNotice)> notify;
  };
  static void StopWatching(const Watch& watch);
  TlsConnection* EncryptedOf(Handle socket) const;

  const QList<QSslCertificate> authorities_;
  std::map<Handle, Watch> watches_;
  std::map<Handle, TlsConnection*> encrypted_;
};
