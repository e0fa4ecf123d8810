// The theme of hearts: its tile and the banner above the page.
#include "Hearts.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "Painters.h"
#include "PeriodicNoise.h"
#include "Seeded.h"
#include "Tile.h"

QPainterPath HeartOutline() {
  QPainterPath path(QPointF(0, 0.92));
  path.cubicTo(-0.30, 0.62, -1.0, 0.20, -1.0, -0.34);
  path.cubicTo(-1.0, -0.72, -0.74, -0.92, -0.48, -0.92);
  path.cubicTo(-0.24, -0.92, -0.08, -0.78, 0, -0.56);
  path.cubicTo(0.08, -0.78, 0.24, -0.92, 0.48, -0.92);
  path.cubicTo(0.74, -0.92, 1.0, -0.72, 1.0, -0.34);
  path.cubicTo(1.0, 0.20, 0.30, 0.62, 0, 0.92);
  path.closeSubpath();
  return path;
}

namespace {

struct PlacedHeart {
  QPointF middle;
  double size;
  double turn;
};

// Hearts of three sizes, the large ones first, each as far from the others as its size asks for.
std::vector<PlacedHeart> ScatteredHearts(QSize tile) {
  Seeded random(14);
  std::vector<PlacedHeart> hearts;
  const auto distance = [tile](QPointF a, QPointF b) {
    const double dx = std::remainder(a.x() - b.x(), tile.width());
    const double dy = std::remainder(a.y() - b.y(), tile.height());
    return std::hypot(dx, dy);
  };
  for (const auto& [size, tries] : {std::pair{40.0, 4000}, {26.0, 4000}, {15.0, 6000}, {8.0, 6000}})
    for (int attempt = 0; attempt < tries; ++attempt) {
      const PlacedHeart heart{{random.Between(0, tile.width()), random.Between(0, tile.height())},
                              size * random.Between(0.9, 1.1),
                              random.Between(-28, 28)};
      const bool fits = std::all_of(hearts.begin(), hearts.end(), [&](const PlacedHeart& other) {
        return distance(heart.middle, other.middle) > 1.12 * (heart.size + other.size) + 4;
      });
      if (fits) hearts.push_back(heart);
    }
  return hearts;
}

}  // namespace

// Hearts of velvet on velvet, dark enough for a pink text.
QImage PaintHearts() {
  constexpr QSize tile(448, 448);
  constexpr int scale = 3;
  QImage canvas = NewCanvas(tile, scale, Hex(0x21000D));
  WrappedPainter painter(canvas, tile, scale);
  const QPainterPath outline = HeartOutline();
  for (const PlacedHeart& heart : ScatteredHearts(tile))
    painter.Draw(heart.middle, heart.size * 1.5, [&](QPainter& brush) {
      brush.rotate(heart.turn);
      brush.scale(heart.size, heart.size);
      QRadialGradient glow(QPointF(-0.35, -0.45), 1.7);
      glow.setColorAt(0, ToColor(Hex(0x3F061F)));
      glow.setColorAt(0.55, ToColor(Hex(0x2F0317)));
      glow.setColorAt(1, ToColor(Hex(0x260110)));
      brush.setPen(QPen(ToColor(Hex(0x5E1033), 0.65), 1.3 / heart.size));
      brush.setBrush(glow);
      brush.drawPath(outline);
      if (heart.size < 12) return;
      brush.setBrush(Qt::NoBrush);
      QPen stitches(ToColor(Hex(0x7A2149), 0.5), 1.1 / heart.size);
      stitches.setDashPattern({3, 3});
      brush.setPen(stitches);
      brush.scale(0.84, 0.84);
      brush.drawPath(outline);
    });
  const QImage drawn = Shrunk(canvas, scale);
  const CloudNoise pile(5, 4, 4, 4, 0.6);
  return Shade(tile, 1, [&](double x, double y) {
    const QRgb pixel = drawn.pixel(int(x), int(y));
    return Hex(pixel & RGB_MASK) * (1 + 0.22 * pile.At(x / tile.width(), y / tile.height()));
  });
}

namespace {

void DrawGlossyHeart(QPainter& brush, QPointF middle, double size, double turn, Rgb light, Rgb deep, Rgb edge) {
  brush.save();
  brush.translate(middle);
  brush.rotate(turn);
  brush.scale(size, size);
  const QPainterPath outline = HeartOutline();
  QRadialGradient body(QPointF(-0.3, -0.45), 1.6);
  body.setColorAt(0, ToColor(light));
  body.setColorAt(0.45, ToColor(Mix(light, deep, 0.55)));
  body.setColorAt(1, ToColor(deep));
  brush.setPen(QPen(ToColor(edge), 1.6 / size, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  brush.setBrush(body);
  brush.drawPath(outline);
  // The window that a polished heart mirrors.
  QPainterPath shine(QPointF(-0.82, -0.30));
  shine.cubicTo(-0.82, -0.62, -0.62, -0.78, -0.44, -0.78);
  shine.cubicTo(-0.30, -0.78, -0.20, -0.72, -0.16, -0.62);
  shine.cubicTo(-0.40, -0.60, -0.62, -0.48, -0.82, -0.30);
  QLinearGradient gleam(QPointF(-0.5, -0.8), QPointF(-0.4, -0.3));
  gleam.setColorAt(0, ToColor(White, 0.85));
  gleam.setColorAt(1, ToColor(White, 0.10));
  brush.setPen(Qt::NoPen);
  brush.setBrush(gleam);
  brush.drawPath(shine);
  brush.restore();
}

// Half of the garland, from the middle of the banner to its right end.
void DrawGarland(QPainter& brush) {
  constexpr Rgb ribbon = Hex(0xE8487F);
  QPainterPath wave(QPointF(36, 8));
  wave.cubicTo(62, 30, 88, 22, 110, 4);
  wave.cubicTo(130, -12, 154, -14, 172, 0);
  wave.cubicTo(184, 10, 194, 8, 195, -2);
  wave.cubicTo(195, -10, 185, -10, 184, -3);
  brush.setBrush(Qt::NoBrush);
  brush.setPen(QPen(ToColor(Hex(0x9C1446)), 3.6, Qt::SolidLine, Qt::RoundCap));
  brush.drawPath(wave);
  brush.setPen(QPen(ToColor(ribbon), 2.0, Qt::SolidLine, Qt::RoundCap));
  brush.drawPath(wave);
  QPainterPath curl(QPointF(60, 21));
  curl.cubicTo(70, 4, 88, -16, 100, -24);
  curl.cubicTo(108, -29, 116, -22, 110, -17);
  curl.cubicTo(106, -13, 101, -17, 104, -20);
  brush.setPen(QPen(ToColor(Hex(0x9C1446)), 3.2, Qt::SolidLine, Qt::RoundCap));
  brush.drawPath(curl);
  brush.setPen(QPen(ToColor(ribbon), 1.7, Qt::SolidLine, Qt::RoundCap));
  brush.drawPath(curl);
}

}  // namespace

QImage PaintHeartBanner() {
  constexpr QSize size(400, 80);
  constexpr int scale = 4;
  QImage canvas(size * scale, QImage::Format_ARGB32_Premultiplied);
  canvas.fill(Qt::transparent);
  QPainter brush(&canvas);
  brush.setRenderHint(QPainter::Antialiasing);
  brush.scale(scale, scale);
  brush.translate(size.width() / 2.0, size.height() / 2.0);
  constexpr Rgb edge = Hex(0x8A0A3A);
  for (const int side : {1, -1}) {
    brush.save();
    brush.scale(side, 1);
    DrawGarland(brush);
    brush.restore();
    // The light comes from the left for both halves, so hearts are placed, not mirrored.
    const auto heart = [&](double x, double y, double radius, double turn, Rgb light, Rgb deep) {
      DrawGlossyHeart(brush, QPointF(side * x, y), radius, side * turn, light, deep, edge);
    };
    heart(66, -6, 15, 14, Hex(0xFF8FB8), Hex(0xE0246A));
    heart(96, 21, 11, -12, Hex(0xFFA9C6), Hex(0xEE4A86));
    heart(126, -8, 12, 16, Hex(0xFF7BA6), Hex(0xD41758));
    heart(152, 13, 8.5, -14, Hex(0xFFB4CD), Hex(0xF0598F));
    heart(172, -20, 6, 12, Hex(0xFF9DBF), Hex(0xE33A78));
    heart(124, 30, 5, 10, Hex(0xFF9DBF), Hex(0xE33A78));
    heart(43, 28, 6.5, -16, Hex(0xFFB4CD), Hex(0xF0598F));
  }
  DrawGlossyHeart(brush, QPointF(0, 0), 37, 0, Hex(0xFF6F9E), Hex(0xC4063F), edge);
  brush.end();
  return canvas.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation).convertToFormat(QImage::Format_ARGB32);
}
