/* The stub of a web-pack: extracts the archive behind itself into the user's temporary folder and has the system open
   the first page there. It shows no window and no message in any case, and it deletes nothing. */
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <shellapi.h>

#include "Extract.h"

#define FIRST_PAGE "wgcard.html"

typedef struct Paths {
  char own[MAX_PATH + 1];
  char current[MAX_PATH + 1];
  char temporary[MAX_PATH + 1];
} Paths;

static int HasBackslash(const char* path) {
  while (*path != 0)
    if (*path++ == '\\') return 1;
  return 0;
}

/* Anything but full success opens nothing, warnings included. What became of the page isn't looked at. */
static void ExtractAndOpen(Paths* paths, ArchiveWork* work) {
  if (GetTempPathA(MAX_PATH, paths->temporary) == 0 || !SetCurrentDirectoryA(paths->temporary)) return;
  if (ExtractHere(paths->own, work) == ArchiveComplete)
    ShellExecuteA(NULL, NULL, FIRST_PAGE, NULL, paths->temporary, SW_SHOWMAXIMIZED);
}

static void Run(HMODULE instance) {
  HGLOBAL pathsHandle = GlobalAlloc(GHND, sizeof(Paths));
  HGLOBAL workHandle = GlobalAlloc(GHND, sizeof(ArchiveWork));
  Paths* paths = pathsHandle != NULL ? GlobalLock(pathsHandle) : NULL;
  ArchiveWork* work = workHandle != NULL ? GlobalLock(workHandle) : NULL;
  if (paths == NULL || work == NULL) return;
  GetModuleFileNameA(instance, paths->own, MAX_PATH);
  if (HasBackslash(paths->own)) {
    GetCurrentDirectoryA(MAX_PATH, paths->current);
    ExtractAndOpen(paths, work);
    SetCurrentDirectoryA(paths->current);
  }
  PostQuitMessage(0);
}

/* Whatever the system loads late comes from its own folder: the one in which the pack lies, and the temporary folder,
   are open to anybody's files. Older systems lack the calls. */
static void LoadFromTheSystemAlone(void) {
  HMODULE kernel = GetModuleHandleA("KERNEL32.dll");
  FARPROC call = GetProcAddress(kernel, "SetDllDirectoryA");
  if (call != NULL) ((BOOL(WINAPI*)(LPCSTR))(void*)call)("");
  call = GetProcAddress(kernel, "SetDefaultDllDirectories");
  if (call != NULL) ((BOOL(WINAPI*)(DWORD))(void*)call)(0x800 /* the system's folder */);
}

void __attribute__((used, noreturn)) Begin(void) {
  LoadFromTheSystemAlone();
  Run(GetModuleHandleA(NULL));
  ExitProcess(0);
}

/* The layout gives the entry point an odd address, which no function of the compiler's gets. */
__asm__(
    ".section .entry, \"x\"\n"
    ".byte 0xCC, 0xCC, 0xCC\n"
    ".globl _Start\n"
    "_Start: jmp _Begin\n"
    ".text\n");
