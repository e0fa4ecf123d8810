#include "Twips.h"

#include "Numbers.h"

int TwipsToPixels(double twips) {
  return int(RoundEven(twips / kTwipsPerPixel));
}
