// Lets the crop band be seen on middle greys, which inverting hardly changes: its pixels there are black and white
// dashes. That is on the screen only; the surface, and so what is saved of it, has the inverted line alone.
#pragma once

#include <QRegion>
#include <QWidget>

class Surface;

class CropBand : public QWidget {
 public:
  explicit CropBand(Surface& surface);

  // Follows the band that has just been drawn through both corners, until the surface's drawings are wiped off.
  void Follow(QPoint corner, QPoint opposite);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  const Surface& surface_;
  QRegion outline_;
};
