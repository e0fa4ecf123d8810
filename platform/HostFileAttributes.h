#pragma once

#include "FileAttributes.h"

// The attributes as the system at hand keeps them: real bits on Windows; elsewhere read-only is the owner's write bit
// and hidden is a line in the parent folder's ".hidden" file, which file managers honour.
class HostFileAttributes : public FileAttributes {
 public:
  std::optional<int> Get(const QString& path) const override;
  bool Set(const QString& path, int attributes) override;
};
