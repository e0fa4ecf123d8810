#include "GraphicsCard.h"

#include <QDir>
#include <QFile>

bool HasGraphicsCard(const QString& devices) {
#ifdef Q_OS_LINUX
  const QDir nodes(devices + QStringLiteral("/dri"), QStringLiteral("renderD*"), QDir::NoSort,
                   QDir::System | QDir::Files);
  return !nodes.isEmpty() || QFile::exists(devices + QStringLiteral("/nvidiactl"));
#else
  Q_UNUSED(devices);
  return true;
#endif
}
