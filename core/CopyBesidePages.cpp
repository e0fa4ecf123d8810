#include "CopyBesidePages.h"

#include "PathRules.h"
#include "Program.h"
#include "WindowsNames.h"

// A picture chosen out of the project's own folder is gone before it can be copied, and that is meant. For the
// recipient of a web-pack names that differ only in case are one file, so they are one here.
QString CopyBesidePages(Program& program, const QString& path) {
  QString name = NameOfTwinIn(program.project.WorkPath(), PictureFileName(path));
  const QString target = PathRules::Join(program.project.WorkPath(), name);
  program.Files.DeleteFileIfAny(target);
  program.Files.CopyFileOver(path, target);
  return name;
}
