// The commands on projects. A project is a folder; leaving one only changes WorkPath.
#include <QComboBox>

#include "AsciiText.h"
#include "BusyGuard.h"
#include "FWeb.h"
#include "ListIndex.h"
#include "PathRules.h"
#include "Program.h"
#include "StringTable.h"
#include "StripPicturePaths.h"

namespace {

const QString unsavedName = QStringLiteral("Project1");

QString SavedFolder(const Program& program) {
  return PathRules::Join(program.AppPath, QStringLiteral("saved"));
}

}  // namespace

void FWeb::mNewProject() {
  const BusyGuard guard(Busy);
  if (!guard) return;
  if (program_.platform.dialogs.ShowMessage(this, StringText(125), MessageIcon::Question, MessageButtons::OkCancel,
                                            StringText(FixedText::DiscardTitle)) != MessageAnswer::Ok)
    return;
  ModFileOps& files = program_.Files;
  // Only the unsaved project's own folder is emptied: when a saved project was open, pages left in it come back.
  if (program_.WorkPath == program_.CardPath && files.FolderExists(program_.WorkPath)) {
    files.Attributes().Clear(program_.WorkPath);
    files.RemoveTree(program_.WorkPath);
  }
  program_.WorkPath = program_.CardPath;
  files.EnsureFolder(program_.WorkPath);
  files.Attributes().Set(program_.WorkPath, AttributeHidden);
  program_.CurPageFile = PathRules::Join(program_.WorkPath, QStringLiteral("wgcard.html"));
  LoadPage(program_.CurPageFile);
  SetIndex(BoxPage, 0);
  program_.CurPageNo = 1;
  program_.ProjectName = unsavedName;
  SetCaption();
}

// The page in view isn't written at a first save: the copy has the state of the files.
void FWeb::SaveProject() {
  const BusyGuard guard(Busy);
  if (!guard) return;
  ModFileOps& files = program_.Files;
  Dialogs& dialogs = program_.platform.dialogs;
  const QString saved = SavedFolder(program_);
  if (program_.ProjectName != unsavedName && files.FolderExists(PathRules::Join(saved, program_.ProjectName))) {
    SavePage(program_.CurPageNo, true);
    dialogs.ShowMessage(this, program_.ProjectName + StringText(FixedText::AlreadySaved), MessageIcon::None);
    return;
  }
  files.EnsureFolder(saved);
  QString answer;
  while (true) {
    answer = dialogs.AskText(this, StringText(186), StringText(FixedText::SaveProjectTitle));
    if (answer.isEmpty()) return;
    if (UpperAscii(answer) == u"PROJECT1") {
      dialogs.ShowMessage(this, StringText(184), MessageIcon::Information);
      // No name may lead to a folder that isn't a project's own: it would be replaced.
    } else if (PathRules::StaysBelow(saved, answer)) {
      break;
    }
  }
  QString target = PathRules::Join(saved, answer);
  if (files.FolderExists(target)) {
    if (dialogs.ShowMessage(this, StringText(185), MessageIcon::Question, MessageButtons::OkCancel) !=
        MessageAnswer::Ok)
      return;
    files.RemoveTree(target);
  }
  files.CopyFolderFiles(program_.WorkPath, target);
  program_.WorkPath = target;
  program_.ProjectName = answer;
  QString list;
  files.ListFiles(program_.WorkPath, QStringLiteral("html"), list);
  for (const QString& name : list.split(u'*', Qt::SkipEmptyParts)) {
    const QString path = PathRules::Join(program_.WorkPath, name);
    QByteArray pictures;
    const QByteArray clean = StripPicturePathsOfFile(files, path, pictures);
    files.DeleteFileIfAny(path);
    files.WriteTextFile(path, clean);
  }
  SetCaption();
}

void FWeb::mOpenProject() {
  const BusyGuard guard(Busy);
  if (!guard) return;
  QString saved = SavedFolder(program_);
  int count = 0;
  if (program_.Files.FolderExists(saved)) program_.Files.ListFolders(saved, count);
  if (count == 0) {
    program_.platform.dialogs.ShowMessage(this, StringText(137), MessageIcon::Information);
    return;
  }
  emit OpsRequested(1);
}

void FWeb::OpenProject(const QString& Name, const QString& Path) {
  MakeWorkspace();
  program_.WorkPath = Path;
  setWindowTitle(QStringLiteral("Corvane - ") + Name);
  // Where the list stood elsewhere this runs its handler, which saves the page in view into the project just opened.
  SetIndex(BoxPage, 0);
  program_.CurPageNo = 1;
  program_.CurPageFile = PathRules::Join(program_.WorkPath, QStringLiteral("wgcard.html"));
  LoadPage(program_.CurPageFile);
  program_.ProjectName = Name;
}
