/* Extract: extracts the archive behind a Windows program into the current folder, over files of the same names. */
#ifndef CORVANE_STUB_EXTRACT_H
#define CORVANE_STUB_EXTRACT_H

#include "ArchiveReader.h"

/* `path` is the program's own. Shows nothing in any case. */
ArchiveResult ExtractHere(const char* path, ArchiveWork* work);

#endif
