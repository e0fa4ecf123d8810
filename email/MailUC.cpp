#include "MailUC.h"
