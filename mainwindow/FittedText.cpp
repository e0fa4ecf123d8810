#include "FittedText.h"

#include <QAbstractItemView>
#include <QFontMetrics>
#include <QPainter>
#include <QScrollBar>
#include <QStyleOptionComboBox>
#include <QStylePainter>

#include "PlainTip.h"

QFont FontForHeight(const QWidget* widget, int height, int padding) {
  QFont font = widget->font();
  int pixels = QFontInfo(font).pixelSize();
  while (pixels > 8 && QFontMetrics(font).height() > height - 2 * padding) font.setPixelSize(--pixels);
  return font;
}

void FittedList::showPopup() {
  const int edges = 2 * view()->frameWidth() + view()->verticalScrollBar()->sizeHint().width();
  view()->setMinimumWidth(view()->sizeHintForColumn(0) + edges);
  QComboBox::showPopup();
}

QString FittedList::ShownText() const {
  QStyleOptionComboBox option;
  initStyleOption(&option);
  const QRect room = style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
  constexpr int margins = 4;  // that styles leave beside the text
  return fontMetrics().elidedText(option.currentText, Qt::ElideRight, room.width() - margins);
}

void FittedList::paintEvent(QPaintEvent*) {
  QStylePainter painter(this);
  QStyleOptionComboBox option;
  initStyleOption(&option);
  painter.drawComplexControl(QStyle::CC_ComboBox, option);
  option.currentText = ShownText();
  painter.drawControl(QStyle::CE_ComboBoxLabel, option);
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
  setToolTip(shown == text() ? QString() : PlainTip(text()));
  painter.drawText(rect(), int(alignment()) | Qt::TextSingleLine, shown);
}
