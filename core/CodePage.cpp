#include "CodePage.h"

#include <QList>
#include <algorithm>
#include <array>

namespace {

constexpr uint kTableStart = 0x80;
constexpr uint kTableEnd = 0xA0;

// The characters of the bytes from 0x80 to 0x9F.
constexpr std::array<char16_t, kTableEnd - kTableStart> kTable = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

char ByteOf(uint codePoint) {
  if (codePoint < kTableStart || (codePoint >= kTableEnd && codePoint <= 0xFF)) return char(codePoint);
  const auto found = std::find(kTable.begin(), kTable.end(), codePoint);
  if (found == kTable.end()) return '?';
  return char(kTableStart + uint(found - kTable.begin()));
}

}  // namespace

QByteArray ToCodePage(const QString& text) {
  QByteArray bytes;
  bytes.reserve(text.size());
  for (const uint codePoint : text.toUcs4()) bytes += ByteOf(codePoint);
  return bytes;
}

QString FromCodePage(const QByteArray& bytes) {
  QString text = QString::fromLatin1(bytes);
  for (QChar& c : text) {
    if (c >= QChar(kTableStart) && c < QChar(kTableEnd)) c = QChar(kTable[c.unicode() - kTableStart]);
  }
  return text;
}
