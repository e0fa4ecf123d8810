// The small pictures that the fuzzer AFL++ offers as a beginning, one or more of each of nine formats, where the system
// has them.
#pragma once

#include <QDirIterator>
#include <QFile>
#include <QList>
#include <QString>
#include <algorithm>

struct PublicSeed {
  QString kind;  // the name's ending
  QByteArray name;
  QByteArray bytes;
};

// In the order of their names; nothing where the package with them isn't installed.
inline QList<PublicSeed> PublicSeeds() {
  QList<PublicSeed> seeds;
  QDirIterator files(QStringLiteral("/usr/share/doc/afl++-doc/afl/testcases/images"), QDir::Files,
                     QDirIterator::Subdirectories);
  while (files.hasNext()) {
    QFile file(files.next());
    if (!file.open(QIODevice::ReadOnly)) continue;
    seeds += {files.fileInfo().suffix(), files.fileName().toUtf8(), file.readAll()};
  }
  std::sort(seeds.begin(), seeds.end(), [](const PublicSeed& a, const PublicSeed& b) { return a.name < b.name; });
  return seeds;
}
