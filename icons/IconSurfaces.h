// The surfaces on which an icon is kept. Three of them are its planes: what the user sees, the colours of the file, and
// the file's mask. Drawing keeps a pixel either see-through in all three (TransparentColor, black, white) or opaque in
// all three (its colour, its colour, black). Opening and pasting don't: then only the mask tells what is see-through.
#pragma once

#include "Surface.h"

class IconSurfaces {
 public:
  // All surfaces are the window's children. All but Pic1 and PicBig are never shown.
  explicit IconSurfaces(QWidget* window);

  Surface* const Pic1;       // in its real size; see-through is TransparentColor
  Surface* const Pic1Black;  // see-through is black
  Surface* const Pic2;       // see-through is white, the rest is black
  Surface* const PicBig;     // Pic1 seven times as large: the work area
  // Copies for undo.
  Surface* const Pic1A;
  Surface* const Pic1BlackA;
  Surface* const Pic2A;
  Surface* const PicBig2;
  // Takes the size of what is pasted or measured.
  Surface* const PicAuto;
  // Serves no purpose.
  Surface* const PicSize;

  // Wholly see-through.
  void Clear();
  void TakeSnapshot();
  void BringSnapshotBack();
  // Makes the work area from Pic1 anew.
  void ShowAtWork();
};

inline constexpr int kCellSide = 7;  // pixels of the work area for one of the icon
