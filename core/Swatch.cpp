#include "Swatch.h"

#include <QPainter>

#include "Colors.h"

void Swatch::SetColor(qint32 color) {
  color_ = color;
  update();
}

// Two filled boxes: a drawn outline is a pixel off on screens with more pixels to the unit.
void Swatch::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().color(hasFocus() ? QPalette::Highlight : QPalette::Mid));
  painter.fillRect(rect().adjusted(1, 1, -1, -1), QColor(ColorToHtml(color_)));
}
