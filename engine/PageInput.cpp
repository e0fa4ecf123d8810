#include "PageInput.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWebEngineView>
#include <utility>

namespace {

// What a key is known by while it is down: its place on the keyboard. Events that Qt makes itself have none, and are
// known by their key, which must not be taken for the place of another one.
quint32 CodeOf(const QKeyEvent& key) {
  constexpr quint32 madeByQt = 0x80000000;
  return key.nativeScanCode() ? key.nativeScanCode() : madeByQt | quint32(key.key());
}

}  // namespace

PageInput::PageInput(QWebEngineView& view) : view_(view) {
  qApp->installEventFilter(this);
}

bool PageInput::IsPages(const QWidget* widget) const {
  return widget && (widget == &view_ || view_.isAncestorOf(widget));
}

void PageInput::PageDied() {
  isDead_ = true;
  if (IsPages(view_.window()->focusWidget())) hadFocus_ = true;  // what has it goes with the renderer
}

// The engine hides its widget when the renderer is gone, before or after it tells so, and whenever another takes its
// place. Qt would hand the keys to the next control in line then; nobody shall have them until the page is back.
void PageInput::WidgetGoes(QWidget* widget) {
  if (!view_.isVisible() || view_.window()->focusWidget() != widget) return;
  hadFocus_ = true;
  widget->clearFocus();
}

void PageInput::TakeBack() {
  if (std::exchange(hadFocus_, false) && !view_.window()->focusWidget()) view_.setFocus();
}

// What makes a browser of the page: going back and forward by the mouse, zooming by wheel or fingers, dropping.
bool PageInput::IsForBrowsers(const QEvent& event) {
  switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick: {
      const Qt::MouseButton button = static_cast<const QMouseEvent&>(event).button();
      return button == Qt::BackButton || button == Qt::ForwardButton;
    }
    case QEvent::Wheel:
      return static_cast<const QWheelEvent&>(event).modifiers().testFlag(Qt::ControlModifier);
    case QEvent::NativeGesture:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
      return true;
    default:
      return false;
  }
}

bool PageInput::eventFilter(QObject* watched, QEvent* event) {
  const auto type = event->type();
  if (watched == view_.focusProxy() && IsForBrowsers(*event)) {
    event->ignore();
    return true;
  }
  // A window that is minimised tells it with events of the system's own and keeps its keys.
  if ((type == QEvent::Hide || type == QEvent::Show) && watched == view_.focusProxy() && !event->spontaneous()) {
    if (type == QEvent::Hide) WidgetGoes(view_.focusProxy());
    if (type == QEvent::Show && !isDead_) TakeBack();
  }
  if (type != QEvent::KeyPress && type != QEvent::KeyRelease && type != QEvent::ShortcutOverride) return false;
  if (!watched->isWidgetType()) return false;
  const auto* key = static_cast<QKeyEvent*>(event);
  const quint32 code = CodeOf(*key);
  const QWidget* const page = view_.focusProxy();
  if (type == QEvent::KeyRelease) {
    if (watched != page || !downElsewhere_.contains(code)) return false;
    if (!key->isAutoRepeat()) downElsewhere_.remove(code);
    return true;
  }
  // What the page doesn't use goes on to the widgets around it. A key that is a shortcut is pressed nowhere.
  const bool isPages = watched == page || static_cast<QWidget*>(watched)->isAncestorOf(page);
  if (isPages && type == QEvent::KeyPress) {
    downElsewhere_.remove(code);
  } else {
    downElsewhere_.insert(code);
  }
  return false;
}
