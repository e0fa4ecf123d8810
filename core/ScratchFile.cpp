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

}  // namespace

ScratchFile::ScratchFile(const QString& folder)
    : QTemporaryFile(PathRules::Join(QFileInfo(folder).isWritable() ? folder : QDir::tempPath(), "scratch")) {}

bool ScratchFile::MoveTo(const QString& path) {
  if (!flush() || error() != QFileDevice::NoError) return false;
  // As new files are that anybody may read.
  setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
  std::error_code failure;
  std::filesystem::rename(filesystemFileName(), std::filesystem::path(path.toStdU16String()), failure);
  return !failure || Copy(*this, path);
}
