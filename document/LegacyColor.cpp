#include "LegacyColor.h"

#include <QColor>
#include <array>

namespace {

int HexDigit(QChar c) {
  const ushort u = c.unicode();
  if (u >= '0' && u <= '9') return u - '0';
  if (u >= 'a' && u <= 'f') return u - 'a' + 10;
  if (u >= 'A' && u <= 'F') return u - 'A' + 10;
  return -1;
}

QString Hex(int red, int green, int blue) {
  return QStringLiteral("#%1%2%3")
      .arg(red, 2, 16, QLatin1Char('0'))
      .arg(green, 2, 16, QLatin1Char('0'))
      .arg(blue, 2, 16, QLatin1Char('0'))
      .toUpper();
}

bool IsHtmlSpace(QChar c) {
  return c == u' ' || c == u'\t' || c == u'\n' || c == u'\f' || c == u'\r';
}

QString TrimHtmlSpace(const QString& text) {
  int from = 0;
  int to = int(text.size());
  while (from < to && IsHtmlSpace(text[from])) ++from;
  while (to > from && IsHtmlSpace(text[to - 1])) --to;
  return text.mid(from, to - from);
}

}  // namespace

QString NormalizeLegacyColor(const QString& value) {
  if (value.isEmpty()) return {};
  QString text = TrimHtmlSpace(value);
  if (text.compare(u"transparent", Qt::CaseInsensitive) == 0) return {};
  bool isName = !text.isEmpty();
  for (const QChar c : text) isName = isName && c.unicode() < 128 && c.isLetter();
  if (isName) {
    if (text.compare(u"rebeccapurple", Qt::CaseInsensitive) == 0) return QStringLiteral("#663399");  // Qt lacks it
    const QColor named(text);
    if (named.isValid()) return Hex(named.red(), named.green(), named.blue());
  }
  if (text.size() == 4 && text[0] == u'#') {
    const int r = HexDigit(text[1]), g = HexDigit(text[2]), b = HexDigit(text[3]);
    if (r >= 0 && g >= 0 && b >= 0) return Hex(17 * r, 17 * g, 17 * b);
  }
  QString digits;
  for (const QChar c : text) {
    // A character beyond the basic plane counts as two, which is what its surrogate pair is already.
    digits += c;
    if (digits.size() == 128) break;
  }
  if (digits.startsWith(u'#')) digits.remove(0, 1);
  for (QChar& c : digits)
    if (HexDigit(c) < 0) c = u'0';
  while (digits.isEmpty() || digits.size() % 3 != 0) digits += u'0';
  int length = int(digits.size()) / 3;
  std::array<QString, 3> parts = {digits.mid(0, length), digits.mid(length, length), digits.mid(2 * length)};
  if (length > 8) {
    for (QString& part : parts) part = part.right(8);
    length = 8;
  }
  while (length > 2 && parts[0][0] == u'0' && parts[1][0] == u'0' && parts[2][0] == u'0') {
    for (QString& part : parts) part.remove(0, 1);
    --length;
  }
  std::array<int, 3> components{};
  for (int i = 0; i < 3; ++i) components[i] = parts[i].left(2).toInt(nullptr, 16);
  return Hex(components[0], components[1], components[2]);
}

bool IsColorAttribute(const QString& name) {
  for (const char* known : {"text", "link", "vlink", "bgcolor"})
    if (name.compare(QLatin1String(known), Qt::CaseInsensitive) == 0) return true;
  return false;
}
