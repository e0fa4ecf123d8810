#include "NetworkState.h"

#include <QtGlobal>

#ifdef Q_OS_WIN

#include <windows.h>

#include <wininet.h>

bool HostNetworkState::IsOnline() const {
  DWORD flags = 0;
  return InternetGetConnectedState(&flags, 0) != FALSE;
}

bool HostNetworkState::IsConnectionProxy() const {
  DWORD flags = 0;
  InternetGetConnectedState(&flags, 0);
  return (flags & INTERNET_CONNECTION_PROXY) != 0;
}

#else

#include <QNetworkInterface>

bool HostNetworkState::IsOnline() const {
  constexpr QNetworkInterface::InterfaceFlags wanted = QNetworkInterface::IsUp | QNetworkInterface::IsRunning;
  for (const QNetworkInterface& one : QNetworkInterface::allInterfaces()) {
    const QNetworkInterface::InterfaceFlags flags = one.flags();
    if ((flags & wanted) == wanted && !(flags & QNetworkInterface::IsLoopBack) && !one.addressEntries().isEmpty())
      return true;
  }
  return false;
}

bool HostNetworkState::IsConnectionProxy() const {
  return false;
}

#endif
