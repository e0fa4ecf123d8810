#pragma once

#include <QString>

// Where the user's and the program's own folders are. Paths are native and have no separator at the end.
class StandardFolders {
 public:
  virtual ~StandardFolders() = default;

  // The user's desktop folder, whether or not it is there; "" when the system has none.
  virtual QString Desktop() const = 0;

  // The one folder in which everything of the program lives; where anything can be written, it can.
  virtual QString AppPath() = 0;
};

// The real folders. The program's folder is that of the executable when the user can write there, so that a build tree
// or an unpacked folder carries all it needs along; otherwise a folder of the user's own data, which gets what was
// installed. Nothing is ever written into a bundle.
class HostStandardFolders : public StandardFolders {
 public:
  HostStandardFolders();
  // For an executable in `programFolder`, and `userFolder` where that one can't be written.
  HostStandardFolders(const QString& programFolder, const QString& userFolder);

  QString Desktop() const override;
  QString AppPath() override;

 private:
  QString programFolder_;
  QString userFolder_;
  QString appPath_;
};

// Where samples, icons and the help file were installed for an executable in `programFolder`: beside it, or in the
// resources of its bundle.
QString InstalledFolder(const QString& programFolder);

// Brings the shipped folder `samples` and the help file in `target` up to those in `source`, and puts what is missing
// into `icons`. A file comes under another name first; what else lies in `target` stays.
void FillAppFolder(const QString& source, const QString& target);
