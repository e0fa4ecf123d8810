#include "CaretBar.h"

namespace {

// The part of a widget that lies within a sibling. A widget whose mask is empty would show whole.
void ClipTo(const QRect& sibling, QWidget& widget) {
  const QRect part = sibling.intersected(widget.geometry());
  if (part == widget.geometry()) return widget.clearMask();
  const QRect nothing(-1, -1, 1, 1);
  widget.setMask(part.isEmpty() ? nothing : part.translated(-widget.pos()));
}

}  // namespace

CaretBar::CaretBar(QWidget& page, QWidget* parent) : QFrame(parent), page_(page), edge_(new QWidget(parent)) {
  setStyleSheet(QStringLiteral("background: #0000ff"));
  edge_->setStyleSheet(QStringLiteral("background: #ffffff"));
  for (QWidget* const part : {static_cast<QWidget*>(this), edge_}) part->setAttribute(Qt::WA_TransparentForMouseEvents);
}

void CaretBar::StackUnder(QWidget* sibling) {
  stackUnder(sibling);
  edge_->stackUnder(sibling);
  Follow();
}

void CaretBar::setVisible(bool visible) {
  QFrame::setVisible(visible);
  edge_->setVisible(visible);
  if (visible) Follow();
}

void CaretBar::moveEvent(QMoveEvent*) {
  Follow();
}
void CaretBar::resizeEvent(QResizeEvent*) {
  Follow();
}

void CaretBar::Follow() {
  edge_->setGeometry(x() + width(), y(), 1, height());
  ClipTo(page_.geometry(), *this);
  ClipTo(page_.geometry(), *edge_);
}
