#include "PictureFormat.h"

#include <QIODevice>
#include <QtEndian>
#include <algorithm>
#include <cstdlib>

namespace {

// The headers of a bitmap as far as they are needed; a file that ends within them is no whole picture.
constexpr qint64 kBmpHeaders = 38;

template <typename Number>
Number Little(const QByteArray& bytes, qsizetype at) {
  return qFromLittleEndian<Number>(bytes.constData() + at);
}

bool IsWholeBmp(QIODevice& device) {
  QByteArray bytes = device.peek(kBmpHeaders);
  bytes.append(kBmpHeaders - bytes.size(), '\0');
  const auto headerSize = Little<quint32>(bytes, 14);
  const qint64 pixels = std::max<qint64>(Little<quint32>(bytes, 10), 14 + qint64(headerSize));
  qint64 width, height, depth;
  if (headerSize == 12) {
    width = Little<quint16>(bytes, 18);
    height = Little<quint16>(bytes, 20);
    depth = Little<quint16>(bytes, 24);
  } else {
    width = Little<qint32>(bytes, 18);
    height = Little<qint32>(bytes, 22);
    depth = Little<quint16>(bytes, 28);
    const auto compression = Little<quint32>(bytes, 30);
    const bool runLengths = compression == 1 || compression == 2;
    if (runLengths) return pixels < device.size() && pixels + Little<quint32>(bytes, 34) <= device.size();
  }
  const qint64 row = (std::abs(width) * depth + 31) / 32 * 4;
  // Divided, since the product of two claims can be beyond any number.
  return pixels < device.size() && (row == 0 || std::abs(height) <= (device.size() - pixels) / row);
}

bool Skip(QIODevice& device, qint64 bytes) {
  return device.skip(bytes) == bytes;
}

// Goes behind a row of sub-blocks, which an empty one ends.
bool SkipGifBlocks(QIODevice& device) {
  char length = 0;
  while (device.getChar(&length)) {
    if (length == 0) return true;
    if (!Skip(device, quint8(length))) return false;
  }
  return false;
}

qint64 GifColors(char flags) {
  return (flags & 0x80) ? 3 * (qint64(2) << (flags & 7)) : 0;
}

bool IsWholeGif(QIODevice& device) {
  constexpr char extension = 0x21, image = 0x2C;
  const QByteArray header = device.read(13);
  if (header.size() < 13 || !Skip(device, GifColors(header[10]))) return false;
  char kind = 0;
  for (;;) {
    if (!device.getChar(&kind)) return false;
    if (kind != extension) break;
    if (!Skip(device, 1) || !SkipGifBlocks(device)) return false;
  }
  constexpr qint64 placeAndSize = 8, codeSize = 1;
  char flags = 0;
  return kind == image && Skip(device, placeAndSize) && device.getChar(&flags) &&
         Skip(device, GifColors(flags) + codeSize) && SkipGifBlocks(device);
}

// Whether all chunks up to the last are within so many bytes from here. Its decoder finds out as well, but takes and
// clears as much memory as a chunk claims to be long before it reads one.
bool IsWholePng(QIODevice& device, qint64 bytes) {
  constexpr qint64 signature = 8, chunkHead = 8, check = 4;
  if (!Skip(device, signature)) return false;
  for (qint64 left = bytes - signature; left >= chunkHead;) {
    const QByteArray head = device.read(chunkHead);
    if (head.size() < chunkHead) return false;
    // The decoder does without the check behind the end.
    if (head.endsWith("IEND")) return true;
    const qint64 chunk = qFromBigEndian<quint32>(head.constData()) + check;
    left -= chunkHead + chunk;
    if (left < 0 || !Skip(device, chunk)) return false;
  }
  return false;
}

// The first image of an icon may be a PNG.
bool IsWholeIco(QIODevice& device) {
  const QByteArray head = device.read(22);
  if (head.size() < 22) return true;
  const qint64 place = Little<quint32>(head, 18);
  if (place > device.size() || !device.seek(place)) return true;
  if (PictureFormatOf(device.peek(16)) != PictureFormat::Png) return true;
  return IsWholePng(device, device.size() - place);
}

}  // namespace

PictureFormat PictureFormatOf(const QByteArray& bytes) {
  if (bytes.startsWith("BM")) return PictureFormat::Bmp;
  if (bytes.startsWith("GIF87a") || bytes.startsWith("GIF89a")) return PictureFormat::Gif;
  if (bytes.startsWith(QByteArray("\0\0\1\0", 4))) return PictureFormat::Ico;
  if (bytes.startsWith("\xFF\xD8\xFF")) return PictureFormat::Jpeg;
  if (bytes.startsWith("\x89PNG\r\n\x1A\n")) return PictureFormat::Png;
  return PictureFormat::None;
}

QByteArray FormatName(PictureFormat format) {
  switch (format) {
    case PictureFormat::Bmp:
      return "bmp";
    case PictureFormat::Gif:
      return "gif";
    case PictureFormat::Ico:
      return "ico";
    case PictureFormat::Jpeg:
      return "jpg";
    case PictureFormat::Png:
      return "png";
    case PictureFormat::None:
      break;
  }
  return QByteArray();
}

bool IsWholePicture(QIODevice& device, PictureFormat format) {
  switch (format) {
    case PictureFormat::Bmp:
      return IsWholeBmp(device);
    case PictureFormat::Gif:
      return IsWholeGif(device);
    case PictureFormat::Png:
      return IsWholePng(device, device.size());
    case PictureFormat::Ico:
      return IsWholeIco(device);
    case PictureFormat::Jpeg:
      return true;
    case PictureFormat::None:
      break;
  }
  return false;
}
