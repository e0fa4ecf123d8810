#include "DrawingEngine.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "BusyGuard.h"
#include "IconColors.h"
#include "IconSurfaces.h"
#include "Numbers.h"
#include "RasterCalls.h"

namespace {

// A step of the mouse far outside must not become a line of billions of pixels.
int Position(double at) {
  using Limits = std::numeric_limits<qint16>;
  return int(RoundEven(std::clamp(at, double(Limits::min()), double(Limits::max()))));
}

enum class Axis { X, Y };

// The place within a position's cell that stands for it. A negative position that is no multiple of 7 has none, and the
// last one found stays. The middle row of a cell comes out one pixel too far, and falls into the next cell; its middle
// column doesn't.
int PlaceInCell(int position, Axis axis, int last) {
  if (position >= 0 && position <= 6) return 0;
  if (position >= 7 && position <= 13) return 10;
  if (position >= 217 && position <= 223) return 220;
  if (position >= 210 && position <= 216) return 213;
  const int rest = position % kCellSide;
  if (rest < 0) return last;
  if (rest < 3) return position + (3 - rest);
  if (rest > 3) return position - (rest - 3);
  return axis == Axis::X ? position : position + 1;
}

int CellOf(int place) {
  return int(RoundEven(double(place) / kCellSide));
}

// A line that leaves its row or column by one cell is meant to be straight.
bool IsNear(int cell, int other) {
  return other - 1.2 < cell && cell < other + 1.2;
}

QImage Shifted(const QImage& image, int direction, QRgb empty) {
  constexpr QPoint steps[] = {{1, 0}, {0, 1}, {-1, 0}, {0, -1}};
  QImage shifted(image.size(), QImage::Format_RGB32);
  shifted.fill(empty);
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x) SetPixel(shifted, QPoint(x, y) + steps[direction], image.pixel(x, y));
  return shifted;
}

constexpr qint32 kOpaque = 0x000000, kSeeThrough = 0xFFFFFF, kBlack = 0x000000;

}  // namespace

QPoint DrawingEngine::CellAt(double X, double Y) {
  // One value for both axes: where Y has no place of its own, that of X stays.
  const int across = PlaceInCell(Position(X), Axis::X, 0), down = PlaceInCell(Position(Y), Axis::Y, across);
  return QPoint(CellOf(across), CellOf(down));
}

void DrawingEngine::PointToCell(bool IsEnd, double X, double Y) {
  const QPoint cell = CellAt(X, Y);
  (IsEnd ? CellX1 : CellX0) = cell.x();
  (IsEnd ? CellY1 : CellY0) = cell.y();
}

void DrawingEngine::MouseDown(Qt::MouseButton button, double X, double Y) {
  if (button == Qt::RightButton) return;
  PointToCell(false, X, Y);
  BandX0 = Position(X);
  BandY0 = Position(Y);
  BandX1 = -1;
  MouseIsDown = true;
}

void DrawingEngine::InvertBand(int x, int y) {
  surfaces_.PicBig->Draw(surfaces_.PicBig->rect(), [&](QImage& image) { InvertLine(image, {BandX0, BandY0}, {x, y}); });
}

void DrawingEngine::MouseMove(Qt::MouseButtons held, double X, double Y) {
  if (held != Qt::LeftButton || !MouseIsDown) return;
  const int x = Position(X), y = Position(Y);
  InvertBand(x, y);
  if (BandX1 > -1) InvertBand(BandX1, BandY1);
  BandX1 = x;
  BandY1 = y;
}

bool DrawingEngine::MouseUp(Qt::MouseButton button, double X, double Y) {
  MouseIsDown = false;
  if (button == Qt::RightButton) return false;
  const BusyGuard guard(busy_);
  if (!guard) return false;
  if (BandX1 > -1) InvertBand(BandX1, BandY1);
  surfaces_.TakeSnapshot();
  PointToCell(true, X, Y);
  if (CellX1 == CellX0 && CellY1 == CellY0)
    DrawDot();
  else if (CurTool == Tool::Line)
    DrawLine();
  else
    DrawShape();
  surfaces_.ShowAtWork();
  return true;
}

template <typename Draw>
void DrawingEngine::OnEachPlane(const Draw& draw) {
  const bool isSeeThrough = CurColor == TransparentColor;
  struct Plane {
    Surface* surface;
    qint32 color;
  };
  const Plane planes[] = {{surfaces_.Pic1, CurColor},
                          {surfaces_.Pic2, isSeeThrough ? kSeeThrough : kOpaque},
                          {surfaces_.Pic1Black, isSeeThrough ? kBlack : CurColor}};
  for (const Plane& plane : planes)
    plane.surface->Draw(plane.surface->rect(),
                        [&](QImage& image) { draw(image, Pen{PenWidth, PixelOf(plane.color)}); });
}

void DrawingEngine::DrawDot() {
  OnEachPlane([this](QImage& image, const Pen& pen) { LineTo(image, {CellX0, CellY0}, {CellX1, CellY1}, pen); });
}

void DrawingEngine::DrawLine() {
  if (IsNear(CellX1, CellX0)) CellX1 = CellX0;
  if (IsNear(CellY1, CellY0)) CellY1 = CellY0;
  // The call leaves out the end point; a straight line gets it all the same, a slanted one doesn't.
  if (CellX1 == CellX0) CellY1 += CellY1 <= CellY0 ? -1 : 1;
  if (CellY1 == CellY0) CellX1 += CellX1 <= CellX0 ? -1 : 1;
  OnEachPlane([this](QImage& image, const Pen& pen) { LineTo(image, {CellX0, CellY0}, {CellX1, CellY1}, pen); });
}

void DrawingEngine::DrawShape() {
  // To the right and down the last column and row are made up for; to the left and up the shape stays a cell smaller.
  if (CellX1 > CellX0) ++CellX1;
  if (CellY1 > CellY0) ++CellY1;
  const bool isRectangle = CurTool == Tool::Rectangle || CurTool == Tool::SolidRectangle;
  const bool isSolid = CurTool == Tool::SolidRectangle || CurTool == Tool::SolidEllipse;
  OnEachPlane([&](QImage& image, const Pen& pen) {
    DrawForm(image, isRectangle ? Form::Rectangle : Form::Ellipse, {CellX0, CellY0}, {CellX1, CellY1}, pen,
             isSolid ? Filling::Solid : Filling::Empty);
  });
}

void DrawingEngine::MoveImage(int Direction) {
  const auto move = [Direction](Surface* plane, qint32 empty) {
    plane->Draw(plane->rect(), [&](QImage& image) { image = Shifted(image, Direction, PixelOf(empty)); });
  };
  move(surfaces_.Pic1, TransparentColor);
  move(surfaces_.Pic1Black, kBlack);
  move(surfaces_.Pic2, kSeeThrough);
  surfaces_.ShowAtWork();
}

void DrawingEngine::Undo() {
  surfaces_.BringSnapshotBack();
}
