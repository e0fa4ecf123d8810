#include "WebBrowser.h"

#include <QFile>
#include <QFileInfo>

bool WebBrowser::CanBeShown(const QString& path) {
  if (!QFileInfo(path).isFile()) return false;  // opening a pipe would wait for its writer
  QFile file(path);
  char first = 0;
  return file.open(QIODevice::ReadOnly | QIODevice::Unbuffered) && file.read(&first, 1) >= 0;
}
