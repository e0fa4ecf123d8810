// The three brocades: ornaments woven in satin into a cloth of the same colour.
#include <cmath>
#include <functional>
#include <numbers>
#include <tuple>

#include "Painters.h"
#include "PeriodicNoise.h"
#include "Seeded.h"
#include "Tile.h"

namespace {

constexpr double FullTurn = 2 * std::numbers::pi;

// Draws the ornament: white is satin, black is ground.
class Ornament {
 public:
  explicit Ornament(QPainter& brush) : brush_(brush) {}

  // From its foot to its tip, bent sideways by `bow`, `width` at its broadest, with a rib left out of the satin.
  void Leaf(QPointF foot, QPointF tip, double bow, double width, bool rib = true) {
    const QPointF way = tip - foot;
    const double length = std::hypot(way.x(), way.y());
    const QPointF aside(-way.y() / length, way.x() / length);
    const QPointF low = foot + way * 0.30 + aside * bow;
    const QPointF high = foot + way * 0.75 + aside * bow;
    QPainterPath outline(foot);
    outline.cubicTo(low + aside * width * 0.75, high + aside * width * 0.55, tip);
    outline.cubicTo(high - aside * width * 0.55, low - aside * width * 0.75, foot);
    Fill(outline);
    if (!rib) return;
    QPainterPath middle(foot + way * 0.12 + aside * bow * 0.3);
    middle.quadTo(foot + way * 0.5 + aside * bow * 1.05, foot + way * 0.80 + aside * bow * 0.55);
    Cut(middle, 1.1);
  }

  // A line that winds inwards to a bead: from `middle`, at an angle and distance at which it begins.
  void Scroll(QPointF middle, double radius, double angle, double turns, double width) {
    const auto at = [&](double t) {
      const double reach = radius * std::pow(1 - 0.82 * t, 1.15);
      return middle + QPointF(std::cos(angle + FullTurn * turns * t), std::sin(angle + FullTurn * turns * t)) * reach;
    };
    Ribbon(at, width, width * 0.55);
    Bead(at(1), width * 0.85);
  }

  // A line whose width goes from the one to the other.
  void Ribbon(const std::function<QPointF(double)>& at, double from, double to) {
    constexpr int steps = 48;
    QPolygonF left;
    QPolygonF right;
    for (int step = 0; step <= steps; ++step) {
      const double t = double(step) / steps;
      const QPointF here = at(t);
      const QPointF way = at(t + 0.005) - at(t - 0.005);
      const double length = std::max(1e-6, std::hypot(way.x(), way.y()));
      const QPointF aside = QPointF(-way.y(), way.x()) / length * (std::lerp(from, to, t) / 2);
      left << here + aside;
      right.prepend(here - aside);
    }
    brush_.setPen(Qt::NoPen);
    brush_.setBrush(Qt::white);
    brush_.drawPolygon(left + right, Qt::WindingFill);
  }

  void Bead(QPointF middle, double radius) {
    QPainterPath path;
    path.addEllipse(middle, radius, radius);
    Fill(path);
  }

  void Cut(const QPainterPath& line, double width) {
    brush_.setBrush(Qt::NoBrush);
    brush_.setPen(QPen(Qt::black, width, Qt::SolidLine, Qt::RoundCap));
    brush_.drawPath(line);
  }

  void CutRing(QPointF middle, double radius, double width) {
    QPainterPath path;
    path.addEllipse(middle, radius, radius);
    Cut(path, width);
  }

  // The same on the left and on the right.
  void Mirrored(const std::function<void()>& half) {
    half();
    brush_.save();
    brush_.scale(-1, 1);
    half();
    brush_.restore();
  }

  void At(QPointF middle, const std::function<void()>& one) {
    brush_.save();
    brush_.translate(middle);
    one();
    brush_.restore();
  }

  // The same `count` times around the origin.
  void Around(int count, double first, const std::function<void()>& one) {
    for (int turn = 0; turn < count; ++turn) {
      brush_.save();
      brush_.rotate(first + 360.0 * turn / count);
      one();
      brush_.restore();
    }
  }

 private:
  // A dark rim keeps figures apart that touch.
  void Fill(const QPainterPath& outline) {
    brush_.setPen(QPen(Qt::black, 2.2));
    brush_.setBrush(Qt::white);
    brush_.drawPath(outline);
    brush_.setPen(Qt::NoPen);
    brush_.drawPath(outline);
  }

  QPainter& brush_;
};

// Draws the ornament at the tile's corner and, half a tile on, in its middle, as woven cloths have it.
Field HalfDrop(QSize tile, double reach, const std::function<void(Ornament&)>& corner,
               const std::function<void(Ornament&)>& middle) {
  constexpr int scale = 4;
  QImage canvas = NewCanvas(tile, scale, Hex(0));
  WrappedPainter painter(canvas, tile, scale);
  painter.Draw(QPointF(0, 0), reach, [&](QPainter& brush) {
    Ornament ornament(brush);
    corner(ornament);
  });
  painter.Draw(QPointF(tile.width() / 2.0, tile.height() / 2.0), reach, [&](QPainter& brush) {
    Ornament ornament(brush);
    middle(ornament);
  });
  return Field(Shrunk(canvas, scale));
}

struct Cloth {
  Rgb ground;
  Rgb satin;
  Rgb shade;
};

// Satin threads run down and lie a little higher than the ground, whose threads run across.
QImage Woven(QSize tile, const Field& satin, const Cloth& cloth, std::uint64_t seed) {
  const Field soft = satin.Blurred(1);
  const auto thread = [seed](double place, double along, int period) {
    const auto number = std::uint64_t(place);
    return PeriodicNoise(Scatter(seed + number), 12, 1).At(along / period * 12, 0.4) * 0.6 +
           UnitOf(Scatter(seed * 31 + number)) - 0.5;
  };
  return Shade(tile, 1, [&](double x, double y) {
    const double share = satin.At(x, y);
    const double relief = soft.At(x + 1.4, y + 1.4) - soft.At(x - 1.4, y - 1.4);
    const double down = thread(x, y, tile.height());
    const double across = thread(4096 + y, x, tile.width());
    const double weave = std::lerp(0.75 * across + 0.25 * down, 0.55 * down, share) * 0.018;
    const Rgb plain = Mix(cloth.ground, cloth.satin, share) * (1 + weave);
    return relief < 0 ? Mix(plain, cloth.shade, std::min(1.0, -relief * 0.9))
                      : Mix(plain, White, std::min(1.0, relief * 0.6));
  });
}

}  // namespace

// Palmettes in a net of pointed ovals, white on white.
QImage PaintLinenBrocade() {
  constexpr QSize tile(224, 320);
  const double width = tile.width();
  const double height = tile.height();
  const auto palmette = [&](Ornament& ornament) {
    ornament.Mirrored([&] {
      // The right side of the oval around this palmette; the neighbours draw the rest of the net.
      const auto net = [&](double t) {
        const double y = (t - 0.5) * height;
        return QPointF(width / 4 * (1 + std::cos(FullTurn * y / height)), y);
      };
      ornament.Ribbon(net, 5.5, 5.5);
      ornament.Ribbon([&](double t) { return net(t) - QPointF(9, 0); }, 1.6, 1.6);
      ornament.Ribbon([&](double t) { return net(t) + QPointF(9, 0); }, 1.6, 1.6);
    });
  };
  const auto flower = [&](Ornament& ornament) {
    ornament.Mirrored([&] {
      ornament.Leaf({5, 36}, {64, 42}, 12, 12);
      ornament.Leaf({5, 32}, {70, 6}, 14, 14);
      ornament.Leaf({4, 28}, {62, -32}, 13, 15);
      ornament.Leaf({3, 26}, {42, -62}, 10, 15);
      ornament.Leaf({2, 24}, {19, -82}, 5, 14);
      ornament.Scroll({24, 66}, 15, -2.2, 1.35, 5);
      ornament.Leaf({3, 52}, {40, 92}, -9, 9);
      ornament.Leaf({2, 56}, {17, 112}, -4, 9);
    });
    ornament.Leaf({0, 34}, {0, -94}, 0, 17);
    ornament.Leaf({0, 50}, {0, 122}, 0, 9);
    ornament.Bead({0, 42}, 8);
    ornament.CutRing({0, 42}, 4.2, 1.3);
    ornament.Bead({0, -106}, 4.4);
    ornament.Bead({0, -118}, 2.8);
  };
  const auto both = [&](Ornament& ornament) {
    palmette(ornament);
    flower(ornament);
  };
  const Field satin = HalfDrop(tile, 180, both, both);
  return Woven(tile, satin, {Hex(0xFCFAF5), Hex(0xFFFFFD), Hex(0xE9DFD0)}, 71);
}

// Rosettes and crosses of lilies in a net of bent ribbons, the same to all four sides.
QImage PaintLilacBrocade() {
  constexpr QSize tile(256, 256);
  const auto rosette = [](Ornament& ornament) {
    ornament.Around(4, 0, [&] {
      const QPointF corner(128, 0);
      const QPointF way(-128, 128);
      const auto edge = [&](double t) { return corner + way * t + QPointF(7, 7) * std::sin(2 * FullTurn * t); };
      ornament.Ribbon(edge, 4.5, 4.5);
      const auto beside = [&](double offset) {
        ornament.Ribbon([&](double t) { return edge(0.06 + 0.88 * t) + QPointF(offset, offset); }, 1.5, 1.5);
      };
      beside(5.5);
      beside(-5.5);
      ornament.Bead({64, 64}, 6);
      ornament.CutRing({64, 64}, 3, 1.2);
      ornament.Bead({128, 0}, 8);
      ornament.CutRing({128, 0}, 4.2, 1.3);
    });
    ornament.Around(4, 0, [&] {
      ornament.Leaf({0, -14}, {0, -70}, 0, 25);
      ornament.Mirrored([&] {
        ornament.Leaf({6, -36}, {31, -70}, -7, 10);
        ornament.Scroll({14, -88}, 9, 2.6, 1.2, 3.6);
      });
      ornament.Bead({0, -80}, 4.4);
      ornament.Bead({0, -101}, 3);
    });
    ornament.Around(4, 45, [&] {
      ornament.Leaf({0, -12}, {0, -56}, 0, 22);
      ornament.Bead({0, -65}, 3.6);
    });
    ornament.Bead({0, 0}, 16);
    ornament.CutRing({0, 0}, 11, 1.4);
    ornament.CutRing({0, 0}, 5.5, 1.4);
  };
  const auto lilies = [](Ornament& ornament) {
    ornament.Around(4, 45, [&] {
      ornament.Leaf({0, -8}, {0, -70}, 0, 15);
      ornament.Mirrored([&] {
        ornament.Leaf({3, -16}, {25, -56}, -10, 11);
        ornament.Leaf({4, -10}, {37, -33}, -7, 9);
      });
    });
    ornament.Around(4, 0, [&] {
      ornament.Leaf({0, -30}, {0, -84}, 0, 12);
      ornament.Mirrored([&] { ornament.Leaf({3, -36}, {17, -64}, -5, 7); });
      ornament.Bead({0, -93}, 3.4);
      ornament.Bead({0, -23}, 3.4);
    });
    ornament.Bead({0, 0}, 11);
    ornament.CutRing({0, 0}, 5.6, 1.3);
  };
  const Field satin = HalfDrop(tile, 135, rosette, lilies);
  return Woven(tile, satin, {Hex(0xDFD4F2), Hex(0xEEE8FA), Hex(0xC6B7E2)}, 72);
}

// Peonies and buds in the bays of winding stems.
QImage PaintPeachBrocade() {
  constexpr QSize tile(288, 352);
  const double height = tile.height();
  const double bay = tile.width() / 4.0;
  const auto vine = [&](Ornament& ornament) {
    const auto stem = [&](double t) { return QPointF(34 * std::sin(FullTurn * t), t * height); };
    const auto line = [&](double t) { return stem(t - 0.5); };
    ornament.Ribbon(line, 4.5, 4.5);
    // Leaves grow to the outside of each bend.
    for (const double t : {-0.44, -0.36, -0.28, -0.20, -0.12, -0.04}) {
      for (const int bend : {-1, 1}) {
        const double place = bend < 0 ? t : t + 0.5;
        const QPointF from = stem(place);
        ornament.Leaf(from, from + QPointF(bend * 27, -26), bend * 6, 11);
      }
    }
    // The stalk on which the flower of the bay stands.
    ornament.Ribbon(
        [&](double t) {
          const QPointF from = stem(-0.03);
          const QPointF way = QPointF(bay, -height / 4 + 30) - from;
          return from + QPointF(way.x() * t, way.y() * t * t);
        },
        4, 3.5);
  };
  const auto peony = [&](Ornament& ornament) {
    for (const auto& [count, reach, width] : {std::tuple{11, 62.0, 25.0}, {9, 46.0, 21.0}, {7, 30.0, 16.0}})
      ornament.Around(count, 8 * reach, [&] { ornament.Leaf({0, -6}, {0, -reach}, 0, width, reach > 40); });
    ornament.Bead({0, 0}, 10);
    ornament.CutRing({0, 0}, 5.5, 1.4);
  };
  const auto bud = [&](Ornament& ornament) {
    ornament.Mirrored([&] {
      ornament.Leaf({3, 38}, {56, 6}, 12, 15);
      ornament.Leaf({3, 34}, {46, -28}, 13, 19);
      ornament.Leaf({2, 32}, {25, -54}, 8, 19);
      ornament.Scroll({24, 52}, 12, -2.4, 1.3, 4.4);
    });
    ornament.Leaf({0, 34}, {0, -66}, 0, 22);
    ornament.Bead({0, 36}, 9);
    ornament.CutRing({0, 36}, 4.8, 1.3);
  };
  const auto inBay = [&](const std::function<void(Ornament&)>& flower) {
    return [&, flower](Ornament& ornament) {
      vine(ornament);
      ornament.At({bay, -height / 4}, [&] { flower(ornament); });
    };
  };
  const Field satin = HalfDrop(tile, 250, inBay(peony), inBay(bud));
  return Woven(tile, satin, {Hex(0xFCDAC3), Hex(0xFEE9DA), Hex(0xEDB896)}, 73);
}
