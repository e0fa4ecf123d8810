#include "WriteWhole.h"

#include <QFile>
#include <QFileInfo>

bool WriteWhole(const QString& path, const std::function<bool(QIODevice&)>& write) {
  QFile file(path);
  if (!file.open(QIODevice::WriteOnly)) return false;
  // Some disks tell only at the end that they are full.
  bool whole = write(file) && file.flush();
  file.close();
  whole = whole && file.error() == QFileDevice::NoError;
  if (!whole && QFileInfo(path).isFile()) file.remove();
  return whole;
}
