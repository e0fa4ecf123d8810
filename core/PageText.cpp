#include "PageText.h"

#include <QList>
#include <QStringDecoder>
#include <array>

namespace {

// Windows-1252 from 0x80 to 0x9F; the five places that it leaves empty keep their number.
constexpr std::array<char16_t, 32> kWindows1252 = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

}  // namespace

QByteArray EncodePageText(const QString& text) {
  QByteArray bytes;
  bytes.reserve(text.size());
  for (const uint codePoint : text.toUcs4()) {
    if (codePoint < 0x80) {
      bytes += static_cast<char>(codePoint);
    } else {
      bytes += "&#" + QByteArray::number(codePoint) + ';';
    }
  }
  return bytes;
}

QString DecodePageName(const QByteArray& bytes) {
  QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
  QString text = utf8(bytes);
  if (!utf8.hasError()) return text;
  text = QString::fromLatin1(bytes);
  for (QChar& c : text) {
    if (c >= QChar(0x80) && c <= QChar(0x9F)) c = QChar(kWindows1252[c.unicode() - 0x80]);
  }
  return text;
}
