// Stands in for a header that Qt's packages for other systems leave out: the system's handles, as its own headers
// declare them.
#pragma once

struct tagMSG;
typedef struct tagMSG MSG;

#define CORVANE_HANDLE(name) \
  struct name##__;           \
  typedef struct name##__* name
CORVANE_HANDLE(HINSTANCE);
CORVANE_HANDLE(HDC);
CORVANE_HANDLE(HWND);
CORVANE_HANDLE(HFONT);
CORVANE_HANDLE(HPEN);
CORVANE_HANDLE(HBRUSH);
CORVANE_HANDLE(HBITMAP);
CORVANE_HANDLE(HICON);
CORVANE_HANDLE(HPALETTE);
CORVANE_HANDLE(HRGN);
CORVANE_HANDLE(HMONITOR);
#undef CORVANE_HANDLE
typedef HICON HCURSOR;
typedef long HRESULT;
