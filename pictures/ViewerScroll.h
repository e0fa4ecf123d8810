// Brings the hidden part of a picture into view where the window had to be cut: by bars along its edges, by the wheel,
// and by a drag that goes beyond an edge. The window's size isn't changed; the bars lie over the picture.
#pragma once

#include <QObject>
#include <QPoint>
#include <QTimer>

class QScrollBar;
class QWidget;
class QWheelEvent;

class ViewerScroll : public QObject {
  Q_OBJECT

 public:
  // Scrolls `picture` in its parent, whose children the bars are.
  explicit ViewerScroll(QWidget& picture);

  // The pointer of a drag is at that pixel of the picture. While it is out of view the picture goes on moving, and
  // Dragged tells where the pointer is then.
  void Follow(QPoint at);
  void Stop() { goOn_.stop(); }

 signals:
  void Dragged(QPoint at);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Fit();
  void Turn(const QWheelEvent& event);
  void GoOn();
  // What of the picture isn't under the bars or outside of the window.
  QRect View() const;

  QWidget& picture_;
  QWidget& window_;
  QScrollBar* const across_;
  QScrollBar* const down_;
  QWidget* const corner_;
  QTimer goOn_;
  QPoint pointer_;
};
