// What a web-pack holds, read by the archive library itself.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

struct PackedFile {
  QString name;
  QByteArray bytes;
};

// The files of the archive behind a web-pack's stub, in their order; none when it can't be read.
QList<PackedFile> FilesInPack(const QString& pack);
