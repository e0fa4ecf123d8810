#pragma once

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
  bool RunsWindowsPrograms() const override { return RunsWindows; }
};
