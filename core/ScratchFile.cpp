#include "ScratchFile.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <filesystem>

#include "PathRules.h"

namespace {

// For a place on another disk.
bool Copy(QFile& from, const QString& path) {
  QSaveFile to(path);
  if (!from.seek(0) || !to.open(QIODevice::WriteOnly)) return false;
  QByteArray block(1 << 20, Qt::Uninitialized);
  for (;;) {
    const qint64 got = from.read(block.data(), block.size());
    if (got <= 0) return got == 0 && to.commit();
    if (to.write(block.constData(), got) != got) return false;
  }
}

// Those that a file has already or, if it is a new one, those that the user's other programs give to theirs.
QFile::Permissions PermissionsFor(const QString& path, const QString& free) {
  if (QFile::exists(path)) return QFile::permissions(path);
  QFile trial(free);
  if (!trial.open(QIODevice::NewOnly)) return QFile::ReadOwner | QFile::WriteOwner;
  const QFile::Permissions permissions = trial.permissions();
  trial.remove();
  return permissions;
}

}  // namespace

ScratchFile::ScratchFile(const QString& folder)
    : QTemporaryFile(PathRules::Join(QFileInfo(folder).isWritable() ? folder : QDir::tempPath(), "scratch")) {}

bool ScratchFile::MoveTo(const QString& path) {
  if (!flush() || error() != QFileDevice::NoError) return false;
  setPermissions(PermissionsFor(path, fileName() + '_'));
  std::error_code failure;
  std::filesystem::rename(filesystemFileName(), std::filesystem::path(path.toStdU16String()), failure);
  return !failure || Copy(*this, path);
}
