#pragma once

#include <QLockFile>
#include <QString>

// Tells the first running program of a user from every further one.
class SingleInstance {
 public:
  virtual ~SingleInstance() = default;

  // True when no other program of this user holds the place, which is then held until the object is gone.
  virtual bool Acquire() = 0;
};

// Holds the place with a lock file; one that a dead process left behind doesn't count.
class HostSingleInstance : public SingleInstance {
 public:
  // The user's own lock, in the runtime folder.
  HostSingleInstance();
  explicit HostSingleInstance(const QString& lockFile);

  bool Acquire() override;

 private:
  QLockFile lock_;
};
