#include "FreeMemory.h"

#include <algorithm>
#include <limits>

#if defined(Q_OS_WIN)
#include <windows.h>
#elif defined(Q_OS_LINUX)
#include <sys/resource.h>
#include <unistd.h>

#include <QByteArray>
#include <QFile>
#endif

namespace {

constexpr qint64 kNobodyTells = std::numeric_limits<qint64>::max();

#ifdef Q_OS_LINUX
QByteArray TextOf(const char* path) {
  QFile file(QString::fromLatin1(path));
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// "MemAvailable:    12345 kB"
qint64 Available() {
  constexpr char name[] = "MemAvailable:";
  const QByteArray text = TextOf("/proc/meminfo");
  const qsizetype at = text.indexOf(name);
  if (at < 0) return kNobodyTells;
  const qsizetype end = text.indexOf(" kB", at);
  return text.mid(at + qsizetype(sizeof name) - 1, end - at - qsizetype(sizeof name) + 1).trimmed().toLongLong() * 1024;
}

// What is left of the process's own limit; the first number of the file is what it has, in pages.
qint64 WithinLimit() {
  rlimit limit{};
  if (getrlimit(RLIMIT_AS, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY) return kNobodyTells;
  const qint64 taken = TextOf("/proc/self/statm").split(' ').value(0).toLongLong() * sysconf(_SC_PAGESIZE);
  return std::max<qint64>(qint64(limit.rlim_cur) - taken, 0);
}
#endif

}  // namespace

qint64 FreeMemory() {
#if defined(Q_OS_WIN)
  MEMORYSTATUSEX status{};
  status.dwLength = sizeof status;
  return GlobalMemoryStatusEx(&status) ? qint64(std::min(status.ullAvailPhys, status.ullAvailVirtual)) : kNobodyTells;
#elif defined(Q_OS_LINUX)
  return std::min(Available(), WithinLimit());
#else
  return kNobodyTells;
#endif
}
