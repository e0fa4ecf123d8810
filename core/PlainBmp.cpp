#include "PlainBmp.h"

#include <QIODevice>
#include <QtEndian>
#include <algorithm>

#include "PictureFormat.h"

namespace {

constexpr qint64 kHeaders = 14 + 40;
// Small enough for the processor's cache, in which the rows are then turned into pixels.
constexpr qint64 kBlockBytes = 1 << 17;

struct Header {
  QSize size;
  qint64 pixels = 0;    // where they begin
  qint64 rowBytes = 0;  // with what fills it up
  int dotsPerMeterX = 0;
  int dotsPerMeterY = 0;
};

bool ReadHeader(QIODevice& device, Header& header) {
  const QByteArray bytes = device.read(kHeaders);
  if (bytes.size() < kHeaders || !bytes.startsWith("BM")) return false;
  const auto number16 = [&](int at) { return qFromLittleEndian<quint16>(bytes.constData() + at); };
  const auto number32 = [&](int at) { return qFromLittleEndian<qint32>(bytes.constData() + at); };
  constexpr int headerSize = 40, planes = 1, depth = 24, uncompressed = 0, noPalette = 0;
  if (number32(14) != headerSize || number16(26) != planes || number16(28) != depth || number32(30) != uncompressed ||
      number32(46) != noPalette)
    return false;
  header.size = QSize(number32(18), number32(22));
  header.pixels = number32(10);
  if (!IsHoldableSize(header.size) || header.pixels < kHeaders) return false;
  header.rowBytes = (qint64(header.size.width()) * 3 + 3) / 4 * 4;
  header.dotsPerMeterX = number32(38);
  header.dotsPerMeterY = number32(42);
  return true;
}

// Turns blue, green and red into red, green and blue. Four pixels at a time, as three words: this is most of the work.
void SwapColors(const uchar* row, uchar* line, int width) {
  int x = 0;
  for (; x + 4 <= width; x += 4, row += 12, line += 12) {
    const quint32 a = qFromLittleEndian<quint32>(row);      // lowest byte first: b0 g0 r0 b1
    const quint32 b = qFromLittleEndian<quint32>(row + 4);  // g1 r1 b2 g2
    const quint32 c = qFromLittleEndian<quint32>(row + 8);  // r2 b3 g3 r3
    qToLittleEndian<quint32>((a >> 16 & 0xFF) | (a & 0xFF00) | (a & 0xFF) << 16 | (b & 0xFF00) << 16, line);
    qToLittleEndian<quint32>((b & 0xFF0000FF) | (a >> 16 & 0xFF00) | (c & 0xFF) << 16, line + 4);
    qToLittleEndian<quint32>((b >> 16 & 0xFF) | (c >> 16 & 0xFF00) | (c & 0xFF0000) | (c & 0xFF00) << 16, line + 8);
  }
  for (; x < width; ++x, row += 3, line += 3) {
    line[0] = row[2];
    line[1] = row[1];
    line[2] = row[0];
  }
}

}  // namespace

QImage ReadPlainBmp(QIODevice& device) {
  Header header;
  if (!ReadHeader(device, header)) return QImage();
  const int height = header.size.height();
  if (device.size() < header.pixels + header.rowBytes * height || !device.seek(header.pixels)) return QImage();
  QImage image(header.size, QImage::Format_RGB888);
  if (image.isNull()) return QImage();
  const qint64 rows = std::max<qint64>(kBlockBytes / header.rowBytes, 1);
  QByteArray block(rows * header.rowBytes, Qt::Uninitialized);
  for (int y = height - 1; y >= 0;) {
    const qint64 wanted = std::min<qint64>(rows, y + 1) * header.rowBytes;
    if (device.read(block.data(), wanted) != wanted) return QImage();
    for (qint64 at = 0; at < wanted; at += header.rowBytes, --y)
      SwapColors(reinterpret_cast<const uchar*>(block.constData()) + at, image.scanLine(y), header.size.width());
  }
  image.setDotsPerMeterX(header.dotsPerMeterX);
  image.setDotsPerMeterY(header.dotsPerMeterY);
  return image;
}
