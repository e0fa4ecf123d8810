#pragma once

#include <QString>

// Tells whether a file could be opened for reading at this moment, and never waits for one.
class FileAccess {
 public:
  virtual ~FileAccess() = default;

  // False for a path that isn't there, isn't a plain file, is held by another program or may not be read.
  virtual bool CanBeRead(const QString& path) const = 0;
};

// Asks the system by opening the file.
class HostFileAccess : public FileAccess {
 public:
  bool CanBeRead(const QString& path) const override;
};
