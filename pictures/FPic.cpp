#include "FPic.h"
