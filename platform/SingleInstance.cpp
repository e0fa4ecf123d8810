#include "SingleInstance.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QSysInfo>
#include <filesystem>

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

// The age of the last sign of life at which a program on another machine counts as gone.
constexpr std::chrono::minutes kGone(5);

bool IsGone(const QString& host, const QString& lockFile) {
  if (host.isEmpty() || host == QSysInfo::machineHostName()) return false;
  return QFileInfo(lockFile).lastModified() < QDateTime::currentDateTimeUtc().addDuration(-kGone);
}

bool HoldsLock(QLockFile& lock) {
  lock.setStaleLockTime(0);  // age says nothing: the program may run for days
  if (lock.tryLock(0)) return true;
  if (lock.error() != QLockFile::LockFailedError) return true;  // a disk that is full or read-only holds nobody
  qint64 process = 0;
  QString host;
  QString program;
  if (!lock.getLockInfo(&process, &host, &program) && lock.tryLock(kWritingMs)) return true;
  // Nobody stands in it where the power went while it was made.
  if (lock.getLockInfo(&process, &host, &program) && !IsGone(host, lock.fileName())) return false;
  return !QFile::remove(lock.fileName()) || lock.tryLock(0) || lock.error() != QLockFile::LockFailedError;
}

}  // namespace

HostSingleInstance::HostSingleInstance() : HostSingleInstance(UserLockFile()) {}

HostSingleInstance::HostSingleInstance(const QString& lockFile, std::chrono::milliseconds beat) : lock_(lockFile) {
  alive_.setInterval(beat);
  QObject::connect(&alive_, &QTimer::timeout, [this] { Touch(); });
}

bool HostSingleInstance::Hold(QLockFile& lock) {
  if (!HoldsLock(lock)) return false;
  if (!alive_.isActive()) alive_.start();
  return true;
}

void HostSingleInstance::Touch() {
  for (const QLockFile* const lock : std::initializer_list<QLockFile*>{&lock_, folderLock_.get()}) {
    if (!lock || !lock->isLocked()) continue;
    std::error_code failure;  // on a disk that is read-only by now: nothing can be done
    std::filesystem::last_write_time(std::filesystem::path(lock->fileName().toStdU16String()),
                                     std::filesystem::file_time_type::clock::now(), failure);
  }
}

bool HostSingleInstance::Acquire() {
  return Hold(lock_);
}

bool HostSingleInstance::AcquireFolder(const QString& folder) {
  folderLock_ = std::make_unique<QLockFile>(QDir(folder).filePath(QStringLiteral(".lock")));
  if (!Hold(*folderLock_)) return false;
  // Whoever can't read who stands in it takes it for one that nobody stands in.
  if (folderLock_->isLocked())
    QFile::setPermissions(folderLock_->fileName(),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
  return true;
}
