#include "Twips.h"

#include "Numbers.h"

int TwipsToPixels(double twips) {
  return static_cast<int>(RoundEven(twips / kTwipsPerPixel));
}
