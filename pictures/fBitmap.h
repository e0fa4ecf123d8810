// The window that shows a picture at its own size: the picture editor's view, and the preview of the tool panel. It
// comes up without taking the keyboard away from anybody.
#pragma once

#include "PictureNotices.h"
#include "PictureState.h"
#include "ShellWindow.h"
#include "Surface.h"

class CropBand;

class fBitmap : public ShellWindow {
  Q_OBJECT

 public:
  fBitmap();

  // The picture under edit, and the scratch surface for scaling and cutting, which is never shown.
  Surface* const Pic;
  Surface* const PicX;

  PictureState State;
  PictureNotices Notices;

  // What the desktop adds to the content's size, in pixels; 0 until the window has been shown.
  QSize Border() const { return frameGeometry().size() - size(); }

  // The crop rectangle's handlers; any button drags.
  void Pic_MouseDown(QPoint at);
  void Pic_MouseMove(QPoint at);
  void Pic_MouseUp(QPoint at);

 private:
  void DrawBand(QPoint corner, QPoint opposite);

  CropBand* const band_;
};
