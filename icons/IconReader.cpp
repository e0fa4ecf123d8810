#include "IconReader.h"

#include <QSize>
#include <QtEndian>
#include <algorithm>

#include "IconFile.h"
#include "PictureBounds.h"
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

// One image of an icon file: its entry in the directory and its bytes, which are the file's own.
struct IconImage {
  QByteArray entry;
  QByteArray bytes;
};

// An image that isn't wholly there is none.
std::optional<IconImage> ImageAt(const QByteArray& file, int index) {
  const QByteArray entry = file.mid(kDirectoryBytes + index * kEntryBytes, kEntryBytes);
  const quint32 length = Little<quint32>(entry, 8), offset = Little<quint32>(entry, 12);
  if (entry.size() < kEntryBytes || qint64(offset) + length > file.size()) return std::nullopt;
  return IconImage{entry, QByteArray::fromRawData(file.constData() + offset, qsizetype(length))};
}

// The header of an image that is stored as a bitmap: colours from the bottom up, then the mask. Nothing for any other.
struct BitmapHeader {
  QSize size;
  int bits;  // of a pixel
  qint64 colorOffset;
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
  const qint64 colors = qint64(headerBytes) + 4 * tableEntries;
  return BitmapHeader{size, bits, colors, colors + row * size.height()};
}

// "\x89PNG\r\n\x1A\n", then a block whose first two numbers, highest byte first, are width and height.
bool IsPng(const QByteArray& image) {
  return PictureFormatOf(image) == PictureFormat::Png;
}

QSize SizeOf(const QByteArray& image) {
  if (const auto header = HeaderOf(image)) return header->size;
  constexpr qsizetype width = 16, height = 20, end = 24;
  if (!IsPng(image) || image.size() < end) return QSize();
  return QSize(qFromBigEndian<qint32>(image.constData() + width), qFromBigEndian<qint32>(image.constData() + height));
}

std::optional<IconImage> ChosenImage(const QByteArray& file) {
  if (PictureFormatOf(file) != PictureFormat::Ico) return std::nullopt;
  const int count = Little<quint16>(file, 4);
  for (int index = 0; index < count; ++index) {
    const auto image = ImageAt(file, index);
    if (image && SizeOf(image->bytes) == kWanted) return image;
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

// Images of 32 bits have room for a transparency of their own in the last byte of each pixel. Some programs leave it
// empty, and the picture is opaque then.
bool HasRoomForAlpha(const IconImage& image) {
  constexpr int bitsWithAlpha = 32;
  const auto header = HeaderOf(image.bytes);
  return header && header->bits == bitsWithAlpha;
}

constexpr qint64 kPixelBytes = 4, kAlphaByte = 3;

bool UsesAlpha(const IconImage& image) {
  if (!HasRoomForAlpha(image)) return false;
  const auto header = HeaderOf(image.bytes);
  const qint64 end = std::min<qint64>(header->maskOffset, image.bytes.size());
  for (qint64 at = header->colorOffset + kAlphaByte; at < end; at += kPixelBytes)
    if (image.bytes[qsizetype(at)] != '\0') return true;
  return false;
}

QImage Decoded(IconImage image) {
  if (HasRoomForAlpha(image) && !UsesAlpha(image)) {
    const auto header = HeaderOf(image.bytes);
    const qint64 end = std::min<qint64>(header->maskOffset, image.bytes.size());
    for (qint64 at = header->colorOffset + kAlphaByte; at < end; at += kPixelBytes) image.bytes[qsizetype(at)] = '\xFF';
  }
  return AtIconSize(PictureFromBytes(AloneInFile(image)));
}

template <typename IsSeeThrough>
QImage NewMask(const IsSeeThrough& isSeeThrough) {
  QImage mask(kWanted, QImage::Format_RGB32);
  for (int y = 0; y < kIconSide; ++y)
    for (int x = 0; x < kIconSide; ++x) mask.setPixel(x, y, isSeeThrough(x, y) ? kSeeThrough : kOpaque);
  return mask;
}

// The mask that an image stored as a bitmap has behind its colours, if it is all there.
std::optional<QImage> StoredMask(const IconImage& image) {
  const auto header = HeaderOf(image.bytes);
  if (!header) return std::nullopt;
  const qint64 row = (qint64(header->size.width()) + 31) / 32 * 4;
  if (header->maskOffset + row * header->size.height() > image.bytes.size()) return std::nullopt;
  return NewMask([&](int x, int y) {
    const qint64 line = header->maskOffset + row * (header->size.height() - 1 - SourceOf(y, header->size.height()));
    const int column = SourceOf(x, header->size.width());
    const auto eight = quint8(image.bytes[qsizetype(line + column / 8)]);
    return ((eight >> (7 - column % 8)) & 1) != 0;
  });
}

bool IsOpaqueAllOver(const QImage& mask) {
  return mask == NewMask([](int, int) { return false; });
}

// By its own mask, or by the transparency of what has none or an empty one.
std::optional<QImage> MaskOf(const IconImage& image) {
  const auto stored = StoredMask(image);
  const bool mayHaveAlpha = IsPng(image.bytes) || HasRoomForAlpha(image);
  if (!mayHaveAlpha || (stored && !IsOpaqueAllOver(*stored))) return stored;
  if (!IsPng(image.bytes) && !UsesAlpha(image)) return stored;
  const QImage picture = Decoded(image);
  if (picture.isNull()) return std::nullopt;
  return NewMask([&](int x, int y) { return qAlpha(picture.pixel(x, y)) == 0; });
}

// The library leaves the mask of some depths aside.
QImage CutOut(QImage picture, const IconImage& image) {
  const auto mask = StoredMask(image);
  if (picture.isNull() || !mask || UsesAlpha(image)) return picture;
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
    return image ? CutOut(Decoded(*image), *image) : QImage();
  }
  const QImage picture = PictureFromBytes(bytes);
  return picture.copy(picture.rect() & QRect(QPoint(0, 0), kWanted));
}

std::optional<QImage> MaskOfIcon(const QByteArray& bytes) {
  const auto image = ChosenImage(bytes);
  return image ? MaskOf(*image) : std::nullopt;
}
