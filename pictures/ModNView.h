#pragma once

#include <QString>

#include "fBitmap.h"

struct Program;

// The road between the picture on show and JPEG files, which always runs through files: the image is saved as a BMP,
// and that is turned into a JPEG. A file that wasn't written whole isn't there afterwards.
class ModNView {
 public:
  // Both must outlive the object.
  ModNView(Program& program, fBitmap& viewer) : program_(program), viewer_(viewer) {}

  // Makes a JPEG file of a picture file, at a quality of 5 to 100. Whether it worked shows by the file being there.
  void MakeJpeg(const QString& BmpPath, const QString& JpgPath, qint16 Quality);

  // Puts the picture through a JPEG of that quality and shows what came out, with its size in `tJSz`. False on any
  // failure, with the picture as it was. JpegCurrent is the caller's to set.
  bool CompressPicture(qint16 Quality);

  // Writes the picture to a file: the last JPEG byte for byte when JpegCurrent is set and the file is there, else a new
  // one at quality 100, with its size in `tJSz`. It takes the place of an old file when it is whole; false when it
  // never is, and the old file stays.
  bool SavePictureAsJpeg(const QString& Path);

  // The program's scratch files: the one step of undo, and the last JPEG.
  QString SnapshotPath() const;
  QString JpegPath() const;

 private:
  Program& program_;
  fBitmap& viewer_;
};

// Length of a file in KB, truncated, and at least 1.
int FileSizeKb(const QString& path);
