#include "ToolButton.h"

#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOption>

ToolButton::ToolButton(QWidget* parent) : QAbstractButton(parent) {
  setMouseTracking(true);
  setFocusPolicy(Qt::TabFocus);  // a click leaves the page its keys
}

void ToolButton::SetLook(Look look) {
  if (std::exchange(look_, look) != look) update();
}

void ToolButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  if (look_ != Look::Plain || hasFocus()) {
    QColor edge = palette().color(QPalette::Mid);
    if (look_ == Look::Raised) painter.fillRect(rect(), palette().color(QPalette::Midlight));
    painter.setPen(edge);
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
    if (look_ == Look::Raised) {
      painter.setPen(palette().color(QPalette::Light));
      painter.drawLine(1, 1, width() - 2, 1);
      painter.drawLine(1, 1, 1, height() - 2);
    }
  }
  icon().paint(&painter, rect(), Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
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
