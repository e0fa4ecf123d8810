#include "FTools.h"
