// What this process and all that descends from it hold in memory, as ProcessMemory.py tells it for another one.
#pragma once

#include <QByteArrayList>
#include <QCoreApplication>
#include <QDir>
#include <QFile>

// In megabytes; memory that several of the processes share counts once (proportional set size).
inline double MemoryOfAll(qint64 process = QCoreApplication::applicationPid()) {
  const QString folder = QStringLiteral("/proc/%1").arg(process);
  const auto read = [](const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  };
  double megabytes = 0;
  for (const QByteArray& line : read(folder + QStringLiteral("/smaps_rollup")).split('\n'))
    if (line.startsWith("Pss:")) megabytes += line.simplified().split(' ').value(1).toDouble() / 1024;
  for (const QString& thread : QDir(folder + QStringLiteral("/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot))
    for (const QByteArray& child :
         read(folder + QStringLiteral("/task/%1/children").arg(thread)).simplified().split(' '))
      if (!child.isEmpty()) megabytes += MemoryOfAll(child.toLongLong());
  return megabytes;
}
