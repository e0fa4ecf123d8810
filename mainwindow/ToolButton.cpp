#include "ToolButton.h"

#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOption>

namespace {
constexpr int kPicture = 16;  // pixels each way
}  // namespace

ToolButton::ToolButton(QWidget* parent) : QAbstractButton(parent) {
  setMouseTracking(true);
  setFocusPolicy(Qt::TabFocus);  // a click leaves the page its keys
}

void ToolButton::SetLook(Look look) {
  if (std::exchange(look_, look) != look) update();
}

void ToolButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QRect edge = rect().adjusted(0, 0, -1, -1);
  if (look_ != Look::Plain) {
    if (look_ == Look::Raised) painter.fillRect(rect(), palette().color(QPalette::Midlight));
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(edge);
  }
  if (look_ == Look::Raised) {
    painter.setPen(palette().color(QPalette::Light));
    painter.drawPolyline(QPolygon({edge.bottomLeft(), edge.topLeft(), edge.topRight()}));
    painter.setPen(palette().color(QPalette::Dark));
    painter.drawPolyline(QPolygon({edge.bottomLeft(), edge.bottomRight(), edge.topRight()}));
  }
  // The pictures are drawn for this size; another one blurs them.
  QRect place(QPoint(), QSize(kPicture, kPicture));
  place.moveCenter(rect().center());
  if (look_ == Look::Raised) place.translate(1, 1);
  icon().paint(&painter, place, Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
  if (hasFocus()) {
    QStyleOptionFocusRect focus;
    focus.initFrom(this);
    focus.rect = rect();
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
  }
}

void ToolButton::mouseMoveEvent(QMouseEvent* event) {
  emit MouseMoved();
  QAbstractButton::mouseMoveEvent(event);
  event->accept();  // the strip below would put the light out again
}

void ToolButton::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) emit MouseWentDown();
  QAbstractButton::mousePressEvent(event);
}

void ToolButton::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) emit MouseWentUp();
  QAbstractButton::mouseReleaseEvent(event);
}
