#include "Swatch.h"

#include <QPainter>

#include "Colors.h"

void Swatch::SetColor(qint32 color) {
  color_ = color;
  update();
}

void Swatch::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), QColor(ColorToHtml(color_)));
  painter.setPen(palette().color(hasFocus() ? QPalette::Highlight : QPalette::Mid));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}
