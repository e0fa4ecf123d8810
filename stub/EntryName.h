/* EntryName: turns the names of archive entries into such as Windows creates as one plain file in the current folder.
 */
#ifndef CORVANE_STUB_ENTRYNAME_H
#define CORVANE_STUB_ENTRYNAME_H

#include <stdint.h>

/* Puts the name under which an entry is created into `plain`, which has room for `length` + 2 bytes, and a NUL behind
   it:
   "_" stands for each character that Windows can't have, for a dot or blank at the end, and in front of a device's
   name. 0 for a name that leads elsewhere: with a slash, backslash or NUL in it, "..", "." and none. */
int MakePlainFileName(const char* name, uint32_t length, int isUtf8, char* plain);

#endif
