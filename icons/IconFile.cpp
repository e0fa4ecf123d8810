#include "IconFile.h"

#include <QDataStream>
#include <QIODevice>

#include "IconColors.h"
#include "Resource.h"

namespace {

constexpr quint8 kColors = 16;
constexpr quint32 kImageBytes = 744, kImageOffset = 22, kHeaderBytes = 40;
constexpr quint16 kPlanes = 1, kBitsPerPixel = 4;

// Nearer to white than to black.
bool IsWhite(QRgb pixel) {
  return 2 * (qRed(pixel) + qGreen(pixel) + qBlue(pixel)) > 3 * 255;
}

}  // namespace

QByteArray IconFileBytes(const QImage& colors, const QImage& mask) {
  QByteArray bytes;
  QDataStream out(&bytes, QIODevice::WriteOnly);
  out.setByteOrder(QDataStream::LittleEndian);
  const auto zero = [&out](int count) {
    for (int i = 0; i < count; ++i) out << quint32(0);
  };
  out << quint16(0) << quint16(1) << quint16(1);
  out << quint8(kIconSide) << quint8(kIconSide) << kColors << quint8(0) << kPlanes << kBitsPerPixel;
  out << kImageBytes << kImageOffset;
  // The header's height counts the rows of colours and those of the mask. The size of the data stays 0.
  out << kHeaderBytes << quint32(kIconSide) << quint32(2 * kIconSide) << kPlanes << kBitsPerPixel;
  zero(6);
  const QByteArray table = Resource(QStringLiteral("ICO4TABLE"));
  out.writeRawData(table.constData(), int(table.size()));
  for (int y = kIconSide - 1; y >= 0; --y)
    for (int x = 0; x < kIconSide; x += 2)
      out << quint8(NearestIconColor(colors.pixel(x, y)) << 4 | NearestIconColor(colors.pixel(x + 1, y)));
  for (int y = kIconSide - 1; y >= 0; --y)
    for (int x = 0; x < kIconSide; x += 8) {
      quint8 eight = 0;
      for (int bit = 0; bit < 8; ++bit) eight = quint8(eight << 1 | quint8(IsWhite(mask.pixel(x + bit, y))));
      out << eight;
    }
  return bytes;
}
