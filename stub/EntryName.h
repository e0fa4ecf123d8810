/* EntryName: tells which names of archive entries Windows creates as one plain file in the current folder. */
#ifndef CORVANE_STUB_ENTRYNAME_H
#define CORVANE_STUB_ENTRYNAME_H

#include <stdint.h>

/* False for a name that leads elsewhere, names a device, or can't be a file's name. The name need not end with NUL. */
int IsPlainFileName(const char* name, uint32_t length, int isUtf8);

#endif
