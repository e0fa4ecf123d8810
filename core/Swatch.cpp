#include "Swatch.h"

#include <QPainter>

#include "Colors.h"

void Swatch::SetColor(qint32 color) {
  color_ = color;
  update();
}

namespace {

// Half way between the window's ground and its letters, which no ground hides and no colour of the swatch for long.
QColor EdgeOn(const QPalette& palette) {
  const QColor ground = palette.color(QPalette::Window);
  const QColor ink = palette.color(QPalette::WindowText);
  return {(ground.red() + ink.red()) / 2, (ground.green() + ink.green()) / 2, (ground.blue() + ink.blue()) / 2};
}

}  // namespace

// Two filled boxes: a drawn outline is a pixel off on screens with more pixels to the unit.
void Swatch::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), hasFocus() ? palette().color(QPalette::Highlight) : EdgeOn(palette()));
  painter.fillRect(rect().adjusted(1, 1, -1, -1), QColor(ColorToHtml(color_)));
}
