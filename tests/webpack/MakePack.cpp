#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <cstdio>

#include "ModPackage.h"
#include "ModZip.h"
#include "Settings.h"
#include "TestPlatform.h"

// Builds a web-pack, or only the archive, from a folder of pages: make_pack WORKFOLDER FOLDER NAME [ICON], or
// make_pack --archive WORKFOLDER. ICON is the name of a built-in icon or the path of an icon file. Prints the result
// code, the size in bytes and the time in milliseconds.
int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  const QStringList arguments = QApplication::arguments();
  const bool archiveOnly = arguments.value(1) == QLatin1String("--archive");
  const bool withIcon = arguments.size() == 5;
  if (arguments.size() != (archiveOnly ? 3 : withIcon ? 5 : 4)) return 2;

  TestPlatform platform;
  Program program(platform.services);
  program.LinkTextValue = QStringLiteral("Next Page");
  program.CurIconName = withIcon ? arguments.at(4) : QStringLiteral("WP");
  QTemporaryDir appFolder;
  if (program.CurIconName.contains(u'/')) {
    // The user's own icon, where the settings window would have put it.
    program.AppPath = appFolder.path();
    QDir(program.AppPath).mkdir(QStringLiteral("icons"));
    if (!QFile::copy(program.CurIconName, appFolder.filePath(QStringLiteral("icons/own.ico")))) return 2;
    Settings::Save(platform.settings, Settings::CustomIcon, QStringLiteral("own.ico"));
    program.CurIconName = QStringLiteral("Custom");
  }
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
