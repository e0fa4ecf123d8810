#include <QApplication>
#include <QElapsedTimer>
#include <cstdio>

#include "ModPackage.h"
#include "ModZip.h"
#include "TestPlatform.h"

// Builds a web-pack, or only the archive, from a folder of pages: make_pack WORKFOLDER FOLDER NAME, or
// make_pack --archive WORKFOLDER. Prints the result code, the size in bytes and the time in milliseconds.
int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  const QStringList arguments = QApplication::arguments();
  const bool archiveOnly = arguments.value(1) == QLatin1String("--archive");
  if (arguments.size() != (archiveOnly ? 3 : 4)) return 2;

  TestPlatform platform;
  Program program(platform.services);
  program.LinkTextValue = QStringLiteral("Next Page");
  program.CurIconName = QStringLiteral("WP");
  program.WorkPath = arguments.at(archiveOnly ? 2 : 1);
  QElapsedTimer clock;
  clock.start();
  qint32 size = 0;
  int code = 0;
  if (archiveOnly) {
    QString list;
    const int count = program.Files.ListFiles(program.WorkPath, QString(), list);
    code = ZipWorkFiles(program, list.split(u'*'), count);
  } else {
    code = CreateWebPack(program, arguments.at(2), arguments.at(3), size);
  }
  std::printf("%d %d %.3f\n", code, size, static_cast<double>(clock.nsecsElapsed()) / 1e6);
  return code == 0 ? 0 : 1;
}
