// A picture box in pixels that keeps what it shows: a background colour, a picture on it, and drawings on top, which
// can be wiped off without harm to the picture. Its image is the widget's size, whatever screen it stands on; a picture
// larger than the widget shows its top left.
#pragma once

#include <QColor>
#include <QImage>
#include <QRegion>
#include <QString>
#include <QWidget>
#include <functional>

class Surface : public QWidget {
  Q_OBJECT

 public:
  explicit Surface(const QString& name, QWidget* parent = nullptr);

  QColor Background() const { return background_; }
  // Wipes off the drawings.
  void SetBackground(const QColor& color);

  // While it is on the surface takes the size of each picture that it gets; clearing leaves the size as it is.
  void SetAutoSize(bool on);

  // The picture without the drawings; null when there is none.
  const QImage& Picture() const { return picture_; }
  // Wipes off the drawings. A null picture leaves none.
  void SetPicture(QImage picture);
  void ClearPicture() { SetPicture(QImage()); }
  // False when the file is no picture or too large for the memory there is, and nothing has changed then.
  bool LoadPicture(const QString& path);
  // What the other one shows, its drawings included, becomes the picture.
  void TakeImageOf(const Surface& other) { SetPicture(other.Image()); }

  // All that the surface shows, in its size and without transparency; null for a surface without an area.
  QImage Image() const;
  // Writes the image, drawings included, as a BMP file, which is whole or isn't there; false on failure.
  bool SaveImage(const QString& path) const;

  bool HasDrawings() const { return !drawnPart_.isEmpty(); }
  // Brings the picture back as it was.
  void ClearDrawings();
  // Draws part of a picture, stretched to the target by a smooth filter. What the source hasn't got isn't drawn. False,
  // with nothing changed, when memory doesn't suffice.
  bool PaintPicture(const QImage& source, const QRect& target, const QRect& part);
  // Lets the routine draw on the image, which has the surface's size and whose format is RGB32; only `part` may change.
  // A surface without an image isn't drawn on.
  void Draw(const QRegion& part, const std::function<void(QImage&)>& draw);
  // Inverts an outline one pixel wide through both corners, so that a second time takes it off again.
  void InvertRectangle(QPoint corner, QPoint opposite);
  // The pixels that InvertRectangle inverts, as far as they are on the surface.
  static QRegion Outline(QPoint corner, QPoint opposite);

 signals:
  // In pixels of the surface, which may lie outside of it during a drag.
  void MouseDown(Qt::MouseButton button, QPoint at);
  void MouseMove(QPoint at, Qt::MouseButtons held);
  void MouseUp(Qt::MouseButton button, QPoint at);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  QImage WithoutDrawings() const;
  // The image to draw on, brought to the widget's size; null when that can't be held.
  QImage& Drawn();
  void MarkDrawn(const QRegion& part);
  void ForgetDrawings();

  QColor background_ = Qt::white;
  bool autoSize_ = false;
  QImage picture_;
  // Null as long as nothing has been drawn. Outside of the drawn part it is the same as the image without drawings, so
  // that a drag on a large picture touches only what changes.
  QImage drawn_;
  QRegion drawnPart_;
};
