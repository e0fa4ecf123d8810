#include "FontFaces.h"

const QStringList& FontFaces() {
  static const QStringList faces = QString::fromLatin1(kFontFaces).split(u'|');
  return faces;
}

int FaceIndex(const QString& face) {
  for (int index = 0; index < int(FontFaces().size()); ++index) {
    const QString& row = FontFaces().at(index);
    if (face == row || face == row.section(u',', 0, 0)) return index;
  }
  return -1;
}
