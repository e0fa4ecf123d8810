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
#include "WindowsNames.h"

void FWeb::mNewProject() {
  const BusyGuard guard(Busy);
  if (!guard) return;
  if (program_.platform.dialogs.ShowMessage(this, StringText(TextNumber::DiscardWork), MessageIcon::Question,
                                            MessageButtons::OkCancel,
                                            StringText(FixedText::DiscardTitle)) != MessageAnswer::Ok)
    return;
  // The answer discards the unsaved project, a page of it that couldn't be written among the rest. A saved one stays.
  if (!isPageWritten_ && !program_.project.IsUnsaved()) emit UnwrittenPageGivenUp();
  program_.project.StartNew();
  isPageWritten_ = true;
  LoadPage(program_.project.CurPageFile());
  SetIndex(BoxPage, 0);
  SetCaption();
}

// The page in view isn't written at a first save: the copy has the state of the files.
void FWeb::SaveProject() {
  const BusyGuard guard(Busy);
  if (!guard) return;
  ModFileOps& files = program_.Files;
  Project& project = program_.project;
  Dialogs& dialogs = program_.platform.dialogs;
  const QString saved = project.SavedFolder();
  if (!project.IsUnsaved() && files.FolderExists(PathRules::Join(saved, project.ProjectName()))) {
    SavePage(project.CurPageNo(), true);
    dialogs.ShowMessage(this, project.ProjectName() + StringText(FixedText::AlreadySaved), MessageIcon::None);
    return;
  }
  files.EnsureFolder(saved);
  QString answer;
  while (true) {
    answer = dialogs.AskText(this, StringText(TextNumber::EnterProjectName), StringText(FixedText::SaveProjectTitle),
                             QString(), WhyNoFolderName);
    if (answer.isEmpty()) return;
    if (UpperAscii(answer) == UpperAscii(Project::UnsavedName())) {
      dialogs.ShowMessage(this, StringText(TextNumber::NameReserved), MessageIcon::Information);
      continue;
    }
    // No name may lead to a folder that isn't a project's own: it would be replaced.
    if (PathRules::StaysBelow(saved, answer)) break;
  }
  const QString target = PathRules::Join(saved, answer);
  if (files.FolderExists(target)) {
    if (dialogs.ShowMessage(this, StringText(TextNumber::ReplaceProject), MessageIcon::Question,
                            MessageButtons::OkCancel) != MessageAnswer::Ok)
      return;
    files.RemoveTree(target);
  }
  files.CopyFolderFiles(project.WorkPath(), target);
  project.SavedAs(answer, target);
  QString list;
  files.ListFiles(target, QStringLiteral("html"), list);
  for (const QString& name : list.split(u'*', Qt::SkipEmptyParts)) {
    const QString path = PathRules::Join(target, name);
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
  QString saved = program_.project.SavedFolder();
  int count = 0;
  if (program_.Files.FolderExists(saved)) program_.Files.ListFolders(saved, count);
  if (count == 0) {
    program_.platform.dialogs.ShowMessage(this, StringText(TextNumber::NoSavedProjects), MessageIcon::Information);
    return;
  }
  emit OpsRequested(OpsTask::OpenProject);
}

void FWeb::OpenProject(const QString& Name, const QString& Path) {
  Project& project = program_.project;
  if (!isPageWritten_) emit UnwrittenPageGivenUp();
  isPageWritten_ = true;
  project.OpenSaved(Name, Path);
  SetCaption();
  // Where the list stood elsewhere this runs its handler, which saves the page in view into the project just opened.
  SetIndex(BoxPage, 0);
  project.TurnTo(1);
  LoadPage(project.CurPageFile());
}
