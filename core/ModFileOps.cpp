#include "ModFileOps.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <limits>
#include <vector>

#include "AsciiText.h"
#include "PathRules.h"
#include "ScratchFile.h"
#include "WindowsNames.h"
#include "WriteWhole.h"

namespace {

constexpr QDir::Filters kFilesOfAnyKind = QDir::Files | QDir::Hidden | QDir::System;
constexpr QDir::Filters kFolders = QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot;

void SortByCapitals(QStringList& names) {
  struct Entry {
    QString capitals;
    QString name;
  };
  std::vector<Entry> entries;
  entries.reserve(std::size_t(names.size()));
  for (const QString& name : names) entries.push_back({UpperAscii(name), name});
  std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
    const int order = a.capitals.compare(b.capitals);
    return order != 0 ? order < 0 : a.name < b.name;
  });
  std::transform(entries.begin(), entries.end(), names.begin(), [](Entry& entry) { return std::move(entry.name); });
}

// Half of a file would pass for the whole one from then on, so it gets its name last.
bool CopyBytes(const QString& source, const QString& target) {
  QFile in(source);
  if (!in.open(QIODevice::ReadOnly)) return false;
  const auto copyTo = [&in](QIODevice& out) {
    QByteArray block(1 << 16, Qt::Uninitialized);
    qint64 got = 0;
    while ((got = in.read(block.data(), block.size())) > 0)
      if (out.write(block.constData(), got) != got) return false;
    return got == 0;
  };
  ScratchFile whole(QFileInfo(target).path());
  if (whole.open() && copyTo(whole) && whole.MoveTo(target)) return true;
  // Where the folder takes no new names, one that couldn't be deleted can still be written over.
  return QFile::exists(target) && in.seek(0) && WriteWhole(target, copyTo);
}

}  // namespace

bool ModFileOps::FileExists(const QString& Path) const {
  const auto attributes = attributes_.Get(Path);
  return attributes && !(*attributes & AttributeDirectory);
}

bool ModFileOps::FolderExists(const QString& Path) const {
  const auto attributes = attributes_.Get(Path);
  return attributes && (*attributes & AttributeDirectory);
}

// The attributes stay cleared behind it, and that is meant.
qint32 ModFileOps::FileSize(const QString& Path) {
  if (!FileExists(Path)) return 0;
  attributes_.Clear(Path);
  const qint64 size = QFileInfo(Path).size();
  return size > std::numeric_limits<qint32>::max() ? 0 : static_cast<qint32>(size);
}

void ModFileOps::EnsureFolder(const QString& Path) {
  if (!FolderExists(Path)) QDir().mkdir(Path);
}

void ModFileOps::DeleteFileIfAny(const QString& Path) {
  if (!FileExists(Path)) return;
  attributes_.Clear(Path);
  QFile::remove(Path);
}

// The old file goes before the new one is opened, and that is meant: a write that fails loses the page.
bool ModFileOps::WriteTextFile(const QString& Path, const QByteArray& Text) {
  DeleteFileIfAny(Path);
  QFile file(Path);
  if (!file.open(QIODevice::WriteOnly)) return false;
  const bool whole = file.write(Text) == Text.size() && file.flush();
  file.close();  // some disks tell only now that they are full
  return whole && file.error() == QFileDevice::NoError;
}

bool ModFileOps::ReplaceTextFile(const QString& Path, const QByteArray& Text) {
  ScratchFile second(appPath_);
  if (!second.open() || second.write(Text) != Text.size()) return false;
  if (FileExists(Path)) attributes_.Clear(Path);
  return second.MoveTo(Path);
}

// There is no code 2, and that is meant.
QByteArray ModFileOps::ReadTextFile(const QString& Path, int& ErrorCode) {
  ErrorCode = 1;
  if (!FileExists(Path)) return QByteArray();
  ErrorCode = 3;
  const int attributes = attributes_.Get(Path).value_or(AttributeNormal);
  attributes_.Clear(Path);
  QFile file(Path);
  if (!file.open(QIODevice::ReadOnly)) return QByteArray();
  QByteArray text = file.readAll();
  if (file.error() != QFileDevice::NoError) return QByteArray();
  file.close();
  attributes_.Set(Path, attributes);
  ErrorCode = 0;
  return text;
}

// The source's attributes stay cleared behind it, and the target goes first even when both are one file: both are
// meant.
void ModFileOps::CopyFileOver(const QString& Source, const QString& Target) {
  if (!FileExists(Source)) return;
  DeleteFileIfAny(Target);
  attributes_.Clear(Source);
  CopyBytes(Source, Target);
}

// A copy and a delete and never a rename, and that is meant: the source goes even when the copy failed.
void ModFileOps::MoveFileOver(const QString& Source, const QString& Target) {
  CopyFileOver(Source, Target);
  DeleteFileIfAny(Source);
}

// A target that is there already is left alone, and subfolders aren't copied: both are meant.
int ModFileOps::CopyFolderFiles(const QString& Source, const QString& Target) {
  if (FolderExists(Target)) return 1;
  if (!FolderExists(Source)) return 2;
  if (!QDir().mkdir(Target)) return 3;
  for (const QString& name : FileNames(Source))
    CopyFileOver(PathRules::Join(Source, name), PathRules::Join(Target, name));
  return 0;
}

void ModFileOps::RemoveTree(const QString& Path) {
  const QString path = PathRules::DropTrailingSeparator(Path);
  if (!FolderExists(path) || IsAppPathOrAbove(path)) return;
  const QString whole = QFileInfo(path).absoluteFilePath();
  // The process would hold the tree open where it stands in it.
  if (!appPath_.isEmpty()) QDir::setCurrent(appPath_);
  RemoveFolder(whole);
}

bool ModFileOps::IsAppPathOrAbove(const QString& path) const {
  // A link is removed and not followed, so where it leads doesn't matter.
  if (appPath_.isEmpty() || QFileInfo(path).isSymLink()) return false;
  QString folder = QFileInfo(path).canonicalFilePath();
  // A root has its separator already.
  if (!folder.endsWith(u'/')) folder += u'/';
  const QString app = QFileInfo(appPath_).canonicalFilePath();
  return !app.isEmpty() && (app + u'/').startsWith(folder);
}

bool ModFileOps::RemoveFolder(const QString& path) {
  if (QFileInfo(path).isSymLink()) return QFile::remove(path);
  attributes_.Clear(path);
  if (!RemoveFilesOf(path)) return false;
  for (;;) {
    // The listing begins anew after each folder.
    QDirIterator folders(path, kFolders);
    if (!folders.hasNext()) break;
    if (!RemoveFolder(folders.next())) return false;
  }
  return QDir().rmdir(path);
}

bool ModFileOps::RemoveFilesOf(const QString& folder) {
  for (;;) {
    QDirIterator files(folder, kFilesOfAnyKind);
    if (!files.hasNext()) return true;
    const QString file = files.next();
    if (!QFileInfo(file).isSymLink()) attributes_.Clear(file);
    if (!QFile::remove(file)) return false;
  }
}

QStringList ModFileOps::FileNames(const QString& Folder) const {
  if (!FolderExists(Folder)) return {};
  QStringList names = QDir(Folder).entryList(QDir::Files | QDir::Hidden, QDir::NoSort);
  SortByCapitals(names);
  return names;
}

int ModFileOps::ListFiles(const QString& Folder, const QString& Extension, QString& List) const {
  const QString ending = UpperAscii(u'.' + Extension);
  QStringList names = FileNames(Folder);
  names.removeIf([&](const QString& name) {
    return name.contains(u'*') || (!Extension.isEmpty() && !UpperAscii(name).endsWith(ending));
  });
  List = names.join(u'*');
  return int(names.size());
}

// Folder comes back changed, and folders whose name begins with a dot are passed over: both are meant.
QStringList ModFileOps::ListFolders(QString& Folder, int& Count) const {
  Count = 0;
  if (!FolderExists(Folder)) return {};
  const QDir dir(Folder);
  if (!PathRules::EndsInSeparator(Folder)) Folder += QDir::separator();
  Folder += QStringLiteral("*.*");
  QStringList names;
  for (const QString& name : dir.entryList(QDir::Dirs | QDir::Hidden, QDir::NoSort)) {
    if (!name.startsWith(u'.')) names.append(CutAtNul(name));
  }
  SortByCapitals(names);
  Count = int(names.size());
  return names;
}

// A path without a separator gives "", not the path, and that is meant.
QString FileNameOf(const QString& Path) {
  const qsizetype at = PathRules::LastSeparator(Path);
  return at < 0 ? QString() : Path.mid(at + 1);
}

QString CutAtNul(const QString& Text) {
  const qsizetype at = Text.indexOf(QChar(u'\0'));
  return at < 0 ? Text : Text.left(at);
}

QString PictureFileName(const QString& Path) {
  return WindowsFileName(FileNameOf(Path).normalized(QString::NormalizationForm_C).replace(u' ', u'_'));
}
