// A file that is written out of sight and then takes its place as a whole. What isn't moved leaves nothing behind, and
// where the system can make files without a name, neither does a program that is killed.
#pragma once

#include <QTemporaryFile>

class ScratchFile : public QTemporaryFile {
 public:
  // Lies in `folder`, best on the disk of its later place; in the system's folder for such files where there is none of
  // that name.
  explicit ScratchFile(const QString& folder);

  // Puts the file in place of whatever file is there; false where that can't be done or something hasn't been written.
  // Nothing may be written after it.
  bool MoveTo(const QString& path);
};
