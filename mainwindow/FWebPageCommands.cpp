// The commands on pages: switch, add, delete, tidy, bring in and send out.
#include <QComboBox>

#include "BusyGuard.h"
#include "Discard.h"
#include "FWeb.h"
#include "ListIndex.h"
#include "ModBrowse.h"
#include "OneFile.h"
#include "PageFiles.h"
#include "PageText.h"
#include "PathRules.h"
#include "Program.h"
#include "StringTable.h"
#include "StripPicturePaths.h"
#include "WaitCursor.h"

void FWeb::ShowPage(int number) {
  program_.project.TurnTo(number);
  LoadPage(program_.project.CurPageFile());
}

// Any change of the list's selection, also one that code makes.
void FWeb::OnBoxPage() {
  if (!program_.AppStarted) return;
  const BusyGuard guard(Busy);
  if (!guard) return;
  SavePage(program_.project.CurPageNo(), false);
  int page = BoxPage->currentIndex() + 1;
  QString name;
  const int pages = NextPageName(program_, name);
  if (page > pages) page = pages + 1;
  SetIndex(BoxPage, page - 1);
  ShowPage(page);
  jWB->setFocus();
}

void FWeb::mNewPage() {
  const BusyGuard guard(Busy);
  if (!guard) return;
  SavePage(program_.project.CurPageNo(), false);
  QString name;
  const int pages = NextPageName(program_, name);
  ShowPage(pages + 1);
  SetIndex(BoxPage, pages);
}

void FWeb::mSavePage() {
  SavePage(program_.project.CurPageNo(), false);
}

void FWeb::mRefresh() {
  SavePage(program_.project.CurPageNo(), true);
  LoadPage(program_.project.CurPageFile());
}

// Two ways out leave Busy set; the page view then goes on showing what it shows.
void FWeb::mDelPage() {
  if (Busy) return;
  Busy = true;
  ModFileOps& files = program_.Files;
  const Project& project = program_.project;
  int current = BoxPage->currentIndex() + 1;
  QString name;
  const int pages = NextPageName(program_, name);
  if (current > pages) return;
  DiscardFile(program_, project.PageFile(current));
  if (current == pages) {
    const int neighbour = std::max(1, current - 1);
    if (current > 1) SetIndex(BoxPage, neighbour - 1);
    ShowPage(neighbour);
    Busy = false;
    return;
  }
  if (!files.FileExists(project.PageFile(1)) && files.FileExists(project.PageFile(2)))
    files.MoveFileOver(project.PageFile(2), project.PageFile(1));
  current = std::max(current, 3);
  if (current >= pages) return;
  for (int i = current; i <= pages + 1; ++i)
    if (files.FileExists(project.PageFile(i))) files.MoveFileOver(project.PageFile(i), project.PageFile(i - 1));
  ShowPage(1);
  SetIndex(BoxPage, 0);
  Busy = false;
}

void FWeb::mOpenFile() {
  const BusyGuard guard(Busy);
  if (!guard) return;
  QString chosen = ShowOpenDialog(program_, this, QStringLiteral("Select HTML file"),
                                  QStringLiteral("HTML Files(*.html)"), QStringLiteral("*.html"));
  if (chosen.isEmpty()) return;
  QString name;
  const int pages = NextPageName(program_, name);
  program_.Files.CopyFileOver(chosen, program_.project.PageFile(pages + 1));
  ShowPage(pages + 1);
  SetIndex(BoxPage, pages);
}

void FWeb::mSavePageFil() {
  const BusyGuard guard(Busy);
  if (!guard) return;
  const QString chosen =
      ShowSaveDialog(program_, this, QStringLiteral("Save Text to File"), QStringLiteral("HTML Files(*.html)"),
                     QStringLiteral("*.html"), QStringLiteral("html"));
  if (chosen.isEmpty()) return;
  if (program_.Files.FileExists(chosen)) {
    if (program_.platform.dialogs.ShowMessage(this, StringText(TextNumber::ReplaceFile), MessageIcon::None,
                                              MessageButtons::OkCancel) != MessageAnswer::Ok)
      return;
    program_.Files.DeleteFileIfAny(chosen);
  }
  ExportPage(chosen);
}

// Neither the project nor the page's file changes; what is in view goes out as it is.
void FWeb::mSaveOneFile() {
  const BusyGuard guard(Busy);
  if (!guard) return;
  Dialogs& dialogs = program_.platform.dialogs;
  const QString chosen =
      ShowSaveDialog(program_, this, QStringLiteral("Save Project as One HTML File"),
                     QStringLiteral("HTML Files(*.html)"), QStringLiteral("*.html"), QStringLiteral("html"));
  if (chosen.isEmpty()) return;
  if (program_.Files.FileExists(chosen) &&
      dialogs.ShowMessage(this, StringText(TextNumber::ReplaceFile), MessageIcon::None, MessageButtons::OkCancel) !=
          MessageAnswer::Ok)
    return;
  bool isSaved = false;
  {
    const WaitCursor cursor;
    isSaved = SaveOneFile(program_, chosen, jWB->SourceForFile());
  }
  if (!isSaved) dialogs.ShowMessage(this, StringText(TextNumber::SavingFailed));
}

// A page with pictures goes into a new folder beside the chosen file, and not to the chosen path itself.
void FWeb::ExportPage(const QString& chosen) {
  ModFileOps& files = program_.Files;
  QByteArray pictures;
  const QByteArray clean = StripPicturePaths(jWB->SourceForFile(), pictures);
  if (pictures.isEmpty()) {
    files.WriteTextFile(chosen, clean);
    return;
  }
  const qsizetype separator = PathRules::LastSeparator(chosen);
  const QString name = chosen.mid(separator + 1);
  const qsizetype dot = name.lastIndexOf(u'.');
  const QString stem = chosen.left(separator + 1) + (dot < 0 ? name : name.left(dot)) + QStringLiteral(" Files");
  int number = 1;
  while (files.FolderExists(stem + QString::number(number))) ++number;
  const QString folder = stem + QString::number(number);
  files.EnsureFolder(folder);
  files.WriteTextFile(PathRules::Join(folder, name), clean);
  for (const QByteArray& bytes : pictures.split('*')) {
    const QString picture = DecodePageName(bytes);
    const QString source = PathRules::Join(program_.project.WorkPath(), picture);
    if (files.FileExists(source)) files.CopyFileOver(source, PathRules::Join(folder, picture));
  }
}
