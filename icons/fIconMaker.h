// The editor for icons of 32 by 32 pixels in 16 colours. It never asks about saving: what isn't saved is gone with the
// next opening of a file, of the window itself, or with Clear. The close box only hides it.
#pragma once

#include <QMainWindow>
#include <array>

#include "DrawingEngine.h"
#include "IconSurfaces.h"

class LineBar;
class QGroupBox;
class QLabel;
class QPushButton;
class QRadioButton;
class Swatch;
struct Program;

// The colour of the button of the chosen tool.
inline constexpr qint32 ToolHighlight = 0xFF9B99;

class fIconMaker : public QMainWindow {
  Q_OBJECT

 public:
  // The program must live as long as the window.
  explicit fIconMaker(Program& program);

  // The state at opening. The colour in use, the marked line width and the highlight of another tool's button stay, and
  // need not be what is in force then.
  void ResetEditor();
  // Blanks the picture and forgets the file's name.
  void ClearImage();

  void SetToolCursor();

  void mOpen();
  void mSavePlain();
  void mSaveIco();
  void mExit();
  void mPaste();
  void mIcoHelp();

  // Guard against re-entry of drawing and of the commands that open dialogs.
  bool Busy = false;
  // The path that Save writes to, or "".
  QString IconFileName;

  IconSurfaces Surfaces{this};
  DrawingEngine Drawing{Surfaces, Busy};

  QGroupBox* FrTools = nullptr;
  QGroupBox* Frame6 = nullptr;  // shapes
  QGroupBox* Frame3 = nullptr;  // moving
  QGroupBox* Frame1 = nullptr;  // line width
  QGroupBox* Frame2 = nullptr;  // colours
  std::array<QPushButton*, 5> bOps{};
  std::array<QPushButton*, 4> bMoveIm{};  // right, down, left, up
  std::array<QRadioButton*, 4> OpW{};
  std::array<LineBar*, 4> LabLine{};
  QPushButton* bclear = nullptr;
  QPushButton* bUndo = nullptr;
  QPushButton* bTrans = nullptr;
  Swatch* PicColor = nullptr;
  std::array<Swatch*, 16> PCols{};
  // The frame of rulers round the work area: a square, and stripes over it, 16 upright ones first.
  QLabel* Label1 = nullptr;
  std::array<QLabel*, 32> Label2{};

 protected:
  void closeEvent(QCloseEvent* event) override;
  // Tells over the work area which cell the pointer is on.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void BuildMenus();
  QWidget* NewToolFrame();
  QWidget* NewShapeFrame();
  QWidget* NewMoveFrame();
  QWidget* NewLineFrame();
  QWidget* NewWorkArea();
  QWidget* NewSide();
  QWidget* NewColorFrame();
  void ConnectMouse();
  void ConnectControls();

  void ChooseTool(int Index);
  void ChooseColor(qint32 color);
  void ReadLineWidth();
  void ForgetFile();
  bool OpenWaiting(const QString& name);

  Program& program_;
};
