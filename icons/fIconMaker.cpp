#include "fIconMaker.h"
