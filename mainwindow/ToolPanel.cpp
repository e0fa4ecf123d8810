#include "ToolPanel.h"

#include <QFontInfo>
#include <QGroupBox>
#include <QVBoxLayout>

namespace {

constexpr int kSmallestFont = 7;  // pixels

}  // namespace

ToolPanel::ToolPanel(int index, const QString& caption, QWidget* parent)
    : QFrame(parent), group_(new QGroupBox(caption)), column_(new QVBoxLayout(group_)) {
  setObjectName(QStringLiteral("FrTool%1").arg(index));
  auto* around = new QVBoxLayout(this);
  around->setContentsMargins(6, 4, 6, 6);
  around->addWidget(group_);
  column_->setContentsMargins(7, 4, 7, 6);
  column_->setSpacing(6);
}

QString ToolPanel::Caption() const {
  return group_->title();
}
void ToolPanel::SetCaption(const QString& caption) {
  group_->setTitle(caption);
}

bool ToolPanel::FitsInto(QSize room) const {
  // A new font gets through to the layouts only when events are handled; the answer is wanted now.
  for (QWidget* widget : findChildren<QWidget*>()) {
    widget->ensurePolished();
    widget->updateGeometry();
  }
  for (QLayout* inner : findChildren<QLayout*>()) inner->invalidate();
  const QLayout* const all = layout();
  const int height = all->hasHeightForWidth() ? all->minimumHeightForWidth(room.width()) : all->minimumSize().height();
  return all->minimumSize().width() <= room.width() && height <= room.height();
}

void ToolPanel::FillRoom(QSize room) {
  setFont(QFont());
  QFont smaller;
  for (int pixels = QFontInfo(font()).pixelSize() - 1; !FitsInto(room) && pixels >= kSmallestFont; --pixels) {
    smaller.setPixelSize(pixels);
    setFont(smaller);
  }
  setGeometry(QRect(QPoint(0, 0), room));
}
