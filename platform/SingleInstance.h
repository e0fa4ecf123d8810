#pragma once

#include <QLockFile>
#include <QString>
#include <QTimer>
#include <chrono>
#include <memory>

// Tells the first running program of a user from every further one.
class SingleInstance {
 public:
  virtual ~SingleInstance() = default;

  // True when no other program of this user holds the place, which is then held until the object is gone.
  virtual bool Acquire() = 0;
  // The same for a folder that no two programs may share, whoever and on whatever machine runs them.
  virtual bool AcquireFolder(const QString& folder) = 0;
};

// Holds a place with a lock file, whose time is that of the last minute in which its program was alive. Only one that
// another living program holds counts: not one that a dead process left behind, nor one that can't be made or read. A
// program on another machine can't be asked, and a lock may have come along with a folder that was copied: it is alive
// as long as its lock is no older than a few minutes.
class HostSingleInstance : public SingleInstance {
 public:
  // The user's own lock, in the runtime folder.
  HostSingleInstance();
  explicit HostSingleInstance(const QString& lockFile, std::chrono::milliseconds beat = std::chrono::minutes(1));

  bool Acquire() override;
  bool AcquireFolder(const QString& folder) override;

 private:
  bool Hold(QLockFile& lock);
  void Touch();

  QLockFile lock_;
  std::unique_ptr<QLockFile> folderLock_;
  QTimer alive_;
};
