// Keeps text inside controls whose size is given: the font shrinks to the control's height, and what is still too wide
// ends in an ellipsis with the whole text as tool tip.
#pragma once

#include <QComboBox>
#include <QLabel>

// The widget's font, made small enough for a control of this height in pixels with `padding` above and below.
QFont FontForHeight(const QWidget* widget, int height, int padding = 0);

// A list whose entry in view ends in an ellipsis where it is too long, and which opens as wide as its entries need.
class FittedList : public QComboBox {
  Q_OBJECT

 public:
  using QComboBox::QComboBox;

  void showPopup() override;
  // The entry as it is painted.
  QString ShownText() const;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

class FittedLabel : public QLabel {
  Q_OBJECT

 public:
  using QLabel::QLabel;

 protected:
  void paintEvent(QPaintEvent* event) override;
};
