#include "ScriptedSockets.h"

#include <algorithm>

void ScriptedSockets::Notify(SocketNotice notice) {
  // The routine may end what it is called from.
  const auto notify = notify_;
  if (notify) notify(notice);
}

void ScriptedSockets::Bring(const QByteArray& bytes) {
  incoming_ = bytes;
  readError_ = 0;
  do {
    Notify(SocketNotice::Readable);
  } while (notify_ && !incoming_.isEmpty());
  incoming_.clear();
}

void ScriptedSockets::FailReading(int error) {
  readError_ = error;
  Notify(SocketNotice::Readable);
}

void ScriptedSockets::BecomeWritable() {
  Notify(SocketNotice::Writable);
}

int ScriptedSockets::StartUp() {
  ++StartUps;
  return StartUpResult;
}

void ScriptedSockets::CleanUp() {
  ++CleanUps;
}

Sockets::Handle ScriptedSockets::Open() {
  Calls += QStringLiteral("open");
  if (OpenFails) {
    error_ = ErrorNumber;
    return -1;
  }
  ++Opened;
  return handle_ = 5 + Opened;
}

std::optional<quint32> ScriptedSockets::Resolve(const QByteArray& name) {
  Calls += QStringLiteral("resolve");
  ResolvedName = name;
  if (WhileResolving) WhileResolving();
  if (ResolveFails) return std::nullopt;
  return 1;
}

bool ScriptedSockets::Connect(Handle, quint32, quint16 port) {
  Calls += QStringLiteral("connect");
  Port = port;
  if (ConnectFails) error_ = ErrorNumber;
  return !ConnectFails;
}

bool ScriptedSockets::StartNotices(Handle, std::function<void(SocketNotice)> notify) {
  Calls += QStringLiteral("notices");
  if (NoticesFail) {
    error_ = ErrorNumber;
    return false;
  }
  notify_ = std::move(notify);
  writable_ = false;
  TlsHost.clear();
  return true;
}

void ScriptedSockets::WatchWritable(Handle, bool watched) {
  writable_ = watched;
}

void ScriptedSockets::StopNotices(Handle) {
  Calls += QStringLiteral("stop");
  notify_ = nullptr;
  writable_ = false;
}

void ScriptedSockets::StartTls(Handle, const QByteArray& host) {
  Calls += QStringLiteral("tls");
  TlsHost = host;
  incoming_.clear();
}

void ScriptedSockets::Secure() {
  Notify(SocketNotice::Secured);
}

void ScriptedSockets::RefuseTls(const QString& why) {
  tlsError_ = why;
  Notify(SocketNotice::NotSecured);
}

qsizetype ScriptedSockets::Send(Handle, const QList<QByteArray>& pieces, qsizetype from) {
  ++SendCalls;
  FirstPieces += pieces.first().constData();
  const qsizetype takes = SendTakes.isEmpty() ? kTakesAll : SendTakes.takeFirst();
  if (takes < 0) {
    error_ = takes == -1 ? kWouldBlock : kBroken;
    return -1;
  }
  qsizetype left = takes;
  for (const QByteArray& piece : pieces) {
    const qsizetype taken = std::min(piece.size() - from, left);
    Sent.append(piece.constData() + from, taken);
    left -= taken;
    from = 0;
  }
  return takes - left;
}

qsizetype ScriptedSockets::Receive(Handle, char* data, qsizetype size) {
  if (readError_ != 0) {
    error_ = readError_;
    return -1;
  }
  const qsizetype given = std::min(size, incoming_.size());
  std::copy_n(incoming_.constData(), given, data);
  incoming_.remove(0, given);
  return given;
}

void ScriptedSockets::Close(Handle) {
  Calls += QStringLiteral("close");
  ++Closed;
  handle_ = 0;
  if (CloseError != 0) error_ = CloseError;
}
