#include "FSplash.h"
