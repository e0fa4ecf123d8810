#include "PeriodicNoise.h"

#include <cmath>
#include <numbers>

#include "Seeded.h"

namespace {

long Wrapped(long place, long period) {
  const long rest = place % period;
  return rest < 0 ? rest + period : rest;
}

double Eased(double t) {
  return t * t * t * (t * (t * 6 - 15) + 10);
}

}  // namespace

double PeriodicNoise::Corner(long column, long row, double dx, double dy) const {
  const auto place = std::uint64_t(Wrapped(row, rows_) * columns_ + Wrapped(column, columns_));
  const double angle = 2 * std::numbers::pi * UnitOf(Scatter(Scatter(seed_) ^ place));
  return std::cos(angle) * dx + std::sin(angle) * dy;
}

double PeriodicNoise::At(double x, double y) const {
  const double left = std::floor(x);
  const double top = std::floor(y);
  const double dx = x - left;
  const double dy = y - top;
  const long column = long(left);
  const long row = long(top);
  const double across = Eased(dx);
  const double upper = std::lerp(Corner(column, row, dx, dy), Corner(column + 1, row, dx - 1, dy), across);
  const double lower =
      std::lerp(Corner(column, row + 1, dx, dy - 1), Corner(column + 1, row + 1, dx - 1, dy - 1), across);
  return std::lerp(upper, lower, Eased(dy)) * std::numbers::sqrt2;
}

double CloudNoise::At(double u, double v) const {
  double sum = 0;
  double strength = 1;
  double total = 0;
  for (int octave = 0; octave < octaves_; ++octave) {
    const int columns = columns_ << octave;
    const int rows = rows_ << octave;
    sum += strength * PeriodicNoise(seed_ + std::uint64_t(octave), columns, rows).At(u * columns, v * rows);
    total += strength;
    strength *= gain_;
  }
  return sum / total;
}
