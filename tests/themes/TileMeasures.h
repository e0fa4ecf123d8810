// What a tile is measured by: how much it jumps at its edges, and how well a text stands out from it.
#pragma once

#include <QColor>
#include <QImage>
#include <algorithm>
#include <cmath>
#include <vector>

// Mean difference between the column and the next one, in levels of a colour part; the last one's next is the first.
inline double ColumnStep(const QImage& tile, int column) {
  const int next = (column + 1) % tile.width();
  long sum = 0;
  for (int y = 0; y < tile.height(); ++y) {
    const QRgb left = tile.pixel(column, y);
    const QRgb right = tile.pixel(next, y);
    sum += std::abs(qRed(left) - qRed(right)) + std::abs(qGreen(left) - qGreen(right)) +
           std::abs(qBlue(left) - qBlue(right));
  }
  return double(sum) / 3 / tile.height();
}

struct SeamMeasure {
  double edge;   // the step from the last column to the first
  double inner;  // mean of the steps at the borders of the JPEG coding's blocks
  double most;   // the largest step within the tile
};

// Where one tile ends and the next begins. A seam of the rows is that of the tile turned on its side.
inline SeamMeasure Seam(const QImage& tile) {
  constexpr int block = 8;
  SeamMeasure seam{ColumnStep(tile, tile.width() - 1), 0, 0};
  int count = 0;
  for (int column = 0; column < tile.width() - 1; ++column) {
    const double step = ColumnStep(tile, column);
    seam.most = std::max(seam.most, step);
    if ((column + 1) % block) continue;
    seam.inner += step;
    ++count;
  }
  seam.inner /= count;
  return seam;
}

// A quarter of a level is what the coding of colours in blocks leaves at the edges of smooth pictures.
inline bool HasNoSeam(const SeamMeasure& seam) {
  return seam.edge <= seam.most + 0.25 && seam.edge <= 2 * seam.inner;
}

inline QImage OnItsSide(const QImage& tile) {
  return tile.transformed(QTransform(0, 1, 1, 0, 0, 0));
}

inline QColor MeanColor(const QImage& tile, const QRect& part) {
  long red = 0;
  long green = 0;
  long blue = 0;
  for (int y = part.top(); y <= part.bottom(); ++y)
    for (int x = part.left(); x <= part.right(); ++x) {
      const QRgb pixel = tile.pixel(x, y);
      red += qRed(pixel);
      green += qGreen(pixel);
      blue += qBlue(pixel);
    }
  const float all = 255.0f * float(part.width() * part.height());
  return QColor::fromRgbF(float(red) / all, float(green) / all, float(blue) / all);
}

// Relative luminance by WCAG 2.
inline double Luminance(const QColor& color) {
  const auto linear = [](double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(double(color.redF())) + 0.7152 * linear(double(color.greenF())) +
         0.0722 * linear(double(color.blueF()));
}

// Contrast ratio by WCAG 2, from 1 to 21.
inline double Contrast(const QColor& a, const QColor& b) {
  const auto [dark, light] = std::minmax({Luminance(a), Luminance(b)});
  return (light + 0.05) / (dark + 0.05);
}

// The least contrast of the colour with the mean colour of any part of the tile of about a word's height.
inline double LeastContrast(const QImage& tile, const QColor& color) {
  constexpr int size = 16;
  double least = 21;
  for (int y = 0; y + size <= tile.height(); y += size)
    for (int x = 0; x + size <= tile.width(); x += size)
      least = std::min(least, Contrast(color, MeanColor(tile, QRect(x, y, size, size))));
  return least;
}
