// What the window's commands do.
#include "fIconMaker.h"

#include <QCloseEvent>
#include <QCursor>
#include <QHelpEvent>
#include <QIcon>
#include <QPushButton>
#include <QRadioButton>
#include <QToolTip>

#include "AsciiText.h"
#include "BusyGuard.h"
#include "Caption.h"
#include "IconColors.h"
#include "LineBar.h"
#include "ModBrowse.h"
#include "ModIcons2.h"
#include "OpenHelp.h"
#include "Program.h"
#include "StringTable.h"
#include "Swatch.h"
#include "WaitCursor.h"

namespace {

QString PlainTitle() {
  return QStringLiteral("Icon Editor");
}

bool HasIconSuffix(const QString& name) {
  return UpperAscii(name.right(4)) == u".ICO";
}

// The button's own ground, as many desktops' raised buttons have none but theirs.
void SetBackColor(QPushButton* button, const QColor& color) {
  QPalette palette = button->palette();
  palette.setColor(QPalette::Button, color);
  button->setPalette(palette);
  button->setFlat(true);
  button->setAutoFillBackground(true);
}

// As the desktop has it.
void ClearBackColor(QPushButton* button) {
  button->setPalette(QPalette());
  button->setFlat(false);
  button->setAutoFillBackground(false);
}

// The pencil's point is the picture's corner, which is the same place however many pixels a screen has.
QCursor CursorOf(Tool tool, qreal pixelRatio) {
  static const char* const names[] = {"LIN", "REC", "BOX", "CIR", "GLO"};
  constexpr int side = 32;
  const bool isKnown = tool >= Tool::Line && tool <= Tool::SolidEllipse;
  const QIcon picture(QStringLiteral(":/iconeditor/%1.svg").arg(QLatin1String(names[isKnown ? int(tool) : 0])));
  return QCursor(picture.pixmap(QSize(side, side), pixelRatio), 0, 0);
}

}  // namespace

void fIconMaker::ResetEditor() {
  Drawing.PenWidth = 1;
  Busy = false;
  Drawing.CurTool = Tool::Line;
  SetBackColor(bOps[0], PixelOf(ToolHighlight));
  bUndo->setEnabled(false);
  SetToolCursor();
  ClearImage();
}

void fIconMaker::ClearImage() {
  Surfaces.Clear();
  bUndo->setEnabled(false);
  ForgetFile();
}

void fIconMaker::ForgetFile() {
  setWindowTitle(PlainTitle());
  IconFileName.clear();
}

void fIconMaker::SetToolCursor() {
  Surfaces.PicBig->setCursor(CursorOf(Drawing.CurTool, devicePixelRatioF()));
}

void fIconMaker::ChooseTool(int Index) {
  Drawing.CurTool = Tool(Index);
  for (QPushButton* button : bOps) ClearBackColor(button);
  SetBackColor(bOps[std::size_t(Index)], PixelOf(ToolHighlight));
  SetToolCursor();
  Surfaces.PicBig->setFocus();
}

void fIconMaker::ReadLineWidth() {
  for (std::size_t index = 0; index < OpW.size(); ++index) {
    if (!OpW[index]->isChecked()) continue;
    Drawing.PenWidth = int(index) + 1;
    break;
  }
  Surfaces.PicBig->setFocus();
}

void fIconMaker::ChooseColor(qint32 color) {
  Drawing.CurColor = color;
  PicColor->SetColor(color);
}

bool fIconMaker::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::ToolTip || watched != Surfaces.PicBig) return QMainWindow::eventFilter(watched, event);
  const auto& help = *static_cast<QHelpEvent*>(event);
  const QPoint cell = DrawingEngine::CellAt(help.pos().x(), help.pos().y());
  // Until the pointer leaves what is drawn as this cell.
  QToolTip::showText(help.globalPos(), QStringLiteral("column %1, row %2").arg(cell.x() + 1).arg(cell.y() + 1),
                     Surfaces.PicBig, QRect(cell * kCellSide, QSize(kCellSide, kCellSide)));
  return true;
}

void fIconMaker::ConnectMouse() {
  Surfaces.PicBig->installEventFilter(this);
  connect(Surfaces.PicBig, &Surface::MouseDown, this,
          [this](Qt::MouseButton button, QPoint at) { Drawing.MouseDown(button, at.x(), at.y()); });
  connect(Surfaces.PicBig, &Surface::MouseMove, this,
          [this](QPoint at, Qt::MouseButtons held) { Drawing.MouseMove(held, at.x(), at.y()); });
  connect(Surfaces.PicBig, &Surface::MouseUp, this, [this](Qt::MouseButton button, QPoint at) {
    if (Drawing.MouseUp(button, at.x(), at.y())) bUndo->setEnabled(true);
  });
}

void fIconMaker::ConnectControls() {
  for (int index = 0; index < int(bOps.size()); ++index)
    connect(bOps[std::size_t(index)], &QPushButton::clicked, this, [this, index] { ChooseTool(index); });
  for (int index = 0; index < int(bMoveIm.size()); ++index)
    connect(bMoveIm[std::size_t(index)], &QPushButton::clicked, this, [this, index] {
      const BusyGuard guard(Busy);
      if (!guard) return;
      Drawing.MoveImage(index);
      bUndo->setEnabled(false);
    });
  for (int index = 0; index < int(OpW.size()); ++index) {
    connect(OpW[std::size_t(index)], &QRadioButton::clicked, this, &fIconMaker::ReadLineWidth);
    connect(LabLine[std::size_t(index)], &LineBar::clicked, this, [this, index] {
      OpW[std::size_t(index)]->setChecked(true);
      ReadLineWidth();
    });
  }
  for (Swatch* box : PCols) connect(box, &Swatch::pressed, this, [this, box] { ChooseColor(box->Color()); });
  connect(bTrans, &QPushButton::clicked, this, [this] {
    ChooseColor(TransparentColor);
    Surfaces.PicBig->setFocus();
  });
  connect(bclear, &QPushButton::clicked, this, [this] {
    ClearImage();
    Surfaces.PicBig->setFocus();
  });
  connect(bUndo, &QPushButton::clicked, this, [this] {
    bUndo->setEnabled(false);
    Drawing.Undo();
    Surfaces.PicBig->setFocus();
  });
}

void fIconMaker::mOpen() {
  const BusyGuard guard(Busy);
  if (!guard) return;
  const QString name = ShowOpenDialog(program_, this, QStringLiteral("Select Picture"),
                                      QStringLiteral("Picture Files(*.bmp;*.jpg;*.gif;*.ico)"),
                                      QStringLiteral("*.bmp;*.jpg;*.gif;*.ico"));
  if (name.isEmpty() || !program_.Files.FileExists(name)) return;
  ClearImage();
  if (!OpenWaiting(name)) program_.platform.dialogs.ShowMessage(this, StringText(TextNumber::NoIconMask));
  bUndo->setEnabled(false);
  // Any other picture is only a beginning: Save doesn't go back to it.
  if (!HasIconSuffix(name)) return;
  IconFileName = name;
  setWindowTitle(CaptionOf(PlainTitle() + QStringLiteral(" - ") + name));
}

// A large photo takes a while.
bool fIconMaker::OpenWaiting(const QString& name) {
  const WaitCursor wait;
  return OpenImage(Surfaces, name);
}

void fIconMaker::mSaveIco() {
  const BusyGuard guard(Busy);
  if (!guard) return;
  QString name = ShowSaveDialog(program_, this, QStringLiteral("Save Icon"), QStringLiteral("Icon Files(*.ico)"),
                                QStringLiteral("*.ico"), QStringLiteral("ico"));
  if (name.isEmpty()) return;
  if (program_.Files.FileExists(name)) {
    const auto answer = program_.platform.dialogs.ShowMessage(this, StringText(FixedText::ReplaceExistingFile),
                                                              MessageIcon::Question, MessageButtons::YesNo);
    if (answer != MessageAnswer::Yes) return;
    program_.Files.DeleteFileIfAny(name);
  }
  // Behind the question, so a file that has the name with the suffix is written over without one.
  if (!HasIconSuffix(name)) name += QStringLiteral(".ico");
  WriteIconFile(Surfaces, name);
  setWindowTitle(CaptionOf(PlainTitle() + QStringLiteral(" - ") + name));
  IconFileName = name;
}

void fIconMaker::mSavePlain() {
  if (!program_.Files.FileExists(IconFileName)) {
    mSaveIco();
    return;
  }
  program_.Files.DeleteFileIfAny(IconFileName);
  WriteIconFile(Surfaces, IconFileName);
}

void fIconMaker::mPaste() {
  if (PasteImage(Surfaces)) bUndo->setEnabled(true);
  ForgetFile();
}

void fIconMaker::mExit() {
  hide();
}

void fIconMaker::mIcoHelp() {
  OpenHelp(program_, this);
}

void fIconMaker::closeEvent(QCloseEvent* event) {
  // Only the user's close box; whoever else closes the window has his reasons.
  if (!event->spontaneous()) return;
  event->ignore();
  hide();
}
