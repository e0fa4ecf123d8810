#include "MailAccount.h"

#ifdef Q_OS_WIN

#include <windows.h>

std::optional<QString> HostMailAccount::ReadRegString(const QString& key, const QString& value) const {
  HKEY opened = nullptr;
  if (RegOpenKeyExA(HKEY_CURRENT_USER, key.toLocal8Bit().constData(), 0, KEY_QUERY_VALUE, &opened) != ERROR_SUCCESS)
    return std::nullopt;
  char buffer[255];
  DWORD size = sizeof buffer;
  const LSTATUS result = RegQueryValueExA(opened, value.toLocal8Bit().constData(), nullptr, nullptr,
                                          reinterpret_cast<BYTE*>(buffer), &size);
  RegCloseKey(opened);
  if (result != ERROR_SUCCESS || size < 2) return std::nullopt;
  return QString::fromLocal8Bit(buffer, qsizetype(size) - 1);
}

#else

std::optional<QString> HostMailAccount::ReadRegString(const QString&, const QString&) const {
  return std::nullopt;
}

#endif
