#include "IconColors.h"

#include <algorithm>
#include <cassert>

#include "Resource.h"

namespace {

std::array<QRgb, 16> ReadTable() {
  constexpr qsizetype entry = 4;  // blue, green, red, 0
  const QByteArray bytes = Resource(QStringLiteral("ICO4TABLE"));
  std::array<QRgb, 16> table{};
  assert(bytes.size() == entry * qsizetype(table.size()));
  for (std::size_t i = 0; i < table.size(); ++i) {
    const auto* const at = reinterpret_cast<const uchar*>(bytes.constData()) + entry * qsizetype(i);
    table[i] = qRgb(at[2], at[1], at[0]);
  }
  return table;
}

int SquaredDistance(QRgb a, QRgb b) {
  const int red = qRed(a) - qRed(b), green = qGreen(a) - qGreen(b), blue = qBlue(a) - qBlue(b);
  return red * red + green * green + blue * blue;
}

}  // namespace

QRgb PixelOf(qint32 color) {
  return qRgb(color & 0xFF, (color >> 8) & 0xFF, (color >> 16) & 0xFF);
}

qint32 ColorOf(QRgb pixel) {
  return qRed(pixel) | (qGreen(pixel) << 8) | (qBlue(pixel) << 16);
}

const std::array<QRgb, 16>& IconColors() {
  static const std::array<QRgb, 16> table = ReadTable();
  return table;
}

int NearestIconColor(QRgb pixel) {
  const auto& table = IconColors();
  const auto nearest = std::min_element(table.begin(), table.end(), [pixel](QRgb a, QRgb b) {
    return SquaredDistance(a, pixel) < SquaredDistance(b, pixel);
  });
  return int(nearest - table.begin());
}
