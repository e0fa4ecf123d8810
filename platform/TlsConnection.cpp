#include "TlsConnection.h"

#include <QSslConfiguration>
#include <QSslError>
#include <algorithm>

namespace {

// What may wait within: enough to keep the line busy, and no copy of a whole message.
constexpr qsizetype kMostWaiting = 512 * 1024;
constexpr qint64 kMostUnread = 64 * 1024;

QString TextOf(const QList<QSslError>& errors) {
  QStringList texts;
  for (const QSslError& error : errors) {
    if (!texts.contains(error.errorString())) texts += error.errorString();
  }
  return texts.join(QStringLiteral("; "));
}

}  // namespace

TlsConnection::TlsConnection(qintptr socket, const QByteArray& host, const QList<QSslCertificate>& authorities,
                             Notify notify)
    : notify_(std::move(notify)) {
  QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
  configuration.setProtocol(QSsl::TlsV1_2OrLater);
  configuration.setPeerVerifyMode(QSslSocket::VerifyPeer);
  if (!authorities.isEmpty()) configuration.setCaCertificates(authorities);
  socket_.setSslConfiguration(configuration);
  socket_.setPeerVerifyName(QString::fromLatin1(host));
  socket_.setReadBufferSize(kMostUnread);

  connect(&socket_, &QSslSocket::encrypted, this, [this] {
    isSecure_ = true;
    TellSoon(SocketNotice::Secured);
  });
  connect(&socket_, &QSslSocket::sslErrors, this, [this](const QList<QSslError>& errors) { error_ = TextOf(errors); });
  connect(&socket_, &QSslSocket::errorOccurred, this, [this] { OnEnd(); });
  connect(&socket_, &QSslSocket::disconnected, this, &TlsConnection::OnEnd);
  connect(&socket_, &QSslSocket::readyRead, this, &TlsConnection::OnReadable);
  connect(&socket_, &QSslSocket::bytesWritten, this, &TlsConnection::OnTaken);
  connect(&socket_, &QSslSocket::encryptedBytesWritten, this, &TlsConnection::OnTaken);

  if (socket_.setSocketDescriptor(socket)) socket_.startClientEncryption();
  // Where there is no TLS at all the call above has told nothing.
  if (socket_.mode() != QSslSocket::SslClientMode) Refuse(socket_.errorString());
}

// In a turn of the event loop of its own, as whoever is told may close what is at work here.
void TlsConnection::TellSoon(SocketNotice notice) {
  QMetaObject::invokeMethod(this, [this, notice] { Tell(notice); }, Qt::QueuedConnection);
}

void TlsConnection::Tell(SocketNotice notice) {
  if (!isQuiet_) notify_(notice);
}

void TlsConnection::Refuse(const QString& why) {
  if (hasEnded_) return;
  hasEnded_ = true;
  if (error_.isEmpty()) error_ = why;
  TellSoon(SocketNotice::NotSecured);
}

void TlsConnection::OnEnd() {
  if (!isSecure_) return Refuse(socket_.errorString());
  if (hasEnded_) return;
  hasEnded_ = true;
  OnReadable();
}

// As long as something is there, or the end is.
void TlsConnection::OnReadable() {
  if (!isSecure_ || tellsReadable_) return;
  tellsReadable_ = true;
  const auto tell = [this] {
    tellsReadable_ = false;
    Tell(SocketNotice::Readable);
    if (!isQuiet_ && (hasEnded_ || socket_.bytesAvailable() > 0)) OnReadable();
  };
  QMetaObject::invokeMethod(this, tell, Qt::QueuedConnection);
}

void TlsConnection::OnTaken() {
  if (!isWatchedForWriting_ || tellsWritable_) return;
  tellsWritable_ = true;
  const auto tell = [this] {
    tellsWritable_ = false;
    if (isWatchedForWriting_ && Room() > 0) Tell(SocketNotice::Writable);
  };
  QMetaObject::invokeMethod(this, tell, Qt::QueuedConnection);
}

void TlsConnection::WatchWritable(bool watched) {
  isWatchedForWriting_ = watched;
}

qsizetype TlsConnection::Room() const {
  return kMostWaiting - socket_.bytesToWrite() - socket_.encryptedBytesToWrite();
}

std::optional<qsizetype> TlsConnection::Send(const QList<QByteArray>& pieces, qsizetype from) {
  if (hasEnded_) return -1;
  if (!isSecure_) return std::nullopt;
  qsizetype room = Room();
  if (room <= 0) return std::nullopt;
  qsizetype taken = 0;
  for (const QByteArray& piece : pieces) {
    const qsizetype size = std::min(piece.size() - from, room);
    const qint64 written = socket_.write(piece.constData() + from, size);
    if (written < 0) return taken > 0 ? taken : -1;
    taken += written;
    room -= written;
    from = 0;
    if (room == 0) break;
  }
  return taken;
}

std::optional<qsizetype> TlsConnection::Receive(char* data, qsizetype size) {
  const qint64 got = isSecure_ ? socket_.read(data, size) : 0;
  if (got > 0) return got;
  if (hasEnded_) return 0;
  return std::nullopt;
}

void TlsConnection::Close() {
  isQuiet_ = true;
  socket_.disconnect(this);
  // Says goodbye, as a line that just ends could have been cut by somebody.
  if (isSecure_) socket_.disconnectFromHost();
  socket_.abort();
  deleteLater();
}
