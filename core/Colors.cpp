#include "Colors.h"

// A system colour reads as black, and that is meant.
QString ColorToHtml(qint32 Color) {
  if (Color < 0) return QStringLiteral("#000000");
  const QString digits = (QStringLiteral("0000000") + QString::number(Color, 16).toUpper()).right(6);
  return u'#' + digits.mid(4, 2) + digits.mid(2, 2) + digits.mid(0, 2);
}

// Short texts are filled on the left, so "#FF" is blue, and that is meant.
qint32 HtmlToColor(const QString& Text) {
  if (Text.size() < 2) return 0;
  const QString bare = Text.startsWith(u'#') ? Text.mid(1) : Text;
  const QString digits = (QStringLiteral("000000") + bare).right(6);
  for (const QChar c : digits) {
    const bool hexadecimal = (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
    if (!hexadecimal) return 0;
  }
  return (digits.mid(4, 2) + digits.mid(2, 2) + digits.mid(0, 2)).toInt(nullptr, 16);
}
