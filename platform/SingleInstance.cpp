#include "SingleInstance.h"

#include <QDir>
#include <QStandardPaths>

namespace {

QString UserLockFile() {
  const QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
  if (!runtime.isEmpty()) return runtime + QStringLiteral("/corvane.lock");
  // The temporary folder may be shared by all users.
  return QDir::tempPath() + QStringLiteral("/corvane-") + QDir::home().dirName() + QStringLiteral(".lock");
}

}  // namespace

HostSingleInstance::HostSingleInstance() : HostSingleInstance(UserLockFile()) {}

HostSingleInstance::HostSingleInstance(const QString& lockFile) : lock_(lockFile) {
  // Age says nothing: the program may run for days.
  lock_.setStaleLockTime(0);
}

bool HostSingleInstance::Acquire() {
  return lock_.tryLock(0);
}
