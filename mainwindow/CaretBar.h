// The insertion mark: a thin blue bar over the page view, which is its sibling. A light edge of a pixel beside it tells
// it from a dark ground. Only what lies within the page view shows of both.
#pragma once

#include <QFrame>

class CaretBar : public QFrame {
 public:
  // `page` is the page view. Both are children of `parent`.
  CaretBar(QWidget& page, QWidget* parent);

  // Puts it above the page view and below that sibling.
  void StackUnder(QWidget* sibling);

  void setVisible(bool visible) override;

 protected:
  void moveEvent(QMoveEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void Follow();

  QWidget& page_;
  QWidget* edge_;
};
