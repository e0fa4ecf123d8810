/* ArchiveReader: extracts the zip archive at the end of a file, in bounded memory, through the callbacks of an
   ArchiveIo. Before it creates the first file it has read the whole directory and found every entry within the archive,
   apart from all others and of a known method, and no name that leads elsewhere. A name that Windows can't have is
   changed into one that it can. */
#ifndef CORVANE_STUB_ARCHIVEREADER_H
#define CORVANE_STUB_ARCHIVEREADER_H

#include <stdint.h>

#include "Inflate.h"

enum { ArchiveMaxEntries = 65535, ArchiveMaxName = 1023, ArchiveBufferSize = 16384 };
/* Of the program in front of a web-pack's archive. An archive behind as many bytes may have others behind it. */
enum { ArchiveStubSize = 0x13000 };

typedef enum {
  ArchiveComplete,  /* every entry has been written, and its checksum is right */
  ArchiveWarnings,  /* as before, but entries with a password were skipped, or there was none at all */
  ArchiveDamaged,   /* no archive, one that is refused, or one with a wrong checksum */
  ArchiveNotWritten /* a file could not be created or written */
} ArchiveResult;

typedef struct ArchiveIo {
  void* context;
  /* Reads up to `count` bytes at `offset` from the file's start; returns how many came. */
  uint32_t (*readAt)(void* context, uint64_t offset, void* bytes, uint32_t count);
  /* Creates the file, or empties the one of that name; 0 on failure. One file is open at a time. */
  int (*create)(void* context, const char* name, int nameIsUtf8);
  int (*write)(void* context, const void* bytes, uint32_t count);  /* all of them, or 0 */
  int (*close)(void* context, uint16_t dosDate, uint16_t dosTime); /* 0 on failure; the time is local */
} ArchiveIo;

/* Where an entry lies, its local header included, counted from the archive's start. */
typedef struct ArchiveRange {
  uint32_t start;
  uint32_t end;
} ArchiveRange;

typedef struct ArchiveWork {
  ArchiveIo io;
  uint64_t prefix; /* bytes in front of the archive: its offsets are counted from its own start */
  uint32_t directory;
  uint32_t directorySize;
  uint32_t entries;
  uint64_t position; /* of the compressed bytes still to be read, from the file's start */
  uint32_t compressedLeft;
  uint32_t sizeLeft;
  uint32_t checksum;
  uint32_t checksumTable[256];
  ArchiveResult fault;
  InflateWork inflate;
  char localName[ArchiveMaxName];
  char plainName[ArchiveMaxName + 2]; /* under which the entry read last is created */
  uint8_t buffer[ArchiveBufferSize];
  ArchiveRange ranges[ArchiveMaxEntries];
} ArchiveWork;

/* Extracts everything from the file of `size` bytes behind `io`. `work` needs no preparation. */
ArchiveResult ExtractArchive(ArchiveWork* work, const ArchiveIo* io, uint64_t size);

#endif
