// What the page and project commands do to the folders, told in the plainest way: files are letters in a map. It is
// what the program is compared with, so it shares nothing with it.
#pragma once

#include <QMap>
#include <QSet>
#include <QString>
#include <QStringList>
#include <optional>

class FolderModel {
 public:
  FolderModel();

  // Paths are below the program's folder.
  QMap<QString, QString> files;
  QSet<QString> folders;

  QString workPath = "card";
  QString curPageFile = "card/wgcard.html";
  QString projectName = "Project1";
  QString caption = "Project1";
  int curPageNo = 1;
  int list = 0;
  bool busy = false;
  bool ended = false;
  std::optional<QString> view;  // nothing while there is no page in view

  void Type(const QString& letters);
  void NewPage();
  void Save();
  void Refresh();
  void DeletePage();
  void Choose(int index);
  void OpenFile(const QString& letters);
  void NewProject(bool ok);
  void SaveProject(const QStringList& names, bool replace);
  // False when the panel doesn't come up.
  bool OpenPanel() const;
  void OpenRow(const QString& row);
  void DeleteRow(const QString& row, bool ok);
  // `answer`: y, n or c.
  void Exit(QChar answer, const QStringList& names, bool replace);

  QStringList Projects() const;

 private:
  QString File(int page) const;
  bool Exists(int page) const { return files.contains(File(page)); }
  void Write(const QString& path, const QString& letters);
  void Move(int from, int to);
  void WritePage(int page);
  void Load(const QString& path);
  int CountPages(QString& next);
  void MakeFolder(const QString& path);
  void RemoveFolder(const QString& path);
  QStringList FilesIn(const QString& folder) const;
  void SetList(int index);
};
