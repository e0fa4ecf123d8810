#include "FSets.h"
