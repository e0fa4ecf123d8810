// A hosted page in the page view that edits it, worked on with real mouse and key events.
#pragma once

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QTest>

#include "HostedPage.h"

class HostedView : public HostedPage {
 public:
  HostedView() : HostedPage(InPageView) {}

  WBUC& jWB() { return *view_; }
  Program& program() { return program_->program; }
  // Content of BODY in the model.
  QString Body() { return document().body().outerHTML().section(u'>', 1).chopped(7); }

  bool Load(const QByteArray& html, bool isNew = false) {
    const QString path = File(QStringLiteral("page.html"), html);
    QSignalSpy complete(&jWB(), &WBUC::DocComplete);
    jWB().Navo(path, isNew);
    if (!WaitFor([&] { return complete.count() > 0 && jWB().DocReady(); })) return false;
    AwaitSize();
    return true;
  }

  // Middle left of a character of the first text in the element that the selector finds.
  QPoint PointIn(const QString& selector, int offset) {
    return PointOf(QStringLiteral("document.querySelector('%1').firstChild").arg(selector), offset);
  }
  QPoint CenterOf(const QString& selector) {
    const QStringList parts =
        ScriptText(QStringLiteral("(() => { const b = document.querySelector('%1').getBoundingClientRect();"
                                  "return [b.left + b.width / 2, b.top + b.height / 2].join(); })()")
                       .arg(selector))
            .split(u',');
    return parts.size() == 2 ? QPoint(int(parts[0].toDouble()), int(parts[1].toDouble())) : QPoint();
  }

  bool Click(QPoint point) {
    return Clicks([&] { QTest::mouseClick(Input(), Qt::LeftButton, {}, point); });
  }
  bool Drag(QPoint from, QPoint to) {
    return Clicks([&] {
      QTest::mousePress(Input(), Qt::LeftButton, {}, from);
      QTest::mouseMove(Input(), (from + to) / 2);
      QTest::mouseMove(Input(), to);
      QTest::mouseRelease(Input(), Qt::LeftButton, {}, to);
    });
  }
  bool RightClick(QPoint point) {
    QSignalSpy rights(&jWB(), &WBUC::RightClick);
    QTest::mouseClick(Input(), Qt::RightButton, {}, point);
    return WaitFor([&] { return rights.count() > 0; });
  }

  // As the window system delivers it.
  bool DoubleClick(QPoint point) {
    QSignalSpy doubles(&jWB(), &WBUC::DoubleClick);
    const auto send = [&](QEvent::Type type, Qt::MouseButtons buttons) {
      QMouseEvent event(type, QPointF(point), Input()->mapToGlobal(QPointF(point)), Qt::LeftButton, buttons, {});
      QCoreApplication::sendEvent(Input(), &event);
    };
    send(QEvent::MouseButtonPress, Qt::LeftButton);
    send(QEvent::MouseButtonRelease, {});
    send(QEvent::MouseButtonDblClick, Qt::LeftButton);
    send(QEvent::MouseButtonRelease, {});
    return WaitFor([&] { return doubles.count() > 0; });
  }

  bool Key(Qt::Key key, const QString& text = {}, Qt::KeyboardModifiers modifiers = {}) {
    QSignalSpy keys(&jWB(), &WBUC::KeyPress);
    QKeyEvent press(QEvent::KeyPress, key, modifiers, text);
    QKeyEvent release(QEvent::KeyRelease, key, modifiers, text);
    QCoreApplication::sendEvent(Input(), &press);
    QCoreApplication::sendEvent(Input(), &release);
    return WaitFor([&] { return keys.count() == 1; });
  }

 private:
  template <typename Act>
  bool Clicks(Act act) {
    QSignalSpy clicks(&jWB(), &WBUC::Click);
    act();
    return WaitFor([&] { return clicks.count() == 1; });
  }
};
