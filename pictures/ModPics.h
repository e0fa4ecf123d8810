// What is done to a picture: so far only the look at one before it is added to a page.
#pragma once

#include <QString>
#include <optional>

class fBitmap;
struct Program;

// Whole pixels, and the length of the file in KB, at least 1.
struct PictureSpec {
  int Width;
  int Height;
  int SizeKb;
};

class ModPics {
 public:
  // Both must outlive the object.
  ModPics(Program& program, fBitmap& viewer) : program_(program), viewer_(viewer) {}

  // Shows a picture in the viewer, which leaves `Reserved` twips of the screen free. Where it can't be read the viewer
  // is hidden, the user is told, and nothing comes back.
  std::optional<PictureSpec> LoadPictureFile(const QString& Path, int Reserved);
  void HideViewer();

 private:
  Program& program_;
  fBitmap& viewer_;
};
