#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include "FileAttributes.h"

// The small file routines on which every other room stands. They clear a file's attributes before they touch it, so
// that a read-only or hidden file never stops them; they show no message and throw nothing. A list of names is one
// string with "*" between the names. The text of a file is its bytes, unchanged.
class ModFileOps {
 public:
  // Both must outlive the object; `appPath` is read at each call.
  ModFileOps(FileAttributes& attributes, const QString& appPath) : attributes_(attributes), appPath_(appPath) {}

  // True when the attributes can be read and the path isn't a folder.
  bool FileExists(const QString& Path) const;
  bool FolderExists(const QString& Path) const;

  // Size in bytes; 0 for a missing file, any failure, and a size beyond 32 bits. The attributes stay cleared.
  qint32 FileSize(const QString& Path);

  // Makes one level of folder where there is none.
  void EnsureFolder(const QString& Path);

  void DeleteFileIfAny(const QString& Path);

  // Puts `Text` in place of the file. The old file is gone before the new one is opened. False where not all of it
  // could be written.
  bool WriteTextFile(const QString& Path, const QByteArray& Text);

  // The same by way of a second file, which lies in AppPath for that moment: where it can't be written whole, nothing
  // has changed. False then.
  bool ReplaceTextFile(const QString& Path, const QByteArray& Text);

  // ErrorCode: 0 good, 1 no such file, 3 failed; the text is "" unless 0. The attributes come back after a good read.
  QByteArray ReadTextFile(const QString& Path, int& ErrorCode);

  // Copies one file over another; a missing source changes nothing. The source's attributes stay cleared.
  void CopyFileOver(const QString& Source, const QString& Target);

  // A copy and a delete, also within one folder.
  void MoveFileOver(const QString& Source, const QString& Target);

  // Copies the files directly in Source into the new folder Target: 0 good, 1 Target is there already, 2 no Source,
  // 3 failed. Subfolders aren't copied.
  int CopyFolderFiles(const QString& Source, const QString& Target);

  // Removes the folder with all that is in it, and makes AppPath the current folder. It ends silently at the first
  // thing that can't be removed. A symbolic link is removed, never followed. AppPath and the folders above it are
  // refused.
  void RemoveTree(const QString& Path);

  // Number of files in the folder that end in "." + Extension, in any case, or of all files for "". List gets their
  // names, sorted by their capitals. A name with "*" in it is left out. Anything wrong: 0 and "".
  int ListFiles(const QString& Folder, const QString& Extension, QString& List) const;

  // Names of all files in the folder, sorted by their capitals; those with "*" are among them.
  QStringList FileNames(const QString& Folder) const;

  // Names of the subfolders, sorted by their capitals; Count is their number. Folder comes back with a separator and
  // "*.*" added, when it is a folder.
  QStringList ListFolders(QString& Folder, int& Count) const;

  // For the one who makes a folder hidden, or needs the bits themselves.
  FileAttributes& Attributes() { return attributes_; }

 private:
  bool RemoveFolder(const QString& path);
  bool RemoveFilesOf(const QString& folder);
  bool IsAppPathOrAbove(const QString& path) const;

  FileAttributes& attributes_;
  const QString& appPath_;
};

// The part behind the last separator; "" when there is no separator.
QString FileNameOf(const QString& Path);

// The text up to its first NUL, or all of it.
QString CutAtNul(const QString& Text);

// The name under which a chosen picture is copied beside the pages: its file name, each blank and whatever Windows
// can't have as "_", letters with marks composed (NFC), as a page's link names them.
QString PictureFileName(const QString& Path);
