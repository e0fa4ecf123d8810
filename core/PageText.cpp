#include "PageText.h"

#include <QList>
#include <QStringDecoder>

#include "CodePage.h"

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
  return FromCodePage(bytes);
}
