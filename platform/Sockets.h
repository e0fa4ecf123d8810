#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QtGlobal>
#include <functional>
#include <optional>

// What the system tells of a socket. A peer that closes makes it readable.
enum class SocketNotice {
  Readable,
  Writable,
  Secured,     // behind StartTls: encrypted, and the peer is the host that was asked for
  NotSecured,  // behind StartTls: it isn't, and nothing more will come
};

// The system's own calls on a stream socket, IPv4 only, as few as one conversation needs. Calls block until
// StartNotices; there are no time-outs.
class Sockets {
 public:
  // Above 0 for a socket.
  using Handle = qintptr;

  virtual ~Sockets() = default;

  // Readies the system's network library, and lets it go again: 0 or the number of the error.
  virtual int StartUp() = 0;
  virtual void CleanUp() = 0;

  // -1 on failure.
  virtual Handle Open() = 0;
  // The first address of a dotted address or a host name, as its four bytes lie in memory; nothing on failure.
  virtual std::optional<quint32> Resolve(const QByteArray& name) = 0;
  virtual bool Connect(Handle socket, quint32 address, quint16 port) = 0;

  // From here on no call blocks and the notices come, through the event loop of the calling thread: Readable for as
  // long as there is something to read, Writable only while it is watched for. The routine may close the socket.
  virtual bool StartNotices(Handle socket, std::function<void(SocketNotice)> notify) = 0;
  virtual void WatchWritable(Handle socket, bool watched) = 0;
  virtual void StopNotices(Handle socket) = 0;

  // Behind StartNotices: from here on all is encrypted by TLS, and the peer has to prove that it is `host`. Secured or
  // NotSecured comes before any other notice; what stood in the socket unread is never given.
  virtual void StartTls(Handle socket, const QByteArray& host) = 0;
  // Why, behind NotSecured.
  virtual QString TlsError(Handle socket) const = 0;

  // Number of bytes that were taken or came; -1 on failure. The pieces count as one text, of which any part may be
  // taken; the first `from` bytes of the first piece don't belong to it. 0 bytes received: the peer has closed.
  virtual qsizetype Send(Handle socket, const QList<QByteArray>& pieces, qsizetype from) = 0;
  virtual qsizetype Receive(Handle socket, char* data, qsizetype size) = 0;

  // A good close leaves the error number as it is.
  virtual void Close(Handle socket) = 0;

  // Number of the last call that failed, the system's own.
  virtual int LastError() const = 0;
  // The failure says only that there is nothing to do at the moment.
  virtual bool IsNotReady(int error) const = 0;
};
