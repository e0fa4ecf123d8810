#include "HotLink.h"

#include <QEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFocusRect>

HotLink::HotLink(const QString& name, const QIcon& picture, int side) {
  setObjectName(name);
  setIcon(picture);
  setIconSize({side, side});
  setMouseTracking(true);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

HotLink::HotLink(const QString& name, const QString& text, double size) : size_(size) {
  setObjectName(name);
  setText(text);
  setMouseTracking(true);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QFont HotLink::Letters() const {
  QFont letters = font();
  letters.setBold(true);
  letters.setPointSizeF(letters.pointSizeF() * size_);
  return letters;
}

QSize HotLink::sizeHint() const {
  const QSize inside = size_ > 0 ? QFontMetrics(Letters()).size(Qt::TextSingleLine, text()) : iconSize();
  return inside + QSize(2 * kRoom, 2 * kRoom);
}

void HotLink::changeEvent(QEvent* event) {
  if (event->type() == QEvent::FontChange) updateGeometry();
  QAbstractButton::changeEvent(event);
}

void HotLink::mouseMoveEvent(QMouseEvent* event) {
  emit MouseMoved();
  QAbstractButton::mouseMoveEvent(event);
}

void HotLink::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QRect inside = rect().adjusted(kRoom, kRoom, -kRoom, -kRoom);
  if (size_ > 0) {
    painter.setFont(Letters());
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(inside, int(Qt::AlignCenter) | Qt::TextSingleLine, text());
  } else {
    icon().paint(&painter, inside);
  }
  if (!hasFocus()) return;
  QStyleOptionFocusRect option;
  option.initFrom(this);
  style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
}
