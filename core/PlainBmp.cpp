#include "PlainBmp.h"

#include <QIODevice>
#include <QtEndian>

#include "PictureBounds.h"

QImage ReadPlainBmp(QIODevice& device) {
  constexpr qint64 headers = 14 + 40;
  const QByteArray bytes = device.read(headers);
  if (bytes.size() < headers || !bytes.startsWith("BM")) return QImage();
  const auto number16 = [&](int at) { return qFromLittleEndian<quint16>(bytes.constData() + at); };
  const auto number32 = [&](int at) { return qFromLittleEndian<qint32>(bytes.constData() + at); };
  constexpr int headerSize = 40, planes = 1, depth = 24, uncompressed = 0, noPalette = 0;
  if (number32(14) != headerSize || number16(26) != planes || number16(28) != depth || number32(30) != uncompressed ||
      number32(46) != noPalette)
    return QImage();
  const QSize size(number32(18), number32(22));
  const qint64 begin = number32(10), rowBytes = (qint64(size.width()) * 3 + 3) / 4 * 4;
  if (!IsHoldableSize(size) || begin < headers || device.size() < begin + rowBytes * size.height() ||
      !device.seek(begin))
    return QImage();
  QImage image(size, QImage::Format_BGR888);
  if (image.isNull() || image.bytesPerLine() != rowBytes) return QImage();
  for (int y = size.height() - 1; y >= 0; --y)
    if (device.read(reinterpret_cast<char*>(image.scanLine(y)), rowBytes) != rowBytes) return QImage();
  image.setDotsPerMeterX(number32(38));
  image.setDotsPerMeterY(number32(42));
  return image;
}
