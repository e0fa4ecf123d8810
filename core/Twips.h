#pragma once

// Twips and the screen's pixels: 15 twips to the pixel on both axes. A fraction of a pixel is rounded to the nearest,
// halves to the even one.

inline constexpr int kTwipsPerPixel = 15;

int TwipsToPixels(double twips);

constexpr int PixelsToTwips(int pixels) {
  return pixels * kTwipsPerPixel;
}
