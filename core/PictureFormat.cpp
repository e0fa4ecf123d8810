#include "PictureFormat.h"

#include <algorithm>
#include <cstdlib>
#include <initializer_list>

namespace {

// Numbers at places of the file; a number that reaches beyond the end is 0.
class Bytes {
 public:
  explicit Bytes(const QByteArray& bytes) : bytes_(bytes) {}

  qint64 Size() const { return bytes_.size(); }
  bool Holds(qint64 end) const { return end >= 0 && end <= Size(); }

  quint8 At(qint64 at) const { return Holds(at + 1) ? quint8(bytes_[qsizetype(at)]) : 0; }
  quint16 Little16(qint64 at) const { return quint16(Joined(at, {0, 8})); }
  quint32 Little32(qint64 at) const { return Joined(at, {0, 8, 16, 24}); }
  quint16 Big16(qint64 at) const { return quint16(Joined(at, {8, 0})); }
  quint32 Big32(qint64 at) const { return Joined(at, {24, 16, 8, 0}); }

 private:
  // Byte by byte: of one wide load the compiler fears that it reads beyond the one byte of the empty array.
  quint32 Joined(qint64 at, std::initializer_list<int> shifts) const {
    if (!Holds(at + qint64(shifts.size()))) return 0;
    quint32 number = 0;
    for (const int shift : shifts) number |= quint32(At(at++)) << shift;
    return number;
  }

  const QByteArray& bytes_;
};

bool IsWholeBmp(const Bytes& bytes) {
  const quint32 headerSize = bytes.Little32(14);
  const qint64 pixels = std::max<qint64>(bytes.Little32(10), 14 + qint64(headerSize));
  qint64 width, height, depth;
  if (headerSize == 12) {
    width = bytes.Little16(18);
    height = bytes.Little16(20);
    depth = bytes.Little16(24);
  } else {
    width = qint32(bytes.Little32(18));
    height = qint32(bytes.Little32(22));
    depth = bytes.Little16(28);
    const quint32 compression = bytes.Little32(30);
    const quint32 pixelBytes = bytes.Little32(34);
    const bool runLengths = compression == 1 || compression == 2;
    if (runLengths) return pixels < bytes.Size() && bytes.Holds(pixels + pixelBytes);
  }
  const qint64 row = (std::abs(width) * depth + 31) / 32 * 4;
  // Divided, since the product of two claims can be beyond any number.
  return pixels < bytes.Size() && (row == 0 || std::abs(height) <= (bytes.Size() - pixels) / row);
}

// Behind a row of sub-blocks, which an empty one ends; -1 when the file ends before.
qint64 BehindGifBlocks(const Bytes& bytes, qint64 at) {
  while (bytes.Holds(at + 1)) {
    const qint64 length = bytes.At(at);
    at += 1 + length;
    if (length == 0) return at;
  }
  return -1;
}

qint64 GifColors(quint8 flags) {
  return (flags & 0x80) ? 3 * (qint64(2) << (flags & 7)) : 0;
}

bool IsWholeGif(const Bytes& bytes) {
  constexpr quint8 extension = 0x21, image = 0x2C;
  qint64 at = 13 + GifColors(bytes.At(10));
  while (at >= 0 && bytes.At(at) == extension) at = BehindGifBlocks(bytes, at + 2);
  if (at < 0 || bytes.At(at) != image) return false;
  return BehindGifBlocks(bytes, at + 10 + GifColors(bytes.At(at + 9)) + 1) >= 0;
}

bool IsWholeIco(const Bytes& bytes) {
  constexpr qint64 directory = 6, entry = 16;
  const qint64 count = bytes.Little16(4);
  const qint64 length = bytes.Little32(directory + 8), offset = bytes.Little32(directory + 12);
  return count > 0 && length > 0 && offset >= directory + entry * count && bytes.Holds(offset + length);
}

bool IsWholeJpeg(const Bytes& bytes) {
  constexpr quint8 mark = 0xFF, stuffed = 0x00, alone = 0x01, restart0 = 0xD0, restart7 = 0xD7, end = 0xD9, scan = 0xDA;
  qint64 at = 2;
  while (bytes.Holds(at + 2)) {
    if (bytes.At(at) != mark) {
      ++at;
      continue;
    }
    const quint8 kind = bytes.At(at + 1);
    if (kind == end) return true;
    if (kind == mark) {
      ++at;
    } else if (kind == stuffed || kind == alone || (kind >= restart0 && kind <= restart7)) {
      at += 2;
    } else {
      // A scan's data follow its header; the next pass looks through them for a mark.
      at += 2 + std::max<qint64>(bytes.Big16(at + 2), kind == scan ? 2 : 0);
    }
  }
  return false;
}

bool IsWholePng(const Bytes& bytes) {
  constexpr quint32 end = 0x49454E44;  // "IEND"
  for (qint64 at = 8; bytes.Holds(at + 12);) {
    const quint32 kind = bytes.Big32(at + 4);
    at += 12 + qint64(bytes.Big32(at));
    if (kind == end) return bytes.Holds(at);
  }
  return false;
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

bool IsWholePicture(const QByteArray& bytes, PictureFormat format) {
  switch (format) {
    case PictureFormat::Bmp:
      return IsWholeBmp(Bytes(bytes));
    case PictureFormat::Gif:
      return IsWholeGif(Bytes(bytes));
    case PictureFormat::Ico:
      return IsWholeIco(Bytes(bytes));
    case PictureFormat::Jpeg:
      return IsWholeJpeg(Bytes(bytes));
    case PictureFormat::Png:
      return IsWholePng(Bytes(bytes));
    case PictureFormat::None:
      break;
  }
  return false;
}

bool IsHoldableSize(QSize pixels) {
  constexpr int sideBound = 30'000;
  constexpr qint64 mostPixels = 64'000'000;
  return pixels.width() > 0 && pixels.height() > 0 && pixels.width() < sideBound && pixels.height() < sideBound &&
         qint64(pixels.width()) * pixels.height() <= mostPixels;
}
