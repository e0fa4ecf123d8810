#include "FittedText.h"

#include <QFontMetrics>
#include <QPainter>

QFont FontForHeight(const QWidget* widget, int height, int padding) {
  QFont font = widget->font();
  int pixels = QFontInfo(font).pixelSize();
  while (pixels > 8 && QFontMetrics(font).height() > height - 2 * padding) font.setPixelSize(--pixels);
  return font;
}

void FittedLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  QFont font = FontForHeight(this, height());
  // A little smaller rather than cut.
  for (int pixels = QFontInfo(font).pixelSize();
       pixels > 9 && QFontMetrics(font).horizontalAdvance(text()) > width() - 2;)
    font.setPixelSize(--pixels);
  // And a little narrower.
  for (int stretch = QFont::Unstretched; stretch > 80 && QFontMetrics(font).horizontalAdvance(text()) > width() - 2;)
    font.setStretch(stretch -= 5);
  painter.setFont(font);
  painter.setPen(palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, foregroundRole()));
  const QString shown = painter.fontMetrics().elidedText(text(), Qt::ElideRight, width());
  setToolTip(shown == text() ? QString() : text());
  painter.drawText(rect(), int(alignment()) | Qt::TextSingleLine, shown);
}
