#pragma once

#include "Shell.h"

// The desktop's own shell: the shell call on Windows, the desktop's opener command elsewhere. File names are passed as
// they are, never through a command line.
class HostShell : public Shell {
 public:
  // An opener that is still at work after `patienceMs` has found something to open the file with.
  explicit HostShell(int patienceMs = 2000) : patienceMs_(patienceMs) {}

  int OpenFile(QWidget* owner, const QString& file, const QString& folder, ShowMode mode) override;
  bool StartProgram(const QString& path, ShowMode mode) override;
  bool MoveToTrash(const QString& path) override;
  bool RunsWindowsPrograms() const override;

 private:
  [[maybe_unused]] int patienceMs_;
};
