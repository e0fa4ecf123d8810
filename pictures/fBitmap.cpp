#include "fBitmap.h"
