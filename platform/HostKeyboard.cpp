#include "HostKeyboard.h"

#include <QGuiApplication>

#if defined(Q_OS_UNIX) && !defined(Q_OS_MACOS) && QT_CONFIG(xcb)
// Last, as it makes macros of everyday words.
#include <X11/XKBlib.h>

namespace {

Display* XDisplay() {
  const auto* const x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
  return x11 ? x11->display() : nullptr;
}

}  // namespace

void HostKeyboard::AskForRealReleases() {
  if (Display* const display = XDisplay()) XkbSetDetectableAutoRepeat(display, True, nullptr);
}

QList<quint32> HostKeyboard::KeysDown() {
  QList<quint32> places;
  Display* const display = XDisplay();
  if (!display) return places;
  char bits[32] = {};  // one for each of 256 key codes
  XQueryKeymap(display, bits);
  for (quint32 place = 0; place < 256; ++place)
    if (static_cast<unsigned char>(bits[place / 8]) >> (place % 8) & 1) places.append(place);
  return places;
}

#else

void HostKeyboard::AskForRealReleases() {}
QList<quint32> HostKeyboard::KeysDown() {
  return {};
}

#endif
