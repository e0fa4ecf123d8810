#include "PageInput.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTouchEvent>
#include <QWebEngineView>
#include <algorithm>
#include <utility>

#include "HostKeyboard.h"
#include "KeyCodes.h"

namespace {

// Between two looks at the keyboard.
constexpr int kReleasesMs = 300;

// What a key is known by while it is down: its place on the keyboard. Events that Qt makes itself have none, and are
// known by their key, which must not be taken for the place of another one.
quint32 CodeOf(const QKeyEvent& key) {
  constexpr quint32 madeByQt = 0x80000000;
  return key.nativeScanCode() ? key.nativeScanCode() : madeByQt | quint32(key.key());
}

}  // namespace

PageInput::PageInput(QWebEngineView& view, Answer answer) : view_(view), answer_(std::move(answer)) {
  qApp->installEventFilter(this);
  connect(qApp, &QGuiApplication::applicationStateChanged, this, &PageInput::ProgramChanged);
  releases_.setInterval(kReleasesMs);
  connect(&releases_, &QTimer::timeout, this, &PageInput::LookForReleases);
}

// What happens to the keys while another program has them isn't told. One that is down when the user comes back went
// down there, although its repeats look as if it did here.
void PageInput::ProgramChanged(Qt::ApplicationState state) {
  down_.clear();
  if (state != Qt::ApplicationActive) return;
  for (const quint32 place : HostKeyboard::KeysDown()) NoteForeign(place);
}

void PageInput::NoteForeign(quint32 code) {
  down_.insert(code, false);
  up_.remove(code);
  if (!releases_.isActive()) releases_.start();
}

// A window that closes at the press of a key may take the release with it, and the next press of that key, in the page,
// would pass for a repeat. Two looks, since the release of a key that is up may still be on its way.
void PageInput::LookForReleases() {
  const QList<quint32> places = HostKeyboard::KeysDown();
  QSet<quint32> up;
  for (auto key = down_.begin(); key != down_.end();) {
    const bool isUp = !key.value() && !places.contains(key.key());
    if (isUp && up_.contains(key.key())) {
      key = down_.erase(key);
      continue;
    }
    if (isUp) up += key.key();
    ++key;
  }
  up_ = up;
  if (std::none_of(down_.cbegin(), down_.cend(), [](bool inPage) { return !inPage; })) releases_.stop();
}

bool PageInput::IsPages(const QWidget* widget) const {
  return widget && (widget == &view_ || view_.isAncestorOf(widget));
}

// While the page has lost its widget its keys go to the window as such.
bool PageInput::GetsKeysFor(const QWidget* widget) const {
  return widget == view_.focusProxy() || (isKeeping_ && (IsPages(widget) || (hadFocus_ && widget == view_.window())));
}

void PageInput::PageDied() {
  isDead_ = true;
  if (IsPages(view_.window()->focusWidget())) hadFocus_ = true;  // what has it goes with the renderer
  isKeeping_ = true;
  std::vector<std::unique_ptr<QEvent>> unheard = inFlight_.TakeUnanswered();
  kept_.insert(kept_.begin(), std::make_move_iterator(unheard.begin()), std::make_move_iterator(unheard.end()));
}

void PageInput::GoOn() {
  isKeeping_ = false;
  isReplaying_ = true;
  for (const std::unique_ptr<QEvent>& event : std::exchange(kept_, {}))
    if (QWidget* const page = view_.focusProxy()) QCoreApplication::sendEvent(page, event.get());
  isReplaying_ = false;
}

void PageInput::Forget() {
  isKeeping_ = false;
  isButtonDown_ = false;
  kept_.clear();
  inFlight_ = {};
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

// What makes a browser of the page: going back and forward by the mouse, zooming by the wheel, dropping.
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
  // What is dropped is for whoever shows the page. The engine's widget, which is another one now and then, would take
  // it.
  if (type == QEvent::Show && watched == view_.focusProxy()) view_.focusProxy()->setAcceptDrops(false);
  // A window that is minimised tells it with events of the system's own and keeps its keys.
  if ((type == QEvent::Hide || type == QEvent::Show) && watched == view_.focusProxy() && !event->spontaneous()) {
    if (type == QEvent::Hide) WidgetGoes(view_.focusProxy());
    if (type == QEvent::Show && !isDead_) TakeBack();
  }
  if (!watched->isWidgetType()) return false;
  auto* const widget = static_cast<QWidget*>(watched);
  switch (type) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
      return FilterKey(widget, static_cast<const QKeyEvent&>(*event));
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
      return FilterMouse(widget, static_cast<const QMouseEvent&>(*event));
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
      return FilterTouch(widget, static_cast<QTouchEvent&>(*event));
    default:
      return false;
  }
}

// --- Keys

// A press of one that is down already is a repeat, wherever it arrives.
void PageInput::NotePress(const QKeyEvent& key, bool inPage) {
  const quint32 code = CodeOf(key);
  if (down_.contains(code)) return;
  if (inPage && !key.isAutoRepeat()) {
    down_.insert(code, true);
  } else {
    NoteForeign(code);
  }
}

// Whether the release is a real one, of a key that went down in the page.
bool PageInput::ComesFromPage(const QKeyEvent& key) {
  return !key.isAutoRepeat() && down_.take(CodeOf(key));
}

bool PageInput::FilterKey(QWidget* watched, const QKeyEvent& key) {
  const bool isPress = key.type() == QEvent::KeyPress;
  if (!GetsKeysFor(watched)) {
    // What the page doesn't use goes on to the widgets around it, which also get what nobody has the focus for.
    const bool isAroundPage = view_.focusProxy() && watched->isAncestorOf(view_.focusProxy());
    if (isPress) {
      if (!isAroundPage) NotePress(key, false);
    } else if (!key.isAutoRepeat() && !(isAroundPage && down_.value(CodeOf(key)))) {
      down_.remove(CodeOf(key));
    }
    return false;
  }
  if (!isReplaying_) {
    if (isPress) NotePress(key, true);
    if (!isPress && !ComesFromPage(key)) return true;
  }
  return isPress ? isKeeping_ : Release(key);  // a press alone changes nothing in the model
}

bool PageInput::Release(const QKeyEvent& key) {
  const int keyCode = KeyCodeOf(key.key(), key.modifiers().testFlag(Qt::KeypadModifier));
  const bool isFree = keyCode != 0 && !isButtonDown_ && kept_.empty() && !inFlight_.IsWaiting();
  const bool isAnswered = isFree && answer_(keyCode, key.modifiers().testFlag(Qt::ShiftModifier));
  std::unique_ptr<QEvent> event(key.clone());
  if (!isKeeping_) {
    inFlight_.Add({InputInFlight::Kind::Key, keyCode, isAnswered, std::move(event)});
  } else if (!isAnswered) {
    kept_.push_back(std::move(event));
  }
  return isKeeping_;
}

// --- The mouse

bool PageInput::FilterMouse(QWidget* watched, const QMouseEvent& mouse) {
  const bool isRelease = mouse.type() == QEvent::MouseButtonRelease;
  if (isKeeping_) {
    if (!IsPages(watched)) return false;
    const QPointF place(watched->mapTo(&view_, mouse.position().toPoint()));
    kept_.push_back(std::make_unique<QMouseEvent>(mouse.type(), place, mouse.globalPosition(), mouse.button(),
                                                  mouse.buttons(), mouse.modifiers()));
    return true;
  }
  if (watched != view_.focusProxy()) return false;
  if (mouse.button() == Qt::LeftButton) isButtonDown_ = !isRelease;
  const auto kind = isRelease ? InputInFlight::Kind::Release : InputInFlight::Kind::Press;
  inFlight_.Add({kind, 0, false, std::unique_ptr<QEvent>(mouse.clone())});
  return false;
}

// --- Fingers

// The engine would zoom by two fingers: it hears of the first one only.
bool PageInput::FilterTouch(QWidget* watched, QTouchEvent& touch) {
  if (watched != view_.focusProxy()) return false;
  const QList<QEventPoint>& fingers = touch.points();
  if (touch.type() == QEvent::TouchBegin) finger_ = fingers.first().id();
  if (fingers.size() == 1 && fingers.first().id() == finger_) return false;
  touch.accept();
  const auto first =
      std::find_if(fingers.cbegin(), fingers.cend(), [&](const QEventPoint& finger) { return finger.id() == finger_; });
  if (first == fingers.cend()) return true;
  const bool isUp = first->state() == QEventPoint::Released;
  QTouchEvent alone(isUp ? QEvent::TouchEnd : touch.type(), touch.pointingDevice(), touch.modifiers(), {*first});
  QCoreApplication::sendEvent(watched, &alone);
  if (isUp) finger_.reset();
  return true;
}
