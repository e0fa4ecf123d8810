#include "TestPlatform.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

bool RefusingAccess::CanBeRead(const QString& path) const {
  return !RefusedNames.contains(QFileInfo(path).fileName()) && host_.CanBeRead(path);
}

TestProgram::TestProgram(SettingsStore* store) : platform(store) {
  program.AppPath = Path(QStringLiteral("app"));
  program.CardPath = program.AppPath + QStringLiteral("/card");
  program.WorkPath = program.CardPath;
  program.DesktopPath = Path(QStringLiteral("desktop"));
  program.CardFolder = program.DesktopPath;
  program.LinkTextValue = QStringLiteral("Next Page");
  program.CurIconName = QStringLiteral("WP");
  QDir().mkpath(program.CardPath);
  QDir().mkpath(program.DesktopPath);
  platform.folders.AppFolder = program.AppPath;
  platform.folders.DesktopPath = program.DesktopPath;
}

bool PutFile(const QString& path, const QByteArray& bytes) {
  QDir().mkpath(QFileInfo(path).path());
  QFile file(path);
  return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QByteArray FileBytes(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArrayLiteral("<missing>");
}
