#include "FileAccess.h"

#include <QFile>
#include <QFileInfo>

bool HostFileAccess::CanBeRead(const QString& path) const {
  // Opening a pipe would wait for its writer.
  if (!QFileInfo(path).isFile()) return false;
  QFile file(path);
  return file.open(QIODevice::ReadOnly);
}
