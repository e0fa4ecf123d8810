#include "WorkWindow.h"

#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include "FittedText.h"
#include "Twips.h"

WorkWindow::WorkWindow(QWidget* parent) : QFrame(parent) {
  setObjectName(QStringLiteral("FrWork"));
  setAccessibleName(QStringLiteral("Work Window"));
  setAutoFillBackground(true);
  resize(TwipsToPixels(kWidth), TwipsToPixels(kHeight));
  LabHover = new FittedLabel(this);
  LabHover->setObjectName(QStringLiteral("LabHover"));
  LabHover->setAccessibleName(QStringLiteral("Under the mouse"));
  LabHover->setFrameShape(QFrame::NoFrame);
  LabHover->setGeometry(10, height() - 26, width() - 20, 18);
  LabHover->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}

QRect WorkWindow::Head() const {
  return {0, 0, width(), TwipsToPixels(kHeadHeight)};
}

void WorkWindow::SetUpCaption(const QString& caption) {
  upCaption_ = caption;
  update();
}

void WorkWindow::paintEvent(QPaintEvent* event) {
  QFrame::paintEvent(event);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRect head = Head();
  painter.fillRect(head, palette().color(QPalette::Highlight));
  painter.setPen(palette().color(QPalette::HighlightedText));
  painter.setFont(FontForHeight(this, head.height(), 1));
  painter.drawText(head, Qt::AlignLeft | Qt::AlignVCenter, QStringLiteral("    Work Window"));
  // The triangle points to where a click sends the window.
  const QPointF middle(head.right() - 12, head.center().y() + 0.5);
  const double half = 4.5;
  const double tip = upCaption_ == u"6" ? 2.5 : -2.5;
  QPainterPath triangle;
  triangle.moveTo(middle + QPointF(-half, -tip));
  triangle.lineTo(middle + QPointF(half, -tip));
  triangle.lineTo(middle + QPointF(0, tip));
  triangle.closeSubpath();
  painter.fillPath(triangle, palette().color(QPalette::HighlightedText));
}

void WorkWindow::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && Head().contains(event->pos())) emit HeadClicked();
}
