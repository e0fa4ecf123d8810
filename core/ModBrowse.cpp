#include "ModBrowse.h"

#include "Program.h"

namespace {

// Longer paths are cut off, and that is meant.
constexpr int kLongestOpenPath = 253;
constexpr int kLongestSavePath = 254;
constexpr qint32 kNoColor = -1;

QString CutPath(const QString& path) {
  QString cut = path.left(kLongestSavePath);
  if (!cut.isEmpty() && cut.back().isHighSurrogate()) cut.chop(1);  // no half of a character
  return cut;
}

}  // namespace

QString BrowseForFolder(Program& program, QWidget* Owner, const QString& Title) {
  return program.platform.dialogs.ChooseFolder(Owner, Title);
}

QString ShowOpenDialog(Program& program, QWidget* Owner, const QString& Title, const QString& Description,
                       const QString& Pattern, const QString& StartFolder) {
  const QString folder = program.Files.FolderExists(StartFolder) ? StartFolder : QString();
  return program.platform.dialogs.ChooseOpenFile(Owner, Title, {{Description, Pattern}}, folder).left(kLongestOpenPath);
}

QString ShowSaveDialog(Program& program, QWidget* Owner, const QString& Title, const QString& Description,
                       const QString& Pattern, const QString& DefaultExtension) {
  return CutPath(program.platform.dialogs.ChooseSaveFile(Owner, Title, {{Description, Pattern}}, DefaultExtension));
}

QString ShowSaveEmailDialog(Program& program, QWidget* Owner, const QString& Title) {
  const QList<FileFilter> filters = {
      {QStringLiteral("Email files(*.eml)"), QStringLiteral("*.eml")},
      {QStringLiteral("Text files(*.txt)"), QStringLiteral("*.txt")},
      {QStringLiteral("All files(*.*)"), QStringLiteral("*.*")},
  };
  return CutPath(program.platform.dialogs.ChooseSaveFile(Owner, Title, filters, QStringLiteral("eml")));
}

qint32 ShowColorDialog(Program& program, QWidget* Owner, qint32 StartColor) {
  return program.platform.dialogs.ChooseColor(Owner, StartColor, program.CustColors).value_or(kNoColor);
}
