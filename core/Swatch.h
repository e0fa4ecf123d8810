// A box that shows a colour and is clicked to change it. It holds the colour as the number 0x00BBGGRR.
#pragma once

#include <QAbstractButton>

class Swatch : public QAbstractButton {
  Q_OBJECT

 public:
  using QAbstractButton::QAbstractButton;
  void SetColor(qint32 color);
  qint32 Color() const { return color_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  qint32 color_ = 0;
};
