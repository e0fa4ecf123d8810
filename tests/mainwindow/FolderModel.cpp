#include "FolderModel.h"

namespace {

QString Above(const QString& path) {
  const qsizetype at = path.lastIndexOf(u'/');
  return at < 0 ? QString() : path.left(at);
}

}  // namespace

FolderModel::FolderModel() : view(QString()) {
  folders = {"", "card"};
  files["card/wgcard.html"] = "";
}

QString FolderModel::File(int page) const {
  return page == 1 ? workPath + "/wgcard.html" : workPath + "/Page" + QString::number(page) + ".html";
}

void FolderModel::Write(const QString& path, const QString& letters) {
  if (folders.contains(Above(path))) files[path] = letters;
}

void FolderModel::Move(int from, int to) {
  if (!Exists(from)) return;
  const QString letters = files.take(File(from));
  files[File(to)] = letters;
}

void FolderModel::WritePage(int page) {
  if (view && page > 0) Write(File(page), *view);
}

void FolderModel::MakeFolder(const QString& path) {
  if (folders.contains(Above(path)) && !files.contains(path)) folders.insert(path);
}

void FolderModel::RemoveFolder(const QString& path) {
  for (const QString& file : files.keys())
    if (file.startsWith(path + u'/')) files.remove(file);
  for (const QString& folder : QStringList(folders.begin(), folders.end()))
    if (folder == path || folder.startsWith(path + u'/')) folders.remove(folder);
}

QStringList FolderModel::FilesIn(const QString& folder) const {
  QStringList names;
  for (const QString& file : files.keys())
    if (Above(file) == folder) names.append(file.mid(folder.size() + 1));
  return names;
}

void FolderModel::Load(const QString& path) {
  MakeFolder(Above(path));
  if (!files.contains(path)) Write(path, QString());
  view = files.contains(path) ? std::optional(files[path]) : std::nullopt;
}

// The number of pages; a gap of one is closed on the way.
int FolderModel::CountPages(QString& next) {
  int count = 0;
  for (const QString& name : FilesIn(workPath)) count += name.endsWith(".html");
  int last = count;
  if (count > 1) {
    last = 1;
    for (int page = 2; page <= count && (Exists(page) || Exists(page + 1)); ++page) {
      if (!Exists(page)) Move(page + 1, page);
      last = page;
    }
  }
  next = last == 0 ? QString("wgcard.html") : "Page" + QString::number(last + 1) + ".html";
  return last;
}

// The list has thirty rows, and choosing one of them by code works its handler too.
void FolderModel::SetList(int index) {
  if (index >= 0 && index < 30) Choose(index);
}

void FolderModel::Type(const QString& letters) {
  if (view) *view += letters;
}

void FolderModel::Choose(int index) {
  if (index == list) return;
  list = index;
  if (busy) return;
  busy = true;
  WritePage(curPageNo);
  QString next;
  int page = index + 1;
  const int pages = CountPages(next);
  if (page > pages) page = pages + 1;
  SetList(page - 1);
  curPageFile = File(page);
  Load(curPageFile);
  curPageNo = page;
  busy = false;
}

void FolderModel::NewPage() {
  if (busy) return;
  busy = true;
  WritePage(curPageNo);
  QString next;
  const int pages = CountPages(next);
  curPageFile = workPath + u'/' + next;
  Load(curPageFile);
  SetList(pages);
  curPageNo = pages + 1;
  busy = false;
}

void FolderModel::Save() {
  WritePage(curPageNo);
}

void FolderModel::Refresh() {
  WritePage(curPageNo);
  Load(curPageFile);
}

void FolderModel::DeletePage() {
  if (busy) return;
  busy = true;
  const int gone = list + 1;
  QString next;
  const int pages = CountPages(next);
  if (gone > pages) return;
  files.remove(File(gone));
  if (gone == pages) {
    const int page = gone == 1 ? 1 : gone - 1;
    if (gone > 1) SetList(page - 1);
    curPageFile = File(page);
    curPageNo = page;
    Load(curPageFile);
    busy = false;
    return;
  }
  if (!Exists(1)) Move(2, 1);
  const int from = gone < 3 ? 3 : gone;
  if (from >= pages) return;
  for (int page = from; page <= pages + 1; ++page) Move(page, page - 1);
  curPageFile = File(1);
  curPageNo = 1;
  Load(curPageFile);
  SetList(0);
  busy = false;
}

void FolderModel::OpenFile(const QString& letters) {
  if (busy) return;
  busy = true;
  QString next;
  const int pages = CountPages(next);
  curPageFile = workPath + u'/' + next;
  Write(curPageFile, letters);
  Load(curPageFile);
  SetList(pages);
  curPageNo = pages + 1;
  busy = false;
}

void FolderModel::NewProject(bool ok) {
  if (busy || !ok) return;
  busy = true;
  if (workPath == "card") RemoveFolder("card");
  workPath = "card";
  MakeFolder("card");
  curPageFile = "card/wgcard.html";
  Load(curPageFile);
  SetList(0);
  curPageNo = 1;
  projectName = caption = "Project1";
  busy = false;
}

void FolderModel::SaveProject(const QStringList& names, bool replace) {
  if (busy) return;
  if (projectName != "Project1" && folders.contains("saved/" + projectName)) {
    WritePage(curPageNo);
    return;
  }
  MakeFolder("saved");
  QString name;
  for (const QString& answer : names) {
    name = answer;
    if (name.toUpper() != "PROJECT1") break;
    name.clear();
  }
  if (name.isEmpty()) return;
  const QString target = "saved/" + name;
  if (folders.contains(target)) {
    if (!replace) return;
    RemoveFolder(target);
  }
  if (folders.contains(workPath)) {
    MakeFolder(target);
    for (const QString& file : FilesIn(workPath)) Write(target + u'/' + file, files[workPath + u'/' + file]);
  }
  workPath = target;
  projectName = caption = name;
}

QStringList FolderModel::Projects() const {
  QStringList names;
  for (const QString& folder : folders)
    if (Above(folder) == "saved" && !folder.mid(6).startsWith(u'.')) names.append(folder.mid(6));
  names.sort();
  return names;
}

bool FolderModel::OpenPanel() const {
  return !busy && !Projects().isEmpty();
}

void FolderModel::OpenRow(const QString& row) {
  QString name = row;
  while (name.startsWith(u' ')) name.remove(0, 1);
  while (name.endsWith(u' ')) name.chop(1);
  if (!folders.contains("saved/" + name)) return;
  RemoveFolder("card");
  MakeFolder("card");
  workPath = "saved/" + name;
  caption = name;
  SetList(0);
  curPageNo = 1;
  curPageFile = workPath + "/wgcard.html";
  Load(curPageFile);
  projectName = name;
}

void FolderModel::DeleteRow(const QString& row, bool ok) {
  QString name = row;
  while (name.startsWith(u' ')) name.remove(0, 1);
  while (name.endsWith(u' ')) name.chop(1);
  if (ok && folders.contains("saved/" + name)) RemoveFolder("saved/" + name);
}

void FolderModel::Exit(QChar answer, const QStringList& names, bool replace) {
  if (answer == u'c') return;
  if (answer == u'y') {
    if (projectName == "Project1")
      SaveProject(names, replace);
    else
      WritePage(curPageNo);
  }
  RemoveFolder("card");
  ended = true;
}
