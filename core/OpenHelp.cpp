#include "OpenHelp.h"

#include <QFile>

#include "PathRules.h"
#include "Program.h"
#include "StringTable.h"

namespace {

constexpr int firstSuccess = 32;

// The help file is HTML under a name that no desktop knows, so that it is shown as a copy with a name that all know.
// It lies in a folder of the user's own: in one that all share the next user could neither replace nor make it.
QString ViewedCopy(const QString& appPath, const QString& path) {
  const QString copy = PathRules::Join(appPath, QStringLiteral("corvane-help.html"));
  QFile::remove(copy);
  return QFile::copy(path, copy) ? copy : path;
}

}  // namespace

void OpenHelp(Program& program, QWidget* Owner) {
  const QString path = PathRules::Join(program.AppPath, QStringLiteral("cvn2.hlp"));
  if (!program.Files.FileExists(path)) {
    program.platform.dialogs.ShowMessage(Owner, StringText(TextNumber::HelpFileMissing));
    return;
  }
  if (program.platform.shell.OpenFile(nullptr, ViewedCopy(program.AppPath, path), QString(), ShowMode::Normal) <
      firstSuccess)
    program.platform.dialogs.ShowMessage(Owner, StringText(TextNumber::HelpFileNotOpened));
}
