// Keys typed into a page in view, each timed from its release until the page view raises KeyPress.
#pragma once

#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QMouseEvent>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "HostedWebBrowser.h"
#include "WBUC.h"
#include "Waiting.h"

inline void Click(QWidget* widget, QPointF at) {
  const QPointF global = widget->mapToGlobal(at);
  QMouseEvent press(QEvent::MouseButtonPress, at, global, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
  QMouseEvent release(QEvent::MouseButtonRelease, at, global, Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
  // Without their time two clicks near each other are a double click, whenever they come.
  static QElapsedTimer clock;
  if (!clock.isValid()) clock.start();
  press.setTimestamp(quint64(clock.elapsed()) + 1000);
  release.setTimestamp(quint64(clock.elapsed()) + 1000);
  QApplication::sendEvent(widget, &press);
  QApplication::sendEvent(widget, &release);
}

// A letter, or Backspace.
enum class TypedKey { Letter, Backspace };

inline void SendKey(QWidget* widget, QEvent::Type type, TypedKey key = TypedKey::Letter) {
  const bool isLetter = key == TypedKey::Letter;
  QKeyEvent event(type, isLetter ? Qt::Key_E : Qt::Key_Backspace, Qt::NoModifier, isLetter ? 26 : 22,
                  isLetter ? 0x65 : 0xff08, 0, isLetter ? QStringLiteral("e") : QStringLiteral("\b"));
  QApplication::sendEvent(widget, &event);
}

class TypedKeys {
 public:
  // Clicks into the text in the middle of the page, which has `settleMs` to be scrolled there; the program ends where
  // the page takes no click. What a click has done is seen only when all of it has been told: on a busy machine that
  // takes a while, and one more click would come between the keys and take their insertion point.
  explicit TypedKeys(WBUC& view, int settleMs = 500) : view_(view) {
    auto& browser = static_cast<HostedWebBrowser&>(view_.Browser());
    browser.RunPageScript(QStringLiteral("scrollTo(0, document.body.scrollHeight / 2)"));
    Pause(settleMs);
    keys_ = browser.Widget()->focusProxy();
    keys_->setFocus();
    for (int y = 350; !view_.HasCurrentTextRange() && y < 600; y += 37) {
      Click(keys_, {200, double(y)});
      QElapsedTimer waited;
      waited.start();
      do Pause(10);
      while (!browser.IsQuiet() && waited.elapsed() < 10000);
    }
    if (view_.HasCurrentTextRange()) return;
    std::fprintf(stderr, "our page takes no click\n");
    std::exit(1);
  }

  // `pauseMs` pass between the key's press and its release.
  double Key(TypedKey key = TypedKey::Letter, int pauseMs = 15) {
    double ms = 0;
    Wait raised;
    const auto connection = QObject::connect(&view_, &WBUC::KeyPress, &view_, [&] {
      ms = double(clock_.nsecsElapsed()) / 1e6;
      raised.Done();
    });
    SendKey(keys_, QEvent::KeyPress, key);
    if (pauseMs > 0) Pause(pauseMs);
    clock_.start();
    SendKey(keys_, QEvent::KeyRelease, key);
    worked_ = double(clock_.nsecsElapsed()) / 1e6;
    raised.Run("our key");
    QObject::disconnect(connection);
    return ms;
  }

  // The part of the last key until the model had changed and the page was told; the rest is the live page's change and
  // the place in it.
  double Worked() const { return worked_; }

 private:
  WBUC& view_;
  QWidget* keys_ = nullptr;
  QElapsedTimer clock_;
  double worked_ = 0;
};
