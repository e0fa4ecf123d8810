/* Stands in for the page viewer: notes its command line, its folder and its show mode in C:\viewer\opened.txt. */
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

static void Note(HANDLE file, const char* text) {
  DWORD done;
  WriteFile(file, text, (DWORD)lstrlenA(text), &done, NULL);
  WriteFile(file, "\n", 1, &done, NULL);
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
  ExitProcess(0);
}
