// The second road of the right mouse button: takes its press and release away from the window of the browser
// component and reports the release instead.
#pragma once

#include <QObject>
#include <QPointer>

class QWidget;

class RightButtonHook : public QObject {
  Q_OBJECT

 public:
  using QObject::QObject;

  // Does nothing while a window is hooked already, or for null.
  void Install(QWidget* window);
  void Remove();
  bool IsInstalled() const { return !window_.isNull(); }

 signals:
  void Released();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QPointer<QWidget> window_;
};
