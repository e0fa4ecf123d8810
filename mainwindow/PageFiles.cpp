#include "PageFiles.h"

#include "PathRules.h"
#include "Program.h"
#include "StringTable.h"
#include "StripPicturePaths.h"
#include "WBUC.h"

int NextPageName(Program& program, QString& Name) {
  ModFileOps& files = program.Files;
  const Project& project = program.project;
  QString list;
  const int count = files.ListFiles(project.WorkPath(), QStringLiteral("html"), list);
  int last = count;
  if (count > 1) {
    last = 1;
    for (int i = 2; i <= count; ++i) {
      if (files.FileExists(project.PageFile(i))) {
        last = i;
      } else if (files.FileExists(project.PageFile(i + 1))) {
        files.MoveFileOver(project.PageFile(i + 1), project.PageFile(i));
        last = i;
      } else {
        break;
      }
    }
  }
  Name = Project::PageName(last + 1);
  return last;
}

void LoadPage(Program& program, WBUC& jWB, const QString& PagePath) {
  ModFileOps& files = program.Files;
  bool force = false;
  const QString blank = PathRules::Join(program.AppPath, QStringLiteral("blank.html"));
  // As a whole, so that a full disk leaves none.
  if (!files.FileExists(blank)) files.ReplaceTextFile(blank, StringText(TextNumber::BlankPage).toUtf8());
  const qsizetype separator = PathRules::LastSeparator(PagePath);
  if (separator + 1 > 3) files.EnsureFolder(PagePath.left(separator));
  if (!files.FileExists(PagePath)) {
    force = true;
    files.CopyFileOver(blank, PagePath);
  }
  if (!program.AppStarted) force = true;
  jWB.Navo(PagePath, force);
}

std::optional<bool> SavePage(Program& program, const WBUC& jWB, int PageNo, bool Strip) {
  QByteArray text = jWB.SourceForFile();
  if (text.isEmpty() || PageNo <= 0) return std::nullopt;
  if (Strip) {
    QByteArray pictures;
    text = StripPicturePaths(text, pictures);
  }
  return program.Files.WriteTextFile(program.project.PageFile(PageNo), text);
}
