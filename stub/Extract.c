#include "Extract.h"

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

typedef struct Extraction {
  HANDLE archive;
  HANDLE file; /* the one being written */
} Extraction;

static uint32_t ReadAt(void* context, uint64_t offset, void* bytes, uint32_t count) {
  Extraction* extraction = context;
  LONG high = (LONG)(offset >> 32);
  DWORD done = 0;
  if (SetFilePointer(extraction->archive, (LONG)offset, &high, FILE_BEGIN) == INVALID_SET_FILE_POINTER &&
      GetLastError() != NO_ERROR)
    return 0;
  return ReadFile(extraction->archive, bytes, count, &done, NULL) ? done : 0;
}

static HANDLE CreateNarrow(const char* name) {
  return CreateFileA(name, GENERIC_WRITE, 0, NULL, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, NULL);
}

static HANDLE CreateWide(const WCHAR* name) {
  return CreateFileW(name, GENERIC_WRITE, 0, NULL, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, NULL);
}

/* Create fails over a hidden or read-only file, so a second try comes after its attributes are gone. */
static int Create(void* context, const char* name, int nameIsUtf8) {
  Extraction* extraction = context;
  if (nameIsUtf8) {
    WCHAR wide[MAX_PATH];
    if (MultiByteToWideChar(CP_UTF8, 0, name, -1, wide, MAX_PATH) == 0) return 0;
    extraction->file = CreateWide(wide);
    if (extraction->file == INVALID_HANDLE_VALUE && SetFileAttributesW(wide, FILE_ATTRIBUTE_NORMAL))
      extraction->file = CreateWide(wide);
  } else {
    extraction->file = CreateNarrow(name);
    if (extraction->file == INVALID_HANDLE_VALUE && SetFileAttributesA(name, FILE_ATTRIBUTE_NORMAL))
      extraction->file = CreateNarrow(name);
  }
  return extraction->file != INVALID_HANDLE_VALUE;
}

static int Write(void* context, const void* bytes, uint32_t count) {
  Extraction* extraction = context;
  DWORD done = 0;
  return WriteFile(extraction->file, bytes, count, &done, NULL) && done == count;
}

static int Close(void* context, uint16_t dosDate, uint16_t dosTime) {
  Extraction* extraction = context;
  FILETIME local, universal;
  /* A time that can't be set is no reason to keep the page closed. */
  if (DosDateTimeToFileTime(dosDate, dosTime, &local) && LocalFileTimeToFileTime(&local, &universal))
    SetFileTime(extraction->file, NULL, NULL, &universal);
  return CloseHandle(extraction->file);
}

ArchiveResult ExtractHere(const char* path, ArchiveWork* work) {
  Extraction extraction;
  ArchiveIo io;
  ArchiveResult result = ArchiveDamaged;
  DWORD low, high = 0;
  extraction.archive = CreateFileA(path, GENERIC_READ, FILE_SHARE_READ, NULL, OPEN_EXISTING, 0, NULL);
  if (extraction.archive == INVALID_HANDLE_VALUE) {
    /* A path beyond the system's code page. */
    WCHAR wide[MAX_PATH + 1];
    DWORD length = GetModuleFileNameW(NULL, wide, MAX_PATH + 1);
    if (length != 0 && length <= MAX_PATH)
      extraction.archive = CreateFileW(wide, GENERIC_READ, FILE_SHARE_READ, NULL, OPEN_EXISTING, 0, NULL);
  }
  if (extraction.archive == INVALID_HANDLE_VALUE) return ArchiveDamaged;
  io.context = &extraction;
  io.readAt = ReadAt;
  io.create = Create;
  io.write = Write;
  io.close = Close;
  low = GetFileSize(extraction.archive, &high);
  if (low != INVALID_FILE_SIZE || GetLastError() == NO_ERROR)
    result = ExtractArchive(work, &io, (uint64_t)high << 32 | low);
  CloseHandle(extraction.archive);
  return result;
}
