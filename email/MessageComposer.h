#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

class Stamps;

// The typed fields of a message, as they go onto the wire.
struct MessageFields {
  QByteArray FromName, FromEmail;
  QByteArray ToName, ToEmail;
  QByteArray Subject;
  QByteArray Server;
};

// Holds one prepared message, page and pictures, and gives it in two forms: the one that is sent and the one that is
// saved. A picture whose file isn't there, or is larger than any mail, is left out without a word.
class MessageComposer {
 public:
  // `stamps` must outlive the object.
  explicit MessageComposer(Stamps& stamps) : stamps_(stamps) {}

  // `sHTML` is a page whose picture paths have been cut; `sFils` holds the pictures' paths with "*" between them. Its
  // line ends become CR LF. False, and nothing is held, for a page that a server could take for more than one message,
  // or for other parts than it has.
  bool PrepareEmail(const QByteArray& sHTML, const QString& sFils);
  void Clear();
  bool IsEmpty() const { return HtmlBody_.isEmpty(); }

  // What is sent, in pieces that run together, up to and with the line that ends a message. No line that begins with
  // a dot gets a second one, and that is meant.
  QList<QByteArray> WirePieces(const MessageFields& fields) const;

  // What is saved: another head without an id, and no line that ends it.
  QByteArray BuildMessageFile(const MessageFields& fields) const;

 private:
  QByteArray BuildPictureHeader(const QString& fileName);
  QByteArray BuildDateHeader() const;
  QByteArray BuildGuidText() const;
  QByteArray BuildHead() const;
  QByteArray BuildTexts() const;
  bool IsSendable() const;

  Stamps& stamps_;
  QByteArray HtmlBody_;
  QList<QByteArray> PictureParts_;
};
