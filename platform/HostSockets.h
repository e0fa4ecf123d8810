#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <map>

#include "Sockets.h"

// The sockets of the system: POSIX calls, or Winsock on Windows. Notices come through Qt's event loop.
class HostSockets : public Sockets {
 public:
  ~HostSockets() override;

  int StartUp() override;
  void CleanUp() override;
  Handle Open() override;
  std::optional<quint32> Resolve(const QByteArray& name) override;
  bool Connect(Handle socket, quint32 address, quint16 port) override;
  bool StartNotices(Handle socket, std::function<void(SocketNotice)> notify) override;
  void WatchWritable(Handle socket, bool watched) override;
  void StopNotices(Handle socket) override;
  qsizetype Send(Handle socket, const QList<QByteArray>& pieces) override;
  qsizetype Receive(Handle socket, char* data, qsizetype size) override;
  void Close(Handle socket) override;
  int LastError() const override;
  bool IsNotReady(int error) const override;

 private:
  struct Watch {
    QSocketNotifier* readable;
    QSocketNotifier* writable;
  };
  std::map<Handle, Watch> watches_;
};
