// A picture in the tool strip that works as a button, with three looks: plain, framed while the mouse is on it, and
// raised while it is pressed.
#pragma once

#include <QAbstractButton>

class ToolButton : public QAbstractButton {
  Q_OBJECT

 public:
  enum class Look { Plain, Framed, Raised };

  explicit ToolButton(QWidget* parent = nullptr);
  void SetLook(Look look);
  Look look() const { return look_; }

 signals:
  void MouseMoved();
  void MouseWentDown();
  void MouseWentUp();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  Look look_ = Look::Plain;
};
