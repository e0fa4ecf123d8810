#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <cstdio>

#include "CopyBesidePages.h"
#include "ModZip.h"
#include "OneFile.h"
#include "PackPanel.h"
#include "PageText.h"
#include "PathRules.h"
#include "Settings.h"
#include "StringTable.h"
#include "TestPlatform.h"

namespace {

int AddPictures(const QStringList& arguments) {
  TestPlatform platform;
  Program program(platform.services);
  program.project.SavedAs(QStringLiteral("pack"), arguments.value(0));
  QString page = QStringLiteral("<html><head><title></title></head><body>");
  for (const QString& picture : arguments.mid(1))
    page += QStringLiteral("<img src=\"%1\" />").arg(CopyBesidePages(program, picture));
  page += QStringLiteral("</body></html>");
  return PutFile(program.project.PageFile(1), EncodePageText(page)) ? 0 : 1;
}

}  // namespace

// Builds a web-pack, or only the archive, from a folder of pages: make_pack WORKFOLDER FOLDER NAME [ICON], or
// make_pack --archive WORKFOLDER. ICON is the name of a built-in icon or the path of an icon file. Prints the result
// code, the size in bytes and the time in milliseconds. make_pack --add WORKFOLDER PICTURE... copies pictures beside
// the pages, as the program does, and shows them on page 1, which it writes.
// make_pack --one WORKFOLDER FILE makes one HTML file of the project.
int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  const QStringList arguments = QApplication::arguments();
  if (arguments.value(1) == QLatin1String("--add")) return AddPictures(arguments.mid(2));
  const bool oneFile = arguments.value(1) == QLatin1String("--one");
  const bool archiveOnly = arguments.value(1) == QLatin1String("--archive");
  const bool withIcon = arguments.size() == 5;
  if (arguments.size() != (archiveOnly ? 3 : withIcon ? 5 : 4)) return 2;

  TestPlatform platform;
  Program program(platform.services);
  program.LinkTextValue = QStringLiteral("Next Page");
  program.CurIconName = withIcon ? arguments.at(4) : QStringLiteral("WP");
  QTemporaryDir appFolder;
  program.AppPath = appFolder.path();
  if (program.CurIconName.contains(u'/')) {
    // The user's own icon, where the settings window would have put it.
    QDir(program.AppPath).mkdir(QStringLiteral("icons"));
    if (!QFile::copy(program.CurIconName, appFolder.filePath(QStringLiteral("icons/own.ico")))) return 2;
    Settings::Save(platform.settings, Settings::CustomIcon, QStringLiteral("own.ico"));
    program.CurIconName = QStringLiteral("Custom");
  }
  program.project.SavedAs(QStringLiteral("pack"), arguments.at(archiveOnly || oneFile ? 2 : 1));
  QElapsedTimer clock;
  qint64 size = 0;
  int code = 0;
  if (oneFile) {
    clock.start();
    code = SaveOneFile(program, arguments.at(3), QByteArray()) ? 0 : 1;
    size = QFileInfo(arguments.at(3)).size();
  } else if (archiveOnly) {
    const QStringList names = program.Files.FileNames(program.project.WorkPath());
    clock.start();
    code = ZipWorkFiles(program, names, int32_t(names.size()));
  } else {
    // Through the panel, as the user does.
    bool busy = false;
    PackPanel panel(program, busy);
    panel.tMakePath->setText(arguments.at(2));
    panel.tMakeFileName->setText(arguments.at(3));
    platform.dialogs.Answers = {MessageAnswer::Ok, MessageAnswer::No};
    if (!QFile::exists(PathRules::Join(arguments.at(2), arguments.at(3)))) platform.dialogs.Answers.removeFirst();
    clock.start();
    panel.bCreate[0]->click();
    size = QFileInfo(PathRules::Join(arguments.at(2), arguments.at(3))).size();
    for (int n = 1; n <= 7; ++n)
      if (platform.dialogs.Messages().contains(StringText(127 + n))) code = n;
  }
  std::printf("%d %lld %.3f\n", code, static_cast<long long>(size), double(clock.nsecsElapsed()) / 1e6);
  return code == 0 ? 0 : 1;
}
