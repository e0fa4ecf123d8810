#include "TestPlatform.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

bool RefusingAccess::CanBeRead(const QString& path) const {
  return !RefusedNames.contains(QFileInfo(path).fileName()) && host_.CanBeRead(path);
}

std::optional<QString> FixedMailAccount::ReadRegString(const QString& key, const QString& value) const {
  const auto found = Values.constFind(key + u'|' + value);
  if (found == Values.constEnd()) return std::nullopt;
  return *found;
}

QString FixedStamps::NewGuid() {
  ++Given;
  if (!Guids.isEmpty()) return Guids.takeFirst();
  return QStringLiteral("{00000000-0000-0000-0000-%1}").arg(Given, 12, 10, QLatin1Char('0'));
}

TestProgram::TestProgram(SettingsStore* store, Sockets* net, Dialogs* boxes) : platform(store, net, boxes) {
  program.AppPath = Path(QStringLiteral("app"));
  program.project.EnterWorkspace();
  program.DesktopPath = Path(QStringLiteral("desktop"));
  program.CardFolder = program.DesktopPath;
  program.LinkTextValue = QStringLiteral("Next Page");
  program.CurIconName = QStringLiteral("WP");
  QDir().mkpath(program.project.CardPath());
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
