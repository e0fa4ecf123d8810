// The icon editor told once more, as plainly as it can be: three planes of 32 by 32 numbers, the work area, one copy of
// all four for undo, and rules pixel by pixel. It shares no code with the editor; tests hold the two against each
// other.
#pragma once

#include <QByteArray>
#include <QImage>
#include <array>

class SlowModel {
 public:
  using Color = quint32;  // 0xRRGGBB
  template <int Side>
  using Plane = std::array<std::array<Color, Side>, Side>;  // rows of columns

  enum Button { Left = 1, Right = 2, Middle = 4 };

  SlowModel() { Clear(); }

  int tool = 0;
  int width = 1;
  Color color = 0xE1E1E1;
  bool canUndo = false;
  struct Planes {
    Plane<32> seen, colors, mask;
    Plane<224> work;
    bool operator==(const Planes&) const = default;
  };
  Planes now;

  void Press(int button, int x, int y);
  void Move(int held, int x, int y);
  void Release(int button, int x, int y);
  void MoveImage(int direction);
  void Undo();
  void Clear();
  void Paste(const QImage& bitmap);
  void OpenPicture(const QImage& picture);
  void OpenIcon(const QByteArray& file);  // of the editor's own form
  QByteArray File() const;

 private:
  struct Cell {
    int x, y;
  };
  static Cell CellAt(int x, int y);
  void Snapshot() { before_ = now; }
  void Enlarge();
  void InvertLine(int x0, int y0, int x1, int y1);
  void Put(int x, int y);
  void Stamp(int x, int y);
  void Line(Cell from, Cell to);
  void Box(Cell a, Cell b);

  Planes before_;
  bool isDown_ = false;
  int downX_ = 0, downY_ = 0, lastX_ = -1, lastY_ = 0;
  Cell first_{};
};
