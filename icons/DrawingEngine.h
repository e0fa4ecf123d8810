// Turns what the mouse does on the work area into drawings on the three planes of an icon, moves the icon, and takes
// one step back. Positions are pixels of the work area, cells are pixels of the icon. Nothing here knows a window.
#pragma once

#include <QPoint>
#include <Qt>
#include <QtGlobal>

class IconSurfaces;

enum class Tool { Line, Rectangle, SolidRectangle, Ellipse, SolidEllipse };

class DrawingEngine {
 public:
  // Both must live as long as the object. `busy` is the guard of the window.
  DrawingEngine(IconSurfaces& surfaces, bool& busy) : surfaces_(surfaces), busy_(busy) {}

  Tool CurTool = Tool::Line;
  int PenWidth = 1;  // to 4
  qint32 CurColor = 0;

  // Cells of press and release; they may lie outside of the icon.
  int CellX0 = 0, CellY0 = 0, CellX1 = 0, CellY1 = 0;
  // Both ends of the rubber line. -1 as BandX1 is "no line"; so is every other negative one, whether meant or not.
  int BandX0 = 0, BandY0 = 0, BandX1 = -1, BandY1 = 0;
  bool MouseIsDown = false;

  // The cell in which something is drawn at that position of the work area.
  static QPoint CellAt(double X, double Y);
  // Sets the cell of the press, or with IsEnd that of the release. A position beyond 16 bits counts as the last one.
  void PointToCell(bool IsEnd, double X, double Y);

  void MouseDown(Qt::MouseButton button, double X, double Y);
  // With the left button alone held down it stretches the rubber line, which stands on the work area only.
  void MouseMove(Qt::MouseButtons held, double X, double Y);
  // True when something has been drawn, so that there is a step to take back.
  bool MouseUp(Qt::MouseButton button, double X, double Y);

  // Shifts the icon by one pixel: 0 right, 1 down, 2 left, 3 up. What comes in is see-through, what goes out is lost.
  void MoveImage(int Direction);

  void Undo();

 private:
  void InvertBand(int x, int y);
  void DrawDot();
  void DrawLine();
  void DrawShape();
  template <typename Draw>
  void OnEachPlane(const Draw& draw);

  IconSurfaces& surfaces_;
  bool& busy_;
};
