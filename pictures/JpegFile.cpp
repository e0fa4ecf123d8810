#include "JpegFile.h"

#include <turbojpeg.h>

#include <QIODevice>
#include <QtEndian>
#include <algorithm>
#include <memory>

namespace {

constexpr int kBest = 100;

struct Compressor {
  void operator()(void* handle) const { tjDestroy(handle); }
};
struct Bytes {
  void operator()(unsigned char* bytes) const { tjFree(bytes); }
};

// How the library calls the pixels of an image; -1 for those that it can't take as they are.
int PixelFormat(QImage::Format format) {
  switch (format) {
    case QImage::Format_RGB32:
      return Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? TJPF_BGRX : TJPF_XRGB;
    case QImage::Format_RGB888:
      return TJPF_RGB;
    case QImage::Format_BGR888:
      return TJPF_BGR;
    default:
      return -1;
  }
}

// The library knows no resolution. The first block of a file, JFIF, has room for it: a unit, of which 2 is dots per
// centimetre, and two numbers.
void TellResolution(unsigned char* bytes, unsigned long size, const QImage& image) {
  constexpr unsigned long unit = 13, afterNumbers = 18;
  constexpr unsigned char dotsPerCentimetre = 2;
  if (size < afterNumbers || qstrncmp(reinterpret_cast<const char*>(bytes) + 6, "JFIF", 5) != 0) return;
  const auto dots = [](int perMeter) { return quint16(std::clamp(perMeter / 100, 1, 0xFFFF)); };
  bytes[unit] = dotsPerCentimetre;
  qToBigEndian(dots(image.dotsPerMeterX()), bytes + unit + 1);
  qToBigEndian(dots(image.dotsPerMeterY()), bytes + unit + 3);
}

}  // namespace

bool WriteJpeg(const QImage& image, int quality, QIODevice& device) {
  QImage pixels = image;
  if (PixelFormat(pixels.format()) < 0) pixels.convertTo(QImage::Format_RGB32);
  if (pixels.isNull()) return false;
  const std::unique_ptr<void, Compressor> compressor(tjInitCompress());
  if (!compressor) return false;
  unsigned char* made = nullptr;
  unsigned long size = 0;
  const int result = tjCompress2(compressor.get(), pixels.constBits(), pixels.width(), int(pixels.bytesPerLine()),
                                 pixels.height(), PixelFormat(pixels.format()), &made, &size,
                                 quality >= kBest ? TJSAMP_444 : TJSAMP_420, quality, TJFLAG_ACCURATEDCT);
  const std::unique_ptr<unsigned char, Bytes> bytes(made);
  if (result != 0) return false;
  TellResolution(made, size, image);
  return device.write(reinterpret_cast<const char*>(made), qint64(size)) == qint64(size);
}
