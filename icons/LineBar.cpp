#include "LineBar.h"

#include <QPainter>

LineBar::LineBar(int thickness, QWidget* parent) : QAbstractButton(parent), thickness_(thickness) {
  setFocusPolicy(Qt::NoFocus);  // the option beside it has the keys
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
}

QSize LineBar::sizeHint() const {
  constexpr int width = 60, height = 16;
  return {width, height};
}

// Black on a light desktop; on a dark one black would not be seen.
void LineBar::paintEvent(QPaintEvent*) {
  QPainter(this).fillRect(0, (height() - thickness_) / 2, width(), thickness_, palette().color(QPalette::WindowText));
}
