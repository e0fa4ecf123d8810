#include "MessageComposer.h"

#include <QFileInfo>
#include <QLocale>
#include <algorithm>
#include <cstring>
#include <new>

#include "AsciiText.h"
#include "Base64.h"
#include "CodePage.h"
#include "HtmlBody.h"
#include "OneLine.h"
#include "PageText.h"
#include "PartBoundaries.h"
#include "PathRules.h"
#include "Stamps.h"
#include "StringTable.h"
#include "WireText.h"

namespace {

constexpr char kEnd[] = "\r\n";

// What no mail server takes, many times over: larger files count as none, be they real or nothing but a length.
constexpr qint64 kLargestPicture = 500'000'000;
// More than the lines in front of a picture ever take.
constexpr qsizetype kPartHead = 2000;

// Makes room for the part of a picture; false where there is no such file, or no room.
bool MakeRoom(QByteArray& part, const QString& path) {
  const QFileInfo file(path);
  // Of what is no folder a pipe would wait for its writer.
  if (!file.isFile() || file.size() > kLargestPicture) return false;
  try {
    part.reserve(kPartHead + Base64Length(file.size()));
  } catch (const std::bad_alloc&) {
    return false;
  }
  return true;
}

QByteArray BuildPlainText() {
  QByteArray text;
  for (const int number : {TextNumber::PlainEmailLine1, TextNumber::PlainEmailLine2, TextNumber::PlainEmailLine3})
    text += StringText(number).toLatin1() + kEnd;
  return text + kEnd;
}

QByteArray TextPart(const QByteArray& boundary, const QByteArray& kind, const QByteArray& text) {
  return "--" + boundary + kEnd + "Content-Type: text/" + kind + ";" + kEnd + "\tcharset=\"iso-8859-1\"" + kEnd +
         "Content-Transfer-Encoding: quoted-printable" + kEnd + kEnd + text;
}

QByteArray Closing(const QByteArray& boundary) {
  return "--" + boundary + "--";
}

// A part without the empty line behind it and the NULs that may stand there.
QByteArrayView ContentOf(const QByteArray& part) {
  QByteArrayView content(part);
  content.chop(std::strlen(kEnd) * 2);
  for (int nul = 0; nul < 2 && content.endsWith('\0'); ++nul) content.chop(1);
  return content;
}

}  // namespace

bool MessageComposer::PrepareEmail(const QByteArray& sHTML, const QString& sFils) {
  HtmlBody_ = WithWireLineEnds(EncodeHtmlBody(sHTML));
  PictureParts_.clear();
  for (const QString& piece : TrimBlanks(sFils).split(u'*')) {
    const QString path = TrimBlanks(piece);
    QByteArray part;
    if (!MakeRoom(part, path)) continue;
    part += BuildPictureHeader(path.mid(PathRules::LastSeparator(path) + 1));
    AppendBase64OfFile(part, path, LineBreaks::Every76);
    part.append(kEnd).append(kEnd);
    PictureParts_.append(std::move(part));
  }
  const bool isSendable = IsSendable();
  if (!isSendable) Clear();
  return isSendable;
}

// Of a picture's part the first line is the one between two parts.
bool MessageComposer::IsSendable() const {
  return IsWireText(HtmlBody_) && std::all_of(PictureParts_.begin(), PictureParts_.end(), [](const QByteArray& part) {
           return IsWireText(ContentOf(part).sliced(part.indexOf('\n') + 1));
         });
}

void MessageComposer::Clear() {
  HtmlBody_.clear();
  PictureParts_.clear();
}

// The kind is the name's ending as it stands, in its own case. A reference that a line break has split isn't found and
// keeps the file's name; of a picture that stands twice in the list only the first id is referred to.
QByteArray MessageComposer::BuildPictureHeader(const QString& fileName) {
  const QByteArray name = ToCodePage(OneLine(fileName));
  QByteArray extension = name.right(3);
  if (UpperAscii(extension) == "PEG") extension = "jpg";
  QByteArray id = BuildGuidText();
  if (id.isEmpty()) {
    id = name;
  } else {
    for (const QByteArray& form : PageNameForms(fileName))
      HtmlBody_ = ReplaceNoCase(HtmlBody_, "cid:" + form, "cid:" + id);
  }
  return QByteArray("--") + kOuterBoundary + kEnd + "Content-Type: image/" + extension + ";" + kEnd + "\tName=\"" +
         name + "\"" + kEnd + "Content-Transfer-Encoding: base64" + kEnd + "Content-ID: <" + id + ">" + kEnd + kEnd;
}

QByteArray MessageComposer::BuildGuidText() const {
  const QString guid = stamps_.NewGuid();
  if (guid.size() <= 30) return QByteArray();
  return guid.mid(1, guid.size() - 2).replace(u'-', u'.').toLatin1();
}

QByteArray MessageComposer::BuildDateHeader() const {
  const QDateTime now = stamps_.Now();
  if (!now.isValid()) return "Date: " + ToCodePage(QDateTime::currentDateTime().toString());
  // The same in every language of the desktop.
  const QString text = QLocale::c().toString(now.toUTC(), QStringLiteral("ddd, dd MMM yyyy HH:mm:ss"));
  return "Date: " + text.toLatin1() + " GMT";
}

// From the content type to the end of the head.
QByteArray MessageComposer::BuildHead() const {
  const bool hasPictures = !PictureParts_.isEmpty();
  QByteArray head = QByteArray("Content-Type: multipart/") + (hasPictures ? "related;" : "alternative;") + kEnd +
                    "\tboundary=\"" + kOuterBoundary + "\"";
  if (hasPictures) head += QByteArray(";") + kEnd + "\ttype=\"multipart/alternative\"";
  return head + kEnd + "X-Mailer: Corvane v. 2" + kEnd + kEnd;
}

// The notice and the page, as two forms of the same.
QByteArray MessageComposer::BuildTexts() const {
  const bool hasPictures = !PictureParts_.isEmpty();
  const QByteArray boundary = hasPictures ? kInnerBoundary : kOuterBoundary;
  QByteArray texts;
  if (hasPictures) {
    texts = QByteArray("--") + kOuterBoundary + kEnd + "Content-Type: multipart/alternative;" + kEnd + "\tboundary=\"" +
            kInnerBoundary + "\"" + kEnd + kEnd;
  }
  texts += TextPart(boundary, "plain", BuildPlainText());
  texts += TextPart(boundary, "html", HtmlBody_) + kEnd + kEnd;
  if (hasPictures) texts += Closing(kInnerBoundary) + kEnd + kEnd;
  return texts;
}

QList<QByteArray> MessageComposer::WirePieces(const MessageFields& fields) const {
  const QByteArray head = "From: " + fields.FromName + " <" + fields.FromEmail + ">" + kEnd +  //
                          "To: " + fields.ToName + " <" + fields.ToEmail + ">" + kEnd +        //
                          "Subject: " + fields.Subject + kEnd +                                //
                          BuildDateHeader() + kEnd +                                           //
                          "Message-ID: <" + BuildGuidText() + "@" + fields.Server + ">" + kEnd + "MIME-Version: 1.0" +
                          kEnd;
  QList<QByteArray> pieces = {head + BuildHead() + BuildTexts()};
  pieces += PictureParts_;
  pieces += Closing(kOuterBoundary) + kEnd + "." + kEnd;
  return pieces;
}

// Head and last line end differ from the form that is sent, and that is meant.
QByteArray MessageComposer::BuildMessageFile(const MessageFields& fields) const {
  QByteArray file = "FROM: " + fields.FromName + "<" + fields.FromEmail + ">" + kEnd +  //
                    "TO: " + fields.ToName + "<" + fields.ToEmail + ">" + kEnd +        //
                    "Subject: " + fields.Subject + kEnd +                               //
                    BuildDateHeader() + kEnd + "MIME-Version: 1.0" + kEnd;
  file += BuildHead() + BuildTexts();
  for (const QByteArray& part : PictureParts_) file += part;
  file += Closing(kOuterBoundary);
  if (PictureParts_.isEmpty()) file += kEnd;
  return file;
}
