// The tiles of papers, stone and cloth; the brocades have a file of their own.
#include <algorithm>
#include <cmath>
#include <numbers>

#include "Painters.h"
#include "PeriodicNoise.h"
#include "Seeded.h"
#include "Tile.h"

namespace {

struct Fibres {
  int count;
  double shortest;
  double longest;
  double width;
  double opacity;
};

// Short bent threads in the sheet, laid every way; each a little lighter or darker than the sheet.
QImage FibreLayer(std::uint64_t seed, QSize tile, const Fibres& fibres) {
  constexpr int scale = 2;
  QImage canvas = NewCanvas(tile, scale, Hex(0x808080));
  WrappedPainter painter(canvas, tile, scale);
  Seeded random(seed);
  for (int fibre = 0; fibre < fibres.count; ++fibre) {
    const QPointF middle(random.Between(0, tile.width()), random.Between(0, tile.height()));
    const double length = random.Between(fibres.shortest, fibres.longest);
    const double turn = random.Between(0, 180);
    const double bend = random.Between(-0.35, 0.35) * length;
    const double tail = random.Between(-0.35, 0.35) * length;
    const bool light = random.Unit() < 0.5;
    painter.Draw(middle, length, [&](QPainter& brush) {
      brush.rotate(turn);
      QPainterPath thread(QPointF(-length / 2, 0));
      thread.cubicTo(QPointF(-length / 6, bend), QPointF(length / 6, -tail), QPointF(length / 2, tail));
      brush.setPen(QPen(ToColor(light ? White : Rgb{}, fibres.opacity), fibres.width, Qt::SolidLine, Qt::RoundCap));
      brush.drawPath(thread);
    });
  }
  return Shrunk(canvas, scale);
}

}  // namespace

// Old skin: clouded, with long fibres and a few pale specks.
QImage PaintParchment() {
  constexpr QSize tile(512, 512);
  const Field fibres(FibreLayer(81, tile, {1500, 12, 60, 1.0, 0.20}));
  const CloudNoise bendAcross(82, 4, 4, 3);
  const CloudNoise bendDown(83, 4, 4, 3);
  const CloudNoise clouds(84, 5, 5, 6, 0.66);
  const CloudNoise grain(85, 128, 128, 2, 0.6);
  const CloudNoise specks(86, 56, 56, 1);
  return Shade(tile, 1, [&](double x, double y) {
    const double u = x / tile.width();
    const double v = y / tile.height();
    const double cloud = clouds.At(u + 0.08 * bendAcross.At(u, v), v + 0.08 * bendDown.At(u, v));
    const Rgb skin = Mix(Hex(0xF3E4C3), Hex(0xE9D3A8), SmoothStep(-0.55, 0.6, cloud));
    const double speck = SmoothStep(0.60, 0.80, specks.At(u, v));
    const double light = 1 + 0.17 * (fibres.At(x, y) - 0.5) + 0.035 * grain.At(u, v) + 0.025 * cloud;
    return Mix(skin, Hex(0xB48A50), 0.22 * speck) * light;
  });
}

// White marble with grey veins that run across the slab, thin ones beside a few broad ones.
QImage PaintMarble() {
  constexpr QSize tile(640, 512);
  const CloudNoise bendAcross(91, 3, 3, 5, 0.55);
  const CloudNoise bendDown(92, 3, 3, 5, 0.55);
  const CloudNoise clouds(93, 2, 2, 5, 0.55);
  const CloudNoise presence(94, 3, 3, 2);
  const CloudNoise fading(95, 4, 4, 2);
  const PeriodicNoise broad(96, 2, 3);
  const PeriodicNoise thin(97, 4, 6);
  const PeriodicNoise hair(98, 7, 10);
  return Shade(tile, 2, [&](double x, double y) {
    const double u = x / tile.width();
    const double v = y / tile.height();
    const double du = u + 0.10 * bendAcross.At(u, v);
    const double dv = v + 0.10 * bendDown.At(u, v);
    // The veins slant: the noise is taken along lines that fit the tile.
    const auto vein = [&](const PeriodicNoise& noise, int columns, int rows, double width) {
      const double distance = std::abs(noise.At((du + dv) * columns, (dv - du) * rows));
      return std::exp(-distance / width);
    };
    const double here = 0.3 + 0.7 * SmoothStep(-0.35, 0.45, presence.At(u, v));
    const double fade = SmoothStep(-0.30, 0.35, fading.At(du, dv));
    const double ink = 0.31 * vein(broad, 2, 3, 0.045) * here +
                       0.26 * vein(thin, 4, 6, 0.03) * fade * (0.4 + 0.6 * here) +
                       0.10 * vein(hair, 7, 10, 0.05) * (1 - fade) + 0.08 * vein(broad, 2, 3, 0.22) * here;
    const Rgb stone = Mix(Hex(0xFBFBFC), Hex(0xECEEF2), SmoothStep(-0.4, 0.6, clouds.At(u, v)));
    return Mix(stone, Hex(0xA8AFBC), std::min(0.62, ink));
  });
}

// White paper with a fine tooth, lit from the upper left, and hardly seen fibres.
QImage PaintPaper() {
  constexpr QSize tile(384, 384);
  const CloudNoise tooth(101, 96, 96, 2, 0.7);
  const CloudNoise sheet(102, 3, 3, 3);
  const Field fibres(FibreLayer(103, tile, {300, 14, 40, 1.1, 0.10}));
  const double step = 0.8 / tile.width();
  return Shade(tile, 1, [&](double x, double y) {
    const double u = x / tile.width();
    const double v = y / tile.height();
    const double slope = tooth.At(u + step, v + step) - tooth.At(u - step, v - step);
    const double light = 1 - 0.034 * slope + 0.07 * (fibres.At(x, y) - 0.5) + 0.006 * sheet.At(u, v);
    return Hex(0xFFFDFA) * light;
  });
}

// A fine pink cloth with narrow stripes, by twos.
QImage PaintPinstripe() {
  constexpr QSize tile(192, 192);
  constexpr double distance = 24;
  return Shade(tile, 2, [&](double x, double y) {
    const double place = std::fmod(x, distance);
    const double weave = 0.012 * std::sin(std::numbers::pi * (x + y)) +
                         0.010 * (UnitOf(Scatter(std::uint64_t(y))) - 0.5) +
                         0.010 * (UnitOf(Scatter(std::uint64_t(x) + 999)) - 0.5);
    const Rgb cloth = Mix(Hex(0xFFE3EE), Hex(0xFFEDF4), 0.5 - 0.5 * std::cos(2 * std::numbers::pi * place / distance));
    const double rose = LineInk(place - 6, 1.5);
    const double pale = LineInk(place - 18, 1.0);
    return Mix(Mix(cloth, Hex(0xF0A3C4), 0.75 * rose), Hex(0xFFFFFF), 0.8 * pale) * (1 + weave);
  });
}
