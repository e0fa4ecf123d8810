#include "RasterCalls.h"

#include <QRect>
#include <algorithm>
#include <cstdlib>

namespace {

bool InRectangle(QPoint at, const QRect& box) {
  return at.x() >= box.left() && at.x() <= box.right() && at.y() >= box.top() && at.y() <= box.bottom();
}

// The curve goes through the middles of the outermost pixels. A pixel belongs to the form when the curve passes beyond
// the half of its width or of its height, which rounds the curve to the nearest pixel both ways. All lengths are
// doubled to keep them whole.
bool InEllipse(QPoint at, const QRect& box) {
  const qint64 across = box.width() - 1, down = box.height() - 1;
  const qint64 x = std::abs(2 * at.x() - box.left() - box.right());
  const qint64 y = std::abs(2 * at.y() - box.top() - box.bottom());
  if (x > across || y > down) return false;
  const auto isWithin = [&](qint64 u, qint64 v) {
    return u * u * down * down + v * v * across * across <= across * across * down * down;
  };
  return isWithin(std::max<qint64>(x - 1, 0), y) || isWithin(x, std::max<qint64>(y - 1, 0));
}

bool IsInside(Form form, QPoint at, const QRect& box) {
  return form == Form::Rectangle ? InRectangle(at, box) : InEllipse(at, box);
}

void Stamp(QImage& image, QPoint at, const Pen& pen) {
  const QPoint corner = at - QPoint(pen.width / 2, pen.width / 2);
  const QRect box(corner, QSize(pen.width, pen.width));
  for (int y = box.top(); y <= box.bottom(); ++y)
    for (int x = box.left(); x <= box.right(); ++x)
      if (InEllipse({x, y}, box)) SetPixel(image, {x, y}, pen.color);
}

// Bresenham's; every point once, from the first to the last.
template <typename Visit>
void ForEachPoint(QPoint from, QPoint to, const Visit& visit) {
  const int across = std::abs(to.x() - from.x()), down = std::abs(to.y() - from.y());
  const int stepX = from.x() < to.x() ? 1 : -1, stepY = from.y() < to.y() ? 1 : -1;
  int error = across - down;
  for (QPoint at = from;;) {
    visit(at);
    if (at == to) return;
    const int doubled = 2 * error;
    if (doubled > -down) {
      error -= down;
      at.rx() += stepX;
    }
    if (doubled < across) {
      error += across;
      at.ry() += stepY;
    }
  }
}

}  // namespace

void SetPixel(QImage& image, QPoint at, QRgb color) {
  if (image.valid(at)) reinterpret_cast<QRgb*>(image.scanLine(at.y()))[at.x()] = color;
}

void LineTo(QImage& image, QPoint from, QPoint to, const Pen& pen) {
  ForEachPoint(from, to, [&](QPoint at) {
    if (at != to || from == to) Stamp(image, at, pen);
  });
}

void DrawForm(QImage& image, Form form, QPoint corner, QPoint opposite, const Pen& pen, Filling filling) {
  const auto [left, right] = std::minmax({corner.x(), opposite.x()});
  const auto [top, bottom] = std::minmax({corner.y(), opposite.y()});
  const QRect box(left, top, right - left, bottom - top);
  if (box.isEmpty()) return;
  // The stamp of an edge outside of the image may reach into it.
  const QRect seen = image.rect().adjusted(-pen.width, -pen.width, pen.width, pen.width) & box;
  for (int y = seen.top(); y <= seen.bottom(); ++y) {
    for (int x = seen.left(); x <= seen.right(); ++x) {
      if (!IsInside(form, {x, y}, box)) continue;
      if (filling == Filling::Solid) SetPixel(image, {x, y}, pen.color);
      const bool isEdge = !IsInside(form, {x - 1, y}, box) || !IsInside(form, {x + 1, y}, box) ||
                          !IsInside(form, {x, y - 1}, box) || !IsInside(form, {x, y + 1}, box);
      if (isEdge) Stamp(image, {x, y}, pen);
    }
  }
}

void InvertLine(QImage& image, QPoint from, QPoint to) {
  ForEachPoint(from, to, [&](QPoint at) {
    if (image.valid(at)) reinterpret_cast<QRgb*>(image.scanLine(at.y()))[at.x()] ^= 0xFFFFFF;
  });
}
