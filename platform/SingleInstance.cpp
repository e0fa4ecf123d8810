#include "SingleInstance.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

namespace {

QString UserLockFile() {
  const QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
  if (!runtime.isEmpty()) return runtime + QStringLiteral("/corvane.lock");
  // Not in the temporary folder, where anybody could stand in the way.
  const QString cache = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
  QDir().mkpath(cache);
  return cache + QStringLiteral("/corvane.lock");
}

// How long a program that has just made its lock may take to write into it.
constexpr int kWritingMs = 200;

bool HoldsLock(QLockFile& lock) {
  lock.setStaleLockTime(0);  // age says nothing: the program may run for days
  if (lock.tryLock(0)) return true;
  if (lock.error() != QLockFile::LockFailedError) return true;  // a disk that is full or read-only holds nobody
  qint64 process = 0;
  QString host;
  QString program;
  if (lock.getLockInfo(&process, &host, &program) || lock.tryLock(kWritingMs)) return lock.isLocked();
  if (lock.getLockInfo(&process, &host, &program)) return false;
  // Nobody stands in it: the power went while it was made.
  return !QFile::remove(lock.fileName()) || lock.tryLock(0) || lock.error() != QLockFile::LockFailedError;
}

}  // namespace

HostSingleInstance::HostSingleInstance() : HostSingleInstance(UserLockFile()) {}

HostSingleInstance::HostSingleInstance(const QString& lockFile) : lock_(lockFile) {}

bool HostSingleInstance::Acquire() {
  return HoldsLock(lock_);
}

bool HostSingleInstance::AcquireFolder(const QString& folder) {
  folderLock_ = std::make_unique<QLockFile>(QDir(folder).filePath(QStringLiteral(".lock")));
  if (!HoldsLock(*folderLock_)) return false;
  // Whoever can't read who stands in it takes it for one that nobody stands in.
  if (folderLock_->isLocked())
    QFile::setPermissions(folderLock_->fileName(),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
  return true;
}
