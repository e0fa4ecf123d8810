#pragma once

#include <QDir>
#include <QFileInfo>
#include <QString>

// The rules for paths, in one place: both "/" and "\" are understood as separators, and the platform's own is written.
namespace PathRules {

inline bool IsSeparator(QChar c) {
  return c == u'/' || c == u'\\';
}

inline bool EndsInSeparator(const QString& path) {
  return !path.isEmpty() && IsSeparator(path.back());
}

// Place of the last separator, counted from 0; -1 when there is none.
inline qsizetype LastSeparator(const QString& path) {
  qsizetype at = path.size() - 1;
  while (at >= 0 && !IsSeparator(path.at(at))) --at;
  return at;
}

// `folder`, the platform's separator and `name`. Nothing is looked at: an empty folder gives a path of the root.
inline QString Join(const QString& folder, const QString& name) {
  return folder + QDir::separator() + name;
}

// Without one separator at the end, if there is one.
inline QString DropTrailingSeparator(const QString& path) {
  return EndsInSeparator(path) ? path.chopped(1) : path;
}

// Whether a folder called `name` in `folder` lies below it, if both were there: "..", "." and "" don't, nor does a path
// that climbs out.
inline bool StaysBelow(const QString& folder, const QString& name) {
  const QString path = Join(folder, name);
  // Two that aren't there count as one to Qt.
  const bool isFolderItself = QFileInfo::exists(path) && QFileInfo(path) == QFileInfo(folder);
  return QDir::cleanPath(path).startsWith(QDir::cleanPath(folder) + u'/') && !isFolderItself;
}

}  // namespace PathRules
