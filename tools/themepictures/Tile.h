// What the painters of tiles share: colours, and ways to fill a picture that repeats without a seam.
#pragma once

#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <functional>
#include <vector>

// A colour as screens take it, each part from 0 to 1; sums on the way may leave that.
struct Rgb {
  double red = 0;
  double green = 0;
  double blue = 0;
};

constexpr Rgb Hex(unsigned number) {
  return {double(number >> 16 & 255) / 255, double(number >> 8 & 255) / 255, double(number & 255) / 255};
}
constexpr Rgb operator+(Rgb a, Rgb b) {
  return {a.red + b.red, a.green + b.green, a.blue + b.blue};
}
constexpr Rgb operator*(Rgb a, double factor) {
  return {a.red * factor, a.green * factor, a.blue * factor};
}
constexpr Rgb Mix(Rgb from, Rgb to, double share) {
  return from * (1 - share) + to * share;
}
constexpr Rgb White{1, 1, 1};

// A colour of the Oklab space by lightness, chroma and hue (in turns): equal lightness looks equally light.
Rgb Oklch(double lightness, double chroma, double hue);

QColor ToColor(Rgb color, double opacity = 1);

// 0 up to `low`, 1 from `high` on, smooth between.
double SmoothStep(double low, double high, double value);

// The share of a line's ink at that distance from its middle, `width` pixels wide with soft edges.
double LineInk(double distance, double width);

// A picture whose colour is told point by point, in pixels; `samples` by `samples` points make a pixel. A grain far
// below what the eye sees keeps gentle slopes from breaking into steps.
QImage Shade(QSize size, int samples, const std::function<Rgb(double x, double y)>& color);

// Draws on a picture as on a sheet that is rolled both ways: what leaves at one edge comes in at the other.
class WrappedPainter {
 public:
  // The drawing takes tile pixels; the canvas may be finer by `scale`.
  WrappedPainter(QImage& canvas, QSize tile, int scale);

  // Calls `draw` for each of the copies that can reach the tile when the figure stays within `reach` pixels of
  // `middle`. The painter's origin is the middle.
  void Draw(QPointF middle, double reach, const std::function<void(QPainter&)>& draw);

  QPainter& Painter() { return painter_; }

 private:
  QPainter painter_;
  QSize tile_;
  int scale_;
};

QImage NewCanvas(QSize tile, int scale, Rgb ground);

// The mean of each `scale` by `scale` block of pixels.
QImage Shrunk(const QImage& canvas, int scale);

// A picture's red part as numbers from 0 to 1 that can be asked for anywhere, and repeat.
class Field {
 public:
  explicit Field(const QImage& picture);
  Field(QSize size, std::vector<float> values)
      : width_(size.width()), height_(size.height()), values_(std::move(values)) {}

  // Between pixel middles the values go over linearly.
  double At(double x, double y) const;

  // Each value spread over its neighbourhood, about `radius` pixels wide.
  Field Blurred(int radius) const;

 private:
  float Pixel(long x, long y) const;

  int width_;
  int height_;
  std::vector<float> values_;
};
