#include "SlowModel.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <vector>

namespace {

using Color = SlowModel::Color;

constexpr Color kNothing = 0xE1E1E1, kWhite = 0xFFFFFF, kBlack = 0;
constexpr Color kTable[16] = {0x000000, 0x800000, 0x008000, 0x808000, 0x000080, 0x800080, 0x008080, 0xC0C0C0,
                              0x808080, 0xFF0000, 0x00FF00, 0xFFFF00, 0x0000FF, 0xFF00FF, 0x00FFFF, 0xFFFFFF};

int Nearest(Color color) {
  int best = 0;
  double bestDistance = 1e9;
  for (int i = 0; i < 16; ++i) {
    double distance = 0;
    for (const int shift : {0, 8, 16})
      distance += std::pow(double(color >> shift & 255) - double(kTable[i] >> shift & 255), 2);
    if (distance < bestDistance) {
      bestDistance = distance;
      best = i;
    }
  }
  return best;
}

struct Point {
  int x, y;
};

// One point for each step along the longer side, both ends included. Half way between two pixels it is the one nearer
// to the start.
std::vector<Point> LinePoints(int x0, int y0, int x1, int y1) {
  const int dx = x1 - x0, dy = y1 - y0, steps = std::max(std::abs(dx), std::abs(dy));
  std::vector<Point> points;
  const auto along = [steps](int length, int i) {
    const int away = int(std::ceil(double(std::abs(length)) * i / steps - 0.5));
    return length < 0 ? -away : away;
  };
  for (int i = 0; i <= steps; ++i)
    points.push_back(steps == 0 ? Point{x0, y0} : Point{x0 + along(dx, i), y0 + along(dy, i)});
  return points;
}

// A curve through the middles of the outermost pixels, rounded to pixels once by columns and once by rows; inside is
// what lies on it or between.
bool InEllipse(int x, int y, int left, int top, int width, int height) {
  if (x < left || y < top || x >= left + width || y >= top + height) return false;
  const double a = (width - 1) / 2.0, b = (height - 1) / 2.0;
  const double u = std::abs(x - left - a), v = std::abs(y - top - b);
  const double slack = 1e-9;
  const auto reach = [](double at, double length, double other) {
    return length == 0 ? other : other * std::sqrt(std::max(0.0, 1 - at * at / length / length));
  };
  return v - 0.5 <= reach(u, a, b) + slack || u - 0.5 <= reach(v, b, a) + slack;
}

}  // namespace

SlowModel::Cell SlowModel::CellAt(int x, int y) {
  const auto plain = [](int at, int otherwise) {
    if (at >= 0) return at / 7;
    return at % 7 == 0 ? at / 7 : otherwise;
  };
  Cell cell{};
  cell.x = plain(x, 0);
  cell.y = plain(y, cell.x);
  const bool isMiddleRow = y % 7 == 3 && y >= 14 && !(y >= 210 && y <= 223);
  if (isMiddleRow) ++cell.y;
  return cell;
}

void SlowModel::Enlarge() {
  for (int y = 0; y < 224; ++y)
    for (int x = 0; x < 224; ++x) now.work[y][x] = now.seen[y / 7][x / 7];
}

void SlowModel::InvertLine(int x0, int y0, int x1, int y1) {
  for (const Point at : LinePoints(x0, y0, x1, y1))
    if (at.x >= 0 && at.y >= 0 && at.x < 224 && at.y < 224) now.work[at.y][at.x] ^= 0xFFFFFF;
}

void SlowModel::Press(int button, int x, int y) {
  if (button == Right) return;
  first_ = CellAt(x, y);
  downX_ = x;
  downY_ = y;
  lastX_ = -1;
  isDown_ = true;
}

void SlowModel::Move(int held, int x, int y) {
  if (held != Left || !isDown_) return;
  InvertLine(downX_, downY_, x, y);
  if (lastX_ > -1) InvertLine(downX_, downY_, lastX_, lastY_);
  lastX_ = x;
  lastY_ = y;
}

void SlowModel::Put(int x, int y) {
  if (x < 0 || y < 0 || x > 31 || y > 31) return;
  const bool clears = color == kNothing;
  now.seen[y][x] = color;
  now.mask[y][x] = clears ? kWhite : kBlack;
  now.colors[y][x] = clears ? kBlack : color;
}

void SlowModel::Stamp(int x, int y) {
  static const char* const stamps[4][4] = {
      {"#"}, {"##", "##"}, {".#.", "###", ".#."}, {".##.", "####", "####", ".##."}};
  for (int row = 0; row < width; ++row)
    for (int column = 0; column < width; ++column)
      if (stamps[width - 1][row][column] == '#') Put(x - width / 2 + column, y - width / 2 + row);
}

void SlowModel::Line(Cell from, Cell to) {
  if (std::abs(to.x - from.x) <= 1) to.x = from.x;
  if (std::abs(to.y - from.y) <= 1) to.y = from.y;
  std::vector<Point> points = LinePoints(from.x, from.y, to.x, to.y);
  const bool isPoint = to.x == from.x && to.y == from.y;
  const bool isSlanted = to.x != from.x && to.y != from.y;
  if (isSlanted) points.pop_back();
  if (isPoint) points.resize(1);
  for (const Point at : points) Stamp(at.x, at.y);
}

void SlowModel::Box(Cell a, Cell b) {
  const auto inside = [&](int x, int y) {
    // Where the drag goes right or down the release cell belongs to the shape, else the press cell doesn't.
    const int left = std::min(a.x, b.x), top = std::min(a.y, b.y);
    const int right = b.x > a.x ? b.x : a.x - 1, bottom = b.y > a.y ? b.y : a.y - 1;
    if (right < left || bottom < top) return false;
    if (tool >= 3) return InEllipse(x, y, left, top, right - left + 1, bottom - top + 1);
    return x >= left && x <= right && y >= top && y <= bottom;
  };
  const bool isSolid = tool == 2 || tool == 4;
  for (int y = -8; y < 40; ++y)
    for (int x = -8; x < 40; ++x) {
      if (!inside(x, y)) continue;
      if (isSolid) Put(x, y);
      if (!inside(x - 1, y) || !inside(x + 1, y) || !inside(x, y - 1) || !inside(x, y + 1)) Stamp(x, y);
    }
}

void SlowModel::Release(int button, int x, int y) {
  isDown_ = false;
  if (button == Right) return;
  if (lastX_ > -1) InvertLine(downX_, downY_, lastX_, lastY_);
  Snapshot();
  const Cell last = CellAt(x, y);
  if (last.x == first_.x && last.y == first_.y)
    Stamp(first_.x, first_.y);
  else if (tool == 0)
    Line(first_, last);
  else
    Box(first_, last);
  Enlarge();
  canUndo = true;
}

void SlowModel::MoveImage(int direction) {
  const auto shift = [direction](Plane<32>& plane, Color empty) {
    const Plane<32> old = plane;
    for (int y = 0; y < 32; ++y)
      for (int x = 0; x < 32; ++x) {
        const int fromX = direction == 0 ? x - 1 : direction == 2 ? x + 1 : x;
        const int fromY = direction == 1 ? y - 1 : direction == 3 ? y + 1 : y;
        const bool isThere = fromX >= 0 && fromY >= 0 && fromX < 32 && fromY < 32;
        plane[y][x] = isThere ? old[fromY][fromX] : empty;
      }
  };
  shift(now.seen, kNothing);
  shift(now.colors, kBlack);
  shift(now.mask, kWhite);
  Enlarge();
  canUndo = false;
}

void SlowModel::Undo() {
  if (!canUndo) return;
  now = before_;
  canUndo = false;
}

void SlowModel::Clear() {
  for (int y = 0; y < 32; ++y)
    for (int x = 0; x < 32; ++x) {
      now.seen[y][x] = kNothing;
      now.colors[y][x] = kBlack;
      now.mask[y][x] = kWhite;
    }
  Enlarge();
  canUndo = false;
}

void SlowModel::Paste(const QImage& bitmap) {
  Snapshot();
  for (int y = 0; y < 32; ++y)
    for (int x = 0; x < 32; ++x) {
      const bool isThere = x < bitmap.width() && y < bitmap.height();
      now.seen[y][x] = isThere ? kTable[Nearest(bitmap.pixel(x, y))] : kWhite;
      now.colors[y][x] = isThere ? kTable[Nearest(bitmap.pixel(x, y))] : kBlack;
      now.mask[y][x] = kBlack;
    }
  Enlarge();
  canUndo = true;
}

void SlowModel::OpenPicture(const QImage& picture) {
  Clear();
  for (int y = 0; y < 32; ++y)
    for (int x = 0; x < 32; ++x) {
      const bool isThere = x < picture.width() && y < picture.height();
      now.seen[y][x] = isThere ? kTable[Nearest(picture.pixel(x, y))] : kWhite;
      now.colors[y][x] = isThere ? kTable[Nearest(picture.pixel(x, y))] : kBlack;
      now.mask[y][x] = isThere ? kBlack : kWhite;
    }
  Enlarge();
}

void SlowModel::OpenIcon(const QByteArray& file) {
  Clear();
  for (int y = 0; y < 32; ++y)
    for (int x = 0; x < 32; ++x) {
      const int pair = quint8(file[126 + (31 - y) * 16 + x / 2]);
      const bool isClear = quint8(file[638 + (31 - y) * 4 + x / 8]) & (128 >> x % 8);
      const Color color = kTable[x % 2 ? pair & 15 : pair >> 4];
      now.seen[y][x] = isClear ? kWhite : color;
      now.colors[y][x] = isClear ? kBlack : color;
      now.mask[y][x] = isClear ? kWhite : kBlack;
    }
  Enlarge();
}

QByteArray SlowModel::File() const {
  QByteArray file = QByteArray::fromHex(
      "0000010001002020100001000400e8020000160000002800000020000000400000000100040000000000000000000000000000000000"
      "0000000000000000");
  for (const Color color : kTable)
    for (const int shift : {0, 8, 16, 24}) file += char(color >> shift & 255);
  for (int y = 31; y >= 0; --y)
    for (int x = 0; x < 32; x += 2) file += char(Nearest(now.colors[y][x]) * 16 + Nearest(now.colors[y][x + 1]));
  for (int y = 31; y >= 0; --y)
    for (int x = 0; x < 32; x += 8) {
      int bits = 0;
      for (int i = 0; i < 8; ++i) bits = bits * 2 + (now.mask[y][x + i] == kWhite ? 1 : 0);
      file += char(bits);
    }
  return file;
}
