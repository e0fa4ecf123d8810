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
  for (const QByteArray& name : names.split('*'))
    paths += PathRules::Join(program.project.WorkPath(), DecodePageName(name));
  if (!MUC.PrepareEmail(text, paths.join(u'*'))) return StringText(FixedText::PageFileNotRead);
  return QString();
}
