#include "CropBand.h"

#include <QPaintEvent>
#include <QPainter>
#include <cstdlib>

#include "Surface.h"

namespace {

constexpr int kDash = 4;  // pixels
// Of three channels together; a grey of 96 or 160 is just clear enough.
constexpr int kClearDifference = 3 * 60;

bool IsLostOn(QRgb color) {
  const auto difference = [](int channel) { return std::abs(255 - 2 * channel); };
  return difference(qRed(color)) + difference(qGreen(color)) + difference(qBlue(color)) < kClearDifference;
}

}  // namespace

CropBand::CropBand(Surface& surface) : QWidget(&surface), surface_(surface) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
}

void CropBand::Follow(QPoint corner, QPoint opposite) {
  setGeometry(surface_.rect());
  update(outline_);
  outline_ = Surface::Outline(corner, opposite);
  update(outline_);
}

void CropBand::paintEvent(QPaintEvent* event) {
  const QImage& picture = surface_.Picture();
  if (!surface_.HasDrawings()) return;
  QPainter painter(this);
  for (const QRect& edge : outline_ & event->region() & picture.rect()) {
    for (int y = edge.top(); y <= edge.bottom(); ++y)
      for (int x = edge.left(); x <= edge.right(); ++x)
        if (IsLostOn(picture.pixel(x, y)))
          painter.fillRect(x, y, 1, 1, (x + y) / kDash % 2 == 0 ? Qt::black : Qt::white);
  }
}
