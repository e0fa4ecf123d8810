#pragma once

#include <QByteArray>
#include <QtGlobal>
#include <optional>

// When the talk with a server becomes unreadable for others on the line.
enum class Encryption {
  None,
  FromTheStart,  // RFC 8314
  OnRequest,     // RFC 3207: asked for in clear, and nothing else is said there
};

// A server as a user names it.
struct MailServer {
  QByteArray host;
  quint16 port = 0;
  Encryption encryption = Encryption::None;

  bool operator==(const MailServer&) const = default;
};

// What stands in the Server field: "host" for `plainPort`, "host:port", of which port 465 is encrypted from the start,
// "smtps://host", for port 465 where none is named, or "smtp+tls://host", for 587. Nothing for any other text with a
// ":".
std::optional<MailServer> ReadMailServer(const QByteArray& typed, quint16 plainPort);
