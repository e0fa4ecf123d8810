#include "ViewerScroll.h"

#include <QScrollBar>
#include <QSignalBlocker>
#include <QWheelEvent>
#include <algorithm>

namespace {

constexpr int kLine = 24;          // pixels of a step
constexpr int kFastest = 48;       // pixels at a time of a drag beyond the edge
constexpr int kMilliseconds = 30;  // between two of these

QScrollBar* NewBar(const char* name, Qt::Orientation orientation, QWidget& window) {
  auto* const bar = new QScrollBar(orientation, &window);
  bar->setObjectName(QLatin1String(name));
  bar->setAccessibleName(orientation == Qt::Horizontal ? QStringLiteral("Scroll the picture sideways")
                                                       : QStringLiteral("Scroll the picture up and down"));
  bar->setCursor(Qt::ArrowCursor);
  bar->setSingleStep(kLine);
  bar->hide();
  return bar;
}

void SetRange(QScrollBar& bar, int picture, int view) {
  bar.setRange(0, std::max(picture - view, 0));
  bar.setPageStep(view);
}

}  // namespace

ViewerScroll::ViewerScroll(QWidget& picture)
    : QObject(&picture),
      picture_(picture),
      window_(*picture.parentWidget()),
      across_(NewBar("ScrollAcross", Qt::Horizontal, window_)),
      down_(NewBar("ScrollDown", Qt::Vertical, window_)),
      corner_(new QWidget(&window_)) {
  corner_->setAutoFillBackground(true);
  corner_->hide();
  for (QScrollBar* bar : {across_, down_})
    connect(bar, &QScrollBar::valueChanged, this, [this] { picture_.move(-across_->value(), -down_->value()); });
  goOn_.setInterval(kMilliseconds);
  connect(&goOn_, &QTimer::timeout, this, &ViewerScroll::GoOn);
  picture_.installEventFilter(this);
  window_.installEventFilter(this);
}

bool ViewerScroll::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::Resize:
      Fit();
      break;
    case QEvent::Move:
      if (watched == &picture_) Fit();
      break;
    case QEvent::Wheel:
      Turn(*static_cast<QWheelEvent*>(event));
      return true;
    default:
      break;
  }
  return false;
}

void ViewerScroll::Fit() {
  const bool isCut = picture_.width() > window_.width() || picture_.height() > window_.height();
  const int across = isCut ? across_->sizeHint().height() : 0, down = isCut ? down_->sizeHint().width() : 0;
  const QSize view = window_.size() - QSize(down, across);
  const QPoint corner(view.width(), view.height());
  const QSignalBlocker quietAcross(across_), quietDown(down_);
  SetRange(*across_, picture_.width(), view.width());
  SetRange(*down_, picture_.height(), view.height());
  across_->setValue(-picture_.x());
  down_->setValue(-picture_.y());
  across_->setGeometry(0, corner.y(), view.width(), across);
  down_->setGeometry(corner.x(), 0, down, view.height());
  corner_->setGeometry(QRect(corner, QSize(down, across)));
  for (QWidget* bar : {static_cast<QWidget*>(across_), static_cast<QWidget*>(down_), corner_}) {
    bar->setVisible(isCut);
    bar->raise();
  }
  // A view that has grown shows more at the end, where the bars now stop earlier.
  picture_.move(-across_->value(), -down_->value());
}

// A wheel has steps of 120; with Shift, or tilted, it goes sideways.
void ViewerScroll::Turn(const QWheelEvent& event) {
  constexpr int linesOfAStep = 3, step = 120;
  const QPoint turned =
      event.pixelDelta().isNull() ? event.angleDelta() * linesOfAStep * kLine / step : event.pixelDelta();
  const bool sideways = event.modifiers().testFlag(Qt::ShiftModifier) && turned.x() == 0;
  across_->setValue(across_->value() - (sideways ? turned.y() : turned.x()));
  down_->setValue(down_->value() - (sideways ? 0 : turned.y()));
}

QRect ViewerScroll::View() const {
  return QRect(QPoint(across_->value(), down_->value()), QSize(across_->pageStep(), down_->pageStep()));
}

void ViewerScroll::Follow(QPoint at) {
  pointer_ = at;
  if (View().contains(at)) {
    goOn_.stop();
  } else if (!goOn_.isActive()) {
    goOn_.start();
  }
}

void ViewerScroll::GoOn() {
  const QRect view = View();
  const auto beyond = [](int at, int first, int last) {
    return std::clamp(at < first ? at - first : std::max(at - last, 0), -kFastest, kFastest);
  };
  const QPoint before(across_->value(), down_->value());
  across_->setValue(before.x() + beyond(pointer_.x(), view.left(), view.right()));
  down_->setValue(before.y() + beyond(pointer_.y(), view.top(), view.bottom()));
  const QPoint moved = QPoint(across_->value(), down_->value()) - before;
  if (moved.isNull()) {
    goOn_.stop();
    return;
  }
  pointer_ += moved;
  emit Dragged(pointer_);
}
