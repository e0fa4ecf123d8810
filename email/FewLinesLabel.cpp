#include "FewLinesLabel.h"

#include <QFontMetrics>
#include <QPainter>
#include <QTextLayout>
#include <algorithm>

FewLinesLabel::FewLinesLabel(const QString& text, int mostLines, QWidget* parent)
    : QLabel(text, parent), mostLines_(mostLines) {
  setTextFormat(Qt::PlainText);
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Minimum);
}

void FewLinesLabel::BoundLines(int lines) {
  mostLines_ = std::min(mostLines_, lines);
  updateGeometry();
}

// The lines as they are drawn; the last one has whatever the others left.
QStringList FewLinesLabel::Lines(int width) const {
  QTextLayout layout(text(), font());
  layout.beginLayout();
  QStringList lines;
  for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
    line.setLineWidth(width);
    if (lines.size() == mostLines_ - 1) {
      lines += text().mid(line.textStart());
      break;
    }
    lines += text().mid(line.textStart(), line.textLength()).trimmed();
  }
  layout.endLayout();
  return lines;
}

bool FewLinesLabel::ShowsAll() const {
  const QStringList lines = Lines(width());
  return lines.isEmpty() || fontMetrics().horizontalAdvance(lines.last()) <= width();
}

int FewLinesLabel::heightForWidth(int width) const {
  return int(std::max<qsizetype>(1, Lines(width).size())) * fontMetrics().lineSpacing();
}

QSize FewLinesLabel::sizeHint() const {
  return QSize(0, fontMetrics().lineSpacing());
}

QSize FewLinesLabel::minimumSizeHint() const {
  return sizeHint();
}

void FewLinesLabel::resizeEvent(QResizeEvent* event) {
  QLabel::resizeEvent(event);
  setToolTip(ShowsAll() ? QString() : text());
}

void FewLinesLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setPen(palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, foregroundRole()));
  const QStringList lines = Lines(width());
  const int spacing = fontMetrics().lineSpacing();
  int y = alignment() & Qt::AlignBottom ? height() - int(lines.size()) * spacing : 0;
  for (const QString& line : lines) {
    const QString shown = fontMetrics().elidedText(line, Qt::ElideRight, width());
    painter.drawText(QRect(0, y, width(), spacing), Qt::AlignLeft | Qt::TextSingleLine, shown);
    y += spacing;
  }
}
