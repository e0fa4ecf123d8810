#include "MailServer.h"

#include "AsciiText.h"

namespace {

constexpr quint16 kEncryptedPort = 465;
constexpr quint16 kSubmissionPort = 587;

struct Scheme {
  const char* prefix;
  Encryption encryption;
  quint16 port;
};

constexpr Scheme kSchemes[] = {{"smtps://", Encryption::FromTheStart, kEncryptedPort},
                               {"smtp+tls://", Encryption::OnRequest, kSubmissionPort}};

// 0 for what is no port.
quint16 PortOf(const QByteArray& digits) {
  for (const char c : digits)
    if (c < '0' || c > '9') return 0;
  return digits.toUShort();
}

}  // namespace

std::optional<MailServer> ReadMailServer(const QByteArray& typed, quint16 plainPort) {
  MailServer server{typed, plainPort, Encryption::None};
  bool hasScheme = false;
  for (const Scheme& scheme : kSchemes) {
    if (FindNoCase(typed, scheme.prefix) != 0) continue;
    server = {typed.mid(qsizetype(qstrlen(scheme.prefix))), scheme.port, scheme.encryption};
    hasScheme = true;
  }
  const qsizetype colon = server.host.indexOf(':');
  if (colon >= 0) {
    server.port = PortOf(server.host.mid(colon + 1));
    server.host.truncate(colon);
    if (!hasScheme && server.port == kEncryptedPort) server.encryption = Encryption::FromTheStart;
  }
  const bool isWhole = server.port != 0 && (!server.host.isEmpty() || typed.isEmpty());
  return isWhole ? std::optional(server) : std::nullopt;
}
