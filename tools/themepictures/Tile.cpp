#include "Tile.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "Seeded.h"

namespace {

double ScreenPart(double linear) {
  if (linear <= 0.0031308) return std::max(0.0, linear * 12.92);
  return 1.055 * std::pow(linear, 1 / 2.4) - 0.055;
}

int Level(double part, double grain) {
  return std::clamp(int(std::floor(part * 255 + 0.5 + grain)), 0, 255);
}

}  // namespace

Rgb Oklch(double lightness, double chroma, double hue) {
  const double angle = 2 * std::numbers::pi * hue;
  const double a = chroma * std::cos(angle);
  const double b = chroma * std::sin(angle);
  const auto cube = [](double root) { return root * root * root; };
  const double l = cube(lightness + 0.3963377774 * a + 0.2158037573 * b);
  const double m = cube(lightness - 0.1055613458 * a - 0.0638541728 * b);
  const double s = cube(lightness - 0.0894841775 * a - 1.2914855480 * b);
  return {ScreenPart(4.0767416621 * l - 3.3077115913 * m + 0.2309699292 * s),
          ScreenPart(-1.2684380046 * l + 2.6097574011 * m - 0.3413193965 * s),
          ScreenPart(-0.0041960863 * l - 0.7034186147 * m + 1.7076147010 * s)};
}

QColor ToColor(Rgb color, double opacity) {
  const auto part = [](double value) { return float(std::clamp(value, 0.0, 1.0)); };
  return QColor::fromRgbF(part(color.red), part(color.green), part(color.blue), part(opacity));
}

double SmoothStep(double low, double high, double value) {
  const double t = std::clamp((value - low) / (high - low), 0.0, 1.0);
  return t * t * (3 - 2 * t);
}

double LineInk(double distance, double width) {
  return 1 - SmoothStep(width / 2 - 0.5, width / 2 + 0.5, std::abs(distance));
}

QImage Shade(QSize size, int samples, const std::function<Rgb(double x, double y)>& color) {
  QImage picture(size, QImage::Format_RGB32);
  Seeded grain(42);
  for (int y = 0; y < size.height(); ++y) {
    auto* const line = reinterpret_cast<QRgb*>(picture.scanLine(y));
    for (int x = 0; x < size.width(); ++x) {
      Rgb sum;
      for (int part = 0; part < samples * samples; ++part)
        sum = sum + color(x + (part % samples + 0.5) / samples, y + (part / samples + 0.5) / samples);
      const Rgb mean = sum * (1.0 / (samples * samples));
      const double shift = grain.Between(-0.5, 0.5);
      line[x] = qRgb(Level(mean.red, shift), Level(mean.green, shift), Level(mean.blue, shift));
    }
  }
  return picture;
}

WrappedPainter::WrappedPainter(QImage& canvas, QSize tile, int scale) : painter_(&canvas), tile_(tile), scale_(scale) {
  painter_.setRenderHint(QPainter::Antialiasing);
}

void WrappedPainter::Draw(QPointF middle, double reach, const std::function<void(QPainter&)>& draw) {
  for (int down = -1; down <= 1; ++down)
    for (int across = -1; across <= 1; ++across) {
      const QPointF copy = middle + QPointF(across * tile_.width(), down * tile_.height());
      if (copy.x() + reach < 0 || copy.x() - reach > tile_.width() || copy.y() + reach < 0 ||
          copy.y() - reach > tile_.height())
        continue;
      painter_.save();
      painter_.scale(scale_, scale_);
      painter_.translate(copy);
      draw(painter_);
      painter_.restore();
    }
}

QImage NewCanvas(QSize tile, int scale, Rgb ground) {
  QImage canvas(tile * scale, QImage::Format_RGB32);
  canvas.fill(ToColor(ground));
  return canvas;
}

QImage Shrunk(const QImage& canvas, int scale) {
  QImage picture(canvas.size() / scale, QImage::Format_RGB32);
  const int count = scale * scale;
  for (int y = 0; y < picture.height(); ++y) {
    auto* const line = reinterpret_cast<QRgb*>(picture.scanLine(y));
    for (int x = 0; x < picture.width(); ++x) {
      int red = 0;
      int green = 0;
      int blue = 0;
      for (int row = 0; row < scale; ++row) {
        const auto* const from = reinterpret_cast<const QRgb*>(canvas.constScanLine(y * scale + row)) + x * scale;
        for (int column = 0; column < scale; ++column) {
          red += qRed(from[column]);
          green += qGreen(from[column]);
          blue += qBlue(from[column]);
        }
      }
      line[x] = qRgb((red + count / 2) / count, (green + count / 2) / count, (blue + count / 2) / count);
    }
  }
  return picture;
}

Field::Field(const QImage& picture) : width_(picture.width()), height_(picture.height()) {
  values_.reserve(std::size_t(width_) * std::size_t(height_));
  for (int y = 0; y < height_; ++y)
    for (int x = 0; x < width_; ++x) values_.push_back(float(qRed(picture.pixel(x, y))) / 255);
}

float Field::Pixel(long x, long y) const {
  const long column = (x % width_ + width_) % width_;
  const long row = (y % height_ + height_) % height_;
  return values_[std::size_t(row) * std::size_t(width_) + std::size_t(column)];
}

double Field::At(double x, double y) const {
  const double left = std::floor(x - 0.5);
  const double top = std::floor(y - 0.5);
  const long column = long(left);
  const long row = long(top);
  const double across = x - 0.5 - left;
  const double upper = std::lerp(double(Pixel(column, row)), double(Pixel(column + 1, row)), across);
  const double lower = std::lerp(double(Pixel(column, row + 1)), double(Pixel(column + 1, row + 1)), across);
  return std::lerp(upper, lower, y - 0.5 - top);
}

Field Field::Blurred(int radius) const {
  // Three box means one after the other come close to the bell curve.
  Field result = *this;
  for (int pass = 0; pass < 6; ++pass) {
    const bool across = pass % 2 == 0;
    std::vector<float> means;
    means.reserve(values_.size());
    for (int y = 0; y < height_; ++y)
      for (int x = 0; x < width_; ++x) {
        float sum = 0;
        for (int step = -radius; step <= radius; ++step)
          sum += across ? result.Pixel(x + step, y) : result.Pixel(x, y + step);
        means.push_back(sum / float(2 * radius + 1));
      }
    result.values_ = std::move(means);
  }
  return result;
}
