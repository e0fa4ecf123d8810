#include "Resource.h"

#include <QFile>
#include <QtGlobal>

// The blocks lie in a static library, whose resources register only when asked to.
static void RegisterBlocks() {
  Q_INIT_RESOURCE(custom);
}

QByteArray Resource(const QString& name) {
  RegisterBlocks();
  // Not a path: a name may come from the settings.
  if (name.isEmpty() || name.contains(u'/') || name.startsWith(u'.')) return QByteArray();
  QFile file(QStringLiteral(":/custom/") + name);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
