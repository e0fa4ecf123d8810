#include "ModEmail.h"

#include "MailUC.h"
#include "PageText.h"
#include "PathRules.h"
#include "Program.h"
#include "StringTable.h"
#include "StripPicturePaths.h"

QString PrepareCurrentEmail(Program& program, MailUC& MUC) {
  if (!program.Files.FileExists(program.project.CurPageFile())) return StringText(FixedText::PageFileNotFound);
  QByteArray names;
  const QByteArray text = StripPicturePathsOfFile(program.Files, program.project.CurPageFile(), names);
  if (text.isEmpty()) return StringText(FixedText::PageFileNotRead);
  QStringList paths;
  for (const QByteArray& bytes : names.split('*')) {
    const QString name = DecodePageName(bytes);
    // A page mustn't bring along what lies elsewhere on the disk, which it could name where a backslash parts folders.
    QString parted = name;
    if (!PathRules::StaysBelow(program.project.WorkPath(), parted.replace(u'\\', u'/'))) continue;
    paths += PathRules::Join(program.project.WorkPath(), name);
  }
  if (!MUC.PrepareEmail(text, paths.join(u'*'))) return StringText(FixedText::PageFileNotRead);
  return QString();
}
