// The window that shows a picture at its own size: the picture editor's view, and the preview of the tool panel. It
// comes up without taking the keyboard away from anybody.
#pragma once

#include <QMargins>
#include <optional>

#include "PictureNotices.h"
#include "PictureState.h"
#include "ShellWindow.h"
#include "Surface.h"

class CropBand;
class QWindow;
class ViewerScroll;

class fBitmap : public ShellWindow {
  Q_OBJECT

 public:
  fBitmap();

  // The picture under edit, and the scratch surface for scaling and cutting, which is never shown.
  Surface* const Pic;
  Surface* const PicX;

  PictureState State;
  PictureNotices Notices;

  // What the desktop adds to the content's size, in pixels. Before the window has been shown it is taken to be what is
  // added to another window on show, best to the one to which this is tied; 0 when there is none.
  QSize Border() const;

  // Moves the corner of the frame there, whether it is there already or comes with the first showing.
  void MoveFrame(QPoint corner);

  // Ties the window to another one, above which it stays and on whose screen it opens; null sets it free.
  void TieTo(QWidget* owner);
  // That window, or null.
  QWindow* Owner() const;

  // The crop rectangle's handlers; any button drags.
  void Pic_MouseDown(QPoint at);
  void Pic_MouseMove(QPoint at);
  void Pic_MouseUp(QPoint at);

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void DrawBand(QPoint corner, QPoint opposite);
  // Those of this window, or while it has none of another one on show that has.
  std::optional<QMargins> Edges() const;

  CropBand* const band_;
  ViewerScroll* const scroll_;
};
