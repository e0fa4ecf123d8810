#include "WebBrowser.h"
