// The drawing calls of the icon editor, on images in RGB32. They know no shades between two colours, and what falls
// outside of the image is left out. A pen wider than one pixel is a round stamp put on every pixel of what it draws.
#pragma once

#include <QImage>
#include <QPoint>

struct Pen {
  int width = 1;  // pixels, from 1
  QRgb color = 0;
};

enum class Form { Rectangle, Ellipse };
// A solid one is filled with the pen's colour.
enum class Filling { Empty, Solid };

void SetPixel(QImage& image, QPoint at, QRgb color);

// Leaves out the point `to`; where the two points are one, the pen is put there once.
void LineTo(QImage& image, QPoint from, QPoint to, const Pen& pen);

// Between two opposite corners in any order, of which the larger column and row are left out. Without a width or a
// height nothing is drawn.
void DrawForm(QImage& image, Form form, QPoint corner, QPoint opposite, const Pen& pen, Filling filling);

// Inverts a line one pixel wide, both ends included, so that a second time takes it off again.
void InvertLine(QImage& image, QPoint from, QPoint to);
