#pragma once

#include <QRect>
#include <QString>
#include <functional>
#include <optional>

#include "ModNView.h"
#include "fBitmap.h"

struct Program;

// Width and height of a picture in pixels, length of its file in KB, at least 1.
struct PictureSpec {
  int Width;
  int Height;
  int SizeKb;
};

// What is done to a picture: loading it into the viewer, fitting that window to the screen, cropping, resizing, undo.
// A step that fails is passed over, except where a routine tells otherwise.
class ModPics {
 public:
  // Both must outlive the object.
  ModPics(Program& program, fBitmap& viewer);

  ModNView NView;

  // The screen on which the viewer opens, in pixels of the whole desktop: that of the window to which it is tied,
  // unless a test puts its own here.
  std::function<QRect()> Screen;
  // Height of the editor's frame `FrPicEdit` in twips, which the viewer leaves free below it; none until told.
  std::function<double()> FrPicEditHeight;

  // For the picture editor: shows the file above all windows and gives its numbers. False, after a message box, when
  // it can't be loaded.
  bool OpenPictureFile(const QString& Path);

  // For the tool panel: shows the file above the owner's window and leaves `Reserved` twips free at the bottom. After a
  // message box, and with the viewer hidden, nothing.
  std::optional<PictureSpec> LoadPictureFile(const QString& Path, int Reserved, QWidget* owner = nullptr);
  void HideViewer();

  // Sizes and places the viewer for a picture of W by H pixels, with `Reserved` twips left free. A title that isn't
  // empty becomes the caption; a cut window says so in its place. True if the height had to be cut.
  bool SizeViewer(qint32 W, qint32 H, double Reserved, const QString& Title);

  // Cuts the picture to the crop rectangle; to be called only with CropDefined.
  void CropPicture();
  // The percentage is of the picture on show. False, with the picture and the step back as they were, when there is no
  // memory for the result.
  bool ResizePicture(qint16 Percent);
  // One step back; a message box when there is none that can be read, and nothing while the viewer is hidden.
  void UndoPicture();

  // What the opening of the editor's window deletes: snapshot and last JPEG.
  void DeleteScratchFiles();
  // What its closing deletes: `qktemp.bmp` and `qktemp.jpg`, which nothing writes. The scratch files stay until the
  // next opening.
  void DeleteFilesAtClose();

 private:
  void SaveSnapshot();
  bool LoadSnapshot();
  // The scratch surface's image becomes the picture.
  void TakeScratch();
  bool LoadIntoPic(const QString& path);
  void ShowSize(int width, int height);
  double EditorHeight() const { return FrPicEditHeight ? FrPicEditHeight() : 0; }
  void SayLoadingFailed();

  Program& program_;
  fBitmap& viewer_;
};
