// The tiles of the themes that stand directly in the menu.
#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "Painters.h"
#include "PeriodicNoise.h"
#include "Seeded.h"
#include "Tile.h"

// Pastel silk in the seven colours of the rainbow, in broad slanting bands that go over softly into each other.
QImage PaintRainbow() {
  constexpr QSize tile(512, 512);
  constexpr std::array<Rgb, 7> colors{Hex(0xFFD6D9), Hex(0xFFE3C6), Hex(0xFFF7C8), Hex(0xD9F5D3),
                                      Hex(0xCDF1F8), Hex(0xD6E2FF), Hex(0xEDDBFF)};
  const CloudNoise drift(11, 2, 2, 1);
  const CloudNoise folds(12, 3, 3, 2, 0.4);
  return Shade(tile, 1, [&](double x, double y) {
    const double u = x / tile.width();
    const double v = y / tile.height();
    const double band = 7 * (u + v + 0.06 * drift.At(u, v) + 2);
    const int number = int(std::floor(band));
    const double within = band - number;
    const auto color = [&](int place) { return colors[std::size_t(place % 7)]; };
    const Rgb blend = Mix(color(number), color(number + 1), SmoothStep(0.2, 0.8, within));
    // A thread of light along the middle of each seam, as silk has it where it is folded.
    const double gleam = 0.28 * std::exp(-std::pow((within - 0.5) / 0.16, 2)) * (0.6 + folds.At(u, v));
    return Mix(blend, White, std::clamp(gleam, 0.0, 1.0));
  });
}

// Brushed metal: fine strokes from left to right under a soft slanting sheen.
QImage PaintMetal() {
  constexpr QSize tile(512, 256);
  const PeriodicNoise sway(21, 3, 2);
  const auto strokes = [tile](std::uint64_t seed, double x, double y, int cells, double height) {
    const std::uint64_t row = Scatter(seed * 977 + std::uint64_t(y / height));
    return PeriodicNoise(row, cells, 1).At(x / tile.width() * cells + UnitOf(row), 0.37);
  };
  return Shade(tile, 1, [&](double x, double y) {
    const double u = x / tile.width();
    const double v = y / tile.height();
    const double place = 2 * std::numbers::pi * (u + 0.03 * sway.At(3 * u, 2 * v));
    const double sheen = 0.5 + 0.32 * std::sin(place) + 0.18 * std::sin(2 * place + 1.1);
    const double grain =
        strokes(1, x, y, 4, 1) * 0.050 + strokes(2, x, y, 9, 1) * 0.026 + strokes(3, x, y, 3, 3) * 0.022;
    return Mix(Hex(0xDADEE5), Hex(0xECEFF3), sheen) * (1 + grain);
  });
}

namespace {

// A spruce twig: a bent stem with needles on both sides, all in one tone.
void DrawTwig(QPainter& brush, Seeded& random, Rgb needle, Rgb stem) {
  const double length = random.Between(90, 150);
  const double bend = random.Between(-34, 34);
  const auto at = [&](double t) { return QPointF(length * (t - 0.5), bend * (t - 0.5) * (t - 0.5) * 2); };
  constexpr int pairs = 44;
  for (int pair = 0; pair <= pairs; ++pair) {
    const double t = double(pair) / pairs;
    const QPointF from = at(t);
    const QPointF ahead = at(t + 0.01) - from;
    const double direction = std::atan2(ahead.y(), ahead.x());
    const double reach = (19 - 9 * t) * random.Between(0.85, 1.15) * std::min(1.0, 0.45 + 3 * t);
    for (const int side : {-1, 1}) {
      const double angle = direction + side * (0.95 - 0.35 * t + random.Between(-0.12, 0.12));
      const QPointF tip = from + QPointF(std::cos(angle), std::sin(angle)) * reach;
      const QPointF belly =
          from + QPointF(std::cos(angle + side * 0.16), std::sin(angle + side * 0.16)) * (reach * 0.5);
      QPainterPath line(from);
      line.quadTo(belly, tip);
      const double tone = side < 0 ? 1.10 : 0.90;
      brush.setPen(QPen(ToColor(needle * (tone * random.Between(0.92, 1.08))), 1.7, Qt::SolidLine, Qt::RoundCap));
      brush.drawPath(line);
    }
  }
  QPainterPath line(at(0));
  for (int step = 1; step <= 12; ++step) line.lineTo(at(step / 12.0));
  brush.setPen(QPen(ToColor(stem), 1.9, Qt::SolidLine, Qt::RoundCap));
  brush.drawPath(line);
}

}  // namespace

// Spruce twigs over spruce twigs, the deeper ones in the shade.
QImage PaintForest() {
  constexpr QSize tile(512, 512);
  constexpr int scale = 2;
  constexpr std::array<Rgb, 5> tones{Hex(0x12331F), Hex(0x143924), Hex(0x173F29), Hex(0x1A452D), Hex(0x1D4B31)};
  QImage canvas = NewCanvas(tile, scale, Hex(0x102D1B));
  WrappedPainter painter(canvas, tile, scale);
  Seeded random(31);
  // Each twig in a place of its own, so that none of the layers has holes that would show in every repeat.
  constexpr int places = 7;
  constexpr double place = double(tile.width()) / places;
  for (const Rgb tone : tones)
    for (int twig = 0; twig < places * places; ++twig) {
      const QPointF middle((twig % places + random.Unit()) * place, (twig / places + random.Unit()) * place);
      const double turn = random.Between(0, 360);
      const std::uint64_t seed = random.Next();
      painter.Draw(middle, 110, [&](QPainter& brush) {
        Seeded own(seed);
        brush.rotate(turn);
        DrawTwig(brush, own, tone, tone * 0.8);
      });
    }
  return Shrunk(canvas, scale);
}

namespace {

// One layer of a cut stone: a net of bent triangles, each flat and turned its own way to the light.
QImage Facets(std::uint64_t seed, QSize tile, int scale, int columns, int rows, double bend) {
  QImage canvas = NewCanvas(tile, scale, Hex(0x808080));
  WrappedPainter painter(canvas, tile, scale);
  painter.Painter().setRenderHint(QPainter::Antialiasing, false);
  const double width = double(tile.width()) / columns;
  const double height = double(tile.height()) / rows;
  const auto own = [&](int column, int row) {
    return Seeded(Scatter(seed) ^ std::uint64_t(((row + rows) % rows) * columns + (column + columns) % columns));
  };
  const auto corner = [&](int column, int row) {
    Seeded random = own(column, row);
    return QPointF((column + (row % 2 ? 0.5 : 0.0) + random.Between(-bend, bend)) * width,
                   (row + 0.5 + random.Between(-bend, bend)) * height);
  };
  const auto triangle = [&](std::array<QPointF, 3> at, Seeded random) {
    const QPointF middle = (at[0] + at[1] + at[2]) / 3;
    const double light = 0.5 + random.Between(-0.34, 0.34);
    const double slope = random.Between(0, 2 * std::numbers::pi);
    const QPointF way = QPointF(std::cos(slope), std::sin(slope)) * width * 0.55;
    painter.Draw(middle, 1.5 * width, [&](QPainter& brush) {
      QLinearGradient flat(-way, way);
      flat.setColorAt(0, ToColor(White * (light - 0.13)));
      flat.setColorAt(1, ToColor(White * (light + 0.13)));
      QPolygonF shape;
      for (const QPointF& point : at) shape << point - middle;
      brush.setPen(Qt::NoPen);
      brush.setBrush(flat);
      brush.drawPolygon(shape);
    });
  };
  for (int row = 0; row < rows; ++row)
    for (int column = 0; column < columns; ++column) {
      const int shift = row % 2;
      Seeded random = own(column + 1000 * columns, row);
      random.Next();
      const QPointF here = corner(column, row);
      const QPointF right = corner(column + 1, row);
      const QPointF below = corner(column + shift, row + 1);
      const QPointF left = corner(column + shift - 1, row + 1);
      triangle({here, right, below}, Seeded(random.Next()));
      triangle({here, below, left}, Seeded(random.Next()));
    }
  return Shrunk(canvas, scale);
}

}  // namespace

// The inside of a ruby: large facets with smaller ones shining through.
QImage PaintRuby() {
  constexpr QSize tile(512, 512);
  const Field large(Facets(41, tile, 4, 5, 6, 0.27));
  const Field small(Facets(42, tile, 4, 8, 10, 0.27));
  // Where many dark facets meet they would catch the eye in every repeat, so each is taken against its neighbourhood.
  const Field around = large.Blurred(40);
  return Shade(tile, 1, [&](double x, double y) {
    const double light = 0.5 + 0.66 * (large.At(x, y) - around.At(x, y)) + 0.40 * (small.At(x, y) - 0.5);
    const Rgb low = Mix(Hex(0x5E0316), Hex(0x8E0A28), SmoothStep(0, 0.7, light));
    return Mix(low, Hex(0xB4163E), SmoothStep(0.6, 1.25, light));
  });
}

namespace {

struct Swell {
  double across;
  double down;
  double phase;
  double height;
};

// How the surface leans, from the sum of waves that each fit the tile a whole number of times.
class WaterSurface {
 public:
  explicit WaterSurface(std::uint64_t seed) {
    Seeded random(seed);
    for (int down = -7; down <= 7; ++down)
      for (int across = 0; across <= 7; ++across) {
        const double count = std::hypot(across, down);
        if (count < 2.5 || count > 7.3) continue;
        swells_.push_back({2 * std::numbers::pi * across, 2 * std::numbers::pi * down,
                           random.Between(0, 2 * std::numbers::pi), random.Between(0.4, 1) / std::pow(count, 2.3)});
      }
  }

  QPointF Lean(double u, double v) const {
    QPointF lean;
    for (const Swell& swell : swells_) {
      const double slope = -swell.height * std::sin(swell.across * u + swell.down * v + swell.phase);
      lean += QPointF(swell.across, swell.down) * slope;
    }
    return lean;
  }

 private:
  std::vector<Swell> swells_;
};

// Where the light falls that comes straight down through the surface: each ray is bent by the lean of the water that it
// enters. The mean is 1.
Field LightOnGround(const WaterSurface& surface, QSize tile, double depth) {
  constexpr int rays = 3;
  std::vector<float> light(std::size_t(tile.width()) * std::size_t(tile.height()));
  const auto add = [&](long x, long y, double share) {
    const long column = (x % tile.width() + tile.width()) % tile.width();
    const long row = (y % tile.height() + tile.height()) % tile.height();
    light[std::size_t(row * tile.width() + column)] += float(share / (rays * rays));
  };
  for (int row = 0; row < tile.height() * rays; ++row)
    for (int column = 0; column < tile.width() * rays; ++column) {
      const QPointF from((column + 0.5) / rays, (row + 0.5) / rays);
      const QPointF place = from - surface.Lean(from.x() / tile.width(), from.y() / tile.height()) * depth;
      const double left = std::floor(place.x() - 0.5);
      const double top = std::floor(place.y() - 0.5);
      const double dx = place.x() - 0.5 - left;
      const double dy = place.y() - 0.5 - top;
      add(long(left), long(top), (1 - dx) * (1 - dy));
      add(long(left) + 1, long(top), dx * (1 - dy));
      add(long(left), long(top) + 1, (1 - dx) * dy);
      add(long(left) + 1, long(top) + 1, dx * dy);
    }
  return Field(tile, std::move(light));
}

}  // namespace

// The play of sunlight under deep water.
QImage PaintDeepBlue() {
  constexpr QSize tile(512, 512);
  const Field near = LightOnGround(WaterSurface(51), tile, 2.6).Blurred(1);
  const Field far = LightOnGround(WaterSurface(52), tile, 3.4).Blurred(6);
  const CloudNoise depth(53, 2, 2, 2);
  return Shade(tile, 1, [&](double x, double y) {
    const double light = 0.12 * std::log1p(1.4 * near.At(x, y)) + 0.15 * std::log1p(1.5 * far.At(x, y)) +
                         0.06 * depth.At(x / tile.width(), y / tile.height());
    return Mix(Hex(0x04163F), Hex(0x2163B4), std::clamp(light * 1.35 - 0.06, 0.0, 1.0));
  });
}

// Small stars of all brightnesses before faint clouds of gas.
QImage PaintStars() {
  constexpr QSize tile(640, 640);
  std::vector<float> shine(std::size_t(tile.width()) * std::size_t(tile.height()));
  std::vector<float> warmth(shine.size());
  Seeded random(61);
  for (int star = 0; star < 620; ++star) {
    const double x = random.Between(0, tile.width());
    const double y = random.Between(0, tile.height());
    const double brightness = 0.12 + 0.80 * std::pow(random.Unit(), 4.5);
    const double size = 0.62 + 0.55 * brightness;
    const double warm = random.Between(-1, 1);
    for (int down = -6; down <= 6; ++down)
      for (int across = -6; across <= 6; ++across) {
        const long column = long(std::floor(x)) + across;
        const long row = long(std::floor(y)) + down;
        const double distance = std::hypot(double(column) + 0.5 - x, double(row) + 0.5 - y);
        const double glow = brightness * (std::exp(-distance * distance / (size * size)) +
                                          0.10 * brightness * std::exp(-distance / 1.7));
        const auto place =
            std::size_t((row + tile.height()) % tile.height() * tile.width() + (column + tile.width()) % tile.width());
        shine[place] += float(glow);
        warmth[place] += float(glow * warm);
      }
  }
  const CloudNoise gas(62, 3, 3, 5, 0.55);
  const CloudNoise dust(63, 5, 5, 4, 0.55);
  const CloudNoise hue(64, 3, 3, 2);
  return Shade(tile, 1, [&](double x, double y) {
    const double u = x / tile.width();
    const double v = y / tile.height();
    const double cloud = SmoothStep(-0.75, 0.75, gas.At(u + 0.05 * dust.At(u, v), v) - 0.35 * dust.At(u, v));
    const Rgb tint = Mix(Hex(0x1C2A5E), Hex(0x3C2158), SmoothStep(-0.3, 0.3, hue.At(u, v)));
    const Rgb sky = Mix(Hex(0x04060F), tint, 0.50 * cloud);
    const auto place = std::size_t(y) * std::size_t(tile.width()) + std::size_t(x);
    const double light = std::min(1.0, double(shine[place]));
    const double warm = shine[place] > 0 ? double(warmth[place]) / double(shine[place]) : 0;
    const Rgb star = warm > 0 ? Mix(White, Hex(0xFFDDB8), warm) : Mix(White, Hex(0xB8CEFF), -warm);
    return Mix(sky, star, light);
  });
}
