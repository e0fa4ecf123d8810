/* Stands in for the page viewer: notes its command line, its folder and its show mode in C:\viewer\opened.txt, and in
   C:\viewer\seen.txt the names of the files in that folder, as a program sees them that knows all letters. */
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

static void Note(HANDLE file, const char* text) {
  DWORD done;
  WriteFile(file, text, (DWORD)lstrlenA(text), &done, NULL);
  WriteFile(file, "\n", 1, &done, NULL);
}

static void NoteFiles(void) {
  WIN32_FIND_DATAW found;
  char name[3 * MAX_PATH + 1];
  HANDLE file = CreateFileA("C:\\viewer\\seen.txt", GENERIC_WRITE, 0, NULL, CREATE_ALWAYS, 0, NULL);
  HANDLE search = FindFirstFileW(L"*", &found);
  if (search != INVALID_HANDLE_VALUE) {
    do {
      if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) continue;
      WideCharToMultiByte(CP_UTF8, 0, found.cFileName, -1, name, sizeof name, NULL, NULL);
      Note(file, name);
    } while (FindNextFileW(search, &found));
    FindClose(search);
  }
  CloseHandle(file);
}

void Start(void) {
  char folder[MAX_PATH + 1];
  char mode[2] = "?";
  STARTUPINFOA startup;
  HANDLE file = CreateFileA("C:\\viewer\\opened.txt", FILE_APPEND_DATA, 0, NULL, OPEN_ALWAYS, 0, NULL);
  GetCurrentDirectoryA(MAX_PATH, folder);
  GetStartupInfoA(&startup);
  if (startup.dwFlags & STARTF_USESHOWWINDOW) mode[0] = (char)('0' + startup.wShowWindow);
  Note(file, GetCommandLineA());
  Note(file, folder);
  Note(file, mode);
  CloseHandle(file);
  NoteFiles();
  ExitProcess(0);
}
