#include "Discard.h"

#include "Program.h"

void DiscardFile(Program& program, const QString& path) {
  ModFileOps& files = program.Files;
  if (!files.FileExists(path)) return;
  files.Attributes().Clear(path);
  if (!program.platform.shell.MoveToTrash(path)) files.DeleteFileIfAny(path);
}

void DiscardFolder(Program& program, const QString& path) {
  ModFileOps& files = program.Files;
  if (files.FolderExists(path)) program.platform.shell.MoveToTrash(path);
  files.RemoveTree(path);
}
