#pragma once

#include "Shell.h"

// The desktop's own shell: the shell call on Windows, the desktop's opener command elsewhere. File names are passed as
// they are, never through a command line.
class HostShell : public Shell {
 public:
  int OpenFile(const QString& file, const QString& folder, ShowMode mode) override;
  bool StartProgram(const QString& path, ShowMode mode) override;
};
