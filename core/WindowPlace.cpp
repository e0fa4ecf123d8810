#include "WindowPlace.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <QWindow>
#include <algorithm>

namespace {

qint64 Overlap(const QRect& one, const QRect& other) {
  const QRect both = one & other;
  return both.isEmpty() ? 0 : qint64(both.width()) * both.height();
}

qint64 Distance(const QPoint& point, const QRect& area) {
  const QPoint inside(std::clamp(point.x(), area.left(), area.right()),
                      std::clamp(point.y(), area.top(), area.bottom()));
  return (point - inside).manhattanLength();
}

// The area that holds most of the rectangle, or the nearest one to it.
QRect AreaOf(const QRect& rect, const QList<QRect>& areas) {
  return *std::max_element(areas.begin(), areas.end(), [&](const QRect& one, const QRect& other) {
    const qint64 ofOne = Overlap(rect, one);
    const qint64 ofOther = Overlap(rect, other);
    if (ofOne != ofOther) return ofOne < ofOther;
    return Distance(rect.center(), one) > Distance(rect.center(), other);
  });
}

// Places a window at the moment at which it is about to come into view, and remembers where it stands while it is.
class Opening : public QObject {
 public:
  Opening(QWidget& window, const QWidget& main) : QObject(&window), window_(window), main_(main) {
    window.installEventFilter(this);
  }

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    switch (event->type()) {
      case QEvent::Show:
        if (!event->spontaneous()) Place();
        break;
      case QEvent::Move:
      case QEvent::WindowActivate:
      case QEvent::WindowDeactivate:
        Remember();
        break;
      default:
        break;
    }
    return false;
  }

 private:
  // A window that fills its screen has no place of its own.
  bool HasPlace() const { return !window_.isMaximized() && !window_.isFullScreen(); }

  void Place() {
    if (!HasPlace()) return;
    // A window that was never shown is taken to get edges like those of the one below.
    const QMargins edges = edges_.value_or(EdgesOf(main_).value_or(QMargins()));
    const QRect now(corner_.value_or(QPoint()), window_.size().grownBy(edges));
    const QList<QRect> areas = FreeAreas();
    const bool isInView =
        std::any_of(areas.begin(), areas.end(), [&](const QRect& one) { return one.intersects(now); });
    const QRect middle = CenterOver(now.size(), WithEdges(main_), areas);
    MoveWithEdges(window_, corner_ && isInView ? now.topLeft() : middle.topLeft(), edges_);
  }

  void Remember() {
    if (!window_.isVisible() || !HasPlace()) return;
    if (const auto edges = EdgesOf(window_)) edges_ = edges;
    corner_ = WithEdges(window_).topLeft();
  }

  QWidget& window_;
  const QWidget& main_;
  std::optional<QMargins> edges_;
  std::optional<QPoint> corner_;
};

// Ties a window to the main one when it is about to come into view; before that the desktop knows neither.
class Tie : public QObject {
 public:
  Tie(QWidget& window, QWidget& main) : QObject(&window), main_(main) { window.installEventFilter(this); }

 protected:
  bool eventFilter(QObject* window, QEvent* event) override {
    if (event->type() != QEvent::Show || event->spontaneous()) return false;
    main_.winId();
    static_cast<QWidget*>(window)->windowHandle()->setTransientParent(main_.windowHandle());
    return false;
  }

 private:
  QWidget& main_;
};

}  // namespace

QRect KeepWithin(QRect frame, const QList<QRect>& areas) {
  if (areas.isEmpty()) return frame;
  const QRect area = AreaOf(frame, areas);
  frame.moveLeft(std::max(area.left(), std::min(frame.left(), area.right() + 1 - frame.width())));
  frame.moveTop(std::max(area.top(), std::min(frame.top(), area.bottom() + 1 - frame.height())));
  return frame;
}

QRect CenterOver(QSize frame, const QRect& over, const QList<QRect>& areas) {
  QRect centered(QPoint(), frame);
  centered.moveTopLeft(over.topLeft() +
                       QPoint((over.width() - frame.width()) / 2, (over.height() - frame.height()) / 2));
  if (areas.isEmpty()) return centered;
  // That of the window below: one that is half out of view has its middle on another screen.
  return KeepWithin(centered, {AreaOf(over, areas)});
}

QList<QRect> FreeAreas() {
  QList<QRect> areas;
  for (const QScreen* const screen : QGuiApplication::screens()) areas.append(screen->availableGeometry());
  return areas;
}

std::optional<QMargins> EdgesOf(const QWidget& window) {
  const QWindow* const handle = window.isVisible() ? window.windowHandle() : nullptr;
  if (!handle || handle->frameMargins().isNull()) return std::nullopt;
  return handle->frameMargins();
}

QRect WithEdges(const QWidget& window) {
  return window.geometry().marginsAdded(EdgesOf(window).value_or(QMargins()));
}

void MoveWithEdges(QWidget& window, QPoint corner, const std::optional<QMargins>& edges) {
  // A window that was made for one screen doesn't come to another one by its place alone with Qt 6.8.
  QScreen* const screen = QGuiApplication::screenAt(corner);
  if (screen && screen != window.screen()) window.setScreen(screen);
  if (edges) return window.setGeometry(QRect(corner + QPoint(edges->left(), edges->top()), window.size()));
  window.move(corner);
  // Else the desktop takes it for the corner of what is inside of edges that it makes only now.
  if (!window.isVisible() && window.windowHandle()) window.windowHandle()->setFramePosition(corner);
}

void OpenOver(QWidget& window, const QWidget& main) {
  new Opening(window, main);  // the window's child
}

void KeepInFrontOf(QWidget& window, QWidget& main) {
  window.setWindowFlags((window.windowFlags() & ~Qt::WindowType_Mask) | Qt::Dialog);
  new Tie(window, main);  // the window's child
}
