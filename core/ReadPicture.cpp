#include "ReadPicture.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <cstdlib>

#include "PlainBmp.h"

namespace {

// Room for the most pixels at 32 bits each.
constexpr int kMostMegabytes = 256;
// A little more than the largest picture takes in its longest form.
constexpr qint64 kMostFileBytes = 300'000'000;

// The image reader's limit is the whole process's; it comes back with the object.
class AllocationLimit {
 public:
  AllocationLimit() : before_(QImageReader::allocationLimit()) { QImageReader::setAllocationLimit(kMostMegabytes); }
  ~AllocationLimit() { QImageReader::setAllocationLimit(before_); }
  AllocationLimit(const AllocationLimit&) = delete;
  AllocationLimit& operator=(const AllocationLimit&) = delete;

 private:
  int before_;
};

}  // namespace

QImage PictureFromBytes(const QByteArray& bytes) {
  const PictureFormat format = PictureFormatOf(bytes);
  if (!IsWholePicture(bytes, format)) return QImage();
  QBuffer buffer;
  buffer.setData(bytes);
  buffer.open(QIODevice::ReadOnly);
  if (QImage image = ReadPlainBmp(buffer); !image.isNull()) return image;
  buffer.seek(0);
  const AllocationLimit limit;
  QImageReader reader(&buffer, FormatName(format));
  reader.setAutoDetectImageFormat(false);
  reader.setAutoTransform(true);
  // A bitmap that is stored from the top has a negative height.
  const QSize claimed = reader.size();
  if (!IsHoldableSize({std::abs(claimed.width()), std::abs(claimed.height())})) return QImage();
  QImage image = reader.read();
  return IsHoldableSize(image.size()) ? image : QImage();
}

namespace {

// A plain file no longer than any picture.
bool OpenToRead(QFile& file) {
  const QFileInfo info(file.fileName());
  return info.isFile() && info.size() <= kMostFileBytes && file.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

}  // namespace

QByteArray PictureFileBytes(const QString& path) {
  QFile file(path);
  return OpenToRead(file) ? file.readAll() : QByteArray();
}

QImage ReadPicture(const QString& path) {
  QFile file(path);
  if (!OpenToRead(file)) return QImage();
  if (QImage image = ReadPlainBmp(file); !image.isNull()) return image;
  file.seek(0);
  return PictureFromBytes(file.readAll());
}

PictureFormat FormatOfFile(const QString& path) {
  QFile file(path);
  if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) return PictureFormat::None;
  constexpr qint64 enough = 16;
  return PictureFormatOf(file.read(enough));
}
