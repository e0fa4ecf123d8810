#include "FTip.h"
