#include "ReadPicture.h"

#include <QBuffer>
#include <QColorSpace>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <algorithm>
#include <cstdlib>
#include <limits>

#include "PictureBounds.h"
#include "PlainBmp.h"

namespace {

constexpr qint64 kMegabyte = 1 << 20;
// An icon's header doesn't tell its images' true size; its reader may take so much.
constexpr int kMegabytesOfAnIcon = 256;

// The image reader's limit is the whole process's; it comes back with the object.
class AllocationLimit {
 public:
  explicit AllocationLimit(int megabytes) : before_(QImageReader::allocationLimit()) {
    QImageReader::setAllocationLimit(megabytes);
  }
  ~AllocationLimit() { QImageReader::setAllocationLimit(before_); }
  AllocationLimit(const AllocationLimit&) = delete;
  AllocationLimit& operator=(const AllocationLimit&) = delete;

 private:
  int before_;
};

int MegabytesFor(QSize pixels, PictureFormat format) {
  const int bytes = format == PictureFormat::Png ? 8 : 4;  // of a pixel; a PNG may have 16 bits a channel
  return int(qint64(pixels.width()) * pixels.height() * bytes / kMegabyte) + 1;
}

// A bitmap that is stored from the top has a negative height.
QSize WithoutSigns(QSize size) {
  constexpr int most = std::numeric_limits<int>::max();
  return QSize(std::abs(std::max(size.width(), -most)), std::abs(std::max(size.height(), -most)));
}

// The screen, and the bitmaps on a picture's way, know one meaning of colours, sRGB.
void BringToStandardColors(QImage& image) {
  const QColorSpace space = image.colorSpace();
  if (!space.isValid() || space == QColorSpace(QColorSpace::SRgb)) return;
  image.convertTo(image.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
  image.convertToColorSpace(QColorSpace(QColorSpace::SRgb));
}

QImage PictureFrom(QIODevice& device) {
  constexpr qint64 enough = 16;
  const PictureFormat format = PictureFormatOf(device.peek(enough));
  if (format == PictureFormat::Bmp) {
    if (QImage image = ReadPlainBmp(device); !image.isNull()) return image;
    device.seek(0);
  }
  if (!IsWholePicture(device, format)) return QImage();
  device.seek(0);
  QImageReader reader(&device, FormatName(format));
  reader.setAutoDetectImageFormat(false);
  reader.setAutoTransform(true);
  const QSize claimed = WithoutSigns(reader.size());
  if (!IsPlausibleSize(claimed, device.size()) || !IsHoldableSize(claimed)) return QImage();
  const AllocationLimit limit(format == PictureFormat::Ico ? kMegabytesOfAnIcon : MegabytesFor(claimed, format));
  QImage image = reader.read();
  BringToStandardColors(image);
  return image;
}

// A plain file; opening a pipe would wait for its writer.
bool OpenToRead(QFile& file) {
  return QFileInfo(file.fileName()).isFile() && file.open(QIODevice::ReadOnly);
}

// No icon takes as much, with whatever images.
constexpr qint64 kMostBytesAtOnce = 1'000'000'000;

}  // namespace

QImage PictureFromBytes(const QByteArray& bytes) {
  QBuffer buffer;
  buffer.setData(bytes);
  buffer.open(QIODevice::ReadOnly);
  return PictureFrom(buffer);
}

QByteArray PictureFileBytes(const QString& path) {
  QFile file(path);
  return OpenToRead(file) && file.size() <= kMostBytesAtOnce ? file.readAll() : QByteArray();
}

QImage ReadPicture(const QString& path) {
  QFile file(path);
  return OpenToRead(file) ? PictureFrom(file) : QImage();
}

PictureFormat FormatOfFile(const QString& path) {
  QFile file(path);
  constexpr qint64 enough = 16;
  return OpenToRead(file) ? PictureFormatOf(file.read(enough)) : PictureFormat::None;
}
