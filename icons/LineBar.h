// A bar as thick as the line that it stands for, which can be clicked.
#pragma once

#include <QAbstractButton>

class LineBar : public QAbstractButton {
  Q_OBJECT

 public:
  // The thickness is in pixels.
  LineBar(int thickness, QWidget* parent = nullptr);

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  int thickness_;
};
