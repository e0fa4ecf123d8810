/* Extracts a web-pack into the current folder on this machine, as the stub does on the recipient's: stub_unpack PACK */
#include <stdio.h>
#include <stdlib.h>

#include "ArchiveReader.h"

typedef struct Files {
  FILE* pack;
  FILE* made;
} Files;

static uint32_t ReadAt(void* context, uint64_t offset, void* bytes, uint32_t count) {
  Files* files = context;
  return fseek(files->pack, (long)offset, SEEK_SET) == 0 ? (uint32_t)fread(bytes, 1, count, files->pack) : 0;
}

static int Create(void* context, const char* name, int nameIsUtf8) {
  (void)nameIsUtf8;
  return (((Files*)context)->made = fopen(name, "wb")) != NULL;
}

static int Write(void* context, const void* bytes, uint32_t count) {
  return fwrite(bytes, 1, count, ((Files*)context)->made) == count;
}

static int Close(void* context, uint16_t dosDate, uint16_t dosTime) {
  (void)dosDate;
  (void)dosTime;
  return fclose(((Files*)context)->made) == 0;
}

int main(int count, char** arguments) {
  Files files = {count == 2 ? fopen(arguments[1], "rb") : NULL, NULL};
  ArchiveIo io = {&files, ReadAt, Create, Write, Close};
  ArchiveWork* work = malloc(sizeof *work);
  if (files.pack == NULL || work == NULL || fseek(files.pack, 0, SEEK_END) != 0) return 2;
  return ExtractArchive(work, &io, (uint64_t)ftell(files.pack)) == ArchiveComplete ? 0 : 1;
}
