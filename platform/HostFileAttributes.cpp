#include "HostFileAttributes.h"

#ifdef Q_OS_WIN

#include <windows.h>

#include <QDir>

namespace {
const wchar_t* Wide(const QString& text) {
  return reinterpret_cast<const wchar_t*>(text.utf16());
}
}  // namespace

std::optional<int> HostFileAttributes::Get(const QString& path) const {
  const DWORD bits = GetFileAttributesW(Wide(QDir::toNativeSeparators(path)));
  if (path.isEmpty() || bits == INVALID_FILE_ATTRIBUTES) return std::nullopt;
  return int(bits) & (AttributeReadOnly | AttributeHidden | AttributeDirectory);
}

bool HostFileAttributes::Set(const QString& path, int attributes) {
  if (path.isEmpty()) return false;
  const DWORD bits = static_cast<DWORD>(attributes & (AttributeReadOnly | AttributeHidden));
  return SetFileAttributesW(Wide(QDir::toNativeSeparators(path)), bits ? bits : FILE_ATTRIBUTE_NORMAL);
}

#else

#include <sys/stat.h>

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace {

// Where the hidden attribute of one path stands: the list of its folder, and its own line in it.
struct HiddenLine {
  QString listFile;
  QByteArray name;
};

HiddenLine HiddenLineOf(const QString& path) {
  QString bare = path;
  while (bare.size() > 1 && bare.endsWith(u'/')) bare.chop(1);
  const QFileInfo info(bare);
  return {info.path() + QStringLiteral("/.hidden"), QFile::encodeName(info.fileName())};
}

QList<QByteArray> ReadLines(const QString& listFile) {
  QFile file(listFile);
  if (!file.open(QIODevice::ReadOnly)) return {};
  QList<QByteArray> lines = file.readAll().split('\n');
  if (!lines.isEmpty() && lines.last().isEmpty()) lines.removeLast();
  return lines;
}

bool SetHidden(const QString& path, bool hidden) {
  const HiddenLine line = HiddenLineOf(path);
  if (line.name.isEmpty()) return !hidden;
  QList<QByteArray> lines = ReadLines(line.listFile);
  if (lines.contains(line.name) == hidden) return true;
  if (hidden) {
    lines.append(line.name);
  } else {
    lines.removeAll(line.name);
    if (lines.isEmpty()) return QFile::remove(line.listFile);
  }
  QSaveFile file(line.listFile);  // the list may be the user's own, and longer than what is told here
  file.setDirectWriteFallback(true);
  return file.open(QIODevice::WriteOnly) && file.write(lines.join('\n') + '\n') > 0 && file.commit();
}

}  // namespace

std::optional<int> HostFileAttributes::Get(const QString& path) const {
  struct stat status;
  if (path.isEmpty() || ::stat(QFile::encodeName(path).constData(), &status) != 0) return std::nullopt;
  int attributes = AttributeNormal;
  if (S_ISDIR(status.st_mode)) {
    attributes |= AttributeDirectory;
  } else if (!S_ISREG(status.st_mode)) {
    return std::nullopt;  // a pipe, say, in which a reader would wait for ever
  }
  if (!(status.st_mode & S_IWUSR)) attributes |= AttributeReadOnly;
  const HiddenLine line = HiddenLineOf(path);
  if (!line.name.isEmpty() && ReadLines(line.listFile).contains(line.name)) attributes |= AttributeHidden;
  return attributes;
}

bool HostFileAttributes::Set(const QString& path, int attributes) {
  const QByteArray name = QFile::encodeName(path);
  struct stat status;
  if (path.isEmpty() || ::stat(name.constData(), &status) != 0) return false;
  mode_t mode = status.st_mode & 07777;
  if (attributes & AttributeReadOnly) {
    mode &= ~mode_t{S_IWUSR};
  } else {
    mode |= S_ISDIR(status.st_mode) ? mode_t{S_IRWXU} : mode_t{S_IWUSR};
  }
  // Someone else's file may not be changed, and needs no change when it is as wanted already.
  const bool modeSet = mode == (status.st_mode & 07777) || ::chmod(name.constData(), mode) == 0;
  return SetHidden(path, attributes & AttributeHidden) && modeSet;
}

#endif
