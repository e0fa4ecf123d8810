// The project that is open: its folder of pages and pictures, its name, and the page in view.
// A project is a plain folder. The unsaved one lives in the hidden workspace `card`, each saved one in a folder of its
// name below `saved`; leaving a project only changes the folder. Paths have no separator at the end. Nothing here
// reports a failure: a folder that can't be made or removed is left as it is.
#pragma once

#include <QString>

class ModFileOps;

class Project {
 public:
  // Both must outlive the object; `appPath` is read at each call.
  Project(ModFileOps& files, const QString& appPath) : files_(files), appPath_(appPath) {}
  Project(const Project&) = delete;
  Project& operator=(const Project&) = delete;

  // Folder of the open project's pages: CardPath(), or a folder in SavedFolder().
  const QString& WorkPath() const { return workPath_; }
  // Folder of the unsaved project.
  QString CardPath() const;
  // The folder in which all saved projects lie.
  QString SavedFolder() const;

  // UnsavedName() for the unsaved project, else the name as typed.
  const QString& ProjectName() const { return name_; }
  static QString UnsavedName();
  // The name alone tells, letter by letter.
  bool IsUnsaved() const;

  // Number of the page in view, from 1, and the whole path of its file. The file stays that of the old folder when the
  // project is saved for the first time.
  int CurPageNo() const { return pageNumber_; }
  const QString& CurPageFile() const { return pageFile_; }

  // Bare name of the file of page `number`, from 1.
  static QString PageName(int number);
  // Whole path of it in the open project.
  QString PageFile(int number) const;

  // The workspace is the open project's folder from now on; what is in it stays.
  void EnterWorkspace();

  // Takes the workspace away with all that is in it, without a word.
  void RemoveWorkspace();

  // Takes it away and makes it again, empty and hidden.
  void WipeWorkspace();

  // Opens the unsaved project at page 1. The workspace is emptied only when it was open already: behind a saved
  // project the pages that were left in it come back.
  void StartNew();

  // Opens the project of that name in that folder; the workspace is wiped. The number and file of the page in view
  // stay, until TurnTo.
  void OpenSaved(const QString& name, const QString& folder);

  // The open project bears that name and lies in that folder from now on.
  void SavedAs(const QString& name, const QString& folder);

  // Page `number` is the one in view.
  void TurnTo(int number);

 private:
  void MakeWorkspace();

  ModFileOps& files_;
  const QString& appPath_;
  QString workPath_;
  QString name_ = UnsavedName();
  int pageNumber_ = 1;
  QString pageFile_;
};
