#pragma once

// What the picture routines and the viewer's mouse handlers share; it lives as long as the viewer.
struct PictureState {
  // True when `cvtemp.jpg` is exactly the picture on show. The commands of the picture editor's window set and clear
  // it; of the routines only SavePictureAsJpeg clears it, and LoadPictureFile, which shows another picture.
  bool JpegCurrent = false;
  bool CropDefined = false;
  bool CropDragging = false;
  // The rubber rectangle in pixels of `Pic`: 0 where the button went down, 1 where it came up.
  float CropX0 = 0;
  float CropY0 = 0;
  float CropX1 = 0;
  float CropY1 = 0;
};
