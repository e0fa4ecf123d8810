#pragma once

#include <QDir>
#include <QFileInfo>
#include <QList>
#include <QString>
#include <functional>

#include "Shell.h"

// A shell that opens nothing: it answers as told and keeps what was asked of it.
class RecordingShell : public Shell {
 public:
  struct Call {
    QString file;
    QString folder;
    ShowMode mode;
    QWidget* owner;
  };

  int OpenResult = kFirstSuccess;
  bool StartResult = true;
  bool RunsWindows = true;
  // A desktop without a place for what is thrown away, unless told.
  bool HasTrash = false;
  QStringList Trashed;
  // Runs while the shell is at work.
  std::function<void()> WhileOpening;
  QList<Call> Opened;
  QList<Call> Started;

  int OpenFile(QWidget* owner, const QString& file, const QString& folder, ShowMode mode) override {
    Opened.append({file, folder, mode, owner});
    if (WhileOpening) WhileOpening();
    return OpenResult;
  }
  bool StartProgram(const QString& path, ShowMode mode) override {
    Started.append({path, QString(), mode, nullptr});
    if (WhileOpening) WhileOpening();
    return StartResult;
  }
  bool MoveToTrash(const QString& path) override {
    if (!HasTrash) return false;
    Trashed.append(path);
    const QFileInfo file(path);
    return file.isDir() ? QDir(path).removeRecursively() : QFile::remove(path);
  }
  bool RunsWindowsPrograms() const override { return RunsWindows; }
};
