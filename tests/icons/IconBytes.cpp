#include "IconBytes.h"

#include <QDataStream>
#include <QIODevice>
#include <QtEndian>

QByteArray BitmapImage(const QImage& picture, int bits) {
  QByteArray bytes;
  QDataStream out(&bytes, QIODevice::WriteOnly);
  out.setByteOrder(QDataStream::LittleEndian);
  const int width = picture.width(), height = picture.height();
  out << quint32(40) << quint32(width) << quint32(2 * height) << quint16(1) << quint16(bits);
  for (int i = 0; i < 6; ++i) out << quint32(0);
  QList<QRgb> table;
  const auto shown = [&](int x, int y) {
    const QRgb pixel = picture.pixel(x, y);
    return qAlpha(pixel) == 0 ? QRgb(0) : pixel;
  };
  if (bits <= 8) {
    for (int y = 0; y < height; ++y)
      for (int x = 0; x < width; ++x)
        if (!table.contains(shown(x, y) & 0xFFFFFF)) table << (shown(x, y) & 0xFFFFFF);
    Q_ASSERT(table.size() <= 1 << bits);
    table.resize(1 << bits);
    for (const QRgb color : table) out << quint32(color);
  }
  const auto row = [&out](const QByteArray& packed) {
    out.writeRawData(packed.constData(), int(packed.size()));
    for (qsizetype at = packed.size(); at % 4; ++at) out << quint8(0);
  };
  const auto pack = [&](int y, int depth, const auto& valueOf) {
    QByteArray packed((width * depth + 7) / 8, '\0');
    for (int x = 0; x < width; ++x) {
      const int bit = x * depth;
      packed[bit / 8] = char(packed[bit / 8] | (valueOf(x, y) << (8 - depth - bit % 8)));
    }
    row(packed);
  };
  for (int y = height - 1; y >= 0; --y) {
    if (bits <= 8) {
      pack(y, bits, [&](int px, int py) { return int(table.indexOf(shown(px, py) & 0xFFFFFF)); });
      continue;
    }
    QByteArray packed;
    for (int x = 0; x < width; ++x) {
      const QRgb pixel = shown(x, y);
      packed += char(qBlue(pixel));
      packed += char(qGreen(pixel));
      packed += char(qRed(pixel));
      if (bits == 32) packed += char(qAlpha(pixel));
    }
    row(packed);
  }
  for (int y = height - 1; y >= 0; --y) pack(y, 1, [&](int px, int py) { return qAlpha(picture.pixel(px, py)) == 0; });
  return bytes;
}

QByteArray IconFileOf(const QList<QByteArray>& images) {
  QByteArray bytes;
  QDataStream out(&bytes, QIODevice::WriteOnly);
  out.setByteOrder(QDataStream::LittleEndian);
  out << quint16(0) << quint16(1) << quint16(images.size());
  quint32 offset = quint32(6 + 16 * images.size());
  for (const QByteArray& image : images) {
    const auto number = [&](int at) { return qFromLittleEndian<quint32>(image.constData() + at); };
    out << quint8(number(4)) << quint8(number(8) / 2) << quint8(0) << quint8(0) << quint16(1);
    out << quint16(number(14)) << quint32(image.size()) << offset;
    offset += quint32(image.size());
  }
  for (const QByteArray& image : images) out.writeRawData(image.constData(), int(image.size()));
  return bytes;
}

QImage HalfRed(int side) {
  QImage image(side, side, QImage::Format_ARGB32);
  image.fill(qRgba(255, 0, 0, 255));
  for (int y = 0; y < side; ++y)
    for (int x = 0; x < side / 2; ++x) image.setPixel(x, y, qRgba(0, 0, 0, 0));
  image.setPixel(side - 1, side - 1, qRgba(0, 0, 255, 255));
  return image;
}
