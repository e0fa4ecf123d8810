#include "Surface.h"

#include <QImageWriter>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

#include "PictureBounds.h"
#include "ReadPicture.h"
#include "WriteWhole.h"

namespace {

QPoint PixelAt(const QMouseEvent* event) {
  const QPointF at = event->position();
  return QPoint(int(std::floor(at.x())), int(std::floor(at.y())));
}

// In the form that is drawn fastest; null when memory doesn't suffice for it.
QImage AsHeld(QImage picture) {
  if (picture.isNull()) return picture;
  picture.setDevicePixelRatio(1);
  picture.convertTo(picture.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
  return picture;
}

// A part of the picture in another size; null when memory doesn't suffice. Scaling filters look beyond the part's edge,
// so it is cut out first.
QImage Stretched(const QImage& source, const QRect& part, QSize size) {
  if (size == part.size()) return part == source.rect() ? source : source.copy(part);
  if (!IsHoldableSize(size)) return QImage();
  const QImage piece = part == source.rect() ? source : source.copy(part);
  return piece.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

}  // namespace

Surface::Surface(const QString& name, QWidget* parent) : QWidget(parent) {
  setObjectName(name);
  setAttribute(Qt::WA_OpaquePaintEvent);
}

void Surface::SetBackground(const QColor& color) {
  background_ = color;
  ForgetDrawings();
}

void Surface::SetAutoSize(bool on) {
  autoSize_ = on;
  if (autoSize_ && !picture_.isNull()) resize(picture_.size());
}

void Surface::SetPicture(QImage picture) {
  picture_ = AsHeld(std::move(picture));
  SetAutoSize(autoSize_);
  ForgetDrawings();
}

bool Surface::LoadPicture(const QString& path) {
  QImage picture = AsHeld(ReadPicture(path));
  if (picture.isNull()) return false;
  SetPicture(std::move(picture));
  return true;
}

QImage Surface::WithoutDrawings() const {
  if (picture_.size() == size() && !picture_.hasAlphaChannel()) return picture_;
  if (!IsHoldableSize(size())) return QImage();
  QImage image(size(), QImage::Format_RGB32);
  if (image.isNull()) return image;
  image.fill(background_);
  if (!picture_.isNull()) QPainter(&image).drawImage(0, 0, picture_);
  return image;
}

QImage Surface::Image() const {
  if (drawnPart_.isEmpty()) return WithoutDrawings();
  if (drawn_.size() == size()) return drawn_;
  QImage image = WithoutDrawings();
  if (!image.isNull()) QPainter(&image).drawImage(0, 0, drawn_);
  return image;
}

QImage& Surface::Drawn() {
  if (drawn_.size() != size()) {
    drawn_ = Image();
    drawnPart_ &= rect();
  }
  return drawn_;
}

void Surface::MarkDrawn(const QRegion& part) {
  drawnPart_ |= part & rect();
  update(part);
}

void Surface::ForgetDrawings() {
  drawn_ = QImage();
  drawnPart_ = QRegion();
  update();
}

bool Surface::SaveImage(const QString& path) const {
  const QImage image = Image();
  return !image.isNull() &&
         WriteWhole(path, [&image](QIODevice& file) { return QImageWriter(&file, "bmp").write(image); });
}

void Surface::ClearDrawings() {
  if (drawn_.size() != size()) {
    ForgetDrawings();
    return;
  }
  QPainter painter(&drawn_);
  for (const QRect& part : drawnPart_) {
    painter.fillRect(part, background_);
    painter.drawImage(part.topLeft(), picture_, part);
  }
  update(drawnPart_);
  drawnPart_ = QRegion();
}

bool Surface::PaintPicture(const QImage& source, const QRect& target, const QRect& part) {
  const QRect there = part & source.rect();
  if (there.isEmpty() || target.isEmpty()) {
    Draw(target, [](QImage&) {});
    return true;
  }
  const double stretchX = double(target.width()) / part.width(), stretchY = double(target.height()) / part.height();
  const QPoint corner = target.topLeft() + QPoint(int(std::lround((there.x() - part.x()) * stretchX)),
                                                  int(std::lround((there.y() - part.y()) * stretchY)));
  const QSize size(std::max(1, int(std::lround(there.width() * stretchX))),
                   std::max(1, int(std::lround(there.height() * stretchY))));
  QImage piece = Stretched(source, there, size);
  if (piece.isNull()) return false;
  if (QRect(corner, size) == rect() && !piece.hasAlphaChannel()) {
    // All of it is new: a large picture needn't lie in memory twice.
    piece.convertTo(QImage::Format_RGB32);
    drawn_ = std::move(piece);
    MarkDrawn(rect());
    return !drawn_.isNull();
  }
  QImage& image = Drawn();
  if (image.isNull()) return false;
  QPainter(&image).drawImage(corner, piece);
  MarkDrawn(target);
  return true;
}

void Surface::Draw(const QRegion& part, const std::function<void(QImage&)>& draw) {
  QImage& image = Drawn();
  if (image.isNull()) return;
  draw(image);
  MarkDrawn(part);
}

QRegion Surface::Outline(QPoint corner, QPoint opposite) {
  const auto [left, right] = std::minmax({corner.x(), opposite.x()});
  const auto [top, bottom] = std::minmax({corner.y(), opposite.y()});
  const QRect outer(QPoint(left, top), QPoint(right, bottom));
  return QRegion(outer) - QRegion(outer.adjusted(1, 1, -1, -1));
}

void Surface::InvertRectangle(QPoint corner, QPoint opposite) {
  QImage& image = Drawn();
  if (image.isNull()) return;
  const QRegion outline = Outline(corner, opposite);
  for (const QRect& edge : outline& image.rect()) {
    for (int y = edge.top(); y <= edge.bottom(); ++y) {
      auto* const line = reinterpret_cast<QRgb*>(image.scanLine(y));
      for (int x = edge.left(); x <= edge.right(); ++x) line[x] ^= 0xFFFFFF;
    }
  }
  MarkDrawn(outline);
}

void Surface::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  const QRect part = event->rect();
  if (!drawn_.isNull() && drawn_.size() == size()) {
    painter.drawImage(part, drawn_, part);
    return;
  }
  painter.fillRect(part, background_);
  if (!picture_.isNull()) painter.drawImage(part.topLeft(), picture_, part);
  if (!drawnPart_.isEmpty()) painter.drawImage(part.topLeft(), drawn_, part);
}

void Surface::mousePressEvent(QMouseEvent* event) {
  emit MouseDown(event->button(), PixelAt(event));
}
void Surface::mouseMoveEvent(QMouseEvent* event) {
  emit MouseMove(PixelAt(event), event->buttons());
}
void Surface::mouseReleaseEvent(QMouseEvent* event) {
  emit MouseUp(event->button(), PixelAt(event));
}
