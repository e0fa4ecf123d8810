#include "IconReader.h"

#include <QSize>
#include <QtEndian>
#include <algorithm>

#include "IconFile.h"
#include "PictureFormat.h"
#include "ReadPicture.h"

namespace {

constexpr qsizetype kDirectoryBytes = 6, kEntryBytes = 16;
constexpr QSize kWanted(kIconSide, kIconSide);
constexpr QRgb kSeeThrough = qRgb(255, 255, 255), kOpaque = qRgb(0, 0, 0);

template <typename Number>
Number Little(const QByteArray& bytes, qsizetype at) {
  return at + qsizetype(sizeof(Number)) <= bytes.size() ? qFromLittleEndian<Number>(bytes.constData() + at) : Number(0);
}

// One image of an icon file: its entry in the directory and its bytes.
struct IconImage {
  QByteArray entry;
  QByteArray bytes;
};

// An image that isn't wholly there is none.
std::optional<IconImage> ImageAt(const QByteArray& file, int index) {
  const QByteArray entry = file.mid(kDirectoryBytes + index * kEntryBytes, kEntryBytes);
  const quint32 length = Little<quint32>(entry, 8), offset = Little<quint32>(entry, 12);
  if (entry.size() < kEntryBytes || qint64(offset) + length > file.size()) return std::nullopt;
  return IconImage{entry, file.mid(offset, length)};
}

// The header of an image that is stored as a bitmap: colours from the bottom up, then the mask. Nothing for any other.
struct BitmapHeader {
  QSize size;
  int bits;  // of a pixel
  qint64 maskOffset;
};

std::optional<BitmapHeader> HeaderOf(const QByteArray& image) {
  constexpr quint32 plainHeader = 40, bitFields = 3;
  const quint32 headerBytes = Little<quint32>(image, 0), compression = Little<quint32>(image, 16);
  if (headerBytes < plainHeader || image.size() < qsizetype(plainHeader)) return std::nullopt;
  const QSize size(Little<qint32>(image, 4), Little<qint32>(image, 8) / 2);
  const int bits = Little<quint16>(image, 14);
  if (!IsHoldableSize(size) || bits < 1 || bits > 32) return std::nullopt;
  const quint32 used = Little<quint32>(image, 32);
  qint64 tableEntries = bits <= 8 ? (used > 0 ? qint64(used) : qint64(1) << bits) : 0;
  if (compression == bitFields && headerBytes == plainHeader) tableEntries += 3;
  const qint64 row = (qint64(size.width()) * bits + 31) / 32 * 4;
  return BitmapHeader{size, bits, qint64(headerBytes) + 4 * tableEntries + row * size.height()};
}

std::optional<IconImage> ChosenImage(const QByteArray& file) {
  if (PictureFormatOf(file) != PictureFormat::Ico) return std::nullopt;
  const int count = Little<quint16>(file, 4);
  for (int index = 0; index < count; ++index) {
    const auto image = ImageAt(file, index);
    const auto header = image ? HeaderOf(image->bytes) : std::nullopt;
    if (header && header->size == kWanted) return image;
  }
  return count > 0 ? ImageAt(file, 0) : std::nullopt;
}

// The image as a file of its own. The entry's size in it is the image's true one, as far as a byte can hold it.
QByteArray AloneInFile(IconImage image) {
  constexpr int largestSide = 255;
  if (const auto header = HeaderOf(image.bytes)) {
    const auto side = [](int length) { return char(length > largestSide ? 0 : length); };
    image.entry[0] = side(header->size.width());
    image.entry[1] = side(header->size.height());
  }
  qToLittleEndian(quint32(kDirectoryBytes + kEntryBytes), image.entry.data() + 12);
  return QByteArray("\0\0\1\0\1\0", kDirectoryBytes) + image.entry + image.bytes;
}

// The pixel of a length that comes to stand at a place of the icon.
int SourceOf(int place, int length) {
  return int((2 * qint64(place) + 1) * length / (2 * kIconSide));
}

QImage AtIconSize(const QImage& picture) {
  if (picture.isNull() || picture.size() == kWanted) return picture;
  QImage image(kWanted, QImage::Format_ARGB32);
  for (int y = 0; y < kIconSide; ++y)
    for (int x = 0; x < kIconSide; ++x)
      image.setPixel(x, y, picture.pixel(SourceOf(x, picture.width()), SourceOf(y, picture.height())));
  return image;
}

std::optional<QImage> MaskOf(const IconImage& image) {
  const auto header = HeaderOf(image.bytes);
  if (!header) return std::nullopt;
  const qint64 row = (qint64(header->size.width()) + 31) / 32 * 4;
  if (header->maskOffset + row * header->size.height() > image.bytes.size()) return std::nullopt;
  QImage mask(kWanted, QImage::Format_RGB32);
  for (int y = 0; y < kIconSide; ++y) {
    const qint64 line = header->maskOffset + row * (header->size.height() - 1 - SourceOf(y, header->size.height()));
    for (int x = 0; x < kIconSide; ++x) {
      const int column = SourceOf(x, header->size.width());
      const auto eight = quint8(image.bytes[qsizetype(line + column / 8)]);
      mask.setPixel(x, y, (eight >> (7 - column % 8)) & 1 ? kSeeThrough : kOpaque);
    }
  }
  return mask;
}

// The library leaves the mask of some depths aside. Images of 32 bits have their own transparency.
QImage CutOut(QImage picture, const IconImage& image) {
  constexpr int bitsWithTransparency = 32;
  const auto header = HeaderOf(image.bytes);
  const auto mask = MaskOf(image);
  if (picture.isNull() || !mask || header->bits == bitsWithTransparency) return picture;
  picture.convertTo(QImage::Format_ARGB32);
  for (int y = 0; y < kIconSide; ++y)
    for (int x = 0; x < kIconSide; ++x)
      if (mask->pixel(x, y) == kSeeThrough) picture.setPixel(x, y, qRgba(0, 0, 0, 0));
  return picture;
}

}  // namespace

QImage PictureForIcon(const QByteArray& bytes) {
  if (PictureFormatOf(bytes) == PictureFormat::Ico) {
    const auto image = ChosenImage(bytes);
    return image ? CutOut(AtIconSize(PictureFromBytes(AloneInFile(*image))), *image) : QImage();
  }
  const QImage picture = PictureFromBytes(bytes);
  return picture.copy(picture.rect() & QRect(QPoint(0, 0), kWanted));
}

std::optional<QImage> MaskOfIcon(const QByteArray& bytes) {
  const auto image = ChosenImage(bytes);
  return image ? MaskOf(*image) : std::nullopt;
}
