#include "HostSockets.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "TlsConnection.h"

#ifdef Q_OS_WIN
#include <winsock2.h>
#else
#include <arpa/inet.h>
#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/uio.h>
#include <unistd.h>

#include <cerrno>
#endif

namespace {

// One call takes at most so much, since systems have their bounds for both.
constexpr qsizetype kLargestCall = 1 << 30;
constexpr std::size_t kMostPieces = 16;

#ifdef Q_OS_WIN

using Socket = SOCKET;
using Buffer = WSABUF;

Buffer BufferOf(const char* bytes, qsizetype size) {
  return {static_cast<ULONG>(size), const_cast<char*>(bytes)};
}

qsizetype SendBuffers(Socket socket, Buffer* buffers, std::size_t count) {
  DWORD taken = 0;
  if (WSASend(socket, buffers, static_cast<DWORD>(count), &taken, 0, nullptr, nullptr) != 0) return -1;
  return qsizetype(taken);
}

int CloseSocket(Socket socket) {
  return closesocket(socket);
}

bool MakeNonBlocking(Socket socket) {
  u_long on = 1;
  return ioctlsocket(socket, FIONBIO, &on) == 0;
}

bool FinishConnect(Socket) {
  return false;
}

void SetError(bool isNotReady) {
  WSASetLastError(isNotReady ? WSAEWOULDBLOCK : WSAECONNRESET);
}

#else

using Socket = int;
#ifdef MSG_NOSIGNAL
constexpr int kFlags = MSG_NOSIGNAL;
#else
constexpr int kFlags = 0;
#endif
using Buffer = iovec;

Buffer BufferOf(const char* bytes, qsizetype size) {
  return {const_cast<char*>(bytes), std::size_t(size)};
}

qsizetype SendBuffers(Socket socket, Buffer* buffers, std::size_t count) {
  msghdr message{};
  message.msg_iov = buffers;
  message.msg_iovlen = count;
  return sendmsg(socket, &message, kFlags);
}

int CloseSocket(Socket socket) {
  return close(socket);
}

bool MakeNonBlocking(Socket socket) {
  const int flags = fcntl(socket, F_GETFL);
  return flags != -1 && fcntl(socket, F_SETFL, flags | O_NONBLOCK) != -1;
}

// A signal has cut the call short; the connecting itself goes on.
bool FinishConnect(Socket socket) {
  if (errno != EINTR) return false;
  pollfd wait{socket, POLLOUT, 0};
  while (poll(&wait, 1, -1) == -1) {
    if (errno != EINTR) return false;
  }
  int error = 0;
  socklen_t size = sizeof error;
  if (getsockopt(socket, SOL_SOCKET, SO_ERROR, &error, &size) != 0) return false;
  errno = error;
  return error == 0;
}

void SetError(bool isNotReady) {
  errno = isNotReady ? EWOULDBLOCK : ECONNRESET;
}

#endif

// What an encrypted connection gave, as a call of the system would tell it.
qsizetype AsCall(std::optional<qsizetype> result) {
  if (result.value_or(-1) < 0) SetError(!result);
  return result.value_or(-1);
}

Socket Native(Sockets::Handle socket) {
  return static_cast<Socket>(socket);
}

}  // namespace

HostSockets::HostSockets(QList<QSslCertificate> authorities) : authorities_(std::move(authorities)) {}

HostSockets::~HostSockets() {
  while (!watches_.empty()) StopNotices(watches_.begin()->first);
  for (const auto& [handle, connection] : encrypted_) delete connection;
}

#ifdef Q_OS_WIN

int HostSockets::StartUp() {
  constexpr WORD version = 0x0101;
  WSADATA data;
  return WSAStartup(version, &data);
}

void HostSockets::CleanUp() {
  WSACleanup();
}

int HostSockets::LastError() const {
  return WSAGetLastError();
}

bool HostSockets::IsNotReady(int error) const {
  return error == WSAEWOULDBLOCK || error == WSAEINTR;
}

Sockets::Handle HostSockets::Open() {
  return static_cast<Handle>(::socket(AF_INET, SOCK_STREAM, 0));
}

#else

int HostSockets::StartUp() {
  return 0;
}

void HostSockets::CleanUp() {}

int HostSockets::LastError() const {
  return errno;
}

bool HostSockets::IsNotReady(int error) const {
  return error == EAGAIN || error == EWOULDBLOCK || error == EINTR;
}

Sockets::Handle HostSockets::Open() {
  int made = ::socket(AF_INET, SOCK_STREAM, 0);
  // A program without its standard streams is given their numbers: 0 means none here, and what is written to the others
  // mustn't reach a server.
  if (made >= 0 && made < 3) {
    const int given = made;
    made = fcntl(given, F_DUPFD, 3);
    close(given);
  }
  // Programs that are started meanwhile don't get it.
  if (made > 0) fcntl(made, F_SETFD, FD_CLOEXEC);
#ifdef SO_NOSIGPIPE
  const int on = 1;
  setsockopt(made, SOL_SOCKET, SO_NOSIGPIPE, &on, sizeof on);
#endif
  return made;
}

#endif

std::optional<quint32> HostSockets::Resolve(const QByteArray& name) {
  // The address of all ones is also the mark of failure, so it goes the way of a name, and is a failure there too.
  const quint32 dotted = inet_addr(name.constData());
  if (dotted != INADDR_NONE) return dotted;
  const hostent* const host = gethostbyname(name.constData());
  if (!host || host->h_addrtype != AF_INET || !host->h_addr_list[0]) return std::nullopt;
  quint32 address = 0;
  std::memcpy(&address, host->h_addr_list[0], sizeof address);
  if (address == INADDR_NONE) return std::nullopt;
  return address;
}

bool HostSockets::Connect(Handle socket, quint32 address, quint16 port) {
  sockaddr_in record{};
  record.sin_family = AF_INET;
  record.sin_port = htons(port);
  record.sin_addr.s_addr = address;
  const int result = ::connect(Native(socket), reinterpret_cast<const sockaddr*>(&record), sizeof record);
  return result == 0 || FinishConnect(Native(socket));
}

bool HostSockets::StartNotices(Handle socket, std::function<void(SocketNotice)> notify) {
  if (!MakeNonBlocking(Native(socket))) return false;
  auto* const readable = new QSocketNotifier(socket, QSocketNotifier::Read);
  auto* const writable = new QSocketNotifier(socket, QSocketNotifier::Write);
  writable->setEnabled(false);
  QObject::connect(readable, &QSocketNotifier::activated, readable, [notify] { notify(SocketNotice::Readable); });
  QObject::connect(writable, &QSocketNotifier::activated, writable, [notify] { notify(SocketNotice::Writable); });
  watches_[socket] = {readable, writable, std::move(notify)};
  return true;
}

void HostSockets::WatchWritable(Handle socket, bool watched) {
  if (TlsConnection* const connection = EncryptedOf(socket)) return connection->WatchWritable(watched);
  const auto found = watches_.find(socket);
  if (found != watches_.end()) found->second.writable->setEnabled(watched);
}

void HostSockets::StopWatching(const Watch& watch) {
  // One of them may be at work.
  for (QSocketNotifier* const notifier : {watch.readable, watch.writable}) {
    notifier->setEnabled(false);
    notifier->deleteLater();
  }
}

void HostSockets::StopNotices(Handle socket) {
  if (TlsConnection* const connection = EncryptedOf(socket)) return connection->StopNotices();
  const auto found = watches_.find(socket);
  if (found == watches_.end()) return;
  StopWatching(found->second);
  watches_.erase(found);
}

TlsConnection* HostSockets::EncryptedOf(Handle socket) const {
  const auto found = encrypted_.find(socket);
  return found == encrypted_.end() ? nullptr : found->second;
}

void HostSockets::StartTls(Handle socket, const QByteArray& host) {
  const auto found = watches_.find(socket);
  if (found == watches_.end() || EncryptedOf(socket)) return;
  // The connection has notifiers of its own.
  const Watch watch = found->second;
  StopNotices(socket);
  encrypted_[socket] = new TlsConnection(socket, host, authorities_, watch.notify);
}

QString HostSockets::TlsError(Handle socket) const {
  const TlsConnection* const connection = EncryptedOf(socket);
  return connection ? connection->Error() : QString();
}

qsizetype HostSockets::Send(Handle socket, const QList<QByteArray>& pieces, qsizetype from) {
  if (TlsConnection* const connection = EncryptedOf(socket)) return AsCall(connection->Send(pieces, from));
  std::array<Buffer, kMostPieces> buffers;
  std::size_t count = 0;
  qsizetype left = kLargestCall;
  for (const QByteArray& piece : pieces) {
    if (count == buffers.size() || left == 0) break;
    const qsizetype size = std::min(piece.size() - from, left);
    buffers[count++] = BufferOf(piece.constData() + from, size);
    left -= size;
    from = 0;
  }
  return SendBuffers(Native(socket), buffers.data(), count);
}

qsizetype HostSockets::Receive(Handle socket, char* data, qsizetype size) {
  if (TlsConnection* const connection = EncryptedOf(socket)) return AsCall(connection->Receive(data, size));
  return ::recv(Native(socket), data, int(std::min(size, kLargestCall)), 0);
}

void HostSockets::Close(Handle socket) {
  if (TlsConnection* const connection = EncryptedOf(socket)) {
    encrypted_.erase(socket);
    return connection->Close();
  }
  CloseSocket(Native(socket));
}
