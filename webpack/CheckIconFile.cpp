#include "CheckIconFile.h"

#include <QFile>

#include "AsciiText.h"
#include "ModFileOps.h"
#include "StringTable.h"

namespace {

constexpr qsizetype kHeadSize = 22;
constexpr qint64 kIconFileSize = 766;

// The first failing test's number, or 0. Bytes that the file hasn't got read as 0.
int FailingTest(const QByteArray& head, qint64 fileSize) {
  const auto byte = [&](qsizetype at) { return at < head.size() ? static_cast<unsigned char>(head.at(at)) : 0; };
  if (byte(4) != 1) return 3;
  if (byte(6) != 32 || byte(7) != 32) return 4;
  if (byte(12) != 4) return 5;
  if (byte(14) != 232 || byte(15) != 2 || fileSize != kIconFileSize) return 6;
  return 0;
}

int Check(ModFileOps& files, const QString& path) {
  if (!files.FileExists(path)) return 1;
  if (UpperAscii(path.right(3)) != QStringLiteral("ICO")) return 2;
  files.Attributes().Clear(path);
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return 7;
  const QByteArray head = file.read(kHeadSize);
  if (file.error() != QFileDevice::NoError) return 7;
  return FailingTest(head, file.size());
}

}  // namespace

int CheckIconFile(ModFileOps& Files, const QString& Path, QString& Message) {
  const int code = Check(Files, Path);
  Message = code == 0 ? QString() : StringText(TextNumber::FirstOfIconChecks + code - 1);
  if (code == 1 || code == 2) Message += QStringLiteral("\r\n") + Path;
  return code;
}
