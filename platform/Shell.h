#pragma once

#include <QString>

class QWidget;

enum class ShowMode { Normal, Maximised };

// Hands files and programs to the desktop.
class Shell {
 public:
  // A result of OpenFile below this is a failure.
  static constexpr int kFirstSuccess = 33;

  virtual ~Shell() = default;

  // Opens `file`, a bare name in `folder`, a whole path or an https address, with whatever the desktop has for it;
  // `folder` becomes the working folder, "" leaves it as it is. What the desktop itself has to say or to ask meanwhile
  // stands before the window of `owner`; null is none. Where the desktop takes no such wishes, `owner` and `mode` are
  // passed over.
  virtual int OpenFile(QWidget* owner, const QString& file, const QString& folder, ShowMode mode) = 0;

  // Starts the program at `path` without arguments and doesn't wait for it; false when it can't be started.
  // `mode` as above.
  virtual bool StartProgram(const QString& path, ShowMode mode) = 0;

  // Puts a file or a folder where the desktop keeps what was thrown away. False, and it stays, where there is no such
  // place for it.
  virtual bool MoveToTrash(const QString& path) = 0;

  // Whether the system itself runs programs for Windows.
  virtual bool RunsWindowsPrograms() const = 0;
};
