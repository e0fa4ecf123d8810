#include "PictureBounds.h"

#include <QWidget>

#include "FreeMemory.h"

namespace {

constexpr qint64 kPixelBytes = 4;
constexpr qint64 kNobodyAsks = 16'000'000;
constexpr qint64 kNobodyDoubts = 64'000'000;
constexpr qint64 kMostPixelsOfAByte = 4096;

qint64 Area(QSize pixels) {
  return qint64(pixels.width()) * pixels.height();
}

}  // namespace

bool IsHoldableSize(QSize pixels) {
  if (pixels.isEmpty() || pixels.width() >= QWIDGETSIZE_MAX || pixels.height() >= QWIDGETSIZE_MAX) return false;
  return Area(pixels) <= kNobodyAsks || 2 * kPixelBytes * Area(pixels) <= FreeMemory();
}

bool IsPlausibleSize(QSize pixels, qint64 fileBytes) {
  return Area(pixels) <= kNobodyDoubts || Area(pixels) / kMostPixelsOfAByte <= fileBytes;
}
