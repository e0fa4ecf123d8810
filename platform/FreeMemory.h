#pragma once

#include <QtGlobal>

// Bytes of memory that the program can take at this moment without anybody's going to the disk for it; within the limit
// that a user has set for processes, where there is one. The largest number where the system doesn't tell.
qint64 FreeMemory();
