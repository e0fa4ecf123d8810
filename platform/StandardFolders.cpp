#include "StandardFolders.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QStandardPaths>
#include <QTemporaryFile>
#include <optional>

namespace {

// Such a folder is sealed: what is written into it breaks its signature, and goes when a new version takes its place.
bool IsInBundle(const QString& programFolder) {
  return programFolder.endsWith(QLatin1String("/Contents/MacOS"));
}

// Permission bits alone don't tell: the folder may lie on a medium that can't be written.
bool CanWriteInto(const QString& folder) {
  QTemporaryFile probe(folder + QStringLiteral("/corvane-XXXXXX"));
  return probe.open();
}

std::optional<QByteArray> BytesOf(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return std::nullopt;
  return file.readAll();
}

void BringUpToDate(const QString& from, const QString& to) {
  const std::optional<QByteArray> bytes = BytesOf(from);
  if (!bytes || bytes == BytesOf(to)) return;
  QSaveFile file(to);
  if (file.open(QIODevice::WriteOnly) && file.write(*bytes) == bytes->size()) file.commit();
}

}  // namespace

QString InstalledFolder(const QString& programFolder) {
  return IsInBundle(programFolder) ? QDir::cleanPath(programFolder + QStringLiteral("/../Resources")) : programFolder;
}

void FillAppFolder(const QString& source, const QString& target) {
  for (const QString& folder : {QStringLiteral("samples"), QStringLiteral("icons")}) {
    const QDir from(source + u'/' + folder);
    const QDir to(target + u'/' + folder);
    if (!from.exists()) continue;
    QDir().mkpath(to.path());
    const bool isUsers = folder == u"icons";  // what has come there since may bear the same name
    for (const QString& name : from.entryList(QDir::Files | QDir::Hidden))
      if (!isUsers || !to.exists(name)) BringUpToDate(from.filePath(name), to.filePath(name));
  }
  const QString help = QStringLiteral("/cvn2.hlp");
  BringUpToDate(source + help, target + help);
}

HostStandardFolders::HostStandardFolders()
    : HostStandardFolders(QCoreApplication::applicationDirPath(),
                          QStandardPaths::writableLocation(QStandardPaths::AppDataLocation)) {}

HostStandardFolders::HostStandardFolders(const QString& programFolder, const QString& userFolder)
    : programFolder_(programFolder), userFolder_(userFolder) {}

QString HostStandardFolders::Desktop() const {
  return QDir::toNativeSeparators(QStandardPaths::writableLocation(QStandardPaths::DesktopLocation));
}

QString HostStandardFolders::AppPath() {
  if (appPath_.isEmpty()) {
    QString folder = programFolder_;
    if (IsInBundle(folder) || !CanWriteInto(folder)) {
      folder = userFolder_;
      QDir().mkpath(folder);
      FillAppFolder(InstalledFolder(programFolder_), folder);
    }
    // A console may have started the program with a small letter for its drive, which no address of a page has.
    if (folder.size() > 1 && folder[1] == u':') folder[0] = folder[0].toUpper();
    appPath_ = QDir::toNativeSeparators(folder);
  }
  return appPath_;
}
