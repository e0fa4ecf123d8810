#include "StripPicturePaths.h"

#include <QList>
#include <algorithm>

#include "AsciiText.h"

namespace {

// Place behind the attribute's "=", where the value begins; -1 when this piece has no picture to look for.
qsizetype ValueStart(const QByteArray& piece) {
  if (piece.size() <= 5) return -1;
  const QByteArray tag = UpperAscii(piece.left(3));
  QByteArray attribute;
  if (tag == "IMG") attribute = "SRC=";
  if (tag == "BOD") attribute = "BACKGROUND=";
  if (attribute.isEmpty()) return -1;
  const qsizetype at = FindNoCase(piece, attribute);
  return at < 0 ? -1 : at + attribute.size();
}

void StripPiece(QByteArray& piece, QByteArray& list) {
  const qsizetype start = ValueStart(piece);
  if (start < 0) return;
  const qsizetype blank = piece.indexOf(' ', start);
  const qsizetype closing = piece.indexOf('>', start);
  // A piece with no blank behind the value stays as it is and its picture isn't listed, and that is meant.
  if (blank < 0 || closing < 0) return;
  const qsizetype end = std::min(blank, closing);
  QByteArray name = piece.mid(start, end - start).replace("\"", "");
  name = name.mid(name.lastIndexOf('/') + 1);
  list += name + '*';
  piece = piece.left(start) + '"' + name + '"' + piece.mid(end);
}

}  // namespace

QByteArray StripPicturePaths(const QByteArray& Text, QByteArray& Pictures) {
  Pictures.clear();
  if (!Text.contains('<')) return Text;
  QByteArray list;
  QList<QByteArray> pieces = Text.split('<');
  for (QByteArray& piece : pieces) StripPiece(piece, list);
  // A list of one empty name keeps its "*", and that is meant.
  if (list.size() > 1) list.chop(1);
  Pictures = list;
  return pieces.join('<');
}

QByteArray StripPicturePathsOfFile(ModFileOps& Files, const QString& Path, QByteArray& Pictures) {
  if (!Files.FileExists(Path)) return QByteArray();
  int errorCode = 0;
  const QByteArray text = Files.ReadTextFile(Path, errorCode);
  if (errorCode != 0) return QByteArray();
  return StripPicturePaths(text, Pictures);
}
