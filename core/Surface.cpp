#include "Surface.h"

#include <QImageWriter>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "ReadPicture.h"

namespace {

QPoint PixelAt(const QMouseEvent* event) {
  const QPointF at = event->position();
  return QPoint(int(std::floor(at.x())), int(std::floor(at.y())));
}

// Scaling filters look beyond the part's edge, so the part is cut out first.
void DrawStretched(QImage& image, const QImage& source, const QRect& target, const QRect& part) {
  const QRect there = part & source.rect();
  if (there.isEmpty() || target.isEmpty()) return;
  const double stretchX = double(target.width()) / part.width(), stretchY = double(target.height()) / part.height();
  const QPoint corner = target.topLeft() + QPoint(int(std::lround((there.x() - part.x()) * stretchX)),
                                                  int(std::lround((there.y() - part.y()) * stretchY)));
  const QSize size(std::max(1, int(std::lround(there.width() * stretchX))),
                   std::max(1, int(std::lround(there.height() * stretchY))));
  if (!IsHoldableSize(size)) return;
  QImage piece = source.copy(there);
  if (size != piece.size()) piece = piece.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  QPainter(&image).drawImage(corner, piece);
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

void Surface::SetPicture(const QImage& picture) {
  picture_ = IsHoldableSize(picture.size()) ? picture : QImage();
  picture_.setDevicePixelRatio(1);
  if (!picture_.isNull())
    picture_.convertTo(picture_.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
  SetAutoSize(autoSize_);
  ForgetDrawings();
}

bool Surface::LoadPicture(const QString& path) {
  const QImage picture = ReadPicture(path);
  if (picture.isNull()) return false;
  SetPicture(picture);
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
  return !image.isNull() && QImageWriter(path, "bmp").write(image);
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

void Surface::PaintPicture(const QImage& source, const QRect& target, const QRect& part) {
  Draw(target, [&](QImage& image) { DrawStretched(image, source, target, part); });
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
  if (!picture_.isNull()) painter.drawImage(0, 0, picture_);
  if (!drawnPart_.isEmpty()) painter.drawImage(0, 0, drawn_);
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
